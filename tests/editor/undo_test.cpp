// Undo and redo in the editor: the documented cases through real typing.
// The history's equivalence with its model is in undo_history_test.

#include "EditorTestSupport.h"

namespace {

struct Selection { QString text; qint32 start; qint32 length; bool operator==(const Selection &) const = default; };

std::ostream &operator<<(std::ostream &out, const Selection &s)
{
    return out << '"' << s.text.toStdString() << "\" " << s.start << '+' << s.length;
}

Selection state(const RichTextBox *rtb)
{
    return {rtb->Text(), rtb->SelStart(), rtb->SelLength()};
}

} // namespace

TEST(EditorUndo, TypedCharactersComeOutOneByOneWithTheCaretWhereTheyStood)
{
    TestApp app;
    startEditor(app);
    Form2 &editor = app.form2();
    RichTextBox *rtb = editor.RTB;
    EXPECT_EQ(app.ctx().undo().ListaUndo.size(), 1u);
    editor.mnuAnnulla_Click();
    EXPECT_EQ(app.ctx().TestoModificato, 1);

    typeText(rtb, QStringLiteral("abc"));
    EXPECT_EQ(app.ctx().undo().ListaUndo.size(), 4u);
    for (const Selection &want : {Selection{QStringLiteral("ab"), 2, 0}, Selection{QStringLiteral("a"), 1, 0},
                                  Selection{QString(), 0, 0}, Selection{QString(), 0, 0}}) {
        editor.mnuAnnulla_Click();
        EXPECT_EQ(state(rtb), want);
    }
    // Undo, then typing: the redo chain is gone.
    editor.mnuRipeti_Click();
    typeText(rtb, QStringLiteral("x"));
    editor.mnuRipeti_Click();
    EXPECT_EQ(state(rtb), (Selection{QStringLiteral("ax"), 2, 0}));
}

TEST(EditorUndo, DeletionsComeBackWordsSelectedCharactersAndLineEndsBehindTheCaret)
{
    TestApp app;
    startEditor(app);
    Form2 &editor = app.form2();
    RichTextBox *rtb = editor.RTB;
    typeText(rtb, QStringLiteral("one two\nthree"));
    ASSERT_EQ(rtb->Text(), QStringLiteral("one two\r\nthree"));

    rtb->setSelStart(4);
    rtb->setSelLength(3);
    QTest::keyClick(rtb, Qt::Key_Delete);
    editor.mnuAnnulla_Click();
    EXPECT_EQ(state(rtb), (Selection{QStringLiteral("one two\r\nthree"), 4, 3}));

    rtb->setSelStart(3);
    QTest::keyClick(rtb, Qt::Key_Backspace);
    editor.mnuAnnulla_Click();
    EXPECT_EQ(state(rtb), (Selection{QStringLiteral("one two\r\nthree"), 3, 0}));

    // The line break counts as CR LF: back, with the caret behind both.
    rtb->setSelStart(9);
    QTest::keyClick(rtb, Qt::Key_Backspace);
    EXPECT_EQ(rtb->Text(), QStringLiteral("one twothree"));
    editor.mnuAnnulla_Click();
    EXPECT_EQ(state(rtb), (Selection{QStringLiteral("one two\r\nthree"), 9, 0}));

    // Insertion in mid text, undone and redone.
    rtb->setSelStart(3);
    typeText(rtb, QStringLiteral("XY"));
    editor.mnuAnnulla_Click();
    editor.mnuAnnulla_Click();
    EXPECT_EQ(state(rtb), (Selection{QStringLiteral("one two\r\nthree"), 3, 0}));
    editor.mnuRipeti_Click();
    editor.mnuRipeti_Click();
    EXPECT_EQ(state(rtb), (Selection{QStringLiteral("oneXY two\r\nthree"), 5, 0}));
}

TEST(EditorUndo, NewIsARecordedChangeAndFormattingIsNot)
{
    TestApp app;
    startEditor(app);
    Form2 &editor = app.form2();
    RichTextBox *rtb = editor.RTB;
    typeText(rtb, QStringLiteral("abc"));
    rtb->setSelStart(0);
    rtb->setSelLength(3);
    editor.Label2_Click(4); // bold: no record
    EXPECT_EQ(app.ctx().undo().ListaUndo.size(), 4u);
    editor.mnuAnnulla_Click();
    EXPECT_EQ(rtb->Text(), QStringLiteral("ab"));
    rtb->setSelStart(0);
    rtb->setSelLength(2);
    EXPECT_EQ(rtb->SelBold(), std::optional<bool>(true));

    // New clears the text as an ordinary change: undo brings it back,
    // selected, into the new document.
    app.dialogs->msgBoxAnswers.push_back(MsgBox::No);
    editor.Label2_Click(0);
    EXPECT_EQ(rtb->Text(), QString());
    editor.mnuAnnulla_Click();
    EXPECT_EQ(state(rtb), (Selection{QStringLiteral("ab"), 0, 2}));
}
