#include "editor/rtf/RtfWriter.h"

#include "editor/rtf/Rtf.h"
#include "editor/rtf/RtfCodepage.h"

#include <QHash>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextList>
#include <algorithm>
#include <charconv>
#include <vector>

namespace Rtf::detail {

namespace {

constexpr double TwipsPerPixel = 15.0;
constexpr int ListIndentTwips = 720;
constexpr int BulletHangTwips = 360;
constexpr int MaxLevels = 9;

enum class Underline : quint8 { None, Single, Dash, Dot, DashDot, DashDotDot, Wave };
enum class Vertical : quint8 { Normal, Super, Sub };

// The character properties as the file states them: font and colour by
// their index in the tables.
struct RunState
{
    int font = 0;
    int halfPoints = 24;
    int color = 0;
    int background = 0;
    bool bold = false;
    bool italic = false;
    bool strike = false;
    Underline underline = Underline::None;
    Vertical vertical = Vertical::Normal;
};

bool isBullet(QTextListFormat::Style style)
{
    return style == QTextListFormat::ListDisc || style == QTextListFormat::ListCircle
           || style == QTextListFormat::ListSquare;
}

char16_t bulletChar(QTextListFormat::Style style)
{
    switch (style) {
    case QTextListFormat::ListCircle: return 0x25E6;
    case QTextListFormat::ListSquare: return 0x25AA;
    default: return 0x2022;
    }
}

int numberFormat(QTextListFormat::Style style)
{
    switch (style) {
    case QTextListFormat::ListUpperRoman: return 1;
    case QTextListFormat::ListLowerRoman: return 2;
    case QTextListFormat::ListUpperAlpha: return 3;
    case QTextListFormat::ListLowerAlpha: return 4;
    case QTextListFormat::ListDecimal: return 0;
    default: return 23;
    }
}

const char *pnStyleWord(QTextListFormat::Style style)
{
    switch (style) {
    case QTextListFormat::ListUpperRoman: return "\\pnucrm";
    case QTextListFormat::ListLowerRoman: return "\\pnlcrm";
    case QTextListFormat::ListUpperAlpha: return "\\pnucltr";
    case QTextListFormat::ListLowerAlpha: return "\\pnlcltr";
    default: return "\\pndec";
    }
}

int listLevel(const QTextList *list)
{
    return std::clamp(list->format().indent() - 1, 0, MaxLevels - 1);
}

class Writer
{
public:
    Writer(const QTextDocument &doc, int from, int to)
        : m_doc(doc), m_from(std::max(from, 0)), m_to(std::min(to, doc.characterCount()))
    {
        const QFont font = doc.defaultFont();
        m_defaultFamily = font.families().value(0, font.family());
        m_defaultHalfPoints = font.pointSizeF() > 0 ? qRound(font.pointSizeF() * 2) : 24;
    }

    QByteArray run();

private:
    struct Segment
    {
        QTextBlock block;
        int start;
        int end;
        bool ended; // the paragraph's end lies in the range
    };

    void collect();
    RunState stateOf(const QTextCharFormat &f);
    int fontIndex(const QString &family);
    int colorIndex(QRgb rgb);
    void header();
    void paragraph(const Segment &seg);
    void listProperties(const QTextBlock &block, QTextList *list);
    void switchTo(const RunState &s);

    void word(const char *w);
    void word(const char *w, int param);
    void text(QStringView s);
    void character(char16_t c);

    const QTextDocument &m_doc;
    int m_from;
    int m_to;
    QString m_defaultFamily;
    int m_defaultHalfPoints = 24;

    std::vector<Segment> m_segments;
    QStringList m_fonts; // after the default one, f0
    QHash<QString, int> m_fontIndex;
    std::vector<QRgb> m_colors; // after the "auto" entry
    QHash<QRgb, int> m_colorIndex;
    std::vector<QTextList *> m_lists;
    QHash<QTextList *, int> m_listIndex;

