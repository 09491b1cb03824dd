// The media window on the fake player and a fake decoder: the click on the
// waveform, a new file cutting the old computation short, the cache, bad
// media and the window's shown state.

#include "TestApp.h"
#include "WaitFor.h"

#include "mediaview/WaveformView.h"
#include "mediaview/frmMedia.h"
#include "platform/fake/FakeMediaBackend.h"
#include "player/Form1.h"

#include <QFile>
#include <QLabel>
#include <QTest>
#include <atomic>
#include <gtest/gtest.h>

namespace {

// Files named "slow..." decode until cancelled; "mute..." have no sound,
// "film..." a picture and no sound, "broken..." cannot be read. The rest
// decode one second at 0.5 per second of length at 1000 Hz.
struct Media
{
    TestApp app;
    FakeMediaBackend backend;
    std::atomic<int> decodes{0};
    std::atomic<bool> slowCancelled{false};
    std::unique_ptr<frmMedia> window;

    Media()
    {
        app.folder.setSettingsLine(5, QStringLiteral("3"));  // SecIndietro
        app.folder.setSettingsLine(23, QStringLiteral("0")); // smart play off
        EXPECT_TRUE(app.start());
        backend.decoder = [this](const QString &path, DecodeTarget &target) {
            ++decodes;
            const auto is = [name = path.section(u'/', -1)](const char *kind) { return name.startsWith(QLatin1String(kind)); };
            if (is("broken"))
                return DecodeResult::Unreadable;
            target.opened({!is("film") && !is("mute"), is("film"), 1000, 2});
            if (is("film") || is("mute"))
                return DecodeResult::NoAudio;
            while (is("slow") && !target.cancelled())
                QThread::msleep(1);
            if (target.cancelled()) {
                slowCancelled = true;
                return DecodeResult::Cancelled;
            }
            const std::vector<float> second(1000, 0.5f);
            target.samples(second.data(), 1000, 1);
            return DecodeResult::Done;
        };
        window = std::make_unique<frmMedia>(app.ctx(), backend);
    }
    QString open(const QString &name) { return reopen(app.mediaFile(name, 180)); }
    QString reopen(const QString &path)
    {
        app.form1().ApriMedia(path);
        app.advance(100);
        return path;
    }
    // Real time for the decoding thread, then a tick to take its work.
    bool settle()
    {
        const bool done = waitFor([&] { return window->job() && window->job()->state() != PeaksJob::State::Working; });
        app.advance(100);
        return done;
    }
};

} // namespace

TEST(MediaWindow, ClickOnTheWaveformSeeksThereAndAPausedPlayerPausesAgainWithTheStepBack)
{
    struct Row { bool paused; QStringList log; };
    const Row rows[] = {
        {false, {QStringLiteral("seek 45"), QStringLiteral("play")}},
        {true, {QStringLiteral("seek 45"), QStringLiteral("play"), QStringLiteral("seek 42"), QStringLiteral("pause")}},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.paused ? "paused" : "playing");
        Media m;
        m.open(QStringLiteral("talk.wav"));
        EXPECT_TRUE(m.settle());
        if (row.paused)
            m.app.form1().cmdPlay_Click();
        m.window->resize(400, 200);
        m.window->show();
        ASSERT_EQ(m.window->Waveform->width(), 400);
        m.app.player->clearLog();
        QTest::mouseClick(m.window->Waveform, Qt::LeftButton, {}, QPoint(100, 50));
        EXPECT_EQ(m.app.player->log, row.log);
    }
}

TEST(MediaWindow, BookmarksAreMarkedAtTheTimeAtTheEndOfTheirLines)
{
    Media m;
    m.open(QStringLiteral("talk.wav"));
    m.app.ctx().BookMark[0] = QStringLiteral("00:01:30  Intro 00:00:10               00:01:30");
    m.app.ctx().BookMark[1] = QStringLiteral("01:00:05  Late               01:00:05");
    m.app.ctx().BookMark[3] = QStringLiteral("00:00:07  after the end of the list               00:00:07");
    m.app.advance(100);
    EXPECT_EQ(m.window->Waveform->marks(), (std::vector<double>{90, 3605}));
}

TEST(MediaWindow, ANewFileCancelsTheOldComputationAndTheCacheServesUntilTheFileChanges)
{
    Media m;
    m.open(QStringLiteral("slow.wav"));
    ASSERT_TRUE(waitFor([&] { return m.decodes == 1; }));
    const QString path = m.open(QStringLiteral("talk.wav"));
    EXPECT_TRUE(m.slowCancelled);
    EXPECT_TRUE(m.settle());
    EXPECT_EQ(m.window->job()->mediaPath(), path);
    const Peaks first = m.window->Waveform->peaks();
    EXPECT_EQ(first.high[50], 16384);

    m.open(QStringLiteral("other.wav"));
    EXPECT_TRUE(m.settle());
    m.reopen(path);
    EXPECT_TRUE(m.settle());
    EXPECT_EQ(m.decodes, 3);
    EXPECT_EQ(m.window->Waveform->peaks().high, first.high);

    // Another size is another file: decoded again.
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::Append) && f.write("more") == 4);
    f.close();
    m.open(QStringLiteral("other.wav"));
    m.reopen(path);
    EXPECT_TRUE(m.settle());
    EXPECT_EQ(m.decodes, 5);
}

TEST(MediaWindow, BadMediaSaysSoInOneLineAndAVideoShowsTheWindowByItself)
{
    struct Row { const char *name; bool bad; bool video; };
    const Row rows[] = {{"talk.wav", false, false}, {"mute.wav", true, false}, {"broken.mp3", true, false},
                        {"film.mp4", false, true}};
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        Media m;
        m.open(QString::fromLatin1(row.name));
        EXPECT_TRUE(m.settle());
        EXPECT_EQ(m.window->Label1->text(), row.bad ? TogliAmp(m.app.ctx().Lingua(145)) : QString());
        EXPECT_EQ(m.window->isVisible(), row.video);
        EXPECT_EQ(m.backend.widgetsMade, row.video ? 1 : 0);
        EXPECT_EQ(m.window->windowTitle(), m.app.ctx().Lingua(144) + u' ' + QString::fromLatin1(row.name));
    }
}

TEST(MediaWindow, TheMenuShowsAndHidesItVideoFollowsAndTheLayoutIsThereAtTheNextStart)
{
    Media m;
    m.window->setGeometry(120, 140, 500, 300);
    m.window->mnuMedia_Click();
    EXPECT_TRUE(m.window->isVisible());
    EXPECT_TRUE(m.backend.videoEnabled);
    m.window->mnuMedia_Click();
    EXPECT_FALSE(m.window->isVisible());
    EXPECT_FALSE(m.backend.videoEnabled);
    m.window->mnuMedia_Click();
    m.window.reset();

    frmMedia again(m.app.ctx(), m.backend);
    EXPECT_FALSE(again.isVisible());
    again.restoreShown();
    EXPECT_TRUE(again.isVisible());
    EXPECT_EQ(again.size(), QSize(500, 300));
}
