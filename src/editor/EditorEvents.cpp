// The events of the text: typing and the player, the key tables, the
// clipboard in two forms, the time stamp, and the undo commands.

#include "app/AppContext.h"
#include "editor/Form2.h"
#include "editor/UndoHistory.h"
#include "player/Form1.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QCursor>
#include <QMenu>
#include <QMimeData>

namespace {

// The clipboard's RTF format.
const QString RtfMime = QStringLiteral("text/rtf");

QClipboard *clipboard()
{
    return QGuiApplication::clipboard();
}

void clipboardClear()
{
    clipboard()->clear();
}

// Stores the plain-text form. Like the platform's SetText it adds one
// format: an RTF form already on the clipboard stays. The old form is
// asked for by its data, not by its presence: on X11 asking whether a
// clipboard nobody owns holds a format lists every picture format there
// is, which loads all their plug-ins, while asking for its data returns at
// once. The editor's switch empties the clipboard just before, so it needs
// no plug-in; a clipboard another program owns loads them either way, once.
void clipboardSetText(const QString &text)
{
    auto *data = new QMimeData;
    if (const QMimeData *old = clipboard()->mimeData()) {
        if (const QByteArray rtf = old->data(RtfMime); !rtf.isEmpty())
            data->setData(RtfMime, rtf);
    }
    data->setText(text);
    clipboard()->setMimeData(data);
}

QString clipboardPlainText()
{
    return clipboard()->text();
}

QString clipboardRtf()
{
    const QMimeData *data = clipboard()->mimeData();
    return data ? QString::fromLatin1(data->data(RtfMime)) : QString();
}

} // namespace

// --- Typing -----------------------------------------------------------------------

void Form2::RTB_Change()
{
    ctx.TestoModificato = 1;
    // Typing holds the timed play/pause cycle while this watch runs; each
    // change starts it again.
    if (Form1 *player = ctx.form1(); player && player->mnuNoPlayOnWrite->isChecked())
        player->Timer6->setInterval(1300);
    if (!ctx.undo().RegistraUndo)
        return;
    ctx.undo().capture(*RTB);
}

// --- Keys ---------------------------------------------------------------------------

void Form2::RTB_KeyDown(int &KeyCode, int &Shift)
{
    Form1 *player = ctx.form1();
    auto call = [player](void (Form1::*routine)()) {
        if (player)
            (player->*routine)();
    };
    // Ctrl alone: with Shift or Alt as well, no row of this group applies.
    if (Shift == 2) {
        void (Form1::*command)() = nullptr;
        switch (KeyCode) {
        case 77: command = &Form1::mnuAddBM_Click; break;
        case 79: command = &Form1::mnuApri_Click; break; // the media, not the document
        case 81: command = &Form1::mnuEsci_Click; break;
        case 87: command = &Form1::mnuLingua_Click; break;
        case 112: command = &Form1::mnuInfo_Click; break;
        case 115: command = &Form1::mnuChiudi_Click; break;
        default: break;
        }
        if (command) {
            call(command);
            KeyCode = 0;
            Shift = 0;
            return;
        }
        // The speed keys keep their code, so their release still reaches
        // the key-up table: Ctrl+F6 slows down now and steps back then.
        if (KeyCode == 117 || KeyCode == 118) {
            call(KeyCode == 117 ? &Form1::mnuDiminuisciVelocità_Click : &Form1::mnuAumentaVelocità_Click);
            Shift = 0;
            return;
        }
        // The control's own cut, copy, paste, undo, italic and redo never
        // run; these commands act on the release.
        for (int editing : {88, 67, 86, 90, 73, 89}) {
            if (KeyCode == editing) {
                KeyCode = 0;
                Shift = 0;
                return;
            }
        }
    }
    // The speed keys act on the press, whatever the modifiers, so that a
    // held key sweeps the speed with the keyboard's repeat.
    if (KeyCode == 114) {
        KeyCode = 0;
        call(&Form1::mnuDiminuisciVelocità_Click);
    } else if (KeyCode == 115) {
        KeyCode = 0;
        call(&Form1::mnuAumentaVelocità_Click);
    }
}

