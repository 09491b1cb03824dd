// The small input dialog: how it tells its job from caption and prompt,
// the number rule and the bounds of the four seconds settings, go-to with
// its paused/playing difference, naming a bookmark, and the commands and
// keys that open and close it.

#include "DictationApp.h"

#include "bookmarks/Form3.h"

#include <QGuiApplication>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScreen>
#include <QTest>

using namespace dictation;

namespace {

enum class Job { SecIndietro, SecSalto, TempoPlay, TempoPause };

// A dialog filled as the menu command of the job fills it, never shown.
std::unique_ptr<Form4> dialogFor(DictationApp &d, Job job)
{
    auto dialog = std::make_unique<Form4>(d.ctx(), &d.f());
    auto hint = [&](const char *n) { return u' ' + QString(d.ctx().Lingua(128)).replace(QStringLiteral("nnn"), QLatin1String(n)); };
    switch (job) {
    case Job::SecIndietro:
        dialog->setCaption(d.L(32));
        dialog->Label1->setCaption(d.L(31));
        break;
    case Job::SecSalto:
        dialog->setCaption(d.L(35));
        dialog->Label1->setCaption(d.L(34));
        break;
    case Job::TempoPlay:
        dialog->setCaption(d.L(124));
        dialog->Label1->setCaption(TogliAmp(d.ctx().Lingua(125) + hint("5")));
        break;
    case Job::TempoPause:
        dialog->setCaption(d.L(124));
        dialog->Label1->setCaption(TogliAmp(d.ctx().Lingua(126) + hint("3")));
        break;
    }
    return dialog;
}

qint16 &variable(DictationApp &d, Job job)
{
    switch (job) {
    case Job::SecIndietro: return d.ctx().SecIndietro;
    case Job::SecSalto: return d.ctx().SecSalto;
    case Job::TempoPlay: return d.ctx().TempoPlay;
    case Job::TempoPause: return d.ctx().TempoPause;
    }
    return d.ctx().SecSalto;
}

int settingsLineOf(Job job)
{
    switch (job) {
    case Job::SecIndietro: return 5;
    case Job::SecSalto: return 4;
    case Job::TempoPlay: return 21;
    case Job::TempoPause: return 22;
    }
    return 0;
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
        {Job::SecSalto, "  1", 5, 1, ""},
        {Job::SecIndietro, "0", 2, 0, ""},
        {Job::SecIndietro, "-1", 2, 0, "Il valore minimo è 0."},
        {Job::SecIndietro, "20.5", 2, 20, ""},
        {Job::TempoPause, "2.5", 7, 2, ""},
        {Job::TempoPause, "3.5", 7, 4, ""},
        {Job::TempoPause, "0.4", 7, 1, "Il valore minimo è 1."},
        // Beyond 16 bits: the old value stays and is checked as it is.
        {Job::SecSalto, "40000", 5, 5, ""},
        {Job::SecSalto, "40000", 75, 60, "Il valore massimo è 60."},
        {Job::TempoPlay, "-32769", 2, 3, "Il valore minimo è 3."},
        {Job::TempoPlay, "32767", 7, 20, "Il valore massimo è 20."},
        {Job::SecSalto, "1e400", 5, 5, ""},
        {Job::SecIndietro, "-1e400", 2, 2, ""},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(std::string("text ") + row.text + " in the setting of line "
                     + std::to_string(settingsLineOf(row.job)));
        DictationApp d;
        variable(d, row.job) = row.before;
        auto dialog = dialogFor(d, row.job);
        dialog->Text1->setText(QString::fromUtf8(row.text));
        dialog->Command1_Click();
        EXPECT_EQ(variable(d, row.job), row.after);
        EXPECT_TRUE(dialog->isUnloaded());
        EXPECT_EQ(d.settingsLine(settingsLineOf(row.job)), QString::number(row.after));
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

TEST(InputDialog, BlankTextJustClosesWithoutSavingInEveryJobButTheBookmark)
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
    DictationApp d;
    d.open();
    d.app.advance(5000);
    Form4 goTo(d.ctx(), &d.f());
    goTo.setCaption(d.L(39));
    goTo.Text1->setText(QStringLiteral(" "));
    d.player().clearLog();
    goTo.Command1_Click();
    EXPECT_TRUE(goTo.isUnloaded());
    EXPECT_TRUE(d.player().log.isEmpty());
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

TEST(InputDialog, GoToWhilePlayingLandsOnTheNumberAndTextThatIsNoNumberGoesToTheStart)
{
    DictationApp d(Preset{.secIndietro = 3});
    d.open(180.0);
    d.app.advance(10000);
    d.player().clearLog();
    Form4 dialog(d.ctx(), &d.f());
    dialog.setCaption(d.L(39));
    dialog.Text1->setText(QStringLiteral("90"));
    dialog.Command1_Click();
    EXPECT_EQ(d.player().log, QStringList{QStringLiteral("seek 90")});
    EXPECT_DOUBLE_EQ(d.position(), 90.0);
    EXPECT_EQ(d.player().playState(), PlayerControl::Playing);
    EXPECT_EQ(d.f().cmdPlay->Tag, d.pause());

    Form4 again(d.ctx(), &d.f());
    again.setCaption(d.L(39));
    again.Text1->setText(QStringLiteral("abc"));
    again.Command1_Click();
    EXPECT_DOUBLE_EQ(d.position(), 0.0);
    EXPECT_TRUE(again.isUnloaded());

    // A number beyond a double does not fit: the position stays.
    d.player().setCurrentPosition(42);
    Form4 huge(d.ctx(), &d.f());
    huge.setCaption(d.L(39));
    huge.Text1->setText(QStringLiteral("1e400"));
    huge.Command1_Click();
    EXPECT_DOUBLE_EQ(d.position(), 42.0);
    EXPECT_TRUE(huge.isUnloaded());
}

TEST(InputDialog, ABookmarkRowFillsEightCharactersOfTimeAndRefusesADuplicate)
{
    DictationApp d;
    d.open(7200.0);
    d.app.advance(65400);
    d.f().cmdPlay_Click(); // paused at 01:03.4
    const QString at = QStringLiteral("00:01:03");
    Form3 *marks = d.ctx().form3();
    marks->List1->addItem(QStringLiteral("00:00:10  earlier"));
    marks->List2->addItem(QStringLiteral("00:00:10  earlier               00:00:10"));
    d.ctx().BookMark[0] = QStringLiteral("00:00:10  earlier               00:00:10");
    d.ctx().BookMark[5] = QStringLiteral("stale");
    const QByteArray settings = d.app.folder.read(QStringLiteral("Files/Quillmere.ini"));

    auto name = [&](const QString &text) {
        return withForm4(
            [&] {
                Form4 dialog(d.ctx(), marks);
                dialog.setCaption(d.L(93));
                dialog.Label1->setCaption(d.L(88));
                dialog.showModal();
            },
            [&](Form4 &dialog) {
                dialog.Text1->setText(text);
                dialog.Command1->click();
                if (!dialog.isUnloaded()) {
                    EXPECT_TRUE(dialog.isVisible());
                    dialog.Command2->click();
                }
            });
    };
    ASSERT_TRUE(name(QStringLiteral("intro")));
    ASSERT_TRUE(name(QString()));
    // Both lists are sorted: the empty name comes before "intro".
    ASSERT_EQ(marks->List1->count(), 3);
    EXPECT_EQ(marks->List1->item(2)->text(), at + QStringLiteral("  intro"));
    EXPECT_EQ(marks->List2->item(2)->text(), at + QStringLiteral("  intro") + QString(15, u' ') + at);
    EXPECT_EQ(marks->List1->item(1)->text(), at + QStringLiteral("  "));
    EXPECT_EQ(d.ctx().BookMark[0], marks->List2->item(0)->text());
    EXPECT_EQ(d.ctx().BookMark[2], marks->List2->item(2)->text());
    EXPECT_EQ(d.ctx().BookMark[3], QString());
    EXPECT_EQ(d.ctx().BookMark[5], QString());
    EXPECT_TRUE(d.app.dialogs->messages.isEmpty());

    // The same name at the same place: refused, the dialog stays open.
    ASSERT_TRUE(name(QStringLiteral("intro")));
    EXPECT_EQ(marks->List1->count(), 3);
    ASSERT_EQ(d.app.dialogs->messages.size(), 1);
    EXPECT_EQ(d.app.dialogs->messages[0].text, QStringLiteral("Segnalibro già presente"));
    EXPECT_EQ(d.app.dialogs->messages[0].style, 48);
    EXPECT_EQ(d.app.dialogs->messages[0].title, QStringLiteral("Quillmere"));
    EXPECT_EQ(d.app.folder.read(QStringLiteral("Files/Quillmere.ini")), settings);

    // Past an hour the player's time has hours and a shorter pad.
    d.f().cmdPlay_Click();
    d.app.advance(3600000);
    d.f().cmdPlay_Click();
    ASSERT_TRUE(name(QStringLiteral("later")));
    EXPECT_EQ(marks->List1->item(3)->text(), QStringLiteral("01:01:01  later"));
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

    ASSERT_TRUE(withForm4([&] { d.f().mnuSalto_Click(); }, [&](Form4 &dialog) {
        dialog.Text1->setText(QStringLiteral("9"));
        dialog.Command2->click();
    }));
    EXPECT_EQ(d.ctx().SecSalto, 5);
}

TEST(InputDialog, TheWindowIsAFixedCentredBoxWithTheLanguagesButtonTexts)
{
    DictationApp d;
    Form4 dialog(d.ctx(), &d.f());
    EXPECT_EQ(dialog.size(), QSize(6405 / 15, 1575 / 15));
    EXPECT_EQ(dialog.minimumSize(), dialog.maximumSize());
    EXPECT_FALSE(dialog.windowFlags() & Qt::WindowMinimizeButtonHint);
    EXPECT_FALSE(dialog.windowFlags() & Qt::WindowMaximizeButtonHint);
    EXPECT_EQ(dialog.Command1->text(), QStringLiteral("Va bene"));
    EXPECT_EQ(dialog.Command2->text(), QStringLiteral("Annulla"));
    EXPECT_TRUE(dialog.Command1->isDefault());
    EXPECT_EQ(dialog.Image1->pictureFile(), d.f().Shape3->pictureFile());
    const QSize screen = QGuiApplication::primaryScreen()->geometry().size() * 15;
    EXPECT_NEAR(dialog.Left(), (screen.width() - dialog.Width()) / 2, 15);
    EXPECT_NEAR(dialog.Top(), (screen.height() - dialog.Height()) / 2, 15);
}
