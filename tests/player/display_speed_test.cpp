// The title line, the position text and bar, the speed commands, and the
// skin's buttons under a real mouse pointer: moves go to the window as the
// window system delivers them, and the toolkit decides which control gets
// them.

#include "TestApp.h"

#include "player/Form1.h"

#include <QAccessible>
#include <QAction>
#include <QFileInfo>
#include <QTest>
#include <cmath>
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
    const struct
    {
        double from;
        bool faster;
        double want;
        const char *caption;
    } rows[] = {
        {1.0, true, 1.1, "1.1 x"},
        {0.6, false, 0.5, "0.5 x"},
        {0.5, false, 0.5, "0.5 x"},             // 0.5 - 0.1 is below the limit
        {4.9, true, 4.9, nullptr},              // the present rate is tested
        {4.8999999, true, 4.9999999, "4.99 x"}, // the new rate is not
        {1.1000000000000002, true, 1.2, "1.2 x"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(testing::Message() << row.from << (row.faster ? " faster" : " slower"));
        s.app.player->setRate(row.from);
        row.faster ? s.f().mnuAumentaVelocità_Click() : s.f().mnuDiminuisciVelocità_Click();
        EXPECT_NEAR(s.app.player->rate(), row.want, 1e-9);
        if (row.caption)
            EXPECT_EQ(s.f().Label7->Caption(), QLatin1String(row.caption));
        EXPECT_EQ(s.f().Label7->Tag, QStringLiteral("1"));
    }
}

TEST(Hover, ButtonsLightUnderThePointerAndTheBareWindowPutsThemBack)
{
    TestApp app;
    ASSERT_TRUE(app.start());
    Form1 &f = app.form1();
    // The transport buttons take the mouse while a file is open.
    f.ApriMedia(app.mediaFile());
    f.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&f));
    const auto picture = [](PictureBox *box) { return QFileInfo(box->pictureFile()).fileName(); };
    const auto over = [](QWidget *w) { QTest::mouseMove(w, w->rect().center()); };
    const QPoint rest(f.DettaLeft, f.DettaTop);
    const auto dettaPlace = [&] { return QPoint(f.imgDetta->Left(), f.imgDetta->Top()); };

    struct Step
    {
        QWidget *target;
        const char *stop, *play;
        bool dettaShifted;
    };
    QWidget *bare = f.centralWidget();
    const Step steps[] = {
        {f.cmdStop, "stop2.jpg", "pause.jpg", false},
        {f.cmdPlay, "stop.jpg", "pause2.jpg", false},
        // The smart play button jumps instead of lighting; it leaves the
        // play button as it was.
        {f.imgDetta, "stop.jpg", "pause2.jpg", true},
        {bare, "stop.jpg", "pause.jpg", false},
    };
    for (const Step &step : steps) {
        SCOPED_TRACE(step.target->objectName().toStdString());
        if (step.target == bare)
            QTest::mouseMove(bare, QPoint(2, 2));
        else
            over(step.target);
        EXPECT_EQ(picture(f.cmdStop), QLatin1String(step.stop));
        EXPECT_EQ(picture(f.cmdPlay), QLatin1String(step.play));
        EXPECT_EQ(dettaPlace(), step.dettaShifted ? rest + QPoint(20, 20) : rest);
    }
}

// What an open does to a button that the pointer rests on.
TEST(Hover, AfterAnOpenTheButtonShowsTheNewStateUntilTheMouseMoves)
{
    Started s;
    s.f().ApriMedia(s.app.mediaFile());
    s.f().cmdPlay_Click(); // paused
    s.app.advance(100);
    EXPECT_TRUE(s.f().cmdPlay->pictureFile().endsWith(QStringLiteral("pause.jpg")));
    s.f().Form_MouseMove();
    s.f().cmdPlay_Click();
    s.f().cmdPlay_Click();
    EXPECT_TRUE(s.f().cmdPlay->pictureFile().endsWith(QStringLiteral("play.jpg")));

    // An open with the mouse resting on the button clears the flag, so the
    // next move lights the picture of the new state.
    s.f().cmdPlay_MouseMove();
    EXPECT_EQ(s.app.ctx().FlagHoverSkin, 1);
    s.f().ApriMedia(s.app.mediaFile());
    EXPECT_EQ(s.app.ctx().FlagHoverSkin, 0);
    s.f().cmdPlay_MouseMove();
    EXPECT_TRUE(s.f().cmdPlay->pictureFile().endsWith(QStringLiteral("pause2.jpg")));
}

