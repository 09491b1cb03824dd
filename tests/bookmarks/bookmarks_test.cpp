// Bookmarks in the running program on fakes: the file read when a media
// opens and written when it is left, the bookmark window and its commands,
// and the exit. The line format itself is tested in bookmark_file_test.

#include "TestApp.h"
#include "WithForm4.h"

#include "bookmarks/BookmarkFile.h"
#include "bookmarks/Form3.h"
#include "dictation/Form4.h"
#include "editor/Form2.h"
#include "player/Form1.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <algorithm>
#include <gtest/gtest.h>

namespace {

QString line(const char *time, const char *name)
{
    return BookmarkFile::line(QString::fromUtf8(time), QString::fromUtf8(name));
}

QByteArray fileOf(const QStringList &lines)
{
    return (lines.join(QStringLiteral("\r\n")) + QStringLiteral("\r\n")).toUtf8();
}

const QStringList ABC = {line("00:00:10", "A"), line("00:00:20", "B"), line("00:00:30", "C")};

// The program with the shipped English texts, smart play off.
struct Marks
{
    TestApp app;
    QString media;

    Marks()
    {
        app.folder.setSettingsLine(23, QStringLiteral("0"));
        EXPECT_TRUE(app.start());
    }
    Form1 &f() { return app.form1(); }
    AppContext &ctx() { return app.ctx(); }
    Form3 *window() { return ctx().existingForm3(); }
    QString markFile() { return QStringLiteral("Bookmarks/") + BookmarkFile::fileName(media); }
    QByteArray saved() { return app.folder.read(markFile()); }

    // Opens a media whose bookmark file holds `bytes` (none when empty).
    void open(const QString &name = QStringLiteral("lesson.wav"), const QByteArray &bytes = {}, double seconds = 600)
    {
        media = app.mediaFile(name, seconds);
        if (!bytes.isEmpty())
            app.folder.write(markFile(), bytes);
        f().ApriMedia(media);
    }
    // Paused at `seconds` exactly.
    void pauseAt(double seconds)
    {
        if (f().cmdPlay->Tag == ctx().Lingua(8))
            f().cmdPlay_Click();
        app.player->setCurrentPosition(seconds);
    }
    // Adds a bookmark through the player's command and the dialog; false
    // when the dialog refused it (and was cancelled).
    bool add(const QString &name)
    {
        bool added = false;
        EXPECT_TRUE(withForm4([&] { f().mnuAddBM_Click(); }, [&](Form4 &dialog) {
            dialog.Text1->setText(name);
            dialog.Command1->click();
            added = dialog.isUnloaded();
        }));
        return added;
    }
    // The table up to its first empty entry.
    QStringList table()
    {
        const auto &t = ctx().BookMark;
        return QStringList(t.begin(), std::find(t.begin(), t.end(), QString()));
    }
    QStringList seeks() { return app.player->log.filter(QStringLiteral("seek ")); }
    void exit() { f().mnuEsci_Click(); }
};

} // namespace

TEST(Bookmarks, AMediaWithoutBookmarksWritesNoFile)
{
    Marks m;
    m.open(QStringLiteral("first.wav"));
    m.open(QStringLiteral("second.wav"));
    m.ctx().BookMark[0] = QStringLiteral("   "); // blanks count as empty
    m.exit();
    ASSERT_TRUE(m.ctx().processEnded());
    EXPECT_EQ(QDir(m.app.folder.file(QStringLiteral("Bookmarks"))).entryList(QDir::Files), QStringList());
}

TEST(Bookmarks, AFileOf502LinesLoads501AndTheWindowComesUpByItself)
{
    Marks m;
    QStringList lines;
    for (int i = 0; i < 502; ++i)
        lines << BookmarkFile::line(QStringLiteral("00:01"), QStringLiteral("n%1").arg(i));
    m.open(QStringLiteral("lesson.wav"), fileOf(lines));
    EXPECT_EQ(m.table(), lines.mid(0, 501));
    ASSERT_TRUE(m.window());
    EXPECT_TRUE(m.window()->isVisible());
    EXPECT_EQ(m.window()->List1->ListCount(), 501);
}

