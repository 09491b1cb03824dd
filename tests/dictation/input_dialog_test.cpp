// The small input dialog: how it tells its job from caption and prompt,
// the number rule and the bounds of the four seconds settings, go-to with
// its paused/playing difference, and the commands and keys that open and
// close it. Naming a bookmark is in the bookmark tests.

#include "DictationApp.h"

#include <QTest>

using namespace dictation;

namespace {

enum class Job { SecIndietro, SecSalto, TempoPlay, TempoPause };

// What each job's menu command fills in, the variable it sets and the line
// of the settings file that keeps it.
struct JobInfo
{
    qint16 AppContext::*variable;
    int line, caption, prompt;
    const char *hint; // the recommended value, or none
};

const JobInfo &info(Job job)
{
    static const JobInfo infos[] = {
        {&AppContext::SecIndietro, 5, 32, 31, nullptr},
        {&AppContext::SecSalto, 4, 35, 34, nullptr},
        {&AppContext::TempoPlay, 21, 124, 125, "5"},
        {&AppContext::TempoPause, 22, 124, 126, "3"},
    };
    return infos[int(job)];
}

qint16 &variable(DictationApp &d, Job job)
{
    return d.ctx().*info(job).variable;
}

// A dialog filled as the menu command of the job fills it, never shown.
std::unique_ptr<Form4> dialogFor(DictationApp &d, Job job)
{
    auto dialog = std::make_unique<Form4>(d.ctx(), &d.f());
    QString prompt = d.ctx().Lingua(info(job).prompt);
    if (info(job).hint)
        prompt += u' ' + QString(d.ctx().Lingua(128)).replace(QStringLiteral("nnn"), QLatin1String(info(job).hint));
    dialog->setCaption(d.L(info(job).caption));
    dialog->Label1->setCaption(TogliAmp(prompt));
    return dialog;
}

} // namespace

TEST(InputDialog, SecondsSettingsAreReadRoundedAndKeptWithinTheirBounds)
{
    struct Row
    {
        Job job;
        const char *text;
        qint16 before;
        qint16 after;
        const char *message; // empty: none
    };
    // Entry 40 and 33 read "Il valore &minimo è" and "Il valore &massimo è".
    const Row rows[] = {
        {Job::TempoPlay, "2", 7, 3, "Il valore minimo è 3."},
        {Job::TempoPlay, "21", 7, 20, "Il valore massimo è 20."},
        {Job::TempoPlay, "12abc", 7, 12, ""},
        {Job::SecSalto, "75", 5, 60, "Il valore massimo è 60."},
        {Job::SecSalto, "abc", 5, 1, "Il valore minimo è 1."},
        {Job::SecIndietro, "-1", 2, 0, "Il valore minimo è 0."},
        {Job::TempoPause, "2.5", 7, 2, ""},
        {Job::TempoPause, "3.5", 7, 4, ""},
        {Job::TempoPause, "0.4", 7, 1, "Il valore minimo è 1."},
        // Beyond 16 bits: the old value stays and is checked as it is.
        {Job::SecSalto, "40000", 5, 5, ""},
        {Job::SecSalto, "40000", 75, 60, "Il valore massimo è 60."},
        {Job::TempoPlay, "-32769", 2, 3, "Il valore minimo è 3."},
        {Job::SecSalto, "1e400", 5, 5, ""},
        {Job::SecIndietro, "-1e400", 2, 2, ""},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(std::string("text ") + row.text + " in the setting of line "
                     + std::to_string(info(row.job).line));
        DictationApp d;
        variable(d, row.job) = row.before;
        auto dialog = dialogFor(d, row.job);
        dialog->Text1->setText(QString::fromUtf8(row.text));
        dialog->Command1_Click();
        EXPECT_EQ(variable(d, row.job), row.after);
        EXPECT_TRUE(dialog->isUnloaded());
        EXPECT_EQ(d.settingsLine(info(row.job).line), QString::number(row.after));
        if (*row.message) {
            ASSERT_EQ(d.app.dialogs->messages.size(), 1);
            EXPECT_EQ(d.app.dialogs->messages[0].text, QString::fromUtf8(row.message));
            EXPECT_EQ(d.app.dialogs->messages[0].style, 48);
            EXPECT_EQ(d.app.dialogs->messages[0].title, QStringLiteral("Quillmere"));
        } else {
            EXPECT_TRUE(d.app.dialogs->messages.isEmpty());
        }
    }
}

