#include "remote/MediaRemote.h"

#include "app/AppContext.h"
#include "player/Form1.h"

#include <QDBusMessage>
#include <QTimer>
#include <QUrl>
#include <algorithm>
#include <cmath>

namespace {

constexpr int WatchMs = 500;
const QString PlayerInterface = QStringLiteral("org.mpris.MediaPlayer2.Player");

qlonglong toUs(double seconds) { return qlonglong(seconds * 1e6); }

} // namespace

MediaRemote::MediaRemote(AppContext &ctx, QDBusConnection bus)
    : ctx(ctx), m_bus(std::move(bus)), m_commands(ctx)
{
    if (!m_bus.isConnected())
        return;
    new RootAdaptor(this);
    m_player = new PlayerAdaptor(this);
    if (!m_bus.registerObject(QLatin1String(ObjectPath), this, QDBusConnection::ExportAdaptors))
        return;
    if (!m_bus.registerService(QLatin1String(ServiceName))) {
        m_bus.unregisterObject(QLatin1String(ObjectPath));
        return;
    }
    m_registered = true;
    m_sent = playerProperties();
    m_watch = ctx.timers().createTimer();
    m_watch->onTimeout = [this] { announceChanges(); };
    m_watch->setInterval(WatchMs);
}

MediaRemote::~MediaRemote()
{
    if (m_registered) {
        m_bus.unregisterService(QLatin1String(ServiceName));
        m_bus.unregisterObject(QLatin1String(ObjectPath));
    }
}

QString MediaRemote::playbackStatus() const
{
    // The play button's state is the run state of the whole program; the
    // player itself may lag behind it while a file loads.
    if (!m_commands.mediaOpen())
        return QStringLiteral("Stopped");
    if (m_commands.playing())
        return QStringLiteral("Playing");
    return ctx.player().playState() == PlayerControl::Stopped ? QStringLiteral("Stopped") : QStringLiteral("Paused");
}

QDBusObjectPath MediaRemote::trackId() const
{
    if (!m_commands.mediaOpen())
        return QDBusObjectPath(QStringLiteral("/org/mpris/MediaPlayer2/TrackList/NoTrack"));
    if (const QString url = ctx.player().URL(); url != m_trackUrl) {
        m_trackUrl = url;
        ++m_trackNumber;
    }
    return QDBusObjectPath(QStringLiteral("/org/quillmere/track/") + QString::number(m_trackNumber));
}

QVariantMap MediaRemote::metadata() const
{
    QVariantMap m;
    m.insert(QStringLiteral("mpris:trackid"), QVariant::fromValue(trackId()));
    if (!m_commands.mediaOpen())
        return m;
    const QString path = ctx.form1()->Label4->Tag;
    m.insert(QStringLiteral("xesam:title"), path.mid(path.lastIndexOf(u'/') + 1));
    m.insert(QStringLiteral("xesam:url"), QUrl::fromLocalFile(path).toString());
    m.insert(QStringLiteral("mpris:length"), toUs(ctx.player().duration()));
    return m;
}

qlonglong MediaRemote::positionUs() const
{
    return m_commands.mediaOpen() ? qMax(0LL, toUs(ctx.player().currentPosition())) : 0;
}

double MediaRemote::rate() const
{
    const double r = ctx.player().rate();
    return r > 0 ? r : 1.0;
}

double MediaRemote::volume() const
{
    return ctx.player().volume() / 100.0;
}

void MediaRemote::setRate(double target)
{
    Form1 *f = m_commands.mediaOpen() ? ctx.form1() : nullptr;
    // Step by step, until the nearest step or a limit of the speed commands.
    for (int i = 0; f && i < 50; ++i) {
        const double before = ctx.player().rate();
        if (target > before + 0.05)
            f->mnuAumentaVelocità_Click();
        else if (target < before - 0.05)
            f->mnuDiminuisciVelocità_Click();
        if (ctx.player().rate() == before)
            break;
    }
    announceChanges();
}

void MediaRemote::setVolume(double volume)
{
    Form1 *f = ctx.form1();
    if (!f)
        return;
    // The click on the bar that puts the thumb at this volume: the bar reads
    // its top as 100 and its bottom as 0, rounding down.
    const int span = f->Image2->Height() - f->Image1->Height();
    const double down = (1.0 - std::clamp(volume, 0.0, 1.0)) * span;
    f->Image2_MouseUp(1, int(std::ceil(down - 1e-9)) + f->Image1->Height() / 2);
    announceChanges();
}

