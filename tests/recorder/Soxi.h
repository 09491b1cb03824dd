#pragma once

#include <QFile>
#include <QProcess>
#include <QRegularExpression>

// What an independent reader (sox's soxi) finds in a WAV file: its format
// as "<channels> ch <rate> Hz <bits> bit", empty when it cannot read the
// file, and its length in samples.
struct SoxiInfo
{
    QString format;
    qint64 samples = -1;
};

inline SoxiInfo soxi(const QString &path)
{
    QProcess p;
    p.start(QStringLiteral("soxi"), {path});
    p.waitForFinished(10000);
    const QString out = QString::fromLocal8Bit(p.readAllStandardOutput());
    const auto field = [&](const char *pattern) { return QRegularExpression(QLatin1String(pattern)).match(out).captured(1); };
    const QString channels = field("Channels\\s*:\\s*(\\d+)");
    if (p.exitCode() != 0 || channels.isEmpty())
        return {};
    return {QStringLiteral("%1 ch %2 Hz %3 bit").arg(channels, field("Sample Rate\\s*:\\s*(\\d+)"), field("Precision\\s*:\\s*(\\d+)-bit")),
            field("=\\s*(\\d+)\\s*samples").toLongLong()};
}

inline QByteArray fileBytes(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}
