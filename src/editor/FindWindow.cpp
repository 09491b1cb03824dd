// The find and replace window, and the two commands of the editor that open
// it.

#include "editor/FindWindow.h"

#include "app/AppContext.h"
#include "app/Controls.h"
#include "editor/Form2.h"
#include "editor/RTB.h"
#include "platform/TextFile.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QDropEvent>
#include <QGroupBox>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>

namespace {

const QString CrLf = QStringLiteral("\r\n");

// Blanks off both ends, and only blanks: a line break at an end stays, so
// that the line-break rule still sees it.
using TextFile::trimBlanks;

template <typename W>
W *placed(W *widget, const char *name, int left, int top, int width, int height)
{
    widget->setObjectName(QString::fromLatin1(name));
    widget->setGeometry(Twips::toPixels(left), Twips::toPixels(top), Twips::toPixels(width), Twips::toPixels(height));
    return widget;
}

} // namespace

// --- The editor's commands ----------------------------------------------------------

void Form2::mnuTrova_Click()
{
    Tag = QString();
    showFrmFind();
}

void Form2::mnuSostituisci_Click()
{
    Tag = QStringLiteral("1");
    showFrmFind();
}

void Form2::showFrmFind()
{
    // A window already loaded comes up as it is, in the mode it was loaded in.
    if (!m_frmFind) {
        m_frmFind = std::make_unique<frmFind>(ctx, *this);
        m_frmFind->Form_Load();
    }
    m_frmFind->show();
    m_frmFind->raise();
}

void Form2::unloadFrmFind()
{
    if (!m_frmFind)
        return;
    // Unloading runs inside the window's own handlers: the window goes at
    // once for the program, and its object when the handler has returned.
    frmFind *window = m_frmFind.release();
    window->hide();
    window->deleteLater();
}

void Form2::frmFindAtExit()
{
    if (!m_frmFind)
        return;
    m_frmFind->hide();
    m_frmFind->Timer1->setInterval(100);
}

// --- The window ------------------------------------------------------------------------

frmFind::frmFind(AppContext &context, Form2 &owner) : QWidget(&owner), ctx(context), editor(owner)
{
    setObjectName(QStringLiteral("frmFind"));
    // Owned by the editor and kept above it, whichever of the two has the
    // keyboard.
    setWindowFlags(Qt::Tool | Qt::WindowStaysOnTopHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint);
    setWindowTitle(QStringLiteral("Trova e sostituisci"));
    resize(Twips::toPixels(6000), Twips::toPixels(2250));

    lblFind = placed(new CaptionLabel(this), "lblFind", 120, 180, 1545, 300);
    cboFind = placed(new QComboBox(this), "cboFind", 1710, 165, 2565, 315);
    lblReplace = placed(new CaptionLabel(this), "lblReplace", 120, 525, 1545, 300);
    cboReplace = placed(new QComboBox(this), "cboReplace", 1710, 510, 2565, 315);
    lblFind->setBuddy(cboFind);
    lblReplace->setBuddy(cboReplace);
    for (QComboBox *box : {cboFind, cboReplace}) {
        box->setEditable(true);
        // The history is kept by the window's own routines.
        box->setInsertPolicy(QComboBox::NoInsert);
        box->lineEdit()->setAcceptDrops(true);
        box->lineEdit()->installEventFilter(this);
    }
    connect(cboFind, &QComboBox::activated, this, [this] { cboFind_Click(); });

    cmdFind = placed(new QPushButton(QStringLiteral("&Find"), this), "cmdFind", 4440, 120, 1395, 375);
    cmdReplace = placed(new QPushButton(QStringLiteral("&Replace..."), this), "cmdReplace", 4440, 540, 1395, 375);
    cmdReplaceAll = placed(new QPushButton(QStringLiteral("Replace &All"), this), "cmdReplaceAll", 4440, 960, 1395, 375);
    cmdCancel = placed(new QPushButton(QStringLiteral("Cancel"), this), "cmdCancel", 4440, 1380, 1395, 375);
    cmdFind->setDefault(true);
    connect(cmdFind, &QPushButton::clicked, this, [this] { cmdFind_Click(); });
    connect(cmdReplace, &QPushButton::clicked, this, [this] { cmdReplace_Click(); });
    connect(cmdReplaceAll, &QPushButton::clicked, this, [this] { cmdReplaceAll_Click(); });
    connect(cmdCancel, &QPushButton::clicked, this, [this] { cmdCancel_Click(); });

    Frame1 = placed(new QGroupBox(QStringLiteral("Search Options"), this), "Frame1", 120, 960, 4155, 1095);
    chkWholeWord = placed(new QCheckBox(QStringLiteral("Find Whole Word &Only"), Frame1), "chkWholeWord", 120, 300, 3900, 300);
    chkMatchCase = placed(new QCheckBox(QStringLiteral("Match Ca&se"), Frame1), "chkMatchCase", 120, 660, 3900, 300);

    Timer1 = ctx.timers().createTimer();
    Timer1->onTimeout = [this] { Timer1_Timer(); };
}

