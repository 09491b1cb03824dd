// Smart play on the fake player and the virtual clock: switching it on and
// off (the menu explains and leaves the player alone, the skin button starts
// playing, stop turns the mode off for good), every transition of the timed
// cycle, the positions of whole cycles, the typing guard, and what hand
// commands and changed settings do to a running cycle.

#include "DictationApp.h"

#include "platform/Numbers.h"

#include <QLineEdit>
#include <QTest>

using namespace dictation;

namespace {

QStringList log(std::initializer_list<const char *> commands)
{
    QStringList out;
    for (const char *c : commands)
        out.append(QString::fromLatin1(c));
    return out;
}

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
    struct Row
    {
        const char *name;
        bool noPlayOnWrite;
        std::function<void(Cycle &)> reach;
        std::function<void(Cycle &)> event;
        bool playing;         // the tag of cmdPlay afterwards
        int state;            // the player's state afterwards
        int timer5;           // period afterwards
        bool timer5Enabled;
        QStringList commands; // sent to the player by the event
    };
    const auto playFor = [](int ms) { return [ms](Cycle &c) { c.open(); c.app.advance(ms); }; };
    const auto inPause = [](int ms) {
        return [ms](Cycle &c) {
            c.open();
            c.app.advance(3000); // the automatic pause, at 3 - 2 = 1 s
            c.app.advance(ms);
        };
    };
    const Row rows[] = {
        {"idle, play pressed", false,
         [](Cycle &c) { c.open(); c.app.advance(2500); c.f().cmdPlay_Click(); },
         [](Cycle &c) { c.f().cmdPlay_Click(); }, true, PlayerControl::Playing, 3000, true, log({"play"})},
        {"playing, tick while typing", true,
         [](Cycle &c) { c.open(); c.app.advance(2000); c.type(QStringLiteral("a")); },
         [](Cycle &c) { c.app.advance(1000); }, true, PlayerControl::Playing, 1300, true, {}},
        {"playing, tick", false, playFor(2000), [](Cycle &c) { c.app.advance(1000); }, false,
         PlayerControl::Paused, 2000, true, log({"seek 1", "pause"})},
        {"pause phase, tick while typing", true,
         [inPause](Cycle &c) { inPause(1000)(c); c.type(QStringLiteral("a")); },
         [](Cycle &c) { c.app.advance(1000); }, false, PlayerControl::Paused, 1300, true, {}},
        {"pause phase, tick", false, inPause(0), [](Cycle &c) { c.app.advance(2000); }, true,
         PlayerControl::Playing, 3000, true, log({"play"})},
        {"playing, hand pause", false, playFor(2500), [](Cycle &c) { c.f().cmdPlay_Click(); }, false,
         PlayerControl::Paused, 0, false, log({"seek 0.5", "pause"})},
        {"pause phase, hand play", false, inPause(500), [](Cycle &c) { c.f().cmdPlay_Click(); }, true,
         PlayerControl::Playing, 3000, true, log({"play"})},
        {"playing, mode off", false, playFor(2500), [](Cycle &c) { c.f().mnuSmartPlay_Click(); }, false,
         PlayerControl::Paused, 0, false, log({"seek 0.5", "pause"})},
        {"pause phase, mode off", false, inPause(500), [](Cycle &c) { c.f().mnuSmartPlay_Click(); }, false,
         PlayerControl::Paused, 0, false, {}},
        {"playing, stop", false, playFor(2500), [](Cycle &c) { c.f().mnuStop_Click(); }, false,
         PlayerControl::Stopped, 0, false, log({"stop"})},
        {"playing, end of media", false,
         [](Cycle &c) {
             c.ctx().TempoPlay = 20;
             c.open(10.0);
             c.app.advance(5000);
         },
         [](Cycle &c) { c.app.advance(5200); }, false, PlayerControl::Stopped, 0, false, log({"stop"})},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        Cycle c(row.noPlayOnWrite);
        row.reach(c);
        c.player().clearLog();
        row.event(c);
        EXPECT_EQ(c.f().cmdPlay->Tag, row.playing ? c.pause() : c.play());
        EXPECT_EQ(c.player().playState(), row.state);
        EXPECT_EQ(c.f().Timer5->interval(), row.timer5);
        EXPECT_EQ(c.f().Timer5->enabled(), row.timer5Enabled);
        EXPECT_EQ(c.player().log, row.commands);
    }
}

