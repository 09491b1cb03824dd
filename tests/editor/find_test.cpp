// Find and replace: the states held in the buttons' captions, the options
// word, the line-break rule, Replace All and the boxes' history.

#include "EditorTestSupport.h"

#include "editor/FindWindow.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QMimeData>
#include <QAbstractTextDocumentLayout>
#include <QPushButton>
#include <QTextBlock>

namespace {

const QString CrLf = QStringLiteral("\r\n");

// The editor with `text`, a selection, and the find window opened by its
// key (Ctrl+F, or Ctrl+H for Replace).
frmFind &openFind(TestApp &app, const QString &text, qint32 selStart, qint32 selLength, bool replace)
{
    Form2 &editor = app.form2();
    editor.RTB->setText(text);
    editor.RTB->setSelStart(selStart);
    editor.RTB->setSelLength(selLength);
    QTest::keyClick(editor.RTB, replace ? Qt::Key_H : Qt::Key_F, Qt::ControlModifier);
    frmFind *window = editor.existingFrmFind();
    EXPECT_NE(window, nullptr);
    return *window;
}

void click(QPushButton *button)
{
    QTest::mouseClick(button, Qt::LeftButton);
}

QStringList history(const QComboBox *box)
{
    QStringList items;
    for (int i = 0; i < box->count(); ++i)
        items.append(box->itemText(i));
    return items;
}

} // namespace

TEST(FindWindow, FindCaptionCarriesTheSearchToTheEndAndBackToTheTop)
{
    TestApp app;
    startEditor(app);
    RichTextBox &rtb = *app.form2().RTB;
    frmFind &find = openFind(app, QStringLiteral("one two one two"), 4, 4, false);
    // The selection, trimmed, is the search text; Find hides the replace part.
    EXPECT_EQ(find.cboFind->currentText(), QStringLiteral("two"));
    EXPECT_EQ(find.windowTitle(), QStringLiteral("T56..."));
    EXPECT_FALSE(find.cmdReplaceAll->isVisibleTo(&find));

    struct Press
    {
        qint32 selStart; // -1: no hit, a message
        const char *caption;
    };
    // From the top, next, the end with its message, then the top again.
    const Press presses[] = {{4, "T57"}, {12, "T57"}, {-1, "&T56"}, {4, "T57"}};
    for (const Press &p : presses) {
        const auto messagesBefore = app.dialogs->messages.size();
        click(find.cmdFind);
        EXPECT_EQ(find.cmdFind->text(), QString::fromLatin1(p.caption));
        if (p.selStart >= 0) {
            EXPECT_EQ(rtb.SelStart(), p.selStart);
            EXPECT_EQ(rtb.SelText(), QStringLiteral("two"));
        } else {
            ASSERT_EQ(app.dialogs->messages.size(), messagesBefore + 1);
            EXPECT_EQ(app.dialogs->messages.last().text, QStringLiteral("T66"));
            EXPECT_EQ(app.dialogs->messages.last().style, int(MsgBox::Information));
        }
    }
    // Choosing from the list sends the caret to the top but keeps the
    // continuing state, so the next press searches from the top.
    find.cboFind->setEditText(QStringLiteral("one"));
    find.cboFind->activated(0);
    EXPECT_EQ(rtb.SelStart(), 0);
    click(find.cmdFind);
    EXPECT_EQ(rtb.SelStart(), 0);
    EXPECT_EQ(rtb.SelText(), QStringLiteral("one"));

    // A word that isn't there: message 65 from the top.
    find.cboFind->setEditText(QStringLiteral("three"));
    find.cmdFind->setText(QStringLiteral("&T56"));
    click(find.cmdFind);
    EXPECT_EQ(app.dialogs->messages.last().text, QStringLiteral("T65"));
}

TEST(FindWindow, ReplaceIsArmedBySecondPressAndLooksAheadWithDoubledOptions)
{
    struct Case
    {
        bool wholeWord;
        bool matchCase;
        const char *text;
        const char *afterSecondPress;
        qint32 selLengthAfter; // the look-ahead selects, or doesn't
    };
    // Whole word: the look-ahead is a case-sensitive search of any
    // occurrence ("cats" is found). Match case: it doesn't select.
    const Case cases[] = {
        {true, false, "Cat cats cat", "dog cats cat", 3},
        {false, true, "cat Cat cat", "dog Cat cat", 0},
    };
    for (const Case &c : cases) {
        TestApp app;
        startEditor(app);
        RichTextBox &rtb = *app.form2().RTB;
        frmFind &find = openFind(app, QString::fromLatin1(c.text), 0, 0, true);
        EXPECT_EQ(find.windowTitle(), QStringLiteral("T59..."));
        find.cboFind->setEditText(QStringLiteral("cat"));
        find.cboReplace->setEditText(QStringLiteral("dog"));
        find.chkWholeWord->setChecked(c.wholeWord);
        find.chkMatchCase->setChecked(c.matchCase);

        click(find.cmdReplace); // finds and arms only
        EXPECT_EQ(rtb.Text(), QString::fromLatin1(c.text));
        EXPECT_EQ(rtb.SelLength(), 3);
        EXPECT_EQ(find.cmdReplace->text(), QStringLiteral("T59"));
        click(find.cmdReplace);
        EXPECT_EQ(rtb.Text(), QString::fromLatin1(c.afterSecondPress));
        EXPECT_EQ(rtb.SelLength(), c.selLengthAfter);
        if (c.selLengthAfter > 0)
            EXPECT_EQ(rtb.SelStart(), 4);
        EXPECT_EQ(find.cmdReplace->text(), QStringLiteral("T59"));
    }
}

