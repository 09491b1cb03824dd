// Smart play on the fake player and the virtual clock: every transition of
// the timed cycle, whole cycles, the typing guard, changed settings, and
// switching the mode on (the menu explains and leaves the player alone, the
// skin button starts playing).

#include "DictationApp.h"

#include "platform/Numbers.h"

using namespace dictation;

namespace {

QString picture(DictationApp &d)
{
    const QString file = d.f().imgDetta->pictureFile();
    return file.mid(file.lastIndexOf(u'/') + 1);
}

// Smart play on, 3 s of play, 2 s of pause, 2 s back at every pause.
struct Cycle : DictationApp
{
    explicit Cycle(bool noPlayOnWrite = false)
        : DictationApp(Preset{.secIndietro = 2, .tempoPlay = 3, .smartPlay = true, .noPlayOnWrite = noPlayOnWrite})
    {
        ctx().TempoPause = 2; // the dialog allows it; the start-up would not
    }
};

} // namespace

TEST(TimedCycle, EveryTransitionOfTheCycle)
{
    using Event = std::function<void(Cycle &)>;
    const auto tick = [](int ms) -> Event { return [ms](Cycle &c) { c.app.advance(ms); }; };
    const auto click = [](void (Form1::*command)()) -> Event { return [command](Cycle &c) { (c.f().*command)(); }; };
    const Event play = click(&Form1::cmdPlay_Click), modeOff = click(&Form1::mnuSmartPlay_Click);
    struct Row
    {
        const char *name;
        int reachMs;          // after the open, which starts the first play phase
        bool typing;          // a keystroke then, with typing holding the cycle
        Event event;
        int state, timer5;    // the player's state (the play button follows it), the cycle timer's period (0: off)
        bool modeOn;
        const char *commands; // sent to the player by the event
        double media = 600;
    };
    const Row rows[] = {
        {"playing, tick while typing", 2000, true, tick(1000), PlayerControl::Playing, 1300, true, ""},
        {"playing, tick", 2000, false, tick(1000), PlayerControl::Paused, 2000, true, "seek 1,pause"},
        {"pause phase, tick while typing", 4000, true, tick(1000), PlayerControl::Paused, 1300, true, ""},
        {"pause phase, tick", 3000, false, tick(2000), PlayerControl::Playing, 3000, true, "play"},
        {"playing, hand pause", 2500, false, play, PlayerControl::Paused, 0, true, "seek 0.5,pause"},
        {"pause phase, hand play", 3500, false, play, PlayerControl::Playing, 3000, true, "play"},
        {"playing, mode off", 2500, false, modeOff, PlayerControl::Paused, 0, false, "seek 0.5,pause"},
        {"playing, button off", 2500, false, click(&Form1::imgDetta_Click), PlayerControl::Paused, 0, false,
         "seek 0.5,pause"},
        {"pause phase, mode off", 3500, false, modeOff, PlayerControl::Paused, 0, false, ""},
        {"playing, stop", 2500, false, click(&Form1::mnuStop_Click), PlayerControl::Stopped, 0, false, "stop"},
        // Stop turns the mode off for good: a later play runs on.
        {"stopped, play", 2500, false, [](Cycle &c) { c.f().mnuStop_Click(); c.f().cmdPlay_Click(); c.app.advance(30000); },
         PlayerControl::Playing, 0, false, "stop,pause,play"},
        {"playing, end of media", 2000, false, tick(1000), PlayerControl::Stopped, 0, false, "stop", 2.5},
        // Unchecked while the watch runs: the watch no longer holds the cycle.
        {"playing, typing may no longer hold", 2500, true,
         [](Cycle &c) { c.f().mnuNoPlayOnWrite_Click(); c.app.advance(500); }, PlayerControl::Paused, 2000, true,
         "seek 1,pause"},
        // A play length beyond 16 bits keeps the period the timer had, here the pause's.
        {"pause phase, play length overflows", 3000, false,
         [](Cycle &c) { c.ctx().TempoPlay = 40; c.app.advance(2000); }, PlayerControl::Playing, 2000, true, "play"},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        Cycle c(row.typing);
        c.open(row.media);
        c.app.advance(row.reachMs);
        if (row.typing)
            c.type(u"a"_s);
        c.player().clearLog();
        row.event(c);
        EXPECT_EQ(c.player().playState(), row.state);
        EXPECT_EQ(c.f().cmdPlay->Tag, row.state == PlayerControl::Playing ? c.pause() : c.play());
        EXPECT_EQ(c.f().Timer5->interval(), row.timer5);
        EXPECT_EQ(c.f().Timer5->enabled(), row.timer5 != 0);
        EXPECT_EQ(c.f().mnuSmartPlay->isChecked(), row.modeOn);
        EXPECT_EQ(picture(c), row.modeOn ? u"detta2.jpg"_s : u"detta.jpg"_s);
        EXPECT_EQ(c.settingsLine(23), row.modeOn ? u"1"_s : u"0"_s);
        EXPECT_EQ(c.log(), QLatin1String(row.commands));
        EXPECT_TRUE(c.app.dialogs->messages.isEmpty());
    }
}

