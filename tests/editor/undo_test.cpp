// Undo and redo in the editor: the documented cases through real typing.
// The history's equivalence with its model is in undo_history_test.

#include "EditorTestSupport.h"

namespace {

QString state(const QString &text, qint32 start, qint32 length)
{
    return QStringLiteral("%1 %2+%3").arg(text).arg(start).arg(length);
}

// The text and the selection as "text start+length".
QString state(const RichTextBox *rtb)
{
    return state(rtb->Text(), rtb->SelStart(), rtb->SelLength());
}

} // namespace

using EditorUndo = EditorTest;

TEST_F(EditorUndo, TypedCharactersComeOutOneByOneWithTheCaretWhereTheyStood)
{
    EXPECT_EQ(app.ctx().undo().ListaUndo.size(), 1u);
    editor->mnuAnnulla_Click();
    EXPECT_EQ(app.ctx().TestoModificato, 1);

    QTest::keyClicks(rtb, QStringLiteral("abc"));
    EXPECT_EQ(app.ctx().undo().ListaUndo.size(), 4u);
    for (const char *want : {"ab 2+0", "a 1+0", " 0+0", " 0+0"}) {
        editor->mnuAnnulla_Click();
        EXPECT_EQ(state(rtb), QString::fromLatin1(want));
    }
    // Undo, then typing: the redo chain is gone.
    editor->mnuRipeti_Click();
    QTest::keyClicks(rtb, QStringLiteral("x"));
    editor->mnuRipeti_Click();
    EXPECT_EQ(state(rtb), QStringLiteral("ax 2+0"));
}

TEST_F(EditorUndo, DeletionsComeBackWordsSelectedCharactersAndLineEndsBehindTheCaret)
{
    QTest::keyClicks(rtb, QStringLiteral("one two"));
    QTest::keyClick(rtb, Qt::Key_Return);
    QTest::keyClicks(rtb, QStringLiteral("three"));
    ASSERT_EQ(rtb->Text(), QStringLiteral("one two\r\nthree"));

    // A selected word, a character, and the line break, which counts as CR
    // LF: each comes back as it was selected, the caret behind it.
    const QString text = rtb->Text();
    const struct { qint32 start, length; Qt::Key key; const char *after; } deletions[] = {
        {4, 3, Qt::Key_Delete, "one \r\nthree"}, {3, 0, Qt::Key_Backspace, "on two\r\nthree"},
        {9, 0, Qt::Key_Backspace, "one twothree"}};
    for (const auto &d : deletions) {
        select(rtb, d.start, d.length);
        QTest::keyClick(rtb, d.key);
        EXPECT_EQ(rtb->Text(), QString::fromLatin1(d.after));
        editor->mnuAnnulla_Click();
        EXPECT_EQ(state(rtb), state(text, d.start, d.length)) << d.after;
    }

    // Insertion in mid text, undone and redone.
    rtb->setSelStart(3);
    QTest::keyClicks(rtb, QStringLiteral("XY"));
    editor->mnuAnnulla_Click();
    editor->mnuAnnulla_Click();
    EXPECT_EQ(state(rtb), state(text, 3, 0));
    editor->mnuRipeti_Click();
    editor->mnuRipeti_Click();
    EXPECT_EQ(state(rtb), QStringLiteral("oneXY two\r\nthree 5+0"));
}

TEST_F(EditorUndo, NewIsARecordedChangeAndFormattingIsNot)
{
    QTest::keyClicks(rtb, QStringLiteral("abc"));
    select(rtb, 0, 3);
    editor->Label2_Click(4); // bold: no record
    EXPECT_EQ(app.ctx().undo().ListaUndo.size(), 4u);
    editor->mnuAnnulla_Click();
    EXPECT_EQ(rtb->Text(), QStringLiteral("ab"));
    select(rtb, 0, 2);
    EXPECT_EQ(rtb->SelBold(), std::optional<bool>(true));

    // New clears the text as an ordinary change: undo brings it back,
    // selected, into the new document.
    app.dialogs->msgBoxAnswers.push_back(MsgBox::No);
    editor->Label2_Click(0);
    EXPECT_EQ(rtb->Text(), QString());
    editor->mnuAnnulla_Click();
    EXPECT_EQ(state(rtb), QStringLiteral("ab 0+2"));
}
