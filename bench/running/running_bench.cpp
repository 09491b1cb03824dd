// The program running with a recording, seen from outside: resident memory
// 3 s after start, CPU while it plays, and the two latencies a typist
// feels, measured on the sound itself: from the F5 key event to silence,
// and from the next F5 to sound. A private PulseAudio server with a null
// sink takes the program's sound; a recorder reads the sink's monitor.
// Run it under a display with no window manager (scripts/bench.sh uses
// Xvfb). Prints figures only. The memory and CPU of a floor program (two
// windows with text and libmpv playing the same file) follow, for what
// any program that does this job pays.

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <pulse/error.h>
#include <pulse/simple.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <thread>
#include <unistd.h>
#include <vector>

// After Qt: Xlib defines Bool, Status and other plain names.
#include "../support/ProgramCopy.h"
#include "../support/XWatch.h"

namespace {

constexpr int Rate = 48000;
constexpr int Chunk = 240; // 5 ms
constexpr int Loud = 1500; // the tone at the default volume peaks near 7000

// The sink's monitor, read in 5 ms pieces; each sample gets the time it
// was played, from the read's arrival less the capture latency.
class Monitor
{
public:
    bool start(const QByteArray &server)
    {
        pa_sample_spec spec{PA_SAMPLE_S16LE, Rate, 1};
        pa_buffer_attr attr{};
        attr.maxlength = uint32_t(-1);
        attr.fragsize = Chunk * 2;
        int error = 0;
        m_pa = pa_simple_new(server.constData(), "bench", PA_STREAM_RECORD, "bench.monitor", "monitor",
                             &spec, nullptr, &attr, &error);
        if (!m_pa) {
            std::fprintf(stderr, "recorder: %s\n", pa_strerror(error));
            return false;
        }
        m_thread = std::thread([this] { run(); });
        return true;
    }
    ~Monitor()
    {
        m_stop = true;
        if (m_thread.joinable())
            m_thread.join();
        if (m_pa)
            pa_simple_free(m_pa);
    }
    // The time of the first sample played after `after` that starts 5 ms of
    // silence (wantSound false) or is loud (true); -1 within timeoutMs.
    double waitFor(bool wantSound, double after, double timeoutMs)
    {
        const double until = bench::nowMs() + timeoutMs;
        while (bench::nowMs() < until) {
            {
                std::lock_guard lock(m_mutex);
                int quiet = 0;
                for (size_t i = 0; i < m_times.size(); ++i) {
                    if (m_times[i] < after)
                        continue;
                    const bool loud = std::abs(m_samples[i]) > Loud;
                    if (wantSound && loud)
                        return m_times[i];
                    quiet = loud ? 0 : quiet + 1;
                    if (!wantSound && quiet == Chunk)
                        return m_times[i - Chunk + 1];
                }
            }
            QThread::msleep(5);
        }
        return -1;
    }

private:
    void run()
    {
        std::vector<int16_t> buf(Chunk);
        while (!m_stop) {
            int error = 0;
            if (pa_simple_read(m_pa, buf.data(), buf.size() * 2, &error) < 0)
                return;
            const double arrived = bench::nowMs();
            const double latencyMs = double(pa_simple_get_latency(m_pa, &error)) / 1000.0;
            std::lock_guard lock(m_mutex);
            for (int i = 0; i < Chunk; ++i) {
                m_samples.push_back(buf[i]);
                m_times.push_back(arrived - latencyMs - double(Chunk - i) * 1000.0 / Rate);
            }
        }
    }