TEST(TimedCycle, WholeCyclesStepBackAndResumeWhereThePauseLeftOff)
{
    DictationApp d(Preset{.secIndietro = 2, .tempoPlay = 3, .smartPlay = true});
    d.ctx().TempoPause = 1;
    d.open();
    QStringList expected;
    for (int k = 1; k <= 4; ++k) {
        SCOPED_TRACE(k);
        // A play phase of 3 s from position k - 1, back 2 s: paused at k.
        d.app.advance(2999);
        EXPECT_DOUBLE_EQ(d.position(), k - 1 + 2.999);
        d.app.advance(1);
        EXPECT_DOUBLE_EQ(d.position(), k);
        EXPECT_EQ(d.f().mnuPlay->text(), d.play());
        // The pause holds the place for 1 s, then playing resumes there.
        d.app.advance(999);
        EXPECT_DOUBLE_EQ(d.position(), k);
        d.app.advance(1);
        EXPECT_EQ(d.f().mnuPlay->text(), d.pause());
        expected << QStringLiteral("seek %1").arg(k) << QStringLiteral("pause") << QStringLiteral("play");
    }
    EXPECT_EQ(d.player().log, expected);
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
            c.type(QStringLiteral("x"));
            c.app.advance(1000);
            ASSERT_EQ(c.player().playState(), held) << "after keystroke " << i;
        }
        const qint64 lastChange = c.app.clock.now() - 1000;
        EXPECT_TRUE(c.player().log.isEmpty());
        EXPECT_EQ(c.f().Timer5->interval(), 1300);
        // The next phase begins at the first tick after the watch ran out.
        qint64 moved = -1;
        while (c.app.clock.now() < lastChange + 5000) {
            c.app.advance(10);
            if (c.player().playState() != held) {
                moved = c.app.clock.now();
                break;
            }
        }
        EXPECT_EQ(c.f().Timer6->interval(), 0);
        EXPECT_GE(moved, lastChange + 1300);
        EXPECT_LE(moved, lastChange + 2600);
        if (inPausePhase) {
            EXPECT_EQ(c.player().log, log({"play"}));
        } else {
            // Played on from 0 without a break until the pause came.
            const double reached = double(moved - opened) / 1000.0;
            EXPECT_EQ(c.player().log, (QStringList{QStringLiteral("seek ") + Numbers::numberText(reached - 2),
                                                   QStringLiteral("pause")}));
        }
    }
}

TEST(TimedCycle, TheWatchIsIgnoredWhenTypingMayNotHoldTheCycle)
{
    Cycle c(true);
    c.open();
    c.app.advance(2500);
    c.type(QStringLiteral("x"));
    c.f().mnuNoPlayOnWrite_Click(); // unchecked while the watch runs
    EXPECT_NE(c.f().Timer6->interval(), 0);
    c.app.advance(500);
    EXPECT_EQ(c.player().playState(), PlayerControl::Paused);
    EXPECT_EQ(c.settingsLine(25), QStringLiteral("0"));
}

TEST(TimedCycle, ANewPauseLengthCountsFromTheNextPauseOn)
{
    Cycle c;
    c.ctx().TempoPause = 3;
    c.open();
    c.app.advance(3000); // paused for 3 s from here
    c.app.advance(500);
    const bool seen = withForm4([&] { c.f().mnuTempoPause_Click(); }, [&](Form4 &dialog) {
        // The cycle goes on while the dialog is open.
        c.app.advance(500);
        dialog.Text1->setText(QStringLiteral("1"));
        dialog.Command1->click();
    });
    ASSERT_TRUE(seen);
    EXPECT_EQ(c.ctx().TempoPause, 1);
    c.app.advance(1999);
    EXPECT_EQ(c.player().playState(), PlayerControl::Paused);
    c.app.advance(1);
    EXPECT_EQ(c.player().playState(), PlayerControl::Playing);
    c.app.advance(3000);
    ASSERT_EQ(c.player().playState(), PlayerControl::Paused);
    c.app.advance(999);
    EXPECT_EQ(c.player().playState(), PlayerControl::Paused);
    c.app.advance(1);
    EXPECT_EQ(c.player().playState(), PlayerControl::Playing);
}

TEST(TimedCycle, APlayLengthThatOverflowsSixteenBitsKeepsTheTimersPeriod)
{
    // From a stopped timer: armed with nothing, so no pause ever comes.
    {
        Cycle c;
        c.ctx().TempoPlay = 40;
        c.open();
        EXPECT_EQ(c.f().Timer5->interval(), 0);
        EXPECT_TRUE(c.f().Timer5->enabled());
        c.app.advance(60000);
        EXPECT_EQ(c.player().playState(), PlayerControl::Playing);
    }
    // In the middle of a cycle: the play phase takes the pause's length.
    {
        Cycle c;
        c.open();
        c.app.advance(3000);
        c.ctx().TempoPlay = 40;
        c.app.advance(2000);
        ASSERT_EQ(c.player().playState(), PlayerControl::Playing);
        EXPECT_EQ(c.f().Timer5->interval(), 2000);
        c.app.advance(2000);
        EXPECT_EQ(c.player().playState(), PlayerControl::Paused);
    }
}

TEST(TimedCycle, NoStepBackWithZeroSeconds)
{
    DictationApp d(Preset{.secIndietro = 0, .tempoPlay = 3, .smartPlay = true});
    d.open();
    d.app.advance(3000);
    EXPECT_EQ(d.player().playState(), PlayerControl::Paused);
    EXPECT_DOUBLE_EQ(d.position(), 3.0);
    d.app.advance(3000); // TempoPause 3
    d.app.advance(1500);
    d.f().cmdPlay_Click();
    EXPECT_DOUBLE_EQ(d.position(), 4.5);
    EXPECT_EQ(d.player().log, log({"seek 3", "pause", "play", "seek 4.5", "pause"}));
}

