// Printing: the printer set-up dialog and the print of the selection or of
// the whole document, with the text control's own pagination. The program
// lays out no page of its own.

#include "app/AppContext.h"
#include "editor/Form2.h"

#include <QPrinter>

QPrinter &Form2::Printer()
{
    // Made on first use: asking the print system for its printers takes a
    // moment that the start of the program need not wait for. It lives as
    // long as the editor, so a choice made in the dialog holds for the
    // next print.
    if (!m_printer)
        m_printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
    return *m_printer;
}

bool Form2::ScegliStampante(QWidget *finestra, const QString &nomeStampante, int flags)
{
    // Only the set-up dialog (flag 64) is ever asked for; the dialog has no
    // page range in any case.
    Q_UNUSED(flags);
    PrinterSetup &system = ctx.printers();
    QPrinter &printer = Printer();
    const QString vecchia = system.currentPrinter(printer);
    const QStringList installed = system.installedPrinters();
    // Every printer whose name contains the given one is made current in
    // turn: the last match wins.
    if (!nomeStampante.isEmpty()) {
        for (const QString &name : installed) {
            if (name.contains(nomeStampante, Qt::CaseInsensitive))
                system.selectPrinter(printer, name);
        }
    }
    // The dialog writes the printer, its copies, duplex, orientation, paper,
    // quality, colour and tray to the printer on confirmation.
    if (system.setupDialog(finestra, printer))
        return true;
    for (const QString &name : installed) {
        if (name == vecchia) {
            system.selectPrinter(printer, name);
            break;
        }
    }
    return false;
}

void Form2::Stampa()
{
    if (ScegliStampante(this, ctx.printers().currentPrinter(Printer()), 64))
        RTB->SelPrint(Printer());
}
