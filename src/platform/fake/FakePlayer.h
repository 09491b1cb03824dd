#pragma once

#include "platform/PlayerControl.h"

#include <QHash>
#include <QStringList>
#include <functional>

class VirtualClock;

// A deterministic player for tests. Its position advances with the virtual
// clock times the rate while it plays; it reaches the end of the media and
// then reports the stopped state, as a real back-end does. Every command is
// written to a log ("play", "pause", "stop", "seek 12.5", "url a.wav",
// "rate 1.1", "volume 50", "close") so tests can check the order of calls.
class FakePlayer : public PlayerControl
{
public:
    explicit FakePlayer(VirtualClock &clock);

    // Length given to a loaded file; a file may get its own. Files that do
    // not exist on disk do not load.
    void setDefaultDuration(double seconds) { m_defaultDuration = seconds; }
    void setDuration(const QString &path, double seconds) { m_durations.insert(path, seconds); }
    // How long a file takes to load (state 9) in virtual milliseconds.
    void setLoadDelay(qint64 ms) { m_loadDelay = ms; }

    QStringList log;
    void clearLog() { log.clear(); }

    void setURL(const QString &path) override;
    QString URL() const override { return m_url; }
    void close() override;
    int playState() const override;
    void play() override;
    void pause() override;
    void stop() override;
    double currentPosition() const override;
    void setCurrentPosition(double seconds) override;
    QString currentPositionString() const override;
    double duration() const override;
    QString durationString() const override;
    double rate() const override { return m_rate; }
    void setRate(double rate) override;
    void setVolume(int volume) override;
    int volume() const override { return m_volume; }

private:
    enum class Mode { Empty, Stopped, Paused, Playing };
    // Brings the position up to the clock; notices the end of the media.
    void settle() const;
    double livePosition() const;
    void reanchor();
    bool loading() const;

    VirtualClock &m_clock;
    QHash<QString, double> m_durations;
    double m_defaultDuration = 180.0;
    qint64 m_loadDelay = 0;

    QString m_url;
    bool m_loaded = false;
    qint64 m_loadReadyAt = 0;
    double m_duration = 0;
    double m_rate = 1.0;
    int m_volume = 50;

    mutable Mode m_mode = Mode::Empty;
    mutable double m_position = 0;
    mutable qint64 m_positionTime = 0;
    mutable bool m_atEnd = false;
};
