#include "editor/rtf/RtfReaderState.h"

#include <QColor>

namespace Rtf::detail::reader {

namespace {

QTextListFormat::Style bulletStyleFor(const QString &text)
{
    for (QChar c : text) {
        switch (c.unicode()) {
        case u'o': case 0x25E6: case 0x25CB: case 0xF06F:
            return QTextListFormat::ListCircle;
        case 0x25AA: case 0x25A0: case 0x25FE: case 0xF0A7: case 0xF06E:
            return QTextListFormat::ListSquare;
        default:
            break;
        }
    }
    return QTextListFormat::ListDisc;
}

// The list style of a \levelnfc; false for 255, "no number".
bool styleForNumberFormat(int nfc, const QString &text, QTextListFormat::Style &style)
{
    switch (nfc) {
    case 23: style = bulletStyleFor(text); return true;
    case 1: style = QTextListFormat::ListUpperRoman; return true;
    case 2: style = QTextListFormat::ListLowerRoman; return true;
    case 3: style = QTextListFormat::ListUpperAlpha; return true;
    case 4: style = QTextListFormat::ListLowerAlpha; return true;
    case 255: return false;
    default: style = QTextListFormat::ListDecimal; return true;
    }
}

} // namespace

int Reader::codepage()
{
    const GroupState &s = top();
    if (s.dest == Dest::FontTable) {
        if (CodepageDecoder::isSupported(m_pendingFontCodepage))
            return m_pendingFontCodepage;
        const int cp = codepageForCharset(m_pendingFontCharset);
        return cp ? cp : m_docCodepage;
    }
    // A byte belongs to the font of its class of characters where \af gave
    // one (Word's \hich\af, \dbch\af), otherwise to the run's font; a font
    // whose \fcharset names a character set decodes in its code page, one
    // without in the document's.
    int index = s.chr.font < 0 ? m_defaultFont : s.chr.font;
    switch (s.chr.charClass) {
    case CharClass::Low: index = s.chr.lowFont >= 0 ? s.chr.lowFont : index; break;
    case CharClass::High: index = s.chr.highFont >= 0 ? s.chr.highFont : index; break;
    case CharClass::DoubleByte: index = s.chr.eastAsianFont >= 0 ? s.chr.eastAsianFont : index; break;
    default: break;
    }
    if (index != m_lastFontIndex) {
        m_lastFontIndex = index;
        const auto it = m_fonts.constFind(index);
        m_lastFont = it == m_fonts.constEnd() ? nullptr : &*it;
    }
    return m_lastFont && m_lastFont->codepage ? m_lastFont->codepage : m_docCodepage;
}

void Reader::commitFont()
{
    if (m_pendingFontIndex >= 0 && (m_fonts.size() < MaxFonts || m_fonts.contains(m_pendingFontIndex))) {
        FontEntry font;
        font.name = m_pendingFontName.trimmed();
        if (CodepageDecoder::isSupported(m_pendingFontCodepage))
            font.codepage = m_pendingFontCodepage;
        else if (const int cp = codepageForCharset(m_pendingFontCharset);
                 cp && CodepageDecoder::isSupported(cp))
            font.codepage = cp;
        m_fonts.insert(m_pendingFontIndex, font);
        m_lastFontIndex = -2;
        m_haveCached = false;
    }
    m_pendingFontIndex = -1;
    m_pendingFontName.clear();
}

QTextCharFormat Reader::charFormat(const CharState &s)
{
    if (m_haveCached && s == m_cachedState)
        return m_cachedFormat;
    QTextCharFormat f;
    const int index = s.font < 0 ? m_defaultFont : s.font;
    const auto font = m_fonts.constFind(index);
    if (font != m_fonts.constEnd() && !font->name.isEmpty()
        && !(index == m_defaultFont && font->name == m_defaultFamily))
        f.setFontFamilies({font->name});
    if (s.halfPoints != m_defaultHalfPoints)
        f.setFontPointSize(s.halfPoints / 2.0);
    if (s.bold)
        f.setFontWeight(QFont::Bold);
    if (s.italic)
        f.setFontItalic(true);
    switch (s.underline) {
    case Underline::None: break;
    case Underline::Single: f.setUnderlineStyle(QTextCharFormat::SingleUnderline); break;
    case Underline::Dash: f.setUnderlineStyle(QTextCharFormat::DashUnderline); break;
    case Underline::Dot: f.setUnderlineStyle(QTextCharFormat::DotLine); break;
    case Underline::DashDot: f.setUnderlineStyle(QTextCharFormat::DashDotLine); break;
    case Underline::DashDotDot: f.setUnderlineStyle(QTextCharFormat::DashDotDotLine); break;
    case Underline::Wave: f.setUnderlineStyle(QTextCharFormat::WaveUnderline); break;
    }
    if (s.strike)
        f.setFontStrikeOut(true);
    if (s.vertical == Vertical::Super)
        f.setVerticalAlignment(QTextCharFormat::AlignSuperScript);
    else if (s.vertical == Vertical::Sub)
        f.setVerticalAlignment(QTextCharFormat::AlignSubScript);
    // Index 0 is "auto" in every file that follows the common practice.
    auto colour = [this](int index, QColor &out) {
        if (index <= 0 || index >= int(m_colors.size()) || qAlpha(m_colors[index]) == 0)
            return false;
        out = QColor::fromRgb(m_colors[index]);
        return true;
    };
    QColor c;
    if (colour(s.color, c))
        f.setForeground(c);
    if (colour(s.background, c))
        f.setBackground(c);
    m_cachedState = s;
    m_cachedFormat = f;
    m_haveCached = true;
    return f;
}

QTextBlockFormat Reader::blockFormat(const ParaState &p) const
{
    QTextBlockFormat f;
    switch (p.align) {
    case Align::Unset: break;
    case Align::Left: f.setAlignment(Qt::AlignLeft); break;
    case Align::Center: f.setAlignment(Qt::AlignHCenter); break;
    case Align::Right: f.setAlignment(Qt::AlignRight); break;
    case Align::Justify: f.setAlignment(Qt::AlignJustify); break;
    }
    // A list item's indents belong to its list, which the document indents
    // by itself.
    const bool listItem = p.pnLevel > 0
                          || (p.listOverride > 0 && m_overrides.contains(p.listOverride));
    if (!listItem) {
        if (p.leftIndent)
            f.setLeftMargin(p.leftIndent / TwipsPerPixel);
        if (p.firstIndent)
            f.setTextIndent(p.firstIndent / TwipsPerPixel);
    }
    if (p.rightIndent)
        f.setRightMargin(p.rightIndent / TwipsPerPixel);
    if (p.spaceBefore)
        f.setTopMargin(p.spaceBefore / TwipsPerPixel);
    if (p.spaceAfter)
        f.setBottomMargin(p.spaceAfter / TwipsPerPixel);
    return f;
}

ListRequest Reader::listRequest(const ParaState &p)
{
    ListRequest r;
    bool pn = false;
    if (p.listOverride > 0 && m_overrides.contains(p.listOverride)) {
        const auto o = m_overrides.constFind(p.listOverride);
        const auto def = o == m_overrides.constEnd() ? m_listById.constEnd()
                                                     : m_listById.constFind(*o);
        if (def != m_listById.constEnd()) {
            const ListDef::Level &level = m_lists[*def].levels[p.listLevel];
            if (styleForNumberFormat(level.nfc, level.text, r.style)) {
                r.key = p.listOverride;
                r.level = p.listLevel;
            }
        }
    } else if (p.pnLevel > 0) {
        // Old-style numbering has no list ids: neighbouring paragraphs of
        // the same kind make one list.
        pn = true;
        if (!m_lastParaPn || m_lastPnStyle != p.pnStyle || m_lastPnLevel != p.pnLevel)
            --m_pnKey;
        r.key = m_pnKey;
        r.level = p.pnLevel - 1;
        r.style = p.pnStyle;
        m_lastPnStyle = p.pnStyle;
        m_lastPnLevel = p.pnLevel;
    }
    m_lastParaPn = pn;
    return r;
}

} // namespace Rtf::detail::reader
