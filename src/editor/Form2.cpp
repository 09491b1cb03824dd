// The editor window: its controls, menus, start-up, layout and language.

#include "editor/Form2.h"

#include "app/AppContext.h"
#include "editor/FindWindow.h"
#include "editor/UndoHistory.h"
#include "player/Form1.h"

#include <QAction>
#include <QCloseEvent>
#include <QCursor>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>
#include <QPixmap>
#include <QPrinter>
#include <QScreen>

namespace {

QSize screenTwips()
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    const QSize px = screen ? screen->geometry().size() : QSize(1024, 768);
    return {Twips::fromPixels(px.width()), Twips::fromPixels(px.height())};
}

// The hot areas of the toolbar by index: left and width in twips, and the
// name a screen reader gives each.
struct ToolbarArea
{
    int left;
    int width;
    const char *name;
};
constexpr ToolbarArea toolbarAreas[17] = {
    {150, 435, "New"},          {580, 455, "Open"},        {1020, 435, "Save"},
    {1440, 485, "Print"},       {2880, 465, "Bold"},       {3300, 435, "Italic"},
    {3720, 465, "Underline"},   {4140, 465, "Strikethrough"}, {4650, 450, "Align left"},
    {5100, 450, "Centre"},      {5550, 450, "Align right"}, {6040, 465, "Larger text"},
    {6510, 465, "Smaller text"}, {6950, 465, "Colour"},    {7460, 465, "Bullets"},
    {1980, 435, "Undo"},        {2400, 435, "Redo"},
};

} // namespace

Form2::Form2(AppContext &context) : QMainWindow(nullptr), ShownLater(this), ctx(context)
{
    setObjectName(QStringLiteral("Form2"));
    setWindowTitle(QStringLiteral("Text Editor"));
    // Sizable, with a maximise button and no minimise button: the editor
    // is minimised and restored together with the player.
    setWindowFlags(Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint
                   | Qt::WindowMaximizeButtonHint | Qt::WindowCloseButtonHint);
    buildControls();
    buildMenus();
    Timer1 = ctx.timers().createTimer();
    Timer1->onTimeout = [this] { Timer1_Timer(); };
    Timer1->setCoarse(true);
    resize(Twips::toPixels(10800), Twips::toPixels(4395) + menuBar()->sizeHint().height());
}

Form2::~Form2() = default;

namespace {

const char *const toolbarPicture = "toolbar.bmp";
const char *const handPicture = "Indica.ico";

} // namespace

QStringList Form2::picturesAtStart()
{
    return {QString::fromLatin1(toolbarPicture), QString::fromLatin1(handPicture)};
}

