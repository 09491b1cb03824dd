// The yardstick: a plain Qt window of the player's size that reports its
// first paint and its memory the way the program does under the benchmark.

#include "platform/ProcessInfo.h"

#include <QApplication>
#include <QPainter>
#include <QTimer>
#include <QWidget>
#include <cstdio>

namespace {

class Window : public QWidget
{
protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter(this).fillRect(rect(), Qt::white);
        if (m_done)
            return;
        m_done = true;
        std::printf("first-paint\n");
        std::fflush(stdout);
        QTimer::singleShot(1000, qApp, [] {
            std::printf("rss-kb %ld\n", residentMemoryKb());
            std::fflush(stdout);
            QCoreApplication::exit(0);
        });
    }

private:
    bool m_done = false;
};

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    Window w;
    w.resize(348, 195);
    w.setWindowTitle(QStringLiteral("bare"));
    w.show();
    return app.exec();
}
