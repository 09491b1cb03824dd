#pragma once

#include <QByteArray>
#include <QColor>
#include <QtGlobal>

class Dialogs;
class QWidget;

// The colour dialog as the editor's colour command uses it. Colours are
// 32-bit numbers in the platform's order: red in the low byte, then green,
// then blue (0x00BBGGRR), which is what the command stores and compares.
class ShowColor
{
public:
    explicit ShowColor(Dialogs &dialogs) : m_dialogs(dialogs) {}

    // The colour given in, and the answer of a confirmed dialog.
    qint32 RGBResult = 0;
    // -1 when the user cancelled the last dialog, 0 when confirmed.
    qint16 ColorAnnulla = 0;
    QWidget *hOwner = nullptr;
    // The sixteen custom colours, four bytes each in the order above.
    QByteArray CustomColors = QByteArray(64, '\0');

    // Shows the dialog, started on RGBResult. (The method has the class's
    // name in the program; C++ keeps that name for the constructor.)
    void Show();

    static QColor toColor(qint32 rgb);
    static qint32 fromColor(const QColor &color);

private:
    Dialogs &m_dialogs;
};