void Form2::buildControls()
{
    auto *surface = new QWidget(this);
    surface->setObjectName(QStringLiteral("surface"));
    QPalette grey = surface->palette();
    grey.setColor(QPalette::Window, QColor(236, 236, 236));
    surface->setPalette(grey);
    surface->setAutoFillBackground(true);
    setCentralWidget(surface);

    Image1 = new PictureBox(surface);
    Image1->setObjectName(QStringLiteral("Image1"));
    Image1->place(150, 60, 7800, 390);
    ctx.loadPicture(Image1, QString::fromLatin1(toolbarPicture));

    for (int i = 0; i < 17; ++i) {
        auto *button = new ToolbarButton(surface);
        button->setObjectName(QStringLiteral("Label2_%1").arg(i));
        button->setAccessibleName(QString::fromLatin1(toolbarAreas[i].name));
        button->setFocusPolicy(Qt::NoFocus);
        button->place(toolbarAreas[i].left, 30, toolbarAreas[i].width, 435);
        connect(button, &QAbstractButton::clicked, this, [this, i] { Label2_Click(i); });
        Label2[size_t(i)] = button;
    }

    // The letters keep the style they stand for.
    const char *letters[4] = {"G", "i", "S", "b"};
    for (int i = 0; i < 4; ++i) {
        auto *letter = new CaptionLabel(surface);
        letter->setObjectName(QStringLiteral("Label3_%1").arg(i));
        QFont font(QStringLiteral("Arial"));
        font.setPointSizeF(14.25);
        font.setBold(i == 0);
        font.setItalic(i == 1);
        font.setUnderline(i == 2);
        font.setStrikeOut(i == 3);
        letter->setFont(font);
        letter->setAlignment(Qt::AlignCenter);
        letter->setCaption(QString::fromLatin1(letters[i]));
        // The button underneath takes the click.
        letter->setAttribute(Qt::WA_TransparentForMouseEvents);
        Label3[size_t(i)] = letter;
    }

    Line1 = new CaptionLabel(surface);
    Line1->setObjectName(QStringLiteral("Line1"));
    Line1->setFrameShape(QFrame::HLine);
    Line1->setFrameShadow(QFrame::Sunken);
    Line1->place(0, 465, 10800, 30);

    Label1 = new CaptionLabel(surface);
    Label1->setObjectName(QStringLiteral("Label1"));
    Label1->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    Label1->place(150, 480, 10485, 3855);

    RTB = new RichTextBox(surface);
    RTB->place(510, 690, 9675, 3435);
    RTB->onChange = [this] { RTB_Change(); };
    RTB->onKeyDown = [this](int &KeyCode, int &Shift) { RTB_KeyDown(KeyCode, Shift); };
    RTB->onKeyUp = [this](int &KeyCode, int &Shift) { RTB_KeyUp(KeyCode, Shift); };
    RTB->onMouseDown = [this](int Button, int Shift, int X, int Y) { RTB_MouseDown(Button, Shift, X, Y); };
    RTB->onLostFocus = [this] { RTB_LostFocus(); };
    Label1->lower();
    setFocusProxy(RTB);
}

void Form2::buildMenus()
{
    QMenuBar *bar = menuBar();
    auto item = [this](QMenu *menu, const char *name, const char *caption, const QKeySequence &key,
                       std::function<void()> handler) {
        return MenuBuilder::command(this, menu, name, caption, key, std::move(handler));
    };
    auto menu = [bar](const char *name, const char *caption) { return MenuBuilder::menu(bar, name, caption); };
    auto separator = [](QMenu *m, const char *name) { return MenuBuilder::separator(m, name); };

    mnuFile = menu("mnuFile", "&File");
    mnuNuovo = item(mnuFile, "mnuNuovo", "&Nuovo", QKeySequence(Qt::CTRL | Qt::Key_N), [this] { mnuNuovo_Click(); });
    separator(mnuFile, "Riga1");
    mnuApri = item(mnuFile, "mnuApri", "&Apri...", {}, [this] { mnuApri_Click(); });
    mnuSalva = item(mnuFile, "mnuSalva", "Sa&lva", QKeySequence(Qt::CTRL | Qt::Key_S), [this] { mnuSalva_Click(); });
    mnuSalvaConNome = item(mnuFile, "mnuSalvaConNome", "Salva con &nome", {}, [this] { mnuSalvaConNome_Click(); });
    separator(mnuFile, "riga3");
    for (int i = 0; i < 4; ++i) {
        const QByteArray name = "mnuRecent" + QByteArray::number(i + 1);
        mnuRecent[i] = item(mnuFile, name.constData(), name.constData(), {}, [this, i] { mnuRecent_Click(i); });
        mnuRecent[i]->setVisible(false);
    }
    mnur = separator(mnuFile, "mnur");
    mnur->setVisible(false);
    mnuStampa = item(mnuFile, "mnuStampa", "Stam&pa...", QKeySequence(Qt::CTRL | Qt::Key_P), [this] { mnuStampa_Click(); });

    mnuModifica = menu("mnuModifica", "&Modifica");
    mnuAnnulla = item(mnuModifica, "mnuAnnulla", "Annulla", QKeySequence(Qt::CTRL | Qt::Key_Z), [this] { mnuAnnulla_Click(); });
    mnuRipeti = item(mnuModifica, "mnuRipeti", "&Ripeti", QKeySequence(Qt::CTRL | Qt::Key_Y), [this] { mnuRipeti_Click(); });
    separator(mnuModifica, "riga4");
    mnuTaglia = item(mnuModifica, "mnuTaglia", "&Taglia", QKeySequence(Qt::CTRL | Qt::Key_X), [this] { mnuTaglia_Click(); });
    mnuCopia = item(mnuModifica, "mnuCopia", "&Copia", QKeySequence(Qt::CTRL | Qt::Key_C), [this] { mnuCopia_Click(); });
    mnuIncolla = item(mnuModifica, "mnuIncolla", "I&ncolla", QKeySequence(Qt::CTRL | Qt::Key_V), [this] { mnuIncolla_Click(); });
    separator(mnuModifica, "riga2");
    mnuSelezionaTutto = item(mnuModifica, "mnuSelezionaTutto", "&Seleziona tutto", QKeySequence(Qt::CTRL | Qt::Key_A), [this] { mnuSelezionaTutto_Click(); });
    mnuTrova = item(mnuModifica, "mnuTrova", "Tro&va...", QKeySequence(Qt::CTRL | Qt::Key_F), [this] { mnuTrova_Click(); });
    mnuSostituisci = item(mnuModifica, "mnuSostituisci", "S&ostituisci", QKeySequence(Qt::CTRL | Qt::Key_H), [this] { mnuSostituisci_Click(); });

    mnuStrumenti = menu("mnuStrumenti", "&Strumenti");
    // The spelling item has no command behind it and is never reachable.
    mnuOrtografia = item(mnuStrumenti, "mnuOrtografia", "Controllo ortografico e grammaticale", {}, [] {});

    mnuTimeStamp = new QAction(QStringLiteral("&Time stamp"), this);
    mnuTimeStamp->setObjectName(QStringLiteral("mnuTimeStamp"));
    // Enabled only while a media file is open.
    mnuTimeStamp->setEnabled(false);
    connect(mnuTimeStamp, &QAction::triggered, this, [this] { mnuTimeStamp_Click(); });
    bar->addAction(mnuTimeStamp);
}

