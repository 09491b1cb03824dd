// The toolbar's formatting buttons and font boxes, the hover mark, the
// colour dialog and printing.

#include "EditorTestSupport.h"

#include "editor/ShowColor.h"

#include <QComboBox>
#include <QFontDatabase>
#include <QFrame>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPrinter>
#include <QProcess>
#include <QStandardPaths>
#include <QTextBlock>
#include <functional>

namespace {

using Check = std::function<QString(const RichTextBox &)>;

QString flag(std::optional<bool> v)
{
    return v ? (*v ? QStringLiteral("true") : QStringLiteral("false")) : QStringLiteral("mixed");
}

QString alignment(const RichTextBox &rtb)
{
    const Qt::Alignment a = rtb.textCursor().blockFormat().alignment();
    return a & Qt::AlignHCenter ? QStringLiteral("centre") : a & Qt::AlignRight ? QStringLiteral("right") : QStringLiteral("left");
}

QString size(const RichTextBox &rtb)
{
    const auto s = rtb.SelFontSize();
    return s ? QString::number(*s) : QStringLiteral("mixed");
}

// The text of a PDF, or a reason to skip.
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

TEST(EditorToolbar, EachFormatButtonActsOnTheSelectionAndSurvivesAnRtfRoundTrip)
{
    struct Case
    {
        int index;
        Check read;
        const char *want;
    };
    const Case cases[] = {
        {4, [](const RichTextBox &r) { return flag(r.SelBold()); }, "true"},
        {5, [](const RichTextBox &r) { return flag(r.SelItalic()); }, "true"},
        {6, [](const RichTextBox &r) { return flag(r.SelUnderline()); }, "true"},
        {7, [](const RichTextBox &r) { return flag(r.SelStrikeThru()); }, "true"},
        {8, alignment, "left"},
        {9, alignment, "centre"},
        {10, alignment, "right"},
        {11, size, "13"},
        {12, size, "11"},
        {14, [](const RichTextBox &r) { return flag(r.SelBullet()); }, "true"},
        {17, [](const RichTextBox &r) { return flag(r.SelBold()); }, "false"}, // no such button
    };
    TestApp app;
    startEditor(app);
    Form2 &editor = app.form2();
    RichTextBox &rtb = *editor.RTB;
    const QString file = app.folder.file(QStringLiteral("round.rtf"));
    for (const Case &c : cases) {
        rtb.setText(QStringLiteral("plain words here"));
        if (c.index == 10) // right-aligned only after something else was
            editor.Label2_Click(9);
        rtb.setSelStart(6);
        rtb.setSelLength(5);
        if (c.index < 17)
            QTest::mouseClick(editor.Label2[size_t(c.index)], Qt::LeftButton);
        else
            editor.Label2_Click(c.index);
        EXPECT_EQ(c.read(rtb), QString::fromLatin1(c.want)) << c.index;
        ASSERT_TRUE(rtb.SaveFile(file));
        ASSERT_TRUE(rtb.LoadFile(file));
        rtb.setSelStart(6);
        rtb.setSelLength(5);
        EXPECT_EQ(c.read(rtb), QString::fromLatin1(c.want)) << c.index << " after RTF";
    }

    // Part bold, part not: all bold, then a second press clears it.
    rtb.setText(QStringLiteral("plain words"));
    rtb.setSelStart(0);
    rtb.setSelLength(5);
    editor.Label2_Click(4);
    rtb.setSelLength(11);
    EXPECT_EQ(flag(rtb.SelBold()), QStringLiteral("mixed"));
    editor.Label2_Click(4);
    EXPECT_EQ(flag(rtb.SelBold()), QStringLiteral("true"));
    editor.Label2_Click(4);
    EXPECT_EQ(flag(rtb.SelBold()), QStringLiteral("false"));
}

TEST(EditorToolbar, FontBoxesApplyToTheSelectionOnlyWhenTheirTextIsValid)
{
    TestApp app;
    startEditor(app);
    Form2 &editor = app.form2();
    RichTextBox &rtb = *editor.RTB;
    QStringList sizes;
    for (int i = 0; i < editor.Combo2->count(); ++i)
        sizes.append(editor.Combo2->itemText(i));
    EXPECT_EQ(sizes.join(u' '), QStringLiteral("5 6 7 8 9 10 11 12 13 14 15 16 18 20 22 24 26 28 36 48 72"));
    EXPECT_EQ(editor.Combo2->currentText(), QStringLiteral("12"));
    EXPECT_EQ(editor.Combo1->currentText(), QStringLiteral("Arial"));
    const QStringList fonts = QFontDatabase::families();
    EXPECT_EQ(editor.Combo1->count(), std::max<int>(0, int(fonts.size()) - 1));

    rtb.setText(QStringLiteral("some text"));
    rtb.selectAll();
    // Each keystroke applies at once; what isn't a size above 0 does nothing.
    struct Typed
    {
        bool fresh; // the box's text is replaced, else typed behind
        const char *keys;
        const char *size;
    };
    const Typed typed[] = {
        {true, "1", "1"}, {false, "3", "13"}, {true, "abc", "13"}, {true, "0", "13"}, {true, "9.5", "9.5"},
    };
    for (const Typed &t : typed) {
        if (t.fresh)
            editor.Combo2->lineEdit()->selectAll();
        QTest::keyClicks(editor.Combo2->lineEdit(), QString::fromLatin1(t.keys));
        EXPECT_EQ(size(rtb), QString::fromLatin1(t.size)) << t.keys;
    }
    // The size step leaves the box as it is.
    editor.Label2_Click(11);
    EXPECT_EQ(size(rtb), QStringLiteral("10.5"));
    EXPECT_EQ(editor.Combo2->currentText(), QStringLiteral("9.5"));

    // A name of the list applies; a typed name that matches none doesn't.
    if (editor.Combo1->count() > 0) {
        const QString font = editor.Combo1->itemText(0);
        editor.Combo1->setEditText(QStringLiteral("No Such Font"));
        EXPECT_NE(rtb.SelFontName().value_or(QString()), QStringLiteral("No Such Font"));
        editor.Combo1->setCurrentIndex(0);
        editor.Combo1->activated(0);
        EXPECT_EQ(rtb.SelFontName().value_or(QString()), font);
    }
}

TEST(EditorToolbar, HoverMarkFollowsTheButtonsAndLeavesOnTheBareWindow)
{
    TestApp app;
    startEditor(app);
    Form2 &editor = app.form2();
    EXPECT_FALSE(editor.Shape1->isVisible());
    moveOver(editor.Label2[4]);
    EXPECT_TRUE(editor.Shape1->isVisible());
    EXPECT_EQ(editor.Shape1->geometry(), editor.Label2[4]->geometry());
    moveOver(editor.Label2[13]);
    EXPECT_EQ(editor.Shape1->geometry(), editor.Label2[13]->geometry());
    // Over a font box the mark stays; over the frame of the text it goes.
    moveOver(editor.Combo1);
    EXPECT_TRUE(editor.Shape1->isVisible());
    moveOver(editor.Label1);
    EXPECT_FALSE(editor.Shape1->isVisible());
    EXPECT_EQ(editor.Label2[3]->toolTip(), QStringLiteral("Print"));
    EXPECT_EQ(editor.Combo2->accessibleName(), QStringLiteral("Font size"));
}

TEST(EditorColour, ScriptedAnswerColoursTheSelectionAndCancelLeavesIt)
{
    TestApp app;
    startEditor(app);
    Form2 &editor = app.form2();
    RichTextBox &rtb = *editor.RTB;
    rtb.setText(QStringLiteral("colour me"));
    rtb.selectAll();
    app.dialogs->colorAnswers = {QColor(200, 20, 10), QColor()};
    QTest::mouseClick(editor.Label2[13], Qt::LeftButton);
    EXPECT_EQ(rtb.SelColor().value_or(QColor()).name(), QStringLiteral("#c8140a"));
    QTest::mouseClick(editor.Label2[13], Qt::LeftButton); // cancelled
    EXPECT_EQ(rtb.SelColor().value_or(QColor()).name(), QStringLiteral("#c8140a"));
    // Each dialog opens on black.
    EXPECT_EQ(app.dialogs->colorStarts, (QList<QColor>{QColor(0, 0, 0), QColor(0, 0, 0)}));

    // The class itself: the platform's colour order, cancel leaves it.
    ShowColor picker(*app.dialogs);
    app.dialogs->colorAnswers = {QColor(0x11, 0x22, 0x33), QColor()};
    picker.Show();
    EXPECT_EQ(picker.ColorAnnulla, 0);
    EXPECT_EQ(picker.RGBResult, 0x332211);
    picker.Show();
    EXPECT_EQ(picker.ColorAnnulla, -1);
    EXPECT_EQ(picker.RGBResult, 0x332211);
    EXPECT_EQ(app.dialogs->colorStarts.last(), QColor(0x11, 0x22, 0x33));
}

TEST(EditorPrint, PrintsTheSelectionOrTheWholeDocumentToAPdfFile)
{
    TestApp app;
    startEditor(app);
    Form2 &editor = app.form2();
    RichTextBox &rtb = *editor.RTB;
    rtb.setText(QStringLiteral("first line of the text\r\nsecond line here\r\nthird and last"));
    const QString pdf = app.folder.file(QStringLiteral("out.pdf"));
    FakePrinterSetup &printers = *app.printers;

    // Cancel: nothing printed.
    QTest::keyClick(rtb.viewport(), Qt::Key_P, Qt::ControlModifier);
    EXPECT_EQ(printers.dialogs, 1);
    EXPECT_FALSE(QFile::exists(pdf));

    // Confirmed with a PDF file chosen: the whole document, in order.
    printers.answers.push_back([pdf](QPrinter &p) {
        p.setOutputFormat(QPrinter::PdfFormat);
        p.setOutputFileName(pdf);
        return true;
    });
    editor.Label2_Click(3);
    const auto whole = pdfText(pdf);
    if (!whole)
        GTEST_SKIP() << "pdftotext (poppler-utils) is not installed";
    EXPECT_EQ(*whole, QStringLiteral("first line of the text second line here third and last"));

    // The choice outlives the command; with a selection only that prints.
    QFile::remove(pdf);
    printers.answers.push_back([](QPrinter &) { return true; });
    rtb.setSelStart(6);
    rtb.setSelLength(30);
    editor.mnuStampa_Click();
    EXPECT_EQ(pdfText(pdf).value_or(QString()), QStringLiteral("line of the text second line"));
}

TEST(EditorPrint, PrinterMatchingTheCurrentNameIsTakenLastMatchWinsAndCancelRestores)
{
    TestApp app;
    startEditor(app);
    Form2 &editor = app.form2();
    FakePrinterSetup &printers = *app.printers;
    printers.printers = {QStringLiteral("Office"), QStringLiteral("office laser"), QStringLiteral("Home")};
    printers.current = QStringLiteral("Office");
    EXPECT_FALSE(editor.ScegliStampante(&editor, printers.current, 64));
    EXPECT_EQ(printers.selected,
              (QStringList{QStringLiteral("Office"), QStringLiteral("office laser"), QStringLiteral("Office")}));
}

TEST(EditorToolbar, OpenFromTheToolbarWritesItsFolderToTheSettingsAtOnce)
{
    TestApp app;
    startEditor(app);
    app.folder.write(QStringLiteral("docs/a.rtf"), "{\\rtf1\\ansi text\\par}");
    app.dialogs->answerFile(app.folder.file(QStringLiteral("docs/a.rtf")));
    QTest::mouseClick(app.form2().Label2[1], Qt::LeftButton);
    EXPECT_EQ(app.folder.settingsLines().value(6), app.folder.file(QStringLiteral("docs")));
}