frmFind::~frmFind() = default;

RichTextBox &frmFind::rtb() const
{
    return *editor.RTB;
}

void frmFind::Form_Load()
{
    const LanguageTable &L = ctx.Lingua;
    // 1. Always on top (by the window's flags), at pixel 50, 50.
    move(50, 50);
    // 2.
    cboFind->setEditText(trimBlanks(rtb().SelText()));
    // 3.
    cmdFind->setText(u'&' + L(56));
    cmdCancel->setText(L(21));
    cmdReplace->setText(L(59) + QStringLiteral("..."));
    cmdReplaceAll->setText(L(61));
    lblFind->setCaption(L(56));
    lblReplace->setCaption(L(60));
    Frame1->setTitle(L(62));
    chkWholeWord->setText(L(63));
    chkMatchCase->setText(L(64));
    cboFind->setAccessibleName(TogliAmp(L(56)));
    cboReplace->setAccessibleName(TogliAmp(L(60)));
    // 4. A selection of several lines: its first line, and the line break
    // is owed to the next replacement.
    const QString text = cboFind->currentText();
    const qsizetype lineEnd = text.indexOf(CrLf);
    if (lineEnd >= 0) {
        cboFind->setEditText(text.left(lineEnd));
        TagliatoCrLf = true;
    }
    // 5.
    if (!cboFind->currentText().isEmpty())
        cboFind->addItem(cboFind->currentText());
    // 6.
    const bool replace = !editor.Tag.isEmpty();
    setWindowTitle(replace ? TogliAmp(L(59)) + QStringLiteral("...") : L(56) + QStringLiteral("..."));
    for (QWidget *w : std::initializer_list<QWidget *>{cmdReplace, cmdReplaceAll, lblReplace, cboReplace})
        w->setVisible(replace);
}

void frmFind::storia(QComboBox *box)
{
    // Up to and including the count: the entry past the end reads empty, so
    // an empty box counts as found.
    const QString text = box->currentText();
    for (IndiceStoria = 0; IndiceStoria <= box->count(); ++IndiceStoria) {
        if (box->itemText(IndiceStoria) == text)
            return;
    }
    if (!trimBlanks(text).isEmpty()) {
        box->addItem(text);
        // Adding the first entry would choose it; the box keeps its text.
        box->setEditText(text);
    }
}

void frmFind::StoriaFind()
{
    storia(cboFind);
}

void frmFind::StoriaReplace()
{
    storia(cboReplace);
}

int frmFind::searchOptions() const
{
    int options = 0;
    if (chkWholeWord->isChecked())
        options += 2;
    if (chkMatchCase->isChecked())
        options += 4;
    return options;
}

void frmFind::cboFind_Click()
{
    // The caret goes to the top; the caption of cmdFind stays, so a search
    // in progress goes on from there with the chosen word.
    rtb().setSelStart(0);
}

void frmFind::cboFind_OLEDragDrop(const QString &data)
{
    QString text = data;
    const qsizetype lineEnd = text.indexOf(CrLf);
    if (lineEnd >= 0) {
        text = text.left(lineEnd);
        TagliatoCrLf = true;
    }
    cboFind->setEditText(trimBlanks(text));
    StoriaFind();
    StoriaReplace();
}

void frmFind::cboReplace_OLEDragDrop(const QString &data)
{
    QString text = data;
    const qsizetype lineEnd = text.indexOf(CrLf);
    if (lineEnd >= 0)
        text = text.left(lineEnd);
    cboReplace->setEditText(trimBlanks(text));
    StoriaFind();
    StoriaReplace();
}

