// A Ctrl+click on a time stamp, or F2's command with the caret in one, moves
// the fake player there and leaves the text, its undo and its flag alone.

#include "TestApp.h"

#include "editor/Form2.h"
#include "editor/UndoHistory.h"
#include "player/Form1.h"
#include "remote/TimeStampLink.h"

#include <QAction>
#include <QTest>
#include <gtest/gtest.h>

namespace {

const QString Text = QStringLiteral("Intro [00:01:30] then [00:61:00] end");

struct Transcript
{
    TestApp app;
    std::unique_ptr<TimeStampLink> link;
    Transcript()
    {
        app.folder.setSettingsLine(5, QStringLiteral("0")); // no step back on pause
        EXPECT_TRUE(app.start());
        app.form1().ApriMedia(app.mediaFile(QStringLiteral("talk.wav"), 300));
        link = std::make_unique<TimeStampLink>(app.ctx());
        app.form2().show();
        rtb().setText(Text);
        rtb().setSelStart(0);
        app.ctx().TestoModificato = 0;
        app.advance(10000);
    }
    RichTextBox &rtb() { return *app.form2().RTB; }
    // A click in the middle of the character at `pos`.
    void click(int pos, Qt::KeyboardModifiers modifiers = Qt::ControlModifier)
    {
        QTextCursor c(rtb().document());
        c.setPosition(pos);
        const QRect r = rtb().cursorRect(c);
        QTest::mouseClick(rtb().viewport(), Qt::LeftButton, modifiers, r.center() + QPoint(3, 0));
    }
};

} // namespace

TEST(TimeStampLink, CtrlClickSeeksKeepingPlayOrPauseAndLeavesTheTextAlone)
{
    Transcript t;
    const size_t undoRecords = t.app.ctx().undo().ListaUndo.size();
    for (bool playing : {true, false}) {
        if (!playing) {
            t.app.form1().cmdPlay_Click(); // pause
            t.app.form1().WMP1.setCurrentPosition(10);
        }
        t.click(9);
        EXPECT_DOUBLE_EQ(t.app.player->currentPosition(), 90.0);
        EXPECT_EQ(t.app.player->playState(), playing ? PlayerControl::Playing : PlayerControl::Paused);
        EXPECT_TRUE(t.app.form1().Label2->Caption().startsWith(QStringLiteral("01:30 /")))
            << t.app.form1().Label2->Caption().toStdString();
    }
    EXPECT_EQ(t.rtb().Text(), Text);
    EXPECT_EQ(t.rtb().SelStart(), 0);
    EXPECT_EQ(t.app.ctx().TestoModificato, 0);
    EXPECT_EQ(t.app.ctx().undo().ListaUndo.size(), undoRecords);
    t.click(26); // [00:61:00] is not a time
    EXPECT_DOUBLE_EQ(t.app.player->currentPosition(), 90.0);
}

TEST(TimeStampLink, TheCommandGoesToTheStampAtTheCaretAndFollowsTheTimeStampCommand)
{
    Transcript t;
    QAction *command = t.link->command();
    t.rtb().setSelStart(12);
    command->trigger();
    EXPECT_DOUBLE_EQ(t.app.player->currentPosition(), 90.0);
    t.app.form1().mnuChiudi_Click();
    EXPECT_FALSE(command->isEnabled());
}
