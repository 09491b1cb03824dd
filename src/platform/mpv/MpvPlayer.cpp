#include "platform/mpv/MpvPlayer.h"
#include "platform/mpv/MpvMedia.h"
#include "platform/mpv/MpvOptions.h"

#include <QFile>
#include <QFileInfo>
#include <QMetaObject>
#include <algorithm>
#include <clocale>
#include <cmath>
#include <cstring>
#include <mpv/client.h>
#include <vector>

namespace {

// Observed properties, by the numeric id that their change events carry.
enum PropertyId : uint64_t {
    TimePosId = 1,
    DurationId,
    PauseId,
    EofReachedId,
    CoreIdleId,
    SeekingId,
    SpeedId,
};

// Replies to asynchronous requests carry a tag: the kind of request in the
// top byte, a serial number below it, so a reply can be matched with the
// latest request of its kind.
enum ReplyKind : uint64_t {
    OtherReply = 0,
    LoadReply = 1,
    SeekReply = 2,
    UnpauseReply = 3,
};
constexpr int KindShift = 56;
constexpr uint64_t SerialMask = (uint64_t(1) << KindShift) - 1;

constexpr uint64_t tag(ReplyKind kind, uint64_t serial)
{
    return (uint64_t(kind) << KindShift) | (serial & SerialMask);
}

// Between two time-pos reports (mpv sends them every 50 to 100 ms while
// playing) the position runs on by the clock, but never further than this:
// if mpv stalls, the position waits for it rather than running away.
constexpr double MaxExtrapolation = 0.5;
// time-pos within this of the length is the end of the media.
constexpr double EndSlack = 0.01;

// mpv takes speeds in this range and keeps the old one for anything else.
constexpr double MinSpeed = 0.01;
constexpr double MaxSpeed = 100.0;

} // namespace

void MpvPlayer::HandleDeleter::operator()(mpv_handle *handle) const
{
    // The order matters. First no more wakeups: once this returns, mpv's
    // thread is no longer inside the callback and never enters it again, so
    // it cannot post to a player that is going away. (A render context for
    // video has to be freed next, before the core goes.) Then the core
    // itself, which waits for mpv's threads to finish.
    mpv_set_wakeup_callback(handle, nullptr, nullptr);
    mpv_terminate_destroy(handle);
}

MpvPlayer::MpvPlayer(QObject *parent) : MpvPlayer(Options(), parent) {}

MpvPlayer::MpvPlayer(const Options &options, QObject *parent) : QObject(parent)
{
    create(options);
}

MpvPlayer::~MpvPlayer() = default;

void MpvPlayer::create(const Options &options)
{
    // libmpv reads and writes numbers with the C library and refuses to be
    // created (mpv_create returns null) unless LC_NUMERIC is "C"; otherwise a
    // German locale would turn "0.5" into a parse error. Qt sets the locale
    // from the environment when the application object is made, so set it
    // back here, right before creating the handle.
    std::setlocale(LC_NUMERIC, "C");
    std::unique_ptr<mpv_handle, HandleDeleter> handle(mpv_create());
    if (!handle)
        return;
    mpv_handle *h = handle.get();

    const auto set = [h](const char *name, const QByteArray &value) {
        mpv_set_option_string(h, name, value.constData());
    };
    for (const MpvOption &option : MpvPlayerOptions)
        mpv_set_option_string(h, option.name, option.value);
    set("volume", QByteArray::number(m_volume));
    for (auto it = options.cbegin(); it != options.cend(); ++it)
        set(it.key().constData(), it.value());

    if (mpv_initialize(h) < 0)
        return;

    mpv_observe_property(h, TimePosId, "time-pos", MPV_FORMAT_DOUBLE);
    mpv_observe_property(h, DurationId, "duration", MPV_FORMAT_DOUBLE);
    mpv_observe_property(h, PauseId, "pause", MPV_FORMAT_FLAG);
    mpv_observe_property(h, EofReachedId, "eof-reached", MPV_FORMAT_FLAG);
    mpv_observe_property(h, CoreIdleId, "core-idle", MPV_FORMAT_FLAG);
    mpv_observe_property(h, SeekingId, "seeking", MPV_FORMAT_FLAG);
    mpv_observe_property(h, SpeedId, "speed", MPV_FORMAT_DOUBLE);

    m_handle = std::move(handle);
    mpv_set_wakeup_callback(h, &MpvPlayer::wakeup, this);
}

