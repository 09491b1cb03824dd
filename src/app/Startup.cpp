// The player window's start-up and exit sequences.

#include "app/AppContext.h"
#include "app/RecentFiles.h"
#include "app/SettingsFile.h"
#include "bookmarks/Form3.h"
#include "editor/Form2.h"
#include "editor/journal/RecoveryJournal.h"
#include "platform/Numbers.h"
#include "platform/TextFile.h"
#include "player/Form1.h"

#include <QAction>
#include <QCursor>
#include <QGuiApplication>
#include <QPixmap>
#include <QScopedValueRollback>
#include <QScreen>
#include <QTimer>

namespace {

// The screen's size in twips.
QSize screenTwips()
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    const QSize px = screen ? screen->geometry().size() : QSize(1024, 768);
    return {Twips::fromPixels(px.width()), Twips::fromPixels(px.height())};
}

bool framed(const QWidget *window)
{
    return window->frameGeometry().height() > window->geometry().height();
}

} // namespace

void Form1::Form_Initialize()
{
    // The shell library and the common controls of the old platform have
    // no counterpart here; what remains is placing the editor.
    PosizionaEditor();
}

void Form1::PosizionaEditor()
{
    Form2 *editor = ctx.form2();
    // The editor's own moves on the way are not moves by someone else.
    const QScopedValueRollback placing(m_placingEditor, true);
    if (!ctx.BookMark[0].isEmpty())
        editor->setTop(ctx.form3()->Top() + ctx.form3()->Height() + 30);
    else
        editor->setTop(Top() + Height() + 30);
    editor->setLeft(Left());
    // The rule places frames against frames. Before the window manager has
    // framed both windows (at start-up) a height lacks its title bar, and a
    // window may yet move to its place: the placement is made again as the
    // frames come.
    if (framed(this) && (!editor->isVisible() || framed(editor)))
        m_editorPlacedUnframed.reset();
    else
        m_editorPlacedUnframed = QPoint(editor->Left(), editor->Top());
}

void Form1::placeEditorAgain()
{
    if (!m_editorPlacedUnframed || m_placingEditor || !framed(this))
        return;
    const QPoint placed = *m_editorPlacedUnframed;
    // Unless something else (the saved positions) has moved the editor
    // since. A window manager that has framed the editor meanwhile has put
    // either its frame or its inside where it was placed.
    const Form2 *editor = ctx.form2();
    const QRect inside = editor->geometry();
    if (QPoint(editor->Left(), editor->Top()) == placed
        || QPoint(Twips::fromPixels(inside.x()), Twips::fromPixels(inside.y())) == placed)
        PosizionaEditor();
    else
        m_editorPlacedUnframed.reset();
}

void Form1::moveEvent(QMoveEvent *event)
{
    QMainWindow::moveEvent(event);
    placeEditorAgain();
    // The windows due at the first paint wait for this window's frame, for
    // the editor to be placed against it before it is first shown.
    if (windowsDue() && m_firstPaintDone && framed(this))
        QTimer::singleShot(0, this, &Form1::showDueWindows);
}

