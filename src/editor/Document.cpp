// The editor's document: new, open, save, save as, the recent list and the
// toolbar's dispatcher.

#include "app/AppContext.h"
#include "app/RecentFiles.h"
#include "editor/Form2.h"

#include "platform/TextFile.h"

#include <QAction>
#include <QFileInfo>
#include <QLocale>
#include <QTextDocument>

void Form2::Label2_Click(int Index)
{
    const LanguageTable &L = ctx.Lingua;
    auto toggle = [this](std::optional<bool> now, void (RichTextBox::*write)(bool)) {
        // A mixed selection reads as neither, and becomes true.
        (RTB->*write)(now != std::optional<bool>(true));
        RTB->SetFocus();
    };
    switch (Index) {
    case 0: // New
        if (!askToSaveChanges())
            return;
        // At the top of the 16-bit range the increment fails and the
        // number stays.
        if (ctx.NumeroDocumento < 32767)
            ++ctx.NumeroDocumento;
        RTB->setText(QString());
        setWindowTitle(L(96) + QStringLiteral(" - ") + ctx.NomeDocumento + QString::number(ctx.NumeroDocumento));
        // FileEditor keeps its value on purpose: Save after New writes over
        // the last file without asking.
        ctx.TestoModificato = 0;
        RTB->document()->setModified(false);
        break;
    case 1: // Open
        if (!askToSaveChanges())
            return;
        ApriDocumento(QString());
        break;
    case 2: // Save
        if (ctx.FileEditor.size() > 0) {
            ctx.dialogs().beep();
            if (ctx.TestoModificato == 1) {
                if (wantsAnotherName(ctx.FileEditor)) {
                    mnuSalvaConNome_Click();
                    break;
                }
                const bool written = writeDocument(ctx.FileEditor);
                SalvaFilesRecenti(ctx.FileEditor);
                // A failed write leaves the text unsaved, so that the exit
                // still asks.
                if (written)
                    ctx.TestoModificato = 0;
            }
        } else if (ctx.TestoModificato == 1) {
            mnuSalvaConNome_Click();
        }
        break;
    case 3:
        Stampa();
        break;
    case 4:
        toggle(RTB->SelBold(), &RichTextBox::setSelBold);
        break;
    case 5:
        toggle(RTB->SelItalic(), &RichTextBox::setSelItalic);
        break;
    case 6:
        toggle(RTB->SelUnderline(), &RichTextBox::setSelUnderline);
        break;
    case 7:
        toggle(RTB->SelStrikeThru(), &RichTextBox::setSelStrikeThru);
        break;
    case 8:
        RTB->setSelAlignment(0);
        RTB->SetFocus();
        break;
    case 9:
        RTB->setSelAlignment(2);
        RTB->SetFocus();
        break;
    case 10:
        RTB->setSelAlignment(1);
        RTB->SetFocus();
        break;
    case 11:
    case 12:
        // A mixed selection has no size to step from: nothing changes.
        if (const auto size = RTB->SelFontSize())
            RTB->setSelFontSize(*size + (Index == 11 ? 1 : -1));
        break;
    case 13:
        ShowColor();
        break;
    case 14:
        toggle(RTB->SelBullet(), &RichTextBox::setSelBullet);
        break;
    case 15:
        mnuAnnulla_Click();
        break;
    case 16:
        mnuRipeti_Click();
        break;
    default:
        break;
    }
    saveSettingsAfter(Index);
}

bool Form2::askToSaveChanges()
{
    if (ctx.TestoModificato != 1 || RTB->textLength() == 0)
        return true;
    const int answer = ctx.msgBox(TogliAmp(ctx.Lingua(99)), MsgBox::YesNoCancel | MsgBox::Exclamation,
                                  TogliAmp(ctx.Lingua(1)));
    if (answer == MsgBox::Cancel)
        return false;
    // Whatever the save comes to (a cancelled Save As included), the
    // command goes on.
    if (answer == MsgBox::Yes)
        mnuSalva_Click();
    return true;
}

QString Form2::dialogFilter(QString &defaultExtension) const
{
    const QChar nul(0);
    const QString rtf = ctx.Lingua(121) + nul + QStringLiteral("*.rtf");
    const QString txt = ctx.Lingua(122) + nul + QStringLiteral("*.txt");
    // The file used last decides, by the last three letters of the first
    // recent entry; the choice made in the dialog itself is not kept.
    if (mnuRecent[0]->text().right(3).toLower() == QLatin1String("txt")) {
        defaultExtension = QStringLiteral("txt");
        return txt + nul + rtf;
    }
    defaultExtension = QStringLiteral("rtf");
    return rtf + nul + txt;
}

