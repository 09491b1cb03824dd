#include "platform/fake/FakePlayer.h"

#include "platform/fake/VirtualClock.h"
#include "platform/Numbers.h"

#include <QFileInfo>
#include <algorithm>

FakePlayer::FakePlayer(VirtualClock &clock) : m_clock(clock) {}

bool FakePlayer::loading() const
{
    return m_loaded && m_clock.now() < m_loadReadyAt;
}

double FakePlayer::livePosition() const
{
    // Measured from the last change of state, so that virtual time in any
    // number of steps gives the same exact position.
    if (m_mode != Mode::Playing || loading())
        return m_position;
    const qint64 from = std::max(m_positionTime, m_loadReadyAt);
    const qint64 now = m_clock.now();
    return now > from ? m_position + double(now - from) / 1000.0 * m_rate : m_position;
}

void FakePlayer::settle() const
{
    if (m_mode != Mode::Playing || loading())
        return;
    if (livePosition() >= m_duration) {
        // The end of the media: the player stops by itself.
        m_position = 0;
        m_mode = Mode::Stopped;
        m_atEnd = true;
        m_positionTime = m_clock.now();
    }
}

void FakePlayer::reanchor()
{
    settle();
    m_position = livePosition();
    m_positionTime = m_clock.now();
}

void FakePlayer::setURL(const QString &path)
{
    log.append(QStringLiteral("url ") + path);
    reanchor();
    m_url = path;
    m_atEnd = false;
    m_position = 0;
    if (path.isEmpty() || !QFileInfo(path).isFile()) {
        // An unreadable file leaves the player empty.
        m_loaded = false;
        m_mode = Mode::Empty;
        m_duration = 0;
        return;
    }
    m_loaded = true;
    m_loadReadyAt = m_clock.now() + m_loadDelay;
    m_duration = m_durations.value(path, m_defaultDuration);
    m_mode = Mode::Playing; // auto-start
    m_positionTime = m_clock.now();
}

void FakePlayer::close()
{
    log.append(QStringLiteral("close"));
    m_loaded = false;
    m_mode = Mode::Empty;
    m_position = 0;
    m_duration = 0;
}

int FakePlayer::playState() const
{
    settle();
    if (loading())
        return Transitioning;
    switch (m_mode) {
    case Mode::Empty: return Undefined;
    case Mode::Stopped: return Stopped;
    case Mode::Paused: return Paused;
    case Mode::Playing: return Playing;
    }
    return Undefined;
}

void FakePlayer::play()
{
    log.append(QStringLiteral("play"));
    reanchor();
    if (m_mode == Mode::Empty)
        return;
    if (m_mode == Mode::Stopped)
        m_position = 0;
    m_mode = Mode::Playing;
    m_atEnd = false;
}

void FakePlayer::pause()
{
    log.append(QStringLiteral("pause"));
    reanchor();
    if (m_mode == Mode::Playing)
        m_mode = Mode::Paused;
}

void FakePlayer::stop()
{
    log.append(QStringLiteral("stop"));
    reanchor();
    if (m_mode == Mode::Empty)
        return;
    m_mode = Mode::Stopped;
    m_position = 0;
}

double FakePlayer::currentPosition() const
{
    settle();
    return m_mode == Mode::Empty ? 0.0 : livePosition();
}

void FakePlayer::setCurrentPosition(double seconds)
{
    log.append(QStringLiteral("seek ") + Numbers::numberText(seconds));
    reanchor();
    if (m_mode == Mode::Empty)
        return;
    m_position = std::clamp(seconds, 0.0, m_duration);
    if (m_mode == Mode::Stopped)
        m_mode = Mode::Paused;
    settle();
}

QString FakePlayer::currentPositionString() const
{
    settle();
    if (m_mode == Mode::Empty || m_mode == Mode::Stopped)
        return QString();
    return playerTimeString(livePosition());
}

double FakePlayer::duration() const
{
    return m_loaded && !loading() ? m_duration : 0.0;
}

QString FakePlayer::durationString() const
{
    const double d = duration();
    return d > 0 ? playerTimeString(d) : QString();
}

void FakePlayer::setRate(double rate)
{
    log.append(QStringLiteral("rate ") + Numbers::numberText(rate));
    reanchor();
    m_rate = rate;
}

void FakePlayer::setVolume(int volume)
{
    log.append(QStringLiteral("volume ") + QString::number(volume));
    m_volume = std::clamp(volume, 0, 100);
}