QVariantMap MediaRemote::playerProperties() const
{
    const bool open = m_commands.mediaOpen();
    QVariantMap p;
    p.insert(QStringLiteral("PlaybackStatus"), playbackStatus());
    p.insert(QStringLiteral("Metadata"), metadata());
    p.insert(QStringLiteral("Rate"), rate());
    p.insert(QStringLiteral("Volume"), volume());
    for (const char *name : {"CanGoNext", "CanGoPrevious", "CanPlay", "CanPause", "CanSeek"})
        p.insert(QLatin1String(name), open);
    return p;
}

void MediaRemote::announceChanges()
{
    if (!m_registered)
        return;
    const QVariantMap now = playerProperties();
    QVariantMap changed;
    for (auto it = now.cbegin(); it != now.cend(); ++it)
        if (m_sent.value(it.key()) != it.value())
            changed.insert(it.key(), it.value());
    m_sent = now;
    if (changed.isEmpty())
        return;
    QDBusMessage signal = QDBusMessage::createSignal(QLatin1String(ObjectPath),
                                                     QStringLiteral("org.freedesktop.DBus.Properties"),
                                                     QStringLiteral("PropertiesChanged"));
    signal << PlayerInterface << changed << QStringList();
    m_bus.send(signal);
}

void MediaRemote::seeked()
{
    if (m_player)
        Q_EMIT m_player->Seeked(positionUs());
}

// --- org.mpris.MediaPlayer2 --------------------------------------------------------

RootAdaptor::RootAdaptor(MediaRemote *remote) : QDBusAbstractAdaptor(remote), m_remote(remote) {}

// Both may open windows or ask questions: they run after the call has been
// answered, so that the caller is not kept waiting on the user.
void RootAdaptor::Raise()
{
    QTimer::singleShot(0, this, [this] {
        if (Form1 *f = m_remote->ctx.form1()) {
            f->show();
            f->raise();
            f->activateWindow();
        }
    });
}

void RootAdaptor::Quit()
{
    QTimer::singleShot(0, this, [this] {
        if (Form1 *f = m_remote->ctx.form1())
            f->mnuEsci_Click();
    });
}

// --- org.mpris.MediaPlayer2.Player -------------------------------------------------

PlayerAdaptor::PlayerAdaptor(MediaRemote *remote) : QDBusAbstractAdaptor(remote), m_remote(remote) {}

void PlayerAdaptor::done() { m_remote->announceChanges(); }
void PlayerAdaptor::Next() { m_remote->commands().nextBookmark(); done(); m_remote->seeked(); }
void PlayerAdaptor::Previous() { m_remote->commands().previousBookmark(); done(); m_remote->seeked(); }
void PlayerAdaptor::Pause() { m_remote->commands().pause(); done(); }
void PlayerAdaptor::PlayPause() { m_remote->commands().playPause(); done(); }
void PlayerAdaptor::Stop() { m_remote->commands().stop(); done(); }
void PlayerAdaptor::Play() { m_remote->commands().play(); done(); }

void PlayerAdaptor::Seek(qlonglong Offset)
{
    if (!m_remote->mediaOpen())
        return;
    const double target = m_remote->ctx.player().currentPosition() + Offset / 1e6;
    m_remote->commands().seekTo(qMax(0.0, target));
    m_remote->seeked();
}

void PlayerAdaptor::SetPosition(const QDBusObjectPath &TrackId, qlonglong Position)
{
    // A position for another track, or outside this one, is ignored.
    const QVariantMap meta = m_remote->metadata();
    if (!m_remote->mediaOpen() || TrackId != meta.value(QStringLiteral("mpris:trackid")).value<QDBusObjectPath>()
        || Position < 0 || Position > meta.value(QStringLiteral("mpris:length")).toLongLong())
        return;
    m_remote->commands().seekTo(Position / 1e6);
    m_remote->seeked();
}

// No URI schemes are offered, so there is nothing to open.
void PlayerAdaptor::OpenUri(const QString &) {}
