#include "bookmarks/BookmarkFile.h"

#include "platform/Numbers.h"
#include "platform/TextFile.h"

namespace BookmarkFile {

using TextFile::rtrimBlanks;
using TextFile::trimBlanks;

QString paddedTime(const QString &position)
{
    const qsizetype pad = 8 - position.size();
    return (pad > 0 ? QStringLiteral("00:00:00").left(pad) : QString()) + position;
}

QString key(const QString &position, const QString &name)
{
    return paddedTime(position) + QStringLiteral("  ") + name;
}

QString line(const QString &position, const QString &name)
{
    return key(position, name) + QString(TailLength, u' ') + paddedTime(position);
}

std::optional<QString> listText(const QString &line)
{
    if (line.size() < TailLength)
        return std::nullopt;
    return rtrimBlanks(line.left(line.size() - TailLength));
}

QString timeText(const QString &line)
{
    return trimBlanks(line.right(TailLength));
}

qint64 seconds(const QString &timeText)
{
    const double hours = Numbers::leadingNumber(timeText.left(2));
    const double minutes = Numbers::leadingNumber(timeText.mid(3, 2));
    const double secs = Numbers::leadingNumber(timeText.right(2));
    return qint64(Numbers::roundHalfEven(hours * 3600 + minutes * 60 + secs));
}

QString repaired(const QString &line)
{
    if (QStringView(line).mid(5, 2) == u"  ")
        return QStringLiteral("00:") + line;
    return line;
}

QStringList read(const QByteArray &bytes)
{
    QStringList lines = TextFile::splitLines(TextFile::decode(bytes));
    if (lines.size() > Entries)
        lines.resize(Entries);
    for (QString &l : lines)
        l = repaired(l);
    return lines;
}

QStringList linesToWrite(const Table &table)
{
    QStringList lines;
    for (const QString &entry : table) {
        if (!entry.isEmpty())
            lines.append(entry);
    }
    return lines;
}

QByteArray toBytes(const QStringList &lines)
{
    return TextFile::linesToBytes(lines);
}

bool hasBookmarks(const Table &table)
{
    return !trimBlanks(table[0]).isEmpty();
}

QString fileName(const QString &mediaPath)
{
    return mediaPath.mid(mediaPath.lastIndexOf(u'/') + 1) + QStringLiteral(".bm");
}

QString filePath(const QString &programFolder, const QString &mediaPath)
{
    return programFolder + QStringLiteral("/Bookmarks/") + fileName(mediaPath);
}

QCollator listOrder(const QLocale &locale)
{
    QCollator order(locale);
    order.setCaseSensitivity(Qt::CaseInsensitive);
    return order;
}

qsizetype insertPosition(const QStringList &rows, const QString &text, const QCollator &order)
{
    // The rows are in order already: the first row that sorts after the new
    // one is its place.
    qsizetype low = 0;
    qsizetype high = rows.size();
    while (low < high) {
        const qsizetype mid = low + (high - low) / 2;
        if (order.compare(text, rows.at(mid)) < 0)
            high = mid;
        else
            low = mid + 1;
    }
    return low;
}

} // namespace BookmarkFile