// Called on one of mpv's threads whenever the event queue becomes non-empty.
// It must not call mpv, so it only posts one drain to the GUI thread; more
// wakeups before that drain runs are covered by it.
void MpvPlayer::wakeup(void *self)
{
    auto *player = static_cast<MpvPlayer *>(self);
    if (!player->m_drainQueued.exchange(true))
        QMetaObject::invokeMethod(player, &MpvPlayer::drainEvents, Qt::QueuedConnection);
}

void MpvPlayer::drainEvents()
{
    // Cleared before draining: a wakeup that comes while draining posts a
    // new drain, so no event is left waiting.
    m_drainQueued.store(false);
    if (!m_handle)
        return;
    for (;;) {
        const mpv_event *event = mpv_wait_event(m_handle.get(), 0);
        if (!event || event->event_id == MPV_EVENT_NONE)
            break;
        handleEvent(*event);
    }
}

void MpvPlayer::handleEvent(const mpv_event &event)
{
    switch (event.event_id) {
    case MPV_EVENT_PROPERTY_CHANGE:
        handleProperty(event.reply_userdata, event.data);
        break;
    case MPV_EVENT_COMMAND_REPLY:
    case MPV_EVENT_SET_PROPERTY_REPLY:
        handleReply(event.reply_userdata, event.error, event.event_id == MPV_EVENT_COMMAND_REPLY ? event.data : nullptr);
        break;
    case MPV_EVENT_START_FILE: {
        const auto *start = static_cast<const mpv_event_start_file *>(event.data);
        m_lastStartedEntry = start->playlist_entry_id;
        if (m_mode == Mode::Loading && start->playlist_entry_id == m_entryId)
            m_fileStarted = true;
        break;
    }
    case MPV_EVENT_FILE_LOADED:
        if (m_mode == Mode::Loading && m_fileStarted && !m_fileLoaded) {
            m_fileLoaded = true;
            applyLoadIntent();
        }
        break;
    case MPV_EVENT_PLAYBACK_RESTART:
        onPlaybackRestart();
        break;
    case MPV_EVENT_END_FILE: {
        const auto *end = static_cast<const mpv_event_end_file *>(event.data);
        // Ends of files that were replaced or closed on purpose come as
        // MPV_END_FILE_REASON_STOP and mean nothing here. An error on the
        // current file (unreadable, not media) fails the load; so does a
        // file that turned out to be a list of others, which is not
        // followed: stopping clears the entries mpv has just taken from it.
        if (end->playlist_entry_id != m_entryId || m_mode == Mode::Empty || m_mode == Mode::Failed)
            break;
        if (end->reason == MPV_END_FILE_REASON_REDIRECT)
            command(tag(OtherReply, 0), {"stop"});
        if (end->reason == MPV_END_FILE_REASON_ERROR || end->reason == MPV_END_FILE_REASON_REDIRECT)
            failLoad();
        break;
    }
    default:
        break;
    }
}

void MpvPlayer::handleProperty(uint64_t id, const void *data)
{
    const auto *property = static_cast<const mpv_event_property *>(data);
    const bool hasDouble = property->format == MPV_FORMAT_DOUBLE && property->data;
    const bool hasFlag = property->format == MPV_FORMAT_FLAG && property->data;
    const double value = hasDouble ? *static_cast<const double *>(property->data) : 0.0;
    const bool flag = hasFlag && *static_cast<const int *>(property->data) != 0;

    switch (id) {
    case TimePosId:
        if (!hasDouble)
            return;
        m_mpvTimePos = value;
        checkEnd();
        // Only a report made while mpv plays, after any seek and resume
        // have taken effect, moves the position: while paused, time-pos
        // drifts and after a paused seek it is short by the audio buffer,
        // though playback resumes from the right place. At the end, time-pos
        // jumps to the length while the last buffer is still playing.
        if (m_mode == Mode::Playing && !seekBusy() && m_unpauseAcked == m_unpauseSerial && !m_mpvPaused
            && !m_mpvEof)
            anchorAt(value);
        return;
    case DurationId:
        // Before the new file has started, a length still belongs to the
        // file that is being replaced.
        if (m_mode == Mode::Loading && !m_fileStarted)
            return;
        if (m_mode == Mode::Empty || m_mode == Mode::Failed)
            return;
        m_duration = hasDouble && value > 0 ? value : 0.0;
        Q_EMIT durationChanged(m_duration);
        return;
    case PauseId:
        if (!hasFlag)
            return;
        if (!flag)
            m_mpvResumed = true;
        if (flag != m_mpvPaused) {
            m_mpvPaused = flag;
            Q_EMIT backendPauseChanged(flag);
        }
        checkEnd();
        return;
    case EofReachedId:
        m_mpvEof = flag;
        checkEnd();
        return;
    case CoreIdleId:
        m_mpvCoreIdle = flag;
        return;
    case SeekingId:
        m_mpvSeeking = flag;
        return;
    case SpeedId:
        if (hasDouble)
            m_mpvSpeed = value;
        return;
    default:
        return;
    }
}

