// The clipboard in two forms, the time stamp, and what typing tells the
// player.

#include "EditorTestSupport.h"

#include <QAction>
#include <QClipboard>
#include <QMimeData>

namespace {

QString clipboardText()
{
    return QGuiApplication::clipboard()->text();
}

void bringToFront(QWidget &w)
{
    w.show();
    w.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&w));
}

} // namespace

TEST(EditorClipboard, CopyKeepsFormattingInsideAndGivesPlainTextOutside)
{
    TestApp app;
    startEditor(app);
    Form2 &editor = app.form2();
    RichTextBox *rtb = editor.RTB;
    typeText(rtb, QStringLiteral("hello world"));
    rtb->setSelStart(0);
    rtb->setSelLength(5);
    editor.Label2_Click(4);
    rtb->setSelStart(0);
    rtb->setSelLength(5);
    editor.mnuCopia_Click();
    EXPECT_TRUE(clipboardText().startsWith(QStringLiteral("{\\rtf")));

    // Another window in front: within one tick the plain form is there.
    QWidget other;
    bringToFront(other);
    app.advance(200);
    EXPECT_EQ(clipboardText(), QStringLiteral("hello"));
    EXPECT_FALSE(editor.ClipRtfOn);

    // Back in the editor: the RTF source again, and a paste brings the
    // formatting with it.
    bringToFront(editor);
    app.advance(200);
    EXPECT_TRUE(clipboardText().startsWith(QStringLiteral("{\\rtf")));
    rtb->setSelStart(rtb->textLength());
    editor.mnuIncolla_Click();
    EXPECT_EQ(rtb->Text(), QStringLiteral("hello worldhello"));
    rtb->setSelStart(11);
    rtb->setSelLength(5);
    EXPECT_EQ(rtb->SelBold(), std::optional<bool>(true));
}

TEST(EditorClipboard, TheSwapWipesForeignTextAndAnEmptyCopyPastesNothing)
{
    TestApp app;
    startEditor(app);
    Form2 &editor = app.form2();
    // Before any copy, the first tick with another window in front empties
    // the clipboard, as designed.
    QGuiApplication::clipboard()->setText(QStringLiteral("from elsewhere"));
    bringToFront(app.form1());
    app.advance(200);
    EXPECT_EQ(clipboardText(), QString());

    bringToFront(editor);
    typeText(editor.RTB, QStringLiteral("abc"));
    editor.mnuCopia_Click();
    EXPECT_TRUE(editor.clipRtf.startsWith(QStringLiteral("{\\rtf")));
    EXPECT_TRUE(editor.clipPlain.isEmpty());
    editor.mnuIncolla_Click();
    EXPECT_EQ(editor.RTB->Text(), QStringLiteral("abc"));
}

TEST(EditorClipboard, PasteTakesAnRtfFormFirstThenPlainText)
{
    TestApp app;
    startEditor(app);
    Form2 &editor = app.form2();
    auto *data = new QMimeData;
    data->setData(QStringLiteral("text/rtf"), QByteArrayLiteral("{\\rtf1\\ansi {\\b bold}}"));
    data->setText(QStringLiteral("ignored"));
    QGuiApplication::clipboard()->setMimeData(data);
    editor.mnuIncolla_Click();
    EXPECT_EQ(editor.RTB->Text(), QStringLiteral("bold"));

    QGuiApplication::clipboard()->setText(QStringLiteral(" one\ntwo"));
    editor.mnuIncolla_Click();
    EXPECT_EQ(editor.RTB->Text(), QStringLiteral("bold one\r\ntwo"));

    // Leaving the text for another control puts the selection on the
    // clipboard as plain text.
    editor.RTB->setSelStart(0);
    editor.RTB->setSelLength(4);
    editor.RTB->clearFocus();
    EXPECT_EQ(clipboardText(), QStringLiteral("bold"));
}

TEST(EditorClipboard, TimeStampPadsThePlayersPositionToEightCharacters)
{
    TestApp app;
    startEditor(app);
    Form2 &editor = app.form2();
    editor.mnuTimeStamp_Click();
    EXPECT_EQ(editor.RTB->Text(), QStringLiteral("[00:00:00] "));
    EXPECT_EQ(editor.RTB->SelStart(), 11);

    const struct { double at; const char *want; } cases[] = {{3723, "[01:02:03] "}, {65, "[00:01:05] "}, {360000, ""}};
    for (const auto &c : cases) {
        app.form1().ApriMedia(app.mediaFile(QStringLiteral("long.wav"), 400000));
        app.player->pause();
        app.player->setCurrentPosition(c.at);
        editor.RTB->setText(QString());
        editor.mnuTimeStamp_Click();
        EXPECT_EQ(editor.RTB->Text(), QString::fromLatin1(c.want)) << c.at;
    }
    EXPECT_TRUE(editor.mnuTimeStamp->isEnabled());
}

TEST(EditorClipboard, TypingArmsThePlayersWatchOnlyWhenTheOptionIsOn)
{
    TestApp app;
    startEditor(app);
    Form1 &player = app.form1();
    RichTextBox *rtb = app.form2().RTB;
    typeText(rtb, QStringLiteral("ab"));
    EXPECT_EQ(player.Timer6->interval(), 0);

    player.mnuNoPlayOnWrite->setChecked(true);
    typeText(rtb, QStringLiteral("c"));
    EXPECT_EQ(player.Timer6->interval(), 1300);
    // An undo changes the text too.
    player.Timer6->setInterval(0);
    app.form2().mnuAnnulla_Click();
    EXPECT_EQ(player.Timer6->interval(), 1300);
}
