#pragma once

#include "platform/PlayerControl.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QMap>
#include <QObject>
#include <QString>
#include <atomic>
#include <cstdint>
#include <memory>

#if defined(QM_MPV_LIBRARY)
#define QM_MPV_EXPORT Q_DECL_EXPORT
#else
#define QM_MPV_EXPORT Q_DECL_IMPORT
#endif

struct mpv_handle;
struct mpv_event;

// The player back-end on libmpv, in the module quillmere-mpv that the
// program loads at run time (see LazyPlayer).
//
// Every call returns at once: commands go to mpv asynchronously, and every
// read answers from a mirror of the player's state that mpv's events keep up
// to date on the GUI thread. The mirror is also what makes the program's
// habit of reading a position back right after writing it work:
// setCurrentPosition(t) reads t at once, before mpv has moved.
//
// How the states map onto mpv:
// - 9 from setURL() until the file has loaded and playback has restarted;
//   calls made meanwhile are kept and applied when the file is ready.
// - 3 and 2 follow the calls play() and pause() at once.
// - 1 after stop(), or once mpv has played the media to its end (keep-open
//   holds the file open and paused at the end, with eof-reached set).
// - 1 also when a file would not load (not media, empty, truncated beyond
//   use, a playlist): the program then treats it as a stopped file, and a
//   play tries to load it again.
// - 0 with nothing loaded, or after close().
class QM_MPV_EXPORT MpvPlayer : public QObject, public PlayerControl
{
    Q_OBJECT

public:
    // mpv options by name, set after this player's own defaults, so they
    // override them (tests route the audio to a file with "ao"="pcm", a
    // video widget will set "vo" and friends).
    using Options = QMap<QByteArray, QByteArray>;

    explicit MpvPlayer(QObject *parent = nullptr);
    explicit MpvPlayer(const Options &options, QObject *parent = nullptr);
    ~MpvPlayer() override;

    MpvPlayer(const MpvPlayer &) = delete;
    MpvPlayer &operator=(const MpvPlayer &) = delete;

    // False when mpv could not be created or started: every call is then a
    // no-op and the player stays in state 0.
    bool isValid() const { return m_handle != nullptr; }
    // The handle, for the video widget's render context (see MpvMedia.h).
    mpv_handle *handle() const { return m_handle.get(); }

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

    // What mpv itself last reported, for tests and measurements: its
    // time-pos (which the position above deliberately does not always
    // follow) and its pause flag.
    double backendTimePos() const { return m_mpvTimePos; }
    bool backendPaused() const { return m_mpvPaused; }
    // Reads an mpv property as text, synchronously. It waits for mpv's core,
    // so it is for tests and diagnostics only, never for the program's reads.
    QByteArray propertyText(const char *name) const;

Q_SIGNALS:
    void stateChanged(int state);
    void durationChanged(double seconds);
    // mpv has carried out the latest seek and playback has restarted there;
    // backendPosition is mpv's own time-pos at that moment.
    void seekSettled(double backendPosition);
    // mpv's pause flag changed, that is, a pause or resume took effect.
    void backendPauseChanged(bool paused);
    // The file given to setURL() could not be played; the state is now 0.
    void loadFailed(const QString &path);

private:
    // Failed: the file would not load. It reads as stopped, so the window's
    // end watch returns to its stopped state; play() tries the file again.
    enum class Mode { Empty, Loading, Playing, Paused, Stopped, Failed };

    struct HandleDeleter
    {
        void operator()(mpv_handle *handle) const;
    };

    void create(const Options &options);
    static void wakeup(void *self);
    void drainEvents();
    void handleEvent(const mpv_event &event);
    void handleProperty(uint64_t id, const void *property);
    void handleReply(uint64_t tag, int error, const void *data);
    void onPlaybackRestart();
    void checkEnd();

    void setMode(Mode mode);
    double playingPosition() const;
    void anchorAt(double position);
    bool seekBusy() const { return m_seekUnsent || m_seekInFlight; }

    void requestSeek(double seconds);
    void scheduleFlush();
    void flushSeek();
    void sendPause(bool paused);
    void applyLoadIntent();
    void unload(const char *command);
    void failLoad();

    void command(uint64_t tag, std::initializer_list<QByteArray> args);

    std::unique_ptr<mpv_handle, HandleDeleter> m_handle;
    std::atomic<bool> m_drainQueued{false};
    bool m_flushQueued = false;

    Mode m_mode = Mode::Empty;
    QString m_url;

    // The file being loaded: the serial of its loadfile command, the
    // playlist entry mpv gave it, and how far it got.
    uint64_t m_loadSerial = 0;
    int64_t m_entryId = -1;
    int64_t m_lastStartedEntry = -1;
    bool m_fileStarted = false;
    bool m_fileLoaded = false;
    // What the program asked for while the file loaded.
    bool m_loadWantsPause = false;
    bool m_loadWantsStop = false;
    double m_loadSeek = 0;

    // Seeks: the latest target, whether it still waits to be sent, and
    // whether mpv has yet to restart playback after it.
    double m_seekTarget = 0;
    bool m_seekUnsent = false;
    bool m_seekInFlight = false;
    uint64_t m_seekSerial = 0;
    uint64_t m_seekAcked = 0;

    // Resumes: the position only runs on once mpv has taken the resume.
    uint64_t m_unpauseSerial = 0;
    uint64_t m_unpauseAcked = 0;

    // Position while playing: the last known position and the clock since.
    double m_anchorPosition = 0;
    QElapsedTimer m_anchorClock;
    // Position while paused: where the player was asked to hold.
    double m_heldPosition = 0;

    double m_duration = 0;
    double m_rate = 1.0;
    int m_volume = 50;

    // mpv's own reports.
    double m_mpvTimePos = 0;
    bool m_mpvPaused = true;
    bool m_mpvEof = false;
    bool m_mpvCoreIdle = true;
    bool m_mpvSeeking = false;
    // mpv has reported itself unpaused since our latest resume.
    bool m_mpvResumed = false;
    double m_mpvSpeed = 1.0;
};

// The module's entry point, resolved by name after the module is loaded.
// Returns a new player owned by the caller, or null when mpv cannot start.
extern "C" QM_MPV_EXPORT PlayerControl *quillmere_create_player();
// The same with mpv options: names and values in turn, ended by a null.
extern "C" QM_MPV_EXPORT PlayerControl *quillmere_create_player_with_options(const char *const *namesAndValues);
