// The commands that lead out of the program: the targets handed to the
// desktop, the sound settings, and the about box with its scrolling panel and
// the windows it hides and brings back.

#include "TestApp.h"

#include "bookmarks/Form3.h"
#include "editor/Form2.h"
#include "outside/Version.h"
#include "outside/frmInformazioni.h"
#include "player/Form1.h"

#include <QFile>
#include <QTest>
#include <gtest/gtest.h>

TEST(Links, EveryTargetGoesToTheDesktopAndThePlayerStepsAside)
{
    // A target of the program folder is a file; anything else an address.
    const struct { const char *fileLingua; void (Form1::*command)(); const char *target; } rows[] = {
        {"English.lng", &Form1::mnuGuida_Click, "Files/Help-en.html"},
        {"ITALIANO.LNG", &Form1::mnuGuida_Click, "Files/Help-it.html"},
        {"Russian.lng", &Form1::mnuGuida_Click, "Files/Help-ru.html"},
        {"polish.lng", &Form1::mnuGuida_Click, "Files/Help-pl.html"},
        {"Nederlands.lng", &Form1::mnuGuida_Click, "Files/Help-en.html"},
        {"English.lng", &Form1::mnuVersioni_Click, "Versioni.txt"},
        {"English.lng", &Form1::mnuAggLingua_Click, "/quillmere-languages.html"},
    };
    TestApp app;
    ASSERT_TRUE(app.start());
    app.form1().mnuBookMark_Click();
    for (const auto &row : rows) {
        SCOPED_TRACE(std::string(row.fileLingua) + ' ' + row.target);
        app.ctx().FileLingua = QString::fromLatin1(row.fileLingua);
        app.form1().showNormal();
        app.ctx().existingForm3()->show();
        app.shell->files.clear();
        app.shell->urls.clear();
        (app.form1().*row.command)();
        const bool file = row.target[0] != '/';
        const QString target = QString::fromLatin1(row.target);
        EXPECT_EQ(app.shell->files, file ? QStringList{app.folder.file(target)} : QStringList());
        EXPECT_EQ(app.shell->urls, file ? QStringList() : QStringList{Outside::webPage(row.target)});
        EXPECT_TRUE(app.form1().windowState() & Qt::WindowMinimized);
        EXPECT_FALSE(app.ctx().existingForm3()->isVisible());
        // The page the team ships is there, in the folder the program lays down.
        EXPECT_TRUE(!file || QFile::exists(ProgramFolder::sourceDir() + QStringLiteral("/data/") + target));
    }
}

TEST(Links, F9StartsTheFirstInstalledSoundSettings)
{
    const struct { QStringList installed; QStringList commands; } rows[] = {
        {{}, {}},
        {{QStringLiteral("gnome-control-center")}, {QStringLiteral("gnome-control-center sound")}},
        {{QStringLiteral("mate-volume-control"), QStringLiteral("pavucontrol")}, {QStringLiteral("pavucontrol")}},
    };
    TestApp app;
    ASSERT_TRUE(app.start());
    app.form1().activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&app.form1()));
    for (const auto &row : rows) {
        SCOPED_TRACE(row.installed.join(u',').toStdString());
        app.shell->installed = row.installed;
        app.shell->commands.clear();
        QTest::keyClick(&app.form1(), Qt::Key_F9);
        EXPECT_EQ(app.shell->commands, row.commands);
    }
}

TEST(AboutBox, PanelHaltsWithItsEndInViewThenStartsAgainFromBelow)
{
    TestApp app;
    ASSERT_TRUE(app.start());
    QTest::mouseClick(app.form1().Image4, Qt::LeftButton); // the logo
    frmInformazioni *about = app.ctx().existingFormInformazioni();
    // Ticks every 10 ms from 2200; the halt at 2235 - 4155 = -1920 lasts 120
    // ticks; past -4155 the panel is below the well again.
    const struct { qint64 at; int top; } rows[] = {
        {10, 2190}, {4120, -1920}, {5320, -1920}, {5330, -1930},
        {7550, -4150}, {7560, 2200}, {12880, -1920}, {12890, -1930},
    };
    qint64 now = 0;
    for (const auto &row : rows) {
        app.advance(row.at - now);
        now = row.at;
        EXPECT_EQ(about->Picture2->Top(), row.top) << "at " << row.at << " ms";
    }
}

TEST(AboutBox, HidesTheOpenWindowsAndBringsBackTheSameOnes)
{
    const struct { bool editor; bool marks; std::function<void(frmInformazioni *)> close; } rows[] = {
        {false, true, [](frmInformazioni *about) { QTest::keyClick(about->Picture1, Qt::Key_Escape); }},
        {true, false, [](frmInformazioni *about) { QTest::mouseClick(about->lblTitle, Qt::LeftButton); }},
        {true, true, [](frmInformazioni *about) { QTest::mouseClick(about, Qt::LeftButton, {}, QPoint(5, 5)); }},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(testing::Message() << "editor " << row.editor << " marks " << row.marks);
        TestApp app;
        ASSERT_TRUE(app.start());
        if (app.form2().isVisible() != row.editor)
            app.form1().mnuMostraNascondi_Click();
        if (row.marks)
            app.form1().mnuBookMark_Click();

        app.form1().mnuInfo_Click();
        frmInformazioni *about = app.ctx().existingFormInformazioni();
        // Entry 19 keeps its trailing dots: the test looks at the front.
        EXPECT_EQ(about->windowTitle(), TogliAmp(app.ctx().Lingua(19)));
        EXPECT_EQ(about->lblVersion->Caption(), QStringLiteral("1.15.0.2"));
        // The address opens in the browser and the box stays.
        QTest::mouseClick(about->lblHomePage, Qt::LeftButton);
        EXPECT_EQ(app.shell->urls, QStringList{Outside::homePage()});
        EXPECT_FALSE(app.form1().isVisible());
        EXPECT_FALSE(app.form2().isVisible());
        EXPECT_FALSE(app.ctx().existingForm3() && app.ctx().existingForm3()->isVisible());

        row.close(about);
        EXPECT_EQ(app.ctx().existingFormInformazioni(), nullptr);
        EXPECT_TRUE(app.form1().isVisible());
        EXPECT_EQ(app.form2().isVisible(), row.editor);
        EXPECT_EQ(app.ctx().existingForm3() && app.ctx().existingForm3()->isVisible(), row.marks);
    }
}
