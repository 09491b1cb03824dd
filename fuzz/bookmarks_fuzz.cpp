// Bookmark files: any bytes read into the table without a fault, every line
// gives its list text and its time, and the table saved and read again
// gives the same lines, each mended by the reading rule (a line with blanks
// at its characters 6 and 7 takes "00:" in front at every reading, whatever
// precedes them).
#include "bookmarks/BookmarkFile.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QStringList lines = BookmarkFile::read(QByteArray(reinterpret_cast<const char *>(data), qsizetype(size)));
    if (lines.size() > BookmarkFile::Entries)
        std::abort();
    BookmarkFile::Table table;
    for (qsizetype i = 0; i < lines.size(); ++i) {
        table[size_t(i)] = lines.at(i);
        BookmarkFile::listText(lines.at(i));
        BookmarkFile::seconds(BookmarkFile::timeText(lines.at(i)));
    }
    const QStringList saved = BookmarkFile::linesToWrite(table);
    QStringList expected;
    for (const QString &line : saved)
        expected.append(BookmarkFile::repaired(line));
    if (BookmarkFile::read(BookmarkFile::toBytes(saved)) != expected)
        std::abort();
    return 0;
}
