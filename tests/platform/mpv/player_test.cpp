// The libmpv back-end against the player seam's contract, on real libmpv
// with the null audio output (timed like a sound card) and, where the sound
// itself is checked, with the pcm output writing to a file.

#include "WaitFor.h"
#include "WavSignal.h"

#include "platform/mpv/MpvPlayer.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <cstdlib>
#include <functional>
#include <gtest/gtest.h>

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
    if (target >= 0 && std::abs(position - target) >= SeekTolerance) {
        waitFor([&] { return std::abs(player.backendTimePos() - target) < SeekTolerance; }, 500);
        if (std::abs(player.backendTimePos() - target) < std::abs(position - target))
            position = player.backendTimePos();
    }
    return position;
}

class MediaFiles
{
public:
    MediaFiles()
    {
        WavSignal::write(shortFile(), WavSignal::ramp(10));
        WavSignal::write(longFile(), WavSignal::ramp(30));
        WavSignal::write(toneFile(), WavSignal::tone(440, 2));
    }
    QString shortFile() const { return m_dir.filePath(QStringLiteral("ten seconds.wav")); }
    QString longFile() const { return m_dir.filePath(QStringLiteral("thirty:seconds.wav")); }
    QString toneFile() const { return m_dir.filePath(QStringLiteral("tone.wav")); }
    QString path(const QString &name) const { return m_dir.filePath(name); }

private:
    QTemporaryDir m_dir;
};

MediaFiles &media()
{
    static MediaFiles files;
    return files;
}

class MpvPlayerTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        media();
        // Tests and CI have no sound card: the null output keeps real time.
        player = std::make_unique<MpvPlayer>(MpvPlayer::Options{{"ao", "null"}});
        ASSERT_TRUE(player->isValid());
        settled = std::make_unique<QSignalSpy>(player.get(), &MpvPlayer::seekSettled);
    }

    // Loads a file and waits until it plays.
    void loadPlaying(const QString &path)
    {
        player->setURL(path);
        ASSERT_TRUE(waitFor([&] { return player->playState() != PlayerControl::Transitioning; }));
        ASSERT_EQ(player->playState(), PlayerControl::Playing);
        settled->clear();
    }

    void seekAndSettle(double seconds)
    {
        player->setCurrentPosition(seconds);
        ASSERT_GE(settledPosition(*player, *settled), 0);
    }

    std::unique_ptr<MpvPlayer> player;
    std::unique_ptr<QSignalSpy> settled;
};

// The program opens a file as: load, position, then its pause-or-play. The
// position asked for is the one reported and, once mpv has carried the seek
// out, mpv's own; mpv would take a negative position from the end.
TEST_F(MpvPlayerTest, SeeksExactlyWhileLoadingPlayingAndPaused)
{
    player->setURL(media().longFile());
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
    settled->clear();
    // Once audio has played, mpv's time-pos after a paused seek falls short
    // by the output's buffer; the position must still be the one asked for.
    const struct
    {
        bool paused;
        double target, want;
    } rows[] = {{false, 3.217, 3.217}, {false, 25.75, 25.75}, {false, -2, 0},
                {true, 6.25, 6.25},    {true, -2, 0},         {true, 21.0, 21.0}};
    for (const auto &row : rows) {
        SCOPED_TRACE(testing::Message() << (row.paused ? "paused, " : "playing, ") << "seek to " << row.target);
        if (row.paused)
            player->pause();
        player->setCurrentPosition(row.target);
        EXPECT_EQ(player->currentPosition(), row.want);
        EXPECT_NEAR(settledPosition(*player, *settled, row.want), row.want, SeekTolerance);
        EXPECT_EQ(player->playState(), row.paused ? PlayerControl::Paused : PlayerControl::Playing);
        if (row.paused) {
            QTest::qWait(200);
            EXPECT_EQ(player->currentPosition(), row.want);
        }
    }
    // Playing resumes from there.
    player->play();
    QTest::qWait(300);
    EXPECT_NEAR(player->currentPosition(), 21.3, 0.1);
    EXPECT_NEAR(player->backendTimePos(), 21.3, 0.25); // mpv trails by its audio buffer
}