bool frmFind::eventFilter(QObject *watched, QEvent *event)
{
    const bool onFind = watched == cboFind->lineEdit();
    if (!onFind && watched != cboReplace->lineEdit())
        return QWidget::eventFilter(watched, event);
    if (event->type() == QEvent::DragEnter || event->type() == QEvent::DragMove) {
        auto *drag = static_cast<QDropEvent *>(event);
        if (drag->mimeData()->hasText()) {
            drag->acceptProposedAction();
            return true;
        }
    } else if (event->type() == QEvent::Drop) {
        auto *drop = static_cast<QDropEvent *>(event);
        if (drop->mimeData()->hasText()) {
            // Dropped text arrives with the platform's line ends.
            QString text = drop->mimeData()->text();
            text.replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(u'\n', CrLf);
            if (onFind)
                cboFind_OLEDragDrop(text);
            else
                cboReplace_OLEDragDrop(text);
            drop->acceptProposedAction();
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void frmFind::cmdFind_Click()
{
    const LanguageTable &L = ctx.Lingua;
    RichTextBox &box = rtb();
    StoriaFind();
    StoriaReplace();
    const int options = searchOptions();
    const QString idle = u'&' + L(56);
    if (cmdFind->text() == idle) {
        if (box.Find(cboFind->currentText(), 0, options) != -1) {
            box.SetFocus();
            cmdFind->setText(L(57));
        } else {
            ctx.msgBox(TogliAmp(L(65)), MsgBox::Information, ctx.TitoloApp);
            cmdFind->setText(idle);
        }
    } else {
        // No wrap-around: at the end the next press starts at the top.
        if (box.Find(cboFind->currentText(), box.SelStart() + box.SelLength(), options) != -1) {
            box.SetFocus();
        } else {
            ctx.msgBox(TogliAmp(L(66)), MsgBox::Information, ctx.TitoloApp);
            cmdFind->setText(idle);
        }
    }
    box.SetFocus();
}

void frmFind::cmdReplace_Click()
{
    const LanguageTable &L = ctx.Lingua;
    RichTextBox &box = rtb();
    StoriaFind();
    StoriaReplace();
    // From the start of the selection: a hit already selected is found
    // again, and so a press on a found word replaces it.
    const qint32 start = box.SelStart();
    int options = searchOptions();
    const QString find = cboFind->currentText();
    if (box.Find(find, start, options) == -1) {
        ctx.msgBox(TogliAmp(L(65)), MsgBox::Information, ctx.TitoloApp);
        return;
    }
    if (cmdReplace->text() == L(59) + QStringLiteral("...")) {
        // The first press only finds, and arms the button for good.
        cmdReplace->setText(L(59));
    } else {
        // The options are added a second time and the look-ahead below
        // searches with the doubled word: whole word then counts as match
        // case, and match case as "don't select". Kept as the program has
        // always behaved.
        options += searchOptions();
        if (!find.isEmpty()) {
            if (!TagliatoCrLf) {
                box.setSelText(cboReplace->currentText());
            } else {
                TagliatoCrLf = false;
                box.setSelText(cboReplace->currentText() + CrLf);
            }
            const qint32 next = box.SelStart() + box.SelLength();
            if (box.Find(find, next, options) != -1)
                box.SetFocus();
            else
                cmdFind->setText(u'&' + L(56));
        }
    }
    box.SetFocus();
}

qint32 replaceAllFromCaret(RichTextBox &rtb, const QString &cerca, const QString &con)
{
    qint32 count = 0;
    const RichTextBox::LayoutHold hold(rtb);
    for (;;) {
        // The result isn't looked at: only the selection the search leaves.
        rtb.Find(cerca);
        if (rtb.SelLength() == 0)
            break;
        ++count;
        rtb.setSelRTF(con);
    }
    return count;
}

void frmFind::cmdReplaceAll_Click()
{
    const LanguageTable &L = ctx.Lingua;
    ContaSostituzioni = 0;
    const QString cerca = trimBlanks(cboFind->currentText());
    const QString con = trimBlanks(cboReplace->currentText());
    ContaSostituzioni = replaceAllFromCaret(rtb(), cerca, con);
    // Hidden, not unloaded: the history and the captions stay.
    hide();
    ctx.msgBox(TogliAmp(L(67)) + u' ' + CrLf + QString::number(ContaSostituzioni) + u' ' + TogliAmp(L(68)),
               MsgBox::OkOnly, ctx.TitoloApp);
}

void frmFind::cmdCancel_Click()
{
    editor.unloadFrmFind();
}

void frmFind::closeEvent(QCloseEvent *event)
{
    // The window's close box unloads it, as Cancel does.
    event->accept();
    editor.unloadFrmFind();
}

void frmFind::Timer1_Timer()
{
    Timer1->setInterval(0);
    editor.unloadFrmFind();
}
