// The commands that open the small input dialog: the four seconds settings
// and go-to. What the user types is checked and stored by the dialog's OK
// routine, so a change takes effect at the next use of the value: a phase of
// the cycle already running keeps the length it started with.

#include "app/AppContext.h"
#include "dictation/Form4.h"
#include "player/Form1.h"

#include <QLineEdit>

namespace {

void openSetting(Form1 &form, qint16 &variable, qint16 floor, const QString &caption, const QString &prompt)
{
    if (variable < floor)
        variable = floor;
    Form4 dialog(form.ctx, &form);
    dialog.setCaption(TogliAmp(caption));
    dialog.Label1->setCaption(TogliAmp(prompt));
    dialog.Text1->setText(QString::number(variable));
    dialog.Text1->setSelection(0, int(dialog.Text1->text().size()));
    dialog.showModal();
}

// The prompt of a cycle time: its name and the hint, whose "nnn" takes a
// fixed suggestion that does not follow the real limits.
QString cyclePrompt(const AppContext &ctx, int entry, const QString &suggestion)
{
    QString hint = ctx.Lingua(128);
    hint.replace(QStringLiteral("nnn"), suggestion);
    return ctx.Lingua(entry) + u' ' + hint;
}

} // namespace

void Form1::mnuSecIndietro_Click()
{
    openSetting(*this, ctx.SecIndietro, 0, ctx.Lingua(32), ctx.Lingua(31));
}

void Form1::mnuSalto_Click()
{
    // The floor is 2 although the dialog accepts 1: a stored 1 shows as 2.
    openSetting(*this, ctx.SecSalto, 2, ctx.Lingua(35), ctx.Lingua(34));
}

void Form1::mnuTempoPlay_Click()
{
    openSetting(*this, ctx.TempoPlay, 3, ctx.Lingua(124), cyclePrompt(ctx, 125, QStringLiteral("5")));
}

void Form1::mnuTempoPause_Click()
{
    openSetting(*this, ctx.TempoPause, 1, ctx.Lingua(124), cyclePrompt(ctx, 126, QStringLiteral("3")));
}

void Form1::mnuVai_Click()
{
    Form4 dialog(ctx, this);
    dialog.setCaption(TogliAmp(ctx.Lingua(39)));
    dialog.Label1->setCaption(TogliAmp(ctx.Lingua(38)));
    dialog.showModal();
}