TEST_F(MpvPlayerTest, PauseWithAStepBackLandsWhereAsked)
{
    loadPlaying(media().longFile());
    seekAndSettle(10);
    QTest::qWait(400);

    // The program's pause: step back, then pause.
    const double asked = player->currentPosition() - 3;
    player->setCurrentPosition(asked);
    player->pause();
    EXPECT_EQ(player->currentPosition(), asked);
    EXPECT_EQ(player->playState(), PlayerControl::Paused);
    EXPECT_NEAR(settledPosition(*player, *settled, asked), asked, SeekTolerance);
    ASSERT_TRUE(waitFor([&] { return player->backendPaused(); }));
    QTest::qWait(300);
    EXPECT_EQ(player->currentPosition(), asked);

    // And playing goes on from the step back, not from where it paused.
    player->play();
    QTest::qWait(300);
    EXPECT_NEAR(player->currentPosition(), asked + 0.3, 0.1);
    EXPECT_NEAR(player->backendTimePos(), asked + 0.3, 0.25); // mpv trails by its audio buffer
}

TEST_F(MpvPlayerTest, EndOfTheMediaIsTheStoppedStateAndPlayStartsOver)
{
    loadPlaying(media().shortFile());
    QElapsedTimer clock;
    clock.start();
    seekAndSettle(9.6);
    ASSERT_TRUE(waitFor([&] { return player->playState() != PlayerControl::Playing; }, 3000));
    // Not before the last 0.4 s have been heard.
    EXPECT_GE(clock.elapsed(), 350);
    EXPECT_EQ(player->playState(), PlayerControl::Stopped);
    EXPECT_EQ(player->currentPosition(), 0.0);
    EXPECT_EQ(player->currentPositionString(), QString());
    EXPECT_EQ(player->durationString(), QStringLiteral("00:10"));

    player->play();
    EXPECT_EQ(player->playState(), PlayerControl::Playing);
    EXPECT_NEAR(settledPosition(*player, *settled, 0.0), 0.0, SeekTolerance);
    QTest::qWait(300);
    EXPECT_NEAR(player->currentPosition(), 0.3, 0.1);

    // A position beyond the end stops there; one from there holds, paused.
    player->setCurrentPosition(25);
    EXPECT_EQ(player->playState(), PlayerControl::Stopped);
    ASSERT_TRUE(waitFor([&] { return player->backendPaused(); }));
    settled->clear();
    player->setCurrentPosition(4);
    EXPECT_EQ(player->playState(), PlayerControl::Paused);
    EXPECT_NEAR(settledPosition(*player, *settled, 4.0), 4.0, SeekTolerance);
    EXPECT_EQ(player->currentPosition(), 4.0);
}

// Whatever the file, the player leaves loading within a second and reads as
// stopped, which the window's end watch turns into its stopped state; a
// play tries the file again and fails the same way. A playlist is not
// followed: a list of files that do not exist fails as one file.
TEST_F(MpvPlayerTest, AFileThatWillNotPlayEndsStoppedWithinASecond)
{
    const auto write = [](const QString &path, const QByteArray &bytes) {
        QFile file(path);
        return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
    };
    // The start of an MP4 whose data and index were cut off.
    QByteArray truncatedMp4 = QByteArray::fromHex("00000018667479706973366d0000020069736f6d69736f32");
    truncatedMp4 += QByteArray::fromHex("000f4240") + "mdat" + QByteArray(2000, '\x01');
    const struct
    {
        const char *name;
        QByteArray bytes;
    } files[] = {
        {"notes.txt", "Meeting of 3 May\r\nPresent: all\r\n"},
        {"empty.wav", ""},
        {"list.m3u", "#EXTM3U\r\nmissing one.wav\r\nmissing two.mp3\r\n"},
        {"cut.mp4", truncatedMp4},
        {"junk.wav", QByteArray(4096, '\x5a')},
    };
    QSignalSpy failed(player.get(), &MpvPlayer::loadFailed);
    for (const auto &file : files) {
        SCOPED_TRACE(file.name);
        const QString path = media().path(QString::fromLatin1(file.name));
        ASSERT_TRUE(write(path, file.bytes));
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
    loadPlaying(media().shortFile());
}

// With no sound output that opens (here a file output into a folder that
// does not exist), mpv falls back to its null output: the file still runs.
TEST(MpvPlayerNoSound, AWavPlaysSilentlyWithItsPositionMoving)
{
    media();
    MpvPlayer player(MpvPlayer::Options{{"ao", "pcm"}, {"ao-pcm-file", "/nonexistent folder/out.pcm"}});
    ASSERT_TRUE(player.isValid());
    player.setURL(media().shortFile());
    ASSERT_TRUE(waitFor([&] { return player.playState() != PlayerControl::Transitioning; }));
    EXPECT_EQ(player.playState(), PlayerControl::Playing);
    EXPECT_NEAR(player.duration(), 10.0, 0.001);
    QTest::qWait(600);
    EXPECT_GT(player.backendTimePos(), 0.3);
    EXPECT_GT(player.currentPosition(), 0.3);
}

TEST_F(MpvPlayerTest, AnEmptyPlayerAcceptsEveryCall)
{
    player->play();
    player->pause();
    player->setCurrentPosition(5);
    player->stop();
    player->close();
    EXPECT_EQ(player->playState(), PlayerControl::Undefined);
    EXPECT_EQ(player->currentPosition(), 0.0);
    EXPECT_EQ(player->currentPositionString(), QString());
    EXPECT_EQ(player->duration(), 0.0);

    loadPlaying(media().shortFile());
    player->setURL(QString());
    EXPECT_EQ(player->playState(), PlayerControl::Undefined);
    EXPECT_EQ(player->URL(), QString());
    EXPECT_EQ(player->duration(), 0.0);
    QTest::qWait(100);
    EXPECT_EQ(player->playState(), PlayerControl::Undefined);
}

// The sound itself, written by mpv's pcm output to a file. That output is
// not timed: a file plays through as fast as it decodes.
class MpvPlayerSoundTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        MpvPlayer::Options options;
        options.insert("ao", "pcm");
        options.insert("ao-pcm-file", QFile::encodeName(output()));
        options.insert("ao-pcm-waveheader", "no");
        options.insert("audio-format", "s16");
        options.insert("audio-samplerate", QByteArray::number(WavSignal::Rate));
        options.insert("audio-channels", "mono");
        player = std::make_unique<MpvPlayer>(options);
        ASSERT_TRUE(player->isValid());
        // Unity gain, so that the samples come out as they went in.
        player->setVolume(100);
    }

    QString output() const { return m_dir.filePath(QStringLiteral("out.pcm")); }

    bool playToTheEnd()
    {
        player->play();
        return waitFor([&] { return player->playState() == PlayerControl::Stopped; }, 15000);
    }

    std::unique_ptr<MpvPlayer> player;

