#include "recorder/RecorderText.h"

#include <QFileInfo>
#include <cmath>

QString FormatTime(qint32 secondi, bool millisecondi)
{
    qint64 s = secondi;
    if (millisecondi)
        s = qint64(std::nearbyint(secondi / 1000.0));
    const auto two = [](qint64 v) { return QString::number(v).rightJustified(2, u'0'); };
    return two(s / 3600) + u':' + two(s % 3600 / 60) + u':' + two(s % 60);
}

QString freeRecordingName(const QString &folder)
{
    for (int n = 1;; ++n) {
        const QString path = folder + QStringLiteral("/Rec ") + QString::number(n).rightJustified(2, u'0')
                             + QStringLiteral(".wav");
        if (!QFileInfo::exists(path))
            return path;
    }
}
