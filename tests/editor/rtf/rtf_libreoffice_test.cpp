// Our RTF as a word processor reads it, and a word processor's RTF as we
// read it: LibreOffice converts our file to text and to its own format and
// back to RTF, and the text and the main formats must come through.
#include "QtPrinters.h"
#include "editor/rtf/Rtf.h"

#include <QBuffer>
#include <QFile>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextList>
#include <QImage>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTextCursor>
#include <QUrl>
#include <gtest/gtest.h>
#include <memory>

namespace {

QByteArray readFile(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

// The look of every character, as "char: look" lines, paragraphs and all,
// whichever way the file states it.
QString looks(const QTextDocument &doc)
{
    QString out;
    for (QTextBlock b = doc.begin(); b.isValid(); b = b.next()) {
        const Qt::Alignment a = b.blockFormat().alignment() & Qt::AlignHorizontal_Mask;
        const int list = b.textList() ? int(b.textList()->format().style()) : 0;
        for (auto it = b.begin(); !it.atEnd(); ++it) {
            const QTextCharFormat cf = it.fragment().charFormat();
            const QFont font = cf.font().resolve(doc.defaultFont());
            const QRgb colour = cf.hasProperty(QTextFormat::ForegroundBrush) ? cf.foreground().color().rgb()
                                                                             : QColor(Qt::black).rgb();
            const QString look = QStringLiteral("b%1 i%2 u%3 s%4 #%5 %7hp align%8 list%9")
                                     .arg(cf.fontWeight() >= QFont::DemiBold).arg(cf.fontItalic())
                                     .arg(cf.underlineStyle() == QTextCharFormat::SingleUnderline)
                                     .arg(cf.fontStrikeOut()).arg(colour & 0xFFFFFF, 6, 16, QLatin1Char('0'))
                                     .arg(qRound(font.pointSizeF() * 2))
                                     .arg(int(a == Qt::AlignLeading ? Qt::AlignLeft : a)).arg(list);
            for (QChar c : it.fragment().text()) {
                // A word processor gives East Asian characters a font of
                // their own script, and the spaces between them may follow;
                // only their other formats must match.
                const bool ownScript = c.unicode() >= 0x2E80 || c.isSpace();
                out += c + QStringLiteral(": ") + (ownScript ? QStringLiteral("(East Asian font)")
                                                             : font.families().value(0, font.family()))
                       + u' ' + look + u'\n';
            }
        }
        out += QStringLiteral("<paragraph end>\n");
    }
    return out;
}

QTextCharFormat charFormat(const std::function<void(QTextCharFormat &)> &set)
{
    QTextCharFormat f;
    set(f);
    return f;
}

// A document with every feature the editor's toolbar gives.
void buildSample(QTextDocument &doc)
{
    doc.setDefaultFont(QFont(QStringLiteral("Arial"), 10));
    QTextCursor c(&doc);
    c.insertText(QStringLiteral("Plain "));
    c.insertText(QStringLiteral("bold "), charFormat([](auto &f) { f.setFontWeight(QFont::Bold); }));
    c.insertText(QStringLiteral("italic "), charFormat([](auto &f) { f.setFontItalic(true); }));
    c.insertText(QStringLiteral("under "),
                 charFormat([](auto &f) { f.setUnderlineStyle(QTextCharFormat::SingleUnderline); }));
    c.insertText(QStringLiteral("strike "), charFormat([](auto &f) { f.setFontStrikeOut(true); }));
    c.insertText(QStringLiteral("red "), charFormat([](auto &f) { f.setForeground(QColor(200, 0, 0)); }));
    c.insertText(QStringLiteral("Times 16"), charFormat([](auto &f) {
                     f.setFontFamilies({QStringLiteral("Times New Roman")});
                     f.setFontPointSize(16); }));
    QTextBlockFormat centre;
    centre.setAlignment(Qt::AlignHCenter);
    c.insertBlock(centre, QTextCharFormat());
    c.insertText(QStringLiteral("Centred caf\u00e9 \u20ac \u041f\u0440\u0438 \u4e2d\u6587 a\tb"));
    QTextBlockFormat right;
    right.setAlignment(Qt::AlignRight);
    c.insertBlock(right, QTextCharFormat());
    c.insertText(QStringLiteral("Right one") + QChar(QChar::LineSeparator) + QStringLiteral("two"));
    c.insertBlock(QTextBlockFormat(), QTextCharFormat());
    QTextListFormat bullets;
    bullets.setStyle(QTextListFormat::ListDisc);
    bullets.setIndent(1);
    c.createList(bullets);
    c.insertText(QStringLiteral("Bullet one"));
    c.insertBlock();
    c.insertText(QStringLiteral("Bullet two"));
    c.insertBlock(QTextBlockFormat(), QTextCharFormat());
    c.insertText(QStringLiteral("After the list {with braces} and \\ backslash"));
}

class LibreOffice : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        program = QStandardPaths::findExecutable(QStringLiteral("libreoffice"));
        if (program.isEmpty())
            program = QStandardPaths::findExecutable(QStringLiteral("soffice"));
        work = std::make_unique<QTemporaryDir>();
    }

