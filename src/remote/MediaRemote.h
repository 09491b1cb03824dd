#pragma once

#include "remote/PlayerCommands.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QObject>
#include <QStringList>
#include <QVariantMap>
#include <memory>

class AppContext;
class Timer;

// The player on the session bus as org.mpris.MediaPlayer2.quillmere, so
// that the desktop's media keys and panels (and scripts) work it. Commands
// go through the player window's routines; the state is read from the
// player. Qt does not announce property changes on the bus by itself, so a
// look every half second compares the state with the last one sent and
// sends PropertiesChanged for what differs. With no session bus there is
// nothing to do and nothing is said.
class MediaRemote : public QObject
{
    Q_OBJECT
public:
    static constexpr const char *ServiceName = "org.mpris.MediaPlayer2.quillmere";
    static constexpr const char *ObjectPath = "/org/mpris/MediaPlayer2";

    MediaRemote(AppContext &ctx, QDBusConnection bus);
    ~MediaRemote() override;

    bool registered() const { return m_registered; }

    // The Player interface's state, as it is sent.
    QString playbackStatus() const;
    QVariantMap metadata() const;
    qlonglong positionUs() const;
    double rate() const;
    double volume() const;
    bool canControl() const { return true; }
    // Writes go through the speed commands and the volume bar, as a user's
    // keys and clicks would.
    void setRate(double rate);
    void setVolume(double volume);
    bool mediaOpen() const { return m_commands.mediaOpen(); }

    PlayerCommands &commands() { return m_commands; }
    AppContext &ctx;

    // Sends PropertiesChanged for what changed since the last look.
    void announceChanges();
    // After a jump in the position: the Seeked signal with the new one.
    void seeked();

private:
    QVariantMap playerProperties() const;
    QDBusObjectPath trackId() const;

    QDBusConnection m_bus;
    PlayerCommands m_commands;
    bool m_registered = false;
    std::unique_ptr<Timer> m_watch;
    QVariantMap m_sent;
    // Each file opened is a new track, even under the same name.
    mutable QString m_trackUrl;
    mutable int m_trackNumber = 0;
    class PlayerAdaptor *m_player = nullptr;
};

class RootAdaptor : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.mpris.MediaPlayer2")
    Q_PROPERTY(bool CanQuit READ yes)
    Q_PROPERTY(bool CanRaise READ yes)
    Q_PROPERTY(bool HasTrackList READ no)
    Q_PROPERTY(QString Identity READ identity)
    Q_PROPERTY(QString DesktopEntry READ desktopEntry)
    Q_PROPERTY(QStringList SupportedUriSchemes READ none)
    Q_PROPERTY(QStringList SupportedMimeTypes READ none)
public:
    explicit RootAdaptor(MediaRemote *remote);
    bool yes() const { return true; }
    bool no() const { return false; }
    QString identity() const { return QStringLiteral("Quillmere"); }
    QString desktopEntry() const { return QStringLiteral("quillmere"); }
    QStringList none() const { return {}; }
public Q_SLOTS:
    void Raise();
    void Quit();

private:
    MediaRemote *m_remote;
};

class PlayerAdaptor : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.mpris.MediaPlayer2.Player")
    Q_PROPERTY(QString PlaybackStatus READ playbackStatus)
    Q_PROPERTY(QString LoopStatus READ loopStatus)
    Q_PROPERTY(double Rate READ rate WRITE setRate)
    Q_PROPERTY(bool Shuffle READ no)
    Q_PROPERTY(QVariantMap Metadata READ metadata)
    Q_PROPERTY(double Volume READ volume WRITE setVolume)
    Q_PROPERTY(qlonglong Position READ position)
    Q_PROPERTY(double MinimumRate READ minimumRate)
    Q_PROPERTY(double MaximumRate READ maximumRate)
    Q_PROPERTY(bool CanGoNext READ mediaOpen)
    Q_PROPERTY(bool CanGoPrevious READ mediaOpen)
    Q_PROPERTY(bool CanPlay READ mediaOpen)
    Q_PROPERTY(bool CanPause READ mediaOpen)
    Q_PROPERTY(bool CanSeek READ mediaOpen)
    Q_PROPERTY(bool CanControl READ yes)
public:
    explicit PlayerAdaptor(MediaRemote *remote);
    QString playbackStatus() const { return m_remote->playbackStatus(); }
    QString loopStatus() const { return QStringLiteral("None"); }
    double rate() const { return m_remote->rate(); }
    QVariantMap metadata() const { return m_remote->metadata(); }
    double volume() const { return m_remote->volume(); }
    void setRate(double rate) { m_remote->setRate(rate); }
    void setVolume(double volume) { m_remote->setVolume(volume); }
    qlonglong position() const { return m_remote->positionUs(); }
    double minimumRate() const { return 0.5; }
    double maximumRate() const { return 5.0; }
    bool mediaOpen() const { return m_remote->mediaOpen(); }
    bool yes() const { return true; }
    bool no() const { return false; }
public Q_SLOTS:
    void Next();
    void Previous();
    void Pause();
    void PlayPause();
    void Stop();
    void Play();
    void Seek(qlonglong Offset);
    void SetPosition(const QDBusObjectPath &TrackId, qlonglong Position);
    void OpenUri(const QString &Uri);
Q_SIGNALS:
    void Seeked(qlonglong Position);

private:
    void done();
    MediaRemote *m_remote;
};
