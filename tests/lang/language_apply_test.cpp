// Loading a language table and applying it to the windows at run time.

#include "TestApp.h"

#include "bookmarks/Form3.h"
#include "editor/Form2.h"
#include "lang/LanguageFile.h"
#include "player/Form1.h"

#include <QAction>
#include <QMenu>
#include <gtest/gtest.h>

namespace {

LanguageTable loadFile(const ProgramFolder &folder, const QString &name)
{
    LanguageTable table;
    LanguageFile::load(folder.file(QStringLiteral("Files/Lang/") + name), table);
    return table;
}

QStringList fileLines(const ProgramFolder &folder, const QString &name)
{
    QString text = QString::fromUtf8(folder.read(QStringLiteral("Files/Lang/") + name));
    QStringList lines = text.split(QStringLiteral("\r\n"));
    if (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast();
    return lines;
}

QByteArray crlf(const QStringList &lines)
{
    return (lines.join(QStringLiteral("\r\n")) + QStringLiteral("\r\n")).toUtf8();
}

} // namespace

TEST(LanguageFile, LinesGiveEntriesFromTheirFourthCharacter)
{
    EXPECT_EQ(LanguageFile::entryOfLine(QStringLiteral("003Apri")), QStringLiteral("Apri"));
    EXPECT_EQ(LanguageFile::entryOfLine(QStringLiteral("003")), QString());
    EXPECT_EQ(LanguageFile::entryOfLine(QStringLiteral("03")), QString());
    EXPECT_EQ(LanguageFile::entryOfLine(QString()), QString());
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
    TestApp app;
    ASSERT_TRUE(app.start());
    const LanguageTable it = loadFile(app.folder, QStringLiteral("Italiano.lng"));
    ASSERT_FALSE(it(3).isEmpty());

    app.dialogs->answerFile(QStringLiteral("/somewhere/Lang/other/Lang/Italiano.lng"));
    app.form1().mnuLingua_Click();

    const FileDialogRequest &r = app.dialogs->fileDialogs.last();
    const LanguageTable en = loadFile(app.folder, QStringLiteral("English.lng"));
    EXPECT_EQ(r.title, en(15).left(en(15).size() - 3));
    EXPECT_EQ(r.filter, r.title + QChar(0) + QStringLiteral("*.lng"));
    EXPECT_EQ(r.defaultExtension, QStringLiteral("lng"));
    EXPECT_EQ(r.initialFolder, app.folder.path() + QStringLiteral("/Files/Lang"));

    // The last "/Lang/" decides, and the file comes from the program folder.
    EXPECT_EQ(app.ctx().FileLingua, QStringLiteral("Italiano.lng"));
    Form1 &f = app.form1();
    EXPECT_EQ(f.mnuApri->text(), it(3));
    EXPECT_EQ(f.mnuLingua->text(), QStringLiteral("&") + it(15));
    EXPECT_EQ(f.mnuTempoPlay->text(), it(125) + QStringLiteral("..."));
    EXPECT_EQ(f.cmdPlay->toolTip(), QStringLiteral(" ") + it(78) + QStringLiteral(" "));
    EXPECT_EQ(f.cmdPlay->accessibleName(), it(78).trimmed());
    EXPECT_EQ(f.cmdAvanz->Tag, it(10) + QStringLiteral(" ->"));
    EXPECT_EQ(app.form2().mnuTimeStamp->text(), it(134));
    EXPECT_EQ(app.ctx().NomeDocumento, it(97) + u' ');
    EXPECT_EQ(app.folder.settingsLines().value(0), QStringLiteral("Italiano.lng"));
}

TEST(Language, APathOutsideAnyLangFolderOrACancelReloadsTheSameLanguage)
{
    for (const QString &answer : {QStringLiteral("/home/user/Italiano.lng"), QString()}) {
        TestApp app;
        ASSERT_TRUE(app.start());
        app.form1().mnuApri->setText(QStringLiteral("changed"));
        app.dialogs->answerFile(answer);
        app.form1().mnuLingua_Click();
        EXPECT_EQ(app.ctx().FileLingua, QStringLiteral("English.lng"));
        // The language is applied and saved all the same.
        EXPECT_EQ(app.form1().mnuApri->text(), app.ctx().Lingua(3));
        EXPECT_EQ(app.folder.settingsLines().value(0), QStringLiteral("English.lng"));
    }
}

TEST(Language, Entry133SwitchesTheStartUpCheckCommandAndIsNeverItsCaption)
{
    struct Case { const char *value; bool enabled; };
    for (const Case c : {Case{"False", false}, Case{"0", false}, Case{"True", true}, Case{"sometimes", true}}) {
        TestApp app;
        QStringList lines = fileLines(app.folder, QStringLiteral("English.lng"));
        ASSERT_GE(lines.size(), 136);
        lines[133] = QStringLiteral("133") + QString::fromLatin1(c.value);
        app.folder.write(QStringLiteral("Files/Lang/Test.lng"), crlf(lines));
        app.folder.setSettingsLine(1, QStringLiteral("Test.lng"));
        ASSERT_TRUE(app.start());
        EXPECT_EQ(app.form1().mnuCheckUpdateStartup->isEnabled(), c.enabled) << c.value;
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
    f.ApplicaLingua();
    EXPECT_EQ(f.mnuMostraNascondi->text(), app.ctx().Lingua(116));
    EXPECT_EQ(f.mnuBookMark->text(), app.ctx().Lingua(85));
    // Whatever the player is doing, the play word goes to the toggle.
    f.cmdPlay->Tag = app.ctx().Lingua(8);
    f.ApplicaLingua();
    EXPECT_EQ(f.cmdPlay->Tag, app.ctx().Lingua(7));
}
