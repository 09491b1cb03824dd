// The waveform of a 1-hour MP3 and a 1-hour WAV: time to the first minute of
// peaks (a screen at a minute per width) and to the whole file, and the CPU
// while computing. Then the CPU while playing a 1080p H.264 video with the
// picture shown (needs an X display: scripts/bench.sh runs it under Xvfb),
// with it hidden (no video decoded), and its sound alone. Prints figures.

#include "mediaview/PeaksJob.h"
#include "platform/mpv/MpvMedia.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>
#include <clocale>
#include <cstdio>
#include <sys/resource.h>

namespace {

double cpuSeconds()
{
    rusage u{};
    getrusage(RUSAGE_SELF, &u);
    return u.ru_utime.tv_sec + u.ru_stime.tv_sec + (u.ru_utime.tv_usec + u.ru_stime.tv_usec) / 1e6;
}

bool ffmpeg(const QStringList &args)
{
    QProcess p;
    p.start(QStringLiteral("ffmpeg"), QStringList{QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-y")} + args);
    return p.waitForFinished(-1) && p.exitCode() == 0;
}

// Speech-like sound: noise shaped by a slow swell, with pauses.
const QString Voice = QStringLiteral("aevalsrc=(0.3+0.3*sin(2*PI*0.4*t))*gt(sin(2*PI*0.1*t)\\,-0.5)*(random(0)-0.5):s=44100:d=3600");

void waveform(const QString &path, const char *label)
{
    QElapsedTimer clock;
    clock.start();
    const double cpu0 = cpuSeconds();
    PeaksJob job(&decodeAudio, path, QString());
    Peaks got;
    double firstMinute = -1;
    while (job.state() == PeaksJob::State::Working) {
        QThread::msleep(5);
        job.takeNew(got);
        if (firstMinute < 0 && got.size() >= 60 * Peaks::PerSecond)
            firstMinute = clock.elapsed();
    }
    job.takeNew(got);
    const double wall = clock.elapsed();
    const double cpu = cpuSeconds() - cpu0;
    std::printf("waveform %-4s 1 h: first minute %4.0f ms, whole file %6.0f ms (%d s of peaks), "
                "CPU %.2f s = %3.0f %% of a core\n",
                label, firstMinute, wall, got.size() / Peaks::PerSecond, cpu, cpu / (wall / 1000) * 100);
}

void runFor(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

// Plays the file for `seconds` and gives the process's CPU in % of a core.
double playingCpu(const QString &path, bool showPicture, int seconds)
{
    MpvPlayer player(videoPlayerOptions());
    MpvMedia media(player);
    QWidget window;
    if (showPicture) {
        QWidget *video = media.createVideoWidget(&window);
        window.resize(1280, 720);
        video->setGeometry(0, 0, 1280, 720);
        window.show();
    }
    media.setVideoEnabled(showPicture);
    player.setURL(path);
    // The first two seconds (loading, first frames) are not counted.
    runFor(2000);
    if (player.playState() != PlayerControl::Playing)
        return -1;
    const double cpu0 = cpuSeconds();
    QElapsedTimer clock;
    clock.start();
    const QByteArray dropped0 = player.propertyText("frame-drop-count");
    runFor(seconds * 1000);
    const double cpu = (cpuSeconds() - cpu0) / (clock.elapsed() / 1000.0) * 100;
    if (showPicture)
        std::printf("  (frames dropped by the output: %s at the start of the count, %s at its end)\n",
                    dropped0.constData(), player.propertyText("frame-drop-count").constData());
    return cpu;
}

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    std::setlocale(LC_NUMERIC, "C");
    QTemporaryDir dir;
    // --video: the playing figures only.
    if (!QCoreApplication::arguments().contains(QStringLiteral("--video"))) {
        const QString wav = dir.filePath(QStringLiteral("hour.wav"));
        const QString mp3 = dir.filePath(QStringLiteral("hour.mp3"));
        std::printf("making 1 h of sound (WAV, then MP3 128 kb/s)...\n");
        std::fflush(stdout);
        if (!ffmpeg({QStringLiteral("-f"), QStringLiteral("lavfi"), QStringLiteral("-i"), Voice, wav})
            || !ffmpeg({QStringLiteral("-i"), wav, QStringLiteral("-b:a"), QStringLiteral("128k"), mp3})) {
            std::printf("ffmpeg could not make the media\n");
            return 1;
        }
        waveform(mp3, "MP3");
        waveform(wav, "WAV");
        QFile::remove(wav);
        QFile::remove(mp3);
    }

    const int seconds = 15;
    const QString film = dir.filePath(QStringLiteral("film.mp4"));
    const QString sound = dir.filePath(QStringLiteral("sound.m4a"));
    std::printf("making %d s of 1080p30 H.264 with AAC sound...\n", seconds + 5);
    std::fflush(stdout);
    const QString length = QString::number(seconds + 5);
    if (!ffmpeg({QStringLiteral("-f"), QStringLiteral("lavfi"), QStringLiteral("-i"),
                 QStringLiteral("testsrc2=s=1920x1080:r=30:d=") + length, QStringLiteral("-f"), QStringLiteral("lavfi"),
                 QStringLiteral("-i"), QStringLiteral("sine=frequency=300:d=") + length, QStringLiteral("-c:v"),
                 QStringLiteral("libx264"), QStringLiteral("-preset"), QStringLiteral("veryfast"), QStringLiteral("-pix_fmt"),
                 QStringLiteral("yuv420p"), QStringLiteral("-colorspace"), QStringLiteral("bt709"), QStringLiteral("-c:a"),
                 QStringLiteral("aac"), film})
        || !ffmpeg({QStringLiteral("-i"), film, QStringLiteral("-vn"), QStringLiteral("-c:a"), QStringLiteral("copy"), sound})) {
        std::printf("ffmpeg could not make the video\n");
        return 1;
    }
    std::printf("playing, %d s each, CPU of the whole process in %% of a core:\n", seconds);
    std::printf("  sound alone           %5.1f %%\n", playingCpu(sound, false, seconds));
    std::printf("  video, window hidden  %5.1f %%\n", playingCpu(film, false, seconds));
    if (QGuiApplication::platformName() == QStringLiteral("xcb"))
        std::printf("  video, window shown   %5.1f %% (1280x720 widget)\n", playingCpu(film, true, seconds));
    else
        std::printf("  video, window shown   needs an X display (run under Xvfb)\n");
    return 0;
}
