// Switching smart play on and off: the menu explains and leaves the player
// alone, the skin button starts playing, and stop or the end of the media
// always turn the mode off for good.

#include "DictationApp.h"

#include <gtest/gtest.h>

using namespace dictation;

namespace {

QString picture(DictationApp &d)
{
    const QString file = d.f().imgDetta->pictureFile();
    return file.mid(file.lastIndexOf(u'/') + 1);
}

} // namespace

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
