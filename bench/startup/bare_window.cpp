// The yardstick: a plain Qt window of the player's size. The benchmark
// times it to its map and ends it.

#include <QApplication>
#include <QPainter>
#include <QWidget>

namespace {

class Window : public QWidget
{
protected:
    void paintEvent(QPaintEvent *) override { QPainter(this).fillRect(rect(), Qt::white); }
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
