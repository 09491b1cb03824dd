// The bookmark line, the file's reading and writing, and the order of the
// sorted lists, without a window.

#include "bookmarks/BookmarkFile.h"

#include <gtest/gtest.h>

namespace {

const QString Tail = QString(BookmarkFile::TailLength, u' ');

QString s(const char *text)
{
    return QString::fromUtf8(text);
}

} // namespace

TEST(BookmarkFile, ALinePadsBothTimesToEightCharacters)
{
    struct Row { const char *position; const char *name; const char *key; const char *time; };
    const Row rows[] = {
        {"03:25", "Intro", "00:03:25  Intro", "00:03:25"},
        {"1:03:25", "x", "01:03:25  x", "01:03:25"},
        {"12:03:25", "two  blanks ", "12:03:25  two  blanks ", "12:03:25"},
        {"", "", "00:00:00  ", "00:00:00"},           // a stopped player has no position text
        {"100:00:00", "long", "100:00:00  long", "100:00:00"}, // a longer time takes no pad
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.position);
        EXPECT_EQ(BookmarkFile::key(s(row.position), s(row.name)), s(row.key));
        EXPECT_EQ(BookmarkFile::line(s(row.position), s(row.name)), s(row.key) + Tail + s(row.time));
    }
}

TEST(BookmarkFile, TheReadersTakeTheKeyAndTheTimeFromTheEndOfTheLine)
{
    struct Row { QString line; std::optional<QString> listText; QString timeText; qint64 seconds; };
    const Row rows[] = {
        {s("00:12:30  Intro") + Tail + s("00:12:30"), s("00:12:30  Intro"), s("00:12:30"), 750},
        {s("01:00:01  ") + Tail + s("01:00:01"), s("01:00:01"), s("01:00:01"), 3601},
        // A repaired old line keeps its five-character tail: mm counts as
        // hours, ss as minutes and again as seconds.
        {s("00:12:30  Intro") + Tail + s("12:30"), s("00:12:30  Intro"), s("12:30"), 12 * 3600 + 30 * 60 + 30},
        {s("abc"), std::nullopt, s("abc"), 0},
        {QString(), std::nullopt, QString(), 0},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.line.toStdString());
        EXPECT_EQ(BookmarkFile::listText(row.line), row.listText);
        EXPECT_EQ(BookmarkFile::timeText(row.line), row.timeText);
        EXPECT_EQ(BookmarkFile::seconds(row.timeText), row.seconds);
    }
}

TEST(BookmarkFile, ReadingMendsOldLinesAndStopsAt501)
{
    const QString oldLine = s("12:30  Intro") + Tail + s("12:30");
    const QString newLine = s("00:00:07  Seven") + Tail + s("00:00:07");
    struct Row { const char *name; QByteArray bytes; QStringList lines; };
    QByteArray many;
    QStringList first501;
    for (int i = 0; i < 502; ++i) {
        const QString l = s("00:00:%1  n").arg(i % 60, 2, 10, QChar(u'0')) + Tail + QString::number(i);
        many += l.toUtf8() + "\r\n";
        if (i < 501)
            first501 << l;
    }
    const Row rows[] = {
        {"old and new lines", (oldLine + s("\r\n") + newLine + s("\r\n")).toUtf8(),
         {s("00:") + oldLine, newLine}},
        {"only the front is mended", s("ab:cd  x\r\n").toUtf8(), {s("00:ab:cd  x")}},
        {"a short line stays", QByteArray("12:3\r\n"), {s("12:3")}},
        {"LF, a last line without an end, an empty line", QByteArray("a\n\nb"), {s("a"), QString(), s("b")}},
        {"single-byte code page", QByteArray("00:00:01  caf\xe9\r\n"), {s("00:00:01  café")}},
        {"502 lines load 501", many, first501},
        {"empty file", QByteArray(), {}},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(BookmarkFile::read(row.bytes), row.lines);
    }
}

TEST(BookmarkFile, WritingVisitsTheWholeTableAndSkipsEmptyEntries)
{
    BookmarkFile::Table table;
    table[0] = s("A");
    table[2] = s("   "); // blanks are no empty entry
    table[500] = s("Z");
    const QStringList lines = BookmarkFile::linesToWrite(table);
    EXPECT_EQ(lines, QStringList({s("A"), s("   "), s("Z")}));
    EXPECT_EQ(BookmarkFile::toBytes(lines), QByteArray("A\r\n   \r\nZ\r\n"));
    EXPECT_TRUE(BookmarkFile::hasBookmarks(table));

    table[0] = s("  ");
    EXPECT_FALSE(BookmarkFile::hasBookmarks(table));
    EXPECT_FALSE(BookmarkFile::hasBookmarks(BookmarkFile::Table()));

    // What is written reads back as it was.
    const QStringList kept = {BookmarkFile::line(s("01:02"), s("één")), BookmarkFile::line(s("1:00:00"), QString())};
    EXPECT_EQ(BookmarkFile::read(BookmarkFile::toBytes(kept)), kept);
}

TEST(BookmarkFile, TheFileIsNamedAfterTheMediaFileName)
{
    EXPECT_EQ(BookmarkFile::fileName(s("/x/Lesson 3.mp3")), s("Lesson 3.mp3.bm"));
    EXPECT_EQ(BookmarkFile::fileName(s("no folder.wav")), s("no folder.wav.bm"));
    EXPECT_EQ(BookmarkFile::filePath(s("/p"), s("/a/b.ogg")), s("/p/Bookmarks/b.ogg.bm"));
}

TEST(BookmarkFile, ASortedListPutsARowAfterEveryRowThatDoesNotSortAfterIt)
{
    const QStringList rows = {s("00:00:05  apple"), s("00:00:05  banana"), s("00:01:00  a")};
    struct Row { const char *text; qsizetype position; };
    const Row inC[] = {
        {"00:00:01  z", 0},      // earlier in time goes first
        {"00:00:05  Apple", 1},  // equal but for case: after the equal row
        {"00:00:05  b", 1},
        {"00:00:59  zz", 2},
        {"01:00:00  ", 3},
    };
    const QCollator c = BookmarkFile::listOrder(QLocale::c());
    for (const Row &row : inC) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(BookmarkFile::insertPosition(rows, s(row.text), c), row.position);
    }
    // As the user's language sorts words, not by character codes: "Banana"
    // sorts after "apple" although "B" comes before "a" in the code table.
    const QCollator english = BookmarkFile::listOrder(QLocale(QLocale::English, QLocale::UnitedKingdom));
    EXPECT_EQ(BookmarkFile::insertPosition({s("00:00:05  apple")}, s("00:00:05  Banana"), english), 1);
    EXPECT_EQ(BookmarkFile::insertPosition({s("00:00:05  Banana")}, s("00:00:05  apple"), english), 0);
}