TEST(Bookmarks, AnOldLineIsMendedInFrontAndItsShortTailJumpsAsHours)
{
    Marks m;
    const QString old = QStringLiteral("12:30  Intro") + QString(BookmarkFile::TailLength, u' ') + QStringLiteral("12:30");
    m.open(QStringLiteral("long.wav"), fileOf({old}), 50000);
    ListBox *list = m.window()->List1;
    ASSERT_EQ(list->rows(), QStringList{QStringLiteral("00:12:30  Intro")});
    m.app.player->clearLog();
    list->doItemsLayout(); // the view lays its rows out late
    const QPoint at = list->visualItemRect(list->item(0)).center();
    // A double click as the system delivers it: press, release, double
    // click, release.
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, at);
    QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, at);
    QTest::mouseRelease(list->viewport(), Qt::LeftButton, {}, at);
    // "12:30" read by position: 12 hours, 30 minutes, 30 seconds.
    EXPECT_EQ(m.seeks(), QStringList{QStringLiteral("seek 45030")});

    m.exit(); // read and saved in the new form
    EXPECT_EQ(m.saved(), fileOf({QStringLiteral("00:") + old}));
}

TEST(Bookmarks, DeletingARowLeavesTheHiddenListAsItWas)
{
    Marks m;
    m.open(QStringLiteral("lesson.wav"), fileOf(ABC));
    Form3 *w = m.window();
    w->List1->setListIndex(0);
    w->Command2->click();
    EXPECT_EQ(w->List1->rows(), QStringList({QStringLiteral("00:00:20  B"), QStringLiteral("00:00:30  C")}));
    EXPECT_EQ(w->List2->rows(), ABC);
    EXPECT_EQ(m.table(), ABC.mid(0, 2));

    // Row 0 shows B, and jumps to A's time.
    m.app.player->clearLog();
    w->List1->setListIndex(0);
    w->List1_DblClick();
    EXPECT_EQ(m.seeks(), QStringList{QStringLiteral("seek 10")});

    // With every row deleted the table is empty and the file stays as it is.
    w->Command2->click();
    w->List1->setListIndex(0);
    w->Command2->click();
    EXPECT_EQ(m.table(), QStringList());
    m.exit();
    EXPECT_EQ(m.saved(), fileOf(ABC));
}

TEST(Bookmarks, AWindowLoadedOnlyByATouchGivesTheTableBackWhole)
{
    Marks m;
    m.open(QStringLiteral("lesson.wav"), fileOf(ABC));
    m.ctx().unloadForm3();
    m.f().Salva(); // reads the window's geometry, which loads it hidden
    ASSERT_TRUE(m.window());
    EXPECT_FALSE(m.window()->isVisible());
    m.ctx().unloadForm3();
    EXPECT_EQ(m.table(), ABC);
}

TEST(Bookmarks, TheSameSecondAndNameIsRefusedAnotherNameIsKept)
{
    Marks m;
    m.open();
    m.pauseAt(42.4);
    EXPECT_TRUE(m.add(QStringLiteral("x")));
    EXPECT_FALSE(m.add(QStringLiteral("x")));
    ASSERT_EQ(m.app.dialogs->messages.size(), 1);
    EXPECT_EQ(m.app.dialogs->messages[0].text, TogliAmp(m.ctx().Lingua(89)));
    EXPECT_TRUE(m.add(QStringLiteral("y")));
    EXPECT_EQ(m.table(), QStringList({line("00:42", "x"), line("00:42", "y")}));
}