void MpvPlayer::handleReply(uint64_t replyTag, int error, const void *data)
{
    const auto kind = ReplyKind(replyTag >> KindShift);
    const uint64_t serial = replyTag & SerialMask;
    switch (kind) {
    case LoadReply: {
        if (serial != (m_loadSerial & SerialMask) || m_mode != Mode::Loading)
            return;
        const auto *reply = static_cast<const mpv_event_command *>(data);
        if (error < 0 || !reply) {
            failLoad();
            return;
        }
        // loadfile answers with the playlist entry it made; the start, load
        // and end events of that entry are the ones of this file.
        const mpv_node &result = reply->result;
        if (result.format == MPV_FORMAT_NODE_MAP) {
            for (int i = 0; i < result.u.list->num; ++i) {
                if (std::strcmp(result.u.list->keys[i], "playlist_entry_id") == 0
                    && result.u.list->values[i].format == MPV_FORMAT_INT64)
                    m_entryId = result.u.list->values[i].u.int64;
            }
        }
        if (m_entryId >= 0 && m_entryId == m_lastStartedEntry)
            m_fileStarted = true;
        return;
    }
    case SeekReply:
        if (serial != (m_seekSerial & SerialMask))
            return;
        m_seekAcked = m_seekSerial;
        // A refused seek brings no playback restart: stop waiting for one.
        if (error < 0)
            m_seekInFlight = false;
        return;
    case UnpauseReply:
        if (serial != (m_unpauseSerial & SerialMask))
            return;
        m_unpauseAcked = m_unpauseSerial;
        // The position runs from the moment mpv resumes, not from the call.
        if (m_mode == Mode::Playing && !seekBusy())
            anchorAt(m_anchorPosition);
        return;
    case OtherReply:
        return;
    }
}

void MpvPlayer::onPlaybackRestart()
{
    if (m_mode == Mode::Empty || m_mode == Mode::Failed)
        return;
    if (m_mode == Mode::Loading) {
        if (!m_fileLoaded)
            return;
        m_heldPosition = m_loadSeek;
        if (m_loadWantsStop)
            setMode(Mode::Stopped);
        else
            setMode(m_loadWantsPause ? Mode::Paused : Mode::Playing);
        if (m_mode == Mode::Playing)
            anchorAt(m_loadSeek);
    }
    // mpv may merge seeks that follow each other quickly into one restart;
    // a restart counts for the latest seek once mpv has taken that seek
    // (mpv's core runs a seek right after accepting it, so the next restart
    // is that seek's).
    if (m_seekInFlight && !m_seekUnsent && m_seekAcked == m_seekSerial) {
        m_seekInFlight = false;
        if (m_mode == Mode::Playing)
            anchorAt(m_seekTarget);
        Q_EMIT seekSettled(m_mpvTimePos);
    }
    checkEnd();
}

