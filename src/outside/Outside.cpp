// Commands that lead out of the program. The help pages, the about box, the
// web links and the update check are still to come; until then each command
// is a named no-op, so that menus and keys that reach it do nothing.

#include "player/Form1.h"

void Form1::mnuGuida_Click() {}
void Form1::mnuInfo_Click() {}
void Form1::mnuImpostaAudio_Click() {}
void Form1::mnuAggiornamenti_Click() {}
void Form1::mnuAggLingua_Click() {}
void Form1::mnuFaiDonazione_Click() {}
void Form1::mnuVersioni_Click() {}
void Form1::ControllaAggiornamenti() {}
