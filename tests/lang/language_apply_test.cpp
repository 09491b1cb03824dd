// Loading a language table and applying it to the windows at run time.

#include "TestApp.h"

#include "bookmarks/Form3.h"
#include "editor/Form2.h"
#include "lang/LanguageFile.h"
#include "player/Form1.h"

#include <QAction>
#include <gtest/gtest.h>

TEST(LanguageFile, LinesGiveEntriesFromTheirFourthCharacter)
{
    for (const char *line : {"003", "03", ""})
        EXPECT_EQ(LanguageFile::entryOfLine(QString::fromLatin1(line)), QString()) << line;
    EXPECT_EQ(LanguageFile::entryOfLine(QStringLiteral("xx-A & B")), QStringLiteral("A & B"));

    LanguageTable table;
    table.set(140, QStringLiteral("kept"));
    QStringList lines;
    for (int i = 0; i < 136; ++i)
        lines.append(QStringLiteral("%1text").arg(i, 3, 10, QLatin1Char('0')));
    EXPECT_EQ(LanguageFile::apply(lines, table), LanguageFile::Result::Loaded);
    EXPECT_EQ(table(135), QStringLiteral("text"));
    EXPECT_EQ(table(140), QStringLiteral("kept")); // a short file leaves the rest

    while (lines.size() < 152)
        lines.append(QStringLiteral("999late"));
    table.set(0, QString());
    EXPECT_EQ(LanguageFile::apply(lines, table), LanguageFile::Result::TooLong);
    EXPECT_EQ(table(150), QStringLiteral("late"));
    EXPECT_EQ(table(0), QStringLiteral("text"));
}

TEST(Language, ChangingTheLanguageAtRunTimeRewritesBothWindowsAndIsKept)
{
    // The last "/Lang/" decides, and the file comes from the program folder;
    // a path outside any Lang folder or a cancel reloads the same language.
    const std::pair<QString, const char *> rows[] = {{QStringLiteral("/somewhere/Lang/other/Lang/Italiano.lng"), "Italiano.lng"},
                                                     {QStringLiteral("/home/user/Italiano.lng"), "English.lng"},
                                                     {QString(), "English.lng"}};
    for (const auto &[answer, chosen] : rows) {
        SCOPED_TRACE(answer.toStdString());
        TestApp app;
        ASSERT_TRUE(app.start());
        app.form1().mnuApri->setText(QStringLiteral("changed"));
        app.dialogs->answerFile(answer);
        app.form1().mnuLingua_Click();

        LanguageTable en, it;
        LanguageFile::load(app.folder.file(QStringLiteral("Files/Lang/English.lng")), en);
        LanguageFile::load(app.folder.file(QStringLiteral("Files/Lang/") + QLatin1String(chosen)), it);
        const FileDialogRequest &r = app.dialogs->fileDialogs.last();
        EXPECT_EQ(r.title, en(15).chopped(3));
        EXPECT_EQ(r.filter, r.title + QChar(0) + QStringLiteral("*.lng"));
        EXPECT_EQ(r.initialFolder, app.folder.file(QStringLiteral("Files/Lang")));
        EXPECT_EQ(app.ctx().FileLingua, QLatin1String(chosen));
        EXPECT_EQ(app.folder.settingsLines().value(0), QLatin1String(chosen));
        Form1 &f = app.form1();
        EXPECT_EQ(f.mnuApri->text(), it(3));
        EXPECT_EQ(f.mnuLingua->text(), u'&' + it(15));
        EXPECT_EQ(f.mnuTempoPlay->text(), it(125) + QStringLiteral("..."));
        EXPECT_EQ(app.form2().mnuTimeStamp->text(), it(134));
        EXPECT_EQ(app.ctx().NomeDocumento, it(97) + u' ');
    }
}

TEST(Language, Entry133SwitchesTheStartUpCheckCommandAndIsNeverItsCaption)
{
    for (const auto &[value, enabled] : {std::pair{"False", false}, std::pair{"0", false}, std::pair{"sometimes", true}}) {
        TestApp app;
        QStringList lines = QString::fromUtf8(app.folder.read(QStringLiteral("Files/Lang/English.lng"))).split(QStringLiteral("\r\n"));
        ASSERT_GE(lines.size(), 136);
        lines[133] = QStringLiteral("133") + QLatin1String(value);
        app.folder.write(QStringLiteral("Files/Lang/Test.lng"), lines.join(QStringLiteral("\r\n")).toUtf8());
        app.folder.setSettingsLine(1, QStringLiteral("Test.lng"));
        ASSERT_TRUE(app.start());
        EXPECT_EQ(app.form1().mnuCheckUpdateStartup->isEnabled(), enabled) << value;
        EXPECT_EQ(app.form1().mnuCheckUpdateStartup->text(), QStringLiteral("Controlla aggiornamenti all'avvio"));
    }
}

TEST(Language, CaptionsThatTellTheStateFollowTheWindows)
{
    TestApp app;
    app.folder.setSettingsLine(8, QStringLiteral("1")); // editor hidden
    ASSERT_TRUE(app.start());
    Form1 &f = app.form1();
    EXPECT_EQ(f.mnuMostraNascondi->text(), app.ctx().Lingua(86));
    EXPECT_EQ(f.mnuBookMark->text(), app.ctx().Lingua(84));
    app.form2().show();
    app.ctx().form3()->show();
    f.cmdPlay->Tag = app.ctx().Lingua(8);
    f.ApplicaLingua();
    EXPECT_EQ(f.mnuMostraNascondi->text(), app.ctx().Lingua(116));
    EXPECT_EQ(f.mnuBookMark->text(), app.ctx().Lingua(85));
    // Whatever the player is doing, the play word goes to the toggle.
    EXPECT_EQ(f.cmdPlay->Tag, app.ctx().Lingua(7));
}
