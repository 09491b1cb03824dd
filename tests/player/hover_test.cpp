// The skin's buttons under a real mouse pointer: moves go to the window as
// the window system delivers them, and the toolkit decides which control
// gets them.

#include "TestApp.h"

#include "player/Form1.h"

#include <QFileInfo>
#include <QTest>
#include <gtest/gtest.h>

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
