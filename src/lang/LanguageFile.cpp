#include "lang/LanguageFile.h"

#include "platform/TextFile.h"

#include <QStringDecoder>

const QString &LanguageTable::operator()(int index) const
{
    static const QString empty;
    if (index < 0 || index >= Size)
        return empty;
    return m_entries[size_t(index)];
}

void LanguageTable::set(int index, const QString &text)
{
    if (index >= 0 && index < Size)
        m_entries[size_t(index)] = text;
}

namespace LanguageFile {

QString entryOfLine(const QString &line)
{
    const qsizetype keep = line.size() - 2;
    if (line.size() <= 3 || keep <= 0)
        return QString();
    // The count is of UTF-16 units: a cut through a pair of them leaves a half
    // that is no character.
    return TextFile::withoutLoneSurrogates(line.mid(3, keep));
}

Result apply(const QStringList &lines, LanguageTable &table)
{
    Result result = Result::Loaded;
    int counter = 0;
    for (const QString &line : lines) {
        if (counter >= LanguageTable::Size) {
            result = Result::TooLong;
            continue;
        }
        table.set(counter, entryOfLine(line));
        ++counter;
    }
    return result;
}

QString decodeLegacy(const QByteArray &bytes)
{
    // In windows-1251 the Cyrillic letters fill 0xC0-0xFF; a Western text
    // uses that range only for its few accented letters, between plain ASCII
    // ones. A text whose high bytes mostly stand next to other high bytes is
    // taken as Cyrillic.
    int high = 0;
    int highRuns = 0;
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        const auto c = static_cast<unsigned char>(bytes.at(i));
        if (c >= 0xC0) {
            ++high;
            if (i > 0 && static_cast<unsigned char>(bytes.at(i - 1)) >= 0xC0)
                ++highRuns;
        }
    }
    const char *codec = (high > 0 && highRuns * 2 >= high) ? "windows-1251" : "windows-1252";
    QStringDecoder decoder(codec);
    return decoder.decode(bytes);
}

Result load(const QString &path, LanguageTable &table)
{
    const auto bytes = TextFile::readBytes(path);
    if (!bytes)
        return Result::Missing;
    return loadBytes(*bytes, table);
}

Result loadBytes(const QByteArray &bytes, LanguageTable &table)
{
    QByteArray data = bytes;
    if (data.startsWith("\xEF\xBB\xBF"))
        data.remove(0, 3);
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = utf8.decode(data);
    if (utf8.hasError())
        text = decodeLegacy(data);
    return apply(TextFile::splitLines(text), table);
}

} // namespace LanguageFile