TEST(InputDialog, BlankTextJustClosesWithoutSaving)
{
    for (const Job job : {Job::SecIndietro, Job::SecSalto, Job::TempoPlay, Job::TempoPause}) {
        DictationApp d;
        const QByteArray settings = d.app.folder.read(QStringLiteral("Files/Quillmere.ini"));
        variable(d, job) = 9; // unsaved: a Salva would write it
        auto dialog = dialogFor(d, job);
        dialog->Text1->setText(QStringLiteral("   "));
        dialog->Command1_Click();
        EXPECT_TRUE(dialog->isUnloaded());
        EXPECT_EQ(variable(d, job), 9);
        EXPECT_EQ(d.app.folder.read(QStringLiteral("Files/Quillmere.ini")), settings);
        EXPECT_TRUE(d.app.dialogs->messages.isEmpty());
    }
}

TEST(InputDialog, TheJobIsReadFromTheRawLanguageEntrySoAnAmpersandFallsThroughToTheJump)
{
    DictationApp d;
    d.ctx().Lingua.set(32, QStringLiteral("Secondi &indietro"));
    d.ctx().SecIndietro = 2;
    ASSERT_TRUE(withForm4([&] { d.f().mnuSecIndietro_Click(); }, [](Form4 &dialog) {
        dialog.Text1->setText(QStringLiteral("7"));
        dialog.Command1->click();
    }));
    EXPECT_EQ(d.ctx().SecIndietro, 2);
    EXPECT_EQ(d.ctx().SecSalto, 7);
}

TEST(InputDialog, GoToWhilePausedLandsSecIndietroEarlierAndStaysPaused)
{
    DictationApp d(Preset{.secIndietro = 3});
    d.open(180.0);
    d.app.advance(10000);
    d.f().cmdPlay_Click(); // paused at 7
    d.player().clearLog();
    ASSERT_TRUE(withForm4([&] { d.f().mnuVai_Click(); }, [&](Form4 &dialog) {
        EXPECT_EQ(dialog.Caption(), d.L(39));
        EXPECT_EQ(dialog.Label1->Caption(), d.L(38));
        EXPECT_EQ(dialog.Text1->text(), QString());
        QTest::keyClicks(dialog.Text1, QStringLiteral("90"));
        QTest::keyClick(dialog.Text1, Qt::Key_Return);
        EXPECT_TRUE(dialog.isUnloaded());
    }));
    EXPECT_EQ(d.player().log, (QStringList{QStringLiteral("seek 90"), QStringLiteral("seek 87"),
                                          QStringLiteral("pause")}));
    EXPECT_DOUBLE_EQ(d.position(), 87.0);
    EXPECT_EQ(d.player().playState(), PlayerControl::Paused);
    EXPECT_EQ(d.f().cmdPlay->Tag, d.play());
    EXPECT_EQ(d.f().mnuPlay->text(), d.play());
    EXPECT_EQ(d.f().Label2->Caption(), QStringLiteral("01:27 / 03:00"));
}

