#pragma once

#include "platform/PlayerControl.h"

#include <QLibrary>
#include <QList>
#include <QObject>
#include <QPair>
#include <QString>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

// The player that the program holds from its first moment: it stands in for
// the real back-end, which lives in the module quillmere-mpv and is loaded
// only when asked (libmpv costs about 100 ms of dynamic loading, which must
// not delay the first paint of the window).
//
// Until the back-end is there, LazyPlayer keeps the seam's contract on its
// own: setURL() keeps the path and the state reads 9 (or 0 with no path);
// play, pause, stop, position, rate and volume calls are recorded and played
// to the back-end in their order once it is there; reads answer from what
// was asked (position as last set or 0, duration 0, rate as last set or
// 1.0). From then on every call goes straight to the back-end.
//
// If the module cannot be loaded, loaded(false) is emitted and the player
// stays empty (state 0); every call remains a harmless no-op, so the program
// goes on without sound.
class LazyPlayer : public QObject, public PlayerControl
{
    Q_OBJECT

public:
    // moduleDir: the folder holding the module, normally the program folder.
    explicit LazyPlayer(QString moduleDir, QObject *parent = nullptr);
    // backendOptions: options for the back-end by name (for libmpv its
    // option names), for a test's own set-up such as a silent audio output.
    using BackendOptions = QList<QPair<QByteArray, QByteArray>>;
    LazyPlayer(QString moduleDir, BackendOptions backendOptions, QObject *parent = nullptr);
    ~LazyPlayer() override;

    // Starts loading the module in a background thread and returns at once;
    // the back-end is then created on this object's thread, the recorded
    // calls are replayed and loaded() is emitted. A second call does nothing.
    // setURL() starts the load by itself if it has not begun.
    void startLoading();
    // Loads the module now if it is not there yet, waiting for a background
    // load that is under way. True when the back-end is there.
    bool ensureLoaded();
    bool isLoaded() const { return m_state == LoadState::Loaded; }
    bool hasFailed() const { return m_state == LoadState::Failed; }
    // The real player once loaded, otherwise null.
    PlayerControl *backend() const { return m_backend.get(); }
    // A further entry point of the loaded module, by name; null before.
    QFunctionPointer resolve(const char *symbol) { return isLoaded() ? m_library.resolve(symbol) : nullptr; }

    void setURL(const QString &path) override;
    QString URL() const override;
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
    double rate() const override;
    void setRate(double rate) override;
    void setVolume(int volume) override;
    int volume() const override;

Q_SIGNALS:
    // Emitted once, when the back-end is there (true) or cannot be (false).
    void loaded(bool ok);

private:
    enum class LoadState { NotStarted, Loading, Loaded, Failed };
    using Call = std::function<void(PlayerControl &)>;

    void finishLoading();
    void record(Call call, bool transport);
    void dropTransport();

    QString m_moduleDir;
    BackendOptions m_backendOptions;
    QLibrary m_library;
    std::thread m_loader;
    bool m_libraryLoaded = false; // written by the loader, read after join
    LoadState m_state = LoadState::NotStarted;
    std::unique_ptr<PlayerControl> m_backend;

    // Calls waiting for the back-end, in order. Transport calls (loading,
    // closing, play, pause, stop, seeks) that a new setURL() makes moot are
    // dropped; rate and volume are kept.
    struct Pending
    {
        Call call;
        bool transport;
    };
    std::vector<Pending> m_pending;

    // What the program has asked for so far.
    QString m_url;
    bool m_hasMedia = false;
    double m_position = 0;
    double m_rate = 1.0;
    int m_volume = 50;
};
