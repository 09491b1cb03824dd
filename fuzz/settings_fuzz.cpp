// The settings file: any bytes read as the start-up reads its 25 fields
// without a fault, and the values read, written back as the settings are
// written (one trimmed value a line), read back the same. Texts that the
// format cannot hold are the exception it documents: a comma or a double
// quote splits a field on reading, a line end splits a line.
#include "app/SettingsFile.h"
#include "platform/Numbers.h"
#include "platform/TextFile.h"

#include <array>
#include <cstdint>
#include <cstdlib>

namespace {

enum class Kind { Text, Position, Seconds, Flag, Int16 };

// How the start-up reads each line and what it keeps: a text; a window
// position (a number skipped when no position can take it); seconds (text,
// Val, 16 bits); a mark compared as a number with 1; a 16-bit integer read
// at once.
constexpr std::array<Kind, SettingsFile::LineCount> Lines = {
    Kind::Text, Kind::Text, Kind::Position, Kind::Seconds, Kind::Seconds, Kind::Flag, Kind::Text,
    Kind::Int16, Kind::Int16, Kind::Int16, Kind::Int16, Kind::Int16, Kind::Int16, Kind::Int16,
    Kind::Text, Kind::Int16, Kind::Int16, Kind::Int16, Kind::Int16, Kind::Int16,
    Kind::Seconds, Kind::Seconds, Kind::Int16, Kind::Int16, Kind::Int16,
};

using Values = std::array<QString, SettingsFile::LineCount>;

Values read(const QStringList &lines)
{
    SettingsFieldReader in(lines);
    Values values;
    for (int i = 0; i < SettingsFile::LineCount; ++i) {
        switch (Lines[size_t(i)]) {
        case Kind::Text:
            values[size_t(i)] = in.text().value_or(QString()).trimmed();
            break;
        case Kind::Position:
            values[size_t(i)] = Numbers::numberText(
                Numbers::toInt32(Numbers::leadingNumber(in.text().value_or(QString()))).value_or(0));
            break;
        case Kind::Seconds:
            values[size_t(i)] = QString::number(SettingsFile::valInt16(in.text().value_or(QString())).value_or(0));
            break;
        case Kind::Flag:
            values[size_t(i)] = Numbers::leadingNumber(in.text().value_or(QString())) == 1 ? QStringLiteral("1")
                                                                                          : QStringLiteral("0");
            break;
        case Kind::Int16:
            values[size_t(i)] = QString::number(in.int16().value_or(0));
            break;
        }
    }
    return values;
}

bool holdable(const QString &text)
{
    return !text.contains(u',') && !text.contains(u'"') && !text.contains(u'\r') && !text.contains(u'\n');
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray input(reinterpret_cast<const char *>(data), qsizetype(size));
    const Values values = read(TextFile::splitLines(TextFile::decode(input)));
    QStringList written;
    bool holds = true;
    for (const QString &v : values) {
        written.append(v);
        holds = holds && holdable(v);
    }
    if (written.size() != SettingsFile::LineCount)
        std::abort();
    if (holds && read(written) != values)
        std::abort();
    return 0;
}
