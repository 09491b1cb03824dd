#include "editor/rtf/RtfKeywords.h"

#include <unordered_map>

namespace Rtf::detail {

namespace {

struct Entry
{
    std::string_view word;
    Kw kw;
};

constexpr Entry Entries[] = {
    {"fonttbl", Kw::FontTable}, {"colortbl", Kw::ColorTable}, {"listtable", Kw::ListTable},
    {"list", Kw::List}, {"listlevel", Kw::ListLevel}, {"leveltext", Kw::LevelText},
    {"listoverridetable", Kw::ListOverrideTable}, {"listoverride", Kw::ListOverride},
    {"pn", Kw::Pn}, {"object", Kw::Object}, {"result", Kw::Result},
    {"fldrslt", Kw::FieldResult}, {"field", Kw::Field},

    {"pict", Kw::Picture}, {"shppict", Kw::ShapePicture}, {"pngblip", Kw::PngBlip},
    {"jpegblip", Kw::JpegBlip}, {"picw", Kw::PictureWidth}, {"pich", Kw::PictureHeight},
    {"picwgoal", Kw::PictureGoalWidth}, {"pichgoal", Kw::PictureGoalHeight},
    {"picscalex", Kw::PictureScaleX}, {"picscaley", Kw::PictureScaleY},

    // Content of the document that the editor has no place for.
    {"header", Kw::LossyDestination}, {"headerl", Kw::LossyDestination},
    {"headerr", Kw::LossyDestination}, {"headerf", Kw::LossyDestination},
    {"footer", Kw::LossyDestination}, {"footerl", Kw::LossyDestination},
    {"footerr", Kw::LossyDestination}, {"footerf", Kw::LossyDestination},
    {"footnote", Kw::LossyDestination}, {"annotation", Kw::LossyDestination},
    {"shp", Kw::LossyDestination}, {"do", Kw::LossyDestination},

    // Everything here holds no text of the body: document data, styles,
    // the drawn number of a list item, field instructions, the fallback
    // pictures for readers without pictures, and the pieces of the list
    // tables not used.
    {"stylesheet", Kw::SkipDestination}, {"info", Kw::SkipDestination},
    {"pntext", Kw::SkipDestination}, {"listtext", Kw::SkipDestination},
    {"fldinst", Kw::SkipDestination}, {"pntxta", Kw::SkipDestination},
    {"pntxtb", Kw::SkipDestination}, {"levelnumbers", Kw::SkipDestination},
    {"listname", Kw::SkipDestination}, {"lfolevel", Kw::SkipDestination},
    {"nonshppict", Kw::SkipDestination}, {"themedata", Kw::SkipDestination},
    {"colorschememapping", Kw::SkipDestination}, {"datastore", Kw::SkipDestination},
    {"latentstyles", Kw::SkipDestination}, {"xmlnstbl", Kw::SkipDestination},
    {"filetbl", Kw::SkipDestination}, {"revtbl", Kw::SkipDestination},
    {"rsidtbl", Kw::SkipDestination}, {"generator", Kw::SkipDestination},
    {"userprops", Kw::SkipDestination}, {"docvar", Kw::SkipDestination},
    {"template", Kw::SkipDestination}, {"bkmkstart", Kw::SkipDestination},
    {"bkmkend", Kw::SkipDestination},
    {"atnid", Kw::SkipDestination}, {"atnauthor", Kw::SkipDestination},
    {"ftnsep", Kw::SkipDestination}, {"ftnsepc", Kw::SkipDestination},
    {"aftnsep", Kw::SkipDestination}, {"aftnsepc", Kw::SkipDestination},
    {"xe", Kw::SkipDestination}, {"tc", Kw::SkipDestination},
    {"txe", Kw::SkipDestination}, {"private", Kw::SkipDestination},
    {"objdata", Kw::SkipDestination}, {"objclass", Kw::SkipDestination},
    {"objname", Kw::SkipDestination}, {"fchars", Kw::SkipDestination},
    {"lchars", Kw::SkipDestination}, {"comment", Kw::SkipDestination},
    {"panose", Kw::SkipDestination},
    {"falt", Kw::SkipDestination},

    {"par", Kw::Par}, {"line", Kw::Line}, {"tab", Kw::Tab}, {"emdash", Kw::EmDash},
    {"endash", Kw::EnDash}, {"emspace", Kw::EmSpace}, {"enspace", Kw::EnSpace},
    {"qmspace", Kw::QmSpace}, {"bullet", Kw::Bullet}, {"lquote", Kw::LQuote},
    {"rquote", Kw::RQuote}, {"ldblquote", Kw::LDblQuote}, {"rdblquote", Kw::RDblQuote},
    {"zwj", Kw::Zwj}, {"zwnj", Kw::Zwnj}, {"ltrmark", Kw::LtrMark}, {"rtlmark", Kw::RtlMark},
    {"sect", Kw::Sect}, {"page", Kw::Page}, {"column", Kw::Column}, {"cell", Kw::Cell},
    {"nestcell", Kw::Cell}, {"row", Kw::Row}, {"nestrow", Kw::Row},

    {"plain", Kw::Plain}, {"b", Kw::Bold}, {"i", Kw::Italic}, {"ul", Kw::Underline},
    {"ulnone", Kw::UnderlineNone}, {"uld", Kw::UnderlineDotted},
    {"ulhair", Kw::UnderlineDotted}, {"ulthd", Kw::UnderlineDotted},
    {"uldash", Kw::UnderlineDash}, {"ulthdash", Kw::UnderlineDash},
    {"ulldash", Kw::UnderlineDash}, {"ulthldash", Kw::UnderlineDash},
    {"uldashd", Kw::UnderlineDashDot}, {"ulthdashd", Kw::UnderlineDashDot},
    {"uldashdd", Kw::UnderlineDashDotDot}, {"ulthdashdd", Kw::UnderlineDashDotDot},
    {"ulwave", Kw::UnderlineWave}, {"ulhwave", Kw::UnderlineWave},
    {"ululdbwave", Kw::UnderlineWave}, {"uldb", Kw::Underline}, {"ulth", Kw::Underline},
    {"ulw", Kw::Underline}, {"strike", Kw::Strike}, {"striked", Kw::Strike},
    {"f", Kw::Font}, {"fs", Kw::FontSize}, {"cf", Kw::Color}, {"cb", Kw::Background},
    {"chcbpat", Kw::Background}, {"highlight", Kw::Background}, {"super", Kw::Super},
    {"sub", Kw::Sub}, {"nosupersub", Kw::NoSuperSub}, {"v", Kw::Hidden},
    {"loch", Kw::LowChars}, {"hich", Kw::HighChars}, {"ltrch", Kw::LeftToRightChars},
    {"rtlch", Kw::RightToLeftChars}, {"dbch", Kw::DoubleByteChars}, {"af", Kw::AssocFont},
    {"afs", Kw::AssocFontSize},

    {"pard", Kw::Pard}, {"ql", Kw::AlignLeft}, {"qc", Kw::AlignCenter},
    {"qr", Kw::AlignRight}, {"qj", Kw::AlignJustify}, {"qd", Kw::AlignJustify},
    {"li", Kw::LeftIndent}, {"lin", Kw::LeftIndent}, {"ri", Kw::RightIndent},
    {"rin", Kw::RightIndent}, {"fi", Kw::FirstIndent}, {"sb", Kw::SpaceBefore},
    {"sa", Kw::SpaceAfter}, {"ls", Kw::ListOverrideIndex}, {"ilvl", Kw::ListLevelIndex},

    {"rtf", Kw::Rtf}, {"ansi", Kw::Ansi}, {"mac", Kw::Mac}, {"pc", Kw::Pc}, {"pca", Kw::Pca},
    {"ansicpg", Kw::AnsiCodepage}, {"deff", Kw::DefaultFont}, {"uc", Kw::UnicodeSkip},
    {"u", Kw::Unicode}, {"bin", Kw::Bin}, {"fcharset", Kw::FontCharset},
    {"cpg", Kw::FontCodepage}, {"red", Kw::Red}, {"green", Kw::Green}, {"blue", Kw::Blue},
    {"listid", Kw::ListId}, {"levelnfc", Kw::LevelNumberFormat},
    {"levelnfcn", Kw::LevelNumberFormat}, {"pnlvlblt", Kw::PnBullet},
    {"pnlvlbody", Kw::PnBody}, {"pnlvl", Kw::PnLevel}, {"pnlvlcont", Kw::PnContinue},
    {"pndec", Kw::PnDecimal}, {"pnucltr", Kw::PnUpperLetter},
    {"pnlcltr", Kw::PnLowerLetter}, {"pnucrm", Kw::PnUpperRoman},
    {"pnlcrm", Kw::PnLowerRoman},
};

} // namespace

Kw lookupKeyword(std::string_view word)
{
    static const std::unordered_map<std::string_view, Kw> table = [] {
        std::unordered_map<std::string_view, Kw> t;
        for (const Entry &e : Entries)
            t.emplace(e.word, e.kw);
        return t;
    }();
    const auto it = table.find(word);
    return it == table.end() ? Kw::Unknown : it->second;
}

} // namespace Rtf::detail
