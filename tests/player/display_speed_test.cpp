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

using namespace Qt::StringLiterals;

namespace {

struct Started
{
    TestApp app;
    Started()
    {
        app.folder.setSettingsLine(6, u"0"_s);
        EXPECT_TRUE(app.start());
    }
    Form1 &f() { return app.form1(); }
};

} // namespace

// The caption's font shrinks with its length; ampersands are doubled so
// that they show, and a path without a separator shows whole.
TEST(Display, TheTitleShowsTheFileNameOrThePathAsItIs)
{
    Started s;
    for (const auto &[length, points] : {std::pair{20, 14}, {21, 11}, {44, 11}, {45, 9}}) {
        const QString name = QString(length - 4, u'n') + u".wav"_s;
        s.f().ApriMedia(s.app.mediaFile(name));
        EXPECT_EQ(s.f().Label4->Caption(), name);
        EXPECT_EQ(s.f().Label4->font().pointSize(), points) << length;
    }
    const QString path = s.app.mediaFile(u"Tom & Jerry.wav"_s);
    s.f().ApriMedia(path);
    EXPECT_EQ(s.f().Label4->Caption(), u"Tom && Jerry.wav"_s);
    EXPECT_EQ(s.f().Label4->text(), u"Tom & Jerry.wav"_s);
    s.f().mnuTitoloCompleto_Click();
    EXPECT_EQ(s.f().Label4->Caption(), QString(path).replace(u"&"_s, u"&&"_s));
    s.f().mnuTitoloCompleto->setChecked(false);
    s.f().Label4->Tag = u"bare-name.mp3"_s;
    s.f().MostraPath();
    EXPECT_EQ(s.f().Label4->Caption(), u"bare-name.mp3"_s);
}

TEST(Display, TheBarGrowsWithThePositionInWholeTwips)
{
    Started s;
    s.f().ApriMedia(s.app.mediaFile(u"a.wav"_s, 180));
    s.f().Label2->setWidth(3000);
    s.app.advance(90000);
    EXPECT_EQ(s.f().Shape1->Width(), 1500);
    EXPECT_EQ(s.f().Label2->Caption(), u"01:30 / 03:00"_s);
    s.app.advance(1000);
    EXPECT_EQ(s.f().Shape1->Width(), 1516); // 3000 / 180 * 91 = 1516.67, cut down
    // At position 0 the bar empties, and the tick writes the text itself.
    s.f().mnuStop_Click();
    s.f().Label2->setCaption(QString());
    s.f().Timer1_Timer();
    EXPECT_EQ(s.f().Shape1->Width(), 0);
    EXPECT_EQ(s.f().Label2->Caption(), u"0:00 / 03:00"_s);
}

