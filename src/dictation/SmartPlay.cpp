// Smart play: playback in bursts with automatic pauses, and the guard that
// holds the cycle while the user types.

#include "app/AppContext.h"
#include "editor/Form2.h"
#include "platform/Numbers.h"
#include "platform/PlayerControl.h"
#include "player/Form1.h"

#include <QAction>

void Form1::mnuSmartPlay_Click()
{
    if (mnuSmartPlay->isChecked()) {
        imgDetta->LoadPicture(ctx.filesPath(QStringLiteral("detta.jpg")));
        mnuSmartPlay->setChecked(false);
        Timer5->setInterval(0);
        Timer5->setEnabled(false);
        // Off during a play phase: the player pauses, with its step back.
        if (cmdPlay->isEnabled() && cmdPlay->Tag == ctx.Lingua(8))
            cmdPlay_Click();
    } else {
        imgDetta->LoadPicture(ctx.filesPath(QStringLiteral("detta2.jpg")));
        mnuSmartPlay->setChecked(true);
        // The menu explains the mode and leaves the player alone.
        ctx.msgBox(TogliAmp(ctx.Lingua(127)), MsgBox::Information, TogliAmp(ctx.Lingua(124)));
    }
    Salva();
}

void Form1::imgDetta_Click()
{
    if (mnuSmartPlay->isChecked()) {
        imgDetta->LoadPicture(ctx.filesPath(QStringLiteral("detta.jpg")));
        mnuSmartPlay->setChecked(false);
        Timer5->setInterval(0);
        Timer5->setEnabled(false);
        if (cmdPlay->isEnabled() && cmdPlay->Tag == ctx.Lingua(8))
            cmdPlay_Click();
    } else {
        imgDetta->LoadPicture(ctx.filesPath(QStringLiteral("detta2.jpg")));
        mnuSmartPlay->setChecked(true);
        // The button does not explain; it starts playing, which starts the
        // cycle.
        if (cmdPlay->isEnabled() && cmdPlay->Tag == ctx.Lingua(7))
            cmdPlay_Click();
    }
    Salva();
}

void Form1::mnuNoPlayOnWrite_Click()
{
    mnuNoPlayOnWrite->setChecked(!mnuNoPlayOnWrite->isChecked());
    Salva();
}

void Form1::Timer6_Timer()
{
    // One-shot: the typing watch has run out.
    Timer6->setInterval(0);
}

void Form1::Timer5_Timer()
{
    // While the user types, the phase that was to end waits 1300 ms more,
    // whichever phase it is.
    if (mnuNoPlayOnWrite->isChecked() && Timer6->interval() != 0) {
        Timer5->setInterval(Timer6->interval());
        return;
    }
    if (cmdPlay->Tag != ctx.Lingua(7)) {
        // The play phase has run out: pause with the step back.
        cmdPlay->Tag = ctx.Lingua(7);
        mnuPlay->setText(ctx.Lingua(7));
        if (const auto period = Numbers::multiplyInt16(ctx.TempoPause, 1000))
            Timer5->setInterval(*period);
        WMP1.setCurrentPosition(WMP1.currentPosition() - double(ctx.SecIndietro));
        WMP1.pause();
        if (HoverPlay == 0 && Label4->isVisible())
            cmdPlay->LoadPicture(ctx.filesPath(QStringLiteral("play.jpg")));
        TornaAllEditor();
        return;
    }
    // The pause phase has run out: play again, which arms the next phase.
    cmdPlay_Click();
}

void Form1::TornaAllEditor(bool focusOnly)
{
    Form2 *editor = ctx.form2();
    if (editor->isVisible()) {
        editor->SetFocus();
        return;
    }
    // The switch back to the program that was in front before is reserved
    // for a mark that no command sets; nothing happens while the editor is
    // hidden.
    Q_UNUSED(focusOnly);
}
