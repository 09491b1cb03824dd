#pragma once

// The reader's state machine, shared by the files that implement it.

#include "editor/rtf/RtfBuilder.h"
#include "editor/rtf/RtfCodepage.h"

#include <QHash>
#include <QString>
#include <QTextBlockFormat>
#include <QTextCharFormat>
#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

namespace Rtf::detail::reader {

// Groups nested deeper than this are skipped whole: no real document comes
// near it, and it bounds the state kept per group.
constexpr int MaxDepth = 512;
constexpr int MaxFonts = 16384;
constexpr int MaxColors = 16384;
constexpr int MaxLists = 4096;
constexpr int MaxNameLength = 256;
constexpr int MaxLevels = 9;
// Word lengths beyond 32 letters are not RTF; such a word is read whole and
// ignored.
constexpr int MaxWordLength = 32;
constexpr int ParamLimit = 2000000000;
// Paragraph measures are kept within 22 inches, in twips.
constexpr int MaxTwips = 31680;
// Device-independent pixels of the document, at 96 per inch.
constexpr double TwipsPerPixel = 15.0;

enum class Dest : quint8 {
    Text, Skip, FontTable, ColorTable, ListTable, List, ListLevel, LevelText,
    ListOverrideTable, ListOverride, Pn, Object, Picture, ShapePicture,
};

enum class Underline : quint8 { None, Single, Dash, Dot, DashDot, DashDotDot, Wave };
enum class Vertical : quint8 { Normal, Super, Sub };
enum class Align : quint8 { Unset, Left, Center, Right, Justify };
enum class CharClass : quint8 { None, Low, High, DoubleByte, RightToLeft };

struct CharState
{
    int font = -1; // -1: the document's default font
    int halfPoints = 24;
    int color = 0;
    int background = 0;
    bool bold = false;
    bool italic = false;
    bool strike = false;
    bool hidden = false;
    Underline underline = Underline::None;
    Vertical vertical = Vertical::Normal;
    // Which characters the associated-font words \af and \afs speak of: the
    // last of \loch, \hich, \dbch (or \rtlch, whose fonts are not kept).
    CharClass charClass = CharClass::None;
    // The fonts \af gives low-ANSI, high-ANSI and double-byte characters, and
    // the size \afs gives the double-byte ones; -1 and 0 when none is given.
    // They decide the code page of the bytes of their characters; East Asian
    // characters are also shown in theirs.
    int lowFont = -1;
    int highFont = -1;
    int eastAsianFont = -1;
    int eastAsianHalfPoints = 0;
    bool operator==(const CharState &) const = default;
};

// Characters that take the East Asian font and size: ideographs, kana,
// hangul, their punctuation and the full-width forms.
inline bool isEastAsian(char16_t c)
{
    return (c >= 0x1100 && c <= 0x11FF) || (c >= 0x2E80 && c <= 0xA4CF)
           || (c >= 0xAC00 && c <= 0xD7AF) || (c >= 0xF900 && c <= 0xFAFF)
           || (c >= 0xFE30 && c <= 0xFE4F) || (c >= 0xFF00 && c <= 0xFFEF);
}

struct ParaState
{
    Align align = Align::Unset;
    int leftIndent = 0;
    int rightIndent = 0;
    int firstIndent = 0;
    int spaceBefore = 0;
    int spaceAfter = 0;
    int listOverride = 0;
    int listLevel = 0;
    // From an old-style {\pn ...}: 0 for none.
    int pnLevel = 0; // 1-based
    QTextListFormat::Style pnStyle = QTextListFormat::ListDisc;
};

struct GroupState
{
    CharState chr;
    ParaState para;
    Dest dest = Dest::Text;
    int uc = 1;
};

// A picture being read: its kind, its sizes and its data.
struct PictureState
{
    enum class Kind : quint8 { Other, Png, Jpeg };
    Kind kind = Kind::Other;
    int width = 0, height = 0;         // \picw, \pich: pixels, or 0.01 mm for metafiles
    int goalWidth = 0, goalHeight = 0; // \picwgoal, \pichgoal: twips
    int scaleX = 100, scaleY = 100;    // per cent
    QByteArray data;
    int nibble = -1; // the first hex digit of a byte, while the second is awaited
    qsizetype source = 0; // offset of the \pict word in the data
};

struct FontEntry
{
    QString name;
    int codepage = 0; // 0: the document's
};

struct ListDef
{
    struct Level
    {
        int nfc = 0;
        QString text;
    };
    std::array<Level, MaxLevels> levels;
};

inline int hexValue(unsigned char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    c |= 0x20;
    return c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
}

inline int clampInt(long long v, int lo, int hi) { return int(std::clamp<long long>(v, lo, hi)); }

// The properties that a character of the given kind is shown with.
inline CharState effectiveState(CharState s, bool eastAsian)
{
    if (eastAsian) {
        if (s.eastAsianFont >= 0)
            s.font = s.eastAsianFont;
        if (s.eastAsianHalfPoints > 0)
            s.halfPoints = s.eastAsianHalfPoints;
    }
    s.charClass = CharClass::None;
    s.lowFont = -1;
    s.highFont = -1;
    s.eastAsianFont = -1;
    s.eastAsianHalfPoints = 0;
    return s;
}

class Reader
{
public:
    Reader(const QByteArray &data, DocumentBuilder &builder)
        : m_data(reinterpret_cast<const unsigned char *>(data.constData())),
          m_size(data.size()), m_builder(builder)
    {
        const QFont &font = builder.defaultFont();
        m_defaultFamily = font.families().value(0, font.family());
        m_defaultHalfPoints = font.pointSizeF() > 0 ? qRound(font.pointSizeF() * 2) : 24;
        m_stack.reserve(64);
        GroupState root;
        root.dest = Dest::Skip; // nothing counts before the first group opens
        m_stack.push_back(root);
    }

