// The title line, the position text and bar, and the speed commands.

#include "TestApp.h"

#include "player/Form1.h"

#include <QAction>
#include <gtest/gtest.h>

namespace {

struct Started
{
    TestApp app;
    Started()
    {
        app.folder.setSettingsLine(6, QStringLiteral("0"));
        EXPECT_TRUE(app.start());
    }
    Form1 &f() { return app.form1(); }
};

} // namespace

TEST(Display, TitleFontSizeFollowsTheCaptionLength)
{
    struct Case { int length; int points; };
    for (const Case c : {Case{20, 14}, Case{21, 11}, Case{44, 11}, Case{45, 9}}) {
        Started s;
        const QString name = QString(c.length - 4, u'n') + QStringLiteral(".wav");
        s.f().ApriMedia(s.app.mediaFile(name));
        EXPECT_EQ(s.f().Label4->Caption(), name);
        EXPECT_EQ(s.f().Label4->font().pointSize(), c.points) << c.length;
    }
}

TEST(Display, AmpersandsAreDoubledAndAPathWithoutSeparatorShowsWhole)
{
    Started s;
    const QString path = s.app.mediaFile(QStringLiteral("Tom & Jerry.wav"));
    s.f().ApriMedia(path);
    EXPECT_EQ(s.f().Label4->Caption(), QStringLiteral("Tom && Jerry.wav"));
    EXPECT_EQ(s.f().Label4->text(), QStringLiteral("Tom & Jerry.wav"));
    s.f().mnuTitoloCompleto_Click();
    EXPECT_EQ(s.f().Label4->Caption(), QString(path).replace(QStringLiteral("&"), QStringLiteral("&&")));
    EXPECT_EQ(s.app.folder.settingsLines().value(5), QStringLiteral("1"));

    for (bool full : {false, true}) {
        s.f().mnuTitoloCompleto->setChecked(full);
        s.f().Label4->Tag = QStringLiteral("bare-name.mp3");
        s.f().MostraPath();
        EXPECT_EQ(s.f().Label4->Caption(), QStringLiteral("bare-name.mp3"));
    }
}

TEST(Display, TheBarGrowsWithThePositionInWholeTwips)
{
    Started s;
    s.f().ApriMedia(s.app.mediaFile(QStringLiteral("a.wav"), 180));
    s.f().Label2->setWidth(3000);
    s.app.advance(90000);
    EXPECT_EQ(s.f().Shape1->Width(), 1500);
    EXPECT_EQ(s.f().Label2->Caption(), QStringLiteral("01:30 / 03:00"));
    s.app.advance(1000);
    EXPECT_EQ(s.f().Shape1->Width(), 1516); // 3000 / 180 * 91 = 1516.67, cut down
    // At position 0 the bar empties and the length stays.
    s.f().mnuStop_Click();
    s.f().Timer1_Timer();
    EXPECT_EQ(s.f().Shape1->Width(), 0);
    EXPECT_EQ(s.f().Label2->Caption(), QStringLiteral("0:00 / 03:00"));
}

TEST(Speed, TheRateMovesByTenthsBetweenTheTwoDifferentlyTestedLimits)
{
    Started s;
    // With no media the commands run all the same and the label appears.
    EXPECT_FALSE(s.f().Label7->isVisible());
    s.f().mnuAumentaVelocità_Click();
    EXPECT_DOUBLE_EQ(s.app.player->rate(), 1.1);
    EXPECT_EQ(s.f().Label7->Caption(), QStringLiteral("1.1 x"));
    EXPECT_EQ(s.f().Label7->Tag, QStringLiteral("1"));

    s.app.player->setRate(0.6);
    s.f().mnuDiminuisciVelocità_Click();
    EXPECT_EQ(s.f().Label7->Caption(), QStringLiteral("0.5 x"));
    const double low = s.app.player->rate();
    s.f().mnuDiminuisciVelocità_Click();
    EXPECT_EQ(s.app.player->rate(), low); // 0.5 - 0.1 is below the limit
    EXPECT_EQ(s.f().Label7->Caption(), QStringLiteral("0.5 x"));

    s.app.player->setRate(4.9);
    s.f().mnuAumentaVelocità_Click();
    EXPECT_EQ(s.app.player->rate(), 4.9); // the present rate is tested
    s.app.player->setRate(4.8999999);
    s.f().mnuAumentaVelocità_Click();
    EXPECT_NEAR(s.app.player->rate(), 4.9999999, 1e-9);
    EXPECT_EQ(s.f().Label7->Caption(), QStringLiteral("4.99 x"));

    s.app.player->setRate(1.1000000000000002);
    s.f().mnuAumentaVelocità_Click();
    EXPECT_EQ(s.f().Label7->Caption(), QStringLiteral("1.2 x"));
}

TEST(Speed, StepsAccumulateFromNormalToTheTop)
{
    Started s;
    for (int i = 0; i < 60; ++i)
        s.f().mnuAumentaVelocità_Click();
    EXPECT_GE(s.app.player->rate(), 4.9);
    EXPECT_LT(s.app.player->rate(), 5.01);
    for (int i = 0; i < 60; ++i)
        s.f().mnuDiminuisciVelocità_Click();
    EXPECT_GE(s.app.player->rate(), 0.5 - 1e-9);
    EXPECT_LT(s.app.player->rate(), 0.6);
}
