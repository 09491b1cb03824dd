// The start of the program and its exit: which language, which windows,
// what the settings file gives, and that the settings go back to disk.

#include "TestApp.h"

#include "editor/Form2.h"
#include "lang/LanguageFile.h"
#include "player/Form1.h"

#include <QAction>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <functional>
#include <gtest/gtest.h>

namespace {

QStringList numberedLines(int count)
{
    QStringList lines;
    for (int i = 0; i < count; ++i)
        lines.append(QStringLiteral("%1entry %1").arg(i, 3, 10, QLatin1Char('0')));
    return lines;
}

QByteArray crlf(const QStringList &lines)
{
    return (lines.join(QStringLiteral("\r\n")) + QStringLiteral("\r\n")).toUtf8();
}

LanguageTable english(const ProgramFolder &folder)
{
    LanguageTable table;
    LanguageFile::load(folder.file(QStringLiteral("Files/Lang/English.lng")), table);
    return table;
}

} // namespace

TEST(Main, ChoosesTheLanguageByTheCountrysEnglishNameAndStoresItAtExit)
{
    struct Case { const char *country; const char *file; };
    // Two letters of the English country name decide; most rows meant for
    // other countries never match, which is how the choice has always been.
    const Case cases[] = {
        {"Italy", "Italiano.lng"},  {"Hungary", "Hungarian.lng"}, {"Russia", "Russian.lng"},
        {"France", "Français.lng"}, {"Brazil", "Brazilian.lng"},  {"Spain", "English.lng"},
        {"Sweden", "English.lng"},  {"Estonia", "Spanish.lng"},    {"United States", "English.lng"},
        {"Portugal", "English.lng"},
    };
    for (const Case &c : cases) {
        TestApp app;
        app.folder.setSettingsLine(1, QString());
        app.system->country = QString::fromUtf8(c.country);
        ASSERT_TRUE(app.start()) << c.country;
        EXPECT_EQ(app.ctx().FileLingua, QString::fromUtf8(c.file)) << c.country;
        app.form1().mnuEsci_Click();
        EXPECT_TRUE(app.ctx().processEnded());
        EXPECT_EQ(app.folder.settingsLines().value(0), QString::fromUtf8(c.file)) << c.country;
    }
}

TEST(Main, MissingFilesAndOverlongLanguageFilesEndTheStartWithTheFatalBox)
{
    struct Case
    {
        const char *what;
        std::function<void(ProgramFolder &)> prepare;
        const char *description;
    };
    const Case cases[] = {
        {"no settings file", [](ProgramFolder &f) { f.remove(QStringLiteral("Files/Quillmere.ini")); }, "File not found"},
        {"an empty settings file", [](ProgramFolder &f) { f.write(QStringLiteral("Files/Quillmere.ini"), {}); },
         "Input past end of file"},
        {"a folder in place of the settings file",
         [](ProgramFolder &f) {
             f.remove(QStringLiteral("Files/Quillmere.ini"));
             QDir().mkpath(f.file(QStringLiteral("Files/Quillmere.ini")));
         },
         "Path/File access error"},
        {"no language file", [](ProgramFolder &f) { f.setSettingsLine(1, QStringLiteral("Missing.lng")); },
         "File not found"},
        {"a language in a missing folder", [](ProgramFolder &f) { f.setSettingsLine(1, QStringLiteral("x/M.lng")); },
         "Path not found"},
        {"152 language lines",
         [](ProgramFolder &f) {
             f.write(QStringLiteral("Files/Lang/Long.lng"), crlf(numberedLines(152)));
             f.setSettingsLine(1, QStringLiteral("Long.lng"));
         },
         "Subscript out of range"},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.what);
        TestApp app;
        c.prepare(app.folder);
        EXPECT_FALSE(app.start());
        EXPECT_TRUE(app.ctx().processEnded());
        ASSERT_EQ(app.dialogs->messages.size(), 1);
        EXPECT_EQ(app.dialogs->messages[0].title, QStringLiteral("Reg Error"));
        EXPECT_EQ(app.dialogs->messages[0].text,
                  QStringLiteral("Lib OCX -> Reg ERROR!\r") + QString::fromUtf8(c.description));
        EXPECT_EQ(app.dialogs->messages[0].style, 48);
        EXPECT_EQ(app.ctx().form1(), nullptr);
    }
    {
        // 151 lines is the most a language file may have.
        TestApp app;
        QStringList lines = numberedLines(151);
        const LanguageTable en = english(app.folder);
        for (int i = 0; i < 136; ++i)
            lines[i] = QStringLiteral("%1").arg(i, 3, 10, QLatin1Char('0')) + en(i);
        app.folder.write(QStringLiteral("Files/Lang/Long.lng"), crlf(lines));
        app.folder.setSettingsLine(1, QStringLiteral("Long.lng"));
        EXPECT_TRUE(app.start());
        EXPECT_EQ(app.ctx().Lingua(150), QStringLiteral("entry 150"));
    }
}