TEST(Speed, TheRateMovesByTenthsBetweenTheTwoDifferentlyTestedLimits)
{
    Started s;
    // With no media the commands run all the same and the label appears.
    EXPECT_FALSE(s.f().Label7->isVisible());
    const struct { double from; bool faster; double want; const char *caption; } rows[] = {
        {1.0, true, 1.1, "1.1 x"},
        {0.6, false, 0.5, "0.5 x"},
        {0.5, false, 0.5, "0.5 x"},             // 0.5 - 0.1 is below the limit
        {4.9, true, 4.9, "4.9 x"},              // the present rate is tested: it stays
        {4.8999999, true, 4.9999999, "4.99 x"}, // the new rate is not
        {1.1000000000000002, true, 1.2, "1.2 x"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(testing::Message() << row.from << (row.faster ? " faster" : " slower"));
        s.app.player->setRate(row.from);
        row.faster ? s.f().mnuAumentaVelocità_Click() : s.f().mnuDiminuisciVelocità_Click();
        EXPECT_NEAR(s.app.player->rate(), row.want, 1e-9);
        EXPECT_EQ(s.f().Label7->Caption(), QLatin1String(row.caption));
        // The mark keeps the next volume fade off the volume label's colour.
        EXPECT_EQ(s.f().Label7->Tag, u"1"_s);
    }
    EXPECT_TRUE(s.f().Label7->isVisibleTo(&s.f()));
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
    const QPoint rest(f.DettaLeft, f.DettaTop);
    QWidget *bare = f.centralWidget();
    const struct { QWidget *target; const char *stop, *play; bool dettaShifted; } steps[] = {
        {f.cmdStop, "stop2.jpg", "pause.jpg", false},
        {f.cmdPlay, "stop.jpg", "pause2.jpg", false},
        // The smart play button jumps instead of lighting; it leaves the
        // play button as it was.
        {f.imgDetta, "stop.jpg", "pause2.jpg", true},
        {bare, "stop.jpg", "pause.jpg", false},
    };
    for (const auto &step : steps) {
        SCOPED_TRACE(step.target->objectName().toStdString());
        QTest::mouseMove(step.target, step.target == bare ? QPoint(2, 2) : step.target->rect().center());
        EXPECT_EQ(picture(f.cmdStop), QLatin1String(step.stop));
        EXPECT_EQ(picture(f.cmdPlay), QLatin1String(step.play));
        EXPECT_EQ(QPoint(f.imgDetta->Left(), f.imgDetta->Top()), step.dettaShifted ? rest + QPoint(20, 20) : rest);
    }
    // An open under a resting pointer shows the new state unlit, and the
    // next move lights it again.
    QTest::mouseMove(f.cmdPlay, f.cmdPlay->rect().center());
    f.ApriMedia(app.mediaFile(u"other.wav"_s));
    EXPECT_EQ(picture(f.cmdPlay), u"pause.jpg"_s);
    QTest::mouseMove(f.cmdPlay, f.cmdPlay->rect().center() + QPoint(1, 1));
    EXPECT_EQ(picture(f.cmdPlay), u"pause2.jpg"_s);
}

TEST(VolumeAndSeekBars, ClicksAtTheEndsOfTheBarsGiveTheLimits)
{
    Started s;
    s.f().Image2_MouseUp(1, 0);
    EXPECT_EQ(s.f().Image1->Top(), s.f().Image2->Top());
    EXPECT_EQ(s.f().Label5->Caption(), u" 100%"_s);
    EXPECT_EQ(s.app.player->volume(), 100);
    s.f().Image2_MouseUp(1, 1200);
    EXPECT_EQ(s.f().Image1->Top(), 1365);
    EXPECT_EQ(s.f().Label5->Caption(), u" 0%"_s);
    EXPECT_EQ(s.app.player->volume(), 0);
    s.f().Salva();
    EXPECT_EQ(s.app.folder.settingsLines().value(1), u"0"_s);
    EXPECT_EQ(s.app.folder.settingsLines().value(2), u"1365"_s);
    // The fade runs back to white in 18 ticks and stops.
    s.app.advance(1800);
    EXPECT_EQ(s.f().Timer3->interval(), 0);
    EXPECT_TRUE(s.f().Label5->styleSheet().contains(u"255, 255, 255"_s));
}

TEST(VolumeAndSeekBars, AClickOnThePositionBarSeeksAndAPausedPlayerStaysPausedSteppedBack)
{
    Started s;
    s.app.player->clearLog();
    s.f().Label2_MouseUp(100); // no media: nothing happens
    EXPECT_TRUE(s.app.player->log.isEmpty());
    s.f().ApriMedia(s.app.mediaFile(u"a.wav"_s, 180));
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
    EXPECT_EQ(s.app.player->log.value(0), u"seek 180"_s);
}

TEST(Accessibility, EveryControlOfThePlayerThatTakesTheMouseHasAName)
{
    Started s;
    s.f().ApriMedia(s.app.mediaFile());
    const auto name = [](QWidget *w) { return QAccessible::queryAccessibleInterface(w)->text(QAccessible::Name); };
    int checked = 0;
    for (QWidget *w : s.f().findChildren<QWidget *>()) {
        // Neither class has a meta-object of its own: findChildren cannot tell them apart.
        const auto *box = dynamic_cast<PictureBox *>(w);
        const auto *label = dynamic_cast<CaptionLabel *>(w);
        if ((box && (box->onClick || box->onMouseUp || box->onMouseDown)) || (label && (label->onClick || label->onMouseUp))) {
            EXPECT_FALSE(name(w).trimmed().isEmpty()) << w->objectName().toStdString();
            ++checked;
        }
    }
    EXPECT_GE(checked, 10);
    // Labels whose text is the information are read as their current text,
    // and tool tips are names without their mnemonic marks.
    s.app.advance(1000);
    for (CaptionLabel *label : {s.f().Label2, s.f().Label4}) {
        EXPECT_FALSE(label->text().isEmpty());
        EXPECT_EQ(name(label), label->text());
    }
    s.f().cmdStop->setTip(u" &Stop "_s);
    EXPECT_EQ(name(s.f().cmdStop), u"Stop"_s);
    // The volume label's widest text fits.
    EXPECT_LE(s.f().Label5->fontMetrics().horizontalAdvance(u" 100%"_s), s.f().Label5->width());
}
