// Documents written to RTF and read back, selections copied and pasted,
// plain text inserted: what the editor's load, save, copy and paste do.
#include "RtfTestSupport.h"
#include "editor/rtf/Rtf.h"

#include <QTextCursor>
#include <QTextList>
#include <functional>
#include <gtest/gtest.h>

using RtfTest::describe;
using RtfTest::listMembership;

namespace {

QTextCharFormat fmt(const std::function<void(QTextCharFormat &)> &set)
{
    QTextCharFormat f;
    set(f);
    return f;
}

// Runs of text, each in the format its function sets.
using SetFormat = std::function<void(QTextCharFormat &)>;
void runs(QTextCursor &c, std::initializer_list<std::pair<const char *, SetFormat>> list)
{
    for (const auto &[text, set] : list)
        c.insertText(QString::fromUtf8(text), fmt(set));
}

QTextBlockFormat aligned(Qt::Alignment a)
{
    QTextBlockFormat f;
    f.setAlignment(a);
    return f;
}

void list(QTextCursor &c, QTextListFormat::Style style, int indent = 1)
{
    QTextListFormat f;
    f.setStyle(style);
    f.setIndent(indent);
    c.createList(f);
}

struct Case { const char *name; std::function<void(QTextCursor &)> build; };

const Case Cases[] = {
    {"Empty", [](QTextCursor &) {}},
    {"PlainParagraphs", [](QTextCursor &c) {
         c.insertText(QStringLiteral("First paragraph."));
         c.insertBlock();
         c.insertBlock();
         c.insertText(QStringLiteral("After an empty one."));
         c.insertBlock(); // the document ends in an empty paragraph
     }},
    {"CharacterStyles", [](QTextCursor &c) {
         runs(c, {{"bold ", [](auto &f) { f.setFontWeight(QFont::Bold); }},
                  {"italic ", [](auto &f) { f.setFontItalic(true); }},
                  {"underline ", [](auto &f) { f.setUnderlineStyle(QTextCharFormat::SingleUnderline); }},
                  {"dotted ", [](auto &f) { f.setUnderlineStyle(QTextCharFormat::DotLine); }},
                  {"wave ", [](auto &f) { f.setUnderlineStyle(QTextCharFormat::WaveUnderline); }},
                  {"strike ", [](auto &f) { f.setFontStrikeOut(true); }},
                  {"x", [](auto &f) { f.setVerticalAlignment(QTextCharFormat::AlignSuperScript); }},
                  {"y", [](auto &f) { f.setVerticalAlignment(QTextCharFormat::AlignSubScript); }},
                  {" all", [](auto &f) {
                       f.setFontWeight(QFont::Bold);
                       f.setFontItalic(true);
                       f.setUnderlineStyle(QTextCharFormat::SingleUnderline);
                       f.setFontStrikeOut(true); }},
                  {" none", [](auto &) {}}});
     }},
    {"FontsAndSizes", [](QTextCursor &c) {
         runs(c, {{"Times 14 ", [](auto &f) {
                       f.setFontFamilies({QStringLiteral("Times New Roman")});
                       f.setFontPointSize(14); }},
                  {"Courier ", [](auto &f) { f.setFontFamilies({QStringLiteral("Courier New")}); }},
                  {"half point ", [](auto &f) { f.setFontPointSize(10.5); }},
                  // Named although it is the default: stays named.
                  {"Arial named ", [](auto &f) { f.setFontFamilies({QStringLiteral("Arial")}); }},
                  {"odd;name{x}", [](auto &f) { f.setFontFamilies({QStringLiteral("Odd;Name {x}")}); }}});
     }},
    {"Colours", [](QTextCursor &c) {
         runs(c, {{"red ", [](auto &f) { f.setForeground(QColor(255, 0, 0)); }},
                  {"black ", [](auto &f) { f.setForeground(QColor(0, 0, 0)); }},
                  {"red again ", [](auto &f) { f.setForeground(QColor(255, 0, 0)); }},
                  {"on yellow", [](auto &f) {
                       f.setForeground(QColor(10, 20, 30));
                       f.setBackground(QColor(255, 255, 0)); }}});
     }},
    {"Alignment", [](QTextCursor &c) {
         c.setBlockFormat(aligned(Qt::AlignLeft));
         c.insertText(QStringLiteral("left"));
         c.insertBlock(aligned(Qt::AlignHCenter));
         c.insertText(QStringLiteral("centre"));
         c.insertBlock(aligned(Qt::AlignRight));
         c.insertText(QStringLiteral("right"));
         c.insertBlock(aligned(Qt::AlignJustify));
         c.insertText(QStringLiteral("justified"));
         c.insertBlock(QTextBlockFormat());
         c.insertText(QStringLiteral("unset"));
     }},
    {"Margins", [](QTextCursor &c) {
         QTextBlockFormat f;
         f.setLeftMargin(40);
         f.setRightMargin(20);
         f.setTextIndent(-12);
         f.setTopMargin(6);
         f.setBottomMargin(8);
         c.setBlockFormat(f);
         c.insertText(QStringLiteral("indented"));
     }},
    {"Lists", [](QTextCursor &c) {
         c.insertText(QStringLiteral("before"));
         c.insertBlock();
         list(c, QTextListFormat::ListDisc);
         c.insertText(QStringLiteral("bullet one"));
         c.insertBlock();
         c.insertText(QStringLiteral("bullet two"));
         c.insertBlock(QTextBlockFormat());
         c.insertText(QStringLiteral("between"));
         c.insertBlock();
         list(c, QTextListFormat::ListDecimal);
         c.insertText(QStringLiteral("number one"));
         c.insertBlock();
         list(c, QTextListFormat::ListCircle, 2);
         c.insertText(QStringLiteral("nested circle"));
         c.insertBlock(QTextBlockFormat());
         list(c, QTextListFormat::ListSquare);
         c.insertText(QStringLiteral("square"));
         c.insertBlock(QTextBlockFormat());
         list(c, QTextListFormat::ListLowerAlpha);
         c.insertText(QStringLiteral("alpha"));
         c.insertBlock(QTextBlockFormat());
         list(c, QTextListFormat::ListUpperRoman);
         c.insertText(QStringLiteral("roman"));
         c.insertBlock(aligned(Qt::AlignHCenter));
         list(c, QTextListFormat::ListDisc);
         c.insertText(QStringLiteral("centred bullet"));
     }},
    {"SpecialCharacters", [](QTextCursor &c) {
         c.insertText(QStringLiteral("a\tb") + QChar(QChar::LineSeparator) + QStringLiteral("c"));
         c.insertText(QStringLiteral(" back\\slash {braces} ; semicolon"));
         c.insertText(QString(QChar(0x00A0)) + QChar(0x00AD) + QChar(0x2011));
         c.insertBlock();
         c.insertText(QStringLiteral("caf\u00e9 \u20ac \u201cquoted\u201d \u2014 \u00ff"));
         c.insertBlock();
         c.insertText(QStringLiteral("\u041f\u0440\u0438\u0432\u0435\u0442 \u05e9\u05dc\u05d5\u05dd "
                                     "\u4e2d\u6587 \u65e5\u672c\u8a9e"));
         c.insertBlock();
         c.insertText(QStringLiteral("emoji \U0001F600 and \U0001D6FC 1-2 -3"));
     }},
    {"EmptyParagraphFormats", [](QTextCursor &c) {
         c.insertText(QStringLiteral("text"));
         QTextCharFormat big;
         big.setFontPointSize(20);
         big.setFontWeight(QFont::Bold);
         c.insertBlock(aligned(Qt::AlignRight), big); // empty, but typed text would be big
         c.insertBlock(QTextBlockFormat(), QTextCharFormat());
         c.insertText(QStringLiteral("end"));
     }},
};

class RoundTrip : public ::testing::TestWithParam<Case>
{
};

TEST_P(RoundTrip, DocumentToRtfAndBackIsTheSameDocument)
{
    QTextDocument original;
    original.setDefaultFont(RtfTest::editorFont());
    QTextCursor cursor(&original);
    GetParam().build(cursor);

    const QByteArray rtf = Rtf::fromDocument(original);
    ASSERT_TRUE(Rtf::looksLikeRtf(rtf));
    for (char ch : rtf)
        ASSERT_GE(ch, 0) << "RTF must be plain ASCII";

    QTextDocument copy;
    copy.setDefaultFont(RtfTest::editorFont());
    Rtf::load(copy, rtf);
    EXPECT_EQ(describe(copy), describe(original)) << rtf.constData();
    EXPECT_EQ(listMembership(copy), listMembership(original));
    EXPECT_EQ(Rtf::fromDocument(copy), rtf) << "the second pass must write the same bytes";
    EXPECT_EQ(Rtf::fromDocument(original), rtf) << "writing must be deterministic";
}

INSTANTIATE_TEST_SUITE_P(Features, RoundTrip, ::testing::ValuesIn(Cases),
                         [](const auto &info) { return std::string(info.param.name); });

TEST(RoundTripDefaults, EmptyDocumentKeepsDefaultFormatsWhateverTheDefaultFont)
{
    for (const QFont &font : {QFont(), RtfTest::editorFont(), QFont(QStringLiteral("Courier New"), 13)}) {
        QTextDocument doc;
        doc.setDefaultFont(font);
        QTextDocument copy;
        copy.setDefaultFont(font);
        Rtf::load(copy, Rtf::fromDocument(doc));
        ASSERT_EQ(copy.blockCount(), 1);
        EXPECT_TRUE(copy.begin().blockFormat().properties().isEmpty());
        EXPECT_TRUE(copy.begin().charFormat().properties().isEmpty());
        EXPECT_EQ(describe(copy), describe(doc));
    }
}

TEST(RoundTripDefaults, UnformattedTextReadIntoAnotherDefaultFontGetsTheWritersFont)
{
    QTextDocument doc;
    doc.setDefaultFont(QFont(QStringLiteral("Courier New"), 13));
    QTextCursor(&doc).insertText(QStringLiteral("x"));
    QTextDocument other;
    other.setDefaultFont(RtfTest::editorFont());
    Rtf::load(other, Rtf::fromDocument(doc));
    const QTextCharFormat f = other.begin().begin().fragment().charFormat();
    EXPECT_EQ(f.fontFamilies().toStringList(), QStringList{QStringLiteral("Courier New")});
    EXPECT_EQ(f.fontPointSize(), 13);
}

// --- Selections: copy and paste ---------------------------------------------

class Selection : public ::testing::Test
{
protected:
    void SetUp() override
    {
        source.setDefaultFont(RtfTest::editorFont());
        target.setDefaultFont(RtfTest::editorFont());
        QTextCursor c(&source);
        c.setBlockFormat(aligned(Qt::AlignHCenter));
        c.insertText(QStringLiteral("Hello "));
        c.insertText(QStringLiteral("bold"), fmt([](auto &f) { f.setFontWeight(QFont::Bold); }));
        c.insertText(QStringLiteral(" world"), QTextCharFormat());
        c.insertBlock(aligned(Qt::AlignRight));
        c.insertText(QStringLiteral("Second line"));
        QTextCursor t(&target);
        t.insertText(QStringLiteral("left [] right"));
    }

