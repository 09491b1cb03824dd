// The yardsticks: a plain Qt window of the player's size, and with "text"
// the least a window that shows text needs (a line at the default size,
// a line at a smaller one, a bar of four menus), for what any window with
// words in it pays for fonts. The benchmark times each to its map and ends
// it.

#include <QApplication>
#include <QLabel>
#include <QMenuBar>
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
    if (QCoreApplication::arguments().contains(QStringLiteral("text"))) {
        auto *bar = new QMenuBar(&w);
        for (const char *title : {"&File", "&Edit", "&Play", "&Help"})
            bar->addMenu(QString::fromLatin1(title))->addAction(QStringLiteral("Open"));
        (new QLabel(QStringLiteral("00:00:00"), &w))->move(10, 40);
        auto *small = new QLabel(QStringLiteral("100%"), &w);
        QFont font = small->font();
        font.setPointSize(7);
        small->setFont(font);
        small->move(10, 80);
    }
    w.show();
    return app.exec();
}