void Form1::Form_Load()
{
    // 1. The drop hook: this window accepts drops (set up with the window).
    // 2. Volume.
    VolumeMax = 100;
    IniziaVolume();

    // 3. Title.
    ctx.TitoloApp = QStringLiteral("Quillmere");
    setWindowTitle(ctx.TitoloApp);
    setTop(0);

    // 4. The settings, field by field. A field that cannot be read keeps its
    // zero or empty value, and the start goes on.
    QString volumeText;
    qint16 line9 = 0, line10 = 0, line11 = 0, line12 = 0, line13 = 0, line14 = 0;
    qint16 line8 = 0, line16 = 0, line17 = 0, line18 = 0, line19 = 0, line20 = 0;
    qint16 line23 = 0, line24 = 0, line25 = 0;
    QString line15;
    {
        const QStringList lines = TextFile::readLines(ctx.settingsPath()).value_or(QStringList());
        SettingsFieldReader in(lines);
        auto text = [&in]() { return in.text().value_or(QString()); };
        auto int16 = [&in](qint16 &target) {
            if (const auto v = in.int16())
                target = *v;
        };
        auto valInt16 = [](const QString &t, qint16 &target) {
            if (const auto v = SettingsFile::valInt16(t))
                target = *v;
        };

        text(); // line 1: the language, already taken by the start.
        volumeText = text();
        // A value no position can take is skipped, as a failing statement.
        if (const auto top = Numbers::toInt32(Numbers::leadingNumber(text())))
            Image1->setTop(*top);
        valInt16(text(), ctx.SecSalto);
        valInt16(text(), ctx.SecIndietro);
        mnuTitoloCompleto->setChecked(Numbers::leadingNumber(text()) == 1);
        ctx.CartellaMedia = text();
        int16(line8);
        int16(line9);
        int16(line10);
        int16(line11);
        int16(line12);
        int16(line13);
        int16(line14);
        line15 = text();
        int16(line16);
        int16(line17);
        int16(line18);
        int16(line19);
        int16(line20);
        valInt16(text(), ctx.TempoPlay);
        if (ctx.TempoPlay < 3)
            ctx.TempoPlay = 7;
        valInt16(text(), ctx.TempoPause);
        if (ctx.TempoPause < 3)
            ctx.TempoPause = 7;
        int16(line23);
        mnuSmartPlay->setChecked(line23 != 0);
        imgDetta->LoadPicture(ctx.filesPath(line23 != 0 ? QStringLiteral("detta2.jpg") : QStringLiteral("detta.jpg")));
        int16(line24);
        mnuCheckUpdateStartup->setChecked(line24 == 1);
        int16(line25);
        mnuNoPlayOnWrite->setChecked(line25 == 1);
    }

    // 5. The language table once more, tolerant of long files.
    ctx.loadLanguage();

    // 6. Saved positions, unless lines 13 and 14 add up to 0. A sum that
    // overflows 16 bits raises an error inside the test, and the test's
    // failure falls into the branch: such a sum counts as "not 0".
    if (int(line13) + int(line14) != 0) {
        setLeft(line9);
        setTop(line10);
        ctx.form2()->setLeft(line11);
        ctx.form2()->setTop(line12);
    }

    // 7. Stay on top; either way the window lands at pixel (50, 50).
    const bool topmost = line15 == QLatin1String("0") || line15.isEmpty();
    mnuPrimoPiano->setChecked(topmost);
    setWindowPosTopmost(topmost);

    // 8. The editor, if it was open, fitted into the screen.
    if (line8 == 0) {
        Form2 *editor = ctx.form2();
        const QSize screen = screenTwips();
        if (editor->Left() + editor->Width() > screen.width())
            editor->setWidth(screen.width() - editor->Left());
        if (editor->Top() + editor->Height() > screen.height())
            editor->setHeight(screen.height() - editor->Top());
        editor->showLater();
    }

    // 9. The bookmark window, by the inverted reading of its line.
    if (line16 == 1) {
        Form3 *marks = ctx.form3();
        marks->setLeft(line17);
        marks->setTop(line18);
        marks->setWidth(line19);
        marks->setHeight(line20);
        marks->showLater();
    }

    // Unsaved text of a run that ended abruptly, offered back before
    // anything else happens.
    if (RecoveryJournal *journal = ctx.journal())
        journal->offer(ctx);

    // 10. Captions from the language table.
    ApplicaLingua();

    // 11. The position bar and its text.
    Shape1->hide();
    Label2->setLeft(Shape1->Left());
    Label2->setWidth(Shape1->Width());
    Label2->setCaption(QStringLiteral("0:00 / 0:00"));

    // 12. Commands that need a media file.
    for (QAction *a : {mnuPlay, mnuStop, mnuAvanti, mnuIndietro, mnuDiminuisciVelocità,
                       mnuAumentaVelocità, mnuVai})
        a->setEnabled(false);
    cmdStop->setEnabled(false);

    // 13.
    mnuSecIndietro->setText(ctx.Lingua(30));
    Image1->setTip(QStringLiteral(" ") + ctx.Lingua(27) + QStringLiteral(" "));

    // 14. The smart play button's place at rest.
    DettaTop = qint16(imgDetta->Top());
    DettaLeft = qint16(imgDetta->Left());

    // 15. Both recent lists, with one shared mark.
    {
        int mark = 0;
        RecentFiles::load(ctx.filesPath(QStringLiteral("LastFiles.ini")), mnuRecent, mnuRiga, mark);
        Form2 *editor = ctx.form2();
        RecentFiles::load(ctx.filesPath(QStringLiteral("LastFilesEditor.ini")), editor->mnuRecent, editor->mnur, mark);
    }

    // 16. The pointing hand over the skin's buttons.
    {
        const QPixmap hand = ctx.picture(QStringLiteral("Indica.ico"));
        if (!hand.isNull()) {
            const QCursor cursor(hand, 6, 1);
            for (PictureBox *b : {Image3, imgDetta, cmdPlay, cmdIndietro, cmdStop, cmdAvanz})
                b->setCursor(cursor);
        }
    }

    // 17. The command line as it came (quotes included).
    const QString commandLine = ctx.commandLine();
    if (!commandLine.trimmed().isEmpty())
        vai(commandLine);

    // 18.
    Image1->Tag = volumeText;

    // 19. Back to the state without media, whatever step 17 opened.
    mnuChiudi_Click();

    // 20.
    ApplicaVolume();

    // 21. The command line as a quoted path.
    if (!commandLine.trimmed().isEmpty())
        ApriMedia(commandLine.mid(1, commandLine.size() - 2));

    // 22.
    if (line24 == 1)
        ControllaAggiornamenti();
}

