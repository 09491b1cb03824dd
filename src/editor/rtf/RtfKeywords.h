#pragma once

#include <string_view>

// The control words that the reader acts on. Any other word is read and
// ignored, and after \* it makes its group skipped.
namespace Rtf::detail {

enum class Kw {
    Unknown,
    // Destinations read.
    FontTable, ColorTable, ListTable, List, ListLevel, LevelText, ListOverrideTable,
    ListOverride, Pn, Object, Result, FieldResult, Field,
    // Pictures: the picture, the container of the one meant for readers that
    // know pictures, and the words that tell its kind and size.
    Picture, ShapePicture, PngBlip, JpegBlip, PictureWidth, PictureHeight, PictureGoalWidth,
    PictureGoalHeight, PictureScaleX, PictureScaleY,
    // Destinations whose content is dropped; the lossy ones hold content of
    // the document that the editor cannot keep (headers, notes, shapes).
    SkipDestination, LossyDestination,
    // Characters and breaks.
    Par, Line, Tab, EmDash, EnDash, EmSpace, EnSpace, QmSpace, Bullet, LQuote, RQuote,
    LDblQuote, RDblQuote, Zwj, Zwnj, LtrMark, RtlMark, Sect, Page, Column, Cell, Row,
    // Character formatting.
    Plain, Bold, Italic, Underline, UnderlineNone, UnderlineDotted, UnderlineDash,
    UnderlineDashDot, UnderlineDashDotDot, UnderlineWave, Strike, Font, FontSize,
    Color, Background, Super, Sub, NoSuperSub, Hidden, LowChars, HighChars, DoubleByteChars,
    LeftToRightChars, RightToLeftChars,
    AssocFont, AssocFontSize,
    // Paragraph formatting.
    Pard, AlignLeft, AlignCenter, AlignRight, AlignJustify, LeftIndent, RightIndent,
    FirstIndent, SpaceBefore, SpaceAfter, ListOverrideIndex, ListLevelIndex,
    // Document, tables and fields of tables.
    Rtf, Ansi, Mac, Pc, Pca, AnsiCodepage, DefaultFont, UnicodeSkip, Unicode, Bin,
    FontCharset, FontCodepage, Red, Green, Blue, ListId, LevelNumberFormat,
    PnBullet, PnBody, PnLevel, PnContinue, PnDecimal, PnUpperLetter, PnLowerLetter,
    PnUpperRoman, PnLowerRoman,
};

Kw lookupKeyword(std::string_view word);

} // namespace Rtf::detail