    QByteArray m_out;
    bool m_needDelimiter = false;
    RunState m_state;
};

QByteArray Writer::run()
{
    collect();
    m_out.reserve(256 + (m_to - m_from) * 2);
    header();
    for (const Segment &seg : m_segments)
        paragraph(seg);
    m_out += '}';
    return m_out;
}

// The pieces of paragraphs in the range, and the fonts, colours and lists
// they use, numbered in the order they first appear.
void Writer::collect()
{
    if (m_from >= m_to)
        return;
    for (QTextBlock b = m_doc.findBlock(m_from); b.isValid() && b.position() < m_to; b = b.next()) {
        const int blockEnd = b.position() + b.length() - 1;
        Segment seg{b, std::max(m_from, b.position()), std::min(m_to, blockEnd), m_to > blockEnd};
        if (seg.start >= seg.end && !seg.ended)
            continue;
        for (auto it = b.begin(); !it.atEnd(); ++it) {
            const QTextFragment f = it.fragment();
            if (f.position() < seg.end && f.position() + f.length() > seg.start)
                stateOf(f.charFormat());
        }
        if (seg.ended && b.length() == 1)
            stateOf(b.charFormat());
        if (QTextList *list = b.textList(); list && !m_listIndex.contains(list)) {
            m_lists.push_back(list);
            m_listIndex.insert(list, int(m_lists.size()));
        }
        m_segments.push_back(seg);
    }
}

// A family as the font table can hold it and a reader will read it back:
// characters that are no text are not part of a name, and readers drop the
// blanks around one. A name that comes out empty is no font of its own.
QString fontTableName(QString family)
{
    family.removeIf([](QChar c) { return isNoText(c.unicode()); });
    return family.trimmed();
}

int Writer::fontIndex(const QString &family)
{
    auto it = m_fontIndex.constFind(family);
    if (it != m_fontIndex.constEnd())
        return *it;
    m_fonts.append(family);
    m_fontIndex.insert(family, int(m_fonts.size()));
    return int(m_fonts.size());
}

int Writer::colorIndex(QRgb rgb)
{
    rgb |= 0xFF000000u;
    auto it = m_colorIndex.constFind(rgb);
    if (it != m_colorIndex.constEnd())
        return *it;
    m_colors.push_back(rgb);
    m_colorIndex.insert(rgb, int(m_colors.size()));
    return int(m_colors.size());
}

RunState Writer::stateOf(const QTextCharFormat &f)
{
    RunState s;
    // A run with no family of its own uses f0, the document's default font;
    // a family given explicitly always gets an entry of its own, even when
    // it names the default, so that it reads back as given.
    const QStringList families = f.fontFamilies().toStringList();
    const QString family = families.isEmpty() ? QString() : fontTableName(families.first());
    if (!family.isEmpty())
        s.font = fontIndex(family);
    double points = 0;
    if (f.hasProperty(QTextFormat::FontPointSize))
        points = f.fontPointSize();
    else if (f.hasProperty(QTextFormat::FontPixelSize))
        points = f.intProperty(QTextFormat::FontPixelSize) * 0.75;
    s.halfPoints = points > 0 ? std::clamp(qRound(points * 2), 1, 3276) : m_defaultHalfPoints;
    s.bold = f.hasProperty(QTextFormat::FontWeight) && f.fontWeight() >= QFont::DemiBold;
    s.italic = f.fontItalic();
    s.strike = f.fontStrikeOut();
    switch (f.underlineStyle()) {
    case QTextCharFormat::SingleUnderline: s.underline = Underline::Single; break;
    case QTextCharFormat::DashUnderline: s.underline = Underline::Dash; break;
    case QTextCharFormat::DotLine: s.underline = Underline::Dot; break;
    case QTextCharFormat::DashDotLine: s.underline = Underline::DashDot; break;
    case QTextCharFormat::DashDotDotLine: s.underline = Underline::DashDotDot; break;
    case QTextCharFormat::WaveUnderline: s.underline = Underline::Wave; break;
    default: s.underline = f.fontUnderline() ? Underline::Single : Underline::None; break;
    }
    if (f.verticalAlignment() == QTextCharFormat::AlignSuperScript)
        s.vertical = Vertical::Super;
    else if (f.verticalAlignment() == QTextCharFormat::AlignSubScript)
        s.vertical = Vertical::Sub;
    if (f.hasProperty(QTextFormat::ForegroundBrush) && f.foreground().style() != Qt::NoBrush)
        s.color = colorIndex(f.foreground().color().rgb());
    if (f.hasProperty(QTextFormat::BackgroundBrush) && f.background().style() != Qt::NoBrush)
        s.background = colorIndex(f.background().color().rgb());
    return s;
}

void Writer::header()
{
    m_out += "{\\rtf1\\ansi\\ansicpg1252\\deff0\\uc1\r\n{\\fonttbl";
    QStringList fonts = m_fonts;
    fonts.prepend(m_defaultFamily);
    for (int i = 0; i < fonts.size(); ++i) {
        m_out += "{";
        word("\\f", i);
        word("\\fnil");
        word("\\fcharset", 0);
        const QString name = fontTableName(fonts.at(i));
        // A semicolon would end the name early.
        for (QChar c : std::as_const(name)) {
            if (c == u';') {
                m_out += "\\'3b";
                m_needDelimiter = false;
            } else {
                character(c.unicode());
            }
        }
        m_out += ";}";
        m_needDelimiter = false;
    }
    m_out += "}\r\n{\\colortbl;";
    for (QRgb c : m_colors) {
        word("\\red", qRed(c));
        word("\\green", qGreen(c));
        word("\\blue", qBlue(c));
        m_out += ';';
        m_needDelimiter = false;
    }
    m_out += "}\r\n";
    if (!m_lists.empty()) {
        m_out += "{\\*\\listtable";
        for (size_t i = 0; i < m_lists.size(); ++i) {
            const QTextListFormat::Style style = m_lists[i]->format().style();
            m_out += "\r\n{\\list\\listtemplateid";
            m_out += QByteArray::number(int(i) + 1);
            for (int level = 0; level < MaxLevels; ++level) {
                const int nfc = numberFormat(style);
                m_out += "{\\listlevel";
                word("\\levelnfc", nfc);
                word("\\levelnfcn", nfc);
                m_out += "\\leveljc0\\leveljcn0\\levelfollow0\\levelstartat1{\\leveltext";
                if (isBullet(style)) {
                    m_out += "\\'01";
                    character(bulletChar(style));
                    m_out += ";}{\\levelnumbers;}";
                } else {
                    m_out += "\\'02\\'0" + QByteArray::number(level) + ".;}{\\levelnumbers\\'01;}";
                }
                m_needDelimiter = false;
                word("\\fi", -BulletHangTwips);
                word("\\li", ListIndentTwips * (level + 1));
                word("\\lin", ListIndentTwips * (level + 1));
                m_out += '}';
                m_needDelimiter = false;
            }
            word("\\listid", int(i) + 1);
            m_out += '}';
            m_needDelimiter = false;
        }
        m_out += "}\r\n{\\*\\listoverridetable";
        for (size_t i = 0; i < m_lists.size(); ++i) {
            m_out += "{\\listoverride";
            word("\\listid", int(i) + 1);
            word("\\listoverridecount", 0);
            word("\\ls", int(i) + 1);
            m_out += '}';
            m_needDelimiter = false;
        }
        m_out += "}\r\n";
    }
}

void Writer::paragraph(const Segment &seg)
{
    const QTextBlock &b = seg.block;
    const QTextBlockFormat bf = b.blockFormat();
    QTextList *list = b.textList();
    word("\\pard");
    if (bf.hasProperty(QTextFormat::BlockAlignment)) {
        const Qt::Alignment a = bf.alignment() & Qt::AlignHorizontal_Mask;
        if (a & Qt::AlignHCenter)
            word("\\qc");
        else if (a & Qt::AlignJustify)
            word("\\qj");
        else if (a & (Qt::AlignRight | Qt::AlignTrailing))
            word("\\qr");
        else
            word("\\ql");
    }
    auto twips = [](double px) { return std::clamp(qRound(px * TwipsPerPixel), -31680, 31680); };
    if (!list) {
        if (const int v = twips(bf.leftMargin()))
            word("\\li", v);
        if (const int v = twips(bf.textIndent()))
            word("\\fi", v);
    }
    if (const int v = twips(bf.rightMargin()))
        word("\\ri", v);
    if (const int v = twips(bf.topMargin()); v > 0)
        word("\\sb", v);
    if (const int v = twips(bf.bottomMargin()); v > 0)
        word("\\sa", v);
    if (list)
        listProperties(b, list);

    for (auto it = b.begin(); !it.atEnd(); ++it) {
        const QTextFragment f = it.fragment();
        const int start = std::max(seg.start, f.position());
        const int end = std::min(seg.end, f.position() + f.length());
        if (start >= end)
            continue;
        const QTextCharFormat format = f.charFormat();
        switchTo(stateOf(format));
        if (format.isImageFormat()) {
            // A picture read from a file goes back as it stood there.
            const QByteArray source = format.property(PictureSourceProperty).toByteArray();
            for (int i = start; i < end && !source.isEmpty(); ++i)
                m_out += source;
            m_needDelimiter = false;
            continue;
        }
        text(QStringView(f.text()).mid(start - f.position(), end - start));
    }
    if (seg.ended) {
        // An empty paragraph keeps the format of what is typed into it.
        if (b.length() == 1)
            switchTo(stateOf(b.charFormat()));
        word("\\par");
        m_out += "\r\n";
    }
}

// The list a paragraph is in, for the readers that know list tables (\ls),
// and again in the older form (\pn) with the drawn bullet or number in
// \pntext, for those that don't.
void Writer::listProperties(const QTextBlock &block, QTextList *list)
{
    const int level = listLevel(list);
    const QTextListFormat::Style style = list->format().style();
    word("\\ls", m_listIndex.value(list));
    word("\\ilvl", level);
    word("\\fi", -BulletHangTwips);
    word("\\li", ListIndentTwips * (level + 1));
    m_out += "{\\pntext";
    m_needDelimiter = true;
    if (isBullet(style))
        character(bulletChar(style));
    else
        text(list->itemText(block));
    word("\\tab");
    m_out += "}{\\*\\pn";
    if (isBullet(style)) {
        m_out += "\\pnlvlblt";
    } else {
        m_out += "\\pnlvlbody";
        m_out += pnStyleWord(style);
        m_out += "\\pnstart1";
    }
    word("\\pnindent", BulletHangTwips);
    m_out += "{\\pntxt";
    if (isBullet(style)) {
        m_out += 'b';
        m_needDelimiter = true;
        character(bulletChar(style));
    } else {
        m_out += "a .";
    }
    m_out += "}}";
    m_needDelimiter = false;
}

// Writes the words that take the character properties from those in force
// to the run's.
void Writer::switchTo(const RunState &s)
{
    RunState &c = m_state;
    if (s.font != c.font)
        word("\\f", s.font);
    if (s.halfPoints != c.halfPoints)
        word("\\fs", s.halfPoints);
    if (s.bold != c.bold)
        word(s.bold ? "\\b" : "\\b0");
    if (s.italic != c.italic)
        word(s.italic ? "\\i" : "\\i0");
    if (s.underline != c.underline) {
        switch (s.underline) {
        case Underline::None: word("\\ulnone"); break;
        case Underline::Single: word("\\ul"); break;
        case Underline::Dash: word("\\uldash"); break;
        case Underline::Dot: word("\\uld"); break;
        case Underline::DashDot: word("\\uldashd"); break;
        case Underline::DashDotDot: word("\\uldashdd"); break;
        case Underline::Wave: word("\\ulwave"); break;
        }
    }
    if (s.strike != c.strike)
        word(s.strike ? "\\strike" : "\\strike0");
    if (s.vertical != c.vertical)
        word(s.vertical == Vertical::Super ? "\\super"
             : s.vertical == Vertical::Sub ? "\\sub"
                                           : "\\nosupersub");
    if (s.color != c.color)
        word("\\cf", s.color);
    if (s.background != c.background)
        word("\\chcbpat", s.background);
    c = s;
}

void Writer::word(const char *w)
{
    m_out += w;
    m_needDelimiter = true;
}

void Writer::word(const char *w, int param)
{
    // Every character outside the code page and every style change goes
    // through here: format on the stack rather than in a temporary array.
    char digits[16];
    const auto end = std::to_chars(digits, digits + sizeof digits, param).ptr;
    m_out += w;
    m_out.append(digits, end - digits);
    m_needDelimiter = true;
}

void Writer::text(QStringView s)
{
    for (QChar c : s)
        character(c.unicode());
}

void Writer::character(char16_t c)
{
    if (c >= 0x20 && c < 0x7F) {
        if (c == u'\\' || c == u'{' || c == u'}') {
            m_out += '\\';
            m_out += char(c);
            m_needDelimiter = false;
            return;
        }
        // A space ends the control word before text that would otherwise
        // run on into it; the reader drops that one space.
        if (m_needDelimiter)
            m_out += ' ';
        m_needDelimiter = false;
        m_out += char(c);
        return;
    }
    switch (c) {
    case u'\t': word("\\tab"); return;
    case 0x2028: word("\\line"); return;
    case 0x00A0: m_out += "\\~"; m_needDelimiter = false; return;
    case 0x00AD: m_out += "\\-"; m_needDelimiter = false; return;
    case 0x2011: m_out += "\\_"; m_needDelimiter = false; return;
    default: break;
    }
    // Other controls and the document's object and frame marks are no text.
    if (isNoText(c))
        return;
    word("\\u", c >= 0x8000 ? int(c) - 0x10000 : int(c));
    if (const unsigned char b = cp1252Byte(c)) {
        static const char hex[] = "0123456789abcdef";
        m_out += "\\'";
        m_out += hex[b >> 4];
        m_out += hex[b & 15];
    } else {
        m_out += '?';
    }
    m_needDelimiter = false;
}

} // namespace

QByteArray write(const QTextDocument &doc, int from, int to)
{
    return Writer(doc, from, to).run();
}

} // namespace Rtf::detail