    void run();

private:
    GroupState &top() { return m_stack.back(); }

    void openGroup();
    void closeGroup();
    void endDestination(const GroupState &closing);
    void controlSequence();
    void controlWord(std::string_view word, bool hasParam, int param);
    void binary(int length);
    void pictureByte(unsigned char byte);
    void endPicture();
    void plainTextSpan();

    void textByte(unsigned char byte, bool literal);
    void textChar(char16_t c);
    void appendRun(char16_t c);
    void flushBytes();
    void flushRun();
    void endParagraph();
    void finish();

    int codepage();
    QTextCharFormat charFormat(const CharState &s);
    QTextBlockFormat blockFormat(const ParaState &p) const;
    ListRequest listRequest(const ParaState &p);
    void commitFont();

    const unsigned char *m_data;
    qsizetype m_size;
    qsizetype m_pos = 0;
    qsizetype m_wordStart = 0; // offset of the backslash of the word being read
    DocumentBuilder &m_builder;
    QString m_defaultFamily;
    int m_defaultHalfPoints = 24;

    std::vector<GroupState> m_stack;
    int m_overflow = 0;   // groups opened beyond MaxDepth, all skipped
    bool m_done = false;  // the outermost group has closed
    bool m_star = false;  // a \* waits for its destination word
    int m_ucSkip = 0;     // fallback characters still to drop after \uN
    GroupState m_final;   // the state of the outermost group as it closed
    bool m_haveFinal = false;

    int m_docCodepage = DefaultCodepage;
    int m_defaultFont = 0;
    QHash<int, FontEntry> m_fonts;
    int m_lastFontIndex = -2;
    const FontEntry *m_lastFont = nullptr;
    int m_pendingFontIndex = -1;
    int m_pendingFontCharset = -1; // -1: the entry names none
    int m_pendingFontCodepage = 0;
    QString m_pendingFontName;
    std::vector<QRgb> m_colors; // entry 0 and "auto" entries hold nothing useful
    int m_red = 0, m_green = 0, m_blue = 0;

    std::vector<ListDef> m_lists;
    QHash<int, int> m_listById;     // \listid -> index in m_lists
    QHash<int, int> m_overrides;    // \ls -> \listid
    ListDef m_list;
    int m_listId = 0;
    int m_levelCount = 0;
    ListDef::Level m_level;
    QString m_levelText;
    int m_overrideList = 0;
    int m_overrideIndex = 0;
    PictureState m_picture;
    ParaState m_pn;
    int m_pnKey = 0;
    bool m_lastParaPn = false;
    QTextListFormat::Style m_lastPnStyle = QTextListFormat::ListDisc;
    int m_lastPnLevel = 0;

    CodepageDecoder m_decoder;
    QString m_decoded;
    QString m_run;
    CharState m_runState;
    bool m_stateMaybeChanged = true;
    bool m_runEastAsian = false;
    char16_t m_highSurrogate = 0;
    int m_pendingTabs = 0;
    bool m_paraHasContent = false;
    CharState m_cachedState;
    QTextCharFormat m_cachedFormat;
    bool m_haveCached = false;
};

} // namespace Rtf::detail::reader
