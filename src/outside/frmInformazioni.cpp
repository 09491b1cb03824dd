#include "outside/frmInformazioni.h"

#include "app/AppContext.h"
#include "bookmarks/Form3.h"
#include "editor/Form2.h"
#include "player/Form1.h"

#include <QAction>
#include <QCloseEvent>
#include <QFrame>
#include <QKeyEvent>

namespace {

// The credits on the scrolling panel: the people and the parts the program
// is made of.
const char *const Credits =
    "Quillmere Free\n\n"
    "Design and programming\nthe Quillmere team\n\n"
    "Translations\nBrazilian, English, French, Hungarian,\nItalian, Dutch, Russian, Spanish, Swedish:\n"
    "the volunteers of each language\n\n"
    "Built with\nQt, libmpv, FFmpeg\n\n"
    "Thanks to every typist who sent\na report, a wish or a language file.";

} // namespace

frmInformazioni::frmInformazioni(AppContext &context)
    : QWidget(nullptr, Qt::Window), WindowTwips(this), ctx(context)
{
    setObjectName(QStringLiteral("frmInformazioni"));
    setFixedSize(Twips::toPixels(6420), Twips::toPixels(4440));

    auto picture = [this](QWidget *parent, const char *name, int l, int t, int w, int h) {
        auto *p = new PictureBox(parent);
        p->setObjectName(QString::fromLatin1(name));
        p->place(l, t, w, h);
        return p;
    };
    auto label = [this](const char *name, int l, int t, int w, int h) {
        auto *c = new CaptionLabel(this);
        c->setObjectName(QString::fromLatin1(name));
        c->place(l, t, w, h);
        c->onClick = [this] { unload(); };
        c->setAttribute(Qt::WA_NoMousePropagation);
        return c;
    };

    imgTitle = picture(this, "imgTitle", 240, 120, 840, 840);
    imgTitle->setStretch(true);
    imgTitle->LoadPicture(ctx.filesPath(QStringLiteral("quillmere-48.png")));
    imgTitle->onClick = [this] { unload(); };
    imgTitle->setAccessibleName(QStringLiteral("Quillmere"));
    Image1 = picture(this, "Image1", 5460, 120, 720, 720);
    Image1->hide();

    lblTitle = label("lblTitle", 1200, 240, 2700, 480);
    QFont big = lblTitle->font();
    big.setPointSize(16);
    big.setBold(true);
    lblTitle->setFont(big);
    lblVersion = label("lblVersion", 4050, 360, 1800, 300);
    lblDescription = label("lblDescription", 1200, 720, 5000, 420);
    lblDescription->setWordWrap(true);

    Picture1 = picture(this, "Picture1", 240, 1170, 5940, 2235);
    // A plain well: a frame would be painted over by the panel's edge.
    Picture1->setAutoFillBackground(true);
    Picture1->setBackgroundRole(QPalette::Base);
    Picture1->setFocusPolicy(Qt::StrongFocus);
    Picture1->setAttribute(Qt::WA_NoMousePropagation);
    Picture1->installEventFilter(this);
    Picture2 = picture(Picture1, "Picture2", 60, Outside::CreditsScroll::StartTop, 5775, 4155);
    Picture2->setAttribute(Qt::WA_NoMousePropagation);
    lblCredits = new QLabel(QString::fromUtf8(Credits), Picture2);
    lblCredits->setObjectName(QStringLiteral("lblCredits"));
    lblCredits->setAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
    lblCredits->setGeometry(0, 0, Twips::toPixels(5775), Twips::toPixels(4155));

    Frame1 = new QFrame(this);
    Frame1->setObjectName(QStringLiteral("Frame1"));
    Frame1->setFrameShape(QFrame::HLine);
    Frame1->setGeometry(Twips::toPixels(240), Twips::toPixels(3510), Twips::toPixels(5940), 2);

    lblHomePageCap = label("lblHomePageCap", 240, 3630, 1500, 270);
    lblHomePage = label("lblHomePage", 1800, 3630, 4380, 270);
    lblHomePage->setCaption(Outside::homePage());
    lblHomePage->setCursor(Qt::PointingHandCursor);
    QFont link = lblHomePage->font();
    link.setUnderline(true);
    lblHomePage->setFont(link);
    // The address opens in the browser and the box stays.
    lblHomePage->onClick = [this] { ctx.shell().openUrl(Outside::homePage()); };
    lblCopyright = label("lblCopyright", 240, 3990, 5940, 270);

    Timer1 = ctx.timers().createTimer();
    Timer1->setInterval(0);
    Timer1->onTimeout = [this] { Timer1_Timer(); };
}

frmInformazioni::~frmInformazioni() = default;

QString frmInformazioni::copyrightText()
{
    return QStringLiteral("\u00A9 2009-2026 the Quillmere team");
}

void frmInformazioni::Form_Load()
{
    Timer1->setInterval(10);
    scroll.wellHeight = Picture1->Height();
    scroll.panelHeight = Picture2->Height();
    scroll.top = Outside::CreditsScroll::StartTop;
    scroll.n = 0;
    Picture2->setTop(scroll.top);
}

void frmInformazioni::Timer1_Timer()
{
    scroll.wellHeight = Picture1->Height();
    scroll.panelHeight = Picture2->Height();
    scroll.top = Picture2->Top();
    scroll.tick();
    Picture2->setTop(scroll.top);
}

void frmInformazioni::Form_Unload()
{
    Timer1->setInterval(0);
    hide();
    Form1 *player = ctx.form1();
    if (!player)
        return;
    player->show();
    if (player->mnuMostraNascondi->text() == ctx.Lingua(116))
        ctx.form2()->show();
    if (player->mnuBookMark->text() == ctx.Lingua(85)) {
        if (Form3 *marks = ctx.existingForm3())
            marks->show();
    }
}

void frmInformazioni::unload()
{
    if (m_unloading)
        return;
    m_unloading = true;
    ctx.unloadFormInformazioni();
}

void frmInformazioni::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        unload();
}

void frmInformazioni::closeEvent(QCloseEvent *event)
{
    event->accept();
    unload();
}

bool frmInformazioni::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == Picture1 && event->type() == QEvent::KeyPress
        && static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape) {
        unload();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}
