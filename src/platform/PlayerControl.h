#pragma once

#include <QString>

// The media player control of the player window: the whole of what the
// program asks of a player back-end, under the names the program's routines
// use for them.
//
// Contract shared by every implementation:
// - All calls are made on the GUI thread and return at once; none of them
//   blocks on the back-end. Loading a file is asynchronous: after setURL() the
//   state reads 9 (in transition) until the media is ready.
// - Calls on an empty player (nothing loaded) are accepted and do nothing;
//   reads then give 0, the empty text or the state 0 (undefined).
// - A position written below 0 is taken as 0; one beyond the end lands at the
//   end, which the state then reports as 1 (stopped).
// - Position texts have the player's form: "mm:ss" below an hour, "h:mm:ss"
//   from an hour on; the position text is empty while stopped.
class PlayerControl
{
public:
    // Values of playState() that the program tests, as the player reports them.
    enum State {
        Undefined = 0,
        Stopped = 1, // stopped by stop(), or at the end of the media
        Paused = 2,
        Playing = 3,
        Transitioning = 9, // a new media is being prepared
    };

    virtual ~PlayerControl() = default;

    // Loads the file at this path and starts playing it (auto-start);
    // the empty text unloads.
    virtual void setURL(const QString &path) = 0;
    virtual QString URL() const = 0;
    // Releases the media.
    virtual void close() = 0;

    virtual int playState() const = 0;

    virtual void play() = 0;  // start or resume at the current position
    virtual void pause() = 0; // hold, keeping the position
    virtual void stop() = 0;  // stop, the position going back to 0

    // Position in seconds; writing seeks exactly (to the sample or frame).
    virtual double currentPosition() const = 0;
    virtual void setCurrentPosition(double seconds) = 0;
    virtual QString currentPositionString() const = 0;

    // Length in seconds; 0 until known.
    virtual double duration() const = 0;
    virtual QString durationString() const = 0;

    // Speed factor, 1.0 for normal; the pitch of a voice is kept.
    virtual double rate() const = 0;
    virtual void setRate(double rate) = 0;

    // Volume 0 to 100; values outside are clamped.
    virtual void setVolume(int volume) = 0;
    virtual int volume() const = 0;
};

// The player's own text form of a time: "mm:ss" below an hour, "h:mm:ss"
// from an hour on; fractions of a second are cut off.
QString playerTimeString(double seconds);
