#pragma once

#include <QStringList>

class QPrinter;
class QWidget;

// The installed printers and the system's printer set-up dialog. It lives
// beside the windows rather than in the core library, since its subject is
// a QPrinter. The real implementation asks the print system and shows Qt's
// print dialog; the fake answers from a script.
class PrinterSetup
{
public:
    virtual ~PrinterSetup() = default;

    // The names of the installed printers, in the print system's order.
    virtual QStringList installedPrinters() = 0;

    // The name of the current printer of `printer`.
    virtual QString currentPrinter(const QPrinter &printer) = 0;

    // Makes the installed printer of this name the current one of `printer`.
    virtual void selectPrinter(QPrinter &printer, const QString &name) = 0;

    // The printer set-up dialog over `printer`: the user chooses a printer
    // (or a PDF file) and its paper; on confirmation the choices are
    // written to `printer`. False when cancelled, `printer` then unchanged.
    virtual bool setupDialog(QWidget *owner, QPrinter &printer) = 0;
};
