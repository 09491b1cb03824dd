// Play and pause on one toggle with the step back, the steps, stop and
// close, on the fake player and the virtual clock. The end of the media is
// in the dictation tests' cycle table.

#include "TestApp.h"

#include "editor/Form2.h"
#include "player/Form1.h"

#include <QAction>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

struct Opened
{
    TestApp app;
    QString path;
    explicit Opened(double seconds = 180.0)
    {
        app.folder.setSettingsLine(4, u"5"_s);  // SecSalto
        app.folder.setSettingsLine(5, u"3"_s);  // SecIndietro
        app.folder.setSettingsLine(23, u"0"_s); // smart play off
        EXPECT_TRUE(app.start());
        path = app.mediaFile(u"talk.wav"_s, seconds);
        app.player->clearLog();
        app.form1().ApriMedia(path);
    }
    Form1 &f() { return app.form1(); }
    const QString &play() { return app.ctx().Lingua(7); }
    const QString &pause() { return app.ctx().Lingua(8); }
};

} // namespace

// With a pause first at position 0; close keeps the session's path.
TEST(Transport, OpeningStartsPlayingAndCloseReturnsToTheStateWithoutMedia)
{
    Opened o;
    const auto withMedia = [&] {
        QString out; // play button, play menu, close, time stamp, title
        for (const bool on : {o.f().cmdPlay->isEnabled(), o.f().mnuPlay->isEnabled(), o.f().mnuChiudi->isEnabled(),
                              o.app.form2().mnuTimeStamp->isEnabled(), o.f().Label4->isVisible()})
            out += on ? u'1' : u'0';
        return out;
    };
    // The display and the end watch run: see the bar and the hourglass tests.
    EXPECT_EQ(o.app.player->log.join(u','), u"url "_s + o.path + u",seek 0,pause,play"_s);
    EXPECT_EQ(o.f().cmdPlay->Tag, o.pause());
    EXPECT_EQ(withMedia(), u"11111"_s);

    o.app.advance(3000);
    o.f().mnuChiudi_Click();
    EXPECT_EQ(withMedia(), u"00000"_s);
    EXPECT_EQ(o.f().Label2->Caption(), u"0:00 / 0:00"_s);
    EXPECT_EQ(o.app.player->URL(), QString());
    EXPECT_EQ(o.f().Label4->Tag, o.path);
}

// A pause first only from position 0. Near the start the step back asks
// for a negative position, which the back-end takes as 0.
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
    EXPECT_EQ(o.f().Label2->Caption(), u"00:15 / 03:00"_s);

    o.app.ctx().SecSalto = 0;
    o.f().cmdIndietro_Click();
    EXPECT_DOUBLE_EQ(o.app.player->currentPosition(), 13.0);
    EXPECT_EQ(o.app.ctx().SecSalto, 2);
    o.f().Salva();
    EXPECT_EQ(o.app.folder.settingsLines().value(3), u"2"_s);

    // A step while paused stays paused.
    o.f().cmdPlay_Click();
    o.f().cmdAvanz_Click();
    EXPECT_EQ(o.app.player->playState(), PlayerControl::Paused);
    EXPECT_EQ(o.f().cmdPlay->Tag, o.play());
}

TEST(Transport, StopLeavesThePlayMenuAloneAndPlayStartsOverWithAPauseFirst)
{
    Opened o;
    o.app.advance(4000);
    o.f().mnuStop_Click();
    EXPECT_EQ(o.f().cmdPlay->Tag, o.play());
    EXPECT_EQ(o.f().mnuPlay->text(), o.pause()); // kept until the next press
    EXPECT_EQ(o.f().Label2->Caption(), u"0:00 / 03:00"_s);
    EXPECT_EQ(o.f().Timer1->interval(), 0);
    EXPECT_EQ(o.app.player->playState(), PlayerControl::Stopped);
    // The watch sees the stopped state at its next tick and stops itself.
    o.app.advance(200);
    EXPECT_EQ(o.f().Timer4->interval(), 0);
    // Play from stopped starts at 0 with a pause first.
    o.app.player->clearLog();
    o.f().cmdPlay_Click();
    EXPECT_EQ(o.app.player->log, (QStringList{u"pause"_s, u"play"_s}));
    EXPECT_EQ(o.f().Timer4->interval(), 200);
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