    QByteArray copy(int from, int to)
    {
        QTextCursor c(&source);
        c.setPosition(from);
        c.setPosition(to, QTextCursor::KeepAnchor);
        return Rtf::fromSelection(c);
    }

    // Pastes over the "[]" of the target.
    QTextCursor paste(const QByteArray &data)
    {
        QTextCursor t(&target);
        t.setPosition(5);
        t.setPosition(7, QTextCursor::KeepAnchor);
        Rtf::insert(t, data);
        return t;
    }

    QTextDocument source;
    QTextDocument target;
};

TEST_F(Selection, PartOfAParagraphPastesItsRunsButNotItsParagraphFormat)
{
    const QTextCursor t = paste(copy(3, 13)); // "lo bold wo"
    EXPECT_EQ(target.toPlainText(), QStringLiteral("left lo bold wo right"));
    EXPECT_EQ(t.position(), 15);
    EXPECT_FALSE(t.hasSelection());
    EXPECT_FALSE(target.begin().blockFormat().hasProperty(QTextFormat::BlockAlignment));
    QTextCursor probe(&target);
    probe.setPosition(10); // inside "bold"
    EXPECT_EQ(probe.charFormat().fontWeight(), QFont::Bold);
    probe.setPosition(14);
    EXPECT_EQ(probe.charFormat().fontWeight(), QFont::Normal);
}

TEST_F(Selection, AcrossParagraphsTheEndedParagraphBringsItsFormat)
{
    const QTextCursor t = paste(copy(6, 20)); // "bold world" + end + "Sec"
    EXPECT_EQ(target.toPlainText(), QStringLiteral("left bold world\nSec right"));
    ASSERT_EQ(target.blockCount(), 2);
    EXPECT_EQ(target.begin().blockFormat().alignment(), Qt::AlignHCenter);
    // The text behind the selection keeps the target's paragraph format.
    EXPECT_FALSE(target.lastBlock().blockFormat().hasProperty(QTextFormat::BlockAlignment));
    EXPECT_EQ(t.position(), 19);
}

TEST_F(Selection, EmptySelectionGivesADocumentWithNoText)
{
    const QByteArray rtf = copy(4, 4);
    EXPECT_TRUE(Rtf::looksLikeRtf(rtf));
    EXPECT_TRUE(rtf.endsWith('}'));
    paste(rtf);
    EXPECT_EQ(target.toPlainText(), QStringLiteral("left  right"));
    QTextDocument doc;
    Rtf::load(doc, rtf);
    EXPECT_TRUE(doc.isEmpty());
}

TEST_F(Selection, WholeDocumentSelectedPastesAsItWasWithoutAnExtraParagraph)
{
    QTextCursor all(&source);
    all.select(QTextCursor::Document);
    QTextDocument doc;
    doc.setDefaultFont(RtfTest::editorFont());
    QTextCursor c(&doc);
    Rtf::insert(c, Rtf::fromSelection(all));
    EXPECT_EQ(describe(doc), describe(source));
}

TEST_F(Selection, APartialParagraphPastedIntoAnEmptyOneBringsItsFormat)
{
    QTextDocument doc;
    QTextCursor c(&doc);
    Rtf::insert(c, copy(0, 5)); // "Hello", centred in the source
    EXPECT_EQ(doc.begin().blockFormat().alignment(), Qt::AlignHCenter);
    QTextCursor after(&target);
    after.movePosition(QTextCursor::End);
    Rtf::insert(after, copy(0, 5)); // lands in text: takes the target's format
    EXPECT_FALSE(target.begin().blockFormat().hasProperty(QTextFormat::BlockAlignment));
}

TEST_F(Selection, PasteIsOneUndoStepAndNothingPastedRemovesTheSelection)
{
    paste(copy(0, 20));
    target.undo();
    EXPECT_EQ(target.toPlainText(), QStringLiteral("left [] right"));
    EXPECT_EQ(paste(QByteArray()).position(), 5);
    EXPECT_EQ(target.toPlainText(), QStringLiteral("left  right"));
}

TEST_F(Selection, PastedListParagraphsJoinANewListAndTheTailStaysOutOfIt)
{
    QTextDocument doc;
    QTextCursor c(&doc);
    list(c, QTextListFormat::ListDisc);
    c.insertText(QStringLiteral("one"));
    c.insertBlock();
    c.insertText(QStringLiteral("two"));
    QTextCursor all(&doc);
    all.select(QTextCursor::Document);
    const QTextCursor t = paste(Rtf::fromSelection(all));
    EXPECT_EQ(target.toPlainText(), QStringLiteral("left one\ntwo right"));
    EXPECT_EQ(listMembership(target), "1-");
    EXPECT_EQ(t.position(), 12);
}

// --- Loading and plain text -----------------------------------------------

TEST(Load, ReplacesEverythingForgetsTheUndoAndDropsOnlyTheParagraphAfterTheFinalPar)
{
    QTextDocument doc;
    QTextCursor c(&doc);
    c.setBlockFormat(aligned(Qt::AlignRight));
    c.insertText(QStringLiteral("old text"), fmt([](auto &f) { f.setFontItalic(true); }));
    Rtf::load(doc, "{\\rtf1 new\\par}");
    EXPECT_EQ(doc.toPlainText(), QStringLiteral("new"));
    EXPECT_FALSE(doc.isUndoAvailable());
    EXPECT_TRUE(doc.isUndoRedoEnabled());
    EXPECT_FALSE(doc.begin().blockFormat().hasProperty(QTextFormat::BlockAlignment));
    EXPECT_FALSE(doc.begin().begin().fragment().charFormat().fontItalic());

    const struct { const char *rtf; const char *text; Qt::Alignment lastAlignment; } loads[] = {
        {"{\\rtf1 a\\par\\par}", "a\n", {}},
        {"{\\rtf1 a\\par b}", "a\nb", {}},
        {"{\\rtf1 \\qc last\\par}", "last", Qt::AlignHCenter},
        {"{\\rtf1 \\qr no final par}", "no final par", Qt::AlignRight},
        {"line \xE9\r\nnext", "line \u00e9\nnext", {}}, // plain text
    };
    for (const auto &l : loads) {
        Rtf::load(doc, l.rtf);
        EXPECT_EQ(doc.toPlainText(), QString::fromUtf8(l.text)) << l.rtf;
        EXPECT_EQ(doc.lastBlock().blockFormat().alignment() & Qt::AlignHorizontal_Mask,
                  l.lastAlignment ? l.lastAlignment : Qt::AlignLeft) << l.rtf;
    }
}

TEST(Insert, AFinalParBreaksTheParagraphAndPlainTextTakesTheFormatAtTheCursor)
{
    QTextDocument doc;
    QTextCursor c(&doc);
    c.insertText(QStringLiteral("xy"));
    c.setPosition(1);
    Rtf::insert(c, "{\\rtf1 a\\par}");
    EXPECT_EQ(doc.toPlainText(), QStringLiteral("xa\ny"));
    EXPECT_EQ(c.position(), 3);

    QTextDocument plain;
    QTextCursor p(&plain);
    p.insertText(QStringLiteral("ab"), fmt([](auto &f) { f.setFontWeight(QFont::Bold); }));
    p.setPosition(1);
    Rtf::insert(p, "x\r\ny \\rtf {braces}");
    EXPECT_EQ(plain.toPlainText(), QStringLiteral("ax\ny \\rtf {braces}b"));
    EXPECT_EQ(p.position(), 18);
    EXPECT_EQ(p.charFormat().fontWeight(), QFont::Bold);
}

TEST(PlainText, RecognisesRtfByItsStartAndDecodesUtf8OrElseWindows1252)
{
    const std::pair<QByteArray, bool> rtf[] = {
        {"{\\rtf1\\ansi x}", true}, {"{\\rtf", true}, {" {\\rtf1 x}", true}, {"\xEF\xBB\xBF\r\n{\\rtf1 x}", true},
        {"x{\\rtf1 x}", false}, {"{\\RTF1 x}", false}, {"{\\rt", false}, {QByteArray(), false},
    };
    for (const auto &[data, want] : rtf)
        EXPECT_EQ(Rtf::looksLikeRtf(data), want) << data.constData();
    const std::pair<QByteArray, QString> plain[] = {
        {"caf\xC3\xA9 \xE2\x82\xAC", QStringLiteral("caf\u00e9 \u20ac")},
        {"caf\xE9 \x80 \x93x\x94", QStringLiteral("caf\u00e9 \u20ac \u201cx\u201d")},
        {"a\r\nb\rc\nd", QStringLiteral("a\nb\nc\nd")},
    };
    for (const auto &[data, want] : plain)
        EXPECT_EQ(Rtf::plainFallbackDecode(data), want) << data.constData();
}

} // namespace
