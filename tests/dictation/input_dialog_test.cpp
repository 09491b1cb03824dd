// The small input dialog: how it tells its job from caption and prompt,
// the number rule and the bounds of the four seconds settings, go-to with
// its paused/playing difference, and the commands and keys that open and
// close it. Naming a bookmark is in the bookmark tests.

#include "DictationApp.h"

#include <QTest>

using namespace dictation;

namespace {

// Each setting's menu command, the variable it sets, the line of the
// settings file that keeps it, and the caption and prompt the command fills
// in from the language file, "&" taken out and the recommended value put in.
struct Job { void (Form1::*command)(); qint16 AppContext::*variable; int line; const char *caption, *prompt; };
const Job SecIndietro{&Form1::mnuSecIndietro_Click, &AppContext::SecIndietro, 5, "Secondi indietro",
                      "Secondi indietro a ogni pausa:"},
    SecSalto{&Form1::mnuSalto_Click, &AppContext::SecSalto, 4, "Salto", "Secondi di ogni salto:"},
    TempoPlay{&Form1::mnuTempoPlay_Click, &AppContext::TempoPlay, 21, "Play intelligente",
              "Tempo di riproduzione prima della pausa (consigliati 5 secondi)"},
    TempoPause{&Form1::mnuTempoPause_Click, &AppContext::TempoPause, 22, "Play intelligente",
               "Tempo di pausa prima della riproduzione (consigliati 3 secondi)"};

} // namespace

// The menu command shows the stored value, below the setting's floor the
// floor, selected; what is typed over it is read, rounded, kept within the
// setting's bounds and saved.
TEST(InputDialog, SecondsSettingsAreShownReadRoundedAndKeptWithinTheirBounds)
{
    struct Row { const Job &job; qint16 before; const char *shown, *text; qint16 after; const char *message; };
    // Entries 40 and 33 read "Il valore &minimo è" and "Il valore &massimo è". How
    // a text reads as a number and rounds is in the tests of Numbers.
    const Row rows[] = {
        {SecIndietro, -4, "0", "17", 17, ""},
        {SecSalto, 1, "2", "17", 17, ""},
        {TempoPlay, 2, "3", "17", 17, ""},
        {TempoPause, 0, "1", "17", 17, ""},
        {TempoPause, 12, "12", "3.5", 4, ""},
        {TempoPlay, 7, "7", "2", 3, "Il valore minimo è 3."},
        {TempoPlay, 7, "7", "21", 20, "Il valore massimo è 20."},
        {SecSalto, 5, "5", "75", 60, "Il valore massimo è 60."},
        {SecSalto, 5, "5", "abc", 1, "Il valore minimo è 1."}, // below the command's floor of 2
        {SecIndietro, 2, "2", "-1", 0, "Il valore minimo è 0."},
        {TempoPause, 7, "7", "0.4", 1, "Il valore minimo è 1."},
        // Beyond 16 bits: the old value stays and is checked as it is.
        {SecSalto, 5, "5", "40000", 5, ""},
        {SecSalto, 75, "75", "40000", 60, "Il valore massimo è 60."},
        // Blank text just closes: nothing checked, nothing saved.
        {SecIndietro, 9, "9", "   ", 9, ""},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(testing::Message() << "line " << row.job.line << ", stored " << row.before << ", typed \""
                                        << row.text << '"');
        DictationApp d;
        const QByteArray settings = d.app.folder.read(u"Files/Quillmere.ini"_s);
        (d.ctx().*row.job.variable) = row.before;
        ASSERT_TRUE(withForm4([&] { (d.f().*row.job.command)(); }, [&](Form4 &dialog) {
            EXPECT_EQ(dialog.Caption(), QLatin1String(row.job.caption));
            EXPECT_EQ(dialog.Label1->Caption(), QLatin1String(row.job.prompt));
            EXPECT_EQ(dialog.Text1->text(), QLatin1String(row.shown));
            QTest::keyClicks(dialog.Text1, QString::fromUtf8(row.text));
            QTest::keyClick(dialog.Text1, Qt::Key_Enter);
            EXPECT_TRUE(dialog.isUnloaded());
        }));
        EXPECT_EQ((d.ctx().*row.job.variable), row.after);
        if (QByteArray(row.text).trimmed().isEmpty())
            EXPECT_EQ(d.app.folder.read(u"Files/Quillmere.ini"_s), settings);
        else
            EXPECT_EQ(d.settingsLine(row.job.line), QString::number(row.after));
        if (*row.message) {
            ASSERT_EQ(d.app.dialogs->messages.size(), 1);
            EXPECT_EQ(d.app.dialogs->messages[0].text, QString::fromUtf8(row.message));
            EXPECT_EQ(d.app.dialogs->messages[0].style, 48);
            EXPECT_EQ(d.app.dialogs->messages[0].title, u"Quillmere"_s);
        } else {
            EXPECT_TRUE(d.app.dialogs->messages.isEmpty());
        }
    }
}

