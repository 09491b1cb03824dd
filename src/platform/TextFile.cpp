#include "platform/TextFile.h"

#include <QFile>
#include <QSaveFile>
#include <QStringDecoder>
#include <utility>

namespace TextFile {

namespace {

// One byte order mark is taken off by hand; a second one is the text's own
// first character, which the decoders would otherwise drop as well.
constexpr auto KeepMarks = QStringDecoder::Flag::ConvertInitialBom;

} // namespace

QString withoutLoneSurrogates(QString text)
{
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (c.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate())
            ++i;
        else if (c.isSurrogate())
            text[i] = QChar::ReplacementCharacter;
    }
    return text;
}

QString decode(const QByteArray &bytes, const char *legacyCodec)
{
    if (bytes.startsWith("\xFF\xFE"))
        return withoutLoneSurrogates(QStringDecoder(QStringDecoder::Utf16LE, KeepMarks).decode(QByteArrayView(bytes).sliced(2)));
    if (bytes.startsWith("\xFE\xFF"))
        return withoutLoneSurrogates(QStringDecoder(QStringDecoder::Utf16BE, KeepMarks).decode(QByteArrayView(bytes).sliced(2)));
    QByteArray data = bytes;
    if (data.startsWith("\xEF\xBB\xBF"))
        data.remove(0, 3);
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless | KeepMarks);
    QString text = utf8.decode(data);
    if (!utf8.hasError())
        return withoutLoneSurrogates(text);
    QStringDecoder legacy(legacyCodec);
    if (!legacy.isValid())
        legacy = QStringDecoder(QStringDecoder::Latin1);
    return legacy.decode(data);
}

const char *legacyCodecFor(const QString &languageFile, const QString &localeName)
{
    // The language files that stand for a language outside Western Europe.
    const QString stem = languageFile.section(u'.', 0, 0).toLower();
    if (stem == QLatin1String("russian"))
        return "windows-1251";
    if (stem == QLatin1String("hungarian"))
        return "windows-1250";
    const QString language = localeName.section(u'_', 0, 0).section(u'-', 0, 0).toLower();
    static const std::pair<const char *, const char *> byLanguage[] = {
        {"ru", "windows-1251"}, {"uk", "windows-1251"}, {"bg", "windows-1251"}, {"sr", "windows-1251"},
        {"be", "windows-1251"}, {"mk", "windows-1251"},
        {"pl", "windows-1250"}, {"cs", "windows-1250"}, {"sk", "windows-1250"}, {"hu", "windows-1250"},
        {"sl", "windows-1250"}, {"hr", "windows-1250"}, {"ro", "windows-1250"}, {"bs", "windows-1250"},
        {"sq", "windows-1250"},
        {"el", "windows-1253"}, {"tr", "windows-1254"},
    };
    for (const auto &[code, codec] : byLanguage) {
        if (language == QLatin1String(code))
            return codec;
    }
    return DefaultLegacyCodec;
}

bool looksBinary(const QByteArray &bytes)
{
    if (bytes.startsWith("\xFF\xFE") || bytes.startsWith("\xFE\xFF"))
        return false;
    if (bytes.startsWith("PK\x03\x04") || bytes.startsWith("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"))
        return true;
    return QByteArrayView(bytes).first(qMin<qsizetype>(bytes.size(), 8192)).contains('\0');
}

QString trimBlanks(const QString &text)
{
    qsizetype from = 0;
    qsizetype to = text.size();
    while (from < to && text.at(from) == u' ')
        ++from;
    while (to > from && text.at(to - 1) == u' ')
        --to;
    return text.mid(from, to - from);
}

QString rtrimBlanks(const QString &text)
{
    qsizetype to = text.size();
    while (to > 0 && text.at(to - 1) == u' ')
        --to;
    return text.left(to);
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

namespace {

// The last resort where no temporary file can be made beside the target (a
// folder the user may not write, a name at the file system's length limit):
// the existing file is overwritten in place, as the platform's own editors do.
bool writeInPlace(const QString &path, const QByteArray &bytes, QString *error)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        if (error)
            *error = file.errorString();
        return false;
    }
    if (file.write(bytes) != bytes.size() || !file.flush()) {
        if (error)
            *error = file.errorString();
        return false;
    }
    file.close();
    if (file.error() != QFileDevice::NoError) {
        if (error)
            *error = file.errorString();
        return false;
    }
    return true;
}

} // namespace

bool writeBytes(const QString &path, const QByteArray &bytes, QString *error)
{
    QSaveFile file(path);
    file.setDirectWriteFallback(true);
    if (!file.open(QIODevice::WriteOnly)) {
        // No temporary file could be made; an existing file is still written.
        if (QFile::exists(path))
            return writeInPlace(path, bytes, error);
        if (error)
            *error = file.errorString();
        return false;
    }
    if (file.write(bytes) != bytes.size()) {
        if (error)
            *error = file.errorString();
        file.cancelWriting();
        return false;
    }
    if (!file.commit()) {
        if (error)
            *error = file.errorString();
        return false;
    }
    return true;
}

QByteArray linesToBytes(const QStringList &lines)
{
    QByteArray bytes;
    // A text that begins with the byte order mark's character would lose it
    // to the reader, which takes those first bytes for the mark: a mark of
    // its own goes in front.
    if (!lines.isEmpty() && lines.first().startsWith(QChar(0xFEFF)))
        bytes += "\xEF\xBB\xBF";
    for (const QString &line : lines) {
        bytes += line.toUtf8();
        bytes += "\r\n";
    }
    return bytes;
}

bool writeLines(const QString &path, const QStringList &lines, QString *error)
{
    return writeBytes(path, linesToBytes(lines), error);
}

} // namespace TextFile