TEST(SmartPlay, TheMenuExplainsTheModeAndLeavesThePlayerAlone)
{
    for (const bool playing : {true, false}) {
        SCOPED_TRACE(playing ? "playing" : "paused");
        DictationApp d;
        d.open();
        d.app.advance(4000);
        if (!playing)
            d.f().cmdPlay_Click();
        d.player().clearLog();
        const int state = d.player().playState();

        d.f().mnuSmartPlay_Click();
        EXPECT_TRUE(d.f().mnuSmartPlay->isChecked());
        ASSERT_EQ(d.app.dialogs->messages.size(), 1);
        EXPECT_EQ(d.app.dialogs->messages[0].text, QStringLiteral("Il player si ferma  torna indietro da solo"));
        EXPECT_EQ(d.app.dialogs->messages[0].style, 64);
        EXPECT_EQ(d.app.dialogs->messages[0].title, QStringLiteral("Play intelligente"));
        EXPECT_TRUE(d.player().log.isEmpty());
        EXPECT_EQ(d.player().playState(), state);
        EXPECT_EQ(d.f().Timer5->interval(), 0);
        EXPECT_EQ(picture(d), QStringLiteral("detta2.jpg"));
        EXPECT_EQ(d.settingsLine(23), QStringLiteral("1"));

        // Only the next play arms the cycle.
        d.app.advance(10000);
        EXPECT_EQ(d.player().playState(), state);
        if (playing)
            d.f().cmdPlay_Click();
        d.f().cmdPlay_Click();
        EXPECT_EQ(d.f().Timer5->interval(), 3000);
    }
}

TEST(SmartPlay, TheButtonSaysNothingAndStartsPlayingOrWithNoMediaOnlyChangesTheMark)
{
    for (const bool media : {true, false}) {
        SCOPED_TRACE(media ? "paused media" : "no media");
        DictationApp d;
        if (media) {
            d.open();
            d.app.advance(4000);
            d.f().cmdPlay_Click(); // paused at 2
        }
        d.player().clearLog();
        d.f().imgDetta_Click();
        EXPECT_TRUE(d.f().mnuSmartPlay->isChecked());
        EXPECT_TRUE(d.app.dialogs->messages.isEmpty());
        EXPECT_EQ(d.player().log, media ? QStringList{QStringLiteral("play")} : QStringList());
        EXPECT_EQ(d.f().cmdPlay->Tag, media ? d.pause() : d.play());
        EXPECT_EQ(d.f().Timer5->interval(), media ? 3000 : 0);
        EXPECT_EQ(picture(d), QStringLiteral("detta2.jpg"));
        EXPECT_EQ(d.settingsLine(23), QStringLiteral("1"));
    }
}

// The pause phase is in the cycle's table; both ways of switching off
// behave alike.
TEST(SmartPlay, SwitchingOffPausesAPlayPhaseWithItsStepBack)
{
    const std::function<void(Form1 &)> ways[] = {
        [](Form1 &f) { f.mnuSmartPlay_Click(); },
        [](Form1 &f) { f.imgDetta_Click(); },
    };
    for (const auto &switchOff : ways) {
        DictationApp d(Preset{.secIndietro = 2, .tempoPlay = 5, .smartPlay = true});
        d.open();
        d.app.advance(4000);
        d.player().clearLog();
        switchOff(d.f());
        EXPECT_FALSE(d.f().mnuSmartPlay->isChecked());
        EXPECT_EQ(d.player().log, (QStringList{QStringLiteral("seek 2"), QStringLiteral("pause")}));
        EXPECT_EQ(d.f().cmdPlay->Tag, d.play());
        EXPECT_FALSE(d.f().Timer5->enabled());
        EXPECT_EQ(picture(d), QStringLiteral("detta.jpg"));
        EXPECT_EQ(d.settingsLine(23), QStringLiteral("0"));
        EXPECT_TRUE(d.app.dialogs->messages.isEmpty());
    }
}

// The end of the media is in the player's transport tests.
TEST(SmartPlay, StopTurnsTheModeOffForGood)
{
    DictationApp d(Preset{.smartPlay = true});
    d.open();
    d.app.advance(1000);
    d.f().mnuStop_Click();
    EXPECT_FALSE(d.f().mnuSmartPlay->isChecked());
    EXPECT_EQ(picture(d), QStringLiteral("detta.jpg"));
    EXPECT_EQ(d.f().Timer5->interval(), 0);
    EXPECT_EQ(d.settingsLine(23), QStringLiteral("0"));
    // A later play does not bring the cycle back.
    d.f().cmdPlay_Click();
    d.app.advance(30000);
    EXPECT_EQ(d.player().playState(), PlayerControl::Playing);
}
