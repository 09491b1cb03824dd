// What keeps the typist's text: saves that fail aloud, plain text decoded as
// it was written, files that are not text refused, and the recovery journal.

#include "EditorTestSupport.h"

#include "editor/journal/RecoveryJournal.h"
#include "platform/TextFile.h"

#include <QFile>
#include <QFileInfo>
#include <QStringEncoder>
#include <unistd.h>

namespace {

// Root may write anywhere: the rights of "nobody" stand in for the user's
// while the object lives.
struct WithoutRoot
{
    WithoutRoot()
    {
        if (geteuid() == 0 && (setegid(65534) != 0 || seteuid(65534) != 0))
            ADD_FAILURE() << "cannot drop root's rights";
    }
    ~WithoutRoot()
    {
        if (getuid() == 0 && (seteuid(0) != 0 || setegid(0) != 0))
            ADD_FAILURE() << "cannot take root's rights back";
    }
};

QByteArray journalOf(TestApp &app)
{
    app.ctx().journal()->waitForWrites();
    return TextFile::readBytes(app.ctx().journal()->path()).value_or(QByteArray());
}

} // namespace

using KeepText = EditorTest;

TEST(KeepTextDecoding, PlainTextDecodesByMarkUtf8AndTheUsersCodePage)
{
    struct Case { const char *encoding; bool bom; const char *language; const char *locale; QString text; };
    const QString french = QStringLiteral("Où êtes-vous, garçon ? Déjà là.");
    const Case cases[] = {
        {"UTF-8", false, "English.lng", "fr_FR", french},
        {"UTF-8", true, "English.lng", "en_US", french},
        {"UTF-16LE", true, "English.lng", "en_US", french},
        {"UTF-16BE", true, "English.lng", "en_US", french},
        {"windows-1252", false, "Français.lng", "fr_FR", french},
        {"windows-1251", false, "Russian.lng", "en_US", QStringLiteral("Привет, как дела? Щука и ёж.")},
        {"windows-1251", false, "English.lng", "uk_UA", QStringLiteral("Київ, Харків і Львів.")},
        {"windows-1253", false, "English.lng", "el_GR", QStringLiteral("Καλημέρα, τι κάνετε;")},
        {"windows-1250", false, "Hungarian.lng", "en_US", QStringLiteral("Árvíztűrő tükörfúrógép, őz.")},
        {"windows-1254", false, "English.lng", "tr_TR", QStringLiteral("Işık ğüşöç İstanbul.")},
    };
    for (const Case &c : cases) {
        QStringEncoder encoder(c.encoding, c.bom ? QStringEncoder::Flag::WriteBom : QStringEncoder::Flag::Default);
        const char *codec = TextFile::legacyCodecFor(QString::fromUtf8(c.language), QString::fromUtf8(c.locale));
        EXPECT_EQ(TextFile::decode(encoder.encode(c.text), codec), c.text) << c.encoding << " " << c.locale;
    }
}

TEST(KeepTextOpen, OpenRefusesWhatIsNotTextAndReadsRtfBehindAMark)
{
    TestApp app;
    startEditor(app, QStringLiteral("Russian.lng"));
    Form2 &editor = app.form2();
    QTest::keyClicks(editor.RTB, QStringLiteral("kept"));
    app.folder.write(QStringLiteral("letter.docx"), QByteArray("PK\x03\x04\x14\0\x06\0", 8) + "word/document.xml");
    editor.ApriDocumento(app.folder.file(QStringLiteral("letter.docx")));
    EXPECT_EQ(editor.RTB->Text(), QStringLiteral("kept"));
    EXPECT_EQ(app.ctx().FileEditor, QString());
    ASSERT_FALSE(app.dialogs->messages.isEmpty());
    EXPECT_EQ(app.dialogs->messages.last().text, QStringLiteral("T138"));

    // The language in use decides the code page of a file that is not UTF-8.
    app.folder.write(QStringLiteral("ru.txt"), QByteArray("\xcf\xf0\xe8\xe2\xe5\xf2"));
    editor.ApriDocumento(app.folder.file(QStringLiteral("ru.txt")));
    EXPECT_EQ(editor.RTB->Text(), QStringLiteral("Привет"));

    app.folder.write(QStringLiteral("marked.rtf"), QByteArray("\xEF\xBB\xBF\r\n  {\\rtf1\\ansi {\\b bold}\\par}"));
    editor.ApriDocumento(app.folder.file(QStringLiteral("marked.rtf")));
    EXPECT_EQ(editor.RTB->Text(), QStringLiteral("bold"));
    editor.RTB->setSelStart(1);
    EXPECT_EQ(editor.RTB->SelBold(), std::optional<bool>(true));
}