TEST(Main, ASecondInstanceIsRefusedWithTheRunningNotice)
{
    TestApp app;
    app.system->anotherInstance = true;
    EXPECT_FALSE(app.start());
    EXPECT_TRUE(app.ctx().processEnded());
    const LanguageTable en = english(app.folder);
    ASSERT_EQ(app.dialogs->messages.size(), 1);
    EXPECT_EQ(app.dialogs->messages[0].text, TogliAmp(en(0)));
    EXPECT_EQ(app.dialogs->messages[0].title, TogliAmp(en(1)));
    EXPECT_EQ(app.dialogs->messages[0].style, 48);
}

TEST(FormLoad, SettingsLinesTakeEffectWithTheirOwnRules)
{
    struct Case {
        int line;
        const char *value;
        std::function<void(TestApp &)> check;
    };
    const Case cases[] = {
        {21, "2", [](TestApp &a) { EXPECT_EQ(a.ctx().TempoPlay, 7); }},
        {22, "1", [](TestApp &a) { EXPECT_EQ(a.ctx().TempoPause, 7); }},
        {21, "40", [](TestApp &a) { EXPECT_EQ(a.ctx().TempoPlay, 40); }},
        {4, "2.5", [](TestApp &a) { EXPECT_EQ(a.ctx().SecSalto, 2); }},
        {5, "3.5", [](TestApp &a) { EXPECT_EQ(a.ctx().SecIndietro, 4); }},
        {5, "99999", [](TestApp &a) { EXPECT_EQ(a.ctx().SecIndietro, 0); }},
        {23, "2", [](TestApp &a) {
             EXPECT_TRUE(a.form1().mnuSmartPlay->isChecked());
             EXPECT_TRUE(a.form1().imgDetta->pictureFile().endsWith(QStringLiteral("detta2.jpg")));
         }},
        {24, "2", [](TestApp &a) { EXPECT_FALSE(a.form1().mnuCheckUpdateStartup->isChecked()); }},
        {25, "1", [](TestApp &a) { EXPECT_TRUE(a.form1().mnuNoPlayOnWrite->isChecked()); }},
        {15, "", [](TestApp &a) { EXPECT_TRUE(a.form1().mnuPrimoPiano->isChecked()); }},
        {15, "yes", [](TestApp &a) { EXPECT_FALSE(a.form1().mnuPrimoPiano->isChecked()); }},
        {6, "1.0", [](TestApp &a) { EXPECT_TRUE(a.form1().mnuTitoloCompleto->isChecked()); }},
        {6, "2", [](TestApp &a) { EXPECT_FALSE(a.form1().mnuTitoloCompleto->isChecked()); }},
        {8, "1", [](TestApp &a) { EXPECT_FALSE(a.form2().isVisible()); }},
        // A top no position can take is skipped: the knob stays where
        // IniziaVolume put it.
        {3, "1e400", [](TestApp &a) { EXPECT_EQ(a.form1().Image1->Top(), 862); }},
    };
    for (const Case &c : cases) {
        TestApp app;
        app.folder.setSettingsLine(c.line, QString::fromUtf8(c.value));
        ASSERT_TRUE(app.start());
        SCOPED_TRACE(testing::Message() << "line " << c.line << " = \"" << c.value << '"');
        c.check(app);
    }
}

