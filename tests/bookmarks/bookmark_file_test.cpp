// The bookmark line and the file's reading and writing, without a window:
// the cases the program's own files never hold.

#include "bookmarks/BookmarkFile.h"

#include <gtest/gtest.h>

namespace {

const QString Tail = QString(BookmarkFile::TailLength, u' ');

QString s(const char *text)
{
    return QString::fromUtf8(text);
}

} // namespace

TEST(BookmarkFile, LinesAreBuiltAndReadBack)
{
    struct Row { const char *position; const char *name; const char *key; const char *time; };
    const Row rows[] = {
        {"03:25", "Intro", "00:03:25  Intro", "00:03:25"},
        {"", "", "00:00:00  ", "00:00:00"},                    // a stopped player has no position text
        {"100:00:00", "long", "100:00:00  long", "100:00:00"}, // a longer time takes no pad
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.position);
        const QString line = BookmarkFile::line(s(row.position), s(row.name));
        EXPECT_EQ(line, s(row.key) + Tail + s(row.time));
        EXPECT_EQ(BookmarkFile::read(BookmarkFile::toBytes({line})), QStringList{line});
    }
    for (const char *bad : {"abc", ""}) {
        EXPECT_EQ(BookmarkFile::listText(s(bad)), std::nullopt) << bad;
        EXPECT_EQ(BookmarkFile::seconds(BookmarkFile::timeText(s(bad))), 0) << bad;
    }
}

TEST(BookmarkFile, ReadingTakesAnyLineEndAndTheCodePage)
{
    struct Row { const char *name; QByteArray bytes; QStringList lines; };
    const Row rows[] = {
        {"only the front is mended", "ab:cd  x\r\n", {s("00:ab:cd  x")}},
        {"a short line stays", "12:3\r\n", {s("12:3")}},
        {"LF, a last line without an end, an empty line", "a\n\nb", {s("a"), QString(), s("b")}},
        {"single-byte code page", "00:00:01  caf\xe9\r\n", {s("00:00:01  café")}},
    };
    for (const Row &row : rows)
        EXPECT_EQ(BookmarkFile::read(row.bytes), row.lines) << row.name;
}

TEST(BookmarkFile, WritingVisitsTheWholeTableAndSkipsEmptyEntries)
{
    BookmarkFile::Table table;
    table[0] = s("A");
    table[2] = s("   "); // blanks are no empty entry
    table[500] = s("Z");
    EXPECT_EQ(BookmarkFile::linesToWrite(table), QStringList({s("A"), s("   "), s("Z")}));
}

TEST(BookmarkFile, TheListSortsAsTheUsersLanguageSortsWords)
{
    // "Banana" after "apple" although "B" comes before "a" in the code table.
    const QCollator english = BookmarkFile::listOrder(QLocale(QLocale::English, QLocale::UnitedKingdom));
    EXPECT_EQ(BookmarkFile::insertPosition({s("00:00:05  apple")}, s("00:00:05  Banana"), english), 1);
    EXPECT_EQ(BookmarkFile::insertPosition({s("00:00:05  Banana")}, s("00:00:05  apple"), english), 0);
    // Equal but for case: after the equal row.
    const QCollator c = BookmarkFile::listOrder(QLocale::c());
    EXPECT_EQ(BookmarkFile::insertPosition({s("00:00:05  apple")}, s("00:00:05  Apple"), c), 1);
}
