#include "app/Controls.h"
#include "app/DecodedPictures.h"

#include <QAction>
#include <QFileInfo>
#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QWidget>
#include <algorithm>

void TwipsPlacement::apply()
{
    m_widget->setGeometry(Twips::toPixels(m_left), Twips::toPixels(m_top),
                          Twips::toPixels(m_width), Twips::toPixels(m_height));
}

int WindowTwips::Left() const { return Twips::fromPixels(m_window->x()); }
int WindowTwips::Top() const { return Twips::fromPixels(m_window->y()); }
int WindowTwips::Width() const { return Twips::fromPixels(m_window->frameGeometry().width()); }
int WindowTwips::Height() const { return Twips::fromPixels(m_window->frameGeometry().height()); }
void WindowTwips::setLeft(int twips) { m_window->move(Twips::toPixels(twips), m_window->y()); }
void WindowTwips::setTop(int twips) { m_window->move(m_window->x(), Twips::toPixels(twips)); }

void WindowTwips::setWidth(int twips)
{
    // The frame is part of the width the program computes with.
    const int frame = m_window->frameGeometry().width() - m_window->width();
    m_window->resize(std::max(0, Twips::toPixels(twips) - frame), m_window->height());
}

void WindowTwips::setHeight(int twips)
{
    const int frame = m_window->frameGeometry().height() - m_window->height();
    m_window->resize(m_window->width(), std::max(0, Twips::toPixels(twips) - frame));
}

PictureBox::PictureBox(QWidget *parent) : QLabel(parent), TwipsPlacement(this)
{
    setAlignment(Qt::AlignLeft | Qt::AlignTop);
}

bool PictureBox::LoadPicture(const QString &path, const QImage &decoded)
{
    const QFileInfo file(path);
    const QDateTime modified = file.lastModified();
    if (path == m_pictureFile && !m_pixmap.isNull() && modified.isValid() && modified == m_pictureModified
        && file.size() == m_pictureSize)
        return true;
    const QImage image = decoded.isNull() ? DecodedPictures::read(path) : decoded;
    if (image.isNull())
        return false;
    m_pixmap = QPixmap::fromImage(image);
    m_pictureFile = path;
    m_pictureModified = modified;
    m_pictureSize = file.size();
    showPicture();
    return true;
}

