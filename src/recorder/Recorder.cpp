// The player's way into the recorder.

#include "app/AppContext.h"
#include "player/Form1.h"
#include "recorder/frmAudioRec.h"

#include <QLineEdit>

void Form1::mnuRegistra_Click()
{
    if (cmdPlay->Tag == ctx.Lingua(8))
        mnuStop_Click();
    if (HoverRec == 1) {
        HoverRec = 0;
        cmdRec->LoadPicture(ctx.filesPath(QStringLiteral("rec.jpg")));
    }
    frmAudioRec *recorder = ctx.recorder();
    recorder->show();
    recorder->raise();
}
