// The cost of bringing the player back-end in at run time, as the program
// does after its first paint: loading the module (and with it libmpv and its
// libraries), then creating the player. Each sample is a fresh process, since
// a library loads only once per process. Prints figures only.

#include "platform/PlayerControl.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QLibrary>
#include <QProcess>
#include <algorithm>
#include <clocale>
#include <cstdio>
#include <vector>

namespace {

int measureOnce(const QString &moduleDir)
{
    QElapsedTimer clock;
    clock.start();
    QLibrary module(moduleDir + QStringLiteral("/quillmere-mpv"));
    if (!module.load()) {
        std::fprintf(stderr, "%s\n", qPrintable(module.errorString()));
        return 1;
    }
    const double loadMs = double(clock.nsecsElapsed()) / 1e6;
    using CreatePlayer = PlayerControl *(*)();
    auto create = reinterpret_cast<CreatePlayer>(module.resolve("quillmere_create_player"));
    clock.start();
    PlayerControl *player = create ? create() : nullptr;
    const double createMs = double(clock.nsecsElapsed()) / 1e6;
    if (!player)
        return 1;
    std::printf("%f %f\n", loadMs, createMs);
    delete player;
    return 0;
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
    const QStringList args = QCoreApplication::arguments();
    const QString moduleDir = QStringLiteral(QM_MODULE_DIR);
    if (args.size() > 1 && args.at(1) == QStringLiteral("--once"))
        return measureOnce(moduleDir);

    std::vector<double> load, create;
    for (int i = 0; i < 10; ++i) {
        QProcess child;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        if (!env.contains(QStringLiteral("QM_AUDIO_OUTPUT")))
            env.insert(QStringLiteral("QM_AUDIO_OUTPUT"), QStringLiteral("null"));
        child.setProcessEnvironment(env);
        child.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--once")});
        if (!child.waitForFinished(20000) || child.exitCode() != 0) {
            std::fprintf(stderr, "a measuring run failed: %s\n", child.readAllStandardError().constData());
            continue;
        }
        const QList<QByteArray> figures = child.readAllStandardOutput().trimmed().split(' ');
        if (figures.size() == 2) {
            load.push_back(figures.at(0).toDouble());
            create.push_back(figures.at(1).toDouble());
        }
    }
    std::printf("%-44s median %8.3f ms  (n=%zu)\n", "load the module with libmpv", median(load), load.size());
    std::printf("%-44s median %8.3f ms  (n=%zu)\n", "create and start the player", median(create), create.size());
    return 0;
}
