// The libmpv back-end against the player seam's contract, on real libmpv
// with the null audio output (timed like a sound card) and, where the sound
// itself is checked, with the pcm output writing to a file.

#include "WaitFor.h"
#include "WavSignal.h"

#include "platform/mpv/MpvPlayer.h"

#include <QElapsedTimer>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

constexpr double SeekTolerance = 0.020; // seconds

// Waits for mpv to carry out the latest seek; mpv's own position then. The
// report that comes with the restart can be one step behind when seeks
// follow each other (mpv merges them), so given the target, a later report
// of mpv's that reaches it within the tolerance also counts.
double settledPosition(MpvPlayer &player, QSignalSpy &spy, double target = -1)
{
    if (spy.isEmpty() && !spy.wait(3000))
        return -1;
    double position = spy.takeLast().at(0).toDouble();
    spy.clear();
    const auto off = [target](double p) { return std::abs(p - target); };
    if (target >= 0 && off(position) >= SeekTolerance) {
        waitFor([&] { return off(player.backendTimePos()) < SeekTolerance; }, 500);
        if (off(player.backendTimePos()) < off(position))
            position = player.backendTimePos();
    }
    return position;
}

// A ramp of 30 s and a 2 s tone at 440 Hz, made once.
QString media(const QString &name)
{
    static QTemporaryDir dir;
    static const bool made = WavSignal::write(dir.filePath(u"thirty:seconds.wav"_s), WavSignal::ramp(30))
                             && WavSignal::write(dir.filePath(u"tone.wav"_s), WavSignal::tone(440, 2));
    EXPECT_TRUE(made);
    return dir.filePath(name);
}
const QString ramp = u"thirty:seconds.wav"_s;

class MpvPlayerTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        // Tests and CI have no sound card: the null output keeps real time.
        player = std::make_unique<MpvPlayer>(MpvPlayer::Options{{"ao", "null"}});
        ASSERT_TRUE(player->isValid());
    }

    std::unique_ptr<MpvPlayer> player;
};

// The program opens a file as: load, position, then its pause-or-play. The
// position asked for is the one reported and, once mpv has carried the seek
// out, mpv's own; mpv would take a negative position from the end.
TEST_F(MpvPlayerTest, SeeksExactlyWhileLoadingPlayingAndPausedAndTheEndIsTheStoppedState)
{
    QSignalSpy settled(player.get(), &MpvPlayer::seekSettled);
    player->setURL(media(ramp));
    player->setCurrentPosition(12.5);
    player->pause();
    EXPECT_EQ(player->playState(), PlayerControl::Transitioning);
    ASSERT_TRUE(waitFor([&] { return player->playState() != PlayerControl::Transitioning; }));
    EXPECT_EQ(player->playState(), PlayerControl::Paused);
    EXPECT_NEAR(player->duration(), 30.0, 0.001);
    EXPECT_TRUE(waitFor([&] { return std::abs(player->backendTimePos() - 12.5) < SeekTolerance; }, 1000))
        << "mpv reports " << player->backendTimePos();
    EXPECT_EQ(player->currentPosition(), 12.5);

    player->play();
    QTest::qWait(300);
    settled.clear();
    // Once audio has played, mpv's time-pos after a paused seek falls short
    // by the output's buffer; the position must still be the one asked for.
    // The program's own pause is a step back, then pause, while playing.
    enum Order { Playing, PauseFirst, PauseAfter };
    const struct
    {
        Order order;
        double target, want;
    } rows[] = {{Playing, 3.217, 3.217}, {Playing, 25.75, 25.75}, {Playing, -2, 0}, {PauseAfter, 7, 7},
                {PauseFirst, 6.25, 6.25}, {PauseFirst, -2, 0},   {PauseFirst, 21.0, 21.0}};
    for (const auto &row : rows) {
        const char *orders[] = {"playing", "paused first", "paused after"};
        SCOPED_TRACE(testing::Message() << orders[row.order] << ", seek to " << row.target);
        if (row.order == PauseFirst)
            player->pause();
        else if (row.order == PauseAfter)
            QTest::qWait(300);
        player->setCurrentPosition(row.target);
        if (row.order == PauseAfter)
            player->pause();
        EXPECT_EQ(player->currentPosition(), row.want);
        EXPECT_NEAR(settledPosition(*player, settled, row.want), row.want, SeekTolerance);
        EXPECT_EQ(player->playState(), row.order == Playing ? PlayerControl::Playing : PlayerControl::Paused);
        if (row.order != Playing) {
            QTest::qWait(200);
            EXPECT_EQ(player->currentPosition(), row.want);
        }
    }
    // Playing goes on from there, not from where it paused.
    player->play();
    QTest::qWait(300);
    EXPECT_NEAR(player->currentPosition(), 21.3, 0.1);
    EXPECT_NEAR(player->backendTimePos(), 21.3, 0.25); // mpv trails by its audio buffer

    // The end comes once the last 0.4 s have been heard, as the stopped
    // state at 0; play starts over from there.
    QElapsedTimer clock;
    clock.start();
    player->setCurrentPosition(29.6);
    ASSERT_TRUE(waitFor([&] { return player->playState() != PlayerControl::Playing; }, 3000));
    EXPECT_GE(clock.elapsed(), 350);
    EXPECT_EQ(player->playState(), PlayerControl::Stopped);
    EXPECT_EQ(player->currentPosition(), 0.0);
    EXPECT_EQ(player->currentPositionString(), QString());
    EXPECT_EQ(player->durationString(), u"00:30"_s);
    settled.clear();
    player->play();
    EXPECT_EQ(player->playState(), PlayerControl::Playing);
    EXPECT_NEAR(settledPosition(*player, settled, 0.0), 0.0, SeekTolerance);
    QTest::qWait(300);
    EXPECT_NEAR(player->currentPosition(), 0.3, 0.1);

    // A position beyond the end stops there; one from there holds, paused.
    player->setCurrentPosition(45);
    EXPECT_EQ(player->playState(), PlayerControl::Stopped);
    ASSERT_TRUE(waitFor([&] { return player->backendPaused(); }));
    settled.clear();
    player->setCurrentPosition(4);
    EXPECT_EQ(player->playState(), PlayerControl::Paused);
    EXPECT_NEAR(settledPosition(*player, settled, 4.0), 4.0, SeekTolerance);
    EXPECT_EQ(player->currentPosition(), 4.0);
}

