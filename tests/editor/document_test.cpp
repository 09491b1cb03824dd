// The editor's document: start-up state, new, open, save, save as, the
// prompts that guard them, and closing.

#include "EditorTestSupport.h"

#include <QAction>

using EditorDocument = EditorTest;

TEST_F(EditorDocument, SaveAfterNewWritesOverTheOpenedFileWithABeep)
{
    EXPECT_EQ(editor->windowTitle(), QStringLiteral("Editor - Document 1"));
    const QString path = app.folder.file(QStringLiteral("a.rtf"));
    app.folder.write(QStringLiteral("a.rtf"), "{\\rtf1\\ansi old text\\par}");
    editor->ApriDocumento(path);
    EXPECT_EQ(rtb->Text(), QStringLiteral("old text"));
    EXPECT_EQ(editor->windowTitle(), QStringLiteral("Editor - a.rtf"));
    EXPECT_EQ(app.ctx().TestoModificato, 0);
    EXPECT_EQ(editor->mnuRecent[0]->text(), path);

    // No change: a beep and nothing else.
    editor->Label2_Click(2);
    EXPECT_EQ(app.dialogs->beeps, 1);
    EXPECT_EQ(app.folder.read(QStringLiteral("a.rtf")), QByteArray("{\\rtf1\\ansi old text\\par}"));

    // New keeps FileEditor: Save writes the new text over a.rtf, no dialog.
    editor->Label2_Click(0);
    EXPECT_EQ(editor->windowTitle(), QStringLiteral("Editor - Document 2"));
    QTest::keyClicks(rtb, QStringLiteral("new text"));
    editor->Label2_Click(2);
    EXPECT_EQ(app.dialogs->beeps, 2);
    EXPECT_TRUE(app.dialogs->fileDialogs.isEmpty());
    const QByteArray saved = app.folder.read(QStringLiteral("a.rtf"));
    EXPECT_TRUE(saved.startsWith("{\\rtf") && saved.contains("new text")) << saved.constData();
    EXPECT_EQ(editor->windowTitle(), QStringLiteral("Editor - Document 2"));

    // A temporary file beside a name of the longest length cannot be made:
    // the save fails and the old file stays.
    const QString longName = QString(251, u'n') + QStringLiteral(".rtf");
    app.folder.write(longName, "{\\rtf1 old}");
    EXPECT_FALSE(rtb->SaveFile(app.folder.file(longName)));
    EXPECT_EQ(app.folder.read(longName), QByteArray("{\\rtf1 old}"));
}

TEST_F(EditorDocument, SaveAsWritesRtfUnderAnyNameAndProposesTheUntitledName)
{
    editor->Label2_Click(0);
    QTest::keyClicks(rtb, QStringLiteral("dictation"));
    const QString note = app.folder.file(QStringLiteral("note.txt"));
    app.dialogs->answerFile(note);
    editor->Label2_Click(2);
    ASSERT_EQ(app.dialogs->fileDialogs.size(), 1);
    const FileDialogRequest &asked = app.dialogs->fileDialogs.first();
    EXPECT_EQ(asked.fileName, QStringLiteral("Document 2"));
    EXPECT_EQ(asked.defaultExtension, QStringLiteral("rtf"));
    EXPECT_TRUE(asked.filter.startsWith(QStringLiteral("RTF files")));
    EXPECT_TRUE(app.folder.read(QStringLiteral("note.txt")).startsWith("{\\rtf"));
    EXPECT_EQ(editor->windowTitle(), QStringLiteral("Editor - note.txt"));
    EXPECT_EQ(app.ctx().TestoModificato, 0);

    // A first recent entry ending in "TXT" puts the text filter first.
    editor->mnuRecent[0]->setText(QStringLiteral("/somewhere/NOTES.TXT"));
    app.dialogs->answerFile(note);
    app.dialogs->msgBoxAnswers.push_back(MsgBox::No); // the file exists: keep it
    editor->mnuSalvaConNome_Click();
    const FileDialogRequest &second = app.dialogs->fileDialogs.last();
    EXPECT_EQ(second.defaultExtension, QStringLiteral("txt"));
    EXPECT_EQ(second.filter, QStringLiteral("Text files") + QChar(0) + QStringLiteral("*.txt") + QChar(0)
                                 + QStringLiteral("RTF files") + QChar(0) + QStringLiteral("*.rtf"));
    ASSERT_FALSE(app.dialogs->messages.isEmpty());
    EXPECT_EQ(app.dialogs->messages.last().style, MsgBox::YesNo | MsgBox::Exclamation);
    EXPECT_EQ(app.dialogs->messages.last().text, QStringLiteral("The file exists.\r\rReplace it?"));
}

TEST_F(EditorDocument, PromptsGuardNewExitAndAMissingRecentFileChangesNothing)
{
    QTest::keyClicks(rtb, QStringLiteral("keep me"));
    app.dialogs->msgBoxAnswers = {MsgBox::Cancel};
    editor->Label2_Click(0);
    EXPECT_EQ(rtb->Text(), QStringLiteral("keep me"));
    ASSERT_EQ(app.dialogs->messages.size(), 1);
    EXPECT_EQ(app.dialogs->messages[0].text, QStringLiteral("Save the changes?"));
    EXPECT_EQ(app.dialogs->messages[0].style, MsgBox::YesNoCancel | MsgBox::Exclamation);

    editor->mnuRecent[0]->setText(app.folder.file(QStringLiteral("gone.rtf")));
    editor->mnuRecent_Click(0);
    EXPECT_EQ(app.dialogs->messages.last().text, QStringLiteral("File not found"));
    EXPECT_EQ(rtb->Text(), QStringLiteral("keep me"));
    EXPECT_TRUE(app.ctx().FileEditor.isEmpty());

    // The exit asks about the visible editor's text; Cancel keeps the program.
    app.dialogs->msgBoxAnswers = {MsgBox::Cancel};
    app.form1().mnuEsci_Click();
    EXPECT_FALSE(app.ctx().processEnded());
    EXPECT_EQ(app.dialogs->messages.last().text, QStringLiteral("Save the changes to Document 1?"));

    // Closing the editor hides it; its text then goes without a word.
    const auto asked = app.dialogs->messages.size();
    editor->close();
    EXPECT_FALSE(editor->isVisible());
    EXPECT_EQ(app.form1().mnuMostraNascondi->text(), QStringLiteral("Show the editor"));
    app.form1().mnuEsci_Click();
    EXPECT_TRUE(app.ctx().processEnded());
    EXPECT_EQ(app.dialogs->messages.size(), asked);
}
