// Salva: the settings file, written whole after every change of an option.

#include "app/AppContext.h"
#include "bookmarks/Form3.h"
#include "editor/Form2.h"
#include "platform/Numbers.h"
#include "platform/TextFile.h"
#include "player/Form1.h"

#include <QAction>

void Form1::Salva()
{
    Form2 *editor = ctx.form2();
    Form3 *marks = ctx.form3(); // reading its geometry loads it, hidden
    auto number = [](double v) { return Numbers::numberText(v); };
    auto flag = [](bool on) { return on ? QStringLiteral("1") : QStringLiteral("0"); };

    const QStringList lines = {
        ctx.FileLingua.trimmed(),
        Image1->Tag.trimmed(),
        number(Image1->Top()),
        number(ctx.SecSalto),
        number(ctx.SecIndietro),
        flag(mnuTitoloCompleto->isChecked()),
        ctx.CartellaMedia.trimmed(),
        editorOpen() ? QStringLiteral("0") : QStringLiteral("1"),
        number(Left()),
        number(Top()),
        number(editor->Left()),
        number(editor->Top()),
        number(editor->Width()),
        number(editor->Height()),
        mnuPrimoPiano->isChecked() ? QStringLiteral("0") : QStringLiteral("1"),
        marks->isOpen() ? QStringLiteral("0") : QStringLiteral("1"),
        number(marks->Left()),
        number(marks->Top()),
        number(marks->Width()),
        number(marks->Height()),
        number(ctx.TempoPlay),
        number(ctx.TempoPause),
        flag(mnuSmartPlay->isChecked()),
        flag(mnuCheckUpdateStartup->isChecked()),
        flag(mnuNoPlayOnWrite->isChecked()),
    };
    TextFile::writeLines(ctx.settingsPath(), lines);
}