void Form2::showDocumentName(const QString &path)
{
    const qsizetype slash = path.lastIndexOf(u'/');
    if (slash >= 0)
        setWindowTitle(ctx.Lingua(96) + QStringLiteral(" - ") + path.mid(slash + 1));
}

void Form2::ApriDocumento(const QString &path)
{
    // 1.
    if (!path.isEmpty()) {
        ctx.FileScelto = path;
    } else {
        FileDlgArgs args;
        args.open = true;
        args.owner = this;
        args.title = ctx.Lingua(52);
        args.filter = dialogFilter(args.defaultExtension);
        args.initialFolder = ctx.CartellaMedia;
        ctx.FileScelto = ctx.FileDlg(args);
    }
    // 2, 3.
    if (ctx.FileScelto.trimmed().isEmpty())
        return;
    if (!QFileInfo(ctx.FileScelto).isFile()) {
        ctx.warn(98);
        return;
    }
    // A file that is no text at all (a word processor's, a picture) is not
    // taken: the editor keeps its text and its name.
    RTB->plainTextCodec = TextFile::legacyCodecFor(ctx.FileLingua, QLocale::system().name());
    RichTextBox::LoadOutcome outcome;
    const bool loaded = RTB->LoadFile(ctx.FileScelto, &outcome);
    if (outcome.notText) {
        ctx.warn(138);
        return;
    }
    // 4 to 9. An unreadable file leaves the old text, and the rest still
    // runs: the caption and FileEditor then name the file that wasn't loaded.
    ctx.CartellaMedia = ctx.currentDirectory;
    ctx.FileEditor = ctx.FileScelto;
    SalvaFilesRecenti(ctx.FileEditor);
    showDocumentName(ctx.FileEditor);
    ctx.TestoModificato = 0;
    if (loaded) {
        fileLosingContent = outcome.lostContent ? ctx.FileEditor : QString();
        RTB->document()->setModified(false);
    }
}

void Form2::mnuSalvaConNome_Click()
{
    FileDlgArgs args;
    args.open = false;
    args.owner = this;
    args.title = ctx.Lingua(55);
    args.fileName = ctx.NomeDocumento + QString::number(ctx.NumeroDocumento);
    args.filter = dialogFilter(args.defaultExtension);
    args.initialFolder = ctx.CartellaMedia.trimmed().isEmpty() ? ctx.currentDirectory : ctx.CartellaMedia;
    ctx.FileScelto = ctx.FileDlg(args);
    if (ctx.FileScelto.isEmpty())
        return;
    if (QFileInfo::exists(ctx.FileScelto)) {
        const QString question = TogliAmp(ctx.Lingua(53)) + QStringLiteral("\r\r") + TogliAmp(ctx.Lingua(54));
        if (ctx.msgBox(question, MsgBox::YesNo | MsgBox::Exclamation, TogliAmp(ctx.Lingua(1))) != MsgBox::Yes)
            return;
    }
    ctx.CartellaMedia = ctx.currentDirectory;
    ctx.FileEditor = ctx.FileScelto;
    // Always RTF, under a ".txt" name too: such a file opens again with its
    // formatting.
    const bool written = writeDocument(ctx.FileEditor);
    SalvaFilesRecenti(ctx.FileEditor);
    showDocumentName(ctx.FileEditor);
    if (written)
        ctx.TestoModificato = 0;
}

bool Form2::writeDocument(const QString &path)
{
    QString reason;
    if (!RTB->SaveFile(path, &reason)) {
        ctx.msgBox(TogliAmp(ctx.Lingua(136)) + QStringLiteral("\r\r") + reason, MsgBox::Exclamation,
                   TogliAmp(ctx.Lingua(1)));
        return false;
    }
    // The user chose where it goes: what the loaded file held is given up.
    if (path == fileLosingContent)
        fileLosingContent.clear();
    RTB->document()->setModified(false);
    return true;
}

bool Form2::wantsAnotherName(const QString &path)
{
    if (fileLosingContent.isEmpty() || path != fileLosingContent)
        return false;
    // Asked once: a No means the user accepts the loss.
    fileLosingContent.clear();
    return ctx.msgBox(TogliAmp(ctx.Lingua(139)), MsgBox::YesNo | MsgBox::Exclamation, TogliAmp(ctx.Lingua(1)))
           == MsgBox::Yes;
}

void Form2::SalvaFilesRecenti(const QString &path)
{
    RecentFiles::update(path, mnuRecent, mnur, ctx.filesPath(QStringLiteral("LastFilesEditor.ini")));
}

void Form2::mnuRecent_Click(int index)
{
    if (index >= 0 && index < 4)
        ApriDocumento(mnuRecent[index]->text());
}

void Form2::mnuSelezionaTutto_Click()
{
    RTB->setSelStart(0);
    RTB->setSelLength(RTB->textLength());
    RTB->SetFocus();
}
