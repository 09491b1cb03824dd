#include "platform/PlayerControl.h"

#include <cmath>

QString playerTimeString(double seconds)
{
    if (!std::isfinite(seconds) || seconds < 0)
        seconds = 0;
    const qint64 total = static_cast<qint64>(std::floor(seconds));
    const qint64 h = total / 3600;
    const qint64 m = (total / 60) % 60;
    const qint64 s = total % 60;
    if (h > 0)
        return QStringLiteral("%1:%2:%3").arg(h).arg(m, 2, 10, QLatin1Char('0')).arg(s, 2, 10, QLatin1Char('0'));
    return QStringLiteral("%1:%2").arg(m, 2, 10, QLatin1Char('0')).arg(s, 2, 10, QLatin1Char('0'));
}
