// The recorder window is still to come; its command does nothing yet.

#include "player/Form1.h"

void Form1::mnuRegistra_Click() {}
