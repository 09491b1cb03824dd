#pragma once

#include <QString>
#include <QStringList>
#include <optional>

// Reads the fields of the settings file the way the program always has: a
// stream of fields in the manner of comma-separated input, not one value a
// line. Leading blanks are skipped; a field that begins with a double quote
// runs to the next double quote, across lines; any other field ends at a comma or at the
// end of the line. So a value holding a comma splits there, and every later
// field moves by one.
class SettingsFieldReader
{
public:
    explicit SettingsFieldReader(const QStringList &lines);

    bool atEnd() const;

    // The next field as text; nullopt past the end of the file.
    std::optional<QString> text();

    // The next field converted at once to a signed 16-bit integer (the
    // leading number, rounded half to even); nullopt past the end, or when
    // the value does not fit, in which case the field is used up.
    std::optional<qint16> int16();

private:
    QStringList m_lines;
    int m_line = 0;
    qsizetype m_col = 0;
};

namespace SettingsFile {

// The number of lines the settings file has.
inline constexpr int LineCount = 25;

// "Val" of a text read, converted to 16 bits; nullopt when it does not fit.
std::optional<qint16> valInt16(const QString &text);

} // namespace SettingsFile
