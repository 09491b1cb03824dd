#pragma once

#include "remote/PedalDriver.h"

class AppContext;
class Form1;

// The player's commands as they arrive from outside the keyboard (pedals,
// the desktop's media controls). Each one goes through the player window's
// own routine, so that smart play, the step back on pause and the return of
// the keyboard to the editor work as they do from a key. Nothing happens
// while no media is open.
class PlayerCommands
{
public:
    explicit PlayerCommands(AppContext &ctx) : ctx(ctx) {}

    bool mediaOpen() const;
    bool playing() const; // the run state of the program: the next press pauses

    void play();
    void pause();
    void playPause();
    void stop();
    void stepBack();
    void stepForward();
    void nextBookmark();
    void previousBookmark();
    // Moves to `seconds` keeping the state of play; the display follows.
    void seekTo(double seconds);

    void run(PedalAction action);

private:
    Form1 *form1() const;
    AppContext &ctx;
};
