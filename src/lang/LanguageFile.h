#pragma once

#include <QString>
#include <QStringList>
#include <array>

// The language table: every caption, tool tip and message of the program,
// by index. A language file fills it by position: line N (from 1) gives
// entry N-1, read from the line's fourth character on.
class LanguageTable
{
public:
    static constexpr int Size = 151; // entries 0 to 150

    const QString &operator()(int index) const;
    const QString &at(int index) const { return (*this)(index); }
    void set(int index, const QString &text);

private:
    std::array<QString, Size> m_entries;
};

namespace LanguageFile {

enum class Result {
    Loaded,    // all lines taken
    Missing,   // the file could not be opened; the table is unchanged
    TooLong,   // more than 151 lines: in strict mode nothing is stored from
               // line 152 on and the caller treats it as a failure; in
               // tolerant mode those lines are skipped and the rest stands
};

// The entry a line gives: from its fourth character, at most Len(line) - 2
// characters; a line of three characters or fewer gives the empty text.
QString entryOfLine(const QString &line);

// Loads the lines into the table. Entries past the end of a short file keep
// what they held before.
Result apply(const QStringList &lines, LanguageTable &table);

// Applies the bytes of a language file: UTF-8 when they are valid UTF-8
// (a byte order mark is dropped), otherwise a single-byte code page as
// load() says.
Result loadBytes(const QByteArray &bytes, LanguageTable &table);

// Reads the file and applies it. UTF-8 files are read as such; a file in a
// single-byte code page is decoded with the Cyrillic page when its letters
// are Cyrillic, otherwise with the Western European one.
Result load(const QString &path, LanguageTable &table);

// Decoding of a legacy (non UTF-8) language file, exposed for tests.
QString decodeLegacy(const QByteArray &bytes);

} // namespace LanguageFile
