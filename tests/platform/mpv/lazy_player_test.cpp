// The stand-in player that loads the libmpv module on demand: the calls it
// takes before the module is there, the load itself, and a missing module.
// This test does not link the module; it finds it in the build's program
// folder, as the program does.

#include "WaitFor.h"
#include "WavSignal.h"

#include "platform/LazyPlayer.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <cstring>
#include <functional>
#include <gtest/gtest.h>
#if defined(__linux__)
#include <link.h>
#endif

namespace {

#if defined(__linux__)
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
#endif

QString moduleDir()
{
    return QStringLiteral(QM_MODULE_DIR);
}

// No sound card here: mpv's null output keeps real time without one.
LazyPlayer::BackendOptions silent()
{
    return {{"ao", "null"}};
}

class LazyPlayerTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_dir.isValid());
        WavSignal::write(shortFile(), WavSignal::ramp(10));
        WavSignal::write(longFile(), WavSignal::ramp(20));
    }

    QString shortFile() const { return m_dir.filePath(QStringLiteral("short.wav")); }
    QString longFile() const { return m_dir.filePath(QStringLiteral("long.wav")); }
    QString emptyDir() const { return m_dir.filePath(QStringLiteral("no-module")); }

    static bool settledIn(LazyPlayer &player, int state)
    {
        return waitFor([&] { return player.playState() != PlayerControl::Transitioning; }, 5000)
               && player.playState() == state;
    }

private:
    QTemporaryDir m_dir;
};

// Declared first: gtest runs the tests of a file in order, and this one
// needs a process in which no back-end has been loaded yet.
TEST_F(LazyPlayerTest, LibmpvComesInOnlyWithTheModule)
{
#if defined(__linux__)
    if (libmpvInProcess())
        GTEST_SKIP() << "the back-end was loaded by an earlier test";
    LazyPlayer player(moduleDir(), silent());
    QSignalSpy loaded(&player, &LazyPlayer::loaded);
    player.startLoading();
    // The load runs in the background: nothing has waited for it.
    EXPECT_FALSE(player.isLoaded());
    ASSERT_TRUE(loaded.wait(10000));
    EXPECT_EQ(loaded.at(0).at(0).toBool(), true);
    EXPECT_TRUE(libmpvInProcess());
#else
    GTEST_SKIP() << "checks the process's libraries on Linux only";
#endif
}

TEST_F(LazyPlayerTest, CallsBeforeTheBackEndAreKeptAndReplayed)
{
    LazyPlayer player(moduleDir(), silent());
    QSignalSpy loaded(&player, &LazyPlayer::loaded);

    // A file from the command line, before the window asked for the back-end.
    player.setURL(shortFile());
    player.setCurrentPosition(0);
    player.pause();
    player.setRate(0.7);
    player.setVolume(140);
    EXPECT_EQ(player.playState(), PlayerControl::Transitioning);
    EXPECT_EQ(player.URL(), shortFile());
    EXPECT_EQ(player.currentPosition(), 0.0);
    EXPECT_EQ(player.duration(), 0.0);
    EXPECT_EQ(player.rate(), 0.7);
    EXPECT_EQ(player.volume(), 100);
    EXPECT_EQ(player.backend(), nullptr);

    // setURL began the load by itself.
    ASSERT_TRUE(loaded.wait(10000));
    EXPECT_TRUE(loaded.at(0).at(0).toBool());
    ASSERT_TRUE(settledIn(player, PlayerControl::Paused));
    EXPECT_EQ(player.currentPosition(), 0.0);
    EXPECT_NEAR(player.duration(), 10.0, 0.001);
    EXPECT_EQ(player.rate(), 0.7);
    EXPECT_EQ(player.volume(), 100);
    EXPECT_EQ(player.URL(), shortFile());
}

TEST_F(LazyPlayerTest, ReplayKeepsTheOrderOfTheCalls)
{
    LazyPlayer player(moduleDir(), silent());
    player.setURL(longFile());
    player.setCurrentPosition(-3);
    EXPECT_EQ(player.currentPosition(), 0.0);
    player.setCurrentPosition(4);
    player.pause();
    player.play();
    EXPECT_EQ(player.currentPosition(), 4.0);
    ASSERT_TRUE(player.ensureLoaded());
    ASSERT_TRUE(settledIn(player, PlayerControl::Playing));
    QTest::qWait(200);
    EXPECT_NEAR(player.currentPosition(), 4.2, 0.1);

    // Stop last: stopped at 0 once the file is there.
    LazyPlayer stopped(moduleDir(), silent());
    stopped.setURL(longFile());
    stopped.setCurrentPosition(6);
    stopped.stop();
    EXPECT_EQ(stopped.currentPosition(), 0.0);
    ASSERT_TRUE(stopped.ensureLoaded());
    ASSERT_TRUE(settledIn(stopped, PlayerControl::Stopped));
    EXPECT_EQ(stopped.currentPositionString(), QString());
}

