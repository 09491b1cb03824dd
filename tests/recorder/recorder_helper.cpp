// A recorder with nothing around it, for the test of a killed program:
// records the default input into the file given, 2 channels, 16 bits,
// 44100 Hz, says "sound" once the first buffer is in the file and runs
// until it is ended.

#include "platform/LazyAudioInput.h"
#include "recorder/WaveIn.h"

#include <QCoreApplication>
#include <QTimer>
#include <cstdio>
#include <cstdlib>

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    if (argc < 2)
        return 2;
    LazyAudioInput source(QStringLiteral(QM_MODULE_DIR));
    WaveIn engine(source);
    engine.message = [](const QString &text, int, const QString &) {
        std::printf("refused: %s\n", qPrintable(text));
        std::exit(1);
        return 1;
    };
    engine.AggancioCattura(true);
    engine.AvviaCattura(2, 16, 44100, QString::fromLocal8Bit(argv[1]));
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &app, [&] {
        if (engine.ByteRegistrati() > 45) {
            poll.stop();
            std::printf("sound\n");
            std::fflush(stdout);
        }
    });
    poll.start(5);
    return app.exec();
}
