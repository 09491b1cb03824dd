// The libmpv back-end's timing, on real libmpv with the null audio output
// (which keeps real time like a sound card):
// - load: from setURL() until the file plays, the first load of a handle
//   and the following ones;
// - pause latency: from the program's pause (a step back, then pause) until
//   mpv reports itself paused, and until it has carried out the step back;
// - seek error: mpv's own position once an exact seek has settled, against
//   the position asked for, while playing and while paused.
// Prints figures only.

#include "platform/mpv/MpvPlayer.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <vector>

namespace {

constexpr int Rate = 8000;

bool writeWav(const QString &path, double seconds)
{
    const int count = int(seconds * Rate);
    QByteArray out;
    const auto u32 = [&out](quint32 v) {
        for (int i = 0; i < 4; ++i)
            out.append(char((v >> (8 * i)) & 0xff));
    };
    const auto u16 = [&out](quint16 v) {
        out.append(char(v & 0xff));
        out.append(char(v >> 8));
    };
    out.append("RIFF");
    u32(36 + count * 2);
    out.append("WAVEfmt ");
    u32(16);
    u16(1);
    u16(1);
    u32(Rate);
    u32(Rate * 2);
    u16(2);
    u16(16);
    out.append("data");
    u32(count * 2);
    for (int i = 0; i < count; ++i)
        u16(quint16(std::lround(12000 * std::sin(2 * M_PI * 300.0 * i / Rate))));
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(out) == out.size();
}

// Runs the event loop until done() holds; false on time-out.
bool waitFor(const std::function<bool()> &done, int timeoutMs = 5000)
{
    if (done())
        return true;
    QEventLoop loop;
    QTimer poll;
    QElapsedTimer clock;
    clock.start();
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        if (done() || clock.elapsed() > timeoutMs)
            loop.quit();
    });
    poll.start(1);
    loop.exec();
    return done();
}

