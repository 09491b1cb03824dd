// Media made by ffmpeg at test time through the real back-ends: the
// waveform's sound through FFmpeg, libmpv decoding no video while no window
// shows it, and the picture through mpv's render API in the OpenGL widget,
// on a private Xvfb with Mesa's software OpenGL (the test runs itself again
// there).

#include "WaitFor.h"

#include "platform/mpv/MpvMedia.h"

#include <QCoreApplication>
#include <QFile>
#include <QGuiApplication>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <algorithm>
#include <gtest/gtest.h>
#include <optional>

namespace {

// Media made by ffmpeg for a test; false when ffmpeg is missing or fails.
inline bool makeMedia(const QString &path, const QStringList &inputAndOptions)
{
    const QString ffmpeg = QStandardPaths::findExecutable(QStringLiteral("ffmpeg"));
    if (ffmpeg.isEmpty())
        return false;
    QProcess p;
    p.start(ffmpeg, QStringList{QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-y")} + inputAndOptions
                        + QStringList{path});
    return p.waitForFinished(60000) && p.exitStatus() == QProcess::NormalExit && p.exitCode() == 0;
}

QStringList args(const char *text)
{
    return QString::fromLatin1(text).split(u' ');
}

// One second of silence, one of a 1 kHz tone at half of full scale, one of
// silence.
inline QStringList toneBetweenSilences()
{
    return args("-f lavfi -i aevalsrc=if(between(t\\,1\\,2)\\,0.5*sin(2*PI*1000*t)\\,0):s=44100:d=3");
}

// Two seconds of video in four squares of known colours, red, green / blue,
// white, tagged BT.709 so that the colours come back as they went in.
inline QStringList fourColours(bool withSound)
{
    return (withSound ? args("-f lavfi -t 2 -i sine=frequency=440 -map 0:a") : QStringList())
           + args("-filter_complex color=c=0xff0000:s=160x90:d=2[a];color=c=0x00ff00:s=160x90:d=2[b];"
                  "color=c=0x0000ff:s=160x90:d=2[c];color=c=0xffffff:s=160x90:d=2[d];"
                  "[a][b]hstack[t];[c][d]hstack[u];"
                  "[t][u]vstack,scale=out_color_matrix=bt709:out_range=tv,format=yuv420p[v] -map [v] -c:v libx264 "
                  "-colorspace bt709 -color_primaries bt709 -color_trc bt709 -color_range tv");
}

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

// Starts the test again on a display of its own; its output, or nullopt
// with the reason when there is no Xvfb.
std::optional<QByteArray> runOnXvfb(int &exitCode, QString &why)
{
    const QString xvfbPath = QStandardPaths::findExecutable(QStringLiteral("Xvfb"));
    if (xvfbPath.isEmpty()) {
        why = QStringLiteral("Xvfb is not installed");
        return std::nullopt;
    }
    QProcess xvfb;
    xvfb.start(xvfbPath, args("-displayfd 1 -screen 0 1024x768x24 -nolisten tcp"));
    QByteArray display;
    if (!xvfb.waitForStarted(5000) || !waitFor([&] {
            display += xvfb.readAllStandardOutput();
            return display.endsWith('\n');
        }, 10000)) {
        why = QStringLiteral("Xvfb did not start");
        return std::nullopt;
    }
    QProcess child;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    env.insert(QStringLiteral("DISPLAY"), u':' + QString::fromLatin1(display.trimmed()));
    env.insert(QStringLiteral("LIBGL_ALWAYS_SOFTWARE"), QStringLiteral("1"));
    child.setProcessEnvironment(env);
    child.setProcessChannelMode(QProcess::MergedChannels);
    child.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--gtest_filter=Video.*")});
    child.waitForFinished(90000);
    exitCode = child.exitStatus() == QProcess::NormalExit ? child.exitCode() : -1;
    const QByteArray out = child.readAll();
    xvfb.terminate();
    xvfb.waitForFinished(5000);
    return out;
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
        const std::pair<double, int> rows[] = {{0.9, 0}, {1.1, half}, {1.9, half}, {2.1, 0}};
        for (const auto &[seconds, want] : rows)
            EXPECT_NEAR(swingAround(p, seconds), want, tolerance) << ext << " at " << seconds << " s";
    }
}

TEST(MediaDecode, TheDecoderTellsPictureAndBrokenFilesApartAndMpvDecodesNoHiddenVideo)
{
    QTemporaryDir dir;
    const QString film = dir.filePath(QStringLiteral("film.mp4"));
    const QString talkingFilm = dir.filePath(QStringLiteral("talking.mp4"));
    if (!makeMedia(film, fourColours(false)) || !makeMedia(talkingFilm, fourColours(true)))
        GTEST_SKIP() << "ffmpeg could not make the test media";
    const QString broken = dir.filePath(QStringLiteral("broken.mp3"));
    QFile f(broken);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly) && f.write("not a recording at all") > 0);
    f.close();

    struct Row { QString path; DecodeResult result; bool audio; bool video; };
    const Row rows[] = {{film, DecodeResult::NoAudio, false, true},
                        {talkingFilm, DecodeResult::Done, true, true},
                        {broken, DecodeResult::Unreadable, false, false}};
    for (const Row &row : rows) {
        Collect c;
        EXPECT_EQ(decodeAudio(row.path, c), row.result) << qPrintable(row.path);
        EXPECT_EQ(c.facts.hasAudio, row.audio) << qPrintable(row.path);
        EXPECT_EQ(c.facts.hasVideo, row.video) << qPrintable(row.path);
    }

    // With no window showing the picture, libmpv plays the sound alone.
    MpvPlayer player(videoPlayerOptions());
    ASSERT_TRUE(player.isValid());
    MpvMedia media(player);
    media.setVideoEnabled(false);
    player.setURL(talkingFilm);
    ASSERT_TRUE(waitFor([&] { return player.playState() == PlayerControl::Playing; }, 10000));
    EXPECT_EQ(player.propertyText("vid"), QByteArray("no"));
    EXPECT_EQ(player.propertyText("current-tracks/video/id"), QByteArray());
    EXPECT_EQ(player.propertyText("current-tracks/audio/id"), QByteArray("1"));
}

