// The player as a window: the editor shown and hidden with it, staying on
// top, the full path in the title.

#include "app/AppContext.h"
#include "bookmarks/Form3.h"
#include "editor/Form2.h"
#include "player/Form1.h"

#include <QAction>

void Form1::mnuMostraNascondi_Click()
{
    Form2 *editor = ctx.form2();
    if (!editor->isVisible()) {
        mnuMostraNascondi->setText(ctx.Lingua(116));
        editor->show();
    } else {
        editor->hide();
        mnuMostraNascondi->setText(ctx.Lingua(86));
    }
    Salva();
}

void Form1::mnuPrimoPiano_Click()
{
    mnuPrimoPiano->setChecked(!mnuPrimoPiano->isChecked());
    setWindowPosTopmost(mnuPrimoPiano->isChecked());
    Salva();
}

void Form1::mnuTitoloCompleto_Click()
{
    mnuTitoloCompleto->setChecked(!mnuTitoloCompleto->isChecked());
    MostraPath();
    Salva();
}

void Form1::Form_Resize()
{
    if (windowState() & Qt::WindowMinimized) {
        if (ctx.existingForm2() && ctx.existingForm2()->isVisible())
            ctx.existingForm2()->hide();
        if (ctx.existingForm3() && ctx.existingForm3()->isVisible())
            ctx.existingForm3()->hide();
        return;
    }
    // The captions remember what was open before the window was minimised.
    if (mnuMostraNascondi->text() == ctx.Lingua(116))
        ctx.form2()->show();
    if (mnuBookMark->text() == ctx.Lingua(85))
        ctx.form3()->show();
}
