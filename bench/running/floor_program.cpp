// The least a program that does this job needs, as a floor for the running
// benchmark's memory and CPU: a player-sized window with two lines of text
// and a menu bar, an editor window, and libmpv playing the file it is given
// with the player's own settings.

#include <QApplication>
#include <QLabel>
#include <QMainWindow>
#include <QMenuBar>
#include <QTextEdit>
#include <QTimer>

#include <clocale>
#include <mpv/client.h>

#include "platform/mpv/MpvOptions.h"

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QWidget player;
    player.resize(348, 195);
    player.setWindowTitle(QStringLiteral("Quillmere floor"));
    auto *bar = new QMenuBar(&player);
    for (const char *title : {"&File", "&Edit", "&Play", "&Help"})
        bar->addMenu(QString::fromLatin1(title))->addAction(QStringLiteral("Open"));
    (new QLabel(QStringLiteral("00:00:00"), &player))->move(10, 40);
    (new QLabel(QStringLiteral("100%"), &player))->move(10, 80);
    player.show();
    QMainWindow editor;
    editor.resize(700, 500);
    editor.setCentralWidget(new QTextEdit);
    editor.menuBar()->addMenu(QStringLiteral("&File"))->addAction(QStringLiteral("Save"));
    editor.show();

    std::setlocale(LC_NUMERIC, "C");
    mpv_handle *mpv = mpv_create();
    if (!mpv)
        return 1;
    for (const MpvOption &option : MpvPlayerOptions)
        mpv_set_option_string(mpv, option.name, option.value);
    if (mpv_initialize(mpv) < 0)
        return 1;
    mpv_observe_property(mpv, 1, "time-pos", MPV_FORMAT_DOUBLE);
    QTimer events;
    QObject::connect(&events, &QTimer::timeout, [mpv] {
        while (mpv_wait_event(mpv, 0)->event_id != MPV_EVENT_NONE) {
        }
    });
    events.start(50);
    if (argc > 1) {
        const char *load[] = {"loadfile", argv[1], nullptr};
        mpv_command(mpv, load);
    }
    return app.exec();
}
