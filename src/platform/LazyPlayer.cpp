#include "platform/LazyPlayer.h"

#include <QMetaObject>
#include <algorithm>
#include <cmath>

namespace {

// The module's entry point (see platform/mpv/MpvPlayer.h).
using CreatePlayer = PlayerControl *(*)(const char *const *);
const char *const EntryPoint = "quillmere_create_player_with_options";

} // namespace

LazyPlayer::LazyPlayer(QString moduleDir, QObject *parent) : LazyPlayer(std::move(moduleDir), {}, parent) {}

LazyPlayer::LazyPlayer(QString moduleDir, BackendOptions backendOptions, QObject *parent)
    : QObject(parent), m_moduleDir(std::move(moduleDir)), m_backendOptions(std::move(backendOptions)),
      m_library(m_moduleDir + QStringLiteral("/quillmere-mpv"))
{
    // libmpv starts threads and registers handlers that must not vanish
    // under them: once loaded, the module stays until the process ends.
    m_library.setLoadHints(QLibrary::PreventUnloadHint);
}

LazyPlayer::~LazyPlayer()
{
    // A load still running must end before this object does; the queued
    // call it posted is dropped with the object.
    if (m_loader.joinable())
        m_loader.join();
    m_backend.reset();
}

void LazyPlayer::startLoading()
{
    if (m_state != LoadState::NotStarted)
        return;
    m_state = LoadState::Loading;
    m_loader = std::thread([this] {
        // Only the dynamic loading happens here; the player itself is made
        // on this object's thread, where it will live and get its events.
        m_libraryLoaded = m_library.load();
        QMetaObject::invokeMethod(this, [this] { finishLoading(); }, Qt::QueuedConnection);
    });
}

bool LazyPlayer::ensureLoaded()
{
    switch (m_state) {
    case LoadState::Loaded:
        return true;
    case LoadState::Failed:
        return false;
    case LoadState::NotStarted:
        m_state = LoadState::Loading;
        m_libraryLoaded = m_library.load();
        break;
    case LoadState::Loading:
        break;
    }
    finishLoading();
    return isLoaded();
}

// Runs once, on this object's thread: from the loader's queued call or from
// ensureLoaded(), whichever comes first.
void LazyPlayer::finishLoading()
{
    if (m_state != LoadState::Loading)
        return;
    if (m_loader.joinable())
        m_loader.join();

    PlayerControl *player = nullptr;
    if (m_libraryLoaded) {
        if (auto create = reinterpret_cast<CreatePlayer>(m_library.resolve(EntryPoint))) {
            std::vector<const char *> options;
            for (const auto &[name, value] : m_backendOptions) {
                options.push_back(name.constData());
                options.push_back(value.constData());
            }
            options.push_back(nullptr);
            player = create(options.data());
        }
    }
    if (!player) {
        qWarning("The player back-end could not be loaded (%s); media will not play.",
                 qPrintable(m_libraryLoaded ? QStringLiteral("libmpv did not start") : m_library.errorString()));
        m_state = LoadState::Failed;
        m_pending.clear();
        m_hasMedia = false;
        m_position = 0;
        Q_EMIT loaded(false);
        return;
    }

    m_backend.reset(player);
    m_state = LoadState::Loaded;
    std::vector<Pending> pending;
    pending.swap(m_pending);
    for (const Pending &call : pending)
        call.call(*m_backend);
    Q_EMIT loaded(true);
}

void LazyPlayer::record(Call call, bool transport)
{
    if (m_state == LoadState::Failed)
        return;
    m_pending.push_back({std::move(call), transport});
}

void LazyPlayer::dropTransport()
{
    m_pending.erase(std::remove_if(m_pending.begin(), m_pending.end(), [](const Pending &p) { return p.transport; }),
                    m_pending.end());
}

void LazyPlayer::setURL(const QString &path)
{
    if (m_backend) {
        m_backend->setURL(path);
        return;
    }
    // A new file (or none) replaces whatever was asked of the previous one.
    dropTransport();
    m_url = path;
    m_position = 0;
    m_hasMedia = !path.isEmpty() && m_state != LoadState::Failed;
    if (!m_hasMedia)
        return;
    record([path](PlayerControl &p) { p.setURL(path); }, true);
    // A file given before the window asked for the back-end (one on the
    // command line): begin loading now, still without blocking.
    startLoading();
}

QString LazyPlayer::URL() const
{
    return m_backend ? m_backend->URL() : m_url;
}

void LazyPlayer::close()
{
    if (m_backend) {
        m_backend->close();
        return;
    }
    dropTransport();
    m_hasMedia = false;
    m_position = 0;
}

int LazyPlayer::playState() const
{
    if (m_backend)
        return m_backend->playState();
    return m_hasMedia ? Transitioning : Undefined;
}

void LazyPlayer::play()
{
    if (m_backend) {
        m_backend->play();
        return;
    }
    if (m_hasMedia)
        record([](PlayerControl &p) { p.play(); }, true);
}

void LazyPlayer::pause()
{
    if (m_backend) {
        m_backend->pause();
        return;
    }
    if (m_hasMedia)
        record([](PlayerControl &p) { p.pause(); }, true);
}

void LazyPlayer::stop()
{
    if (m_backend) {
        m_backend->stop();
        return;
    }
    if (!m_hasMedia)
        return;
    m_position = 0;
    record([](PlayerControl &p) { p.stop(); }, true);
}

double LazyPlayer::currentPosition() const
{
    if (m_backend)
        return m_backend->currentPosition();
    return m_hasMedia ? m_position : 0.0;
}

void LazyPlayer::setCurrentPosition(double seconds)
{
    if (m_backend) {
        m_backend->setCurrentPosition(seconds);
        return;
    }
    if (!m_hasMedia)
        return;
    m_position = seconds > 0 ? seconds : 0.0;
    record([seconds](PlayerControl &p) { p.setCurrentPosition(seconds); }, true);
}

QString LazyPlayer::currentPositionString() const
{
    if (m_backend)
        return m_backend->currentPositionString();
    return m_hasMedia ? playerTimeString(m_position) : QString();
}

double LazyPlayer::duration() const
{
    return m_backend ? m_backend->duration() : 0.0;
}

QString LazyPlayer::durationString() const
{
    return m_backend ? m_backend->durationString() : QString();
}

double LazyPlayer::rate() const
{
    return m_backend ? m_backend->rate() : m_rate;
}

void LazyPlayer::setRate(double rate)
{
    if (m_backend) {
        m_backend->setRate(rate);
        return;
    }
    if (!std::isfinite(rate) || rate <= 0)
        return;
    m_rate = rate;
    record([rate](PlayerControl &p) { p.setRate(rate); }, false);
}

void LazyPlayer::setVolume(int volume)
{
    if (m_backend) {
        m_backend->setVolume(volume);
        return;
    }
    m_volume = std::clamp(volume, 0, 100);
    record([volume](PlayerControl &p) { p.setVolume(volume); }, false);
}

int LazyPlayer::volume() const
{
    return m_backend ? m_backend->volume() : m_volume;
}
