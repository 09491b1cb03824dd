// Find and replace: the states held in the buttons' captions, the options
// word, the line-break rule, Replace All and the boxes' history.

#include "EditorTestSupport.h"

#include "editor/FindWindow.h"

#include <QAbstractTextDocumentLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QTextBlock>

namespace {

// The editor with `text`, a selection, and the find window opened by its
// key (Ctrl+F, or Ctrl+H for Replace).
frmFind &openFind(TestApp &app, const QString &text, qint32 selStart, qint32 selLength, bool replace)
{
    RichTextBox *rtb = app.form2().RTB;
    rtb->setText(text);
    select(rtb, selStart, selLength);
    QTest::keyClick(rtb, replace ? Qt::Key_H : Qt::Key_F, Qt::ControlModifier);
    return *app.form2().existingFrmFind();
}

// A press of a button, then what it left: the selection as start+length,
// the caption of cmdFind, and the message shown by this press if any.
QString press(TestApp &app, QPushButton *button)
{
    const auto before = app.dialogs->messages.size();
    QTest::mouseClick(button, Qt::LeftButton);
    const RichTextBox &rtb = *app.form2().RTB;
    const QString message = app.dialogs->messages.size() > before ? app.dialogs->messages.last().text : QString();
    return QStringLiteral("%1+%2 %3 %4").arg(rtb.SelStart()).arg(rtb.SelLength())
        .arg(app.form2().existingFrmFind()->cmdFind->text(), message).trimmed();
}

QString history(const QComboBox *box)
{
    QStringList items;
    for (int i = 0; i < box->count(); ++i)
        items.append(box->itemText(i));
    return items.join(u',');
}

} // namespace

using FindWindow = EditorTest;

TEST_F(FindWindow, FindCaptionCarriesTheSearchToTheEndAndBackToTheTop)
{
    frmFind &find = openFind(app, QStringLiteral("one two one two"), 4, 4, false);
    // The selection, trimmed, is the search text; Find hides the replace part.
    EXPECT_EQ(find.cboFind->currentText() + u' ' + find.windowTitle(), QStringLiteral("two T56..."));
    EXPECT_FALSE(find.cmdReplaceAll->isVisibleTo(&find));
    // From the top, next, the end with its message (no wrap), the top again.
    for (const char *want : {"4+3 T57", "12+3 T57", "12+3 &T56 T66", "4+3 T57"})
        EXPECT_EQ(press(app, find.cmdFind), QString::fromLatin1(want));
    EXPECT_EQ(app.dialogs->messages.last().style, int(MsgBox::Information));

    // Choosing from the list sends the caret to the top and keeps the
    // continuing state: the next press goes on from the top.
    find.cboFind->setEditText(QStringLiteral("one"));
    find.cboFind->activated(0);
    EXPECT_EQ(press(app, find.cmdFind), QStringLiteral("0+3 T57"));
    // A word that isn't there, from the top: message 65.
    find.cboFind->setEditText(QStringLiteral("three"));
    find.cmdFind->setText(QStringLiteral("&T56"));
    EXPECT_EQ(press(app, find.cmdFind), QStringLiteral("0+3 &T56 T65"));
}

TEST(FindReplace, ReplaceIsArmedBySecondPressAndLooksAheadWithDoubledOptions)
{
    struct Case { bool wholeWord, matchCase; const char *text, *afterSecondPress, *selection; };
    // Whole word: the look-ahead is a case-sensitive search of any
    // occurrence ("cats" is found). Match case: it doesn't select.
    const Case cases[] = {
        {true, false, "Cat cats cat", "dog cats cat", "4+3 &T56"},
        {false, true, "cat Cat cat", "dog Cat cat", "3+0 &T56"},
    };
    for (const Case &c : cases) {
        TestApp app;
        startEditor(app);
        frmFind &find = openFind(app, QString::fromLatin1(c.text), 0, 0, true);
        EXPECT_EQ(find.windowTitle(), QStringLiteral("T59..."));
        find.cboFind->setEditText(QStringLiteral("cat"));
        find.cboReplace->setEditText(QStringLiteral("dog"));
        find.chkWholeWord->setChecked(c.wholeWord);
        find.chkMatchCase->setChecked(c.matchCase);
        EXPECT_EQ(press(app, find.cmdReplace), QStringLiteral("0+3 &T56")); // finds, arms
        EXPECT_EQ(app.form2().RTB->Text() + u' ' + find.cmdReplace->text(), QString::fromLatin1(c.text) + QStringLiteral(" T59"));
        EXPECT_EQ(press(app, find.cmdReplace), QString::fromLatin1(c.selection));
        EXPECT_EQ(app.form2().RTB->Text(), QString::fromLatin1(c.afterSecondPress));
    }
}

