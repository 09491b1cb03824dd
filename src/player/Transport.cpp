// Play and pause on one toggle, the steps, stop, and the watch that notices
// the end of the media.

#include "app/AppContext.h"
#include "platform/Numbers.h"
#include "platform/PlayerControl.h"
#include "player/Form1.h"

#include <QAction>

void Form1::cmdPlay_Click()
{
    if (cmdPlay->Tag == ctx.Lingua(7)) {
        // Play.
        cmdPlay->Tag = ctx.Lingua(8);
        mnuPlay->setText(ctx.Lingua(8));
        if (WMP1.currentPosition() == 0)
            WMP1.pause();
        WMP1.play();
        Timer1->setInterval(100);
        Timer4->setInterval(200);
        if (mnuSmartPlay->isChecked()) {
            // A 16-bit product: above 32 seconds it overflows and the timer
            // keeps the period it had.
            if (const auto period = Numbers::multiplyInt16(ctx.TempoPlay, 1000))
                Timer5->setInterval(*period);
            Timer5->setEnabled(true);
        } else {
            Timer5->setInterval(0);
            Timer5->setEnabled(false);
        }
        cmdIndietro->setEnabled(true);
        cmdAvanz->setEnabled(true);
        Shape1->show();
        if (HoverPlay == 0)
            cmdPlay->LoadPicture(ctx.filesPath(QStringLiteral("pause.jpg")));
    } else {
        // Pause: every pause steps back, which is what lets a typist hear
        // the last words again.
        cmdPlay->Tag = ctx.Lingua(7);
        mnuPlay->setText(ctx.Lingua(7));
        Timer5->setInterval(0);
        Timer5->setEnabled(false);
        WMP1.setCurrentPosition(WMP1.currentPosition() - ctx.SecIndietro);
        WMP1.pause();
        if (HoverPlay == 0 && Label4->isVisible())
            cmdPlay->LoadPicture(ctx.filesPath(QStringLiteral("play.jpg")));
    }
    ctx.FlagHoverSkin = 0;
    TornaAllEditor();
}

void Form1::cmdAvanz_Click()
{
    if (ctx.SecSalto == 0)
        ctx.SecSalto = 2;
    WMP1.setCurrentPosition(WMP1.currentPosition() + ctx.SecSalto);
    Timer1_Timer();
    TornaAllEditor();
}

void Form1::cmdIndietro_Click()
{
    if (ctx.SecSalto == 0)
        ctx.SecSalto = 2;
    WMP1.setCurrentPosition(WMP1.currentPosition() - ctx.SecSalto);
    Timer1_Timer();
    TornaAllEditor();
}

void Form1::mnuStop_Click()
{
    Timer1_Timer();
    Timer1->setInterval(0);
    WMP1.stop();
    Label2->setCaption(QStringLiteral("0:00 / ") + WMP1.durationString().replace(u'.', u':'));
    // The menu caption is left as it was: after a stop from play it still
    // reads "pause" until the next press.
    cmdPlay->Tag = ctx.Lingua(7);
    cmdPlay->LoadPicture(ctx.filesPath(QStringLiteral("play.jpg")));
    // Stop always leaves smart play off.
    mnuSmartPlay->setChecked(true);
    imgDetta_Click();
}

void Form1::cmdRec_Click()
{
    mnuRegistra_Click();
}

void Form1::Timer4_Timer()
{
    const int state = WMP1.playState();
    ctx.setMousePointer(state == PlayerControl::Transitioning ? 11 : 0);
    if (state == PlayerControl::Stopped) {
        mnuStop_Click();
        Timer4->setInterval(0);
    }
}
