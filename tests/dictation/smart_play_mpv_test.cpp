// Smart play end to end on the real libmpv back-end and real timers: each
// automatic pause must land where the time actually played, less the step
// back, says it should. This is what a typist hears; the fake player cannot
// tell whether a resume, a seek or a timer is late.

#include "DictationApp.h"
#include "WaitFor.h"
#include "WavSignal.h"

#include "platform/QtServices.h"
#include "platform/mpv/MpvPlayer.h"

#include <QDir>
#include <QElapsedTimer>
#include <vector>

using namespace dictation;

TEST(SmartPlayOnMpv, EveryAutomaticPauseLandsOnThePlayedTimeLessTheStepBack)
{
    ProgramFolder folder;
    prepareFolder(folder, Preset{.secIndietro = 1, .tempoPlay = 3, .smartPlay = true});
    QDir().mkpath(folder.file(u"media"_s));
    const QString wav = folder.file(u"media/thirty seconds.wav"_s);
    // A tone, so that it is no silence that a decoder might skip.
    ASSERT_TRUE(WavSignal::write(wav, WavSignal::tone(300, 30)));

    // No sound card here: the null output keeps real time.
    auto backend = std::make_unique<MpvPlayer>(MpvPlayer::Options{{"ao", "null"}});
    ASSERT_TRUE(backend->isValid());
    MpvPlayer *mpv = backend.get();
    Services services;
    services.player = std::move(backend);
    services.timers = std::make_unique<QtTimerFactory>();
    services.dialogs = std::make_unique<FakeDialogs>();
    services.shell = std::make_unique<FakeShell>();
    services.system = std::make_unique<FakeSystemInfo>();
    AppContext ctx(folder.path(), std::move(services));
    ctx.currentDirectory = folder.path();
    ASSERT_TRUE(ctx.Main());
    Form1 &f = *ctx.form1();
    ctx.TempoPause = 1;

    // Watch the cycle from outside: for each automatic pause, where the
    // play phase began (-1 for the first), its wall-clock length, where mpv
    // settled after the step back, and how long the pause then lasted.
    struct Pause { double resumedFrom = -1, played = 0, landed = -1; qint64 pausedFor = -1; };
    std::vector<Pause> pauses;
    QElapsedTimer phase;
    bool waitingForLanding = false;
    const auto cycleTick = f.Timer5->onTimeout;
    const auto playing = [&] { return f.cmdPlay->Tag != ctx.Lingua(7); };
    f.Timer5->onTimeout = [&] {
        const bool wasPlaying = playing();
        const qint64 elapsed = phase.isValid() ? phase.elapsed() : -1;
        cycleTick();
        if (wasPlaying && !playing()) {
            pauses.push_back({pauses.empty() ? -1 : pauses.back().landed, double(elapsed) / 1000.0});
            waitingForLanding = true;
            phase.start();
        } else if (!wasPlaying && playing() && !pauses.empty()) {
            pauses.back().pausedFor = elapsed;
            phase.start();
        }
    };
    QObject guard;
    QObject::connect(mpv, &MpvPlayer::seekSettled, &guard, [&](double) {
        // mpv's own time-pos after a paused seek is short by its audio
        // buffer; playback resumes from the position asked for, which the
        // player test checks to the sample.
        if (std::exchange(waitingForLanding, false) && !pauses.empty())
            pauses.back().landed = mpv->currentPosition();
    });

    f.ApriMedia(wav);
    ASSERT_TRUE(waitFor([&] { return pauses.size() >= 3 && pauses[2].landed >= 0; }, 30000))
        << "automatic pauses seen: " << pauses.size();
    EXPECT_TRUE(mpv->backendPaused());
    // The first play phase began while the file loaded, at a moment the
    // program does not see; the later ones began at a resume of the cycle.
    for (std::size_t i = 1; i < 3; ++i) {
        SCOPED_TRACE(i);
        EXPECT_NEAR(pauses[i].played, 3.0, 0.05);
        EXPECT_NEAR(pauses[i].landed, pauses[i].resumedFrom + pauses[i].played - 1.0, 0.05);
        EXPECT_NEAR(double(pauses[i - 1].pausedFor), 1000.0, 50.0);
    }
    f.mnuStop_Click();
}
