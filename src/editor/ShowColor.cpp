#include "editor/ShowColor.h"

#include "platform/Dialogs.h"

#include <QtEndian>
#include <array>

QColor ShowColor::toColor(qint32 rgb)
{
    const auto v = quint32(rgb);
    return QColor(int(v & 0xFF), int((v >> 8) & 0xFF), int((v >> 16) & 0xFF));
}

qint32 ShowColor::fromColor(const QColor &color)
{
    const QColor c = color.toRgb();
    return qint32(quint32(c.red()) | quint32(c.green()) << 8 | quint32(c.blue()) << 16);
}

void ShowColor::Show()
{
    std::array<QColor, 16> custom;
    for (size_t i = 0; i < custom.size(); ++i) {
        custom[i] = toColor(qFromLittleEndian<qint32>(CustomColors.constData() + 4 * i));
    }
    QColor color = toColor(RGBResult);
    if (!m_dialogs.chooseColorWithCustom(hOwner, color, custom)) {
        // The other members stay as they were.
        ColorAnnulla = -1;
        return;
    }
    ColorAnnulla = 0;
    for (size_t i = 0; i < custom.size(); ++i) {
        qToLittleEndian(fromColor(custom[i]), CustomColors.data() + 4 * i);
    }
    RGBResult = fromColor(color);
}