void Form2::RTB_KeyUp(int &KeyCode, int &Shift)
{
    // Ctrl must still be held when the letter is released.
    if (Shift == 2) {
        if (KeyCode == 90)
            mnuAnnulla_Click();
        if (KeyCode == 89)
            mnuRipeti_Click();
        if (KeyCode == 67)
            mnuCopia_Click();
        if (KeyCode == 86)
            mnuIncolla_Click();
        if (KeyCode == 88)
            mnuTaglia_Click();
        if (KeyCode == 73)
            Label2_Click(5);
        // Only this one file name gives the Italian letters; in Italian,
        // Ctrl+S also saves by the menu's shortcut, and both stand.
        const bool italian = ctx.FileLingua.toLower() == QLatin1String("italiano.lng");
        if (KeyCode == (italian ? 71 : 66))
            Label2_Click(4);
        if (KeyCode == (italian ? 83 : 85))
            Label2_Click(6);
    }
    // The transport keys act once per press, on the release, whatever the
    // modifiers.
    Form1 *player = ctx.form1();
    if (!player)
        return;
    if (KeyCode == 112)
        player->mnuGuida_Click();
    if (KeyCode == 116)
        player->cmdPlay_Click();
    if (KeyCode == 117)
        player->cmdIndietro_Click();
    if (KeyCode == 118)
        player->cmdAvanz_Click();
    if (KeyCode == 119)
        player->mnuBookMark_Click();
    if (KeyCode == 120)
        player->mnuImpostaAudio_Click();
    if (KeyCode == 122)
        player->mnuTitoloCompleto_Click();
}

void Form2::RTB_MouseDown(int Button, int, int, int)
{
    if (Button == 2)
        mnuModifica->popup(QCursor::pos());
}

void Form2::RTB_LostFocus()
{
    clipboardSetText(RTB->SelText());
}

// --- Clipboard -------------------------------------------------------------------------
//
// The editor's copy puts the RTF source on the clipboard as plain text, and
// its paste turns that back into formatted text. Timer1 swaps the clipboard
// to the plain form whenever another window comes to the front, so that
// other programs get readable text, and back when the editor returns.

void Form2::mnuCopia_Click()
{
    clipboardClear();
    const QString rtf = RTB->SelRTF();
    clipboardSetText(rtf);
    clipRtf = rtf;
    clipPlain = RTB->SelText();
    ClipRtfOn = true;
}

void Form2::mnuTaglia_Click()
{
    clipboardClear();
    const QString rtf = RTB->SelRTF();
    clipboardSetText(rtf);
    clipRtf = rtf;
    clipPlain = RTB->SelText();
    RTB->setSelRTF(QString());
    ClipRtfOn = true;
}

void Form2::mnuIncolla_Click()
{
    // Plain text too goes in through SelRTF: that is what makes the RTF
    // source of the editor's own copy formatted again.
    const QString rtf = clipboardRtf();
    if (!rtf.isEmpty()) {
        RTB->setSelRTF(rtf);
        return;
    }
    const QString text = clipboardPlainText();
    if (!text.isEmpty())
        RTB->setSelRTF(text);
}

void Form2::Timer1_Timer()
{
    // The switch replaces whatever is on the clipboard, text copied in
    // another program included; that is the price of the scheme, kept.
    const bool inFront = QApplication::activeWindow() == this;
    if (!ClipRtfOn && inFront) {
        clipboardClear();
        clipboardSetText(clipRtf);
        ClipRtfOn = true;
    } else if (ClipRtfOn && !inFront) {
        clipboardClear();
        clipboardSetText(clipPlain);
        ClipRtfOn = false;
    }
}

// --- Time stamp ---------------------------------------------------------------------------

void Form2::mnuTimeStamp_Click()
{
    // The player's own text of its position, padded to hh:mm:ss; a text
    // longer than eight characters has no padding to take and nothing is
    // written.
    const QString s = ctx.player().currentPositionString();
    if (s.size() > 8)
        return;
    RTB->setSelText(u'[' + QStringLiteral("00:00:00").left(8 - s.size()) + s + QStringLiteral("] "));
}

// --- Undo ---------------------------------------------------------------------------------

void Form2::mnuAnnulla_Click()
{
    ctx.undo().EseguiUndo(*RTB);
    ctx.TestoModificato = 1;
}

void Form2::mnuRipeti_Click()
{
    ctx.undo().EseguiRedo(*RTB);
}
