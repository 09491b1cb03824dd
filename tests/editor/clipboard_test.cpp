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

using EditorClipboard = EditorTest;

TEST_F(EditorClipboard, CopyKeepsFormattingInsideAndGivesPlainTextOutside)
{
    QTest::keyClicks(rtb, QStringLiteral("hello world"));
    select(rtb, 0, 5);
    editor->Label2_Click(4);
    select(rtb, 0, 5);
    editor->mnuCopia_Click();
    EXPECT_TRUE(clipboardText().startsWith(QStringLiteral("{\\rtf")));

    // Another window in front: within one tick the plain form is there.
    QWidget other;
    bringToFront(other);
    app.advance(200);
    EXPECT_EQ(clipboardText(), QStringLiteral("hello"));
    EXPECT_FALSE(editor->ClipRtfOn);

    // Back in the editor: the RTF source again, and a paste brings the
    // formatting with it.
    bringToFront(*editor);
    app.advance(200);
    EXPECT_TRUE(clipboardText().startsWith(QStringLiteral("{\\rtf")));
    rtb->setSelStart(rtb->textLength());
    editor->mnuIncolla_Click();
    EXPECT_EQ(rtb->Text(), QStringLiteral("hello worldhello"));
    select(rtb, 11, 5);
    EXPECT_EQ(rtb->SelBold(), std::optional<bool>(true));
}

TEST_F(EditorClipboard, TheSwapWipesForeignTextAndAnEmptyCopyPastesNothing)
{
    // Before any copy, the first tick with another window in front empties
    // the clipboard, as designed.
    QGuiApplication::clipboard()->setText(QStringLiteral("from elsewhere"));
    bringToFront(app.form1());
    app.advance(200);
    EXPECT_EQ(clipboardText(), QString());

    bringToFront(*editor);
    QTest::keyClicks(rtb, QStringLiteral("abc"));
    editor->mnuCopia_Click();
    EXPECT_TRUE(editor->clipRtf.startsWith(QStringLiteral("{\\rtf")));
    EXPECT_TRUE(editor->clipPlain.isEmpty());
    editor->mnuIncolla_Click();
    EXPECT_EQ(rtb->Text(), QStringLiteral("abc"));
}

TEST_F(EditorClipboard, PasteTakesAnRtfFormFirstThenPlainText)
{
    auto *data = new QMimeData;
    data->setData(QStringLiteral("text/rtf"), QByteArrayLiteral("{\\rtf1\\ansi {\\b bold}}"));
    data->setText(QStringLiteral("ignored"));
    QGuiApplication::clipboard()->setMimeData(data);
    editor->mnuIncolla_Click();
    EXPECT_EQ(rtb->Text(), QStringLiteral("bold"));

    QGuiApplication::clipboard()->setText(QStringLiteral(" one\ntwo"));
    editor->mnuIncolla_Click();
    EXPECT_EQ(rtb->Text(), QStringLiteral("bold one\r\ntwo"));

    // Leaving the text for another control puts the selection on the
    // clipboard as plain text; an RTF form already there stays.
    auto *rtfOnly = new QMimeData;
    rtfOnly->setData(QStringLiteral("text/rtf"), QByteArrayLiteral("{\\rtf1 kept}"));
    QGuiApplication::clipboard()->setMimeData(rtfOnly);
    select(rtb, 0, 4);
    rtb->clearFocus();
    EXPECT_EQ(clipboardText(), QStringLiteral("bold"));
    EXPECT_EQ(QGuiApplication::clipboard()->mimeData()->data(QStringLiteral("text/rtf")),
              QByteArrayLiteral("{\\rtf1 kept}"));
}

TEST_F(EditorClipboard, TimeStampPadsThePlayersPositionToEightCharacters)
{
    const struct { double at; const char *want; } cases[] = {
        {-1, "[00:00:00] "}, {3723, "[01:02:03] "}, {65, "[00:01:05] "}, {360000, ""}};
    for (const auto &c : cases) {
        if (c.at >= 0) { // else no media loaded
            app.form1().ApriMedia(app.mediaFile(QStringLiteral("long.wav"), 400000));
            app.player->pause();
            app.player->setCurrentPosition(c.at);
        }
        rtb->setText(QString());
        editor->mnuTimeStamp_Click();
        EXPECT_EQ(rtb->Text(), QString::fromLatin1(c.want)) << c.at;
        EXPECT_EQ(rtb->SelStart(), rtb->textLength()) << c.at;
    }
}

TEST_F(EditorClipboard, TypingArmsThePlayersWatchOnlyWhenTheOptionIsOn)
{
    Form1 &player = app.form1();
    QTest::keyClicks(rtb, QStringLiteral("ab"));
    EXPECT_EQ(player.Timer6->interval(), 0);

    player.mnuNoPlayOnWrite->setChecked(true);
    QTest::keyClicks(rtb, QStringLiteral("c"));
    EXPECT_EQ(player.Timer6->interval(), 1300);
    // An undo changes the text too.
    player.Timer6->setInterval(0);
    editor->mnuAnnulla_Click();
    EXPECT_EQ(player.Timer6->interval(), 1300);
}
