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

QString decode(const QByteArray &bytes, const char *legacyCodec = DefaultLegacyCodec);

// Splits text into lines; a line end at the very end makes no extra line.
QStringList splitLines(const QString &text);

// Reads and decodes the whole file; nullopt when it cannot be opened.
std::optional<QStringList> readLines(const QString &path,
                                     const char *legacyCodec = DefaultLegacyCodec);
std::optional<QByteArray> readBytes(const QString &path);

// Writes the lines, each ended by CR LF, in UTF-8. The old file is replaced
// only once the whole new one is written, so a failed write loses nothing.
bool writeLines(const QString &path, const QStringList &lines);
bool writeBytes(const QString &path, const QByteArray &bytes);

} // namespace TextFile
