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

// The one routine through which every file the user keeps is written. The
// bytes go to a temporary file that atomically replaces the old one once the
// whole of it is written, so a failed write loses nothing. Where the folder
// allows no temporary file, an existing file is written in place instead.
// False, with the system's reason in `error`, when nothing could be written.
bool writeBytes(const QString &path, const QByteArray &bytes, QString *error = nullptr);
// The lines, each ended by CR LF, in UTF-8, through writeBytes.
bool writeLines(const QString &path, const QStringList &lines, QString *error = nullptr);

} // namespace TextFile
