// Undo and redo in the editor: the documented cases through real typing,
// and the compact history against full snapshots on the real control.

#include "EditorTestSupport.h"
#include "UndoReference.h"

#include "editor/UndoHistory.h"

#include <random>

namespace {

struct Selection
{
    QString text;
    qint32 start;
    qint32 length;
    bool operator==(const Selection &) const = default;
};

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

TEST(EditorUndo, CompactHistoryMatchesFullSnapshotsOnTheRealControl)
{
    RichTextBox compactBox;
    RichTextBox referenceBox;
    UndoHistory compact;
    FullSnapshotHistory reference;
    compactBox.onChange = [&] {
        if (compact.RegistraUndo)
            compact.capture(compactBox);
    };
    referenceBox.onChange = [&] {
        if (reference.RegistraUndo)
            reference.capture(referenceBox);
    };
    compact.RegistraUndo = reference.RegistraUndo = true;
    compact.capture(compactBox);
    reference.capture(referenceBox);

    std::mt19937 rng(7);
    auto pick = [&rng](int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng); };
    const QString pieces[] = {QStringLiteral("a"), QStringLiteral("\r\n"), QStringLiteral("word "),
                              QStringLiteral("\n"), QStringLiteral("zz")};
    for (int step = 0; step < 600; ++step) {
        const int length = compactBox.textLength();
        const int start = pick(0, length);
        const int selection = pick(0, std::min(6, length - start));
        const int action = pick(0, 9);
        for (RichTextBox *box : {&compactBox, &referenceBox}) {
            box->setSelStart(start);
            box->setSelLength(selection);
        }
        QString text;
        for (int i = pick(0, 3); i > 0; --i)
            text += pieces[pick(0, 4)];
        for (RichTextBox *box : {&compactBox, &referenceBox}) {
            switch (action) {
            case 0: case 1: case 2: box->setSelText(text); break;
            case 3: box->setSelText(QString(box->SelLength(), u'q')); break;
            case 4: box->setSelRTF(QStringLiteral("{\\rtf1\\ansi x\\par y}")); break;
            case 5: if (step % 40 == 0) box->setText(text); break;
            default: break;
            }
        }
        if (action >= 6 && action <= 7) {
            compact.EseguiUndo(compactBox);
            reference.EseguiUndo(referenceBox);
        } else if (action >= 8) {
            compact.EseguiRedo(compactBox);
            reference.EseguiRedo(referenceBox);
        }
        ASSERT_EQ(state(&compactBox), state(&referenceBox)) << "step " << step;
        ASSERT_EQ(compact.ListaUndo.size(), reference.ListaUndo.size()) << "step " << step;
        ASSERT_EQ(compact.lastText(), reference.ListaUndo.back().Text) << "step " << step;
    }
}