    pa_simple *m_pa = nullptr;
    std::thread m_thread;
    std::atomic<bool> m_stop{false};
    std::mutex m_mutex;
    std::vector<int16_t> m_samples;
    std::vector<double> m_times;
};

long residentKb(qint64 pid)
{
    QFile f(QStringLiteral("/proc/%1/status").arg(pid));
    if (!f.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray &line : f.readAll().split('\n'))
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').value(0).toLong();
    return -1;
}

// User and system CPU time of a process, in clock ticks.
long cpuTicks(qint64 pid)
{
    QFile f(QStringLiteral("/proc/%1/stat").arg(pid));
    if (!f.open(QIODevice::ReadOnly))
        return -1;
    const QByteArray stat = f.readAll();
    // Fields after the command name, which may hold spaces: utime and
    // stime are the 14th and 15th fields of the line.
    const QList<QByteArray> rest = stat.mid(stat.lastIndexOf(')') + 2).split(' ');
    return rest.value(11).toLong() + rest.value(12).toLong();
}

double median(std::vector<double> v)
{
    v.erase(std::remove_if(v.begin(), v.end(), [](double d) { return d < 0; }), v.end());
    if (v.empty())
        return -1;
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

// Starts a program on the tone and waits for its player window.
bench::Mapped startPlayer(bench::XWatch &x, QProcess &program, const QString &executable, const QString &tone)
{
    x.drain();
    program.start(executable, {tone});
    bench::Mapped player;
    while (player.atMs < 0) {
        const bench::Mapped m = x.nextMap(15000);
        if (m.atMs < 0)
            break;
        if (m.isPlayer())
            player = m;
    }
    return player;
}

double residentMbAt3s(qint64 pid, double started)
{
    QThread::msleep(ulong(std::max(0.0, started + 3000 - bench::nowMs())));
    return residentKb(pid) / 1024.0;
}

// CPU over 10 s of steady playing, in % of one core.
double cpuWhilePlaying(qint64 pid)
{
    const long ticks0 = cpuTicks(pid);
    const double cpu0 = bench::nowMs();
    QThread::msleep(10000);
    const long ticks1 = cpuTicks(pid);
    const double seconds = (bench::nowMs() - cpu0) / 1000.0;
    return 100.0 * double(ticks1 - ticks0) / double(sysconf(_SC_CLK_TCK)) / seconds;
}

void printLatencies(const char *what, const std::vector<double> &v)
{
    std::printf("%s, median of %zu: %.1f ms (", what, v.size(), median(v));
    for (size_t i = 0; i < v.size(); ++i)
        std::printf("%s%.1f", i ? " " : "", v[i]);
    std::printf(")\n");
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    bench::XWatch x;
    if (!x.ok()) {
        std::fprintf(stderr, "running_bench needs a display; run it under xvfb-run -a\n");
        return 2;
    }
    QTemporaryDir work;
    const QString dir = work.path();
    // Another build may be named to compare with.
    const QStringList args = QCoreApplication::arguments();
    const QString executable = bench::copyProgram(args.size() > 1 ? args.at(1) : QStringLiteral(QM_PROGRAM), dir);
    const QString tone = dir + QStringLiteral("/tone.ogg");
    if (QProcess::execute(QStringLiteral("sox"), {QStringLiteral("-n"), QStringLiteral("-r"), QStringLiteral("48000"),
                                                   QStringLiteral("-c"), QStringLiteral("1"), tone, QStringLiteral("synth"),
                                                   QStringLiteral("300"), QStringLiteral("sine"), QStringLiteral("440"),
                                                   QStringLiteral("vol"), QStringLiteral("0.5")}) != 0) {
        std::fprintf(stderr, "running_bench needs sox\n");
        return 2;
    }

    // A private sound server, confined to the temporary folder.
    QFile pa(dir + QStringLiteral("/server.pa"));
    pa.open(QIODevice::WriteOnly);
    const QByteArray socket = (dir + QStringLiteral("/native")).toUtf8();
    pa.write("load-module module-native-protocol-unix auth-anonymous=1 socket=" + socket + "\n"
             "load-module module-null-sink sink_name=bench rate=48000\n"
             "set-default-sink bench\n");
    pa.close();
    QProcessEnvironment paEnv = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"HOME", "XDG_RUNTIME_DIR", "PULSE_RUNTIME_PATH", "PULSE_STATE_PATH"})
        paEnv.insert(QLatin1String(name), dir);
    QProcess server;
    server.setProcessEnvironment(paEnv);
    server.setStandardOutputFile(QProcess::nullDevice());
    server.setStandardErrorFile(QProcess::nullDevice());
    server.start(QStringLiteral("pulseaudio"), {QStringLiteral("--daemonize=no"), QStringLiteral("--exit-idle-time=-1"),
                                                QStringLiteral("--disallow-exit"), QStringLiteral("--use-pid-file=no"),
                                                QStringLiteral("-n"), QStringLiteral("-F"), pa.fileName()});
    for (int i = 0; i < 100 && !QFile::exists(QString::fromUtf8(socket)); ++i)
        QThread::msleep(50);
    const QByteArray serverAddress = "unix:" + socket;
    Monitor monitor;
    if (!monitor.start(serverAddress)) {
        std::fprintf(stderr, "running_bench: no sound server\n");
        return 2;
    }

    QProcess program;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), QStringLiteral("disabled:"));
    env.insert(QStringLiteral("PULSE_SERVER"), QString::fromUtf8(serverAddress));
    const auto prepare = [&](QProcess &p) {
        p.setProcessEnvironment(env);
        p.setWorkingDirectory(dir);
        p.setStandardOutputFile(QProcess::nullDevice());
        p.setStandardErrorFile(QProcess::nullDevice());
    };
    prepare(program);
    const double started = bench::nowMs();
    const bench::Mapped player = startPlayer(x, program, executable, tone);
    const qint64 pid = program.processId();
    if (player.atMs < 0) {
        std::fprintf(stderr, "running_bench: the player window did not appear\n");
        program.kill();
        program.waitForFinished();
        return 1;
    }
    std::printf("resident memory 3 s after start with a recording loaded: %.1f MB\n", residentMbAt3s(pid, started));

    // The program plays the file it opens; CPU over 10 s of steady playing.
    const double firstSound = monitor.waitFor(true, started, 1000);
    if (firstSound < 0)
        std::printf("no sound from the program: the latencies below are not measured\n");
    QThread::msleep(1000);
    std::printf("CPU while playing an audio file, over 10 s: %.1f %% of one core\n", cpuWhilePlaying(pid));

    // Keys go where the program has put the keyboard focus.
    x.focus(player.window);
    QThread::msleep(300);
    std::vector<double> toSilence, toSound;
    for (int i = 0; i < 7 && firstSound >= 0; ++i) {
        const double pause = x.key(XK_F5);
        const double silent = monitor.waitFor(false, pause, 3000);
        toSilence.push_back(silent < 0 ? -1 : silent - pause);
        QThread::msleep(700);
        const double resume = x.key(XK_F5);
        const double sound = monitor.waitFor(true, resume, 3000);
        toSound.push_back(sound < 0 ? -1 : sound - resume);
        QThread::msleep(700);
    }
    printLatencies("F5 key event to silence", toSilence);
    printLatencies("F5 key event to sound", toSound);

    program.kill();
    program.waitForFinished(5000);

    QProcess floor;
    prepare(floor);
    const double floorStarted = bench::nowMs();
    if (startPlayer(x, floor, QStringLiteral(QM_FLOOR), tone).atMs >= 0) {
        const double resident = residentMbAt3s(floor.processId(), floorStarted);
        QThread::msleep(1000);
        std::printf("floor program (two windows with text, libmpv playing the tone): %.1f MB at 3 s, CPU %.1f %%\n",
                    resident, cpuWhilePlaying(floor.processId()));
    }
    floor.kill();
    floor.waitForFinished(5000);
    server.kill();
    server.waitForFinished(5000);
    return 0;
}
