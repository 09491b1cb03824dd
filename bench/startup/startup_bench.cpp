// Start-up seen from outside, as a user sees it: from exec to the player
// window mapped on the display, against a bare Qt window in the same run,
// and when the editor is usable (its window mapped and its event loop
// answering after a key), counted from the player window's map. A second
// yardstick, the bare window with two lines of text and a menu bar, shows
// what any window with words in it pays for its fonts.
// Run it under a display with no window manager (scripts/bench.sh uses
// Xvfb). Prints figures only.

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <vector>

// After Qt: Xlib defines Bool, Status and other plain names.
#include "../support/ProgramCopy.h"
#include "../support/XWatch.h"

namespace {

struct Sample
{
    double playerMs = -1;  // exec to the player window mapped
    double editorMs = -1;  // player mapped to the editor answering
};

QProcessEnvironment quietEnvironment()
{
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), QStringLiteral("disabled:"));
    // No sound server: the back-end falls back to its silent output.
    env.insert(QStringLiteral("PULSE_SERVER"), QStringLiteral("unix:/nonexistent"));
    return env;
}

// The player is known by its title; the editor is the large window.
Sample runOnce(bench::XWatch &x, const QString &program, bool withEditor, const QString &workDir,
               const QStringList &arguments = {})
{
    QProcess p;
    p.setProcessEnvironment(quietEnvironment());
    p.setWorkingDirectory(workDir);
    p.setStandardOutputFile(QProcess::nullDevice());
    p.setStandardErrorFile(QProcess::nullDevice());
    x.drain();
    Sample s;
    const double start = bench::nowMs();
    p.start(program, arguments);
    bench::Mapped player, editor;
    while (player.atMs < 0 || (withEditor && editor.atMs < 0)) {
        const bench::Mapped m = x.nextMap(15000);
        if (m.atMs < 0)
            break;
        // Other windows that come and go on the way (the bookmark window
        // of the settings is shown and unloaded again) are not counted.
        if (m.isPlayer()) {
            player = m;
        } else if (m.title == "bare") {
            player = m;
            withEditor = false;
        }
        else if (m.width >= 500)
            editor = m;
    }
    if (player.atMs >= 0)
        s.playerMs = player.atMs - start;
    if (withEditor && editor.atMs >= 0) {
        const double answered = x.keyAndPing(editor.window, 5000);
        if (answered >= 0 && player.atMs >= 0)
            s.editorMs = answered - player.atMs;
    }
    p.kill();
    p.waitForFinished(5000);
    return s;
}

// The runs that gave a figure, sorted; a run that failed gave -1.
std::vector<double> measured(std::vector<double> v)
{
    v.erase(std::remove_if(v.begin(), v.end(), [](double d) { return d < 0; }), v.end());
    std::sort(v.begin(), v.end());
    return v;
}

double median(const std::vector<double> &runs)
{
    const std::vector<double> v = measured(runs);
    return v.empty() ? -1 : v[v.size() / 2];
}

double fastest(const std::vector<double> &runs)
{
    const std::vector<double> v = measured(runs);
    return v.empty() ? -1 : v.front();
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    bench::XWatch x;
    if (!x.ok()) {
        std::fprintf(stderr, "startup_bench needs a display; run it under xvfb-run -a\n");
        return 2;
    }
    QTemporaryDir work;
    // Two other programs may be named to compare builds: the program, then
    // the yardstick.
    const QStringList args = QCoreApplication::arguments();
    const QString program = bench::copyProgram(args.size() > 1 ? args.at(1) : QStringLiteral(QM_PROGRAM),
                                               work.path());
    // The runs start in a folder of their own: a path given relative to
    // here is made whole first.
    const QString yardstick = args.size() > 2 ? QFileInfo(args.at(2)).absoluteFilePath() : QStringLiteral(QM_BARE);

    // One run of each first, to warm the disk cache and the font cache.
    runOnce(x, yardstick, false, work.path());
    runOnce(x, program, true, work.path());
    // More runs steady the medians on a busy machine.
    const int runs = std::max(11, qEnvironmentVariableIntValue("QM_BENCH_RUNS"));
    const QStringList withText{QStringLiteral("text")};
    std::vector<double> player, bare, text, editor;
    for (int i = 0; i < runs; ++i) {
        bare.push_back(runOnce(x, yardstick, false, work.path()).playerMs);
        text.push_back(runOnce(x, QStringLiteral(QM_BARE), false, work.path(), withText).playerMs);
        const Sample a = runOnce(x, program, true, work.path());
        player.push_back(a.playerMs);
        editor.push_back(a.editorMs);
    }
    const double a = median(player), b = median(bare);
    std::printf("exec to window mapped, median of %d: player %.1f ms, bare Qt window %.1f ms, ratio %.2f\n",
                runs, a, b, a / b);
    // On a shared machine the fastest run shows the cost with the least
    // waiting for a core.
    const double am = fastest(player), bm = fastest(bare);
    std::printf("exec to window mapped, fastest of %d: player %.1f ms, bare Qt window %.1f ms, ratio %.2f\n",
                runs, am, bm, am / bm);
    const double t = median(text);
    std::printf("exec to window mapped, median of %d: bare Qt window with two lines of text and a menu bar %.1f ms;"
                " against the bare window %.2f, the player against it %.2f\n",
                runs, t, t / b, a / t);
    std::printf("editor usable (mapped, a key taken) after the player's map, median: %.1f ms\n", median(editor));
    // A start that never maps (a crash, a hang) is not a figure: it is told.
    const auto failed = std::count_if(player.begin(), player.end(), [](double d) { return d < 0; });
    if (failed > 0)
        std::printf("runs in which the player window never appeared: %d of %d\n", int(failed), runs);
    return 0;
}