TEST_F(FindWindow, ASelectionOfTwoLinesSearchesItsFirstLineAndTheFirstReplacementPutsTheBreakBack)
{
    frmFind &find = openFind(app, QStringLiteral("alpha\r\nbeta alpha"), 0, 11, true);
    EXPECT_EQ(history(find.cboFind), QStringLiteral("alpha"));
    EXPECT_TRUE(find.TagliatoCrLf);
    find.cboReplace->setEditText(QStringLiteral("omega"));
    rtb->setSelStart(0);
    for (int i = 0; i < 3; ++i)
        press(app, find.cmdReplace);
    EXPECT_EQ(rtb->Text(), QStringLiteral("omega\r\n\r\nbeta omega"));
    // No hit left: the message of entry 65 at every press.
    EXPECT_EQ(press(app, find.cmdReplace).section(u' ', -1), QStringLiteral("T65"));
}

TEST(FindReplace, ReplaceAllRunsFromTheCaretAndReportsItsCount)
{
    struct Case { const char *text; qint32 selStart, selLength; const char *find, *with, *result; qint32 count; };
    const Case cases[] = {
        {"cat cat cat", 4, 0, "cat", "dog", "cat dog dog", 2}, // before the caret: untouched
        {"xyz abc", 0, 3, "cat", "dog", "dog abc", 1},         // a failed search leaves the selection
        {"Cat CAT", 0, 0, " cat ", "dog", "dog dog", 2},       // trimmed, case ignored
        {"cat cat", 0, 0, "cat", "cats", "cats cats", 2},      // no loop on its own result
        {"cat cat", 3, 0, "", "dog", "cat cat", 0},            // empty: nothing
        {"a\r\ncat\r\ncat", 0, 0, "cat", "", "a\r\n\r\n", 2},
    };
    for (const Case &c : cases) {
        TestApp app;
        startEditor(app);
        RichTextBox &rtb = *app.form2().RTB;
        frmFind &find = openFind(app, QString::fromLatin1(c.text), c.selStart, c.selLength, true);
        find.cboFind->setEditText(QString::fromLatin1(c.find));
        find.cboReplace->setEditText(QString::fromLatin1(c.with));
        find.chkMatchCase->setChecked(true); // ignored by Replace All
        press(app, find.cmdReplaceAll);
        EXPECT_EQ(rtb.Text(), QString::fromLatin1(c.result)) << c.text;
        EXPECT_EQ(app.dialogs->messages.last().text, QStringLiteral("T67 \r\n%1 T68").arg(c.count));
        EXPECT_EQ(app.dialogs->messages.last().title, QStringLiteral("Quillmere"));
        // The text is laid out again once the run is over.
        EXPECT_GT(rtb.document()->documentLayout()->blockBoundingRect(rtb.document()->firstBlock()).height(), 0);
        // Hidden, still loaded.
        EXPECT_FALSE(find.isVisible());
        EXPECT_EQ(app.form2().existingFrmFind(), &find);
    }
}

TEST_F(FindWindow, HistoryDropsAndTheWindowsLifetime)
{
    frmFind &find = openFind(app, QStringLiteral("text"), 0, 0, false);
    // Exact duplicates (case counts) and blank texts are not added; the
    // order is that of the first use; there is no limit.
    for (const char *typed : {"b", "a", "b", "A", "  ", "c", "d", "e", "f", "g", "h", "i", "j", "k"}) {
        find.cboFind->setEditText(QString::fromLatin1(typed));
        press(app, find.cmdFind);
    }
    EXPECT_EQ(history(find.cboFind), QStringLiteral("b,a,A,c,d,e,f,g,h,i,j,k"));

    // Dropped text: cut at its line break, trimmed, into the history.
    QMimeData data;
    data.setText(QStringLiteral(" dropped \nmore"));
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(find.cboFind->lineEdit(), &enter);
    QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(find.cboFind->lineEdit(), &drop);
    EXPECT_EQ(find.cboFind->currentText(), QStringLiteral("dropped"));
    EXPECT_TRUE(find.TagliatoCrLf);
    EXPECT_TRUE(history(find.cboFind).endsWith(QStringLiteral(",k,dropped")));

    // Replace while loaded keeps the look of the first opening.
    editor->mnuSostituisci_Click();
    EXPECT_FALSE(find.cmdReplace->isVisibleTo(&find));
    // Cancel unloads: the next opening is a fresh window in its own mode.
    QTest::mouseClick(find.cmdCancel, Qt::LeftButton);
    EXPECT_EQ(editor->existingFrmFind(), nullptr);
    editor->RTB->setSelStart(0);
    editor->mnuSostituisci_Click();
    frmFind *again = editor->existingFrmFind();
    ASSERT_NE(again, nullptr);
    EXPECT_TRUE(again->cmdReplace->isVisibleTo(again));
    EXPECT_EQ(again->cboFind->count(), 0);
    // The exit hides it at once and unloads it 100 ms later.
    editor->frmFindAtExit();
    EXPECT_FALSE(again->isVisible());
    app.advance(100);
    EXPECT_EQ(editor->existingFrmFind(), nullptr);
}