// Each play phase of 3 s ends SecIndietro back, and the pause holds that
// place for its 1 s, with or without a step back.
TEST(TimedCycle, WholeCyclesStepBackAndResumeWhereThePauseLeftOff)
{
    for (const int back : {2, 0}) {
        DictationApp d(Preset{.secIndietro = qint16(back), .tempoPlay = 3, .smartPlay = true});
        d.ctx().TempoPause = 1;
        d.open();
        QStringList expected;
        double at = 0;
        for (int k = 1; k <= 3; ++k) {
            SCOPED_TRACE(testing::Message() << back << " s back, cycle " << k);
            d.app.advance(2999);
            EXPECT_DOUBLE_EQ(d.position(), at + 2.999);
            d.app.advance(1);
            at += 3 - back;
            EXPECT_DOUBLE_EQ(d.position(), at);
            EXPECT_EQ(d.f().mnuPlay->text(), d.play());
            d.app.advance(999);
            EXPECT_DOUBLE_EQ(d.position(), at);
            d.app.advance(1);
            EXPECT_EQ(d.f().mnuPlay->text(), d.pause());
            expected << u"seek "_s + Numbers::numberText(at) << u"pause"_s << u"play"_s;
        }
        EXPECT_EQ(d.player().log, expected);
    }
}

TEST(TimedCycle, TypingHoldsEitherPhaseAndTheCycleMovesOnOnlyAfterTheWatchRunsOut)
{
    for (const bool inPausePhase : {true, false}) {
        SCOPED_TRACE(inPausePhase ? "pause phase" : "play phase");
        Cycle c(true);
        const qint64 opened = c.app.clock.now();
        c.open();
        c.app.advance(inPausePhase ? 3500 : 500);
        const int held = c.player().playState();
        c.player().clearLog();
        // A keystroke every second for 10 s: no phase ends meanwhile.
        for (int i = 0; i < 10; ++i) {
            c.type(u"x"_s);
            c.app.advance(1000);
            ASSERT_EQ(c.player().playState(), held) << "after keystroke " << i;
        }
        const qint64 lastChange = c.app.clock.now() - 1000;
        EXPECT_EQ(c.log(), QString());
        // The next phase begins at the first tick after the watch ran out.
        while (c.player().playState() == held && c.app.clock.now() < lastChange + 5000)
            c.app.advance(10);
        const qint64 moved = c.app.clock.now();
        EXPECT_EQ(c.f().Timer6->interval(), 0);
        EXPECT_GE(moved, lastChange + 1300);
        EXPECT_LE(moved, lastChange + 2600);
        // The play phase played on from 0 without a break until the pause.
        EXPECT_EQ(c.log(), inPausePhase ? u"play"_s
                                        : u"seek "_s + Numbers::numberText((moved - opened) / 1000.0 - 2) + u",pause"_s);
    }
}

TEST(TimedCycle, ANewPauseLengthCountsFromTheNextPauseOn)
{
    Cycle c;
    c.ctx().TempoPause = 3;
    c.open();
    c.app.advance(3500); // paused for 3 s from 3000
    ASSERT_TRUE(withForm4([&] { c.f().mnuTempoPause_Click(); }, [&](Form4 &dialog) {
        c.app.advance(500); // the cycle goes on while the dialog is open
        dialog.Text1->setText(u"1"_s);
        dialog.Command1->click();
    }));
    EXPECT_EQ(c.ctx().TempoPause, 1);
    // Still the old 3 s pause, then 3 s of play and the new 1 s pause.
    const std::pair<int, int> steps[] = {{1999, PlayerControl::Paused}, {1, PlayerControl::Playing},
                                         {3000, PlayerControl::Paused}, {999, PlayerControl::Paused},
                                         {1, PlayerControl::Playing}};
    for (const auto &[ms, state] : steps) {
        c.app.advance(ms);
        EXPECT_EQ(c.player().playState(), state) << "at " << c.app.clock.now();
    }
}

// Switching on: the menu explains the mode and leaves the player alone, so
// that only the next play arms the cycle; the skin's button says nothing
// and starts playing, or with no media only changes the mark.
TEST(SmartPlay, SwitchingOnByTheMenuOrTheButton)
{
    const struct { const char *name; bool media, playing, button; const char *log; int timer5; } rows[] = {
        {"menu, playing", true, true, false, "", 0},
        {"menu, paused", true, false, false, "", 0},
        {"button, paused", true, false, true, "play", 3000},
        {"button, no media", false, false, true, "", 0},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        DictationApp d;
        if (row.media) {
            d.open();
            d.app.advance(4000);
        }
        if (row.media && !row.playing)
            d.f().cmdPlay_Click();
        d.player().clearLog();
        const int state = d.player().playState();
        row.button ? d.f().imgDetta_Click() : d.f().mnuSmartPlay_Click();
        EXPECT_TRUE(d.f().mnuSmartPlay->isChecked());
        EXPECT_EQ(picture(d), u"detta2.jpg"_s);
        EXPECT_EQ(d.settingsLine(23), u"1"_s);
        EXPECT_EQ(d.log(), QLatin1String(row.log));
        EXPECT_EQ(d.f().cmdPlay->Tag, row.playing || *row.log ? d.pause() : d.play());
        EXPECT_EQ(d.f().Timer5->interval(), row.timer5);
        const auto &messages = d.app.dialogs->messages;
        if (row.button) {
            EXPECT_TRUE(messages.isEmpty());
            continue;
        }
        ASSERT_EQ(messages.size(), 1);
        EXPECT_EQ(messages[0].text, u"Il player si ferma  torna indietro da solo"_s);
        EXPECT_EQ(messages[0].style, 64);
        EXPECT_EQ(messages[0].title, u"Play intelligente"_s);
        d.app.advance(10000);
        EXPECT_EQ(d.log(), QString());
        EXPECT_EQ(d.player().playState(), state);
        if (row.playing)
            d.f().cmdPlay_Click();
        d.f().cmdPlay_Click();
        EXPECT_EQ(d.f().Timer5->interval(), 3000);
    }
}
