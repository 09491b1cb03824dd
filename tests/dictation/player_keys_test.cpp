// The keys of the player window, sent as real key events to the active
// window: every one reaches its menu command, F12 included (which the
// editor does not have).

#include "DictationApp.h"

#include <QTest>

using namespace dictation;

TEST(PlayerKeys, EachKeyOfTheTableRunsItsCommand)
{
    DictationApp d(Preset{.secSalto = 5, .secIndietro = 2, .tempoPlay = 4});
    d.open();
    d.app.form2().hide();
    QApplication::setActiveWindow(&d.f());
    d.f().activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&d.f()));
    d.app.advance(20000);
    const QString other = d.app.mediaFile(QStringLiteral("second.wav"), 60.0);

    struct Row
    {
        const char *name;
        int key;
        Qt::KeyboardModifiers modifiers;
        std::function<void()> check;
    };
    const Row rows[] = {
        {"F5 pauses with the step back", Qt::Key_F5, Qt::NoModifier,
         [&] {
             EXPECT_EQ(d.f().cmdPlay->Tag, d.play());
             EXPECT_DOUBLE_EQ(d.position(), 18.0);
         }},
        {"F7 jumps forward", Qt::Key_F7, Qt::NoModifier, [&] { EXPECT_DOUBLE_EQ(d.position(), 23.0); }},
        {"F6 jumps back", Qt::Key_F6, Qt::NoModifier, [&] { EXPECT_DOUBLE_EQ(d.position(), 18.0); }},
        {"F4 is faster", Qt::Key_F4, Qt::NoModifier, [&] { EXPECT_NEAR(d.player().rate(), 1.1, 1e-9); }},
        {"F3 is slower", Qt::Key_F3, Qt::NoModifier, [&] { EXPECT_NEAR(d.player().rate(), 1.0, 1e-9); }},
        {"F11 shows the full path", Qt::Key_F11, Qt::NoModifier,
         [&] {
             EXPECT_TRUE(d.f().mnuTitoloCompleto->isChecked());
             EXPECT_EQ(d.settingsLine(6), QStringLiteral("1"));
         }},
        {"F12 switches smart play on, with its explanation", Qt::Key_F12, Qt::NoModifier,
         [&] {
             EXPECT_TRUE(d.f().mnuSmartPlay->isChecked());
             ASSERT_EQ(d.app.dialogs->messages.size(), 1);
             EXPECT_EQ(d.app.dialogs->messages[0].style, 64);
             EXPECT_EQ(d.player().playState(), PlayerControl::Paused);
         }},
        {"F5 plays and arms the cycle", Qt::Key_F5, Qt::NoModifier,
         [&] {
             EXPECT_EQ(d.player().playState(), PlayerControl::Playing);
             EXPECT_EQ(d.f().Timer5->interval(), 4000);
         }},
        {"F12 switches smart play off again, pausing", Qt::Key_F12, Qt::NoModifier,
         [&] {
             EXPECT_FALSE(d.f().mnuSmartPlay->isChecked());
             EXPECT_EQ(d.player().playState(), PlayerControl::Paused);
             EXPECT_EQ(d.app.dialogs->messages.size(), 1);
         }},
        {"Ctrl+O asks for a file and opens it", Qt::Key_O, Qt::ControlModifier,
         [&] {
             ASSERT_EQ(d.app.dialogs->fileDialogs.size(), 1);
             EXPECT_TRUE(d.app.dialogs->fileDialogs[0].open);
             EXPECT_EQ(d.player().URL(), other);
             EXPECT_EQ(d.player().playState(), PlayerControl::Playing);
         }},
    };
    d.app.dialogs->answerFile(other);
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        QTest::keyClick(&d.f(), Qt::Key(row.key), row.modifiers);
        row.check();
    }
}

// With the editor shown, a transport key pressed in the player gives the
// keyboard to the text at once; its release then goes to the text. The key
// still acts once: F5 pauses and stays paused, F7 jumps once.
TEST(PlayerKeys, WithTheEditorShownAKeyOfThePlayerActsOnce)
{
    DictationApp d(Preset{.secSalto = 5, .secIndietro = 2});
    d.open();
    d.app.form2().show();
    d.app.advance(20000);
    const struct
    {
        Qt::Key key;
        double position;
    } rows[] = {{Qt::Key_F5, 18.0}, {Qt::Key_F7, 23.0}};
    for (const auto &row : rows) {
        SCOPED_TRACE(QKeySequence(row.key).toString().toStdString());
        d.f().show();
        QApplication::setActiveWindow(&d.f());
        d.f().activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&d.f()));
        QTest::keyPress(&d.f(), row.key);
        // The release goes where the keyboard is by then: the text.
        ASSERT_TRUE(QTest::qWaitFor([&] { return QApplication::focusWidget() == d.app.form2().RTB; }, 1000));
        QTest::keyRelease(QApplication::focusWidget(), row.key);
        EXPECT_EQ(d.f().cmdPlay->Tag, d.play());
        EXPECT_DOUBLE_EQ(d.position(), row.position);
    }
}
