// Start-up to the first paint of the player window and the resident memory
// after start, each as a ratio to a bare Qt window measured in the same run.
// Run it under a display (scripts/bench.sh uses Xvfb). Prints figures only.

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

struct Sample
{
    double firstPaintMs = -1;
    long rssKb = -1;
};

Sample runOnce(const QString &program, const QStringList &args, const QString &workDir)
{
    QProcess p;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("QM_BENCH_FIRST_PAINT"), QStringLiteral("1"));
    env.insert(QStringLiteral("QM_AUDIO_OUTPUT"), QStringLiteral("null"));
    env.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), QStringLiteral("disabled:"));
    p.setProcessEnvironment(env);
    p.setWorkingDirectory(workDir);
    Sample s;
    QElapsedTimer clock;
    clock.start();
    p.start(program, args);
    QByteArray out;
    while (p.state() != QProcess::NotRunning || p.bytesAvailable() > 0) {
        p.waitForReadyRead(20);
        out += p.readAllStandardOutput();
        if (s.firstPaintMs < 0 && out.contains("first-paint"))
            s.firstPaintMs = double(clock.nsecsElapsed()) / 1e6;
        if (out.contains("rss-kb"))
            break;
        if (clock.elapsed() > 15000)
            break;
    }
    p.waitForFinished(5000);
    out += p.readAllStandardOutput();
    const qsizetype at = out.indexOf("rss-kb ");
    if (at >= 0)
        s.rssKb = out.mid(at + 7).split('\n').value(0).trimmed().toLong();
    if (p.state() != QProcess::NotRunning)
        p.kill();
    return s;
}

double median(std::vector<double> v)
{
    if (v.empty())
        return -1;
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    if (qEnvironmentVariableIsEmpty("DISPLAY")) {
        std::fprintf(stderr, "startup_bench needs a display; run it under xvfb-run -a\n");
        return 2;
    }
    // The program writes its settings into its own folder: run a copy.
    QTemporaryDir work;
    const QString programDir = QFileInfo(QStringLiteral(QM_PROGRAM)).absolutePath();
    QProcess::execute(QStringLiteral("cp"), {QStringLiteral("-r"), programDir, work.path() + QStringLiteral("/program")});
    const QString program = work.path() + QStringLiteral("/program/quillmere");

    const int runs = 10;
    std::vector<double> app1, bare1, appMem, bareMem;
    for (int i = 0; i < runs; ++i) {
        const Sample b = runOnce(QStringLiteral(QM_BARE), {}, work.path());
        const Sample a = runOnce(program, {}, work.path());
        bare1.push_back(b.firstPaintMs);
        app1.push_back(a.firstPaintMs);
        bareMem.push_back(double(b.rssKb));
        appMem.push_back(double(a.rssKb));
    }
    const double a = median(app1), b = median(bare1);
    const double am = median(appMem), bm = median(bareMem);
    std::printf("first paint, median of %d: player %.1f ms, bare Qt window %.1f ms, ratio %.2f\n", runs, a, b, a / b);
    std::printf("resident memory 1 s after start, median: player %.0f kB, bare Qt window %.0f kB, ratio %.2f\n", am, bm, am / bm);
    return 0;
}