// The end of the media: mpv has run out of data (eof-reached) and, having
// played the last buffer, paused itself there (keep-open). Waiting for that
// pause keeps the last words audible: eof-reached comes while the audio
// output still holds a few hundred milliseconds of sound. While playing,
// only a pause that mpv reported after it took our resume counts; an older
// one may still be on its way. When the rest of the media plays out in less
// time than mpv takes to report (a resume just before the end), mpv may
// report no resume at all, only the pause it was already in: then the
// resume it has acknowledged and time-pos standing at the length tell it.
void MpvPlayer::checkEnd()
{
    if (!m_mpvEof || !m_mpvPaused || seekBusy())
        return;
    const bool playedOut = m_mpvResumed
        || (m_unpauseAcked == m_unpauseSerial && m_duration > 0 && m_mpvTimePos >= m_duration - EndSlack);
    if (m_mode == Mode::Paused || (m_mode == Mode::Playing && playedOut))
        setMode(Mode::Stopped);
}

int MpvPlayer::playState() const
{
    switch (m_mode) {
    case Mode::Empty: return Undefined;
    case Mode::Loading: return Transitioning;
    case Mode::Playing: return Playing;
    case Mode::Paused: return Paused;
    case Mode::Stopped: return Stopped;
    case Mode::Failed: return Stopped;
    }
    return Undefined;
}

void MpvPlayer::setMode(Mode mode)
{
    const int before = playState();
    m_mode = mode;
    if (playState() != before)
        Q_EMIT stateChanged(playState());
}

void MpvPlayer::anchorAt(double position)
{
    m_anchorPosition = position;
    m_anchorClock.start();
}

double MpvPlayer::playingPosition() const
{
    if (seekBusy())
        return m_seekTarget;
    double position = m_anchorPosition;
    // Until mpv has taken a resume, the position stands where it resumes.
    if (m_unpauseAcked == m_unpauseSerial && m_anchorClock.isValid()) {
        const double elapsed = double(m_anchorClock.nsecsElapsed()) / 1e9;
        position += std::min(elapsed, MaxExtrapolation) * m_rate;
    }
    if (m_duration > 0)
        position = std::min(position, m_duration);
    return position;
}

double MpvPlayer::currentPosition() const
{
    switch (m_mode) {
    case Mode::Empty:
    case Mode::Stopped:
    case Mode::Failed:
        return 0.0;
    case Mode::Loading:
        return m_loadSeek;
    case Mode::Paused:
        return m_heldPosition;
    case Mode::Playing:
        return playingPosition();
    }
    return 0.0;
}

QString MpvPlayer::currentPositionString() const
{
    if (m_mode == Mode::Empty || m_mode == Mode::Stopped || m_mode == Mode::Failed)
        return QString();
    return playerTimeString(currentPosition());
}

double MpvPlayer::duration() const
{
    return m_mode == Mode::Empty || m_mode == Mode::Failed ? 0.0 : m_duration;
}

QString MpvPlayer::durationString() const
{
    const double length = duration();
    return length > 0 ? playerTimeString(length) : QString();
}

void MpvPlayer::command(uint64_t replyTag, std::initializer_list<QByteArray> args)
{
    if (!m_handle)
        return;
    std::vector<const char *> argv;
    argv.reserve(args.size() + 1);
    for (const QByteArray &arg : args)
        argv.push_back(arg.constData());
    argv.push_back(nullptr);
    // mpv parses and copies the arguments before this returns.
    mpv_command_async(m_handle.get(), replyTag, argv.data());
}

void MpvPlayer::sendPause(bool paused)
{
    if (!m_handle)
        return;
    int flag = paused ? 1 : 0;
    uint64_t replyTag = tag(OtherReply, 0);
    if (!paused) {
        replyTag = tag(UnpauseReply, ++m_unpauseSerial);
        m_mpvResumed = false;
    }
    mpv_set_property_async(m_handle.get(), replyTag, "pause", MPV_FORMAT_FLAG, &flag);
}

void MpvPlayer::requestSeek(double seconds)
{
    m_seekTarget = seconds;
    m_seekUnsent = true;
    scheduleFlush();
}

// A seek is sent from the event loop rather than at once, so that the
// program's pause, which writes the position and then pauses, reaches mpv
// as pause first and seek second: nothing then plays between the two.
// pause() and play() send a waiting seek themselves.
void MpvPlayer::scheduleFlush()
{
    if (m_flushQueued)
        return;
    m_flushQueued = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_flushQueued = false;
            flushSeek();
        },
        Qt::QueuedConnection);
}

