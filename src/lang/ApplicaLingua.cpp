// Applying the language table to the player window, and choosing another
// language at run time.

#include "app/AppContext.h"
#include "bookmarks/Form3.h"
#include "editor/Form2.h"
#include "player/Form1.h"

#include <QAction>
#include <QMenu>
#include <QPushButton>
#include <optional>

namespace {

QString tip(const QString &entry)
{
    return QStringLiteral(" ") + entry + QStringLiteral(" ");
}

// The conversion of a text to a boolean: "True" and "False" in any case, or
// a number (non-zero is true). Anything else does not convert.
std::optional<bool> toBoolean(const QString &text)
{
    const QString t = text.trimmed();
    if (t.compare(QLatin1String("true"), Qt::CaseInsensitive) == 0)
        return true;
    if (t.compare(QLatin1String("false"), Qt::CaseInsensitive) == 0)
        return false;
    bool ok = false;
    const double v = t.toDouble(&ok);
    if (ok)
        return v != 0;
    return std::nullopt;
}

} // namespace

void Form1::ApplicaLingua()
{
    const LanguageTable &L = ctx.Lingua;

    // 1. Menus and buttons.
    mnuFile->menuAction()->setText(L(2));
    mnuApri->setText(L(3));
    Image3->setTip(tip(L(3)));
    mnuChiudi->setText(L(4));
    mnuEsci->setText(L(5));
    mnuRiproduzione->menuAction()->setText(L(6));
    // The play word, whatever the player is doing at this moment.
    mnuPlay->setText(L(7));
    cmdPlay->Tag = L(7);
    mnuStop->setText(L(9));
    mnuAvanti->setText(L(10));
    cmdAvanz->Tag = L(10) + QStringLiteral(" ->");
    mnuIndietro->setText(L(11));
    cmdIndietro->Tag = QStringLiteral("<- ") + L(11);
    mnuVai->setText(L(12));
    mnuOpzioni->menuAction()->setText(L(13));
    mnuSalto->setText(L(14));
    mnuLingua->setText(QStringLiteral("&") + L(15));
    mnuGuida->setText(L(16));
    mnuFaiDonazione->setText(L(17));
    mnuAggiornamenti->setText(L(18));
    mnuInfo->setText(L(19));
    mnuSecIndietro->setText(L(30));
    mnuDonazioni->menuAction()->setText(L(74));
    cmdIndietro->setTip(tip(L(76)));
    cmdAvanz->setTip(tip(L(77)));
    cmdPlay->setTip(tip(L(78)));
    cmdStop->setTip(tip(L(79)));
    mnuTitoloCompleto->setText(L(80));
    mnuImpostaAudio->setText(L(81));

    // 2, 3. Captions that tell what the command will do.
    mnuMostraNascondi->setText(editorOpen() ? L(116) : L(86));
    mnuVisualizza->menuAction()->setText(L(87));
    const Form3 *marks = ctx.existingForm3();
    mnuBookMark->setText(marks && marks->isOpen() ? L(85) : L(84));

    // 4. The further menus.
    mnuAddBM->setText(L(93));
    mnuBMsuccessivo->setText(L(94));
    mnuBMprecedente->setText(L(95));
    mnuAggLingua->setText(L(101));
    mnuVersioni->setText(L(102));
    mnuPrimoPiano->setText(L(103));
    mnuRegistra->setText(L(104) + QStringLiteral("..."));
    mnuSmartPlay->setText(L(124));
    imgDetta->setTip(tip(L(124)));
    mnuTempoPlay->setText(L(125) + QStringLiteral("..."));
    mnuTempoPause->setText(L(126) + QStringLiteral("..."));
    mnuDiminuisciVelocità->setText(L(129));
    mnuAumentaVelocità->setText(L(130));
    // This entry switches the start-up check's command on or off; it never
    // becomes its caption. A text that is no boolean changes nothing.
    if (const auto enabled = toBoolean(L(133)))
        mnuCheckUpdateStartup->setEnabled(*enabled);
    mnuNoPlayOnWrite->setText(L(135));
    // Touching the bookmark window loads it, hidden.
    Form3 *bookmarks = ctx.form3();
    bookmarks->Command1->setToolTip(tip(L(93)));
    bookmarks->Command2->setToolTip(tip(L(100)));
    // Names for the controls that have no tool tip of their own, so that a
    // screen reader can tell them.
    cmdRec->setAccessibleName(TogliAmp(L(104)));
    Image4->setAccessibleName(TogliAmp(L(19)));
    Image2->setAccessibleName(TogliAmp(ctx.Lingua(27)).trimmed());

    // 5.
    ctx.form2()->CambiaLingua2();
}

void Form1::mnuLingua_Click()
{
    const QString &entry = ctx.Lingua(15);
    const QString title = entry.size() >= 3 ? entry.left(entry.size() - 3) : QString();
    FileDlgArgs args;
    args.open = true;
    args.owner = this;
    args.title = title;
    args.filter = title + QChar(0) + QStringLiteral("*.lng");
    args.defaultExtension = QStringLiteral("lng");
    args.initialFolder = ctx.programFolder() + QStringLiteral("/Files/Lang");
    const QString chosen = ctx.FileDlg(args);
    if (!chosen.isEmpty()) {
        // The last "/Lang/" of the path decides; the file is always taken
        // from the program's own language folder.
        const QString marker = QStringLiteral("/Lang/");
        for (qsizetype i = 0; i + marker.size() <= chosen.size(); ++i) {
            if (QStringView(chosen).mid(i, marker.size()) == marker)
                ctx.FileLingua = chosen.mid(i + marker.size());
        }
    }
    ctx.loadLanguage();
    ApplicaLingua();
    Salva();
}
