#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <optional>

// Text files as the program keeps them: lines ended by CR LF on writing;
// CR LF, LF or a lone CR accepted on reading. Text is decoded as UTF-8 when
// it is valid UTF-8, otherwise with a single-byte code page, so that files
// written on other systems still read.
namespace TextFile {

// The single-byte code page used when a file is not valid UTF-8.
inline constexpr const char *DefaultLegacyCodec = "windows-1252";

// A byte-order mark decides first (UTF-8, UTF-16 LE or BE); then valid UTF-8
// is UTF-8; anything else is read in `legacyCodec`.
QString decode(const QByteArray &bytes, const char *legacyCodec = DefaultLegacyCodec);

// The single-byte code page the old platform used for a user of this
// language: `languageFile` is the language file in use ("Russian.lng"); when
// it names no language of its own code page, `localeName` ("el_GR") decides.
const char *legacyCodecFor(const QString &languageFile, const QString &localeName);

// True when the bytes cannot be a text file: NUL bytes in the first
// kilobytes (outside UTF-16 with a byte-order mark) or the signature of a
// known binary container (zip, as in .docx and .odt, or an OLE compound file).
bool looksBinary(const QByteArray &bytes);

// Half of a surrogate pair standing alone (UTF-16 or UTF-8 from another
// program may hold one) is no character and would be written back as
// something else: it becomes the replacement character.
QString withoutLoneSurrogates(QString text);

// The program's Trim and RTrim: blanks only, never tabs, line breaks or
// other white space (a text of tabs is not empty to them).
QString trimBlanks(const QString &text);
QString rtrimBlanks(const QString &text);

// Splits text into lines; a line end at the very end makes no extra line.
QStringList splitLines(const QString &text);

// Reads and decodes the whole file; nullopt when it cannot be opened.
std::optional<QStringList> readLines(const QString &path,
                                     const char *legacyCodec = DefaultLegacyCodec);
std::optional<QByteArray> readBytes(const QString &path);

// The one routine through which every file the user keeps is written. The
// bytes go to a temporary file that atomically replaces the old one once the
// whole of it is written, so a failed write loses nothing. Where the folder
// allows no temporary file, an existing file is written in place instead.
// False, with the system's reason in `error`, when nothing could be written.
bool writeBytes(const QString &path, const QByteArray &bytes, QString *error = nullptr);
// The bytes of the lines, each ended by CR LF, in UTF-8: what writeLines
// writes, and what decode() and splitLines() read back as the same lines.
QByteArray linesToBytes(const QStringList &lines);
// The lines, each ended by CR LF, in UTF-8, through writeBytes.
bool writeLines(const QString &path, const QStringList &lines, QString *error = nullptr);

} // namespace TextFile
