#include "editor/rtf/RtfKeywords.h"
#include "editor/rtf/RtfReaderState.h"

namespace Rtf::detail::reader {

// Finishes what a closing group was building: a font, a list, a level, an
// override, or the old-style numbering of the paragraph.
void Reader::endDestination(const GroupState &closing)
{
    const Dest outer = top().dest;
    switch (closing.dest) {
    case Dest::FontTable:
        commitFont();
        break;
    case Dest::LevelText:
        if (outer != Dest::LevelText)
            m_level.text = m_levelText;
        break;
    case Dest::ListLevel:
        if (outer != Dest::ListLevel) {
            if (m_levelCount < MaxLevels)
                m_list.levels[m_levelCount] = m_level;
            ++m_levelCount;
        }
        break;
    case Dest::List:
        if (outer != Dest::List && int(m_lists.size()) < MaxLists) {
            m_listById.insert(m_listId, int(m_lists.size()));
            m_lists.push_back(m_list);
        }
        break;
    case Dest::ListOverride:
        if (outer != Dest::ListOverride && m_overrides.size() < MaxLists)
            m_overrides.insert(m_overrideIndex, m_overrideList);
        break;
    case Dest::Picture:
        if (outer != Dest::Picture)
            endPicture();
        break;
    case Dest::Pn:
        if (outer == Dest::Text && m_pn.pnLevel > 0) {
            top().para.pnLevel = m_pn.pnLevel;
            top().para.pnStyle = m_pn.pnStyle;
        }
        break;
    default:
        break;
    }
}

void Reader::controlWord(std::string_view word, bool hasParam, int param)
{
    const Kw kw = lookupKeyword(word);
    const bool star = m_star;
    m_star = false;
    GroupState &s = top();
    const Dest dest = s.dest;
    const bool on = !hasParam || param != 0;

    // Inside a picture only its own words count: the picture is written back
    // as it stood, and anything else in it would act differently when read
    // again in another place. A \* group in it is skipped.
    if (dest == Dest::Picture) {
        PictureState &p = m_picture;
        switch (star ? Kw::Unknown : kw) {
        case Kw::Unknown: if (star) s.dest = Dest::Skip; break;
        case Kw::PngBlip: p.kind = PictureState::Kind::Png; break;
        case Kw::JpegBlip: p.kind = PictureState::Kind::Jpeg; break;
        case Kw::PictureWidth: p.width = clampInt(param, 0, 100000); break;
        case Kw::PictureHeight: p.height = clampInt(param, 0, 100000); break;
        case Kw::PictureGoalWidth: p.goalWidth = clampInt(param, 0, 1000000); break;
        case Kw::PictureGoalHeight: p.goalHeight = clampInt(param, 0, 1000000); break;
        case Kw::PictureScaleX: if (param > 0) p.scaleX = clampInt(param, 1, 1000); break;
        case Kw::PictureScaleY: if (param > 0) p.scaleY = clampInt(param, 1, 1000); break;
        default: break;
        }
        return;
    }

    // Destinations never leave a skipped group.
    auto enter = [&](Dest d) {
        if (dest != Dest::Skip)
            s.dest = d;
    };
    auto charChange = [&] { m_stateMaybeChanged = true; };

    switch (kw) {
    case Kw::Unknown:
        if (star)
            s.dest = Dest::Skip;
        return;
    case Kw::SkipDestination: s.dest = Dest::Skip; return;
    case Kw::LossyDestination:
        if (dest != Dest::Skip)
            m_builder.lostContent = true;
        s.dest = Dest::Skip;
        return;
    case Kw::ShapePicture:
        s.dest = dest == Dest::Text ? Dest::ShapePicture : Dest::Skip;
        return;
    case Kw::Picture:
        // A picture is a group of its own; one in the document's outermost
        // group would run to the end of the file, and is skipped.
        if ((dest == Dest::Text || dest == Dest::ShapePicture) && m_stack.size() > 2) {
            s.dest = Dest::Picture;
            m_picture = PictureState();
            m_picture.source = m_wordStart;
        } else {
            s.dest = Dest::Skip;
        }
        return;
    case Kw::FontTable:
        enter(Dest::FontTable);
        m_pendingFontName.clear();
        return;
    case Kw::ColorTable:
        enter(Dest::ColorTable);
        m_red = m_green = m_blue = -1;
        return;
    case Kw::ListTable: enter(Dest::ListTable); return;
    case Kw::List:
        if (dest == Dest::ListTable) {
            s.dest = Dest::List;
            m_list = ListDef();
            m_listId = 0;
            m_levelCount = 0;
        } else {
            s.dest = Dest::Skip;
        }
        return;
    case Kw::ListLevel:
        if (dest == Dest::List) {
            s.dest = Dest::ListLevel;
            m_level = ListDef::Level();
        } else {
            s.dest = Dest::Skip;
        }
        return;
    case Kw::LevelText:
        if (dest == Dest::ListLevel) {
            s.dest = Dest::LevelText;
            m_levelText.clear();
        } else {
            s.dest = Dest::Skip;
        }
        return;
    case Kw::ListOverrideTable: enter(Dest::ListOverrideTable); return;
    case Kw::ListOverride:
        if (dest == Dest::ListOverrideTable) {
            s.dest = Dest::ListOverride;
            m_overrideList = m_overrideIndex = 0;
        } else {
            s.dest = Dest::Skip;
        }
        return;
    case Kw::Pn:
        if (dest == Dest::Text) {
            s.dest = Dest::Pn;
            m_pn = ParaState();
        } else {
            s.dest = Dest::Skip;
        }
        return;
    case Kw::Object:
        // The object's last picture or text is kept; the object itself is not.
        if (dest != Dest::Skip)
            m_builder.lostContent = true;
        enter(Dest::Object);
        return;
    case Kw::Result:
        if (dest == Dest::Object)
            s.dest = Dest::Text;
        return;
    case Kw::FieldResult:
    case Kw::Field:
        return;
    default:
        break;
    }
    if (star) {
        // A known word that isn't a destination after \*: not one we read.
        s.dest = Dest::Skip;
        return;
    }
    // Nothing in a skipped group acts: a \deff or \ansicpg there would
    // change how the rest of the document reads.
    if (dest == Dest::Skip)
        return;

    switch (kw) {
    case Kw::Par: endParagraph(); break;
    case Kw::Line: textChar(0x2028); break;
    case Kw::Tab: textChar(u'\t'); break;
    case Kw::EmDash: textChar(0x2014); break;
    case Kw::EnDash: textChar(0x2013); break;
    case Kw::EmSpace: textChar(0x2003); break;
    case Kw::EnSpace: textChar(0x2002); break;
    case Kw::QmSpace: textChar(0x2005); break;
    case Kw::Bullet: textChar(0x2022); break;
    case Kw::LQuote: textChar(0x2018); break;
    case Kw::RQuote: textChar(0x2019); break;
    case Kw::LDblQuote: textChar(0x201C); break;
    case Kw::RDblQuote: textChar(0x201D); break;
    case Kw::Zwj: textChar(0x200D); break;
    case Kw::Zwnj: textChar(0x200C); break;
    case Kw::LtrMark: textChar(0x200E); break;
    case Kw::RtlMark: textChar(0x200F); break;
    case Kw::Sect:
    case Kw::Page:
    case Kw::Column:
        // Breaks between pages or sections end a paragraph that has text;
        // those standing after a \par add nothing.
        if (dest == Dest::Text && (m_paraHasContent || !m_run.isEmpty()))
            endParagraph();
        break;
    // A table's cells run on as tab-separated text: the table is lost.
    case Kw::Cell:
        if (dest == Dest::Text) {
            ++m_pendingTabs;
            m_builder.lostContent = true;
        }
        break;
    case Kw::Row:
        if (dest == Dest::Text) {
            m_builder.lostContent = true;
            m_pendingTabs = 0;
            endParagraph();
        }
        break;

    case Kw::Plain: s.chr = CharState(); charChange(); break;
    case Kw::Bold: s.chr.bold = on; charChange(); break;
    case Kw::Italic: s.chr.italic = on; charChange(); break;
    case Kw::Underline:
        s.chr.underline = on ? Underline::Single : Underline::None;
        charChange();
        break;
    case Kw::UnderlineNone: s.chr.underline = Underline::None; charChange(); break;
    case Kw::UnderlineDotted:
        s.chr.underline = on ? Underline::Dot : Underline::None;
        charChange();
        break;
    case Kw::UnderlineDash:
        s.chr.underline = on ? Underline::Dash : Underline::None;
        charChange();
        break;
    case Kw::UnderlineDashDot:
        s.chr.underline = on ? Underline::DashDot : Underline::None;
        charChange();
        break;
    case Kw::UnderlineDashDotDot:
        s.chr.underline = on ? Underline::DashDotDot : Underline::None;
        charChange();
        break;
    case Kw::UnderlineWave:
        s.chr.underline = on ? Underline::Wave : Underline::None;
        charChange();
        break;
    case Kw::Strike: s.chr.strike = on; charChange(); break;
    case Kw::Hidden: s.chr.hidden = on; charChange(); break;
    case Kw::Super: s.chr.vertical = Vertical::Super; charChange(); break;
    case Kw::Sub: s.chr.vertical = Vertical::Sub; charChange(); break;
    case Kw::NoSuperSub: s.chr.vertical = Vertical::Normal; charChange(); break;
    case Kw::LowChars: s.chr.charClass = CharClass::Low; break;
    case Kw::HighChars: s.chr.charClass = CharClass::High; break;
    case Kw::DoubleByteChars: s.chr.charClass = CharClass::DoubleByte; break;
    case Kw::RightToLeftChars: s.chr.charClass = CharClass::RightToLeft; break;
    case Kw::LeftToRightChars: s.chr.charClass = CharClass::None; break;
    case Kw::AssocFont:
        if (!hasParam)
            break;
        switch (s.chr.charClass) {
        case CharClass::Low: s.chr.lowFont = std::max(param, 0); break;
        case CharClass::High: s.chr.highFont = std::max(param, 0); break;
        case CharClass::DoubleByte: s.chr.eastAsianFont = std::max(param, 0); break;
        default: break;
        }
        charChange();
        break;
    case Kw::AssocFontSize:
        if (s.chr.charClass == CharClass::DoubleByte && param > 0) {
            s.chr.eastAsianHalfPoints = std::min(param, 3276);
            charChange();
        }
        break;
    case Kw::Font:
        if (dest == Dest::FontTable) {
            commitFont();
            m_pendingFontIndex = std::max(param, 0);
            m_pendingFontCharset = -1;
            m_pendingFontCodepage = 0;
        } else if (dest != Dest::ListLevel && dest != Dest::LevelText && hasParam) {
            s.chr.font = std::max(param, 0);
            charChange();
        }
        break;
    case Kw::FontSize:
        // Sizes run from half a point to 1638 points; nothing else is a size.
        if (hasParam && param > 0) {
            s.chr.halfPoints = std::min(param, 3276);
            charChange();
        }
        break;
    case Kw::Color: s.chr.color = std::max(param, 0); charChange(); break;
    case Kw::Background: s.chr.background = std::max(param, 0); charChange(); break;

    case Kw::Pard:
        s.para = ParaState();
        break;
    case Kw::AlignLeft: s.para.align = Align::Left; break;
    case Kw::AlignCenter: s.para.align = Align::Center; break;
    case Kw::AlignRight: s.para.align = Align::Right; break;
    case Kw::AlignJustify: s.para.align = Align::Justify; break;
    case Kw::LeftIndent: s.para.leftIndent = clampInt(param, -MaxTwips, MaxTwips); break;
    case Kw::RightIndent: s.para.rightIndent = clampInt(param, -MaxTwips, MaxTwips); break;
    case Kw::FirstIndent: s.para.firstIndent = clampInt(param, -MaxTwips, MaxTwips); break;
    case Kw::SpaceBefore: s.para.spaceBefore = clampInt(param, 0, MaxTwips); break;
    case Kw::SpaceAfter: s.para.spaceAfter = clampInt(param, 0, MaxTwips); break;
    case Kw::ListOverrideIndex:
        if (dest == Dest::ListOverride)
            m_overrideIndex = param;
        else
            s.para.listOverride = std::max(param, 0);
        break;
    case Kw::ListLevelIndex: s.para.listLevel = clampInt(param, 0, MaxLevels - 1); break;

    // The character set of the document; an \ansicpg that follows names the
    // code page more exactly (a Japanese Mac document: \mac\ansicpg10001).
    case Kw::Ansi: m_docCodepage = DefaultCodepage; m_lastFontIndex = -2; break;
    case Kw::Mac: m_docCodepage = 10000; m_lastFontIndex = -2; break;
    case Kw::Pc: m_docCodepage = 437; m_lastFontIndex = -2; break;
    case Kw::Pca: m_docCodepage = 850; m_lastFontIndex = -2; break;
    case Kw::AnsiCodepage:
        if (CodepageDecoder::isSupported(param))
            m_docCodepage = param;
        break;
    case Kw::DefaultFont:
        m_defaultFont = std::max(param, 0);
        m_lastFontIndex = -2;
        charChange();
        break;
    case Kw::UnicodeSkip: s.uc = clampInt(param, 0, 16); break;
    case Kw::Unicode: {
        const int unit = param < 0 ? param + 65536 : param;
        if (unit >= 0 && unit <= 0xFFFF)
            textChar(char16_t(unit));
        m_ucSkip = s.uc;
        break;
    }
    case Kw::FontCharset:
        if (dest == Dest::FontTable)
            m_pendingFontCharset = std::max(param, 0);
        break;
    case Kw::FontCodepage:
        if (dest == Dest::FontTable)
            m_pendingFontCodepage = param;
        break;
    case Kw::Red: if (dest == Dest::ColorTable) m_red = clampInt(param, 0, 255); break;
    case Kw::Green: if (dest == Dest::ColorTable) m_green = clampInt(param, 0, 255); break;
    case Kw::Blue: if (dest == Dest::ColorTable) m_blue = clampInt(param, 0, 255); break;
    case Kw::ListId:
        if (dest == Dest::List)
            m_listId = param;
        else if (dest == Dest::ListOverride)
            m_overrideList = param;
        break;
    case Kw::LevelNumberFormat:
        if (dest == Dest::ListLevel)
            m_level.nfc = param;
        break;
    case Kw::PnBullet:
        if (dest == Dest::Pn) {
            m_pn.pnLevel = 1;
            m_pn.pnStyle = QTextListFormat::ListDisc;
        }
        break;
    case Kw::PnBody:
        if (dest == Dest::Pn) {
            m_pn.pnLevel = 1;
            if (m_pn.pnStyle == QTextListFormat::ListDisc)
                m_pn.pnStyle = QTextListFormat::ListDecimal;
        }
        break;
    case Kw::PnLevel:
        if (dest == Dest::Pn) {
            m_pn.pnLevel = clampInt(param, 1, MaxLevels);
            if (m_pn.pnStyle == QTextListFormat::ListDisc)
                m_pn.pnStyle = QTextListFormat::ListDecimal;
        }
        break;
    case Kw::PnContinue:
        if (dest == Dest::Pn)
            m_pn.pnLevel = 0;
        break;
    case Kw::PnDecimal: if (dest == Dest::Pn) m_pn.pnStyle = QTextListFormat::ListDecimal; break;
    case Kw::PnUpperLetter: if (dest == Dest::Pn) m_pn.pnStyle = QTextListFormat::ListUpperAlpha; break;
    case Kw::PnLowerLetter: if (dest == Dest::Pn) m_pn.pnStyle = QTextListFormat::ListLowerAlpha; break;
    case Kw::PnUpperRoman: if (dest == Dest::Pn) m_pn.pnStyle = QTextListFormat::ListUpperRoman; break;
    case Kw::PnLowerRoman: if (dest == Dest::Pn) m_pn.pnStyle = QTextListFormat::ListLowerRoman; break;
    default:
        break;
    }
}

} // namespace Rtf::detail::reader
