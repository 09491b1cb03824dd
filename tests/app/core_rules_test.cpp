// The number, text file and settings field rules that every file and dialog
// of the program relies on.

#include "app/SettingsFile.h"
#include "platform/Numbers.h"
#include "platform/PlayerControl.h"
#include "platform/TextFile.h"

#include <QFile>
#include <QTemporaryDir>
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
    EXPECT_EQ(Numbers::toInt16(2.5), qint16(2));
    EXPECT_EQ(Numbers::toInt16(3.5), qint16(4));
    EXPECT_EQ(Numbers::toInt16(-2.5), qint16(-2));
    EXPECT_EQ(Numbers::toInt16(2.51), qint16(3));
    EXPECT_EQ(Numbers::toInt16(-32768), qint16(-32768));
    EXPECT_EQ(Numbers::toInt16(32767.4), qint16(32767));
    EXPECT_FALSE(Numbers::toInt16(32767.5).has_value()); // rounds to 32768
    EXPECT_FALSE(Numbers::toInt16(40000).has_value());

    qint16 value = 12;
    EXPECT_FALSE(Numbers::assignInt16(value, 40000));
    EXPECT_EQ(value, 12);
    EXPECT_TRUE(Numbers::assignInt16(value, -3));
    EXPECT_EQ(value, -3);

    EXPECT_EQ(Numbers::leadingNumber(QString(400, u'9')), qInf());
    EXPECT_FALSE(Numbers::assignInt16(value, Numbers::leadingNumber(QStringLiteral("1e400"))));
    EXPECT_EQ(value, -3);

    EXPECT_EQ(Numbers::multiplyInt16(32, 1000), qint16(32000));
    EXPECT_FALSE(Numbers::multiplyInt16(33, 1000).has_value());
}

TEST(Numbers, TextFormKeepsFifteenSignificantDigits)
{
    EXPECT_EQ(Numbers::numberText(1.2000000000000002), QStringLiteral("1.2"));
    EXPECT_EQ(Numbers::numberText(0.1 + 0.2), QStringLiteral("0.3"));
    EXPECT_EQ(Numbers::numberText(100), QStringLiteral("100"));
    EXPECT_EQ(Numbers::numberText(-3), QStringLiteral("-3"));
    EXPECT_EQ(Numbers::numberText(0.5), QStringLiteral("0.5"));
    EXPECT_EQ(Numbers::numberText(0), QStringLiteral("0"));
}

TEST(PlayerTime, MinutesBelowAnHourHoursAbove)
{
    EXPECT_EQ(playerTimeString(0), QStringLiteral("00:00"));
    EXPECT_EQ(playerTimeString(65.9), QStringLiteral("01:05"));
    EXPECT_EQ(playerTimeString(3599), QStringLiteral("59:59"));
    EXPECT_EQ(playerTimeString(3723), QStringLiteral("1:02:03"));
    EXPECT_EQ(playerTimeString(-4), QStringLiteral("00:00"));
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

TEST(SettingsFieldReader, EmptyLinesAreEmptyFields)
{
    SettingsFieldReader in({QString(), QStringLiteral("1.5"), QStringLiteral("abc")});
    EXPECT_EQ(in.text(), QString());
    EXPECT_EQ(in.int16(), qint16(2));
    EXPECT_EQ(in.int16(), qint16(0));
}
