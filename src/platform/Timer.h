#pragma once

#include <functional>
#include <memory>

// A window timer in the manner the program's routines use them: it fires
// every `interval` milliseconds while it is enabled and its interval is not 0.
// Setting the interval, to any value, restarts the count from that moment;
// an interval of 0 stops it. Enabled is a separate switch that starts true.
class Timer
{
public:
    virtual ~Timer() = default;

    virtual void setInterval(int ms) = 0;
    virtual int interval() const = 0;
    virtual void setEnabled(bool enabled) = 0;
    virtual bool enabled() const = 0;

    // Whether a tick can come: enabled with an interval above 0.
    bool running() const { return enabled() && interval() > 0; }

    // A timer that only keeps something on screen or in step may tick a few
    // milliseconds off its time, so that one wake-up of the program serves
    // several such timers. Timers start exact; the choice counts from the
    // next start.
    virtual void setCoarse(bool /*coarse*/) {}

    // The handler of the tick. It may change the interval or the enabled
    // state of this timer and of any other.
    std::function<void()> onTimeout;
};

class TimerFactory
{
public:
    virtual ~TimerFactory() = default;
    virtual std::unique_ptr<Timer> createTimer() = 0;
};