// Calls on an empty player leave it empty. Whatever the file, the player
// leaves loading within a second and reads as stopped, which the window's
// end watch turns into its stopped state; a play tries the file again and
// fails the same way. A playlist is not followed: a list of files that do
// not exist fails as one file. An empty file name empties the player.
TEST_F(MpvPlayerTest, NoFileOrAFileThatWillNotPlayLeavesThePlayerEmptyOrStoppedWithinASecond)
{
    player->play();
    player->pause();
    player->setCurrentPosition(5);
    player->stop();
    player->close();
    EXPECT_EQ(player->playState(), PlayerControl::Undefined);
    EXPECT_EQ(player->currentPosition(), 0.0);
    EXPECT_EQ(player->currentPositionString(), QString());

    // The start of an MP4 whose data and index were cut off.
    const QByteArray truncatedMp4 = QByteArray::fromHex("00000018667479706973366d0000020069736f6d69736f32000f4240")
                                    + "mdat" + QByteArray(2000, '\x01');
    const struct { const char *name; QByteArray bytes; } files[] = {
        {"notes.txt", "Meeting of 3 May\r\nPresent: all\r\n"},
        {"empty.wav", ""},
        {"list.m3u", "#EXTM3U\r\nmissing one.wav\r\nmissing two.mp3\r\n"},
        {"cut.mp4", truncatedMp4},
        {"junk.wav", QByteArray(4096, '\x5a')},
    };
    QSignalSpy failed(player.get(), &MpvPlayer::loadFailed);
    for (const auto &file : files) {
        SCOPED_TRACE(file.name);
        const QString path = media(QString::fromLatin1(file.name));
        QFile out(path);
        ASSERT_TRUE(out.open(QIODevice::WriteOnly) && out.write(file.bytes) == file.bytes.size());
        out.close();
        for (int attempt = 0; attempt < 2; ++attempt) {
            QElapsedTimer clock;
            clock.start();
            attempt == 0 ? player->setURL(path) : player->play();
            EXPECT_EQ(player->playState(), PlayerControl::Transitioning);
            EXPECT_TRUE(waitFor([&] { return player->playState() != PlayerControl::Transitioning; }, 1000));
            EXPECT_LT(clock.elapsed(), 1000);
            EXPECT_EQ(player->playState(), PlayerControl::Stopped);
            EXPECT_EQ(player->duration(), 0.0);
            EXPECT_EQ(player->currentPosition(), 0.0);
        }
        // mpv plays nothing from the list in the meantime.
        QTest::qWait(50);
        EXPECT_EQ(player->playState(), PlayerControl::Stopped);
    }
    EXPECT_EQ(failed.size(), 2 * int(std::size(files)));
    player->setURL(media(ramp));
    ASSERT_TRUE(waitFor([&] { return player->playState() == PlayerControl::Playing; }));
    player->setURL(QString());
    QTest::qWait(100);
    EXPECT_EQ(player->playState(), PlayerControl::Undefined);
    EXPECT_EQ(player->URL(), QString());
    EXPECT_EQ(player->duration(), 0.0);
}

