// The RTF reader and writer: RTF as other programs write it and as no
// program should (what the reader keeps, what it skips, and that hostile
// input ends quickly and safely), and documents written and read back,
// selections copied and pasted, plain text inserted, as the editor's load,
// save, copy and paste do.
#include "QtPrinters.h"
#include "editor/rtf/Rtf.h"

#include <QBuffer>
#include <QDebug>
#include <QFile>
#include <QTextBlock>
#include <QElapsedTimer>
#include <QImage>
#include <QTextCursor>
#include <QTextImageFormat>
#include <QTextList>
#include <QUrl>
#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <memory>

namespace {

// The font the editor gives its documents.
QFont editorFont()
{
    return QFont(QStringLiteral("Arial"), 10);
}

QString describeFormat(const QTextFormat &format)
{
    QString out;
    QDebug d(&out);
    d.nospace().noquote();
    const auto props = format.properties();
    for (auto it = props.cbegin(); it != props.cend(); ++it) {
        if (it.key() != QTextFormat::ObjectIndex) // differs between documents; lists are described apart
            d << Qt::hex << it.key() << Qt::dec << '=' << it.value() << ' ';
    }
    return out;
}

// The text as the blocks hold it: unlike toPlainText(), line separators and
// no-break spaces stay as they are.
QString rawText(const QTextDocument &doc)
{
    QStringList blocks;
    for (QTextBlock b = doc.begin(); b.isValid(); b = b.next())
        blocks.append(b.text());
    return blocks.join(u'\n');
}

// Every block with its format, its list, and every run with its text and
// format; an empty block shows the format of what is typed into it. Two
// documents that describe alike look and behave alike.
std::string describe(const QTextDocument &doc)
{
    QString out;
    for (QTextBlock b = doc.begin(); b.isValid(); b = b.next()) {
        out += QStringLiteral("P{") + describeFormat(b.blockFormat()) + u'}';
        if (const QTextList *list = b.textList())
            out += QStringLiteral(" list(style=%1 indent=%2)").arg(int(list->format().style())).arg(list->format().indent());
        out += u'\n';
        if (b.length() == 1)
            out += QStringLiteral("  mark{") + describeFormat(b.charFormat()) + QStringLiteral("}\n");
        for (auto it = b.begin(); !it.atEnd(); ++it) {
            QString text = it.fragment().text();
            text.replace(QChar::LineSeparator, QLatin1String("<LS>"));
            out += QStringLiteral("  [%1] {%2}\n").arg(text, describeFormat(it.fragment().charFormat()));
        }
    }
    return out.toStdString();
}

// Lists are told apart by identity: which blocks share one.
std::string listMembership(const QTextDocument &doc)
{
    std::string out;
    QList<const QTextList *> seen;
    for (QTextBlock b = doc.begin(); b.isValid(); b = b.next()) {
        const QTextList *list = b.textList();
        if (list && !seen.contains(list))
            seen.append(list);
        out += list ? std::to_string(seen.indexOf(list) + 1) : std::string("-");
    }
    return out;
}

std::unique_ptr<QTextDocument> read(const QByteArray &rtf)
{
    auto doc = std::make_unique<QTextDocument>();
    doc->setDefaultFont(editorFont());
    Rtf::load(*doc, rtf);
    return doc;
}

// The format of the character at a position (0-based, of the plain text).
QTextCharFormat charAt(const QTextDocument &doc, int position)
{
    QTextCursor c(const_cast<QTextDocument *>(&doc));
    c.setPosition(position + 1);
    return c.charFormat();
}

struct TextCase { const char *name; QByteArray rtf; QString text; };

const TextCase TextCases[] = {
    {"Destinations", "{\\rtf1{\\info{\\title T}{\\author A}}{\\stylesheet{\\s1 Heading;}}{\\*\\generator G;}"
                     "{\\*\\unknownthing junk {nested junk}}a{\\header head}{\\footnote note}{\\*\\bkmkstart b}b}",
     QStringLiteral("ab")},
    {"Fields", "{\\rtf1 see {\\field{\\*\\fldinst HYPERLINK \"http://x\"}{\\fldrslt {\\ul link}}} and "
               "{\\field{\\fldinst PAGE}{\\fldrslt 3}}.}", QStringLiteral("see link and 3.")},
    {"Pictures", "{\\rtf1 a{\\pict\\pngblip 89504e47{\\*\\blipuid 00}}b{\\*\\shppict{\\pict\\bin5 {}}\\}}}c"
                 "{\\nonshppict{\\pict 00}}{\\object{\\*\\objdata 0102}{\\result d}}}",
     QStringLiteral("a\ufffcb\ufffccd")},
    {"ListNumbersAreNotText", "{\\rtf1{\\pntext\\'b7\\tab}{\\*\\pn\\pnlvlblt{\\pntxtb\\'b7}}one{\\listtext 2.\\tab}"
                              "\\par}", QStringLiteral("one")},
    {"Symbols", "{\\rtf1 \\emdash\\endash\\bullet\\lquote\\rquote\\ldblquote\\rdblquote\\~\\-\\_\\tab|\\line|"
                "\\\\\\{\\}}",
     QStringLiteral("\u2014\u2013\u2022\u2018\u2019\u201c\u201d\u00a0\u00ad\u2011\t|\u2028|\\{}")},
    {"Windows1252", "{\\rtf1\\ansi caf\\'e9 \\'80 \\'93q\\'94}", QStringLiteral("caf\u00e9 \u20ac \u201cq\u201d")},
    {"AnsiCodepage1251", "{\\rtf1\\ansi\\ansicpg1251 \\'cf\\'f0\\'e8}", QStringLiteral("\u041f\u0440\u0438")},
    {"FontCharsets", "{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}{\\f1\\fcharset238 Tahoma;}{\\f2\\fcharset161 Greek;}"
                     "{\\f3\\fcharset177 Hebrew;}}\\f1\\'b9\\f2\\'e1\\f3\\'e0\\f0\\'e9}",
     QStringLiteral("\u0105\u03b1\u05d0\u00e9")},
    {"DoubleByteCodepage", "{\\rtf1\\ansi{\\fonttbl{\\f0\\fcharset128 MS Mincho;}}\\f0\\'82\\'a0\\'82a\\'93\\'fa}",
     QStringLiteral("\u3042\uff22\u65e5")},
    // A font's character set decides the code page of its bytes; \ansicpg
    // only that of fonts that name none.
    {"WesternFontInJapaneseDocument",
     "{\\rtf1\\ansi\\ansicpg932{\\fonttbl{\\f0\\fcharset128 MS Mincho;}{\\f1\\fcharset0 Arial;}{\\f2 Plain;}}"
     "\\f0\\'93\\'fa\\f1 espa\\'f1ola\\f2\\'82\\'a0}", QStringLiteral("\u65e5espa\u00f1ola\u3042")},
    {"DefaultFontAndPlainFollowDeff", "{\\rtf1\\ansi\\deff1{\\fonttbl{\\f0\\fcharset0 A;}{\\f1\\fcharset204 B;}}"
                                      "\\'cf\\f0\\'e9\\plain\\'cf}", QStringLiteral("\u041f\u00e9\u041f")},
    {"MacRomanAndMacJapanese", "{\\rtf1\\mac\\ansicpg10001{\\fonttbl{\\f0\\fcharset77 Helvetica;}"
                               "{\\f1\\fcharset78 Osaka;}{\\f2 Plain;}}\\f0 caf\\'8e \\f1\\'82\\'a0\\f2\\'93\\'fa}",
     QStringLiteral("caf\u00e9 \u3042\u65e5")},
    {"MacAndPcCharacterSets", "{\\rtf1\\mac caf\\'8e{\\pc \\'82}}", QStringLiteral("caf\u00e9\u00e9")},
    {"AssociatedFontsChooseTheCodepage",
     "{\\rtf1\\ansi{\\fonttbl{\\f0\\fcharset0 Times;}{\\f1\\fcharset128 MS Mincho;}{\\f2\\fcharset161 Greek;}}"
     "{\\rtlch\\af1\\ltrch\\hich\\af2\\dbch\\af1\\loch\\f0 a\\'e9\\dbch\\'82\\'a0\\hich\\'e1\\loch b}\\'e9}",
     QStringLiteral("a\u00e9\u3042\u03b1b\u00e9")},
    {"LeadByteCutShort", "{\\rtf1{\\fonttbl{\\f0\\fcharset128 M;}}\\f0\\'82\\par x}", QStringLiteral("\ufffd\nx")},
    {"UnicodeAndFallback", "{\\rtf1\\uc1\\u8364?\\u-3913 ?\\uc2\\u20013\\'3f\\'3fx{\\uc0\\u26085}y}",
     QStringLiteral("\u20ac\uf0b7\u4e2dx\u65e5y")},
    {"FallbackEndsAtGroupEnd", "{\\rtf1\\uc3{\\u8364 a}bc}", QStringLiteral("\u20acbc")},
    {"SurrogatePairs", "{\\rtf1\\u-10179?\\u-8704?|\\u-10179?x|\\u-8704?}",
     QStringLiteral("\U0001F600|\ufffdx|\ufffd")},
    {"ControlsAreDropped", "{\\rtf1 a\\u0?\\u13?\\u8233?\\u65279?b\x01\r\nc}", QStringLiteral("abc")},
    {"Tables", "{\\rtf1\\trowd\\cellx100\\cellx200\\pard\\intbl a\\cell b\\cell\\row\\pard\\intbl\\cell c\\cell\\row"
               "\\pard after}", QStringLiteral("a\tb\n\tc\nafter")},
    {"PageAndSectionBreaks", "{\\rtf1 a\\page b\\par\\sect c\\column d}", QStringLiteral("a\nb\nc\nd")},
    {"HiddenText", "{\\rtf1 a{\\v hidden}b\\v c\\v0 d}", QStringLiteral("abd")},
    {"DelimitersAndParameters", "{\\rtf1\\b1 a\\b0\\fs24-\\li-360 b\\par\\pard 1}", QStringLiteral("a-b\n1")},
    {"BackslashNewlineIsAParagraph", "{\\rtf1 a\\\nb}", QStringLiteral("a\nb")},
};

TEST(ReadText, KeepsTheBodyText)
{
    for (const TextCase &c : TextCases)
        EXPECT_EQ(rawText(*read(c.rtf)), c.text) << c.name;
}

TEST(ReadFormats, CharacterPropertiesOfGroupsResetsAndFonts)
{
    // Per character: bold, italic, underline, strike, red, superscript, and
    // the font and size where the run names them; "-" for no property at all.
    auto look = [](const QTextCharFormat &f) {
        if (f.properties().isEmpty())
            return QStringLiteral("-");
        QString out = QStringLiteral("%1%2%3%4%5%6").arg(int(f.fontWeight() >= QFont::Bold)).arg(int(f.fontItalic()))
                          .arg(int(f.fontUnderline())).arg(int(f.fontStrikeOut()))
                          .arg(int(f.foreground().color() == QColor(255, 0, 0)))
                          .arg(int(f.verticalAlignment() == QTextCharFormat::AlignSuperScript));
        if (f.hasProperty(QTextFormat::FontFamilies))
            out += u' ' + f.fontFamilies().toStringList().join(u',');
        if (f.hasProperty(QTextFormat::FontPointSize))
            out += u' ' + QString::number(f.fontPointSize());
        return out;
    };
    const struct { const char *name; QByteArray rtf; const char *looks; } cases[] = {
        // Out of the group RTF's own 12 points hold, not the document's 10.
        {"GroupsAndResets", "{\\rtf1{\\fonttbl{\\f0 Arial;}{\\f1 Courier New;}}{\\colortbl;\\red255\\green0\\blue0;}"
                            "{\\b\\i\\ul\\strike\\f1\\fs40\\cf1 A}B\\b C\\plain D\\ul E\\ulnone F"
                            "\\strike G\\strike0\\i H\\i0\\cf1 I\\cf0 J\\super K\\nosupersub L}",
         "111110 Courier New 20|000000 12|100000 12|000000 12|001000 12|000000 12|"
         "000100 12|010000 12|000010 12|000000 12|000001 12|000000 12"},
        // The file's default font and size matching the document's give none.
        {"DefaultFont", "{\\rtf1\\deff1{\\fonttbl{\\f0 Times;}{\\f1 Arial;}}\\fs20 a\\f0 b\\f1\\fs24 c}",
         "-|000000 Times|000000 12"},
        // East Asian text takes the double-byte font and size.
        {"EastAsian", "{\\rtf1{\\fonttbl{\\f0 Arial;}{\\f1 Mincho;}}\\fs20\\loch a\\dbch\\af1\\afs28 \\u26085?b}",
         "-|000000 Mincho 14|-"},
        // Sizes out of range: RTF's default, or the largest a font may have.
        {"Sizes", "{\\rtf1{\\fs-5 a}{\\fs0 b}{\\fs99999999999 c}{\\fs99999999999999999999999 d}}",
         "000000 12|000000 12|000000 1638|000000 1638"},
    };
    for (const auto &c : cases) {
        const auto doc = read(c.rtf);
        QStringList looks;
        for (int at = 0; at < doc->characterCount() - 1; ++at)
            looks.append(look(charAt(*doc, at)));
        EXPECT_EQ(looks.join(u'|'), QString::fromLatin1(c.looks)) << c.name;
    }
}

TEST(ReadFormats, ParagraphPropertiesApplyAtTheParagraphEndAndPardResetsThem)
{
    const auto doc = read("{\\rtf1\\qc a\\par b\\par\\pard c\\par\\qr d\\par\\pard\\qj e\\par"
                          "\\pard\\ql f\\par\\pard\\li720\\ri360\\fi-360\\sb120\\sa240 g\\par}");
    // Per paragraph: the alignment flags, then the margins left, right, of
    // the first line, above and below, in pixels; "-" for no property.
    QStringList paragraphs;
    for (QTextBlock b = doc->begin(); b.isValid(); b = b.next()) {
        const QTextBlockFormat f = b.blockFormat();
        paragraphs.append(f.properties().isEmpty() ? QStringLiteral("-")
                              : QStringLiteral("%1 %2 %3 %4 %5 %6").arg(int(f.alignment())).arg(f.leftMargin())
                                    .arg(f.rightMargin()).arg(f.textIndent()).arg(f.topMargin()).arg(f.bottomMargin()));
    }
    EXPECT_EQ(paragraphs.join(u'|'), QStringLiteral("4 0 0 0 0 0|4 0 0 0 0 0|-|2 0 0 0 0 0|8 0 0 0 0 0|"
                                                    "1 0 0 0 0 0|1 48 24 -24 8 16"));
}

QByteArray pictureHex(const char *format)
{
    QImage image(4, 3, QImage::Format_RGB32);
    image.fill(QColor(255, 0, 0));
    QByteArray bytes;
    QBuffer buffer(&bytes);
    image.save(&buffer, format);
    return bytes.toHex();
}

TEST(ReadPictures, PngAndJpegAreShownOthersHoldTheirPlaceAndAllAreWrittenBackAsTheyStood)
{
    // A group nested in the picture's own and hexadecimal data in lines, as word processors write them.
    const QByteArray png = "{\\pict{\\*\\picprop{\\sp{\\sn wzName}{\\sv }}}\\pngblip\\picw4\\pich3"
                           "\\picwgoal120\\pichgoal90 " + pictureHex("PNG") + "}";
    const QByteArray jpeg =
        "{\\pict\\jpegblip\\picscalex200\\picscaley200\n" + pictureHex("JPEG").insert(64, '\n') + "}";
    const QByteArray wmf = "{\\pict\\wmetafile8\\picw2540\\pich1270\\picwgoal1440\\pichgoal720 0102{\\*\\blipuid ab}}";
    const auto doc = read("{\\rtf1 a{\\*\\shppict" + png + "}{\\nonshppict{\\pict\\wmetafile8 00}}b" + jpeg
                          + "c{\\b " + wmf + "}}");
    ASSERT_EQ(doc->toPlainText(), QStringLiteral("a\ufffcb\ufffcc\ufffc"));
    // The size in pixels, and whether the picture itself is shown or a placeholder.
    const struct { int position; double width, height; bool shown; } expected[] = {
        {1, 8, 6, true}, {3, 8, 6, true}, {5, 96, 48, false}};
    for (const auto &e : expected) {
        SCOPED_TRACE(e.position);
        const QTextImageFormat f = charAt(*doc, e.position).toImageFormat();
        ASSERT_TRUE(f.isValid());
        EXPECT_EQ(f.width(), e.width);
        EXPECT_EQ(f.height(), e.height);
        const QImage image = doc->resource(QTextDocument::ImageResource, QUrl(f.name())).value<QImage>();
        ASSERT_FALSE(image.isNull());
        EXPECT_EQ(qRed(image.pixel(1, 1)) > 200 && qGreen(image.pixel(1, 1)) < 60, e.shown);
    }
    EXPECT_TRUE(charAt(*doc, 5).fontWeight() >= QFont::Bold) << "a picture keeps the format around it";
    const QByteArray written = Rtf::fromDocument(*doc);
    for (const QByteArray &group : {png, jpeg, wmf})
        EXPECT_TRUE(written.contains(group)) << group.left(40).constData();
    EXPECT_EQ(Rtf::fromDocument(*read(written)), written) << "a second save writes other bytes";
}

TEST(ReadPictures, ContentTheEditorCannotKeepIsReported)
{
    const struct { const char *rtf; bool lost; } cases[] = {
        {"{\\rtf1 a\\par b}", false}, {"{\\rtf1{\\*\\shppict{\\pict\\pngblip 00}}{\\nonshppict{\\pict 00}}}", false},
        {"{\\rtf1{\\stylesheet{\\s1 header;}{\\*\\cs2 footnote reference;}}a}", false},
        {"{\\rtf1{\\header page}a}", true}, {"{\\rtf1{\\footerl f}a}", true}, {"{\\rtf1 a{\\footnote note}}", true},
        {"{\\rtf1\\trowd\\cellx100\\pard\\intbl a\\cell\\row}", true}, {"{\\rtf1{\\shp{\\*\\shpinst x}}}", true},
        {"{\\rtf1{\\object{\\*\\objdata 01}{\\result r}}}", true}, {"{\\rtf1{\\*\\annotation c}a}", true},
        {"{\\rtf1{\\info{\\*\\footnote x}}a}", false},
    };
    for (const auto &c : cases) {
        QTextDocument doc;
        EXPECT_EQ(Rtf::load(doc, c.rtf).lostContent, c.lost) << c.rtf;
    }
}

TEST(ReadLists, ListTablesAndOldStyleNumbering)
{
    const QByteArray tables =
        "{\\*\\listtable{\\list{\\listlevel\\levelnfc23{\\leveltext\\'01\\u8226 ?;}{\\levelnumbers;}}"
        "{\\listlevel\\levelnfc23{\\leveltext\\'01o;}}\\listid7}"
        "{\\list{\\listlevel\\levelnfc4{\\leveltext\\'02\\'00.;}}\\listid8}"
        "{\\list{\\listlevel\\levelnfc255{\\leveltext\\'00;}}\\listid9}}"
        "{\\*\\listoverridetable{\\listoverride\\listid7\\ls1}{\\listoverride\\listid8\\ls2}"
        "{\\listoverride\\listid9\\ls3}}";
    const auto doc = read("{\\rtf1" + tables
                          + "\\pard\\ls1\\li720\\fi-360 a\\par b\\par\\ilvl1 c\\par\\pard\\ls2 d\\par"
                            "\\pard\\ls3 e\\par\\pard\\ls99 f\\par\\pard"
                            "{\\*\\pn\\pnlvlblt} g\\par h\\par\\pard{\\*\\pn\\pnlvlbody\\pnucrm} i\\par}");
    QList<int> styles;
    for (QTextBlock b = doc->begin(); b.isValid(); b = b.next())
        styles.append(b.textList() ? int(b.textList()->format().style()) : 0);
    EXPECT_EQ(styles, (QList<int>{QTextListFormat::ListDisc, QTextListFormat::ListDisc,
                                  QTextListFormat::ListCircle, QTextListFormat::ListLowerAlpha, 0, 0,
                                  QTextListFormat::ListDisc, QTextListFormat::ListDisc,
                                  QTextListFormat::ListUpperRoman}));
    EXPECT_EQ(listMembership(*doc), "1123--445");
    // The list indents the item; the paragraph's own indent isn't added.
    EXPECT_EQ(doc->begin().blockFormat().leftMargin(), 0);
    EXPECT_EQ(doc->begin().next().next().textList()->format().indent(), 2);
}

// --- Samples written by LibreOffice and hostile input ----------------------

QByteArray sample(const char *name)
{
    QFile f(qEnvironmentVariable("QM_SOURCE_DIR") + QStringLiteral("/tests/editor/rtf/samples/") + QLatin1String(name));
    EXPECT_TRUE(f.open(QIODevice::ReadOnly)) << "missing sample " << name;
    return f.readAll();
}

// Loads the data and checks that it took less than the time given; what
// the document then holds must write and read back to the same text, and a
// second save must write the same bytes.
void survives(const QByteArray &data, qint64 maxMs = 2000)
{
    QElapsedTimer timer;
    timer.start();
    const auto doc = read(data);
    EXPECT_LT(timer.elapsed(), maxMs) << data.left(60).constData();
    const QByteArray once = Rtf::fromDocument(*doc);
    const auto again = read(once);
    EXPECT_EQ(again->toPlainText(), doc->toPlainText());
    EXPECT_EQ(Rtf::fromDocument(*again), once) << "a second save writes other bytes";
}

TEST(LibreOfficeSamples, TextListsScriptsAndPictures)
{
    // The Western words stand in a font of their own beside each script's.
    const QString west = QStringLiteral(" espa\u00f1ola, Stra\u00dfe");
    const struct { const char *name; QString text; const char *lists; } samples[] = {
        {"lo_formatting.rtf", QStringLiteral("Plain bold italic underlined struck red Times 16 mono 9\n"
                                             "Centred paragraph\nRight paragraph\nJustified paragraph"), "----"},
        {"lo_lists.rtf", QStringLiteral("Before the lists\nFirst bullet\nSecond bullet\nBetween\n"
                                        "First number\nSecond number\nAfter the lists"), "-11-22-"},
        {"lo_unicode.rtf", QStringLiteral("Caf\u00e9 cr\u00e8me, na\u00efve \u2013 \u201cquoted\u201d \u2026 \u20ac5\n"
                                          "\u041f\u0440\u0438\u0432\u0435\u0442 \u043c\u0438\u0440, "
                                          "\u0395\u03bb\u03bb\u03b7\u03bd\u03b9\u03ba\u03ac, Polski: za\u017c\u00f3\u0142\u0107\n"
                                          "\u65e5\u672c\u8a9e\u306e\u30c6\u30ad\u30b9\u30c8 \u4e2d\u6587\n"
                                          "Emoji \U0001F600 and math \U0001D6FC"), "----"},
        {"lo_breaks.rtf", QStringLiteral("Line one") + QChar(QChar::LineSeparator)
                              + QStringLiteral("line two\tafter a tab\n\nAfter an empty paragraph\n"), "----"},
        {"lo_japanese.rtf", QStringLiteral("\u65e5\u672c\u8a9e\u306e\u6587") + west, "-"},
        {"lo_russian.rtf", QStringLiteral("\u041f\u0440\u0438\u0432\u0435\u0442") + west, "-"},
        {"lo_pictures.rtf", QStringLiteral("png \ufffc jpeg \ufffc end"), "-"},
    };
    for (const auto &s : samples) {
        SCOPED_TRACE(s.name);
        const auto doc = read(sample(s.name));
        EXPECT_EQ(rawText(*doc), s.text);
        EXPECT_EQ(listMembership(*doc), s.lists);
    }
    EXPECT_EQ(read(sample("lo_lists.rtf"))->findBlockByNumber(4).textList()->format().style(),
              QTextListFormat::ListDecimal);
}

TEST(Hostile, InputEndsQuicklyAndWhatWasReadSavesStably)
{
    const QByteArray deep = "{\\rtf1 a" + QByteArray(100000, '{') + "x" + QByteArray(100000, '}') + "b}";
    QByteArray toggles = "{\\rtf1 ", groups = "{\\rtf1 ";
    while (toggles.size() < 1000000)
        toggles += "\\b a\\b0\\i b\\i0 ";
    while (groups.size() < 1000000)
        groups += "{\\b x}{\\*\\junk y}";
    // Megabytes of each kind must read in linear time.
    const QByteArray inputs[] = {
        deep, "{\\rtf1 " + QByteArray(1000000, '{'), "{\\rtf1 " + QByteArray(1000000, '}') + "x",
        "{\\rtf1" + QByteArray(500000, '}') + QByteArray(500000, '{'),
        "{\\rtf1 " + QByteArray(1000000, '9') + "}", "{\\rtf1\\fs" + QByteArray(1000000, '9') + " x}",
        "{\\rtf1\\" + QByteArray(1000000, 'a') + " x}", toggles + "}", groups + "}",
        "{\\rtf1 " + QByteArray(1000000 / 5, 'x').replace("x", "\\par") + "}",
    };
    for (const QByteArray &input : inputs)
        survives(input, 5000);
    const QByteArray full = sample("lo_lists.rtf");
    for (qsizetype n = 0; n < full.size(); n += 7)
        survives(full.left(n));

    const struct { QByteArray rtf; QString text; } texts[] = {
        {deep, QStringLiteral("ab")}, // too deep: skipped
        {"{\\rtf1 " + QByteArray(200, '{') + "\\b x" + QByteArray(200, '}') + "}", QStringLiteral("x")},
        {"{\\rtf1 a\\bin2 {}b}", QStringLiteral("ab")}, {"{\\rtf1 a\\bin-5 b}", QStringLiteral("ab")},
        {"{\\rtf1 abc\\", QStringLiteral("abc")}, {"{\\rtf1 abc\\'", QStringLiteral("abc")},
        {"{\\rtf1 abc\\'4", QStringLiteral("abc")}, {"{\\rtf1 abc\\u", QStringLiteral("abc")},
        {"{\\rtf1 a}}}}b", QStringLiteral("a")}, {"{\\rtf1 a{{{{b", QStringLiteral("ab")},
    };
    for (const auto &t : texts)
        EXPECT_EQ(rawText(*read(t.rtf)), t.text) << t.rtf.left(40).constData();
}

// --- Documents written and read back ---------------------------------------

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
    {"PlainParagraphs", [](QTextCursor &c) {
         c.insertText(QStringLiteral("First paragraph."));
         c.insertBlock();
         c.insertBlock();
         c.insertText(QStringLiteral("After an empty one."));
         c.insertBlock(); // the document ends in an empty paragraph
     }},
    {"CharacterStylesFontsAndColours", [](QTextCursor &c) {
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
                  {" none", [](auto &) {}},
                  {"Times 14 ", [](auto &f) {
                       f.setFontFamilies({QStringLiteral("Times New Roman")});
                       f.setFontPointSize(14); }},
                  {"Courier ", [](auto &f) { f.setFontFamilies({QStringLiteral("Courier New")}); }},
                  {"half point ", [](auto &f) { f.setFontPointSize(10.5); }},
                  // Named although it is the default: stays named.
                  {"Arial named ", [](auto &f) { f.setFontFamilies({QStringLiteral("Arial")}); }},
                  {"odd;name{x}", [](auto &f) { f.setFontFamilies({QStringLiteral("Odd;Name {x}")}); }},
                  {"red ", [](auto &f) { f.setForeground(QColor(255, 0, 0)); }},
                  {"black ", [](auto &f) { f.setForeground(QColor(0, 0, 0)); }},
                  {"red again ", [](auto &f) { f.setForeground(QColor(255, 0, 0)); }},
                  {"on yellow", [](auto &f) {
                       f.setForeground(QColor(10, 20, 30));
                       f.setBackground(QColor(255, 255, 0)); }}});
     }},
    {"AlignmentAndMargins", [](QTextCursor &c) {
         c.setBlockFormat(aligned(Qt::AlignLeft));
         c.insertText(QStringLiteral("left"));
         for (const auto &[text, a] : {std::pair{"centre", Qt::AlignHCenter}, {"right", Qt::AlignRight},
                                       {"justified", Qt::AlignJustify}, {"unset", Qt::AlignmentFlag(0)}}) {
             c.insertBlock(a ? aligned(a) : QTextBlockFormat());
             c.insertText(QString::fromLatin1(text));
         }
         QTextBlockFormat f;
         f.setLeftMargin(40);
         f.setRightMargin(20);
         f.setTextIndent(-12);
         f.setTopMargin(6);
         f.setBottomMargin(8);
         c.insertBlock(f);
         c.insertText(QStringLiteral("indented"));
     }},
    {"Lists", [](QTextCursor &c) {
         // Each paragraph after the first starts a list of its style, stays
         // in the list before it (Same) or in none (0).
         const int Same = 1;
         const struct { const char *text; int style, indent = 1; Qt::Alignment align = {}; } paragraphs[] = {
             {"bullet one", QTextListFormat::ListDisc}, {"bullet two", Same}, {"between", 0},
             {"number one", QTextListFormat::ListDecimal}, {"nested circle", QTextListFormat::ListCircle, 2},
             {"square", QTextListFormat::ListSquare}, {"alpha", QTextListFormat::ListLowerAlpha},
             {"roman", QTextListFormat::ListUpperRoman}, {"centred bullet", QTextListFormat::ListDisc, 1, Qt::AlignHCenter}};
         c.insertText(QStringLiteral("before"));
         for (const auto &p : paragraphs) {
             if (p.style == Same)
                 c.insertBlock();
             else
                 c.insertBlock(p.align ? aligned(p.align) : QTextBlockFormat());
             if (p.style < 0)
                 list(c, QTextListFormat::Style(p.style), p.indent);
             c.insertText(QString::fromLatin1(p.text));
         }
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

TEST(RoundTrip, DocumentToRtfAndBackIsTheSameDocument)
{
    for (const Case &c : Cases) {
        SCOPED_TRACE(c.name);
        QTextDocument original, copy;
        original.setDefaultFont(editorFont());
        copy.setDefaultFont(editorFont());
        QTextCursor cursor(&original);
        c.build(cursor);
        const QByteArray rtf = Rtf::fromDocument(original);
        EXPECT_FALSE(std::any_of(rtf.begin(), rtf.end(), [](char ch) { return ch < 0; })) << "RTF must be plain ASCII";
        Rtf::load(copy, rtf);
        EXPECT_EQ(describe(copy), describe(original)) << rtf.constData();
        EXPECT_EQ(listMembership(copy), listMembership(original));
        EXPECT_EQ(Rtf::fromDocument(copy), rtf) << "the second pass must write the same bytes";
    }
}

TEST(RoundTripDefaults, EmptyDocumentStaysBareAndUnformattedTextCarriesTheWritersFont)
{
    for (const QFont &font : {QFont(), editorFont(), QFont(QStringLiteral("Courier New"), 13)}) {
        QTextDocument doc, copy;
        doc.setDefaultFont(font);
        copy.setDefaultFont(font);
        Rtf::load(copy, Rtf::fromDocument(doc));
        ASSERT_EQ(copy.blockCount(), 1);
        EXPECT_TRUE(copy.begin().blockFormat().properties().isEmpty());
        EXPECT_TRUE(copy.begin().charFormat().properties().isEmpty());
    }
    // Read into a document of another default font, plain text keeps its own.
    QTextDocument doc, other;
    doc.setDefaultFont(QFont(QStringLiteral("Courier New"), 13));
    QTextCursor(&doc).insertText(QStringLiteral("x"));
    other.setDefaultFont(editorFont());
    Rtf::load(other, Rtf::fromDocument(doc));
    const QTextCharFormat f = other.begin().begin().fragment().charFormat();
    EXPECT_EQ(f.fontFamilies().toStringList(), QStringList{QStringLiteral("Courier New")});
    EXPECT_EQ(f.fontPointSize(), 13);
}

// --- Selections: copy and paste ---------------------------------------------
// Where the caret lands after a paste, the fuzz corpus run checks for every input.

class Selection : public ::testing::Test
{
protected:
    void SetUp() override
    {
        source.setDefaultFont(editorFont());
        target.setDefaultFont(editorFont());
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
    EXPECT_FALSE(paste(copy(3, 13)).hasSelection()); // "lo bold wo"
    EXPECT_EQ(target.toPlainText(), QStringLiteral("left lo bold wo right"));
    EXPECT_FALSE(target.begin().blockFormat().hasProperty(QTextFormat::BlockAlignment));
    EXPECT_EQ(charAt(target, 9).fontWeight(), QFont::Bold); // inside "bold"
    EXPECT_EQ(charAt(target, 13).fontWeight(), QFont::Normal);
}

TEST_F(Selection, AcrossParagraphsTheEndedParagraphBringsItsFormat)
{
    paste(copy(6, 20)); // "bold world" + end + "Sec"
    EXPECT_EQ(target.toPlainText(), QStringLiteral("left bold world\nSec right"));
    ASSERT_EQ(target.blockCount(), 2);
    EXPECT_EQ(target.begin().blockFormat().alignment(), Qt::AlignHCenter);
    // The text behind the selection keeps the target's paragraph format.
    EXPECT_FALSE(target.lastBlock().blockFormat().hasProperty(QTextFormat::BlockAlignment));
}

TEST_F(Selection, EmptySelectionPastesNothingOverTheSelectionAndAPasteIsOneUndoStep)
{
    EXPECT_EQ(paste(copy(4, 4)).position(), 5);
    EXPECT_EQ(target.toPlainText(), QStringLiteral("left  right"));
    paste(copy(0, 20));
    target.undo();
    EXPECT_EQ(target.toPlainText(), QStringLiteral("left  right"));
}

TEST_F(Selection, IntoAnEmptyDocumentTheWholeComesAsItWasAndAPartBringsItsParagraphFormat)
{
    QTextCursor all(&source);
    all.select(QTextCursor::Document);
    QTextDocument whole, part;
    whole.setDefaultFont(editorFont());
    QTextCursor c(&whole);
    Rtf::insert(c, Rtf::fromSelection(all));
    EXPECT_EQ(describe(whole), describe(source)) << "no extra paragraph";
    QTextCursor p(&part);
    Rtf::insert(p, copy(0, 5)); // "Hello", centred in the source
    EXPECT_EQ(part.begin().blockFormat().alignment(), Qt::AlignHCenter);
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
    paste(Rtf::fromSelection(all));
    EXPECT_EQ(target.toPlainText(), QStringLiteral("left one\ntwo right"));
    EXPECT_EQ(listMembership(target), "1-");
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
