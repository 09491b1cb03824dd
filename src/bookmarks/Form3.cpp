// The bookmark window and its routines.

#include "bookmarks/Form3.h"

#include "app/AppContext.h"
#include "bookmarks/BookmarkFile.h"
#include "bookmarks/ListBox.h"
#include "dictation/Form4.h"
#include "platform/PlayerControl.h"
#include "player/Form1.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QPointer>
#include <QPushButton>

namespace {

void placeTwips(QWidget *w, int left, int top, int width, int height)
{
    w->setGeometry(Twips::toPixels(left), Twips::toPixels(top), Twips::toPixels(width),
                   Twips::toPixels(height));
}

// The design size of the window's inside; the routines that show it give
// it the player's height and the width up to the editor's right edge.
constexpr int DesignWidth = 5805;
constexpr int DesignHeight = 2940;

// The buttons, as the window's definition places them.
constexpr int ButtonTop = 2480;
constexpr int ButtonWidth = 525;
constexpr int ButtonHeight = 375;

} // namespace

Form3::Form3(AppContext &context) : QWidget(nullptr), WindowTwips(this), ShownLater(this), ctx(context)
{
    setObjectName(QStringLiteral("Form3"));
    setWindowFlag(Qt::Tool, true);
    resize(Twips::toPixels(DesignWidth), Twips::toPixels(DesignHeight));

    List1 = new ListBox(this);
    List1->setObjectName(QStringLiteral("List1"));
    placeTwips(List1, 30, 30, 5745, 2370);
    List2 = new ListBox(this);
    List2->setObjectName(QStringLiteral("List2"));
    placeTwips(List2, 30, 420, 5745, 1005);
    List2->hide();

    const QFont arial(QStringLiteral("Arial"));
    Command1 = new QPushButton(QStringLiteral("+"), this);
    Command1->setObjectName(QStringLiteral("Command1"));
    Command1->setFont(arial);
    placeTwips(Command1, 5250, ButtonTop, ButtonWidth, ButtonHeight);
    Command2 = new QPushButton(QStringLiteral("-"), this);
    Command2->setObjectName(QStringLiteral("Command2"));
    Command2->setFont(arial);
    placeTwips(Command2, 4680, ButtonTop, ButtonWidth, ButtonHeight);
    // The tips come from ApplicaLingua; a window loaded again after an
    // unload takes them from the table at once instead of from a design
    // text in another language.
    Command1->setToolTip(u' ' + ctx.Lingua(93) + u' ');
    Command2->setToolTip(u' ' + ctx.Lingua(100) + u' ');

    setTabOrder(List1, Command2);
    setTabOrder(Command2, Command1);

    QObject::connect(Command1, &QPushButton::clicked, this, [this] { Command1_Click(); });
    QObject::connect(Command2, &QPushButton::clicked, this, [this] { Command2_Click(); });
    QObject::connect(List1, &QListWidget::itemDoubleClicked, this, [this] { List1_DblClick(); });

    Timer1 = ctx.timers().createTimer();
    Timer1->onTimeout = [this] { Timer1_Timer(); };
}

Form3::~Form3() = default;

void Form3::setWidth(int twips)
{
    m_outerWidth = twips;
    m_frameUsed = frameGeometry().size() - size();
    WindowTwips::setWidth(twips);
}

void Form3::setHeight(int twips)
{
    m_outerHeight = twips;
    m_frameUsed = frameGeometry().size() - size();
    WindowTwips::setHeight(twips);
}

void Form3::fitOuterSize()
{
    const QSize frame = frameGeometry().size() - size();
    if (frame == m_frameUsed)
        return;
    m_frameUsed = frame;
    if (m_outerWidth >= 0)
        WindowTwips::setWidth(m_outerWidth);
    if (m_outerHeight >= 0)
        WindowTwips::setHeight(m_outerHeight);
}