void MpvPlayer::flushSeek()
{
    if (!m_seekUnsent)
        return;
    m_seekUnsent = false;
    if (m_mode == Mode::Empty || m_mode == Mode::Failed || (m_mode == Mode::Loading && !m_fileLoaded))
        return;
    m_seekInFlight = true;
    // "absolute" with a negative number would count from the end; targets
    // are never negative here. The target goes as a number, not as text
    // that mpv would parse by the C library's numeric locale.
    mpv_node args[3];
    mpv_node_list list{3, args, nullptr};
    args[0].format = MPV_FORMAT_STRING;
    args[0].u.string = const_cast<char *>("seek");
    args[1].format = MPV_FORMAT_DOUBLE;
    args[1].u.double_ = m_seekTarget;
    args[2].format = MPV_FORMAT_STRING;
    args[2].u.string = const_cast<char *>("absolute+exact");
    mpv_node root;
    root.format = MPV_FORMAT_NODE_ARRAY;
    root.u.list = &list;
    if (m_handle)
        mpv_command_node_async(m_handle.get(), tag(SeekReply, ++m_seekSerial), &root);
}

void MpvPlayer::applyLoadIntent()
{
    if (m_duration > 0 && m_loadSeek >= m_duration)
        m_loadWantsStop = true;
    if (m_loadWantsStop) {
        m_loadSeek = 0;
        requestSeek(0);
        flushSeek();
        return;
    }
    if (m_loadSeek > 0) {
        requestSeek(m_loadSeek);
        flushSeek();
    }
    if (!m_loadWantsPause)
        sendPause(false);
}

void MpvPlayer::setURL(const QString &path)
{
    if (!m_handle)
        return;
    if (path.isEmpty()) {
        m_url.clear();
        unload("stop");
        return;
    }
    m_url = path;
    m_fileStarted = false;
    m_fileLoaded = false;
    m_entryId = -1;
    m_loadWantsPause = false;
    m_loadWantsStop = false;
    m_loadSeek = 0;
    m_seekUnsent = false;
    m_seekInFlight = false;
    m_heldPosition = 0;
    m_duration = 0;
    m_mpvEof = false;
    setMode(Mode::Loading);

    // The file loads paused; once it is ready, the calls made meanwhile
    // (a seek, a pause) are applied, and only then does it play, so no
    // sound comes from a place that the program has already left.
    sendPause(true);
    // A local path goes to mpv absolute, so that a name with a colon is
    // not taken for a protocol.
    const QFileInfo info(path);
    const QString target = info.exists() ? info.absoluteFilePath() : path;
    command(tag(LoadReply, ++m_loadSerial), {"loadfile", QFile::encodeName(target), "replace"});
}

void MpvPlayer::unload(const char *how)
{
    m_fileStarted = false;
    m_fileLoaded = false;
    m_entryId = -1;
    m_seekUnsent = false;
    m_seekInFlight = false;
    m_duration = 0;
    m_heldPosition = 0;
    m_loadSeek = 0;
    setMode(Mode::Empty);
    command(tag(OtherReply, 0), {how});
}

void MpvPlayer::failLoad()
{
    m_fileStarted = false;
    m_fileLoaded = false;
    m_seekUnsent = false;
    m_seekInFlight = false;
    m_duration = 0;
    m_heldPosition = 0;
    setMode(Mode::Failed);
    Q_EMIT loadFailed(m_url);
}

void MpvPlayer::close()
{
    if (!m_handle)
        return;
    unload("stop");
}

void MpvPlayer::play()
{
    switch (m_mode) {
    case Mode::Empty:
        return;
    case Mode::Failed:
        setURL(m_url);
        return;
    case Mode::Loading:
        m_loadWantsPause = false;
        m_loadWantsStop = false;
        if (m_fileLoaded) {
            flushSeek();
            sendPause(false);
        }
        return;
    case Mode::Playing:
        flushSeek();
        return;
    case Mode::Stopped:
        // From the stop, and from the end of the media, playing starts over.
        m_seekUnsent = false;
        requestSeek(0);
        m_heldPosition = 0;
        break;
    case Mode::Paused:
        break;
    }
    flushSeek();
    anchorAt(m_heldPosition);
    setMode(Mode::Playing);
    sendPause(false);
}