TEST(FindWindow, ASelectionOfTwoLinesSearchesItsFirstLineAndTheFirstReplacementPutsTheBreakBack)
{
    TestApp app;
    startEditor(app);
    RichTextBox &rtb = *app.form2().RTB;
    frmFind &find = openFind(app, QStringLiteral("alpha") + CrLf + QStringLiteral("beta alpha"), 0, 11, true);
    EXPECT_EQ(find.cboFind->currentText(), QStringLiteral("alpha"));
    EXPECT_EQ(history(find.cboFind), QStringList{QStringLiteral("alpha")});
    EXPECT_TRUE(find.TagliatoCrLf);
    find.cboReplace->setEditText(QStringLiteral("omega"));
    rtb.setSelStart(0);
    click(find.cmdReplace);
    click(find.cmdReplace);
    click(find.cmdReplace);
    EXPECT_EQ(rtb.Text(), QStringLiteral("omega") + CrLf + CrLf + QStringLiteral("beta omega"));
    EXPECT_FALSE(find.TagliatoCrLf);
    // No hit left: the message of entry 65 at every press.
    click(find.cmdReplace);
    EXPECT_EQ(app.dialogs->messages.last().text, QStringLiteral("T65"));
}

TEST(FindWindow, ReplaceAllRunsFromTheCaretAndReportsItsCount)
{
    struct Case
    {
        const char *text;
        qint32 selStart, selLength;
        const char *find, *with;
        const char *result;
        qint32 count;
    };
    const Case cases[] = {
        {"cat cat cat", 4, 0, "cat", "dog", "cat dog dog", 2},     // before the caret: untouched
        {"xyz abc", 0, 3, "cat", "dog", "dog abc", 1},             // a failed search leaves the selection
        {"Cat CAT", 0, 0, " cat ", "dog", "dog dog", 2},           // trimmed, case ignored
        {"cat cat", 0, 0, "cat", "cats", "cats cats", 2},          // no loop on its own result
        {"cat cat", 3, 0, "", "dog", "cat cat", 0},                // empty: nothing
        {"a" "\r\n" "cat" "\r\n" "cat", 0, 0, "cat", "", "a" "\r\n" "\r\n", 2},
    };
    for (const Case &c : cases) {
        TestApp app;
        startEditor(app);
        RichTextBox &rtb = *app.form2().RTB;
        frmFind &find = openFind(app, QString::fromLatin1(c.text), c.selStart, c.selLength, true);
        find.cboFind->setEditText(QString::fromLatin1(c.find));
        find.cboReplace->setEditText(QString::fromLatin1(c.with));
        find.chkMatchCase->setChecked(true); // ignored by Replace All
        click(find.cmdReplaceAll);
        EXPECT_EQ(rtb.Text(), QString::fromLatin1(c.result)) << c.text;
        EXPECT_EQ(find.ContaSostituzioni, c.count) << c.text;
        // The text is laid out again once the run is over.
        EXPECT_GT(rtb.document()->documentLayout()->blockBoundingRect(rtb.document()->firstBlock()).height(), 0);
        ASSERT_FALSE(app.dialogs->messages.isEmpty());
        EXPECT_EQ(app.dialogs->messages.last().text, QStringLiteral("T67 \r\n%1 T68").arg(c.count));
        EXPECT_EQ(app.dialogs->messages.last().title, QStringLiteral("Quillmere"));
        // Hidden, still loaded.
        EXPECT_FALSE(find.isVisible());
        EXPECT_EQ(app.form2().existingFrmFind(), &find);
    }
}

TEST(FindWindow, HistoryDropsAndTheWindowsLifetime)
{
    TestApp app;
    startEditor(app);
    Form2 &editor = app.form2();
    frmFind &find = openFind(app, QStringLiteral("text"), 0, 0, false);
    // Exact duplicates (case counts) and blank texts are not added; the
    // order is that of the first use; there is no limit.
    for (const char *typed : {"b", "a", "b", "A", "  ", "c", "d", "e", "f", "g", "h", "i", "j", "k"}) {
        find.cboFind->setEditText(QString::fromLatin1(typed));
        click(find.cmdFind);
    }
    EXPECT_EQ(history(find.cboFind).join(u','), QStringLiteral("b,a,A,c,d,e,f,g,h,i,j,k"));

    // Dropped text: cut at its line break, trimmed, into both histories.
    QMimeData data;
    data.setText(QStringLiteral(" dropped \nmore"));
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(find.cboFind->lineEdit(), &enter);
    QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(find.cboFind->lineEdit(), &drop);
    EXPECT_EQ(find.cboFind->currentText(), QStringLiteral("dropped"));
    EXPECT_TRUE(find.TagliatoCrLf);
    EXPECT_EQ(history(find.cboFind).last(), QStringLiteral("dropped"));

    // Replace while loaded keeps the look of the first opening.
    editor.mnuSostituisci_Click();
    EXPECT_EQ(editor.existingFrmFind(), &find);
    EXPECT_FALSE(find.cmdReplace->isVisibleTo(&find));
    // Cancel unloads: the next opening is a fresh window in its own mode.
    click(find.cmdCancel);
    EXPECT_EQ(editor.existingFrmFind(), nullptr);
    editor.RTB->setSelStart(0);
    editor.mnuSostituisci_Click();
    ASSERT_NE(editor.existingFrmFind(), nullptr);
    EXPECT_TRUE(editor.existingFrmFind()->cmdReplace->isVisibleTo(editor.existingFrmFind()));
    EXPECT_EQ(editor.existingFrmFind()->cboFind->count(), 0);
    // The exit hides it at once and unloads it 100 ms later.
    editor.frmFindAtExit();
    EXPECT_FALSE(editor.existingFrmFind()->isVisible());
    app.advance(100);
    EXPECT_EQ(editor.existingFrmFind(), nullptr);
}
