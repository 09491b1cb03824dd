// The stand-in player that loads the libmpv module on demand: the calls it
// takes before the module is there, the load itself, and a missing module.
// This test does not link the module; it finds it in the build's program
// folder, as the program does.

#include "WaitFor.h"
#include "WavSignal.h"

#include "platform/LazyPlayer.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <cstring>
#include <gtest/gtest.h>
#include <link.h>

using namespace Qt::StringLiterals;

namespace {

bool libmpvInProcess()
{
    bool found = false;
    dl_iterate_phdr(
        [](dl_phdr_info *info, size_t, void *data) {
            if (info->dlpi_name && std::strstr(info->dlpi_name, "libmpv"))
                *static_cast<bool *>(data) = true;
            return 0;
        },
        &found);
    return found;
}

// No sound card here: mpv's null output keeps real time without one.
std::unique_ptr<LazyPlayer> lazyPlayer(const QString &moduleDir = QStringLiteral(QM_MODULE_DIR))
{
    return std::make_unique<LazyPlayer>(moduleDir, LazyPlayer::BackendOptions{{"ao", "null"}});
}

class LazyPlayerTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(WavSignal::write(shortFile, WavSignal::ramp(10)));
        ASSERT_TRUE(WavSignal::write(longFile, WavSignal::ramp(20)));
    }

    QTemporaryDir m_dir;
    const QString shortFile = m_dir.filePath(u"short.wav"_s), longFile = m_dir.filePath(u"long.wav"_s);
};

// Declared first: gtest runs the tests of a file in order, and this one
// needs a process in which no back-end has been loaded yet.
TEST_F(LazyPlayerTest, LibmpvComesInOnlyWithTheModule)
{
    if (libmpvInProcess())
        GTEST_SKIP() << "the back-end was loaded by an earlier test";
    auto player = lazyPlayer();
    // Calls on an empty player answer at once and begin no load.
    player->play();
    player->setCurrentPosition(5);
    EXPECT_EQ(player->playState(), PlayerControl::Undefined);
    EXPECT_EQ(player->currentPosition(), 0.0);
    QTest::qWait(20);
    EXPECT_FALSE(player->isLoaded());
    EXPECT_FALSE(libmpvInProcess());

    QSignalSpy loaded(player.get(), &LazyPlayer::loaded);
    player->startLoading();
    player->startLoading();
    // The load runs in the background: nothing has waited for it.
    EXPECT_FALSE(player->isLoaded());
    ASSERT_TRUE(player->ensureLoaded());
    EXPECT_TRUE(libmpvInProcess());
    // The background load's own completion comes once and changes nothing.
    QTest::qWait(50);
    EXPECT_EQ(loaded.size(), 1);
    EXPECT_EQ(player->playState(), PlayerControl::Undefined);
}

// Calls made before the back-end is there (a file from the command line,
// before the window asked for it) are replayed in their order; a new file
// drops what was asked of the old one.
TEST_F(LazyPlayerTest, CallsBeforeTheBackEndAreReplayedInOrder)
{
    const struct
    {
        const char *name;
        std::function<void(LazyPlayer &)> calls;
        int state;
        double position; // reported before the load and after it
        double duration, rate;
        int volume;
    } rows[] = {
        {"paused at the start",
         [&](LazyPlayer &p) { p.setURL(shortFile); p.setCurrentPosition(0); p.pause(); p.setRate(0.7); p.setVolume(140); },
         PlayerControl::Paused, 0.0, 10.0, 0.7, 100},
        {"seek, pause, play",
         [&](LazyPlayer &p) { p.setURL(longFile); p.setCurrentPosition(-3); p.setCurrentPosition(4); p.pause(); p.play(); },
         PlayerControl::Playing, 4.0, 20.0, 1.0, 50},
        {"stop last", [&](LazyPlayer &p) { p.setURL(longFile); p.setCurrentPosition(6); p.stop(); },
         PlayerControl::Stopped, 0.0, 20.0, 1.0, 50},
        {"a new file",
         [&](LazyPlayer &p) { p.setURL(shortFile); p.setCurrentPosition(7); p.pause(); p.setVolume(30); p.setURL(longFile); },
         PlayerControl::Playing, 0.0, 20.0, 1.0, 30},
        {"closed", [&](LazyPlayer &p) { p.setURL(shortFile); p.close(); }, PlayerControl::Undefined, 0.0, 0.0, 1.0, 50},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        auto player = lazyPlayer();
        row.calls(*player);
        EXPECT_EQ(player->currentPosition(), row.position);
        EXPECT_EQ(player->rate(), row.rate);
        ASSERT_TRUE(player->ensureLoaded());
        if (row.state == PlayerControl::Undefined)
            QTest::qWait(100);
        ASSERT_TRUE(waitFor([&] { return player->playState() != PlayerControl::Transitioning; }, 5000));
        EXPECT_EQ(player->playState(), row.state);
        EXPECT_NEAR(player->currentPosition(), row.position, row.state == PlayerControl::Playing ? 0.5 : 0.0);
        EXPECT_NEAR(player->duration(), row.duration, 0.001);
        EXPECT_EQ(player->rate(), row.rate);
        EXPECT_EQ(player->volume(), row.volume);
    }
}

TEST_F(LazyPlayerTest, WithoutTheModuleThePlayerStaysEmpty)
{
    auto player = lazyPlayer(m_dir.filePath(u"no-module"_s));
    QSignalSpy loaded(player.get(), &LazyPlayer::loaded);
    player->setURL(shortFile);
    player->setCurrentPosition(3);
    player->pause();
    ASSERT_TRUE(loaded.wait(5000));
    EXPECT_FALSE(loaded.at(0).at(0).toBool());
    EXPECT_TRUE(player->hasFailed());
    EXPECT_EQ(player->currentPositionString(), QString());
    player->setURL(longFile);
    player->play();
    player->setCurrentPosition(5);
    EXPECT_EQ(player->playState(), PlayerControl::Undefined);
    EXPECT_EQ(player->currentPosition(), 0.0);
    EXPECT_EQ(player->duration(), 0.0);
    EXPECT_FALSE(player->ensureLoaded());
    EXPECT_EQ(loaded.size(), 1);
}

} // namespace