TEST(Bookmarks, NextAndPreviousStopAtTheEndsAndOneSecondDoesNotMove)
{
    Marks m;
    m.open(QStringLiteral("lesson.wav"), fileOf({line("00:00:01", "start"), line("00:00:20", "B"), line("00:00:30", "C")}));
    const auto next = &Form1::mnuBMsuccessivo_Click, previous = &Form1::mnuBMprecedente_Click;
    const struct { const char *name; void (Form1::*command)(); int row; const char *seek; } steps[] = {
        {"previous with no row selected", previous, -1, nullptr},
        {"next selects row 0, at 1 s: no jump", next, 0, nullptr},
        {"next", next, 1, "seek 20"},
        {"next to the last row", next, 2, "seek 30"},
        {"next on the last row", next, 2, nullptr},
        {"previous", previous, 1, "seek 20"},
        {"previous to the first row", previous, 0, nullptr},
        {"previous on the first row", previous, 0, nullptr},
    };
    for (const auto &step : steps) {
        SCOPED_TRACE(step.name);
        m.app.player->clearLog();
        (m.f().*step.command)();
        EXPECT_EQ(m.window()->List1->ListIndex(), step.row);
        EXPECT_EQ(m.seeks(), step.seek ? QStringList{QString::fromLatin1(step.seek)} : QStringList());
    }
}

TEST(Bookmarks, AddingAtTheVeryEndRewindsAndPlaysBeforeTheDialog)
{
    Marks m;
    m.open(QStringLiteral("short.wav"), {}, 180);
    m.pauseAt(180);
    m.app.player->clearLog();
    QStringList logAtDialog;
    ASSERT_TRUE(withForm4([&] { m.f().mnuAddBM_Click(); }, [&](Form4 &dialog) {
        logAtDialog = m.app.player->log;
        dialog.Text1->setText(QStringLiteral("here"));
        dialog.Command1->click();
    }));
    EXPECT_EQ(logAtDialog, QStringList({QStringLiteral("seek 0"), QStringLiteral("pause"), QStringLiteral("play")}));
    EXPECT_EQ(m.window()->List1->rows(), QStringList{QStringLiteral("00:00:00  here")});
}

// The file's round trip is in AnOldLineIsMendedInFront... and in
// BookmarkFile.LinesAreBuiltAndReadBack.
TEST(Bookmarks, ThreeAddedAreSortedAndSavedAtTheExit)
{
    Marks m;
    m.open(QStringLiteral("talk.wav"));
    for (const auto &[at, name] : {std::pair{20.0, "b"}, std::pair{5.0, "a"}, std::pair{40.0, "c"}}) {
        m.pauseAt(at);
        ASSERT_TRUE(m.add(QString::fromUtf8(name)));
    }
    ASSERT_TRUE(m.window());
    EXPECT_EQ(m.window()->List1->rows(),
              QStringList({QStringLiteral("00:00:05  a"), QStringLiteral("00:00:20  b"), QStringLiteral("00:00:40  c")}));
    m.exit();
    EXPECT_EQ(m.saved(), fileOf({line("00:05", "a"), line("00:20", "b"), line("00:40", "c")}));
}

TEST(Bookmarks, CtrlMNamesABookmarkWithRealKeysAndF8HidesTheWindow)
{
    Marks m;
    m.open();
    m.pauseAt(83);
    m.app.form2().hide();
    QApplication::setActiveWindow(&m.f());
    m.f().activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&m.f()));

    ASSERT_TRUE(withForm4([&] { QTest::keyClick(&m.f(), Qt::Key_M, Qt::ControlModifier); }, [&](Form4 &dialog) {
        QTest::keyClicks(dialog.Text1, QStringLiteral("chapter one"));
        QTest::keyClick(dialog.Text1, Qt::Key_Return);
        EXPECT_TRUE(dialog.isUnloaded());
    }));
    EXPECT_EQ(m.table(), QStringList{line("01:23", "chapter one")});
    ASSERT_TRUE(m.window());
    EXPECT_TRUE(m.window()->isVisible());

    QApplication::setActiveWindow(&m.f());
    QTest::keyClick(&m.f(), Qt::Key_F8);
    EXPECT_FALSE(m.window()->isVisible());
    EXPECT_EQ(m.f().mnuBookMark->text(), m.ctx().Lingua(84));
    QTest::keyClick(&m.f(), Qt::Key_F8);
    EXPECT_TRUE(m.window()->isVisible());
    // The frame's close button unloads the window, once the close is over.
    m.window()->close();
    QCoreApplication::processEvents();
    EXPECT_EQ(m.window(), nullptr);
    EXPECT_EQ(m.f().mnuBookMark->text(), m.ctx().Lingua(84));
}
