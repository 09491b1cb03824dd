// The commands that open the small input dialog: still to come.

#include "player/Form1.h"

void Form1::mnuSecIndietro_Click() {}
void Form1::mnuSalto_Click() {}
void Form1::mnuTempoPlay_Click() {}
void Form1::mnuTempoPause_Click() {}
void Form1::mnuVai_Click() {}
