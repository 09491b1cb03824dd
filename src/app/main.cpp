// The program's entry: builds the real services and runs the start-up.

#include "app/AppContext.h"
#include "app/AppStyle.h"
#include "platform/LazyAudioInput.h"
#include "platform/LazyMediaBackend.h"
#include "platform/LazyPlayer.h"
#include "platform/QtServices.h"
#include "platform/LazyWebReader.h"
#include "editor/Form2.h"
#include "player/Form1.h"
#include "remote/MediaRemote.h"
#include "remote/Pedals.h"
#include "remote/TimeStampLink.h"

#include <QApplication>
#include <QDBusConnection>
#include <QFontDatabase>
#include <QFontMetrics>
#include <QIcon>
#include <QPixmap>
#include <QScopeGuard>
#include <QTimer>
#include <clocale>
#include <cstdio>
#include <fontconfig/fontconfig.h>
#include <future>
#include <thread>

namespace {

bool hasDisplay()
{
    if (!qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        return true;
    return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

// The program takes one media path in double quotes. A desktop launcher or
// a shell hands the path over as one argument with the quotes already
// taken off: such an argument is put back into quotes.
QString commandLineOf(const QStringList &arguments)
{
    const QStringList args = arguments.mid(1);
    if (args.isEmpty())
        return QString();
    if (args.size() == 1) {
        const QString &arg = args.first();
        if (arg.startsWith(u'"') && arg.endsWith(u'"') && arg.size() >= 2)
            return arg;
        return u'"' + arg + u'"';
    }
    return args.join(u' ');
}


} // namespace

int main(int argc, char **argv)
{
    if (!hasDisplay()) {
        std::fprintf(stderr,
                     "quillmere: no display found (DISPLAY is not set).\n"
                     "Run it on a desktop session, or under a virtual display:\n"
                     "    xvfb-run -a make run\n");
        return 2;
    }

    // Costs of the first paint that run beside the toolkit's own start on
    // the other core: reading the font configuration and, once the
    // application is there, listing the fonts, which the first text
    // measured would otherwise do on this thread. The font list is safe to
    // build from any thread; whoever needs it meanwhile waits for it.
    std::promise<void> applicationMade, configurationRead;
    std::future<void> configurationReady = configurationRead.get_future();
    std::thread warmUp([made = applicationMade.get_future(), read = std::move(configurationRead)]() mutable {
        FcInit();
        read.set_value();
        made.wait();
        QFontDatabase::families();
        // The fallback fonts of the default font, which the first text
        // measured asks for; the font database keeps them for every thread.
        QFontMetrics(QFont()).horizontalAdvance(QStringLiteral(" 100%"));
    });
    QApplication app(argc, argv);
    applicationMade.set_value();
    QApplication::setApplicationName(QStringLiteral("Quillmere"));
    QApplication::setStyle(new AppStyle);
    // libmpv parses numbers with the C library and refuses to start unless
    // the numeric locale is "C"; Qt has set it from the environment.
    std::setlocale(LC_NUMERIC, "C");

    const QString programFolder = QCoreApplication::applicationDirPath();
    // The pictures of the first windows are decoded on a thread of their own
    // meanwhile (which loads the plug-ins of their formats). Nothing of
    // Qt's plug-ins may be touched before the application exists: it resets
    // the plug-in folders as it starts.
    auto pictures = std::make_unique<DecodedPictures>(programFolder + QStringLiteral("/Files"),
                                                      Form1::picturesAtStart() + Form2::picturesAtStart());
    // The small icon serves the title bar; the large one, which costs a
    // 256-pixel decoding, is added once the window is on screen. Read by
    // its format, the small one loads no plug-in.
    QApplication::setWindowIcon(
        QPixmap::fromImage(DecodedPictures::read(programFolder + QStringLiteral("/Files/quillmere-48.png"))));

    auto *player = new LazyPlayer(programFolder);
    LazyPlayer *lazy = player;
    Services services;
    services.player.reset(player);
    services.timers = std::make_unique<QtTimerFactory>();
    services.dialogs = std::make_unique<QtDialogs>();
    services.shell = std::make_unique<QtShell>();
    services.system = std::make_unique<QtSystemInfo>(programFolder);
    services.web = std::make_unique<LazyWebReader>(programFolder);
    services.media = std::make_unique<LazyMediaBackend>(*lazy);
    services.audioInput = std::make_unique<LazyAudioInput>(programFolder);
    services.pictures = std::move(pictures);

    AppContext ctx(programFolder, std::move(services), commandLineOf(QCoreApplication::arguments()));
    const auto joinWarmUp = qScopeGuard([&warmUp] { warmUp.join(); });
    ctx.onEndProcess = [] { QTimer::singleShot(0, qApp, &QCoreApplication::quit); };
    // The windows wait for the font configuration: asked for here while
    // the other thread still reads it, it would be read twice over.
    configurationReady.wait();
    if (!ctx.Main())
        return 0;
    // Commands from outside the keyboard: time stamps in the text, foot
    // pedals, the desktop's media controls.
    TimeStampLink timeStamps(ctx);
    Pedals pedals(ctx);
    MediaRemote mediaRemote(ctx, QDBusConnection::sessionBus());
    // The player back-end is loaded once the window is on screen, so that
    // its libraries do not delay the first paint.
    ctx.form1()->onFirstPaint = [lazy, programFolder] {
        QTimer::singleShot(0, lazy, [lazy] { lazy->startLoading(); });
        QTimer::singleShot(0, qApp, [programFolder] {
            QIcon icon = QApplication::windowIcon();
            icon.addPixmap(QPixmap::fromImage(DecodedPictures::read(programFolder + QStringLiteral("/Files/quillmere.png"))));
            QApplication::setWindowIcon(icon);
        });
    };
    if (ctx.processEnded())
        return 0;
    return app.exec();
}
