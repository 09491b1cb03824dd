// Real key events in the editor's text: which reach the player, on press or
// on release, and which editing keys act only with Ctrl held at release.

#include "EditorTestSupport.h"

#include <QAction>
#include <QMenu>

namespace {

void sendKey(QWidget *w, QEvent::Type type, Qt::Key key, Qt::KeyboardModifiers mods, bool autoRepeat)
{
    QKeyEvent event(type, key, mods, QString(), autoRepeat);
    QApplication::sendEvent(w, &event);
}

} // namespace

using EditorKeys = EditorTest;

TEST_F(EditorKeys, EditingShortcutsActOnReleaseOnlyWithCtrlStillHeld)
{
    QTest::keyClicks(rtb, QStringLiteral("abc"));

    // Ctrl let go before Z: the release sees no Ctrl, nothing is undone,
    // and the press never reached the control's own undo.
    QTest::keyPress(rtb, Qt::Key_Z, Qt::ControlModifier);
    QTest::keyRelease(rtb, Qt::Key_Control, Qt::NoModifier);
    QTest::keyRelease(rtb, Qt::Key_Z, Qt::NoModifier);
    EXPECT_EQ(rtb->Text(), QStringLiteral("abc"));

    // Undo, redo, cut and paste, Ctrl held.
    const struct { qint32 start, length; Qt::Key key; const char *after; } keys[] = {
        {3, 0, Qt::Key_Z, "ab"}, {2, 0, Qt::Key_Y, "abc"}, {0, 1, Qt::Key_X, "bc"}, {2, 0, Qt::Key_V, "bca"}};
    for (const auto &k : keys) {
        select(rtb, k.start, k.length);
        QTest::keyClick(rtb, k.key, Qt::ControlModifier);
        EXPECT_EQ(rtb->Text(), QString::fromLatin1(k.after));
    }

    // Ctrl+I is italic on release; Shift+Insert and Ctrl+Shift+Z, the
    // control's own paste and redo, do nothing.
    select(rtb, 0, 3);
    QTest::keyClick(rtb, Qt::Key_I, Qt::ControlModifier);
    EXPECT_EQ(rtb->SelItalic(), std::optional<bool>(true));
    QTest::keyClick(rtb, Qt::Key_Insert, Qt::ShiftModifier);
    QTest::keyClick(rtb, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(rtb->Text(), QStringLiteral("bca"));
}

TEST_F(EditorKeys, SpeedKeysActOnPressTransportKeysOnceOnRelease)
{
    app.player->clearLog();

    // Ctrl+F6: slower at once, and the step back comes with the release.
    QTest::keyPress(rtb, Qt::Key_F6, Qt::ControlModifier);
    EXPECT_EQ(app.player->log, QStringList{QStringLiteral("rate 0.9")});
    QTest::keyRelease(rtb, Qt::Key_F6, Qt::ControlModifier);
    EXPECT_EQ(app.player->log.size(), 2);
    EXPECT_TRUE(app.player->log.last().startsWith(QStringLiteral("seek")));

    // F4 held: one step per repeat of the press; F3 with any modifier.
    app.player->clearLog();
    sendKey(rtb, QEvent::KeyPress, Qt::Key_F4, Qt::NoModifier, false);
    sendKey(rtb, QEvent::KeyPress, Qt::Key_F4, Qt::NoModifier, true);
    sendKey(rtb, QEvent::KeyRelease, Qt::Key_F4, Qt::NoModifier, false);
    QTest::keyClick(rtb, Qt::Key_F3, Qt::ShiftModifier);
    EXPECT_EQ(app.player->log, (QStringList{QStringLiteral("rate 1"), QStringLiteral("rate 1.1"),
                                             QStringLiteral("rate 1")}));

    // F5 held down: the repeats give nothing, the release one play.
    app.player->clearLog();
    sendKey(rtb, QEvent::KeyPress, Qt::Key_F5, Qt::NoModifier, false);
    for (int i = 0; i < 3; ++i) {
        sendKey(rtb, QEvent::KeyRelease, Qt::Key_F5, Qt::NoModifier, true);
        sendKey(rtb, QEvent::KeyPress, Qt::Key_F5, Qt::NoModifier, true);
    }
    EXPECT_EQ(app.player->log.count(QStringLiteral("play")), 0);
    sendKey(rtb, QEvent::KeyRelease, Qt::Key_F5, Qt::NoModifier, false);
    EXPECT_EQ(app.player->log.count(QStringLiteral("play")), 1);

    // F11 toggles the full path on release; F12 does nothing here.
    const bool fullPath = app.form1().mnuTitoloCompleto->isChecked();
    QTest::keyClick(rtb, Qt::Key_F11);
    EXPECT_NE(app.form1().mnuTitoloCompleto->isChecked(), fullPath);
    const bool smart = app.form1().mnuSmartPlay->isChecked();
    QTest::keyClick(rtb, Qt::Key_F12);
    EXPECT_EQ(app.form1().mnuSmartPlay->isChecked(), smart);
    EXPECT_TRUE(rtb->Text().isEmpty());
}

TEST_F(EditorKeys, CtrlGroupNeedsCtrlAloneAndTheKeyNeverReachesTheText)
{
    // Ctrl+Shift+O and Ctrl+Shift+M match no row.
    QTest::keyClick(rtb, Qt::Key_O, Qt::ControlModifier | Qt::ShiftModifier);
    QTest::keyClick(rtb, Qt::Key_M, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_TRUE(app.dialogs->fileDialogs.isEmpty());
    // Ctrl+O opens the media dialog (cancelled by the fake).
    QTest::keyClick(rtb, Qt::Key_O, Qt::ControlModifier);
    ASSERT_EQ(app.dialogs->fileDialogs.size(), 1);
    EXPECT_TRUE(app.dialogs->fileDialogs.first().open);
    EXPECT_TRUE(rtb->Text().isEmpty());

    // Esc in the text does nothing; with no control holding the keyboard
    // the window's own handler quits.
    QTest::keyClick(rtb, Qt::Key_Escape);
    EXPECT_FALSE(app.ctx().processEnded());
    QTest::keyClick(&app.form2(), Qt::Key_Escape);
    EXPECT_TRUE(app.ctx().processEnded());
}

TEST(EditorKeyLetters, BoldAndUnderlineFollowTheLanguageFile)
{
    const struct { const char *file; Qt::Key bold; Qt::Key underline; Qt::Key other; } languages[] = {
        {"Italiano.LNG", Qt::Key_G, Qt::Key_S, Qt::Key_B},
        {"English.lng", Qt::Key_B, Qt::Key_U, Qt::Key_G},
    };
    for (const auto &language : languages) {
        TestApp app;
        startEditor(app, QString::fromLatin1(language.file));
        RichTextBox *rtb = app.form2().RTB;
        QTest::keyClicks(rtb, QStringLiteral("word"));
        select(rtb, 0, 4);
        QTest::keyClick(rtb, language.other, Qt::ControlModifier);
        EXPECT_EQ(rtb->SelBold(), std::optional<bool>(false)) << language.file;
        QTest::keyClick(rtb, language.bold, Qt::ControlModifier);
        EXPECT_EQ(rtb->SelBold(), std::optional<bool>(true)) << language.file;
        QTest::keyClick(rtb, language.underline, Qt::ControlModifier);
        EXPECT_EQ(rtb->SelUnderline(), std::optional<bool>(true)) << language.file;
        EXPECT_EQ(rtb->Text(), QStringLiteral("word")) << language.file;
    }
}

TEST_F(EditorKeys, RightButtonOpensTheEditMenuAtThePointer)
{
    QTest::mouseClick(rtb->viewport(), Qt::RightButton);
    EXPECT_TRUE(editor->mnuModifica->isVisible());
    editor->mnuModifica->hide();
}
