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
        // A quoted field runs to the next quote, across line ends if need
        // be (they are part of the field), or to the end of the file.
        qsizetype close = line.indexOf(u'"', i + 1);
        field = line.mid(i + 1, close < 0 ? -1 : close - i - 1);
        while (close < 0 && m_line + 1 < m_lines.size()) {
            const QString &next = m_lines.at(++m_line);
            close = next.indexOf(u'"');
            field += QStringLiteral("\r\n") + next.left(close < 0 ? next.size() : close);
        }
        const QString &last = m_lines.at(m_line);
        i = close < 0 ? last.size() : close + 1;
        // Whatever stands between the closing quote and the next comma is
        // passed over.
        while (i < last.size() && last.at(i) != u',')
            ++i;
        if (i < last.size()) {
            m_col = i + 1;
        } else {
            ++m_line;
            m_col = 0;
        }
        return field;
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
