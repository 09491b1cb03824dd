#pragma once

#include <QByteArray>
#include <QStringDecoder>
#include <array>
#include <memory>
#include <vector>

// Code pages of RTF text: the document's \ansicpg and each font's
// \fcharset or \cpg decide how the bytes of \'hh and of raw text read.
namespace Rtf::detail {

inline constexpr int DefaultCodepage = 1252;

// The code page that a font's \fcharset stands for; 0 when the charset
// means "the document's code page" or is unknown.
int codepageForCharset(int charset);

// Byte-to-character tables of the single-byte code pages and stateful
// decoders of the multi-byte ones, made on first use and kept while one
// document is read.
class CodepageDecoder
{
public:
    // Feeds one byte of text in the given code page; appends what it
    // completes to out. A byte of a multi-byte code page may complete
    // nothing yet (a lead byte); waitingForTrail() tells.
    void feed(int codepage, unsigned char byte, QString &out);
    bool waitingForTrail() const { return m_waiting; }
    // Drops a lead byte left waiting, writing a replacement character.
    void flush(QString &out);

    // Whether the code page can be decoded here; unknown ones read as 1252.
    static bool isSupported(int codepage);

private:
    struct SingleByte
    {
        int codepage;
        std::array<char16_t, 256> table;
    };
    const SingleByte *singleByte(int codepage);
    void select(int codepage);

    std::vector<std::unique_ptr<SingleByte>> m_tables;
    const SingleByte *m_lastTable = nullptr;
    int m_current = -1;
    const SingleByte *m_table = nullptr; // null while a multi-byte page is selected
    QStringDecoder m_multi;
    int m_multiCodepage = 0;
    bool m_waiting = false;
};

// Characters that are no text of a document: controls, and the marks a text
// document keeps for objects, frames and paragraph boundaries. The writer
// drops them, so a name or a text holding them would not read back the same.
inline bool isNoText(char16_t c)
{
    return c < 0x20 || c == 0x7F || c == 0xFFFC || c == 0xFDD0 || c == 0xFDD1 || c == 0x2029;
}

// The windows-1252 byte of a character, or 0 when it has none; used for the
// ANSI fallback that follows \uN.
unsigned char cp1252Byte(char16_t c);

} // namespace Rtf::detail
