// The number, text file and settings field rules that every file and dialog
// of the program relies on.

#include "app/SettingsFile.h"
#include "platform/Numbers.h"
#include "platform/PlayerControl.h"
#include "platform/TextFile.h"

#include <QTemporaryDir>
#include <optional>
#include <gtest/gtest.h>

#include "QtPrinters.h"

using namespace Qt::StringLiterals;

TEST(Numbers, LeadingNumberReadsAsFarAsANumberGoes)
{
    const std::pair<const char *, double> cases[] = {
        {"12abc", 12},  {"abc", 0},     {" -2.5x", -2.5}, {"", 0},     {"3.5.6", 3.5},
        {".5", 0.5},    {"+.5", 0.5},   {"1e3", 1000},    {"1e", 1},   {"  7 8", 7},
        {"-", 0},       {"0040", 40},   {"2,5", 2},       {"\t9", 9},  {"1.", 1},
        // Beyond a double: too large is an infinity, which fits no integer.
        {"1e400", qInf()}, {"-1e400x", -qInf()}, {"1e-400", 0}, {"0.000e999", 0}, {"0.1e310", qInf()},
    };
    for (const auto &[text, want] : cases)
        EXPECT_EQ(Numbers::leadingNumber(QString::fromLatin1(text)), want) << text;
}

TEST(Numbers, SixteenBitConversionRoundsHalfToEvenAndRefusesWhatDoesNotFit)
{
    const std::pair<double, std::optional<qint16>> cases[] = {
        {2.5, 2},         {3.5, 4},           {-2.5, -2},           {2.51, 3},    {-32768, -32768},
        {32767.4, 32767}, {32767.5, {}},      {40000, {}},          {qInf(), {}},
    };
    for (const auto &[value, want] : cases)
        EXPECT_EQ(Numbers::toInt16(value), want) << value;
    EXPECT_EQ(Numbers::multiplyInt16(32, 1000), qint16(32000));
    EXPECT_FALSE(Numbers::multiplyInt16(33, 1000).has_value());
}

TEST(Numbers, TextFormsOfNumbersAndPlayerTimes)
{
    // Fifteen significant digits, as the settings and the player's log have them.
    const std::pair<double, const char *> numbers[] = {
        {1.2000000000000002, "1.2"}, {0.1 + 0.2, "0.3"}, {100, "100"}, {-3, "-3"}, {0.5, "0.5"}, {0, "0"}};
    for (const auto &[value, want] : numbers)
        EXPECT_EQ(Numbers::numberText(value), QLatin1String(want)) << value;
    // Minutes below an hour, hours above.
    const std::pair<double, const char *> times[] = {
        {0, "00:00"}, {65.9, "01:05"}, {3599, "59:59"}, {3723, "1:02:03"}, {-4, "00:00"}};
    for (const auto &[seconds, want] : times)
        EXPECT_EQ(playerTimeString(seconds), QLatin1String(want)) << seconds;
}

TEST(TextFile, SplitsAtEveryLineEnd)
{
    EXPECT_EQ(TextFile::splitLines(u"a\r\nb\nc\rd"_s), (QStringList{u"a"_s, u"b"_s, u"c"_s, u"d"_s}));
    EXPECT_EQ(TextFile::splitLines(u"a\r\n\r\n"_s), (QStringList{u"a"_s, QString()}));
    EXPECT_EQ(TextFile::splitLines(QString()), QStringList());
}

TEST(TextFile, WritesUtf8InCrLfLinesOrFailsAndSaysSo)
{
    QTemporaryDir dir;
    const QString path = dir.path() + u"/list.ini"_s;
    ASSERT_TRUE(TextFile::writeLines(path, {u"one"_s, u"twö"_s}));
    EXPECT_EQ(TextFile::readBytes(path).value_or(QByteArray()), QByteArray("one\r\ntw\xc3\xb6\r\n"));
    // A folder that cannot hold the file: the write fails and says so.
    EXPECT_FALSE(TextFile::writeLines(dir.path() + u"/no/such/folder/x.ini"_s, {}));
}

// Fields follow commas and quotes, not lines: a quoted field runs across
// lines to the next quote, a comma in a folder splits it and the rest is
// the next field, an empty line is an empty field. Numbers round half to
// even; one that does not fit 16 bits fails, and its field is used up.
TEST(SettingsFieldReader, FieldsFollowCommasAndQuotesNotLines)
{
    // Reads a text field for each 't' of `reads` and a number for each 'n'.
    const auto fields = [](const QStringList &lines, const char *reads) {
        SettingsFieldReader in(lines);
        QStringList out;
        for (const char *r = reads; *r; ++r) {
            std::optional<QString> field = *r == 't' ? in.text() : std::nullopt;
            if (const auto number = *r == 'n' ? in.int16() : std::nullopt)
                field = QString::number(*number);
            out << field.value_or(u"none"_s);
        }
        return out << (in.atEnd() ? u"end"_s : u"more"_s);
    };
    const auto list = [](const char *joined) { return QString::fromUtf8(joined).split(u'|'); };
    EXPECT_EQ(fields({u"  English.lng"_s, u"\"a, b\" rest,next"_s, u"/music,folder"_s, u"40000"_s, u"7"_s}, "tttttnntn"),
              list("English.lng|a, b|next|/music|folder|none|7|none|none|end"));
    EXPECT_EQ(fields({u"\"C:\\My"_s, u"Music\",x"_s, u"12"_s, u"\"open"_s}, "ttnt"), list("C:\\My\r\nMusic|x|12|open|end"));
    EXPECT_EQ(fields({QString(), u"1.5"_s, u"abc"_s}, "tnn"), list("|2|0|end"));
}
