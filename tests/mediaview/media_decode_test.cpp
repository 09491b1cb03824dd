// The waveform's sound through FFmpeg, and libmpv decoding no video while no
// window shows it; on media made by ffmpeg.

#include "MediaFiles.h"
#include "WaitFor.h"

#include "platform/mpv/MpvMedia.h"

#include <QFile>
#include <QTemporaryDir>
#include <algorithm>
#include <gtest/gtest.h>
#include <optional>

namespace {

class Collect : public DecodeTarget
{
public:
    MediaFacts facts;
    std::optional<PeaksBuilder> builder;
    void opened(const MediaFacts &f) override
    {
        facts = f;
        builder.emplace(f.sampleRate);
    }
    void samples(const float *s, int frames, int channels) override { builder->add(s, frames, channels); }
    bool cancelled() const override { return false; }
};

// The largest swing within 50 ms either side of a time.
int swingAround(const Peaks &p, double seconds)
{
    const int at = int(seconds * Peaks::PerSecond);
    int swing = 0;
    for (int i = std::max(at - 5, 0); i <= std::min(at + 5, p.size() - 1); ++i)
        swing = std::max({swing, int(p.high[i]), -int(p.low[i])});
    return swing;
}

} // namespace

TEST(MediaDecode, AToneBetweenSilencesHasItsAmplitudeAtItsTimes)
{
    QTemporaryDir dir;
    // MP3 loses a few per cent of the level, and its encoder delay shifts
    // the tone by about 25 ms.
    for (const auto &[ext, tolerance] : {std::pair{"wav", 50}, std::pair{"mp3", 1000}}) {
        const QString path = dir.filePath(QStringLiteral("tone.") + QString::fromLatin1(ext));
        if (!makeMedia(path, toneBetweenSilences()))
            GTEST_SKIP() << "ffmpeg could not make the test media";
        Collect c;
        ASSERT_EQ(decodeAudio(path, c), DecodeResult::Done) << ext;
        c.builder->finish();
        const Peaks &p = c.builder->peaks();
        EXPECT_NEAR(p.size(), 300, 6) << ext;
        const int half = 16384;
        const std::pair<double, int> rows[] = {{0.5, 0},    {0.9, 0},    {1.1, half}, {1.5, half},
                                               {1.9, half}, {2.1, 0},    {2.5, 0}};
        for (const auto &[seconds, want] : rows)
            EXPECT_NEAR(swingAround(p, seconds), want, tolerance) << ext << " at " << seconds << " s";
    }
}

TEST(MediaDecode, TheDecoderTellsSoundPictureAndBrokenFilesApart)
{
    QTemporaryDir dir;
    const QString tone = dir.filePath(QStringLiteral("tone.wav"));
    const QString film = dir.filePath(QStringLiteral("film.mp4"));
    const QString talkingFilm = dir.filePath(QStringLiteral("talking.mp4"));
    if (!makeMedia(tone, toneBetweenSilences()) || !makeMedia(film, fourColours(false))
        || !makeMedia(talkingFilm, fourColours(true)))
        GTEST_SKIP() << "ffmpeg could not make the test media";
    const QString broken = dir.filePath(QStringLiteral("broken.mp3"));
    QFile f(broken);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write("not a recording at all");
    f.close();

    struct Row { QString path; DecodeResult result; bool audio; bool video; };
    const Row rows[] = {{tone, DecodeResult::Done, true, false},
                        {film, DecodeResult::NoAudio, false, true},
                        {talkingFilm, DecodeResult::Done, true, true},
                        {broken, DecodeResult::Unreadable, false, false}};
    for (const Row &row : rows) {
        Collect c;
        EXPECT_EQ(decodeAudio(row.path, c), row.result) << qPrintable(row.path);
        EXPECT_EQ(c.facts.hasAudio, row.audio) << qPrintable(row.path);
        EXPECT_EQ(c.facts.hasVideo, row.video) << qPrintable(row.path);
    }
}

TEST(MediaDecode, WithNoWindowShowingThePictureMpvDecodesNoVideo)
{
    QTemporaryDir dir;
    const QString film = dir.filePath(QStringLiteral("talking.mp4"));
    if (!makeMedia(film, fourColours(true)))
        GTEST_SKIP() << "ffmpeg could not make the test media";
    MpvPlayer player(videoPlayerOptions());
    ASSERT_TRUE(player.isValid());
    MpvMedia media(player);
    media.setVideoEnabled(false);
    player.setURL(film);
    ASSERT_TRUE(waitFor([&] { return player.playState() == PlayerControl::Playing; }, 10000));
    EXPECT_EQ(player.propertyText("track-list/count"), QByteArray("2"));
    EXPECT_EQ(player.propertyText("vid"), QByteArray("no"));
    EXPECT_EQ(player.propertyText("current-tracks/video/id"), QByteArray());
    EXPECT_EQ(player.propertyText("current-tracks/audio/id"), QByteArray("1"));
}
