// The bookmark commands of the player window and the save of the table.

#include "app/AppContext.h"
#include "bookmarks/BookmarkFile.h"
#include "bookmarks/Form3.h"
#include "bookmarks/ListBox.h"
#include "editor/Form2.h"
#include "platform/TextFile.h"
#include "player/Form1.h"

#include <QAction>
#include <QDir>
#include <QFileInfo>
#include <QtDebug>

void Form1::SalvaBookMark()
{
    // 1. An empty table leaves the file as it is: the bookmarks of a media
    // whose rows were all deleted come back at its next opening.
    if (!BookmarkFile::hasBookmarks(ctx.BookMark))
        return;

    // 2, 3. The file of the media, by its name, in the program's folder.
    const QString path = BookmarkFile::filePath(ctx.programFolder(), Label4->Tag);
    QDir().mkpath(QFileInfo(path).absolutePath());

    // 4-6. The whole file replaces the old one, or the old one stays: a
    // failed write never leaves half a file. The program tells nothing.
    QString error;
    if (!TextFile::writeLines(path, BookmarkFile::linesToWrite(ctx.BookMark), &error))
        qWarning("Bookmarks not saved to %s: %s", qUtf8Printable(path), qUtf8Printable(error));

    // 7.
    Form3 *marks = ctx.form3();
    marks->List1->Clear();
    marks->List2->Clear();
}

void Form1::mnuBookMark_Click()
{
    Form3 *marks = ctx.form3();
    if (marks->isVisible()) {
        mnuBookMark->setText(ctx.Lingua(84));
        marks->hide();
        return;
    }
    // Beside the player, in its row, up to the right edge of the editor
    // below; the editor moves under the two. Outer frames throughout.
    Form2 *editor = ctx.form2();
    mnuBookMark->setText(ctx.Lingua(85));
    marks->setTop(Top());
    marks->setLeft(Left() + Width() + 60);
    marks->setHeight(Height());
    marks->setWidth(editor->Width() - Width() - 60);
    editor->setTop(marks->Top() + marks->Height() + 30);
    marks->show();
    if (!editor->isVisible()) {
        activateWindow();
        setFocus();
    } else {
        editor->SetFocus();
    }
}

void Form1::mnuAddBM_Click()
{
    Form3 *marks = ctx.form3();
    Form2 *editor = ctx.form2();
    mnuBookMark->setText(ctx.Lingua(85));
    // The placement of mnuBookMark_Click without its height.
    marks->setTop(Top());
    marks->setLeft(Left() + Width() + 60);
    marks->setWidth(editor->Width() - Width() - 60);
    editor->setTop(marks->Top() + marks->Height() + 30);
    marks->show();
    marks->Command1_Click();
    ctx.dialogs().beep();
}

void Form1::mnuBMsuccessivo_Click()
{
    ListBox *list = ctx.form3()->List1;
    if (list->ListCount() == 0 || list->ListIndex() + 1 > list->ListCount() - 1)
        return;
    list->setListIndex(list->ListIndex() + 1);
    ctx.form3()->List1_DblClick();
}

void Form1::mnuBMprecedente_Click()
{
    ListBox *list = ctx.form3()->List1;
    if (list->ListCount() == 0 || list->ListIndex() - 1 < 0)
        return;
    list->setListIndex(list->ListIndex() - 1);
    ctx.form3()->List1_DblClick();
}
