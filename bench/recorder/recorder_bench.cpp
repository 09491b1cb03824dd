// Records a continuous sine from a private PulseAudio server's null sink
// for 10 minutes (or the minutes given as the first argument, up to 60),
// then looks for breaks in the sine: every break is sound lost or
// repeated. Prints the breaks, the samples lost per hour, and the CPU time
// of the recording process as a share of one core.
//
//   recorder_bench [minutes]

#include "platform/LazyAudioInput.h"
#include "recorder/WaveIn.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>
#include <cmath>
#include <cstdio>
#include <sys/resource.h>

namespace {

constexpr int Rate = 48000;
constexpr double Tone = 997.0; // no whole number of samples per period
const double W = 2 * M_PI * Tone / Rate;

bool run(const QString &program, const QStringList &args)
{
    QProcess p;
    p.start(program, args);
    return p.waitForFinished(10000) && p.exitStatus() == QProcess::NormalExit && p.exitCode() == 0;
}

double cpuSeconds()
{
    rusage u{};
    getrusage(RUSAGE_SELF, &u);
    return double(u.ru_utime.tv_sec + u.ru_stime.tv_sec) + (u.ru_utime.tv_usec + u.ru_stime.tv_usec) / 1e6;
}

// The phase of the tone over `length` samples from `from`, against the
// absolute sample index.
double phaseAt(const std::vector<double> &x, size_t from, size_t length)
{
    double i = 0, q = 0;
    for (size_t n = from; n < from + length; ++n) {
        i += x[n] * std::cos(W * double(n));
        q += x[n] * std::sin(W * double(n));
    }
    return std::atan2(i, q);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const int minutes = argc > 1 ? std::clamp(std::atoi(argv[1]), 1, 60) : 10;

    QTemporaryDir dir;
    for (const char *name : {"home", "runtime", "pulse-runtime", "pulse-state"})
        QDir(dir.path()).mkpath(QLatin1String(name));
    qputenv("HOME", QFile::encodeName(dir.filePath(QStringLiteral("home"))));
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(dir.filePath(QStringLiteral("runtime"))));
    qputenv("PULSE_RUNTIME_PATH", QFile::encodeName(dir.filePath(QStringLiteral("pulse-runtime"))));
    qputenv("PULSE_STATE_PATH", QFile::encodeName(dir.filePath(QStringLiteral("pulse-state"))));
    QFile pa(dir.filePath(QStringLiteral("server.pa")));
    pa.open(QIODevice::WriteOnly);
    pa.write("load-module module-native-protocol-unix\n"
             "load-module module-null-sink sink_name=null rate=48000\n"
             "load-module module-remap-source source_name=mic master=null.monitor\n"
             "set-default-sink null\nset-default-source mic\n");
    pa.close();
    if (!run(QStringLiteral("pulseaudio"), {QStringLiteral("--daemonize=yes"), QStringLiteral("--exit-idle-time=-1"),
                                            QStringLiteral("--disallow-exit"), QStringLiteral("-n"), QStringLiteral("-F"),
                                            pa.fileName()})) {
        std::printf("no PulseAudio server could start\n");
        return 1;
    }

    QProcess tone;
    tone.start(QStringLiteral("sh"),
               {QStringLiteral("-c"),
                QStringLiteral("sox -n -t raw -r %1 -e signed -b 16 -c 2 - synth %2 sine %3 vol 0.5"
                               " | pacat --latency-msec=50 --rate=%1 --channels=2 --format=s16le")
                    .arg(Rate)
                    .arg(minutes * 60 + 30)
                    .arg(Tone)});
    tone.waitForStarted();
    QElapsedTimer warm;
    warm.start();
    while (warm.elapsed() < 2000)
        app.processEvents(QEventLoop::AllEvents, 50);

    LazyAudioInput source(QStringLiteral(QM_MODULE_DIR));
    const QString path = dir.filePath(QStringLiteral("long.wav"));
    double cpu = 0;
    qint64 wall = 0;
    {
        WaveIn engine(source);
        engine.AggancioCattura(true);
        const double cpu0 = cpuSeconds();
        QElapsedTimer clock;
        clock.start();
        engine.AvviaCattura(2, 16, Rate, path);
        QTimer::singleShot(minutes * 60 * 1000, &app, [&] { app.quit(); });
        app.exec();
        engine.AggancioCattura(false);
        engine.FermaCattura();
        wall = clock.elapsed();
        cpu = cpuSeconds() - cpu0;
    }
    tone.kill();
    tone.waitForFinished();
    run(QStringLiteral("pulseaudio"), {QStringLiteral("--kill")});

    // The left channel, from a little after the tone is first heard.
    QFile f(path);
    f.open(QIODevice::ReadOnly);
    const QByteArray bytes = f.readAll();
    std::vector<double> x;
    x.reserve(size_t(bytes.size() / 4));
    for (qsizetype at = 44; at + 4 <= bytes.size(); at += 4)
        x.push_back(qint16(quint8(bytes[at]) | quint8(bytes[at + 1]) << 8));
    size_t first = 0;
    while (first < x.size() && std::abs(x[first]) < 8000)
        ++first;
    first += 1000;

    // A sine obeys x[n] = 2 cos(w) x[n-1] - x[n-2] to within the rounding
    // of its samples; where it does not, the sound broke.
    const double c = 2 * std::cos(W);
    int breaks = 0;
    int silences = 0;
    double lost = 0;
    const size_t window = 480;
    for (size_t n = first + 2; n + 1 < x.size(); ++n) {
        if (std::abs(x[n] - c * x[n - 1] + x[n - 2]) < 200)
            continue;
        // Silence in the sink (the tone's player was starved) is no loss of
        // the recorder's: the sine stops and starts again.
        size_t quiet = 0;
        for (size_t k = n - std::min(n, window); k < std::min(x.size(), n + 2 * window) && quiet < 16; ++k)
            quiet = std::abs(x[k]) < 50 ? quiet + 1 : 0;
        if (quiet >= 16) {
            ++silences;
            n += 2 * window;
            continue;
        }
        ++breaks;
        if (n >= first + window && n + window < x.size()) {
            // Samples missing (or repeated) at the break: the phase jump,
            // as the smallest shift that explains it.
            double jump = phaseAt(x, n, window) - phaseAt(x, n - window, window);
            jump = std::remainder(jump, 2 * M_PI);
            lost += std::abs(jump) / W;
        }
        n += 2;
    }
    const double seconds = double(x.size() - std::min(first, x.size())) / Rate;
    std::printf("recorded      %.1f s of tone in %.1f s\n", seconds, wall / 1000.0);
    std::printf("breaks        %d (and %d gaps of silence from a starved tone player)\n", breaks, silences);
    std::printf("lost/hour     %.0f samples\n", seconds > 0 ? lost * 3600.0 / seconds : 0.0);
    std::printf("cpu           %.2f %% of one core\n", wall > 0 ? cpu * 100000.0 / double(wall) : 0.0);
    return 0;
}