TEST(VolumeAndSeekBars, ClicksAtTheEndsOfTheBarsGiveTheLimits)
{
    Started s;
    s.f().Image2_MouseUp(1, 0);
    EXPECT_EQ(s.f().Image1->Top(), s.f().Image2->Top());
    EXPECT_EQ(s.f().Label5->Caption(), QStringLiteral(" 100%"));
    EXPECT_EQ(s.app.player->volume(), 100);
    s.f().Image2_MouseUp(1, 1200);
    EXPECT_EQ(s.f().Image1->Top(), 1365);
    EXPECT_EQ(s.f().Label5->Caption(), QStringLiteral(" 0%"));
    EXPECT_EQ(s.app.player->volume(), 0);
    s.f().Salva();
    EXPECT_EQ(s.app.folder.settingsLines().value(1), QStringLiteral("0"));
    EXPECT_EQ(s.app.folder.settingsLines().value(2), QStringLiteral("1365"));
    // The fade runs back to white in 18 ticks and stops.
    s.app.advance(1800);
    EXPECT_EQ(s.f().Timer3->interval(), 0);
    EXPECT_EQ(s.f().FadeVolume, -15);
}

TEST(VolumeAndSeekBars, AClickOnThePositionBarSeeksAndAPausedPlayerStaysPausedSteppedBack)
{
    Started s;
    s.app.player->clearLog();
    s.f().Label2_MouseUp(100); // no media: nothing happens
    EXPECT_TRUE(s.app.player->log.isEmpty());
    s.f().ApriMedia(s.app.mediaFile(QStringLiteral("a.wav"), 180));
    s.app.ctx().SecIndietro = 3;
    const int width = s.f().Label2->Width();
    s.f().Label2_MouseUp(width / 2);
    EXPECT_DOUBLE_EQ(s.app.player->currentPosition(), std::floor(180.0 * (width / 2) / width));
    EXPECT_EQ(s.f().cmdPlay->Tag, s.app.ctx().Lingua(8)); // playing: no step back
    s.f().cmdPlay_Click();
    s.f().Label2_MouseUp(width / 3);
    EXPECT_EQ(s.f().cmdPlay->Tag, s.app.ctx().Lingua(7));
    EXPECT_DOUBLE_EQ(s.app.player->currentPosition(), std::floor(180.0 * (width / 3) / width) - 3);
    // At the very end the whole length is asked for.
    s.app.player->clearLog();
    s.f().Label2_MouseUp(width);
    EXPECT_EQ(s.app.player->log.value(0), QStringLiteral("seek 180"));
    s.f().Label2_MouseUp(0);
    EXPECT_DOUBLE_EQ(s.app.player->currentPosition(), 0.0);
}

TEST(Accessibility, EveryControlOfThePlayerThatTakesTheMouseHasAName)
{
    Started s;
    s.f().ApriMedia(s.app.mediaFile());
    int checked = 0;
    for (PictureBox *box : s.f().findChildren<PictureBox *>()) {
        if (!box->onClick && !box->onMouseUp && !box->onMouseDown)
            continue;
        QAccessibleInterface *a = QAccessible::queryAccessibleInterface(box);
        ASSERT_NE(a, nullptr);
        EXPECT_FALSE(a->text(QAccessible::Name).trimmed().isEmpty()) << box->objectName().toStdString();
        ++checked;
    }
    for (CaptionLabel *label : s.f().findChildren<CaptionLabel *>()) {
        if (!label->onMouseUp && !label->onClick)
            continue;
        EXPECT_FALSE(QAccessible::queryAccessibleInterface(label)->text(QAccessible::Name).isEmpty())
            << label->objectName().toStdString();
        ++checked;
    }
    EXPECT_GE(checked, 10);

    // Labels whose text is the information are read as their current text,
    // and tool tips are names without their mnemonic marks.
    s.app.advance(1000);
    for (CaptionLabel *label : {s.f().Label2, s.f().Label4}) {
        EXPECT_FALSE(label->text().isEmpty());
        EXPECT_EQ(QAccessible::queryAccessibleInterface(label)->text(QAccessible::Name), label->text());
    }
    // The volume label: white at rest, and its widest text fits.
    EXPECT_TRUE(s.f().Label5->styleSheet().contains(QStringLiteral("255, 255, 255")));
    EXPECT_LE(s.f().Label5->fontMetrics().horizontalAdvance(QStringLiteral(" 100%")), s.f().Label5->width());
    s.f().cmdStop->setTip(QStringLiteral(" &Stop "));
    EXPECT_EQ(QAccessible::queryAccessibleInterface(s.f().cmdStop)->text(QAccessible::Name), QStringLiteral("Stop"));
}
