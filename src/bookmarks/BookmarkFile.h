#pragma once

#include <QByteArray>
#include <QCollator>
#include <QLocale>
#include <QString>
#include <QStringList>
#include <array>
#include <optional>

// The bookmarks of one media file: the line format, the file
// `Bookmarks/<media file name>.bm` and the order of the bookmark window's
// sorted lists. Pure functions, so that a test or a fuzzer reaches them
// without a window; the windows (Form1, Form3, Form4) do the rest.
//
// A line, in the order of its characters: the position as hh:mm:ss, two
// blanks, the name the user gave, fifteen blanks, the position again:
//
//     "00:01:23  Intro               00:01:23"
//
// Its first three fields (the "key", ChiaveBM) are what the visible list
// shows; the whole line is what the hidden list and the file hold.
namespace BookmarkFile {

// BookMark(0) to BookMark(500); the first empty entry ends the list for
// every reader.
inline constexpr int Entries = 501;
using Table = std::array<QString, Entries>;

// The blanks between the name and the second time; the readers count the
// tail from the end of the line, these blanks included.
inline constexpr int TailLength = 15;

// The player's position text ("03:25", "1:03:25") padded on the left from
// "00:00:00" to eight characters; a longer text takes no pad.
QString paddedTime(const QString &position);
// ChiaveBM: padded time, two blanks, name.
QString key(const QString &position, const QString &name);
// The whole line: the key, fifteen blanks, the padded time again.
QString line(const QString &position, const QString &name);

// The text the visible list shows for a line: the line without its last
// fifteen characters, blanks cut on the right. A line shorter than that has
// none (the platform's Left fails on it, so the row is not added).
std::optional<QString> listText(const QString &line);
// The time of a line as the jump reads it: its last fifteen characters
// without blanks at either end. An old line's tail is "mm:ss".
QString timeText(const QString &line);
// The seconds of a time text, read by position: characters 1-2 as hours,
// 4-5 as minutes, the last two as seconds, each by the leading-number rule,
// rounded to a whole number. "00:12:30" gives 750; the old "12:30" gives
// 12 hours, 30 minutes and 30 seconds.
qint64 seconds(const QString &timeText);

// A line of the old form ("mm:ss", two blanks, name...), told by blanks at
// its characters 6 and 7, gets "00:" in front; any other line is kept.
QString repaired(const QString &line);

// Reading: the file's bytes to the lines of the table, in the file's order,
// at most 501 (lines behind the 501st are dropped), each repaired. Text is
// UTF-8 when valid, else the single-byte code page; CR LF, LF or CR end a
// line. Empty lines are kept: the table treats the first as its end.
QStringList read(const QByteArray &bytes);

// Writing: the entries the save prints, in the order of the table; every
// entry is visited and the empty ones are skipped.
QStringList linesToWrite(const Table &table);
// The bytes of the file for these lines, each ended by CR LF (exactly what
// TextFile::writeLines writes).
QByteArray toBytes(const QStringList &lines);

// Whether the table is to be saved at all: its first entry, without blanks
// at either end, holds something.
bool hasBookmarks(const Table &table);

// The file's name for a media path: the text after the path's last
// separator, extension included, and ".bm" ("/x/Lesson 3.mp3" gives
// "Lesson 3.mp3.bm"; a path without a separator gives the whole text).
QString fileName(const QString &mediaPath);
// <program folder>/Bookmarks/<fileName>.
QString filePath(const QString &programFolder, const QString &mediaPath);

// The order of a sorted list box: as the user's locale sorts words, without
// regard to case. Rows equal in that order keep the order they came in.
QCollator listOrder(const QLocale &locale = QLocale());
// Where a sorted list box puts a new row: after every row that does not
// sort after it.
qsizetype insertPosition(const QStringList &rows, const QString &text, const QCollator &order);

} // namespace BookmarkFile
