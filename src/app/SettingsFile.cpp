#include "app/SettingsFile.h"

#include "platform/Numbers.h"

SettingsFieldReader::SettingsFieldReader(const QStringList &lines) : m_lines(lines) {}

bool SettingsFieldReader::atEnd() const
{
    return m_line >= m_lines.size();
}

std::optional<QString> SettingsFieldReader::text()
{
    if (atEnd())
        return std::nullopt;
    const QString &line = m_lines.at(m_line);
    qsizetype i = m_col;
    while (i < line.size() && (line.at(i) == u' ' || line.at(i) == u'\t'))
        ++i;
    QString field;
    if (i < line.size() && line.at(i) == u'"') {
        const qsizetype close = line.indexOf(u'"', i + 1);
        if (close < 0) {
            field = line.mid(i + 1);
            i = line.size();
        } else {
            field = line.mid(i + 1, close - i - 1);
            i = close + 1;
            // Whatever stands between the closing quote and the next comma
            // is passed over.
            while (i < line.size() && line.at(i) != u',')
                ++i;
        }
    } else {
        const qsizetype comma = line.indexOf(u',', i);
        const qsizetype end = comma < 0 ? line.size() : comma;
        field = line.mid(i, end - i);
        // An unquoted field loses its trailing blanks.
        while (!field.isEmpty() && (field.endsWith(u' ') || field.endsWith(u'\t')))
            field.chop(1);
        i = end;
    }
    if (i < line.size() && line.at(i) == u',') {
        m_col = i + 1;
    } else {
        ++m_line;
        m_col = 0;
    }
    return field;
}

std::optional<qint16> SettingsFieldReader::int16()
{
    const auto field = text();
    if (!field)
        return std::nullopt;
    return Numbers::toInt16(Numbers::leadingNumber(*field));
}

namespace SettingsFile {

std::optional<qint16> valInt16(const QString &text)
{
    return Numbers::toInt16(Numbers::leadingNumber(text));
}

} // namespace SettingsFile
