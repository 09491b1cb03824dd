// The number, text file and settings field rules that every file and dialog
// of the program relies on.

#include "app/SettingsFile.h"
#include "platform/Numbers.h"
#include "platform/PlayerControl.h"
#include "platform/TextFile.h"

#include <QFile>
#include <QTemporaryDir>
#include <optional>
#include <gtest/gtest.h>

#include "QtPrinters.h"

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

    qint16 value = 12;
    EXPECT_FALSE(Numbers::assignInt16(value, 40000));
    EXPECT_EQ(value, 12);
    EXPECT_TRUE(Numbers::assignInt16(value, -3));
    EXPECT_EQ(value, -3);
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

TEST(TextFile, ReadsEveryLineEndAndFallsBackToASingleByteCodePage)
{
    EXPECT_EQ(TextFile::splitLines(QStringLiteral("a\r\nb\nc\rd")),
              (QStringList{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c"), QStringLiteral("d")}));
    EXPECT_EQ(TextFile::splitLines(QStringLiteral("a\r\n\r\n")), (QStringList{QStringLiteral("a"), QString()}));
    EXPECT_EQ(TextFile::splitLines(QString()), QStringList());

    EXPECT_EQ(TextFile::decode(QByteArray("caf\xc3\xa9")), QStringLiteral("café"));
    EXPECT_EQ(TextFile::decode(QByteArray("caf\xe9")), QStringLiteral("café"));
    EXPECT_EQ(TextFile::decode(QByteArray("\xef\xbb\xbf" "ok")), QStringLiteral("ok"));
    EXPECT_EQ(TextFile::decode(QByteArray("\xcf\xf0\xe8"), "windows-1251"), QStringLiteral("При"));
}

TEST(TextFile, WritesCrLfAndReplacesTheOldFileWhole)
{
    QTemporaryDir dir;
    const QString path = dir.path() + QStringLiteral("/list.ini");
    ASSERT_TRUE(TextFile::writeLines(path, {QStringLiteral("one"), QStringLiteral("twö")}));
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    EXPECT_EQ(f.readAll(), QByteArray("one\r\ntw\xc3\xb6\r\n"));
    EXPECT_EQ(TextFile::readLines(path), (QStringList{QStringLiteral("one"), QStringLiteral("twö")}));
    EXPECT_FALSE(TextFile::readLines(dir.path() + QStringLiteral("/missing")).has_value());
    // A folder that cannot hold the file: the write fails and says so.
    EXPECT_FALSE(TextFile::writeLines(dir.path() + QStringLiteral("/no/such/folder/x.ini"), {}));
}

TEST(SettingsFieldReader, FieldsFollowCommasAndQuotesNotLines)
{
    SettingsFieldReader in({QStringLiteral("  English.lng"), QStringLiteral("\"a, b\" rest,next"),
                            QStringLiteral("/music,folder"), QStringLiteral("40000"), QStringLiteral("7")});
    EXPECT_EQ(in.text(), QStringLiteral("English.lng"));
    EXPECT_EQ(in.text(), QStringLiteral("a, b"));
    EXPECT_EQ(in.text(), QStringLiteral("next"));
    // A comma in a folder splits it, and the rest becomes the next field.
    EXPECT_EQ(in.text(), QStringLiteral("/music"));
    EXPECT_EQ(in.text(), QStringLiteral("folder"));
    // A value that does not fit 16 bits fails, and the field is used up.
    EXPECT_FALSE(in.int16().has_value());
    EXPECT_EQ(in.int16(), qint16(7));
    EXPECT_TRUE(in.atEnd());
    EXPECT_FALSE(in.text().has_value());
    EXPECT_FALSE(in.int16().has_value());
}

TEST(SettingsFieldReader, AQuotedFieldRunsAcrossLinesToTheNextQuote)
{
    SettingsFieldReader in({QStringLiteral("\"C:\\My"), QStringLiteral("Music\",x"), QStringLiteral("12"),
                            QStringLiteral("\"open")});
    EXPECT_EQ(in.text(), QStringLiteral("C:\\My\r\nMusic"));
    EXPECT_EQ(in.text(), QStringLiteral("x"));
    EXPECT_EQ(in.int16(), qint16(12));
    EXPECT_EQ(in.text(), QStringLiteral("open"));
    EXPECT_TRUE(in.atEnd());
}

TEST(SettingsFieldReader, EmptyLinesAreEmptyFieldsAndNumbersRound)
{
    SettingsFieldReader in({QString(), QStringLiteral("1.5"), QStringLiteral("abc")});
    EXPECT_EQ(in.text(), QString());
    EXPECT_EQ(in.int16(), qint16(2));
    EXPECT_EQ(in.int16(), qint16(0));
}