// --- Geometry ----------------------------------------------------------------

int Form2::Left() const { return Twips::fromPixels(x()); }
int Form2::Top() const { return Twips::fromPixels(y()); }
int Form2::Width() const { return Twips::fromPixels(frameGeometry().width()); }
int Form2::Height() const { return Twips::fromPixels(frameGeometry().height()); }
void Form2::setLeft(int twips) { move(Twips::toPixels(twips), y()); }
void Form2::setTop(int twips) { move(x(), Twips::toPixels(twips)); }

void Form2::setWidth(int twips)
{
    const int frame = frameGeometry().width() - width();
    resize(std::max(0, Twips::toPixels(twips) - frame), height());
}

void Form2::setHeight(int twips)
{
    const int frame = frameGeometry().height() - height();
    resize(width(), std::max(0, Twips::toPixels(twips) - frame));
}

// --- Start-up ----------------------------------------------------------------

void Form2::Form_Load()
{
    Form1 *player = ctx.form1();

    // 1, 2. Right below the player, narrowed or shortened to fit the
    // screen but never moved.
    if (player) {
        setLeft(player->Left());
        setTop(player->Top() + player->Height());
    }
    const QSize screen = screenTwips();
    if (Left() + Width() > screen.width())
        setWidth(screen.width() - Left());
    if (Top() + Height() > screen.height())
        setHeight(screen.height() - Top());

    // 3.
    if (player)
        setWindowIcon(player->windowIcon());

    // 4. The pointing hand over the toolbar's buttons.
    const QPixmap hand = ctx.picture(QString::fromLatin1(handPicture));
    if (!hand.isNull()) {
        const QCursor cursor(hand, 6, 1);
        for (ToolbarButton *button : Label2)
            button->setCursor(cursor);
    }

    // 5. The letters over the four style buttons. The font boxes, whose
    // pointer is the buttons', are filled as they are built.
    for (int i = 0; i < 4; ++i) {
        const ToolbarButton *button = Label2[size_t(i + 4)];
        Label3[size_t(i)]->place(button->Left(), i == 0 ? 90 : 80, button->Width(), 345);
    }

    // 6.
    ctx.TestoModificato = 0;
    CambiaLingua2();

    // 7.
    setWindowTitle(ctx.Lingua(96) + QStringLiteral(" - ") + ctx.NomeDocumento + QStringLiteral("1"));
    ctx.NumeroDocumento = 1;

    // 8. The first undo record, that of the empty document. Running the
    // change routine by hand also marks the fresh document as modified;
    // the exit and New prompts stay silent only because its text is empty.
    ctx.undo().RegistraUndo = true;
    RTB_Change();

    // 9.
    Timer1->setInterval(200);
    ClipRtfOn = true;
}