TEST_F(LazyPlayerTest, ANewFileDropsWhatWasAskedOfTheOldOne)
{
    LazyPlayer player(moduleDir(), silent());
    player.setURL(shortFile());
    player.setCurrentPosition(7);
    player.pause();
    player.setVolume(30);
    player.setURL(longFile());
    EXPECT_EQ(player.currentPosition(), 0.0);
    EXPECT_EQ(player.URL(), longFile());
    ASSERT_TRUE(player.ensureLoaded());
    // Loading starts playing by itself; the volume was kept.
    ASSERT_TRUE(settledIn(player, PlayerControl::Playing));
    EXPECT_NEAR(player.duration(), 20.0, 0.001);
    EXPECT_LT(player.currentPosition(), 0.5);
    EXPECT_EQ(player.volume(), 30);

    // Closed before the back-end came: nothing to load.
    LazyPlayer closed(moduleDir(), silent());
    closed.setURL(shortFile());
    closed.close();
    EXPECT_EQ(closed.playState(), PlayerControl::Undefined);
    ASSERT_TRUE(closed.ensureLoaded());
    QTest::qWait(100);
    EXPECT_EQ(closed.playState(), PlayerControl::Undefined);
}

TEST_F(LazyPlayerTest, EnsureLoadedWaitsForTheBackgroundLoad)
{
    LazyPlayer player(moduleDir(), silent());
    QSignalSpy loaded(&player, &LazyPlayer::loaded);
    player.startLoading();
    player.startLoading();
    ASSERT_TRUE(player.ensureLoaded());
    EXPECT_TRUE(player.isLoaded());
    EXPECT_NE(player.backend(), nullptr);
    // The background load's own completion comes later and changes nothing.
    QTest::qWait(50);
    EXPECT_EQ(loaded.size(), 1);
    EXPECT_EQ(player.playState(), PlayerControl::Undefined);

    LazyPlayer direct(moduleDir(), silent());
    EXPECT_TRUE(direct.ensureLoaded());
    EXPECT_TRUE(direct.ensureLoaded());
    direct.setURL(shortFile());
    EXPECT_EQ(direct.playState(), PlayerControl::Transitioning);
    EXPECT_TRUE(settledIn(direct, PlayerControl::Playing));
}

TEST_F(LazyPlayerTest, WithoutTheModuleThePlayerStaysEmpty)
{
    LazyPlayer player(emptyDir());
    QSignalSpy loaded(&player, &LazyPlayer::loaded);
    player.setURL(shortFile());
    player.setCurrentPosition(3);
    player.pause();
    ASSERT_TRUE(loaded.wait(5000));
    EXPECT_FALSE(loaded.at(0).at(0).toBool());
    EXPECT_TRUE(player.hasFailed());
    EXPECT_EQ(player.playState(), PlayerControl::Undefined);
    EXPECT_EQ(player.currentPosition(), 0.0);
    EXPECT_EQ(player.currentPositionString(), QString());

    // Every call stays harmless.
    player.setURL(longFile());
    player.play();
    player.setCurrentPosition(5);
    player.stop();
    player.setRate(1.3);
    player.setVolume(20);
    player.close();
    EXPECT_EQ(player.playState(), PlayerControl::Undefined);
    EXPECT_EQ(player.currentPosition(), 0.0);
    EXPECT_EQ(player.duration(), 0.0);
    EXPECT_FALSE(player.ensureLoaded());
    EXPECT_EQ(loaded.size(), 1);
}

TEST_F(LazyPlayerTest, AnEmptyPlayerAnswersAtOnce)
{
    LazyPlayer player(moduleDir(), silent());
    player.play();
    player.setCurrentPosition(5);
    player.stop();
    EXPECT_EQ(player.playState(), PlayerControl::Undefined);
    EXPECT_EQ(player.currentPosition(), 0.0);
    EXPECT_EQ(player.rate(), 1.0);
    EXPECT_EQ(player.URL(), QString());
    // Nothing asked for a file: no load began.
    EXPECT_FALSE(player.isLoaded());
    QTest::qWait(20);
    EXPECT_FALSE(player.isLoaded());
}

} // namespace
