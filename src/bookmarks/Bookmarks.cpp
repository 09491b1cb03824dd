// The bookmark commands of the player window. The bookmark file and the
// full bookmark window are still to come: saving is a named no-op, and the
// window shows the marks read for the open file.

#include "app/AppContext.h"
#include "bookmarks/Form3.h"
#include "player/Form1.h"

#include <QAction>
#include <QListWidget>

void Form1::SalvaBookMark()
{
    // Bookmark files are not written yet.
}

void Form1::mnuAddBM_Click() {}
void Form1::mnuBMsuccessivo_Click() {}
void Form1::mnuBMprecedente_Click() {}

void Form1::mnuBookMark_Click()
{
    if (mnuBookMark->text() == ctx.Lingua(85)) {
        if (Form3 *marks = ctx.existingForm3())
            marks->hide();
        mnuBookMark->setText(ctx.Lingua(84));
    } else {
        Form3 *marks = ctx.form3();
        marks->setWindowTitle(ctx.Lingua(120));
        marks->List1->clear();
        marks->List2->clear();
        for (const QString &line : ctx.BookMark) {
            if (line.isEmpty())
                break;
            marks->List1->addItem(line);
            marks->List2->addItem(line);
        }
        marks->show();
        mnuBookMark->setText(ctx.Lingua(85));
    }
    TornaAllEditor(true);
}
