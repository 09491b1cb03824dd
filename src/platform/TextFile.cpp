#include "platform/TextFile.h"

#include <QFile>
#include <QSaveFile>
#include <QStringDecoder>

namespace TextFile {

QString decode(const QByteArray &bytes, const char *legacyCodec)
{
    QByteArray data = bytes;
    if (data.startsWith("\xEF\xBB\xBF"))
        data.remove(0, 3);
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = utf8.decode(data);
    if (!utf8.hasError())
        return text;
    QStringDecoder legacy(legacyCodec);
    if (!legacy.isValid())
        legacy = QStringDecoder(QStringDecoder::Latin1);
    return legacy.decode(data);
}

QStringList splitLines(const QString &text)
{
    QStringList lines;
    qsizetype start = 0;
    const qsizetype n = text.size();
    for (qsizetype i = 0; i < n; ++i) {
        const QChar c = text.at(i);
        if (c == u'\r' || c == u'\n') {
            lines.append(text.mid(start, i - start));
            if (c == u'\r' && i + 1 < n && text.at(i + 1) == u'\n')
                ++i;
            start = i + 1;
        }
    }
    if (start < n)
        lines.append(text.mid(start));
    return lines;
}

std::optional<QByteArray> readBytes(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    return file.readAll();
}

std::optional<QStringList> readLines(const QString &path, const char *legacyCodec)
{
    const auto bytes = readBytes(path);
    if (!bytes)
        return std::nullopt;
    return splitLines(decode(*bytes, legacyCodec));
}

bool writeBytes(const QString &path, const QByteArray &bytes)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    if (file.write(bytes) != bytes.size()) {
        file.cancelWriting();
        return false;
    }
    return file.commit();
}

bool writeLines(const QString &path, const QStringList &lines)
{
    QByteArray bytes;
    for (const QString &line : lines) {
        bytes += line.toUtf8();
        bytes += "\r\n";
    }
    return writeBytes(path, bytes);
}

} // namespace TextFile