void PictureBox::showPicture()
{
    if (m_pixmap.isNull())
        return;
    if (m_stretch && width() > 0 && height() > 0)
        setPixmap(m_pixmap.scaled(size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
    else
        setPixmap(m_pixmap);
}

void PictureBox::resizeEvent(QResizeEvent *event)
{
    QLabel::resizeEvent(event);
    if (m_stretch)
        showPicture();
}

void PictureBox::setTip(const QString &tip)
{
    setToolTip(tip);
    // A screen reader would read a menu-style "&" aloud.
    setAccessibleName(QString(tip).remove(u'&').trimmed());
}

static int buttonCode(Qt::MouseButtons b)
{
    int code = 0;
    if (b & Qt::LeftButton)
        code |= 1;
    if (b & Qt::RightButton)
        code |= 2;
    if (b & Qt::MiddleButton)
        code |= 4;
    return code;
}

void PictureBox::mousePressEvent(QMouseEvent *event)
{
    if (onMouseDown)
        onMouseDown(buttonCode(event->button()), Twips::fromPixels(int(event->position().x())),
                    Twips::fromPixels(int(event->position().y())));
    QLabel::mousePressEvent(event);
}

void PictureBox::mouseReleaseEvent(QMouseEvent *event)
{
    const int x = Twips::fromPixels(int(event->position().x()));
    const int y = Twips::fromPixels(int(event->position().y()));
    if (onMouseUp)
        onMouseUp(buttonCode(event->button()), x, y);
    if (onClick && isEnabled() && event->button() == Qt::LeftButton && rect().contains(event->position().toPoint()))
        onClick();
}

void PictureBox::mouseMoveEvent(QMouseEvent *event)
{
    if (onMouseMove)
        onMouseMove(buttonCode(event->buttons()), Twips::fromPixels(int(event->position().x())),
                    Twips::fromPixels(int(event->position().y())));
    QLabel::mouseMoveEvent(event);
}

CaptionLabel::CaptionLabel(QWidget *parent) : QLabel(parent), TwipsPlacement(this)
{
    setTextFormat(Qt::PlainText);
}

QString CaptionLabel::shownText(const QString &caption)
{
    QString shown;
    shown.reserve(caption.size());
    for (qsizetype i = 0; i < caption.size(); ++i) {
        if (caption.at(i) == u'&') {
            if (i + 1 < caption.size() && caption.at(i + 1) == u'&') {
                shown += u'&';
                ++i;
            }
            continue;
        }
        shown += caption.at(i);
    }
    return shown;
}

void CaptionLabel::setCaption(const QString &caption)
{
    m_caption = caption;
    setText(shownText(caption));
}

void CaptionLabel::mouseReleaseEvent(QMouseEvent *event)
{
    if (onMouseUp)
        onMouseUp(buttonCode(event->button()), Twips::fromPixels(int(event->position().x())),
                  Twips::fromPixels(int(event->position().y())));
    if (onClick && event->button() == Qt::LeftButton)
        onClick();
    QLabel::mouseReleaseEvent(event);
}

QMenu *MenuBuilder::menu(QMenuBar *bar, const char *name, const char *caption)
{
    QMenu *m = bar->addMenu(QString::fromUtf8(caption));
    m->setObjectName(QString::fromUtf8(name));
    m->menuAction()->setObjectName(QString::fromUtf8(name));
    return m;
}

QAction *MenuBuilder::command(QWidget *window, QMenu *menu, const char *name, const char *caption,
                              const QKeySequence &key, std::function<void()> handler)
{
    auto *a = new QAction(QString::fromUtf8(caption), window);
    a->setObjectName(QString::fromUtf8(name));
    if (!key.isEmpty())
        a->setShortcut(key);
    a->setShortcutContext(Qt::WindowShortcut);
    QObject::connect(a, &QAction::triggered, window, [a, handler = std::move(handler)] {
        if (a->isCheckable())
            a->setChecked(!a->isChecked());
        handler();
    });
    menu->addAction(a);
    return a;
}

QAction *MenuBuilder::separator(QMenu *menu, const char *name)
{
    QAction *a = menu->addSeparator();
    a->setObjectName(QString::fromUtf8(name));
    return a;
}

namespace KeyLayout {

int usLetter(quint32 nativeScanCode)
{
    // X11 key codes (the kernel's key codes plus 8) of the letter rows of
    // every PC keyboard, and the letters a US layout puts on them.
    struct Row
    {
        quint32 first;
        const char *letters;
    };
    static constexpr Row rows[] = {{24, "QWERTYUIOP"}, {38, "ASDFGHJKL"}, {52, "ZXCVBNM"}};
    for (const Row &row : rows) {
        const quint32 length = quint32(std::char_traits<char>::length(row.letters));
        if (nativeScanCode >= row.first && nativeScanCode < row.first + length)
            return Qt::Key_A + (row.letters[nativeScanCode - row.first] - 'A');
    }
    return 0;
}

int latinKey(const QKeyEvent *event)
{
    const int key = event->key();
    // Only letters of other scripts are read by place: Latin letters, digits
    // and named keys stay as the layout gives them.
    if (key < 0x80 || key > 0xffff || !QChar(char16_t(key)).isLetter())
        return key;
    const int letter = usLetter(event->nativeScanCode());
    return letter ? letter : key;
}

bool triggerShortcut(QWidget *window, const QKeyEvent *event)
{
    const int latin = latinKey(event);
    if (!window || latin == event->key())
        return false;
    const QKeySequence sequence(QKeyCombination(
        event->modifiers() & (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier),
        Qt::Key(latin)));
    for (QAction *action : window->findChildren<QAction *>()) {
        if (action->isEnabled() && action->shortcut() == sequence) {
            action->trigger();
            return true;
        }
    }
    return false;
}

} // namespace KeyLayout
