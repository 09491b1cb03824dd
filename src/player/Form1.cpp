#include "player/Form1.h"

#include "app/AppContext.h"
#include "editor/Form2.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QLayout>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QWidget>
#include <algorithm>

Form1::Form1(AppContext &context)
    : QMainWindow(nullptr)
    , WindowTwips(this)
    , ctx(context)
    , WMP1(context.player())
{
    setObjectName(QStringLiteral("Form1"));
    setAccessibleName(QStringLiteral("Form1"));
    // A fixed-size window with a minimise button and no maximise button.
    setWindowFlags(Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint
                   | Qt::WindowSystemMenuHint | Qt::WindowMinimizeButtonHint
                   | Qt::WindowCloseButtonHint);
    setAcceptDrops(true);
    buildSkin();
    buildMenus();
    wireTimers();
    // The skin has one size; the window is as large as the skin and its menu.
    layout()->setSizeConstraint(QLayout::SetFixedSize);
    adjustSize();
}

Form1::~Form1() = default;

namespace {

// The pictures of the skin, as designed.
struct SkinPicture
{
    PictureBox *Form1::*box;
    const char *file;
};
const SkinPicture skinPictures[] = {
    {&Form1::Image4, "logo.png"},   {&Form1::Shape3, "strip.jpg"},  {&Form1::Shape1, "bar.jpg"},
    {&Form1::Image2, "volbar.jpg"}, {&Form1::Image1, "volknob.jpg"}, {&Form1::Image3, "Apri.bmp"},
    {&Form1::cmdPlay, "play.jpg"},  {&Form1::cmdIndietro, "bac.jpg"}, {&Form1::cmdStop, "stop.jpg"},
    {&Form1::cmdAvanz, "for.jpg"},  {&Form1::cmdRec, "rec.jpg"},     {&Form1::imgDetta, "detta.jpg"},
};

// The skin's labels have the sizes of their design; the widest text a label
// shows must fit in it with the fonts of this system.
// Every size measured loads a font of its own: the first guess is the size
// that scales the text to the label, then smaller sizes until it fits.
void fitFont(QLabel *label, const QString &widest)
{
    QFont font = label->font();
    const int width = QFontMetrics(font).horizontalAdvance(widest);
    if (width <= label->width() || font.pointSize() <= 6)
        return;
    font.setPointSize(std::max(6, font.pointSize() * label->width() / width));
    while (font.pointSize() > 6 && QFontMetrics(font).horizontalAdvance(widest) > label->width())
        font.setPointSize(font.pointSize() - 1);
    label->setFont(font);
}

} // namespace

QStringList Form1::picturesAtStart()
{
    QStringList names;
    for (const SkinPicture &p : skinPictures)
        names << QString::fromLatin1(p.file);
    return names;
}

