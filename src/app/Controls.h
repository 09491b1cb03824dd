#pragma once

#include <QImage>
#include <QDateTime>
#include <QKeySequence>
#include <QLabel>
#include <QString>
#include <functional>

class QAction;
class QKeyEvent;
class QMenu;
class QMenuBar;

// Positions and sizes of the windows' controls are kept in twips (1/1440 of
// an inch), since the program's arithmetic on them (bar widths, volume
// positions, window placement) is done in that unit; on screen 15 twips are
// one pixel.
namespace Twips {
constexpr int PerPixel = 15;
constexpr int toPixels(int twips) { return twips / PerPixel; }
constexpr int fromPixels(int px) { return px * PerPixel; }
} // namespace Twips

// A control placed in twips, with the hidden text property `Tag` that the
// program uses as data.
class TwipsPlacement
{
public:
    explicit TwipsPlacement(QWidget *widget) : m_widget(widget) {}

    int Left() const { return m_left; }
    int Top() const { return m_top; }
    int Width() const { return m_width; }
    int Height() const { return m_height; }
    void setLeft(int v) { m_left = v; apply(); }
    void setTop(int v) { m_top = v; apply(); }
    void setWidth(int v) { m_width = v; apply(); }
    void setHeight(int v) { m_height = v; apply(); }
    void place(int left, int top, int width, int height)
    {
        m_left = left;
        m_top = top;
        m_width = width;
        m_height = height;
        apply();
    }

    QString Tag;

private:
    void apply();
    QWidget *m_widget;
    int m_left = 0;
    int m_top = 0;
    int m_width = 0;
    int m_height = 0;
};

// A window that the start shows once the player window has painted, so that
// building it does not delay the player on screen. It counts as open until
// then; a window unloaded before that never shows.
class ShownLater
{
public:
    explicit ShownLater(QWidget *window) : m_window(window) {}
    void showLater() { m_due = true; }
    bool showDue() const { return m_due; }
    void showIfDue()
    {
        if (!m_due)
            return;
        m_due = false;
        m_window->show();
    }
    bool isOpen() const { return m_due || m_window->isVisible(); }

private:
    QWidget *m_window;
    bool m_due = false;
};

// The geometry of a top-level window in twips: its outer frame, as the
// program places its windows relative to one another and to the screen.
class WindowTwips
{
public:
    explicit WindowTwips(QWidget *window) : m_window(window) {}

    int Left() const;
    int Top() const;
    int Width() const;
    int Height() const;
    void setLeft(int twips);
    void setTop(int twips);
    void setWidth(int twips);
    void setHeight(int twips);

private:
    QWidget *m_window;
};

// A picture on a window, loaded from a file whenever the look changes. A
// missing or unreadable file leaves the old picture, as the program expects
// of its skin. With a click handler it is a picture button.
class PictureBox : public QLabel, public TwipsPlacement
{
public:
    explicit PictureBox(QWidget *parent);

    // Loads the picture; false (and the old picture kept) when it cannot.
    // A picture already read from `path` may be given.
    bool LoadPicture(const QString &path, const QImage &decoded = QImage());
    // The file of the picture on show, for tests and the accessibility tree.
    QString pictureFile() const { return m_pictureFile; }

    // The tool tip; it is also the accessible name of a picture button.
    void setTip(const QString &tip);

    // Stretches the picture to the control's size instead of cutting it.
    void setStretch(bool stretch) { m_stretch = stretch; }

    std::function<void()> onClick;
    std::function<void(int button, int x, int y)> onMouseUp;   // x, y in twips
    std::function<void(int button, int x, int y)> onMouseDown;
    std::function<void(int buttons, int x, int y)> onMouseMove;

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void showPicture();
    QString m_pictureFile;
    QPixmap m_pixmap;
    // When the picture on show was read from its file, and the file's
    // size: a timer that asks for the same unchanged file again (the play
    // button's picture, ten times a second while playing) costs a stat
    // instead of a decode and a repaint.
    QDateTime m_pictureModified;
    qint64 m_pictureSize = -1;
    bool m_stretch = false;
};

// A label whose caption follows the platform's rule for mnemonics: a single
// "&" marks the next letter and is not shown, "&&" shows one "&".
class CaptionLabel : public QLabel, public TwipsPlacement
{
public:
    explicit CaptionLabel(QWidget *parent);

    QString Caption() const { return m_caption; }
    void setCaption(const QString &caption);

    std::function<void(int button, int x, int y)> onMouseUp; // x, y in twips
    std::function<void()> onClick;

    // The text as shown: mnemonic marks taken out.
    static QString shownText(const QString &caption);

protected:
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    QString m_caption;
};

// Menus as every window here builds them: each menu and command named as the
// program names its controls, shortcuts local to the window.
namespace MenuBuilder {
QMenu *menu(QMenuBar *bar, const char *name, const char *caption);
// A checkable command's handler inverts the mark itself, as the program's
// routines read and set it; the toolkit's own toggle, made before
// `triggered`, is undone first.
QAction *command(QWidget *window, QMenu *menu, const char *name, const char *caption, const QKeySequence &key,
                 std::function<void()> handler);
QAction *separator(QMenu *menu, const char *name);
} // namespace MenuBuilder

// Letter keys read by their place on the keyboard, as the program's key
// codes always were: Ctrl+W is the key of W on a Russian or Greek layout too,
// where the toolkit reports a Cyrillic or Greek letter and no shortcut of a
// Latin letter matches.
namespace KeyLayout {
// The letter (Qt::Key_A to Qt::Key_Z) that the physical key carries on a US
// layout, from the X11 key code of the event; 0 for any other key.
int usLetter(quint32 nativeScanCode);
// The event's key, a letter of another script replaced by its US letter.
int latinKey(const QKeyEvent *event);
// Triggers the enabled command of `window` whose shortcut is the event read
// with its US letter; true when there was one. For key presses that matched
// no shortcut as the toolkit read them.
bool triggerShortcut(QWidget *window, const QKeyEvent *event);
} // namespace KeyLayout
