// The player and the editor on a real X server with a window manager and a
// Russian keyboard layout (started by with_x11.sh): keys arrive as the
// window system sends them, by X11 key code, and windows have real frames.

#include "TestApp.h"

#include "dictation/Form4.h"
#include "editor/Form2.h"
#include "editor/RTB.h"
#include "player/Form1.h"

#include <QApplication>
#include <QTest>
#include <QTimer>
#include <dlfcn.h>
#include <gtest/gtest.h>

namespace {

// Key presses through the XTEST extension, by key code, as a keyboard makes
// them; the libraries are loaded at run time, as only this test needs them.
class XKeyboard
{
public:
    XKeyboard()
    {
        void *x11 = dlopen("libX11.so.6", RTLD_NOW);
        void *xtst = dlopen("libXtst.so.6", RTLD_NOW);
        if (!x11 || !xtst)
            return;
        m_flush = reinterpret_cast<decltype(m_flush)>(dlsym(x11, "XFlush"));
        m_fake = reinterpret_cast<decltype(m_fake)>(dlsym(xtst, "XTestFakeKeyEvent"));
        if (auto open = reinterpret_cast<void *(*)(const char *)>(dlsym(x11, "XOpenDisplay")); open && m_flush && m_fake)
            m_display = open(nullptr);
    }
    bool isValid() const { return m_display != nullptr; }

    // Presses the keys in order and releases them in reverse.
    void chord(std::initializer_list<unsigned> keyCodes)
    {
        for (unsigned code : keyCodes)
            m_fake(m_display, code, 1, 0);
        for (auto it = std::rbegin(keyCodes); it != std::rend(keyCodes); ++it)
            m_fake(m_display, *it, 0, 0);
        m_flush(m_display);
    }

private:
    void *m_display = nullptr;
    int (*m_flush)(void *) = nullptr;
    int (*m_fake)(void *, unsigned, int, unsigned long) = nullptr;
};

enum KeyCode : unsigned { Ctrl = 37, KeyW = 25, KeyO = 32, KeyM = 58, F5 = 71, F7 = 73 };

class OnX11 : public ::testing::Test
{
protected:
    void SetUp() override
    {
        if (qEnvironmentVariableIsSet("QM_X11_SKIP"))
            GTEST_SKIP() << qPrintable(qEnvironmentVariable("QM_X11_SKIP"));
        if (QGuiApplication::platformName() != QLatin1String("xcb"))
            GTEST_SKIP() << "needs an X server: run through with_x11.sh";
        app.folder.setSettingsLine(8, QStringLiteral("0")); // the editor shown
        // As the program starts: the editor comes after the player's
        // first paint, placed against its frame.
        ASSERT_TRUE(app.ctx().Main());
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&app.form1()));
        ASSERT_TRUE(QTest::qWaitFor([this] { return app.form2().isVisible(); }, 3000));
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&app.form2()));
    }

    void activate(QWidget *window)
    {
        window->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    }

    static bool framed(QWidget *w) { return w->frameGeometry().height() > w->geometry().height(); }

    TestApp app;
};

TEST_F(OnX11, TheEditorFrameStandsBelowThePlayerFrame)
{
    Form1 &player = app.form1();
    Form2 &editor = app.form2();
    const auto check = [&] {
        ASSERT_TRUE(QTest::qWaitFor([&] { return framed(&player) && framed(&editor); }, 3000));
        // The placement may follow the frames' arrival.
        EXPECT_TRUE(QTest::qWaitFor(
            [&] { return editor.frameGeometry().top() > player.frameGeometry().bottom(); }, 2000))
            << "player frame " << player.frameGeometry().bottom() << ", editor frame top "
            << editor.frameGeometry().top();
        EXPECT_EQ(editor.frameGeometry().left(), player.frameGeometry().left());
    };
    check();
    // Opening a file places the editor again.
    player.ApriMedia(app.mediaFile());
    QTest::qWait(100);
    check();
}

TEST_F(OnX11, KeysActOnceAndCtrlLettersWorkUnderARussianLayout)
{
    XKeyboard keyboard;
    if (!keyboard.isValid())
        GTEST_SKIP() << "the XTEST extension is not reachable";
    Form1 &player = app.form1();
    player.ApriMedia(app.mediaFile());
    app.advance(20000);
    app.ctx().SecIndietro = 2;
    app.ctx().SecSalto = 5;

    // F5 and F7 in the player: the keyboard goes to the text at once, and
    // the release arrives there.
    const struct { unsigned key; double position; } rows[] = {{F5, 18.0}, {F7, 23.0}};
    for (const auto &row : rows) {
        SCOPED_TRACE(row.key);
        activate(&player);
        keyboard.chord({row.key});
        QTest::qWait(150);
        EXPECT_EQ(player.cmdPlay->Tag, app.ctx().Lingua(7));
        EXPECT_DOUBLE_EQ(app.player->currentPosition(), row.position);
    }

    // Ctrl + the keys of W and M in the text: the language command, and the
    // bookmark's name asked for; Ctrl + the key of O in the player: its open
    // command. An empty script cancels each dialog.
    bool asked = false;
    QTimer answer;
    QObject::connect(&answer, &QTimer::timeout, &answer, [&] {
        if (auto *dialog = dynamic_cast<Form4 *>(QApplication::activeModalWidget())) {
            asked = true;
            dialog->Command2_Click();
        }
    });
    answer.start(20);
    const struct { QWidget *window; unsigned key; std::function<bool()> done; } chords[] = {
        {app.form2().RTB, KeyW, [&] { return app.dialogs->fileDialogs.size() == 1; }},
        {&player, KeyO, [&] { return app.dialogs->fileDialogs.size() == 2; }},
        {app.form2().RTB, KeyM, [&] { return asked; }},
    };
    for (const auto &chord : chords) {
        SCOPED_TRACE(chord.key);
        activate(chord.window->window());
        chord.window->setFocus();
        keyboard.chord({Ctrl, chord.key});
        EXPECT_TRUE(QTest::qWaitFor(chord.done, 2000));
    }
}

} // namespace