void MpvPlayer::pause()
{
    switch (m_mode) {
    case Mode::Empty:
    case Mode::Failed:
    case Mode::Paused:
    case Mode::Stopped:
        return;
    case Mode::Loading:
        m_loadWantsPause = true;
        if (m_fileLoaded)
            sendPause(true);
        return;
    case Mode::Playing:
        break;
    }
    m_heldPosition = playingPosition();
    setMode(Mode::Paused);
    sendPause(true);
    // Playback will resume exactly at the position now reported: either the
    // seek the program has just asked for, or a seek to where the position
    // stood at this call (the audio output would otherwise drift on by up
    // to a buffer while it drains).
    if (!seekBusy())
        requestSeek(m_heldPosition);
    flushSeek();
}

void MpvPlayer::stop()
{
    switch (m_mode) {
    case Mode::Empty:
    case Mode::Failed:
        return;
    case Mode::Loading:
        m_loadWantsStop = true;
        m_loadWantsPause = true;
        m_loadSeek = 0;
        if (m_fileLoaded) {
            sendPause(true);
            requestSeek(0);
            flushSeek();
        }
        return;
    case Mode::Playing:
    case Mode::Paused:
    case Mode::Stopped:
        break;
    }
    m_heldPosition = 0;
    setMode(Mode::Stopped);
    sendPause(true);
    requestSeek(0);
    flushSeek();
}

void MpvPlayer::setCurrentPosition(double seconds)
{
    if (m_mode == Mode::Empty || m_mode == Mode::Failed)
        return;
    // A negative position is the start. (mpv would count a negative
    // absolute seek from the end.)
    if (!(seconds > 0))
        seconds = 0;
    if (m_mode == Mode::Loading) {
        // A seek after a stop holds there, as it does on a loaded file.
        m_loadSeek = seconds;
        m_loadWantsStop = false;
        if (m_fileLoaded) {
            if (m_duration > 0 && seconds >= m_duration) {
                m_loadWantsStop = true;
                sendPause(true);
            }
            requestSeek(m_duration > 0 ? std::min(seconds, m_duration) : seconds);
        }
        return;
    }
    if (m_duration > 0 && seconds >= m_duration) {
        // Beyond the end lands at the end, which is the stopped state. Pause
        // too, so that the last buffer is not heard after the state changed.
        setMode(Mode::Stopped);
        m_heldPosition = 0;
        sendPause(true);
        requestSeek(m_duration);
        return;
    }
    if (m_mode == Mode::Stopped)
        setMode(Mode::Paused);
    if (m_mode == Mode::Paused)
        m_heldPosition = seconds;
    requestSeek(seconds);
}

void MpvPlayer::setRate(double rate)
{
    if (!m_handle || !(rate >= MinSpeed && rate <= MaxSpeed))
        return;
    // The position so far ran at the old rate.
    if (m_mode == Mode::Playing && !seekBusy())
        anchorAt(playingPosition());
    m_rate = rate;
    mpv_set_property_async(m_handle.get(), tag(OtherReply, 0), "speed", MPV_FORMAT_DOUBLE, &rate);
}

void MpvPlayer::setVolume(int volume)
{
    if (!m_handle)
        return;
    // mpv accepts -1 to 1000 (above 100 amplifies); the program's scale
    // ends at 100.
    m_volume = std::clamp(volume, 0, 100);
    double value = m_volume;
    mpv_set_property_async(m_handle.get(), tag(OtherReply, 0), "volume", MPV_FORMAT_DOUBLE, &value);
}

QByteArray MpvPlayer::propertyText(const char *name) const
{
    if (!m_handle)
        return QByteArray();
    char *text = mpv_get_property_string(m_handle.get(), name);
    if (!text)
        return QByteArray();
    QByteArray result(text);
    mpv_free(text);
    return result;
}

PlayerControl *quillmere_create_player()
{
    return quillmere_create_player_with_options(nullptr);
}

PlayerControl *quillmere_create_player_with_options(const char *const *namesAndValues)
{
    // Video stays off until a media window shows it; the caller's options
    // (a test's audio output) come on top.
    MpvPlayer::Options options = videoPlayerOptions();
    for (const char *const *p = namesAndValues; p && p[0] && p[1]; p += 2)
        options.insert(p[0], p[1]);
    auto *player = new MpvPlayer(options);
    if (!player->isValid()) {
        delete player;
        return nullptr;
    }
    return player;
}