void Form3::Form_Load()
{
    setWindowTitle(ctx.Lingua(120));
    List1->Clear();
    List2->Clear();
    for (const QString &line : ctx.BookMark) {
        if (line.isEmpty())
            break;
        // A line too short for its tail fails on the visible list only, as
        // the platform's Left fails on it: the two lists then differ.
        if (const auto shown = BookmarkFile::listText(line))
            List1->AddItem(*shown);
        List2->AddItem(line);
    }
}

void Form3::Form_Resize()
{
    // The list grows with the window; its height and the buttons' top stay.
    List1->resize(std::max(0, Twips::toPixels(Width() - 140)), List1->height());
    const int command1Left = Width() - ButtonWidth - 160;
    Command1->move(Twips::toPixels(command1Left), Command1->y());
    Command2->move(Twips::toPixels(command1Left - ButtonWidth - 60), Command2->y());
}

void Form3::SvuotaBookMark()
{
    for (QString &entry : ctx.BookMark)
        entry.clear();
}

void Form3::copyListToTable()
{
    const int rows = std::min(List1->ListCount(), BookmarkFile::Entries);
    for (int i = 0; i < rows; ++i)
        ctx.BookMark[size_t(i)] = List2->List(i);
}

void Form3::Form_Unload()
{
    SvuotaBookMark();
    copyListToTable();
    if (Form1 *player = ctx.form1())
        player->mnuBookMark->setText(ctx.Lingua(84));
}

void Form3::Command1_Click()
{
    PlayerControl &player = ctx.player();
    // At the very end of the media a bookmark would name nothing: rewind
    // and play first.
    if (player.currentPositionString() == player.durationString()) {
        player.setCurrentPosition(0);
        if (Form1 *f = ctx.form1())
            f->cmdPlay_Click();
    }
    Form4 dialog(ctx, this);
    dialog.setWindowIcon(windowIcon());
    dialog.setCaption(TogliAmp(ctx.Lingua(93)));
    dialog.Label1->setCaption(TogliAmp(ctx.Lingua(88)));
    // Form4's OK routine adds the bookmark (its bookmark mode).
    dialog.showModal();
}

void Form3::Command2_Click()
{
    const int selected = List1->ListIndex();
    if (selected == -1)
        return;
    // Only the visible row goes: List2 keeps the deleted line, so the table
    // gets the first N - 1 lines of List2 and loses the last one, and from
    // this row on a double click jumps to the row before. This is the
    // program's behaviour, kept on purpose: do not tidy List2 here.
    List1->RemoveItem(selected);
    SvuotaBookMark();
    copyListToTable();
}

void Form3::List1_DblClick()
{
    const QString line = List2->List(List1->ListIndex());
    const qint64 seconds = BookmarkFile::seconds(BookmarkFile::timeText(line));
    // Strictly above one second: a bookmark at 0 or 1 s does not move the
    // player.
    if (seconds > 1)
        ctx.player().setCurrentPosition(double(seconds));
    if (Form1 *player = ctx.form1())
        player->Timer1_Timer();
}

void Form3::Timer1_Timer()
{
    Timer1->setInterval(0);
    // The unload destroys this window and this timer: nothing may follow.
    ctx.unloadForm3();
}

void Form3::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    Form_Resize();
}

void Form3::closeEvent(QCloseEvent *event)
{
    // The frame's close button unloads the window. It is destroyed once the
    // close has returned, never inside its own event.
    event->ignore();
    QPointer<Form3> self(this);
    QMetaObject::invokeMethod(
        QCoreApplication::instance(),
        [self, context = &ctx] {
            if (self && context->existingForm3() == self)
                context->unloadForm3();
        },
        Qt::QueuedConnection);
}

void Form3::keyReleaseEvent(QKeyEvent *event)
{
    FlagFocusBookmark = false;
    QWidget::keyReleaseEvent(event);
}

bool Form3::event(QEvent *event)
{
    switch (event->type()) {
    case QEvent::WindowActivate:
        FlagFocusBookmark = true;
        break;
    case QEvent::Show:
    case QEvent::Move:
    case QEvent::Resize:
        // The frame is known from the first showing on (with a window
        // manager, once it has framed the window).
        fitOuterSize();
        break;
    default:
        break;
    }
    return QWidget::event(event);
}
