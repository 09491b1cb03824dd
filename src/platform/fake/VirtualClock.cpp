#include "platform/fake/VirtualClock.h"

#include <algorithm>

class VirtualClock::FakeTimer : public Timer
{
public:
    explicit FakeTimer(VirtualClock &clock) : m_clock(clock) { m_clock.add(this); }
    ~FakeTimer() override { m_clock.remove(this); }

    void setInterval(int ms) override
    {
        m_interval = ms < 0 ? 0 : ms;
        restart();
    }
    int interval() const override { return m_interval; }
    void setEnabled(bool enabled) override
    {
        if (enabled == m_enabled)
            return;
        m_enabled = enabled;
        if (enabled)
            restart();
    }
    bool enabled() const override { return m_enabled; }

    void restart()
    {
        m_due = m_clock.m_now + m_interval;
        m_order = ++m_clock.m_sequence;
    }

    qint64 m_due = 0;
    quint64 m_order = 0;

private:
    VirtualClock &m_clock;
    int m_interval = 0;
    bool m_enabled = true;
};

VirtualClock::VirtualClock() = default;
VirtualClock::~VirtualClock() = default;

std::unique_ptr<Timer> VirtualClock::createTimer()
{
    return std::make_unique<FakeTimer>(*this);
}

void VirtualClock::add(FakeTimer *timer)
{
    m_timers.push_back(timer);
}

void VirtualClock::remove(FakeTimer *timer)
{
    m_timers.erase(std::remove(m_timers.begin(), m_timers.end(), timer), m_timers.end());
}

VirtualClock::FakeTimer *VirtualClock::nextDue(qint64 limit) const
{
    FakeTimer *best = nullptr;
    for (FakeTimer *t : m_timers) {
        if (!t->running() || t->m_due > limit)
            continue;
        if (!best || t->m_due < best->m_due || (t->m_due == best->m_due && t->m_order < best->m_order))
            best = t;
    }
    return best;
}

void VirtualClock::advance(qint64 ms)
{
    const qint64 target = m_now + ms;
    while (FakeTimer *t = nextDue(target)) {
        m_now = std::max(m_now, t->m_due);
        // Due again one interval later unless the handler sets a new interval.
        t->m_due = m_now + t->interval();
        t->m_order = ++m_sequence;
        ++m_ticks;
        if (t->onTimeout)
            t->onTimeout();
    }
    m_now = target;
}
