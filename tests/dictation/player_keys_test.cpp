// The keys of the player window, sent as real key events to the active
// window: every one reaches its menu command, F12 included (which the
// editor does not have). That a key acts once with the editor shown is
// checked on a real X server in the player's tests.

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
    const QString other = d.app.mediaFile(u"second.wav"_s, 60.0);
    const auto &messages = d.app.dialogs->messages;
    // One effect of each command tells that it ran; what the commands do
    // is in their own tests.
    const struct { const char *name; QKeyCombination key; std::function<void()> check; } rows[] = {
        {"F5 pauses with the step back", Qt::Key_F5, [&] { EXPECT_DOUBLE_EQ(d.position(), 18.0); }},
        {"F7 jumps forward", Qt::Key_F7, [&] { EXPECT_DOUBLE_EQ(d.position(), 23.0); }},
        {"F6 jumps back", Qt::Key_F6, [&] { EXPECT_DOUBLE_EQ(d.position(), 18.0); }},
        {"F4 is faster", Qt::Key_F4, [&] { EXPECT_NEAR(d.player().rate(), 1.1, 1e-9); }},
        {"F3 is slower", Qt::Key_F3, [&] { EXPECT_NEAR(d.player().rate(), 1.0, 1e-9); }},
        {"F11 shows the full path", Qt::Key_F11, [&] { EXPECT_EQ(d.settingsLine(6), u"1"_s); }},
        {"F12 switches smart play on, by the menu's way", Qt::Key_F12, [&] {
             EXPECT_TRUE(d.f().mnuSmartPlay->isChecked());
             EXPECT_EQ(messages.size(), 1); // the explanation the button does not give
         }},
        {"F5 plays and arms the cycle", Qt::Key_F5, [&] { EXPECT_EQ(d.f().Timer5->interval(), 4000); }},
        {"F12 switches smart play off again", Qt::Key_F12, [&] { EXPECT_FALSE(d.f().mnuSmartPlay->isChecked()); }},
        {"Ctrl+O asks for a file and opens it", Qt::CTRL | Qt::Key_O, [&] { EXPECT_EQ(d.player().URL(), other); }},
    };
    d.app.dialogs->answerFile(other);
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        QTest::keyClick(&d.f(), row.key.key(), row.key.keyboardModifiers());
        row.check();
    }
}