void Form1::buildSkin()
{
    auto *surface = new QWidget(this);
    surface->setObjectName(QStringLiteral("skin"));
    surface->setAutoFillBackground(true);
    QPalette pal = surface->palette();
    pal.setColor(QPalette::Window, Qt::white);
    surface->setPalette(pal);
    surface->setFixedSize(Twips::toPixels(5220), Twips::toPixels(2625));
    surface->setMouseTracking(true);
    setCentralWidget(surface);

    auto picture = [surface](const char *name, int l, int t, int w, int h) {
        auto *p = new PictureBox(surface);
        p->setObjectName(QLatin1String(name));
        p->place(l, t, w, h);
        p->setMouseTracking(true);
        return p;
    };
    auto label = [surface](const char *name, int l, int t, int w, int h) {
        auto *p = new CaptionLabel(surface);
        p->setObjectName(QLatin1String(name));
        p->place(l, t, w, h);
        return p;
    };

    Image4 = picture("Image4", 690, 270, 3570, 840);
    Shape3 = picture("Shape3", 300, 180, 4050, 825);
    Shape3->setStretch(true);
    Shape3->hide();
    Label4 = label("Label4", 330, 180, 4035, 825);
    Label4->setAlignment(Qt::AlignCenter);
    Label4->setWordWrap(true);
    Label4->hide();

    Image3 = picture("Image3", 300, 1350, 660, 570);
    cmdPlay = picture("cmdPlay", 1050, 1260, 720, 735);
    cmdIndietro = picture("cmdIndietro", 1740, 1350, 540, 555);
    cmdStop = picture("cmdStop", 2310, 1350, 540, 555);
    cmdAvanz = picture("cmdAvanz", 2880, 1350, 540, 555);
    cmdRec = picture("cmdRec", 3450, 1395, 450, 450);
    imgDetta = picture("imgDetta", 4080, 1425, 450, 420);

    Shape1 = picture("Shape1", 300, 2190, 4635, 225);
    Shape1->setStretch(false);
    Label2 = label("Label2", 300, 2190, 4635, 240);
    Label2->setAlignment(Qt::AlignCenter);
    // No accessible name: a label with one reports the name instead of its
    // text, and the position text is what a screen reader has to read.

    Image2 = picture("Image2", 4815, 360, 90, 1200);
    Image2->setStretch(true);
    Image1 = picture("Image1", 4665, 1230, 375, 195);
    Label5 = label("Label5", 4620, 1680, 495, 285);
    Label5->setCaption(QStringLiteral("100%"));
    Label5->setStyleSheet(QStringLiteral("color: rgb(255, 255, 255);"));
    fitFont(Label5, QStringLiteral(" 100%"));
    Label1 = label("Label1", 4770, 45, 165, 360);
    Label1->setCaption(QStringLiteral("+"));
    Label3 = label("Label3", 4800, 1365, 120, 435);
    Label3->setCaption(QStringLiteral("-"));
    Label7 = label("Label7", 270, 1950, 450, 240);
    Label7->setFont(QFont(QStringLiteral("Arial Narrow"), 8));
    Label7->hide();

    for (const SkinPicture &p : skinPictures)
        ctx.loadPicture(this->*p.box, QString::fromLatin1(p.file));

    cmdPlay->onClick = [this] { cmdPlay_Click(); };
    cmdIndietro->onClick = [this] { cmdIndietro_Click(); };
    cmdStop->onClick = [this] { cmdStop_Click(); };
    cmdAvanz->onClick = [this] { cmdAvanz_Click(); };
    cmdRec->onClick = [this] { cmdRec_Click(); };
    Image3->onClick = [this] { Image3_Click(); };
    imgDetta->onClick = [this] { imgDetta_Click(); };
    Image4->onClick = [this] { Image4_Click(); };

    cmdPlay->onMouseMove = [this](int, int, int) { cmdPlay_MouseMove(); };
    cmdIndietro->onMouseMove = [this](int, int, int) { cmdIndietro_MouseMove(); };
    cmdStop->onMouseMove = [this](int, int, int) { cmdStop_MouseMove(); };
    cmdAvanz->onMouseMove = [this](int, int, int) { cmdAvanz_MouseMove(); };
    cmdRec->onMouseMove = [this](int, int, int) { cmdRec_MouseMove(); };
    Image3->onMouseMove = [this](int, int, int) { Image3_MouseMove(); };
    imgDetta->onMouseMove = [this](int, int, int) { imgDetta_MouseMove(); };
    Image2->onMouseUp = [this](int button, int, int y) { Image2_MouseUp(button, y); };
    Image1->onMouseDown = [this](int button, int, int) { Image1_MouseDown(button); };
    Image1->onMouseMove = [this](int buttons, int, int y) { Image1_MouseMove(buttons, y); };
    Image1->onMouseUp = [this](int button, int, int) { Image1_MouseUp(button); };
    Label2->onMouseUp = [this](int, int x, int) { Label2_MouseUp(x); };
    surface->installEventFilter(this);
}

