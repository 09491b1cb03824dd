#pragma once

#include "platform/Timer.h"

#include <QtGlobal>
#include <functional>
#include <vector>

// Virtual time for tests: timers made by this clock fire only when the test
// advances it, in the order of their due times, with `now()` set to each due
// time as they fire. Anything else that depends on time (the fake player)
// reads now().
class VirtualClock : public TimerFactory
{
public:
    VirtualClock();
    ~VirtualClock() override;

    qint64 now() const { return m_now; }

    // Moves time forward by `ms`, firing every tick that falls due on the way
    // (a timer that fires is due again one interval later).
    void advance(qint64 ms);

    std::unique_ptr<Timer> createTimer() override;

    // Number of ticks fired so far, for tests that count them.
    int ticksFired() const { return m_ticks; }

private:
    class FakeTimer;
    friend class FakeTimer;

    void add(FakeTimer *timer);
    void remove(FakeTimer *timer);
    FakeTimer *nextDue(qint64 limit) const;

    qint64 m_now = 0;
    quint64 m_sequence = 0;
    int m_ticks = 0;
    std::vector<FakeTimer *> m_timers;
};

// Hands out the timers of a clock that someone else owns.
class VirtualClockTimers : public TimerFactory
{
public:
    explicit VirtualClockTimers(VirtualClock &clock) : m_clock(clock) {}
    std::unique_ptr<Timer> createTimer() override { return m_clock.createTimer(); }

private:
    VirtualClock &m_clock;
};
