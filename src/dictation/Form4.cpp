#include "dictation/Form4.h"

#include "app/AppContext.h"
#include "bookmarks/BookmarkFile.h"
#include "bookmarks/Form3.h"
#include "bookmarks/ListBox.h"
#include "platform/Numbers.h"
#include "platform/PlayerControl.h"
#include "platform/TextFile.h"
#include "player/Form1.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <algorithm>
#include <cmath>

namespace {

// The program's Trim: blanks only, so a text of tabs is not "empty" and goes
// on to be read as the number 0.
using TextFile::trimBlanks;

QSize screenTwips()
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    const QSize px = screen ? screen->geometry().size() : QSize(1024, 768);
    return {Twips::fromPixels(px.width()), Twips::fromPixels(px.height())};
}

void placeTwips(QWidget *w, int left, int top, int width, int height)
{
    w->setGeometry(Twips::toPixels(left), Twips::toPixels(top), Twips::toPixels(width),
                   Twips::toPixels(height));
}

} // namespace

Form4::Form4(AppContext &context, QWidget *owner)
    : QDialog(owner)
    , WindowTwips(this)
    , ctx(context)
{
    setObjectName(QStringLiteral("Form4"));
    // A fixed dialog frame: a close button, no minimise or maximise.
    setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint
                   | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
    setFixedSize(Twips::toPixels(6405), Twips::toPixels(1575));
    if (owner)
        setWindowIcon(owner->windowIcon());

    // Created first so that it lies behind the other controls.
    Image1 = new PictureBox(this);
    Image1->setObjectName(QStringLiteral("Image1"));
    Image1->setStretch(true);
    Image1->place(-420, -180, 7245, 2055);

    Label1 = new CaptionLabel(this);
    Label1->setObjectName(QStringLiteral("Label1"));
    Label1->setWordWrap(true);
    Label1->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    Label1->place(330, 210, 3825, 720);

    Text1 = new QLineEdit(this);
    Text1->setObjectName(QStringLiteral("Text1"));
    placeTwips(Text1, 330, 910, 4005, 375);

    Command1 = new QPushButton(QStringLiteral("OK"), this);
    Command1->setObjectName(QStringLiteral("Command1"));
    Command1->setDefault(true);
    placeTwips(Command1, 4740, 250, 1425, 585);

    Command2 = new QPushButton(QStringLiteral("Cancel"), this);
    Command2->setObjectName(QStringLiteral("Command2"));
    placeTwips(Command2, 4740, 870, 1425, 435);

    QObject::connect(Command1, &QPushButton::clicked, this, [this] { Command1_Click(); });
    QObject::connect(Command2, &QPushButton::clicked, this, [this] { Command2_Click(); });

    setTabOrder(Text1, Command1);
    setTabOrder(Command1, Command2);
    Text1->setFocus();

    Form_Load();
}

Form4::~Form4() = default;

void Form4::Form_Load()
{
    if (Form1 *player = ctx.form1())
        Image1->LoadPicture(player->Shape3->pictureFile());
    Command1->setText(ctx.Lingua(20));
    Command2->setText(ctx.Lingua(21));
    const QSize screen = screenTwips();
    setLeft((screen.width() - Width()) / 2);
    setTop((screen.height() - Height()) / 2);
}

void Form4::showModal()
{
    if (!m_unloaded)
        exec();
}

void Form4::Unload()
{
    m_unloaded = true;
    QDialog::done(QDialog::Rejected);
}

void Form4::Command2_Click()
{
    Unload();
}

void Form4::reject()
{
    Command2_Click();
}

void Form4::keyPressEvent(QKeyEvent *event)
{
    // Esc has no binding in this dialog: without this the toolkit would take
    // it as Cancel.
    if (event->key() == Qt::Key_Escape) {
        event->accept();
        return;
    }
    QDialog::keyPressEvent(event);
}

