// Commands that lead out of the program: web pages, the help page, the
// version history, the desktop's sound settings, the about box and the
// check for a newer version at start.

#include "app/AppContext.h"
#include "bookmarks/Form3.h"
#include "editor/Form2.h"
#include "outside/Version.h"
#include "outside/frmInformazioni.h"
#include "player/Form1.h"

#include <QAction>

namespace {

// Opens an address or a file of the program folder in the program the
// desktop assigns, and gets the player out of the way. The editor test looks
// for the caption that stands while the editor is already hidden, so a
// visible editor is left to the player's minimising; the bookmark test looks
// for the caption of a visible window. Both are kept as they always were.
void ApriPaginaWeb(Form1 &f, const QString &target, bool localFile)
{
    AppContext &ctx = f.ctx;
    if (localFile)
        ctx.shell().openFile(target);
    else
        ctx.shell().openUrl(target);
    f.setWindowState(f.windowState() | Qt::WindowMinimized);
    if (f.mnuMostraNascondi->text() == ctx.Lingua(86))
        ctx.form2()->hide();
    if (f.mnuBookMark->text() == ctx.Lingua(85)) {
        if (Form3 *marks = ctx.existingForm3())
            marks->hide();
    }
}

} // namespace

void Form1::mnuGuida_Click()
{
    ApriPaginaWeb(*this, ctx.programFolder() + QStringLiteral("/Files/Help-")
                             + Outside::helpLanguageCode(ctx.FileLingua) + QStringLiteral(".html"),
                  true);
}

void Form1::mnuVersioni_Click()
{
    ApriPaginaWeb(*this, ctx.programFolder() + QStringLiteral("/Versioni.txt"), true);
}

void Form1::mnuAggiornamenti_Click()
{
    ApriPaginaWeb(*this, Outside::webPage("/quillmere.html"), false);
}

void Form1::mnuAggLingua_Click()
{
    ApriPaginaWeb(*this, Outside::webPage("/quillmere-languages.html"), false);
}

void Form1::mnuFaiDonazione_Click()
{
    ApriPaginaWeb(*this, Outside::webPage("/donazioni--donation.html"), false);
}

void Form1::mnuImpostaAudio_Click()
{
    // Desktops keep their sound settings in different programs: start the
    // first one that is installed, and nothing when there is none.
    for (const QString &command : Outside::soundSettingsCommands()) {
        if (ctx.shell().hasProgram(command.section(u' ', 0, 0))) {
            ctx.shell().runCommand(command);
            return;
        }
    }
}

void Form1::mnuInfo_Click()
{
    hide();
    if (mnuMostraNascondi->text() == ctx.Lingua(116))
        ctx.form2()->hide();
    if (mnuBookMark->text() == ctx.Lingua(85)) {
        if (Form3 *marks = ctx.existingForm3())
            marks->hide();
    }

    frmInformazioni *about = ctx.formInformazioni();
    // The test looks at the front of the text while the dots of this entry
    // stand at its end, so the caption keeps them; it always has.
    const QString text = TogliAmp(ctx.Lingua(19));
    about->setWindowTitle(text.left(3) == QLatin1String("...") ? text.left(text.size() - 3) : text);
    about->lblTitle->setCaption(QStringLiteral("Quillmere Free"));
    about->lblVersion->setCaption(QString::number(Outside::VersionMajor) + u'.' + QString::number(Outside::VersionMinor)
                                  + QStringLiteral(".0.") + QString::number(Outside::VersionRevision));
    about->lblHomePageCap->setCaption(ctx.Lingua(118) + u':');
    about->lblDescription->setCaption(ctx.Lingua(22));
    about->lblCopyright->setCaption(frmInformazioni::copyrightText() + QStringLiteral(" - ") + ctx.Lingua(23));
    about->lblVersion->setLeft(about->lblTitle->Left() + about->lblTitle->Width() + 150);
    about->Picture1->setAccessibleName(about->windowTitle());
    about->show();
    about->Picture1->setFocus();
}

void Form1::ControllaAggiornamenti()
{
    WebReader *web = ctx.web();
    if (!web)
        return;
    const QString own = Outside::ownVersionText();
    // The answer comes while the player is already on screen and in use; the
    // one question is asked when it arrives, and only if it says that a
    // newer version is there.
    web->get(Outside::versionFileAddress(), this, [this, own](const QByteArray &body) {
        if (ctx.processEnded())
            return;
        if (!Outside::offersNewVersion(QString::fromLatin1(body), own))
            return;
        const int answer = ctx.msgBox(Outside::updateQuestion(ctx.Lingua(131)),
                                      MsgBox::YesNo | MsgBox::Information, ctx.Lingua(132));
        if (answer == MsgBox::Yes) {
            mnuAggiornamenti_Click();
            // The end at once: no settings, bookmarks or questions.
            ctx.endProcess();
        }
    });
}
