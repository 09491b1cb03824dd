// The small input dialog: how it tells its job from caption and prompt,
// the number rule and the bounds of the four seconds settings, go-to with
// its paused/playing difference, and the commands and keys that open and
// close it. Naming a bookmark is in the bookmark tests.

#include "DictationApp.h"

#include <QTest>

using namespace dictation;

namespace {

// Each setting's menu command, the variable it sets, the line of the
// settings file that keeps it, and what the command fills in: caption,
// prompt and the recommended value, if any.
struct Job { void (Form1::*command)(); qint16 AppContext::*variable; int line, caption, prompt; const char *hint; };
const Job SecIndietro{&Form1::mnuSecIndietro_Click, &AppContext::SecIndietro, 5, 32, 31, nullptr},
    SecSalto{&Form1::mnuSalto_Click, &AppContext::SecSalto, 4, 35, 34, nullptr},
    TempoPlay{&Form1::mnuTempoPlay_Click, &AppContext::TempoPlay, 21, 124, 125, "5"},
    TempoPause{&Form1::mnuTempoPause_Click, &AppContext::TempoPause, 22, 124, 126, "3"};

// A dialog filled as the menu command of the job fills it, never shown.
std::unique_ptr<Form4> dialogFor(DictationApp &d, const Job &job)
{
    auto dialog = std::make_unique<Form4>(d.ctx(), &d.f());
    QString prompt = d.ctx().Lingua(job.prompt);
    if (job.hint)
        prompt += u' ' + QString(d.ctx().Lingua(128)).replace(u"nnn"_s, QLatin1String(job.hint));
    dialog->setCaption(d.L(job.caption));
    dialog->Label1->setCaption(TogliAmp(prompt));
    return dialog;
}

} // namespace

TEST(InputDialog, SecondsSettingsAreReadRoundedAndKeptWithinTheirBounds)
{
    struct Row { const Job &job; const char *text; qint16 before, after; const char *message; /* "": none */ };
    // Entry 40 and 33 read "Il valore &minimo è" and "Il valore &massimo è". How
    // a text reads as a number and rounds is in the tests of Numbers.
    const Row rows[] = {
        {TempoPlay, "2", 7, 3, "Il valore minimo è 3."},
        {TempoPlay, "21", 7, 20, "Il valore massimo è 20."},
        {SecSalto, "75", 5, 60, "Il valore massimo è 60."},
        {SecSalto, "abc", 5, 1, "Il valore minimo è 1."},
        {SecIndietro, "-1", 2, 0, "Il valore minimo è 0."},
        {TempoPause, "3.5", 7, 4, ""},
        {TempoPause, "0.4", 7, 1, "Il valore minimo è 1."},
        // Beyond 16 bits: the old value stays and is checked as it is.
        {SecSalto, "40000", 5, 5, ""},
        {SecSalto, "40000", 75, 60, "Il valore massimo è 60."},
        // Blank text just closes: nothing checked, nothing saved.
        {SecIndietro, "   ", 9, 9, ""},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(std::string("text \"") + row.text + "\" in the setting of line " + std::to_string(row.job.line));
        DictationApp d;
        const QByteArray settings = d.app.folder.read(u"Files/Quillmere.ini"_s);
        (d.ctx().*row.job.variable) = row.before;
        auto dialog = dialogFor(d, row.job);
        dialog->Text1->setText(QString::fromUtf8(row.text));
        dialog->Command1_Click();
        EXPECT_EQ((d.ctx().*row.job.variable), row.after);
        EXPECT_TRUE(dialog->isUnloaded());
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

// Go to lands on the number, SecIndietro earlier when paused, and keeps
// the player as it was. Text that is no number goes to the start, blank
// text does nothing, and a number beyond a double does not fit.
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
            EXPECT_EQ(dialog.Caption(), d.L(39));
            EXPECT_EQ(dialog.Label1->Caption(), d.L(38));
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

// The menu commands fill the dialog as dialogFor() does, with a stored
// value below the floor shown as the floor.
TEST(InputDialog, TheSettingCommandsApplyTheirFloorAndFillTheDialog)
{
    DictationApp d;
    const struct { const Job &job; qint16 stored; const char *shown; } rows[] = {
        {SecIndietro, -4, "0"}, {SecSalto, 1, "2"}, {TempoPlay, 2, "3"}, {TempoPause, 0, "1"}, {TempoPause, 12, "12"}};
    for (const auto &row : rows) {
        SCOPED_TRACE(testing::Message() << "line " << row.job.line << ", stored " << row.stored);
        (d.ctx().*row.job.variable) = row.stored;
        const auto filled = dialogFor(d, row.job);
        ASSERT_TRUE(withForm4([&] { (d.f().*row.job.command)(); }, [&](Form4 &dialog) {
            EXPECT_EQ(dialog.Caption(), filled->Caption());
            EXPECT_EQ(dialog.Label1->Caption(), filled->Label1->Caption());
            EXPECT_EQ(dialog.Text1->text(), QLatin1String(row.shown));
            // Typing replaces the value, which is selected; Enter is OK.
            QTest::keyClicks(dialog.Text1, u"17"_s);
            QTest::keyClick(dialog.Text1, Qt::Key_Enter);
        }));
        EXPECT_EQ((d.ctx().*row.job.variable), 17);
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