void idle(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

struct Stats
{
    double median = 0, p90 = 0, worst = 0;
};

Stats stats(std::vector<double> v)
{
    Stats s;
    if (v.empty())
        return s;
    std::sort(v.begin(), v.end());
    s.median = v[v.size() / 2];
    s.p90 = v[std::min(v.size() - 1, v.size() * 9 / 10)];
    s.worst = v.back();
    return s;
}

void print(const char *what, const char *unit, const Stats &s, size_t n)
{
    std::printf("%-44s median %8.3f  p90 %8.3f  worst %8.3f %s  (n=%zu)\n", what, s.median, s.p90, s.worst, unit, n);
}

double msSince(const QElapsedTimer &clock)
{
    return double(clock.nsecsElapsed()) / 1e6;
}

// Everything a measurement waits for arrives through the player's signals,
// time-stamped on the GUI thread as the program would see it.
struct Watch
{
    explicit Watch(MpvPlayer &player)
    {
        QObject::connect(&player, &MpvPlayer::backendPauseChanged, &player, [this](bool paused) {
            if (paused && pausedAt < 0)
                pausedAt = msSince(clock);
            if (!paused && resumedAt < 0)
                resumedAt = msSince(clock);
        });
        QObject::connect(&player, &MpvPlayer::seekSettled, &player, [this](double position) {
            settledAt = msSince(clock);
            settledPosition = position;
        });
    }
    void start()
    {
        pausedAt = resumedAt = settledAt = -1;
        clock.start();
    }
    QElapsedTimer clock;
    double pausedAt = -1, resumedAt = -1, settledAt = -1, settledPosition = -1;
};

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QM_AUDIO_OUTPUT"))
        qputenv("QM_AUDIO_OUTPUT", "null");
    QCoreApplication app(argc, argv);
    const int rounds = 50;

    QTemporaryDir dir;
    const QString mediaA = dir.filePath(QStringLiteral("a.wav"));
    const QString mediaB = dir.filePath(QStringLiteral("b.wav"));
    if (!writeWav(mediaA, 120) || !writeWav(mediaB, 60)) {
        std::fprintf(stderr, "cannot write the test media\n");
        return 1;
    }

    QElapsedTimer clock;
    clock.start();
    MpvPlayer player;
    const double createMs = msSince(clock);
    if (!player.isValid()) {
        std::fprintf(stderr, "libmpv did not start\n");
        return 1;
    }
    Watch watch(player);
    const auto loaded = [&] { return player.playState() != PlayerControl::Transitioning; };

    // Load.
    std::vector<double> firstLoad, nextLoads;
    clock.start();
    player.setURL(mediaA);
    if (!waitFor(loaded) || player.playState() != PlayerControl::Playing) {
        std::fprintf(stderr, "the first file did not load\n");
        return 1;
    }
    firstLoad.push_back(msSince(clock));
    for (int i = 0; i < 10; ++i) {
        clock.start();
        player.setURL(i % 2 ? mediaA : mediaB);
        waitFor(loaded);
        nextLoads.push_back(msSince(clock));
        idle(50);
    }

    // Pause latency, as the program pauses: step back 3 s, then pause.
    player.setURL(mediaA);
    waitFor(loaded);
    player.setCurrentPosition(10);
    waitFor([&] { return watch.settledAt >= 0; });
    std::vector<double> toPaused, toStepBack, stepBackError, resumeLatency;
    auto *random = QRandomGenerator::global();
    for (int i = 0; i < rounds; ++i) {
        idle(150 + int(random->bounded(150)));
        watch.start();
        const double asked = player.currentPosition() - 3;
        player.setCurrentPosition(asked);
        player.pause();
        if (!waitFor([&] { return watch.pausedAt >= 0 && watch.settledAt >= 0; })) {
            std::fprintf(stderr, "pause %d did not settle\n", i);
            continue;
        }
        toPaused.push_back(watch.pausedAt);
        toStepBack.push_back(watch.settledAt);
        stepBackError.push_back(std::fabs(watch.settledPosition - asked) * 1000);
        idle(30);
        watch.start();
        player.play();
        waitFor([&] { return watch.resumedAt >= 0; });
        resumeLatency.push_back(watch.resumedAt);
        // Keep well inside the file.
        if (player.currentPosition() > 100) {
            player.setCurrentPosition(10);
            idle(50);
        }
    }

    // Seek error while playing and while paused.
    std::vector<double> playingError, playingLatency, pausedError, pausedLatency;
    for (int i = 0; i < rounds; ++i) {
        const double target = 1 + random->bounded(110.0);
        idle(60 + int(random->bounded(60)));
        watch.start();
        player.setCurrentPosition(target);
        if (!waitFor([&] { return watch.settledAt >= 0; }))
            continue;
        playingLatency.push_back(watch.settledAt);
        playingError.push_back(std::fabs(watch.settledPosition - target) * 1000);
    }
    player.pause();
    idle(100);
    for (int i = 0; i < rounds; ++i) {
        const double target = 1 + random->bounded(110.0);
        watch.start();
        player.setCurrentPosition(target);
        if (!waitFor([&] { return watch.settledAt >= 0; }))
            continue;
        pausedLatency.push_back(watch.settledAt);
        pausedError.push_back(std::fabs(watch.settledPosition - target) * 1000);
        idle(20);
    }

    std::printf("libmpv back-end, audio output \"%s\"\n", qgetenv("QM_AUDIO_OUTPUT").constData());
    std::printf("%-44s %8.3f ms\n", "create and start a handle", createMs);
    print("load until playing, first file", "ms", stats(firstLoad), firstLoad.size());
    print("load until playing, next files", "ms", stats(nextLoads), nextLoads.size());
    print("pause: call until mpv reports paused", "ms", stats(toPaused), toPaused.size());
    print("pause: call until the step back is done", "ms", stats(toStepBack), toStepBack.size());
    print("pause: step back error", "ms", stats(stepBackError), stepBackError.size());
    print("play: call until mpv reports playing", "ms", stats(resumeLatency), resumeLatency.size());
    print("exact seek while playing: error", "ms", stats(playingError), playingError.size());
    print("exact seek while playing: until settled", "ms", stats(playingLatency), playingLatency.size());
    print("exact seek while paused: error", "ms", stats(pausedError), pausedError.size());
    print("exact seek while paused: until settled", "ms", stats(pausedLatency), pausedLatency.size());
    return 0;
}