void Form2::Form_Resize()
{
    // Each line uses what the lines above left; a result below zero is
    // skipped like any failing step, so a tiny window keeps its last layout.
    auto set = [](int value, auto &&apply) {
        if (value >= 0)
            apply(value);
    };
    set(Width() - 2 * Label1->Left() - 120, [this](int v) { Label1->setWidth(v); });
    set(Height() - 2 * Label1->Top() - 500, [this](int v) { Label1->setHeight(v); });
    set(Label1->Width() - 360 - Label1->Left(), [this](int v) { RTB->setWidth(v); });
    set(Width() - Line1->Left(), [this](int v) { Line1->setWidth(v); });
    set(Label1->Height() - Label1->Top() + 100, [this](int v) { RTB->setHeight(v); });
}

void Form2::resizeEvent(QResizeEvent *event)
{
    QMainWindow::resizeEvent(event);
    Form_Resize();
}

// --- Language ------------------------------------------------------------------

void Form2::CambiaLingua2()
{
    ctx.loadLanguage();
    const LanguageTable &L = ctx.Lingua;
    mnuFile->menuAction()->setText(L(2));
    mnuNuovo->setText(L(42));
    mnuApri->setText(L(43));
    mnuSalva->setText(L(44));
    mnuSalvaConNome->setText(L(45));
    mnuStampa->setText(L(46));
    mnuModifica->menuAction()->setText(L(47));
    mnuTaglia->setText(L(48));
    mnuCopia->setText(L(49));
    mnuIncolla->setText(L(50));
    mnuSelezionaTutto->setText(L(51));
    mnuTrova->setText(L(56));
    mnuSostituisci->setText(L(59));
    mnuAnnulla->setText(L(70));
    mnuStrumenti->menuAction()->setText(L(71));
    mnuOrtografia->setText(L(72));
    mnuStrumenti->menuAction()->setVisible(false);
    mnuRipeti->setText(L(82));
    Label3[0]->setCaption(L(90));
    Label3[1]->setCaption(L(115));
    Label3[2]->setCaption(L(91));
    Label3[3]->setCaption(L(92));
    mnuTimeStamp->setText(L(134));
    ctx.NomeDocumento = L(97) + u' ';
}

// --- Window events ----------------------------------------------------------------

void Form2::closeEvent(QCloseEvent *event)
{
    if (ctx.processEnded()) {
        event->accept();
        return;
    }
    // Closing the window only hides it: the document, its flags and its
    // undo history stay, and nothing is asked.
    hide();
    if (Form1 *player = ctx.form1())
        player->mnuMostraNascondi->setText(ctx.Lingua(86));
    event->ignore();
}

void Form2::keyPressEvent(QKeyEvent *event)
{
    // Reached only while no control of the window holds the keyboard: the
    // text control keeps every key it is given.
    int code = RichTextBox::keyCode(event);
    int shift = RichTextBox::shiftState(event->modifiers());
    Form_KeyDown(code, shift);
    QMainWindow::keyPressEvent(event);
}

void Form2::Form_KeyDown(int &KeyCode, int &)
{
    if (KeyCode == 27) {
        if (Form1 *player = ctx.form1())
            player->mnuEsci_Click();
    }
}

void Form2::SetFocus()
{
    activateWindow();
    RTB->setFocus(Qt::OtherFocusReason);
}

QString Form2::Text() const
{
    return RTB->Text();
}
