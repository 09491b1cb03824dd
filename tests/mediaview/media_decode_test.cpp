// Media made by ffmpeg at test time through the real back-ends: the
// waveform's sound through FFmpeg, libmpv decoding no video while no window
// shows it, and the picture through mpv's render API in the OpenGL widget
// (on an X display: CTest runs those as mediaview_video_test on Xvfb).

#include "WaitFor.h"

#include "platform/mpv/MpvMedia.h"

#include <QFile>
#include <QGuiApplication>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <algorithm>
#include <gtest/gtest.h>
#include <optional>

namespace {

QStringList args(const char *text)
{
    return QString::fromLatin1(text).split(u' ');
}

// Media made by ffmpeg into `dir`; empty when ffmpeg is missing or fails.
QString makeMedia(const QTemporaryDir &dir, const char *name, const QStringList &inputAndOptions)
{
    QProcess p;
    p.start(QStringLiteral("ffmpeg"), args("-v error -y") + inputAndOptions + QStringList{dir.filePath(QLatin1String(name))});
    const bool made = p.waitForFinished(60000) && p.exitStatus() == QProcess::NormalExit && p.exitCode() == 0;
    return made ? dir.filePath(QLatin1String(name)) : QString();
}

// Two seconds of video in four squares of known colours, red, green / blue,
// white, tagged BT.709 so that the colours come back as they went in.
QStringList fourColours(bool withSound)
{
    return (withSound ? args("-f lavfi -t 2 -i sine=frequency=440 -map 0:a") : QStringList())
           + args("-filter_complex color=c=0xff0000:s=160x90:d=2[a];color=c=0x00ff00:s=160x90:d=2[b];"
                  "color=c=0x0000ff:s=160x90:d=2[c];color=c=0xffffff:s=160x90:d=2[d];"
                  "[a][b]hstack[t];[c][d]hstack[u];"
                  "[t][u]vstack,scale=out_color_matrix=bt709:out_range=tv,format=yuv420p[v] -map [v] -c:v libx264 "
                  "-colorspace bt709 -color_primaries bt709 -color_trc bt709 -color_range tv");
}

struct Collect : DecodeTarget
{
    MediaFacts facts;
    std::optional<PeaksBuilder> builder;
    void opened(const MediaFacts &f) override { facts = f; builder.emplace(f.sampleRate); }
    void samples(const float *s, int frames, int channels) override { builder->add(s, frames, channels); }
    bool cancelled() const override { return false; }
};

} // namespace

TEST(MediaDecode, AToneBetweenSilencesHasItsAmplitudeAtItsTimes)
{
    QTemporaryDir dir;
    // MP3 loses a few per cent of the level, and its encoder delay shifts
    // the tone by about 25 ms.
    for (const auto &[name, tolerance] : {std::pair{"tone.wav", 50}, std::pair{"tone.mp3", 1000}}) {
        SCOPED_TRACE(name);
        // One second of silence, one of a 1 kHz tone at half of full scale, one of silence.
        const QString path = makeMedia(dir, name, args("-f lavfi -i aevalsrc=if(between(t\\,1\\,2)\\,0.5*sin(2*PI*1000*t)\\,0):s=44100:d=3"));
        if (path.isEmpty())
            GTEST_SKIP() << "ffmpeg could not make the test media";
        Collect c;
        ASSERT_EQ(decodeAudio(path, c), DecodeResult::Done);
        c.builder->finish();
        const Peaks &p = c.builder->peaks();
        EXPECT_NEAR(p.size(), 300, 6);
        for (const auto &[seconds, want] : {std::pair{0.9, 0}, {1.1, 16384}, {1.9, 16384}, {2.1, 0}}) {
            // The largest swing within 50 ms either side.
            const int at = int(seconds * Peaks::PerSecond);
            int swing = 0;
            for (int i = std::max(at - 5, 0); i <= std::min(at + 5, p.size() - 1); ++i)
                swing = std::max({swing, int(p.high[i]), -int(p.low[i])});
            EXPECT_NEAR(swing, want, tolerance) << "at " << seconds << " s";
        }
    }
}

