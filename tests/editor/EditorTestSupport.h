#pragma once

// The program on fakes with the editor shown, in a language whose entries
// name themselves ("T42"), but for the few texts the editor's tests read.

#include "TestApp.h"

#include "editor/Form2.h"
#include "player/Form1.h"

#include <QTest>
#include <gtest/gtest.h>

// Starts the program with the editor shown and active, in the language
// file of this name.
inline void startEditor(TestApp &app, const QString &languageFile = QStringLiteral("English.lng"))
{
    app.folder.setLanguage(languageFile,
                           {{1, QStringLiteral("Quillmere")}, {53, QStringLiteral("The file exists.")},
                            {54, QStringLiteral("Replace it?")}, {75, QStringLiteral("Save the changes to")},
                            {86, QStringLiteral("Show the editor")}, {96, QStringLiteral("Editor")},
                            {97, QStringLiteral("Document")}, {98, QStringLiteral("File not f&ound")},
                            {99, QStringLiteral("&Save the changes?")}, {121, QStringLiteral("RTF files")},
                            {122, QStringLiteral("Text files")}});
    app.folder.setSettingsLine(8, QStringLiteral("0"));  // the editor shown
    app.folder.setSettingsLine(16, QStringLiteral("0")); // no bookmark window
    app.folder.setSettingsLine(24, QStringLiteral("0")); // no update check
    app.folder.setSettingsLine(25, QStringLiteral("0")); // typing does not hold the player
    ASSERT_TRUE(app.start());
    Form2 &editor = app.form2();
    editor.show();
    editor.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&editor));
    editor.RTB->setFocus();
}

// The fixture of most editor tests: the program started with the editor.
class EditorTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        startEditor(app);
        editor = &app.form2();
        rtb = editor->RTB;
    }
    TestApp app;
    Form2 *editor = nullptr;
    RichTextBox *rtb = nullptr;
};

inline void select(RichTextBox *rtb, qint32 start, qint32 length)
{
    rtb->setSelStart(start);
    rtb->setSelLength(length);
}