// While playing there is no step back; text that is no number goes to the
// start, blank text does nothing, and a number beyond a double does not fit.
TEST(InputDialog, GoToWhilePlayingLandsOnTheNumber)
{
    DictationApp d(Preset{.secIndietro = 3});
    d.open(180.0);
    const struct
    {
        const char *text;
        double want;
        QStringList log;
    } rows[] = {{"90", 90, {QStringLiteral("seek 90")}}, {"abc", 0, {QStringLiteral("seek 0")}},
                {" ", 42, {}}, {"1e400", 42, {}}};
    for (const auto &row : rows) {
        SCOPED_TRACE(row.text);
        d.player().setCurrentPosition(42);
        d.player().clearLog();
        Form4 dialog(d.ctx(), &d.f());
        dialog.setCaption(d.L(39));
        dialog.Text1->setText(QString::fromLatin1(row.text));
        dialog.Command1_Click();
        EXPECT_TRUE(dialog.isUnloaded());
        EXPECT_EQ(d.player().log, row.log);
        EXPECT_DOUBLE_EQ(d.position(), row.want);
        EXPECT_EQ(d.player().playState(), PlayerControl::Playing);
    }
}

TEST(InputDialog, TheSettingCommandsApplyTheirFloorAndFillTheDialog)
{
    struct Row
    {
        Job job;
        std::function<void(Form1 &)> command;
        qint16 stored;
        const char *shown;
        QString caption;
        QString prompt;
    };
    DictationApp d;
    const QString hint5 = QStringLiteral(" (consigliati 5 secondi)");
    const QString hint3 = QStringLiteral(" (consigliati 3 secondi)");
    const Row rows[] = {
        {Job::SecIndietro, [](Form1 &f) { f.mnuSecIndietro_Click(); }, -4, "0", d.L(32), d.L(31)},
        {Job::SecSalto, [](Form1 &f) { f.mnuSalto_Click(); }, 1, "2", d.L(35), d.L(34)},
        {Job::TempoPlay, [](Form1 &f) { f.mnuTempoPlay_Click(); }, 2, "3", QStringLiteral("Play intelligente"),
         d.ctx().Lingua(125) + hint5},
        {Job::TempoPause, [](Form1 &f) { f.mnuTempoPause_Click(); }, 0, "1", QStringLiteral("Play intelligente"),
         d.ctx().Lingua(126) + hint3},
        {Job::TempoPause, [](Form1 &f) { f.mnuTempoPause_Click(); }, 12, "12", QStringLiteral("Play intelligente"),
         d.ctx().Lingua(126) + hint3},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.caption.toStdString() + " " + row.shown);
        variable(d, row.job) = row.stored;
        ASSERT_TRUE(withForm4([&] { row.command(d.f()); }, [&](Form4 &dialog) {
            EXPECT_TRUE(dialog.isModal());
            EXPECT_EQ(dialog.Caption(), row.caption);
            EXPECT_EQ(dialog.Label1->Caption(), row.prompt);
            EXPECT_EQ(dialog.Text1->text(), QLatin1String(row.shown));
            EXPECT_EQ(dialog.Text1->selectedText(), QLatin1String(row.shown));
            // Typing replaces the selected value; Enter is OK.
            QTest::keyClicks(dialog.Text1, QStringLiteral("17"));
            QTest::keyClick(dialog.Text1, Qt::Key_Enter);
        }));
        EXPECT_EQ(variable(d, row.job), 17);
    }
}

TEST(InputDialog, EscDoesNothingAndClosingByTheFrameIsCancel)
{
    DictationApp d;
    d.ctx().SecSalto = 5;
    ASSERT_TRUE(withForm4([&] { d.f().mnuSalto_Click(); }, [&](Form4 &dialog) {
        dialog.Text1->setText(QStringLiteral("9"));
        QTest::keyClick(dialog.Text1, Qt::Key_Escape);
        QTest::keyClick(&dialog, Qt::Key_Escape);
        EXPECT_FALSE(dialog.isUnloaded());
        EXPECT_TRUE(dialog.isVisible());
        dialog.close();
        EXPECT_TRUE(dialog.isUnloaded());
        EXPECT_FALSE(dialog.isVisible());
    }));
    EXPECT_EQ(d.ctx().SecSalto, 5);
    EXPECT_EQ(d.settingsLine(4), QStringLiteral("5"));
}
