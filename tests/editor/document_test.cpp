// The editor's document: start-up state, new, open, save, save as, the
// prompts that guard them, and closing.

#include "EditorTestSupport.h"

#include <QAction>
#include <QDir>
#include <QFile>
#include <QMenu>

namespace {

QByteArray fileBytes(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
    f.write(bytes);
}

} // namespace

TEST(EditorDocument, SaveAfterNewWritesOverTheOpenedFileWithABeep)
{
    TestApp app;
    startEditor(app);
    Form2 &editor = app.form2();
    EXPECT_EQ(editor.windowTitle(), QStringLiteral("Editor - Document 1"));
    const QString path = app.folder.file(QStringLiteral("a.rtf"));
    writeFile(path, "{\\rtf1\\ansi old text\\par}");
    editor.ApriDocumento(path);
    EXPECT_EQ(editor.RTB->Text(), QStringLiteral("old text"));
    EXPECT_EQ(editor.windowTitle(), QStringLiteral("Editor - a.rtf"));
    EXPECT_EQ(app.ctx().TestoModificato, 0);
    EXPECT_EQ(editor.mnuRecent[0]->text(), path);

    // No change: a beep and nothing else.
    editor.Label2_Click(2);
    EXPECT_EQ(app.dialogs->beeps, 1);
    EXPECT_EQ(fileBytes(path), QByteArray("{\\rtf1\\ansi old text\\par}"));

    // New keeps FileEditor: Save writes the new text over a.rtf, no dialog.
    editor.Label2_Click(0);
    EXPECT_EQ(editor.windowTitle(), QStringLiteral("Editor - Document 2"));
    typeText(editor.RTB, QStringLiteral("new text"));
    editor.Label2_Click(2);
    EXPECT_EQ(app.dialogs->beeps, 2);
    EXPECT_TRUE(app.dialogs->fileDialogs.isEmpty());
    EXPECT_TRUE(fileBytes(path).startsWith("{\\rtf"));
    EXPECT_TRUE(fileBytes(path).contains("new text"));
    EXPECT_EQ(editor.windowTitle(), QStringLiteral("Editor - Document 2"));
}

TEST(EditorDocument, SaveAsWritesRtfUnderAnyNameAndProposesTheUntitledName)
{
    TestApp app;
    startEditor(app);
    Form2 &editor = app.form2();
    editor.Label2_Click(0);
    typeText(editor.RTB, QStringLiteral("dictation"));
    const QString note = app.folder.file(QStringLiteral("note.txt"));
    app.dialogs->answerFile(note);
    editor.Label2_Click(2);
    ASSERT_EQ(app.dialogs->fileDialogs.size(), 1);
    const FileDialogRequest &asked = app.dialogs->fileDialogs.first();
    EXPECT_EQ(asked.fileName, QStringLiteral("Document 2"));
    EXPECT_EQ(asked.defaultExtension, QStringLiteral("rtf"));
    EXPECT_TRUE(asked.filter.startsWith(QStringLiteral("RTF files")));
    EXPECT_TRUE(fileBytes(note).startsWith("{\\rtf"));
    EXPECT_EQ(editor.windowTitle(), QStringLiteral("Editor - note.txt"));
    EXPECT_EQ(app.ctx().TestoModificato, 0);

    // A first recent entry ending in "TXT" puts the text filter first.
    editor.mnuRecent[0]->setText(QStringLiteral("/somewhere/NOTES.TXT"));
    app.dialogs->answerFile(note);
    app.dialogs->msgBoxAnswers.push_back(MsgBox::No); // the file exists: keep it
    editor.mnuSalvaConNome_Click();
    const FileDialogRequest &second = app.dialogs->fileDialogs.last();
    EXPECT_EQ(second.defaultExtension, QStringLiteral("txt"));
    EXPECT_EQ(second.filter, QStringLiteral("Text files") + QChar(0) + QStringLiteral("*.txt") + QChar(0)
                                 + QStringLiteral("RTF files") + QChar(0) + QStringLiteral("*.rtf"));
    ASSERT_FALSE(app.dialogs->messages.isEmpty());
    EXPECT_EQ(app.dialogs->messages.last().style, MsgBox::YesNo | MsgBox::Exclamation);
    EXPECT_EQ(app.dialogs->messages.last().text, QStringLiteral("The file exists.\r\rReplace it?"));
}

TEST(EditorDocument, PromptsGuardNewAndAMissingRecentFileChangesNothing)
{
    TestApp app;
    startEditor(app);
    Form2 &editor = app.form2();
    typeText(editor.RTB, QStringLiteral("keep me"));
    app.dialogs->msgBoxAnswers.push_back(MsgBox::Cancel);
    editor.Label2_Click(0);
    EXPECT_EQ(editor.RTB->Text(), QStringLiteral("keep me"));
    ASSERT_EQ(app.dialogs->messages.size(), 1);
    EXPECT_EQ(app.dialogs->messages[0].text, QStringLiteral("Save the changes?"));
    EXPECT_EQ(app.dialogs->messages[0].style, MsgBox::YesNoCancel | MsgBox::Exclamation);

    editor.mnuRecent[0]->setText(app.folder.file(QStringLiteral("gone.rtf")));
    editor.mnuRecent_Click(0);
    EXPECT_EQ(app.dialogs->messages.last().text, QStringLiteral("File not found"));
    EXPECT_EQ(editor.RTB->Text(), QStringLiteral("keep me"));
    EXPECT_TRUE(app.ctx().FileEditor.isEmpty());
}

TEST(EditorDocument, ExitAsksOnlyForTheVisibleEditorAndCancelKeepsTheProgram)
{
    {
        TestApp app;
        startEditor(app);
        typeText(app.form2().RTB, QStringLiteral("unsaved"));
        app.dialogs->msgBoxAnswers.push_back(MsgBox::Cancel);
        app.form1().mnuEsci_Click();
        EXPECT_FALSE(app.ctx().processEnded());
        ASSERT_EQ(app.dialogs->messages.size(), 1);
        EXPECT_EQ(app.dialogs->messages[0].text, QStringLiteral("Save the changes to Document 1?"));
    }
    {
        // Closing the editor hides it; its text then goes without a word.
        TestApp app;
        startEditor(app);
        typeText(app.form2().RTB, QStringLiteral("unsaved"));
        app.form2().close();
        EXPECT_FALSE(app.form2().isVisible());
        EXPECT_EQ(app.form1().mnuMostraNascondi->text(), QStringLiteral("Show the editor"));
        app.form1().mnuEsci_Click();
        EXPECT_TRUE(app.ctx().processEnded());
        EXPECT_TRUE(app.dialogs->messages.isEmpty());
    }
}

TEST(EditorDocument, AFailedSaveKeepsTheOldFile)
{
    TestApp app;
    startEditor(app);
    Form2 &editor = app.form2();
    RichTextBox *rtb = editor.RTB;
    typeText(rtb, QStringLiteral("changed"));

    // The temporary file beside a name of the longest length cannot be made.
    const QString longName = app.folder.file(QString(251, u'n') + QStringLiteral(".rtf"));
    writeFile(longName, "{\\rtf1 old}");
    EXPECT_FALSE(rtb->SaveFile(longName));
    EXPECT_EQ(fileBytes(longName), QByteArray("{\\rtf1 old}"));
    // A folder that cannot be written to: see the keep-text tests.
}
