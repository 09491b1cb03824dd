// The rich-text control: units where a line end is CR LF, the change event
// once per edit, formats read as true, false or mixed, and search. Its files
// are tested through the editor's commands.

#include "EditorTestSupport.h"

#include <random>

TEST(RichTextBox, LineEndsCountAsTwoInTextAndPositions)
{
    RichTextBox rtb;
    rtb.setText(QStringLiteral("ab\r\ncd\nef\rg"));
    EXPECT_EQ(rtb.Text(), QStringLiteral("ab\r\ncd\r\nef\r\ng"));
    EXPECT_EQ(rtb.textLength(), 13);

    select(&rtb, 4, 4);
    EXPECT_EQ(rtb.SelText(), QStringLiteral("cd\r\n"));
    // A caret between CR and LF goes before the break; a negative start is
    // refused; a start past the end stops at the end.
    rtb.setSelStart(3);
    EXPECT_EQ(rtb.SelStart(), 2);
    rtb.setSelStart(-1);
    EXPECT_EQ(rtb.SelStart(), 2);
    rtb.setSelStart(99);
    EXPECT_EQ(rtb.SelStart(), 13);

    // Writing the selection leaves the caret behind the new text.
    select(&rtb, 2, 2);
    rtb.setSelText(QStringLiteral("X\r\nY"));
    EXPECT_EQ(rtb.Text(), QStringLiteral("abX\r\nYcd\r\nef\r\ng"));
    EXPECT_EQ(rtb.SelStart(), 6);

    // Any stretch read through the undo interface is the same stretch of Text.
    std::mt19937 rng(3);
    const QString text = rtb.Text();
    for (int i = 0; i < 300; ++i) {
        const int start = std::uniform_int_distribution<int>(0, int(text.size()))(rng);
        const int length = std::uniform_int_distribution<int>(0, 8)(rng);
        ASSERT_EQ(rtb.textMid(start, length), text.mid(start, length)) << start << '+' << length;
    }
}

TEST(RichTextBox, ChangeFiresOncePerEditForTheProgramsEditsTooButNotForFormats)
{
    RichTextBox rtb;
    int changes = 0;
    rtb.onChange = [&changes] { ++changes; };
    rtb.show();
    QTest::keyClicks(&rtb, QStringLiteral("abc"));
    EXPECT_EQ(changes, 3);

    // A key over a selection is a removal and an insertion: one Change.
    select(&rtb, 0, 2);
    QTest::keyClick(&rtb, Qt::Key_Z);
    EXPECT_EQ(changes, 4);
    EXPECT_EQ(rtb.Text(), QStringLiteral("zc"));

    select(&rtb, 0, 2);
    rtb.setSelBold(true);
    rtb.setSelAlignment(2);
    rtb.setSelBullet(true);
    EXPECT_EQ(changes, 4);

    rtb.setSelRTF(QStringLiteral("{\\rtf1\\ansi one\\par two}"));
    EXPECT_EQ(changes, 5);
    EXPECT_EQ(rtb.Text(), QStringLiteral("one\r\ntwo"));
    // Assigning the text always counts as a change.
    rtb.setText(QString());
    rtb.setText(QString());
    EXPECT_EQ(changes, 7);
    // Shift+Enter makes an ordinary paragraph break.
    QTest::keyClick(&rtb, Qt::Key_Return, Qt::ShiftModifier);
    EXPECT_EQ(rtb.Text(), QStringLiteral("\r\n"));
}

// The other formats read mixed through the toolbar's tests.
TEST(RichTextBox, FontNameReadsMixedAndSizesApplyAtTheCaret)
{
    RichTextBox rtb;
    rtb.setText(QStringLiteral("plain bold"));
    select(&rtb, 6, 4);
    rtb.setSelFontName(QStringLiteral("Courier New"));
    select(&rtb, 0, 10);
    EXPECT_EQ(rtb.SelFontName(), std::nullopt);
    rtb.setSelStart(2);
    EXPECT_EQ(rtb.SelFontName(), std::optional<QString>(QStringLiteral("Arial")));
    EXPECT_EQ(rtb.SelFontSize(), std::optional<double>(12));

    rtb.setSelFontSize(13);
    rtb.setSelFontSize(0); // refused
    EXPECT_EQ(rtb.SelFontSize(), std::optional<double>(13));

    // Search without highlight leaves the selection (whole word and case are
    // the find window's tests).
    rtb.setText(QStringLiteral("café\r\nline {\\b no}"));
    rtb.setSelStart(0);
    EXPECT_EQ(rtb.Find(QStringLiteral("no"), -1, 8), 15);
    EXPECT_EQ(rtb.SelStart(), 0);
}
