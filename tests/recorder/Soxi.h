#pragma once

#include <QFile>
#include <QtEndian>
#include <QProcess>
#include <QRegularExpression>
#include <QString>

// What an independent reader (sox's soxi) finds in a WAV file; ok is false
// when it cannot read the file at all.
struct SoxiInfo
{
    bool ok = false;
    int channels = 0;
    int rate = 0;
    int bits = 0;
    qint64 samples = 0;
};

inline SoxiInfo soxi(const QString &path)
{
    QProcess p;
    p.start(QStringLiteral("soxi"), {path});
    SoxiInfo info;
    if (!p.waitForFinished(10000) || p.exitCode() != 0)
        return info;
    const QString out = QString::fromLocal8Bit(p.readAllStandardOutput());
    const auto field = [&](const char *pattern) {
        const auto m = QRegularExpression(QLatin1String(pattern)).match(out);
        return m.hasMatch() ? m.captured(1).toLongLong() : -1;
    };
    info.channels = int(field("Channels\\s*:\\s*(\\d+)"));
    info.rate = int(field("Sample Rate\\s*:\\s*(\\d+)"));
    info.bits = int(field("Precision\\s*:\\s*(\\d+)-bit"));
    info.samples = field("=\\s*(\\d+)\\s*samples");
    info.ok = info.channels > 0;
    return info;
}

inline QByteArray fileBytes(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

inline quint32 u32At(const QByteArray &b, int at)
{
    return b.size() < at + 4 ? 0 : qFromLittleEndian<quint32>(b.constData() + at);
}