bool Form1::windowsDue() const
{
    const Form2 *editor = ctx.existingForm2();
    const Form3 *marks = ctx.existingForm3();
    return (editor && editor->showDue()) || (marks && marks->showDue());
}

void Form1::windowsDueAtFirstPaint()
{
    // A window manager has usually framed this window by now. Without one
    // no frame comes, and the others follow a moment later.
    QTimer::singleShot(framed(this) ? 0 : 20, this, &Form1::showDueWindows);
}

void Form1::showDueWindows()
{
    if (!windowsDue())
        return;
    if (Form3 *marks = ctx.existingForm3())
        marks->showIfDue();
    ctx.form2()->showIfDue();
    // This window keeps the focus it has as the last window shown.
    if (isVisible() && !isMinimized())
        activateWindow();
}

bool Form1::editorOpen() const
{
    const Form2 *editor = ctx.existingForm2();
    return editor && editor->isOpen();
}

void Form1::Form_Unload(int &Cancel)
{
    // 1.
    SalvaBookMark();

    // 2. Unsaved text in the visible editor.
    Form2 *editor = ctx.form2();
    if (editor->isVisible() && ctx.TestoModificato == 1 && !editor->Text().isEmpty()) {
        const QString defaultName = ctx.NomeDocumento + QString::number(ctx.NumeroDocumento);
        QString prompt;
        if (ctx.FileEditor.isEmpty()) {
            prompt = TogliAmp(ctx.Lingua(75)) + u' ' + defaultName + u'?';
            ctx.FileEditor = defaultName;
        } else {
            prompt = TogliAmp(ctx.Lingua(75)) + u' ' + ctx.FileEditor + u'?';
        }
        const int answer = ctx.msgBox(prompt, MsgBox::YesNoCancel | MsgBox::Exclamation, QString());
        if (answer == MsgBox::Cancel) {
            Cancel = 1;
            return;
        }
        if (answer == MsgBox::Yes) {
            if (ctx.FileEditor == defaultName)
                editor->mnuSalvaConNome_Click();
            else
                editor->Label2_Click(2);
            editor->SalvaFilesRecenti(ctx.FileEditor);
            if (ctx.TestoModificato > 0) {
                Cancel = 1;
                Salva();
                show();
                return;
            }
        }
    }

    // 3, 4. Nothing was registered and the drop handler goes with the window.

    // 5. The settings, while the other windows still answer for their geometry.
    Salva();

    // 6. The bookmark window unloads itself a moment later (its Timer1).
    if (Form3 *marks = ctx.existingForm3()) {
        marks->hide();
        marks->Timer1->setInterval(50);
    }
    editor->frmFindAtExit();

    // 7.
    WMP1.stop();

    // 8.
    editor->hide();
    ctx.endProcess();
}

void Form1::mnuEsci_Click()
{
    int Cancel = 0;
    Form_Unload(Cancel);
}
