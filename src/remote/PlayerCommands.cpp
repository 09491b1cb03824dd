#include "remote/PlayerCommands.h"

#include "app/AppContext.h"
#include "player/Form1.h"

Form1 *PlayerCommands::form1() const
{
    Form1 *f = ctx.form1();
    return f && f->cmdPlay && f->cmdPlay->isEnabled() ? f : nullptr;
}

bool PlayerCommands::mediaOpen() const { return form1() != nullptr; }

bool PlayerCommands::playing() const
{
    const Form1 *f = form1();
    return f && f->cmdPlay->Tag != ctx.Lingua(7);
}

void PlayerCommands::play()
{
    if (mediaOpen() && !playing())
        form1()->cmdPlay_Click();
}

void PlayerCommands::pause()
{
    if (playing())
        form1()->cmdPlay_Click();
}

void PlayerCommands::playPause()
{
    if (Form1 *f = form1())
        f->cmdPlay_Click();
}

void PlayerCommands::stop()
{
    if (Form1 *f = form1())
        f->mnuStop_Click();
}

void PlayerCommands::stepBack()
{
    if (Form1 *f = form1())
        f->cmdIndietro_Click();
}

void PlayerCommands::stepForward()
{
    if (Form1 *f = form1())
        f->cmdAvanz_Click();
}

void PlayerCommands::nextBookmark()
{
    if (Form1 *f = form1())
        f->mnuBMsuccessivo_Click();
}

void PlayerCommands::previousBookmark()
{
    if (Form1 *f = form1())
        f->mnuBMprecedente_Click();
}

void PlayerCommands::seekTo(double seconds)
{
    if (Form1 *f = form1()) {
        f->WMP1.setCurrentPosition(seconds);
        f->Timer1_Timer();
    }
}

void PlayerCommands::run(PedalAction action)
{
    switch (action) {
    case PedalAction::None: break;
    case PedalAction::Play: play(); break;
    case PedalAction::Pause: pause(); break;
    case PedalAction::PlayPause: playPause(); break;
    case PedalAction::Stop: stop(); break;
    case PedalAction::StepBack:
    case PedalAction::StepBackHeld: stepBack(); break;
    case PedalAction::StepForward:
    case PedalAction::StepForwardHeld: stepForward(); break;
    case PedalAction::NextBookmark: nextBookmark(); break;
    case PedalAction::PreviousBookmark: previousBookmark(); break;
    }
}