void Form1::buildMenus()
{
    QMenuBar *bar = menuBar();
    auto item = [this](QMenu *menu, const char *name, const char *caption, const QKeySequence &key,
                       std::function<void()> handler) {
        return MenuBuilder::command(this, menu, name, caption, key, std::move(handler));
    };
    auto menu = [bar](const char *name, const char *caption) { return MenuBuilder::menu(bar, name, caption); };

    mnuFile = menu("mnuFile", "&File");
    mnuApri = item(mnuFile, "mnuApri", "&Apri file...", QKeySequence(Qt::CTRL | Qt::Key_O), [this] { mnuApri_Click(); });
    mnuChiudi = item(mnuFile, "mnuChiudi", "&Chiudi file multimediale", QKeySequence(Qt::CTRL | Qt::Key_F4), [this] { mnuChiudi_Click(); });
    mnuChiudi->setEnabled(false);
    mnuFile->addSeparator();
    mnuRegistra = item(mnuFile, "mnuRegistra", "Registra...", {}, [this] { mnuRegistra_Click(); });
    mnuRiga = mnuFile->addSeparator();
    mnuRiga->setVisible(false);
    for (int i = 0; i < 4; ++i) {
        const QByteArray name = "mnuRecent" + QByteArray::number(i + 1);
        mnuRecent[i] = item(mnuFile, name.constData(), name.constData(), {}, [this, i] { mnuRecent_Click(i); });
        mnuRecent[i]->setVisible(false);
    }
    mnuR1 = mnuFile->addSeparator();
    mnuEsci = item(mnuFile, "mnuEsci", "&Esci", QKeySequence(Qt::CTRL | Qt::Key_Q), [this] { mnuEsci_Click(); });

    mnuRiproduzione = menu("mnuRiproduzione", "&Riproduzione");
    mnuPlay = item(mnuRiproduzione, "mnuPlay", "&Play", QKeySequence(Qt::Key_F5), [this] { mnuPlay_Click(); });
    mnuStop = item(mnuRiproduzione, "mnuStop", "&Stop", {}, [this] { mnuStop_Click(); });
    mnuIndietro = item(mnuRiproduzione, "mnuIndietro", "&Indietro", QKeySequence(Qt::Key_F6), [this] { mnuIndietro_Click(); });
    mnuAvanti = item(mnuRiproduzione, "mnuAvanti", "&Avanti", QKeySequence(Qt::Key_F7), [this] { mnuAvanti_Click(); });
    mnuDiminuisciVelocità = item(mnuRiproduzione, "mnuDiminuisciVelocità", "Diminuisci velocità riproduzione", QKeySequence(Qt::Key_F3), [this] { mnuDiminuisciVelocità_Click(); });
    mnuAumentaVelocità = item(mnuRiproduzione, "mnuAumentaVelocità", "Aumenta velocità riproduzione", QKeySequence(Qt::Key_F4), [this] { mnuAumentaVelocità_Click(); });
    mnuVai = item(mnuRiproduzione, "mnuVai", "Vai a...", {}, [this] { mnuVai_Click(); });
    mnuRiproduzione->addSeparator();
    mnuAddBM = item(mnuRiproduzione, "mnuAddBM", "Aggiungi BookMark", QKeySequence(Qt::CTRL | Qt::Key_M), [this] { mnuAddBM_Click(); });
    mnuBMsuccessivo = item(mnuRiproduzione, "mnuBMsuccessivo", "Vai al BookMark successivo", {}, [this] { mnuBMsuccessivo_Click(); });
    mnuBMprecedente = item(mnuRiproduzione, "mnuBMprecedente", "Vai al BookMark precedente", {}, [this] { mnuBMprecedente_Click(); });

    mnuVisualizza = menu("mnuVisualizza", "&Visualizza");
    mnuMostraNascondi = item(mnuVisualizza, "mnuMostraNascondi", "Mostra l'editor di testo", {}, [this] { mnuMostraNascondi_Click(); });
    mnuBookMark = item(mnuVisualizza, "mnuBookMark", "Mostra &BookMark", QKeySequence(Qt::Key_F8), [this] { mnuBookMark_Click(); });

    mnuOpzioni = menu("mnuOpzioni", "&Opzioni");
    mnuImpostaAudio = item(mnuOpzioni, "mnuImpostaAudio", "&Imposta audio...", QKeySequence(Qt::Key_F9), [this] { mnuImpostaAudio_Click(); });
    mnuOpzioni->addSeparator();
    mnuSecIndietro = item(mnuOpzioni, "mnuSecIndietro", "Secondi indietro su &pausa...", {}, [this] { mnuSecIndietro_Click(); });
    mnuSalto = item(mnuOpzioni, "mnuSalto", "&Salto avanti / indietro secondi...", {}, [this] { mnuSalto_Click(); });
    mnuOpzioni->addSeparator();
    mnuSmartPlay = item(mnuOpzioni, "mnuSmartPlay", "Play intelligente", QKeySequence(Qt::Key_F12), [this] { mnuSmartPlay_Click(); });
    mnuTempoPlay = item(mnuOpzioni, "mnuTempoPlay", "Tempo di riproduzione prima della pausa", {}, [this] { mnuTempoPlay_Click(); });
    mnuTempoPause = item(mnuOpzioni, "mnuTempoPause", "Tempo di pausa prima della riproduzione", {}, [this] { mnuTempoPause_Click(); });
    mnuNoPlayOnWrite = item(mnuOpzioni, "mnuNoPlayOnWrite", "Non avviare la riproduzione durante la digitazione", {}, [this] { mnuNoPlayOnWrite_Click(); });
    mnuOpzioni->addSeparator();
    mnuTitoloCompleto = item(mnuOpzioni, "mnuTitoloCompleto", "Mostra percorso file", QKeySequence(Qt::Key_F11), [this] { mnuTitoloCompleto_Click(); });
    mnuOpzioni->addSeparator();
    mnuPrimoPiano = item(mnuOpzioni, "mnuPrimoPiano", "Player sempre in primo piano", {}, [this] { mnuPrimoPiano_Click(); });
    mnuOpzioni->addSeparator();
    mnuLingua = item(mnuOpzioni, "mnuLingua", "&Lingua...", QKeySequence(Qt::CTRL | Qt::Key_W), [this] { mnuLingua_Click(); });
    mnuAggLingua = item(mnuOpzioni, "mnuAggLingua", "Aggiungi Lingua...", {}, [this] { mnuAggLingua_Click(); });

    mnuDonazioni = menu("mnuDonazioni", "&Donazioni");
    mnuFaiDonazione = item(mnuDonazioni, "mnuFaiDonazione", "&Fai una donazione", {}, [this] { mnuFaiDonazione_Click(); });

    mnuHelp = menu("mnuHelp", "&?");
    mnuGuida = item(mnuHelp, "mnuGuida", "&Guida...", QKeySequence(Qt::Key_F1), [this] { mnuGuida_Click(); });
    mnuHelp->addSeparator();
    mnuVersioni = item(mnuHelp, "mnuVersioni", "Versioni", {}, [this] { mnuVersioni_Click(); });
    mnuAggiornamenti = item(mnuHelp, "mnuAggiornamenti", "&Controlla aggiornamenti...", {}, [this] { mnuAggiornamenti_Click(); });
    mnuCheckUpdateStartup = item(mnuHelp, "mnuCheckUpdateStartup", "Controlla aggiornamenti all'avvio", {}, [this] {
        // Only the mark changes; it counts from the next start.
        mnuCheckUpdateStartup->setChecked(!mnuCheckUpdateStartup->isChecked());
    });
    mnuHelp->addSeparator();
    mnuInfo = item(mnuHelp, "mnuInfo", "&Informazioni sul programma...", QKeySequence(Qt::CTRL | Qt::Key_F1), [this] { mnuInfo_Click(); });

    // Commands with a check mark.
    for (QAction *a : {mnuSmartPlay, mnuNoPlayOnWrite, mnuTitoloCompleto, mnuPrimoPiano, mnuCheckUpdateStartup})
        a->setCheckable(true);
    mnuPrimoPiano->setChecked(true);
    mnuCheckUpdateStartup->setChecked(true);
}