    static void TearDownTestSuite() { work.reset(); }

    void SetUp() override
    {
        if (program.isEmpty())
            GTEST_SKIP() << "libreoffice is not on PATH: interoperability with LibreOffice is not checked";
        ASSERT_TRUE(work->isValid());
    }

    static QString path(const QString &name) { return work->filePath(name); }

    // One conversion run; the profile in the work folder is made on the
    // first run and reused, so no home folder is needed.
    static bool convert(const QString &format, const QStringList &inputs, const QString &outDir)
    {
        QProcess p;
        QStringList args{QStringLiteral("-env:UserInstallation=")
                             + QUrl::fromLocalFile(path(QStringLiteral("profile"))).toString(),
                         QStringLiteral("--headless"), QStringLiteral("--norestore"),
                         QStringLiteral("--convert-to"), format, QStringLiteral("--outdir"), outDir};
        args += inputs;
        p.setProcessChannelMode(QProcess::MergedChannels);
        p.start(program, args);
        if (!p.waitForFinished(90000)) {
            p.kill();
            p.waitForFinished();
            ADD_FAILURE() << "libreoffice did not finish";
            return false;
        }
        if (p.exitCode() != 0)
            ADD_FAILURE() << "libreoffice failed: " << p.readAll().constData();
        return p.exitCode() == 0;
    }

    static bool writeFile(const QString &name, const QByteArray &data)
    {
        QFile f(path(name));
        return f.open(QIODevice::WriteOnly) && f.write(data) == data.size();
    }

    static inline QString program;
    static inline std::unique_ptr<QTemporaryDir> work;
};

TEST_F(LibreOffice, OurFormatsSurviveAConversionToItsOwnFormatAndBack)
{
    QTextDocument doc;
    buildSample(doc);
    ASSERT_TRUE(writeFile(QStringLiteral("sample.rtf"), Rtf::fromDocument(doc)));
    ASSERT_TRUE(convert(QStringLiteral("odt"), {path(QStringLiteral("sample.rtf"))}, work->path()));
    const QString back = path(QStringLiteral("back"));
    ASSERT_TRUE(convert(QStringLiteral("rtf"), {path(QStringLiteral("sample.odt"))}, back));

    // LibreOffice's RTF of our document reads as our document did.
    const QByteArray theirs = readFile(back + QStringLiteral("/sample.rtf"));
    ASSERT_TRUE(Rtf::looksLikeRtf(theirs));
    QTextDocument read;
    read.setDefaultFont(QFont(QStringLiteral("Arial"), 10));
    Rtf::load(read, theirs);
    EXPECT_EQ(read.toPlainText(), doc.toPlainText());
    EXPECT_EQ(looks(read).toStdString(), looks(doc).toStdString());
}

// A flat ODF document of paragraphs whose runs may name a style of the
// header; LibreOffice writes it out as RTF of its own.
QByteArray flatDocument(const QString &defaultFont, const QString &language, const QString &body)
{
    return QStringLiteral(
               "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
               "<office:document xmlns:office=\"urn:oasis:names:tc:opendocument:xmlns:office:1.0\" "
               "xmlns:style=\"urn:oasis:names:tc:opendocument:xmlns:style:1.0\" "
               "xmlns:text=\"urn:oasis:names:tc:opendocument:xmlns:text:1.0\" "
               "xmlns:fo=\"urn:oasis:names:tc:opendocument:xmlns:xsl-fo-compatible:1.0\" "
               "xmlns:svg=\"urn:oasis:names:tc:opendocument:xmlns:svg-compatible:1.0\" "
               "xmlns:draw=\"urn:oasis:names:tc:opendocument:xmlns:drawing:1.0\" "
               "xmlns:xlink=\"http://www.w3.org/1999/xlink\" office:version=\"1.3\" "
               "office:mimetype=\"application/vnd.oasis.opendocument.text\">\n"
               "<office:font-face-decls><style:font-face style:name=\"Main\" svg:font-family=\"%1\"/>"
               "<style:font-face style:name=\"Arial\" svg:font-family=\"Arial\"/></office:font-face-decls>\n"
               "<office:styles><style:default-style style:family=\"paragraph\"><style:text-properties "
               "style:font-name=\"Main\" style:font-name-asian=\"Main\" fo:language=\"%2\" "
               "style:language-asian=\"%2\"/></style:default-style></office:styles>\n"
               "<office:automatic-styles><style:style style:name=\"West\" style:family=\"text\">"
               "<style:text-properties style:font-name=\"Arial\" fo:language=\"es\"/></style:style>"
               "</office:automatic-styles>\n<office:body><office:text>%3</office:text></office:body>"
               "</office:document>\n")
        .arg(defaultFont, language, body)
        .toUtf8();
}

