// Play and pause on one toggle with the step back, the steps, stop and the
// end of the media, on the fake player and the virtual clock.

#include "TestApp.h"

#include "editor/Form2.h"
#include "player/Form1.h"

#include <QAction>
#include <gtest/gtest.h>

namespace {

struct Opened
{
    TestApp app;
    QString path;
    explicit Opened(double seconds = 180.0)
    {
        app.folder.setSettingsLine(4, QStringLiteral("5"));  // SecSalto
        app.folder.setSettingsLine(5, QStringLiteral("3"));  // SecIndietro
        app.folder.setSettingsLine(23, QStringLiteral("0")); // smart play off
        EXPECT_TRUE(app.start());
        path = app.mediaFile(QStringLiteral("talk.wav"), seconds);
        app.player->clearLog();
        app.form1().ApriMedia(path);
    }
    Form1 &f() { return app.form1(); }
    const QString &play() { return app.ctx().Lingua(7); }
    const QString &pause() { return app.ctx().Lingua(8); }
};

} // namespace

TEST(Transport, OpeningStartsPlayingWithAPauseFirstAtPositionZero)
{
    Opened o;
    EXPECT_EQ(o.app.player->log, (QStringList{QStringLiteral("url ") + o.path, QStringLiteral("seek 0"),
                                               QStringLiteral("pause"), QStringLiteral("play")}));
    EXPECT_EQ(o.f().cmdPlay->Tag, o.pause());
    EXPECT_EQ(o.f().mnuPlay->text(), o.pause());
    EXPECT_EQ(o.f().Timer1->interval(), 100);
    EXPECT_EQ(o.f().Timer4->interval(), 200);
    EXPECT_TRUE(o.f().Label4->isVisible());
    EXPECT_TRUE(o.f().cmdPlay->isEnabled());
    EXPECT_TRUE(o.f().mnuChiudi->isEnabled());
    EXPECT_TRUE(o.app.form2().mnuTimeStamp->isEnabled());
    EXPECT_EQ(o.app.player->playState(), PlayerControl::Playing);
}

// Every pause steps back; play resumes there, with a pause first only from
// position 0. Near the start the step back asks for a negative position,
// which the back-end takes as 0.
TEST(Transport, EveryPauseStepsBackAndPlayResumesThere)
{
    const struct
    {
        int playedMs;
        qint16 secIndietro;
        const char *onPause, *onPlay; // the player's log
        double held;
    } rows[] = {{10000, 3, "seek 7,pause", "play", 7.0}, {2000, 5, "seek -3,pause", "pause,play", 0.0}};
    for (const auto &row : rows) {
        SCOPED_TRACE(row.playedMs);
        Opened o;
        o.app.ctx().SecIndietro = row.secIndietro;
        o.app.advance(row.playedMs);
        o.app.player->clearLog();
        o.f().cmdPlay_Click();
        EXPECT_EQ(o.app.player->log, QString::fromLatin1(row.onPause).split(u','));
        EXPECT_EQ(o.f().cmdPlay->Tag, o.play());
        EXPECT_EQ(o.f().Timer5->interval(), 0);
        o.app.advance(5000);
        EXPECT_DOUBLE_EQ(o.app.player->currentPosition(), row.held); // paused stays put
        o.app.player->clearLog();
        o.f().cmdPlay_Click();
        EXPECT_EQ(o.app.player->log, QString::fromLatin1(row.onPlay).split(u','));
        o.app.advance(2000);
        EXPECT_DOUBLE_EQ(o.app.player->currentPosition(), row.held + 2);
    }
}