TEST(InputDialog, TheJobIsReadFromTheRawLanguageEntrySoAnAmpersandFallsThroughToTheJump)
{
    DictationApp d;
    d.ctx().Lingua.set(32, u"Secondi &indietro"_s);
    d.ctx().SecIndietro = 2;
    ASSERT_TRUE(withForm4([&] { d.f().mnuSecIndietro_Click(); }, [](Form4 &dialog) {
        dialog.Text1->setText(u"7"_s);
        dialog.Command1->click();
    }));
    EXPECT_EQ(d.ctx().SecIndietro, 2);
    EXPECT_EQ(d.ctx().SecSalto, 7);
}

// The player stays as it was. Text that is no number goes to the start,
// blank text does nothing, and a number beyond a double does not fit.
TEST(InputDialog, GoToLandsOnTheNumberSteppedBackWhenPaused)
{
    const struct
    {
        bool paused;
        const char *text;
        double want;
        const char *log;
    } rows[] = {{true, "90", 87, "seek 90,seek 87,pause"}, {false, "90", 90, "seek 90"},
                {false, "abc", 0, "seek 0"},                {false, " ", 42, ""},
                {false, "1e400", 42, ""}};
    for (const auto &row : rows) {
        SCOPED_TRACE(testing::Message() << (row.paused ? "paused, " : "playing, ") << '"' << row.text << '"');
        DictationApp d(Preset{.secIndietro = 3});
        d.open(180.0);
        if (row.paused)
            d.f().cmdPlay_Click();
        d.player().setCurrentPosition(42);
        d.player().clearLog();
        ASSERT_TRUE(withForm4([&] { d.f().mnuVai_Click(); }, [&](Form4 &dialog) {
            EXPECT_EQ(dialog.Caption(), u"Vai a"_s);
            EXPECT_EQ(dialog.Label1->Caption(), u"Vai al secondo:"_s);
            EXPECT_EQ(dialog.Text1->text(), QString());
            QTest::keyClicks(dialog.Text1, QString::fromLatin1(row.text));
            QTest::keyClick(dialog.Text1, Qt::Key_Return);
            EXPECT_TRUE(dialog.isUnloaded());
        }));
        EXPECT_EQ(d.log(), QLatin1String(row.log));
        EXPECT_DOUBLE_EQ(d.position(), row.want);
        EXPECT_EQ(d.player().playState(), row.paused ? PlayerControl::Paused : PlayerControl::Playing);
        EXPECT_EQ(d.f().cmdPlay->Tag, row.paused ? d.play() : d.pause());
        EXPECT_EQ(d.f().mnuPlay->text(), d.f().cmdPlay->Tag);
    }
}

TEST(InputDialog, EscDoesNothingAndClosingByTheFrameIsCancel)
{
    DictationApp d;
    d.ctx().SecSalto = 5;
    ASSERT_TRUE(withForm4([&] { d.f().mnuSalto_Click(); }, [&](Form4 &dialog) {
        dialog.Text1->setText(u"9"_s);
        QTest::keyClick(dialog.Text1, Qt::Key_Escape);
        QTest::keyClick(&dialog, Qt::Key_Escape);
        EXPECT_FALSE(dialog.isUnloaded());
        EXPECT_TRUE(dialog.isVisible());
        dialog.close();
        EXPECT_TRUE(dialog.isUnloaded());
        EXPECT_FALSE(dialog.isVisible());
    }));
    EXPECT_EQ(d.ctx().SecSalto, 5);
    EXPECT_EQ(d.settingsLine(4), u"5"_s);
}
