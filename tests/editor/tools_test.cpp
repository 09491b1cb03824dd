// The toolbar's formatting buttons and font boxes, the hover mark, the
// colour dialog and printing.

#include "EditorTestSupport.h"

#include "editor/ShowColor.h"

#include <QComboBox>
#include <QFrame>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPrinter>
#include <QProcess>
#include <QStandardPaths>

namespace {

// The selection's formats in one line: bold, italic, underline, strike,
// bullet (1, 0 or ? for mixed), alignment, size.
QString formats(const RichTextBox &r)
{
    auto f = [](std::optional<bool> v) { return v ? QChar(*v ? u'1' : u'0') : QChar(u'?'); };
    const Qt::Alignment a = r.textCursor().blockFormat().alignment();
    const char *align = a & Qt::AlignHCenter ? "centre" : a & Qt::AlignRight ? "right" : "left";
    const auto size = r.SelFontSize();
    return QString(f(r.SelBold())) + f(r.SelItalic()) + f(r.SelUnderline()) + f(r.SelStrikeThru())
           + f(r.SelBullet()) + u' ' + QLatin1String(align) + u' ' + (size ? QString::number(*size) : QStringLiteral("?"));
}

// The text of a PDF; nothing when pdftotext isn't installed.
std::optional<QString> pdfText(const QString &path)
{
    const QString tool = QStandardPaths::findExecutable(QStringLiteral("pdftotext"));
    if (tool.isEmpty())
        return std::nullopt;
    QProcess p;
    p.start(tool, {QStringLiteral("-raw"), path, QStringLiteral("-")});
    p.waitForFinished(20000);
    return QString::fromUtf8(p.readAllStandardOutput()).simplified();
}

// A move of the mouse, no button held, over `w`.
void moveOver(QWidget *w)
{
    const QPointF at(3, 3);
    QMouseEvent move(QEvent::MouseMove, at, w->mapToGlobal(at), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(w, &move);
}

} // namespace

using EditorTools = EditorTest;

// That the formats survive a save is the RTF round trip's (rtf_test).
TEST_F(EditorTools, EachFormatButtonActsOnTheSelection)
{
    // Right alignment is checked after centre, so that it is seen to move.
    const std::pair<int, const char *> cases[] = {
        {4, "10000 left 12"},  {5, "01000 left 12"},   {6, "00100 left 12"},  {7, "00010 left 12"},
        {14, "00001 left 12"}, {9, "00000 centre 12"}, {10, "00000 right 12"}, {8, "00000 left 12"},
        {11, "00000 left 13"}, {12, "00000 left 11"},  {17, "00000 left 12"},
    };
    for (const auto &[index, want] : cases) {
        rtb->setText(QStringLiteral("plain words here"));
        if (index == 10 || index == 8)
            editor->Label2_Click(9);
        select(rtb, 6, 5);
        if (index < 17)
            QTest::mouseClick(editor->Label2[size_t(index)], Qt::LeftButton);
        else
            editor->Label2_Click(index);
        EXPECT_EQ(formats(*rtb), QString::fromLatin1(want)) << index;
    }

    // Part bold, part not: all bold, then a second press clears it.
    rtb->setText(QStringLiteral("plain words"));
    rtb->setSelLength(5);
    editor->Label2_Click(4);
    rtb->setSelLength(11);
    for (const char *want : {"?0000 left 12", "10000 left 12", "00000 left 12"}) {
        EXPECT_EQ(formats(*rtb), QString::fromLatin1(want));
        editor->Label2_Click(4);
    }
}

TEST_F(EditorTools, FontBoxesApplyToTheSelectionOnlyWhenTheirTextIsValid)
{
    // Built late, at the window's first show, the boxes show with it.
    ASSERT_TRUE(editor->Combo1->isVisible() && editor->Combo2->isVisible());
    rtb->setText(QStringLiteral("some text"));
    rtb->selectAll();
    // Each keystroke applies at once; what isn't a size above 0 does nothing.
    // fresh: the box's text is replaced, else typed behind.
    const struct { bool fresh; const char *keys, *size; } typed[] = {
        {true, "1", "1"}, {false, "3", "13"}, {true, "abc", "13"}, {true, "0", "13"}, {true, "9.5", "9.5"}};
    for (const auto &t : typed) {
        if (t.fresh)
            editor->Combo2->lineEdit()->selectAll();
        QTest::keyClicks(editor->Combo2->lineEdit(), QString::fromLatin1(t.keys));
        EXPECT_EQ(formats(*rtb).section(u' ', 2), QString::fromLatin1(t.size)) << t.keys;
    }
    // The size step leaves the box as it is.
    editor->Label2_Click(11);
    EXPECT_EQ(formats(*rtb).section(u' ', 2) + u' ' + editor->Combo2->currentText(), QStringLiteral("10.5 9.5"));

    // A name of the list applies; a typed name that matches none doesn't.
    if (editor->Combo1->count() > 0) {
        editor->Combo1->setEditText(QStringLiteral("No Such Font"));
        EXPECT_NE(rtb->SelFontName().value_or(QString()), QStringLiteral("No Such Font"));
        editor->Combo1->setCurrentIndex(0);
        editor->Combo1->activated(0);
        EXPECT_EQ(rtb->SelFontName().value_or(QString()), editor->Combo1->itemText(0));
    }
}

TEST_F(EditorTools, HoverMarkFollowsTheButtonsAndLeavesOnTheBareWindow)
{
    // Over a font box the mark stays; over the frame of the text it goes.
    const std::pair<QWidget *, QWidget *> moves[] = {
        {editor->Label2[4], editor->Label2[4]}, {editor->Label2[13], editor->Label2[13]},
        {editor->Combo1, editor->Label2[13]},   {editor->Label1, nullptr},
    };
    for (const auto &[over, marked] : moves) {
        moveOver(over);
        EXPECT_EQ(editor->Shape1->isVisible(), marked != nullptr) << over->objectName().toStdString();
        if (marked) {
            EXPECT_EQ(editor->Shape1->geometry(), marked->geometry());
        }
    }
}

TEST_F(EditorTools, ScriptedAnswerColoursTheSelectionAndCancelLeavesIt)
{
    rtb->setText(QStringLiteral("colour me"));
    rtb->selectAll();
    app.dialogs->colorAnswers = {QColor(200, 20, 10), QColor()}; // the second cancels
    for (int i = 0; i < 2; ++i) {
        QTest::mouseClick(editor->Label2[13], Qt::LeftButton);
        EXPECT_EQ(rtb->SelColor().value_or(QColor()).name(), QStringLiteral("#c8140a"));
    }
    // Each dialog opens on black.
    EXPECT_EQ(app.dialogs->colorStarts, (QList<QColor>{QColor(0, 0, 0), QColor(0, 0, 0)}));

    // The class keeps the platform's colour order: red in the low byte.
    ShowColor picker(*app.dialogs);
    app.dialogs->colorAnswers = {QColor(0x11, 0x22, 0x33)};
    picker.Show();
    EXPECT_EQ(picker.RGBResult, 0x332211);
}

TEST_F(EditorTools, PrintsTheSelectionOrTheWholeDocumentToAPdfFile)
{
    rtb->setText(QStringLiteral("first line of the text\r\nsecond line here\r\nthird and last"));
    const QString pdf = app.folder.file(QStringLiteral("out.pdf"));
    FakePrinterSetup &printers = *app.printers;

    // Cancel: nothing printed.
    QTest::keyClick(rtb->viewport(), Qt::Key_P, Qt::ControlModifier);
    EXPECT_EQ(printers.dialogs, 1);
    EXPECT_FALSE(QFile::exists(pdf));

    // Confirmed with a PDF file chosen: the whole document, in order, and
    // nothing of the program's own (no page number).
    printers.answers.push_back([pdf](QPrinter &p) {
        p.setOutputFormat(QPrinter::PdfFormat);
        p.setOutputFileName(pdf);
        return true;
    });
    editor->Label2_Click(3);
    const auto whole = pdfText(pdf);
    if (!whole)
        GTEST_SKIP() << "pdftotext (poppler-utils) is not installed";
    EXPECT_EQ(*whole, QStringLiteral("first line of the text second line here third and last"));

    // The choice outlives the command; with a selection only that prints.
    QFile::remove(pdf);
    printers.answers.push_back([](QPrinter &) { return true; });
    select(rtb, 6, 30);
    editor->mnuStampa_Click();
    EXPECT_EQ(pdfText(pdf).value_or(QString()), QStringLiteral("line of the text second line"));
}

TEST_F(EditorTools, PrinterMatchingTheCurrentNameIsTakenLastMatchWinsAndCancelRestores)
{
    FakePrinterSetup &printers = *app.printers;
    printers.printers = {QStringLiteral("Office"), QStringLiteral("office laser"), QStringLiteral("Home")};
    printers.current = QStringLiteral("Office");
    EXPECT_FALSE(editor->ScegliStampante(editor, printers.current, 64));
    EXPECT_EQ(printers.selected.join(u','), QStringLiteral("Office,office laser,Office"));
}

TEST_F(EditorTools, OpenFromTheToolbarWritesItsFolderToTheSettingsAtOnce)
{
    app.folder.write(QStringLiteral("docs/a.rtf"), "{\\rtf1\\ansi text\\par}");
    app.dialogs->answerFile(app.folder.file(QStringLiteral("docs/a.rtf")));
    QTest::mouseClick(editor->Label2[1], Qt::LeftButton);
    EXPECT_EQ(app.folder.settingsLines().value(6), app.folder.file(QStringLiteral("docs")));
}