TEST(MediaDecode, TheDecoderTellsPictureAndBrokenFilesApartAndMpvDecodesNoHiddenVideo)
{
    QTemporaryDir dir;
    const QString film = makeMedia(dir, "film.mp4", fourColours(false));
    const QString talkingFilm = makeMedia(dir, "talking.mp4", fourColours(true));
    if (film.isEmpty() || talkingFilm.isEmpty())
        GTEST_SKIP() << "ffmpeg could not make the test media";
    QFile broken(dir.filePath(QStringLiteral("broken.mp3")));
    ASSERT_TRUE(broken.open(QIODevice::WriteOnly) && broken.write("not a recording at all") > 0);
    broken.close();

    const struct { QString path; DecodeResult result; bool audio, video; } rows[] = {
        {film, DecodeResult::NoAudio, false, true},
        {talkingFilm, DecodeResult::Done, true, true},
        {broken.fileName(), DecodeResult::Unreadable, false, false}};
    for (const auto &row : rows) {
        SCOPED_TRACE(row.path.toStdString());
        Collect c;
        EXPECT_EQ(decodeAudio(row.path, c), row.result);
        EXPECT_EQ(c.facts.hasAudio, row.audio);
        EXPECT_EQ(c.facts.hasVideo, row.video);
    }

    // With no window showing the picture, libmpv plays the sound alone.
    MpvPlayer player(videoPlayerOptions());
    ASSERT_TRUE(player.isValid());
    MpvMedia media(player);
    media.setVideoEnabled(false);
    player.setURL(talkingFilm);
    ASSERT_TRUE(waitFor([&] { return player.playState() == PlayerControl::Playing; }, 10000));
    EXPECT_EQ(player.propertyText("current-tracks/video/id"), QByteArray());
    EXPECT_EQ(player.propertyText("current-tracks/audio/id"), QByteArray("1"));
}

TEST(Video, TheWidgetShowsTheColoursOfTheTestPatternAtTheirPlaces)
{
    if (QGuiApplication::platformName() != QStringLiteral("xcb"))
        GTEST_SKIP() << "needs an X display: mediaview_video_test runs it on Xvfb";
    QTemporaryDir dir;
    const QString film = makeMedia(dir, "film.mp4", fourColours(false));
    if (film.isEmpty())
        GTEST_SKIP() << "ffmpeg could not make the test media";
    MpvPlayer player(videoPlayerOptions());
    ASSERT_TRUE(player.isValid());
    MpvMedia media(player);
    // Declared after the player: the render context goes before the handle.
    QWidget window;
    auto *video = static_cast<MpvVideoWidget *>(media.createVideoWidget(&window));
    window.resize(320, 180);
    video->setGeometry(0, 0, 320, 180);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    media.setVideoEnabled(true);
    if (!waitFor([&] { return video->hasRenderContext(); }, 5000))
        GTEST_SKIP() << "no OpenGL context for mpv's render API";
    player.setURL(film);

    QImage frame;
    // Until the last square has come, or the time is up.
    waitFor([&] {
        frame = video->grabFramebuffer();
        return frame.pixelColor(240, 135).lightness() > 200;
    }, 10000);
    const std::pair<QPoint, QColor> rows[] = {{{80, 45}, Qt::red}, {{240, 45}, Qt::green}, {{80, 135}, Qt::blue}, {{240, 135}, Qt::white}};
    for (const auto &[at, want] : rows) {
        SCOPED_TRACE(testing::Message() << at.x() << "," << at.y());
        const QColor got = frame.pixelColor(at);
        EXPECT_NEAR(got.red(), want.red(), 4);
        EXPECT_NEAR(got.green(), want.green(), 4);
        EXPECT_NEAR(got.blue(), want.blue(), 4);
    }
}
