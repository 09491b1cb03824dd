#pragma once

#include <QFile>
#include <QProcess>

// One field of what an independent reader (sox's soxi) finds in a WAV file:
// "-s" its length in samples, "-c" channels, "-r" rate, "-b" bits; -1 when
// it cannot read the file.
inline qint64 soxi(const QString &path, const char *field = "-s")
{
    QProcess p;
    p.start(QStringLiteral("soxi"), {QLatin1String(field), path});
    p.waitForFinished(10000);
    bool ok = false;
    const qint64 value = p.readAllStandardOutput().trimmed().toLongLong(&ok);
    return ok ? value : -1;
}

inline QByteArray fileBytes(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}