TEST(Transport, StepsMoveBySecSaltoAndAZeroStepBecomesTwoForGood)
{
    Opened o;
    o.app.advance(20000);
    o.f().cmdAvanz_Click();
    EXPECT_DOUBLE_EQ(o.app.player->currentPosition(), 25.0);
    o.f().cmdIndietro_Click();
    o.f().cmdIndietro_Click();
    EXPECT_DOUBLE_EQ(o.app.player->currentPosition(), 15.0);
    // The display follows at once.
    EXPECT_EQ(o.f().Label2->Caption(), QStringLiteral("00:15 / 03:00"));

    o.app.ctx().SecSalto = 0;
    o.f().cmdIndietro_Click();
    EXPECT_DOUBLE_EQ(o.app.player->currentPosition(), 13.0);
    EXPECT_EQ(o.app.ctx().SecSalto, 2);
    o.f().Salva();
    EXPECT_EQ(o.app.folder.settingsLines().value(3), QStringLiteral("2"));

    // A step while paused stays paused.
    o.f().cmdPlay_Click();
    o.f().cmdAvanz_Click();
    EXPECT_EQ(o.app.player->playState(), PlayerControl::Paused);
    EXPECT_EQ(o.f().cmdPlay->Tag, o.play());
}

TEST(Transport, StopLeavesThePlayCaptionAloneAndStopWhilePausedChangesNothingMore)
{
    Opened o;
    o.app.advance(4000);
    o.f().mnuStop_Click();
    EXPECT_EQ(o.f().cmdPlay->Tag, o.play());
    EXPECT_EQ(o.f().mnuPlay->text(), o.pause()); // kept until the next press
    EXPECT_EQ(o.f().Label2->Caption(), QStringLiteral("0:00 / 03:00"));
    EXPECT_EQ(o.f().Timer1->interval(), 0);
    EXPECT_EQ(o.app.player->playState(), PlayerControl::Stopped);
    // The watch sees the stopped state at its next tick and stops itself.
    o.app.advance(200);
    EXPECT_EQ(o.f().Timer4->interval(), 0);
    EXPECT_EQ(o.f().Label2->Caption(), QStringLiteral("0:00 / 03:00"));
    // Play from stopped starts at 0 with a pause first.
    o.app.player->clearLog();
    o.f().cmdPlay_Click();
    EXPECT_EQ(o.app.player->log, (QStringList{QStringLiteral("pause"), QStringLiteral("play")}));
    EXPECT_EQ(o.f().Timer4->interval(), 200);
}

TEST(Transport, TheEndOfTheMediaBringsTheStoppedStateAndSmartPlayOff)
{
    Opened o(30.0);
    o.f().mnuSmartPlay->setChecked(true);
    o.app.advance(30500);
    EXPECT_EQ(o.f().cmdPlay->Tag, o.play());
    EXPECT_EQ(o.f().Timer1->interval(), 0);
    EXPECT_EQ(o.f().Timer4->interval(), 0);
    EXPECT_FALSE(o.f().mnuSmartPlay->isChecked());
    EXPECT_TRUE(o.f().imgDetta->pictureFile().endsWith(QStringLiteral("detta.jpg")));
    EXPECT_EQ(o.app.folder.settingsLines().value(22), QStringLiteral("0"));
}

TEST(Transport, TheHourglassShowsWhileAFileLoads)
{
    TestApp app;
    ASSERT_TRUE(app.start());
    const QString path = app.mediaFile();
    app.player->setLoadDelay(500);
    app.form1().ApriMedia(path);
    EXPECT_EQ(app.ctx().mousePointer, 11);
    app.advance(200);
    EXPECT_EQ(app.ctx().mousePointer, 11);
    app.advance(400);
    EXPECT_EQ(app.ctx().mousePointer, 0);
}

TEST(Transport, CloseReturnsToTheStateWithoutMedia)
{
    Opened o;
    o.app.advance(3000);
    o.f().mnuChiudi_Click();
    EXPECT_FALSE(o.f().cmdPlay->isEnabled());
    EXPECT_FALSE(o.f().mnuPlay->isEnabled());
    EXPECT_FALSE(o.app.form2().mnuTimeStamp->isEnabled());
    EXPECT_FALSE(o.f().Label4->isVisible());
    EXPECT_EQ(o.f().Label2->Caption(), QStringLiteral("0:00 / 0:00"));
    EXPECT_EQ(o.app.player->URL(), QString());
    EXPECT_EQ(o.f().Label4->Tag, o.path); // the session's path stays
}