// With no sound output that opens (here a file output into a folder that
// does not exist), mpv falls back to its null output: the file still runs.
TEST(MpvPlayerNoSound, AWavPlaysSilentlyWithItsPositionMoving)
{
    MpvPlayer player(MpvPlayer::Options{{"ao", "pcm"}, {"ao-pcm-file", "/nonexistent folder/out.pcm"}});
    ASSERT_TRUE(player.isValid());
    player.setURL(media(ramp));
    ASSERT_TRUE(waitFor([&] { return player.playState() != PlayerControl::Transitioning; }));
    EXPECT_EQ(player.playState(), PlayerControl::Playing);
    EXPECT_NEAR(player.duration(), 30.0, 0.001);
    QTest::qWait(600);
    EXPECT_GT(player.backendTimePos(), 0.3);
    EXPECT_GT(player.currentPosition(), 0.3);
}

// The sound itself, written by mpv's pcm output to a file at unity gain, so
// that the samples come out as they went in. That output is not timed: a
// file plays through as fast as it decodes.
class MpvPlayerSoundTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        player = std::make_unique<MpvPlayer>(MpvPlayer::Options{
            {"ao", "pcm"}, {"ao-pcm-file", QFile::encodeName(m_dir.filePath(u"out.pcm"_s))},
            {"ao-pcm-waveheader", "no"}, {"audio-format", "s16"},
            {"audio-samplerate", QByteArray::number(WavSignal::Rate)}, {"audio-channels", "mono"}});
        ASSERT_TRUE(player->isValid());
        player->setVolume(100);
    }

    bool playToTheEnd()
    {
        player->play();
        return waitFor([&] { return player->playState() == PlayerControl::Stopped; }, 15000);
    }

    // The output is complete once mpv has closed it.
    std::vector<int16_t> sound()
    {
        player.reset();
        return WavSignal::readRaw(m_dir.filePath(u"out.pcm"_s));
    }

    std::unique_ptr<MpvPlayer> player;

private:
    QTemporaryDir m_dir;
};

// Seeks are exact to the sample: the first sample played is the one at the
// position asked for, while loading and after audio has played, the case
// where mpv's time-pos is short.
TEST_F(MpvPlayerSoundTest, PlaybackAfterASeekStartsOnTheSample)
{
    const auto sampleAt = [](double seconds) { return int(std::lround(seconds * WavSignal::Rate)); };
    const auto index = [](int16_t sample) { return int(uint16_t(sample)); };
    player->setURL(media(ramp));
    player->setCurrentPosition(3.1234);
    player->pause();
    ASSERT_TRUE(waitFor([&] { return player->playState() == PlayerControl::Paused; }));
    ASSERT_TRUE(playToTheEnd());
    QSignalSpy settled(player.get(), &MpvPlayer::seekSettled);
    player->setCurrentPosition(21.5);
    EXPECT_EQ(player->playState(), PlayerControl::Paused);
    ASSERT_GE(settledPosition(*player, settled), 0);
    ASSERT_TRUE(playToTheEnd());

    const std::vector<int16_t> out = sound();
    ASSERT_FALSE(out.empty());
    EXPECT_EQ(index(out.front()), sampleAt(3.1234) & 0xffff);
    std::vector<size_t> jumps;
    for (size_t i = 1; i < out.size(); ++i) {
        if (((index(out[i]) - index(out[i - 1])) & 0xffff) != 1)
            jumps.push_back(i);
    }
    ASSERT_EQ(jumps.size(), 1u);
    EXPECT_EQ(int(jumps[0]), sampleAt(30) - sampleAt(3.1234));
    // After audio has played, mpv's decoder may round the second seek to
    // the neighbouring sample: a few microseconds, never more.
    const int offBy = ((index(out[jumps[0]]) - (sampleAt(21.5) & 0xffff) + 0x8000) & 0xffff) - 0x8000;
    EXPECT_LE(std::abs(offBy), 1);
    EXPECT_NEAR(int(out.size() - jumps[0]), sampleAt(30) - sampleAt(21.5), 1);
}

TEST_F(MpvPlayerSoundTest, HalfSpeedKeepsThePitch)
{
    player->setRate(0.5);
    player->setURL(media(u"tone.wav"_s));
    ASSERT_TRUE(waitFor([&] { return player->playState() == PlayerControl::Stopped; }));
    const std::vector<int16_t> out = sound();
    // Two seconds of tone last four at half speed, and stay at 440 Hz
    // rather than dropping to 220.
    EXPECT_NEAR(double(out.size()) / WavSignal::Rate, 4.0, 0.2);
    EXPECT_NEAR(WavSignal::frequency(out, out.size() / 4, out.size() * 3 / 4), 440.0, 5.0);
}

} // namespace