void Form4::Command1_Click()
{
    // The job is read from the caption as set, compared with the raw
    // language entries: an entry holding "&" never matches, and such a
    // dialog ends up in the jump setting. The language files avoid that.
    const QString caption = Caption();
    if (caption == ctx.Lingua(93)) {
        addBookmark();
        return;
    }
    if (trimBlanks(Text1->text()).isEmpty()) {
        Unload();
        return;
    }
    if (caption == ctx.Lingua(32)) {
        storeSeconds(ctx.SecIndietro, SecIndietroBounds);
    } else if (caption == ctx.Lingua(39)) {
        goTo();
    } else if (Label1->Caption().startsWith(ctx.Lingua(125))) {
        // Both cycle times share one caption; only the prompt's beginning
        // tells them apart.
        storeSeconds(ctx.TempoPlay, TempoPlayBounds);
    } else if (Label1->Caption().startsWith(ctx.Lingua(126))) {
        storeSeconds(ctx.TempoPause, TempoPauseBounds);
    } else {
        storeSeconds(ctx.SecSalto, SecSaltoBounds);
    }
}

void Form4::storeSeconds(qint16 &variable, Bounds bounds)
{
    // A number that does not fit 16 bits is dropped and the old value runs
    // through the bounds instead; only an old value out of bounds then shows
    // a message.
    Numbers::assignInt16(variable, Numbers::leadingNumber(Text1->text()));
    const QString title = TogliAmp(ctx.Lingua(1));
    if (variable < bounds.lower) {
        ctx.msgBox(TogliAmp(ctx.Lingua(40)) + QStringLiteral(" %1.").arg(bounds.lower), MsgBox::Exclamation,
                   title);
        variable = bounds.lower;
    }
    if (variable > bounds.upper) {
        ctx.msgBox(TogliAmp(ctx.Lingua(33)) + QStringLiteral(" %1.").arg(bounds.upper), MsgBox::Exclamation,
                   title);
        variable = bounds.upper;
    }
    if (Form1 *player = ctx.form1())
        player->Salva();
    Unload();
}

void Form4::goTo()
{
    Form1 *player = ctx.form1();
    // A number beyond a double fails the assignment: the position stays.
    if (const double target = Numbers::leadingNumber(Text1->text()); std::isfinite(target))
        ctx.player().setCurrentPosition(target);
    if (player) {
        // On a paused or stopped player the jump goes through the pause
        // branch of the toggle, so it lands SecIndietro seconds early, as
        // every pause does; a running player lands on the number itself.
        if (player->cmdPlay->Tag == ctx.Lingua(7)) {
            player->cmdPlay->Tag = ctx.Lingua(8);
            player->cmdPlay_Click();
        }
        player->Timer1_Timer();
        player->Salva();
    }
    Unload();
}

void Form4::addBookmark()
{
    Form3 *marks = ctx.form3();
    // The name is taken as typed, blanks and all, and may be empty. The time
    // always fills eight characters: "03:25" becomes "00:03:25".
    const QString name = Text1->text();
    const QString position = ctx.player().currentPositionString();
    const QString ChiaveBM = BookmarkFile::key(position, name);

    for (int row = 0; row < marks->List1->ListCount(); ++row) {
        if (marks->List1->List(row) == ChiaveBM) {
            ctx.msgBox(TogliAmp(ctx.Lingua(89)), MsgBox::Exclamation, TogliAmp(ctx.Lingua(1)));
            return; // the dialog stays open for another name
        }
    }
    // Both lists are sorted: the new row goes to its place in time.
    marks->List1->AddItem(ChiaveBM);
    marks->List2->AddItem(BookmarkFile::line(position, name));

    // The table follows the lists' order. Row 0 is not cleared here: the
    // copy below writes it, as there is at least one row.
    for (std::size_t i = 1; i < ctx.BookMark.size(); ++i)
        ctx.BookMark[i].clear();
    const int rows = std::min<int>(marks->List1->ListCount(), int(ctx.BookMark.size()));
    for (int row = 0; row < rows; ++row)
        ctx.BookMark[std::size_t(row)] = marks->List2->List(row);
    Unload();
}