TEST_F(KeepText, SavesWriteInAReadOnlyFolderOrSayWhyAndTheExitStillAsks)
{
    QTest::keyClicks(rtb, QStringLiteral("hours of work"));

    // A folder that allows no temporary file, holding a file that may be
    // written and one that may not.
    const QString folder = app.folder.file(QStringLiteral("locked"));
    app.folder.write(QStringLiteral("locked/writable.rtf"), "{\\rtf1 old}");
    app.folder.write(QStringLiteral("locked/read-only.rtf"), "{\\rtf1 old}");
    const auto all = QFileDevice::ReadOwner | QFileDevice::ReadOther | QFileDevice::ExeOwner | QFileDevice::ExeOther;
    QFile::setPermissions(folder + QStringLiteral("/writable.rtf"), all | QFileDevice::WriteOther);
    QFile::setPermissions(folder, all);
    QFile::setPermissions(app.folder.path(), QFile::permissions(app.folder.path()) | QFileDevice::ExeOther);
    {
        WithoutRoot user;
        ASSERT_FALSE(QFile(folder + QStringLiteral("/probe")).open(QIODevice::WriteOnly));
        app.ctx().FileEditor = folder + QStringLiteral("/writable.rtf");
        editor->Label2_Click(2);
        EXPECT_TRUE(app.folder.read(QStringLiteral("locked/writable.rtf")).contains("hours of work"));
        EXPECT_EQ(app.ctx().TestoModificato, 0);
        EXPECT_EQ(app.dialogs->messages.size(), 0);

        QTest::keyClicks(rtb, QStringLiteral(" more"));
        app.ctx().FileEditor = folder + QStringLiteral("/read-only.rtf");
        editor->Label2_Click(2);
        ASSERT_EQ(app.dialogs->messages.size(), 1);
        EXPECT_TRUE(app.dialogs->messages[0].text.startsWith(QStringLiteral("T136\r\r"))); // and the reason
        EXPECT_GT(app.dialogs->messages[0].text.size(), 6);
        EXPECT_EQ(app.ctx().TestoModificato, 1);
        // The exit asks; Yes saves again, which fails: the program stays.
        app.form1().mnuEsci_Click();
        EXPECT_EQ(app.dialogs->messages.size(), 3);
        EXPECT_FALSE(app.ctx().processEnded());
    }
    QFile::setPermissions(folder, all | QFileDevice::WriteOwner);
}

TEST_F(KeepText, AFileThatLostContentAsksOnceBeforeTheFirstSaveOverIt)
{
    const QString path = app.folder.file(QStringLiteral("table.rtf"));
    app.folder.write(QStringLiteral("table.rtf"), "{\\rtf1 cells}");
    editor->ApriDocumento(path);
    editor->fileLosingContent = path; // as the reader marks a file with a table
    QTest::keyClicks(rtb, QStringLiteral("x"));

    app.dialogs->msgBoxAnswers = {MsgBox::No};
    editor->Label2_Click(2);
    ASSERT_EQ(app.dialogs->messages.size(), 1);
    EXPECT_EQ(app.dialogs->messages[0].text, QStringLiteral("T139"));
    EXPECT_TRUE(TextFile::readBytes(path).value_or(QByteArray()).contains("xcells"));
    QTest::keyClicks(rtb, QStringLiteral("y"));
    editor->Label2_Click(2);
    EXPECT_EQ(app.dialogs->messages.size(), 1);
}

TEST_F(KeepText, TheJournalFollowsUnsavedChangesAndIsOfferedBackAtTheNextStart)
{
    QTest::keyClicks(rtb, QStringLiteral("draft"));
    app.advance(RecoveryJournal::IdleMs - 100);
    EXPECT_EQ(journalOf(app), QByteArray());
    app.advance(100);
    EXPECT_TRUE(journalOf(app).contains("draft"));

    // Typing without a pause is written every 30 s at the latest.
    for (int i = 0; i < 30; ++i) {
        QTest::keyClicks(rtb, QStringLiteral("+"));
        app.advance(1000);
    }
    EXPECT_TRUE(journalOf(app).contains("draft" + QByteArray(30, '+')));

    // A save removes it; formatting alone writes it again.
    app.ctx().FileEditor = app.folder.file(QStringLiteral("saved.rtf"));
    editor->Label2_Click(2);
    EXPECT_EQ(journalOf(app), QByteArray());
    select(rtb, 0, 5);
    editor->Label2_Click(4);
    app.advance(RecoveryJournal::IdleMs);
    const QByteArray journal = journalOf(app);
    EXPECT_TRUE(journal.contains("\\b"));
    // New removes it too.
    editor->Label2_Click(0);
    app.advance(RecoveryJournal::IdleMs);
    EXPECT_EQ(journalOf(app), QByteArray());
    // Yes brings it back under the saved name (No, and a kill of the real
    // program, are the smoke test's).
    TestApp next;
    next.folder.write(QStringLiteral("Files/Recovery/Document.rtf"), journal);
    next.dialogs->msgBoxAnswers = {MsgBox::Yes};
    startEditor(next);
    ASSERT_EQ(next.dialogs->messages.size(), 1);
    EXPECT_EQ(next.dialogs->messages[0].text, QStringLiteral("T137"));
    RichTextBox *back = next.form2().RTB;
    EXPECT_EQ(back->Text(), QStringLiteral("draft") + QString(30, u'+'));
    back->setSelStart(1);
    EXPECT_EQ(back->SelBold(), std::optional<bool>(true));
    EXPECT_EQ(QFileInfo(next.ctx().FileEditor).fileName(), QStringLiteral("saved.rtf"));
    EXPECT_EQ(next.form2().windowTitle(), QStringLiteral("Editor - Document 1"));
    EXPECT_EQ(next.ctx().TestoModificato, 1);
}