QString base64Picture(const char *format)
{
    QImage image(6, 4, QImage::Format_RGB32);
    image.fill(QColor(200, 30, 40));
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return QString::fromLatin1(bytes.toBase64());
}

// The picture groups of an RTF file, as they stand in it.
QList<QByteArray> pictureGroups(const QByteArray &rtf)
{
    QList<QByteArray> groups;
    for (qsizetype at = rtf.indexOf("{\\pict"); at >= 0; at = rtf.indexOf("{\\pict", at + 1)) {
        int depth = 0;
        qsizetype end = at;
        for (; end < rtf.size(); ++end) {
            if (rtf[end] == '\\') {
                ++end;
                continue;
            }
            if (rtf[end] == '{')
                ++depth;
            else if (rtf[end] == '}' && --depth == 0)
                break;
        }
        groups.append(rtf.mid(at, end - at + 1));
    }
    return groups;
}

TEST_F(LibreOffice, ItsDocumentsInOtherScriptsAndWithPicturesReadAsTheyWereWritten)
{
    const QString west = QStringLiteral("espa\u00f1ola, Stra\u00dfe");
    const QString span = QStringLiteral(" <text:span text:style-name=\"West\">%1</text:span>").arg(west);
    const QString frame = QStringLiteral("<draw:frame text:anchor-type=\"as-char\" svg:width=\"0.6in\" "
                                         "svg:height=\"0.4in\"><draw:image><office:binary-data>%1"
                                         "</office:binary-data></draw:image></draw:frame>");
    // Each document's own script is in its default font, the Western words
    // in a font of their own, so that both code pages are at work.
    const struct { const char *name, *font, *language; QString text, body; } documents[] = {
        {"ja", "MS Mincho", "ja", QStringLiteral("\u65e5\u672c\u8a9e\u306e\u6587 ") + west, {}},
        {"ru", "Times New Roman", "ru", QStringLiteral("\u041f\u0440\u0438\u0432\u0435\u0442 ") + west, {}},
        {"el", "Times New Roman", "el", QStringLiteral("\u0395\u03bb\u03bb\u03b7\u03bd\u03b9\u03ba\u03ac ") + west, {}},
        {"pictures", "Arial", "en", QStringLiteral("png \ufffc jpeg \ufffc end"),
         QStringLiteral("png %1 jpeg %2 end").arg(frame.arg(base64Picture("PNG")), frame.arg(base64Picture("JPEG")))},
    };
    QStringList sources;
    for (const auto &d : documents) {
        const QString name = QString::fromLatin1(d.name) + QStringLiteral(".fodt");
        const QString body = d.body.isEmpty() ? d.text.section(u' ', 0, 0) + span : d.body;
        ASSERT_TRUE(writeFile(name, flatDocument(QString::fromLatin1(d.font), QString::fromLatin1(d.language),
                                                 QStringLiteral("<text:p>%1</text:p>").arg(body))));
        sources.append(path(name));
    }
    const QString rtfDir = path(QStringLiteral("scripts"));
    ASSERT_TRUE(convert(QStringLiteral("rtf"), sources, rtfDir));
    for (const auto &d : documents) {
        SCOPED_TRACE(d.name);
        const QByteArray theirs = readFile(rtfDir + u'/' + QString::fromLatin1(d.name) + QStringLiteral(".rtf"));
        QTextDocument ours;
        Rtf::load(ours, theirs);
        EXPECT_EQ(ours.toPlainText().trimmed(), d.text);
    }
    // Both pictures are shown and saved back byte for byte.
    QTextDocument ours;
    const QByteArray theirs = readFile(rtfDir + QStringLiteral("/pictures.rtf"));
    Rtf::load(ours, theirs);
    const QList<QByteArray> in = pictureGroups(theirs);
    const QList<QByteArray> out = pictureGroups(Rtf::fromDocument(ours));
    EXPECT_GE(in.size(), 2);
    EXPECT_EQ(out.size(), 2);
    for (const QByteArray &group : out)
        EXPECT_TRUE(in.contains(group)) << group.left(80).constData();
}

} // namespace