TEST(Video, TheWidgetShowsTheColoursOfTheTestPatternAtTheirPlaces)
{
    if (QGuiApplication::platformName() != QStringLiteral("xcb")) {
        int exitCode = -1;
        QString why;
        const auto out = runOnXvfb(exitCode, why);
        if (!out)
            GTEST_SKIP() << qPrintable(why);
        if (out->contains("[  SKIPPED ]"))
            GTEST_SKIP() << out->constData();
        EXPECT_EQ(exitCode, 0) << out->constData();
        return;
    }

    QTemporaryDir dir;
    const QString film = dir.filePath(QStringLiteral("film.mp4"));
    if (!makeMedia(film, fourColours(false)))
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

    struct Row { QPoint at; QColor want; };
    const Row rows[] = {{{80, 45}, Qt::red}, {{240, 45}, Qt::green}, {{80, 135}, Qt::blue}, {{240, 135}, Qt::white}};
    QImage frame;
    // Until the last square has come, or the time is up.
    waitFor([&] {
        frame = video->grabFramebuffer();
        return frame.pixelColor(240, 135).lightness() > 200;
    }, 10000);
    for (const Row &row : rows) {
        const QColor got = frame.pixelColor(row.at);
        EXPECT_NEAR(got.red(), row.want.red(), 4) << row.at.x() << "," << row.at.y();
        EXPECT_NEAR(got.green(), row.want.green(), 4) << row.at.x() << "," << row.at.y();
        EXPECT_NEAR(got.blue(), row.want.blue(), 4) << row.at.x() << "," << row.at.y();
    }
}