private:
    QTemporaryDir m_dir;
};

TEST_F(MpvPlayerSoundTest, PlaybackAfterASeekStartsOnTheSample)
{
    // Seeks are exact to the sample: the first sample played is the one at
    // the position asked for.
    const auto sampleAt = [](double seconds) { return int(std::lround(seconds * WavSignal::Rate)); };
    const auto index = [](int16_t sample) { return int(uint16_t(sample)); };

    media();
    player->setURL(media().longFile());
    player->setCurrentPosition(3.1234);
    player->pause();
    ASSERT_TRUE(waitFor([&] { return player->playState() == PlayerControl::Paused; }));
    ASSERT_TRUE(playToTheEnd());

    // Again after audio has played: the case where mpv's time-pos is short.
    QSignalSpy settled(player.get(), &MpvPlayer::seekSettled);
    player->setCurrentPosition(21.5);
    EXPECT_EQ(player->playState(), PlayerControl::Paused);
    ASSERT_GE(settledPosition(*player, settled), 0);
    ASSERT_TRUE(playToTheEnd());
    // The output file is complete once mpv has closed it.
    player.reset();

    const std::vector<int16_t> sound = WavSignal::readRaw(output());
    ASSERT_FALSE(sound.empty());
    EXPECT_EQ(index(sound.front()), sampleAt(3.1234) & 0xffff);
    std::vector<size_t> jumps;
    for (size_t i = 1; i < sound.size(); ++i) {
        if (((index(sound[i]) - index(sound[i - 1])) & 0xffff) != 1)
            jumps.push_back(i);
    }
    ASSERT_EQ(jumps.size(), 1u);
    EXPECT_EQ(int(jumps[0]), sampleAt(30) - sampleAt(3.1234));
    // After audio has played, mpv's decoder may round the second seek to
    // the neighbouring sample: a few microseconds, never more.
    const int offBy = ((index(sound[jumps[0]]) - (sampleAt(21.5) & 0xffff) + 0x8000) & 0xffff) - 0x8000;
    EXPECT_LE(std::abs(offBy), 1);
    EXPECT_NEAR(int(sound.size() - jumps[0]), sampleAt(30) - sampleAt(21.5), 1);
}

TEST_F(MpvPlayerSoundTest, HalfSpeedKeepsThePitch)
{
    media();
    player->setRate(0.5);
    player->setURL(media().toneFile());
    ASSERT_TRUE(waitFor([&] { return player->playState() == PlayerControl::Stopped; }));
    player.reset();
    const std::vector<int16_t> sound = WavSignal::readRaw(output());
    // Two seconds of tone last four at half speed...
    EXPECT_NEAR(double(sound.size()) / WavSignal::Rate, 4.0, 0.2);
    // ...and stay at 440 Hz rather than dropping to 220.
    EXPECT_NEAR(WavSignal::frequency(sound, sound.size() / 4, sound.size() * 3 / 4), 440.0, 5.0);
}

} // namespace