TEST(FormLoad, ACommaInTheMediaFolderMovesEveryLaterField)
{
    TestApp app;
    app.folder.setSettingsLine(7, QStringLiteral("/media/a,b"));
    app.folder.setSettingsLine(20, QStringLiteral("0"));
    app.folder.setSettingsLine(21, QStringLiteral("4"));
    app.folder.setSettingsLine(22, QStringLiteral("9"));
    ASSERT_TRUE(app.start());
    EXPECT_EQ(app.ctx().CartellaMedia, QStringLiteral("/media/a"));
    // Line 21 now feeds the pause time, line 20 the play time.
    EXPECT_EQ(app.ctx().TempoPlay, 7);
    EXPECT_EQ(app.ctx().TempoPause, 4);
}

TEST(FormLoad, SavedPositionsApplyOnlyWhenLines13And14DoNotAddUpToZero)
{
    struct Case { const char *l13; const char *l14; bool applied; };
    // A sum beyond 16 bits counts as not 0, whatever it would wrap to.
    const Case cases[] = {{"0", "0", false}, {"100", "-100", false}, {"9000", "4000", true},
                          {"32767", "1", true}, {"-32768", "-32768", true}};
    for (const Case &c : cases) {
        TestApp app;
        app.folder.setSettingsLine(11, QStringLiteral("1500"));
        app.folder.setSettingsLine(12, QStringLiteral("6000"));
        app.folder.setSettingsLine(13, QString::fromUtf8(c.l13));
        app.folder.setSettingsLine(14, QString::fromUtf8(c.l14));
        ASSERT_TRUE(app.start());
        EXPECT_EQ(app.form2().Left() == 1500 && app.form2().Top() == 6000, c.applied) << c.l13 << " " << c.l14;
        // The player lands at pixel (50, 50) at every start.
        EXPECT_EQ(app.form1().pos(), QPoint(50, 50));
    }
}

TEST(FormLoad, OnlyAQuotedCommandLineOpensTheFile)
{
    QTemporaryDir media;
    const QString path = media.path() + QStringLiteral("/a b.wav");
    {
        QFile f(path);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write("RIFF");
    }
    {
        TestApp app(u'"' + path + u'"');
        ASSERT_TRUE(app.start());
        EXPECT_EQ(app.player->URL(), path);
        EXPECT_EQ(app.form1().Label4->Tag, path);
        EXPECT_EQ(app.form1().cmdPlay->Tag, app.ctx().Lingua(8));
        EXPECT_TRUE(app.dialogs->messages.isEmpty());
    }
    {
        TestApp app(path);
        ASSERT_TRUE(app.start());
        // Opened as it came, closed again, and then given the path without
        // its first and last letter, which names no file.
        EXPECT_TRUE(app.player->log.contains(QStringLiteral("url ") + path));
        EXPECT_EQ(app.player->URL(), QString());
        ASSERT_EQ(app.dialogs->messages.size(), 1);
        EXPECT_EQ(app.dialogs->messages[0].text, TogliAmp(app.ctx().Lingua(98)));
        EXPECT_FALSE(app.form1().cmdPlay->isEnabled());
    }
}

TEST(Exit, EveryWayOutWritesTheSettingsBackInTwentyFiveLines)
{
    const std::function<void(TestApp &)> ways[] = {
        [](TestApp &a) { a.form1().mnuEsci_Click(); },
        [](TestApp &a) { QTest::keyClick(&a.form1(), Qt::Key_Q, Qt::ControlModifier); },
        [](TestApp &a) { QTest::keyClick(&a.form1(), Qt::Key_Escape); },
        [](TestApp &a) { a.form1().close(); },
    };
    int n = 0;
    for (const auto &way : ways) {
        TestApp app;
        app.folder.setSettingsLine(4, QStringLiteral("0"));
        ASSERT_TRUE(app.start());
        app.form2().hide();
        QApplication::setActiveWindow(&app.form1());
        app.form1().activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&app.form1()));
        app.ctx().SecSalto = 13;
        way(app);
        SCOPED_TRACE(n++);
        EXPECT_TRUE(app.ctx().processEnded());
        const QStringList lines = app.folder.settingsLines();
        EXPECT_EQ(lines.size(), 25);
        EXPECT_EQ(lines.value(3), QStringLiteral("13"));
        EXPECT_EQ(lines.value(7), QStringLiteral("1")); // editor hidden
    }
}