void Form1::wireTimers()
{
    Timer1 = ctx.timers().createTimer();
    Timer2 = ctx.timers().createTimer();
    Timer3 = ctx.timers().createTimer();
    Timer4 = ctx.timers().createTimer();
    Timer5 = ctx.timers().createTimer();
    Timer6 = ctx.timers().createTimer();
    TimerKey = ctx.timers().createTimer();
    Timer1->onTimeout = [this] { Timer1_Timer(); };
    Timer2->onTimeout = [this] { Timer2_Timer(); };
    Timer3->onTimeout = [this] { Timer3_Timer(); };
    Timer4->onTimeout = [this] { Timer4_Timer(); };
    Timer5->onTimeout = [this] { Timer5_Timer(); };
    Timer6->onTimeout = [this] { Timer6_Timer(); };
    // The display and the watch for the end of the media tick together.
    Timer1->setCoarse(true);
    Timer4->setCoarse(true);
    // The key timer has a design period and an empty handler: running, it
    // would only wake the program for nothing.
    TimerKey->setEnabled(false);
    TimerKey->setInterval(150);
    TimerKey->onTimeout = [] {};
}

void Form1::setWindowPosTopmost(bool topmost)
{
    const bool wasVisible = isVisible();
    if (bool(windowFlags() & Qt::WindowStaysOnTopHint) != topmost)
        setWindowFlag(Qt::WindowStaysOnTopHint, topmost);
    move(50, 50);
    if (wasVisible && !isVisible())
        show();
}

void Form1::closeEvent(QCloseEvent *event)
{
    if (ctx.processEnded()) {
        event->accept();
        return;
    }
    int Cancel = 0;
    Form_Unload(Cancel);
    if (Cancel)
        event->ignore();
    else
        event->accept();
}

void Form1::keyPressEvent(QKeyEvent *event)
{
    // No control of this window keeps the keyboard, so Esc reaches the window.
    if (event->key() == Qt::Key_Escape) {
        mnuEsci_Click();
        return;
    }
    // A menu shortcut the keyboard layout hid (Ctrl+W under a Cyrillic one).
    if (KeyLayout::triggerShortcut(this, event))
        return;
    QMainWindow::keyPressEvent(event);
}

void Form1::changeEvent(QEvent *event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange)
        Form_Resize();
    if (event->type() == QEvent::ActivationChange)
        FlagFocusPlayer = isActiveWindow();
}

void Form1::paintEvent(QPaintEvent *event)
{
    QMainWindow::paintEvent(event);
    if (!m_firstPaintDone) {
        m_firstPaintDone = true;
        if (windowsDue())
            windowsDueAtFirstPaint();
        if (onFirstPaint)
            onFirstPaint();
    }
}
