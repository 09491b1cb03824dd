// Our RTF as a word processor reads it: LibreOffice converts our file to its
// own format and back to RTF, and the text and the main formats must come
// through. (Its own RTF as we read it is in the samples of the reader tests.)
#include "QtPrinters.h"
#include "editor/rtf/Rtf.h"
#include "platform/TextFile.h"

#include <QTextBlock>
#include <QTextDocument>
#include <QTextList>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTextCursor>
#include <QUrl>
#include <functional>
#include <gtest/gtest.h>

namespace {

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

// A document with every feature the editor's toolbar gives.
void buildSample(QTextDocument &doc)
{
    doc.setDefaultFont(QFont(QStringLiteral("Arial"), 10));
    QTextCursor c(&doc);
    const std::pair<const char *, std::function<void(QTextCharFormat &)>> runs[] = {
        {"Plain ", [](auto &) {}},
        {"bold ", [](auto &f) { f.setFontWeight(QFont::Bold); }},
        {"italic ", [](auto &f) { f.setFontItalic(true); }},
        {"under ", [](auto &f) { f.setUnderlineStyle(QTextCharFormat::SingleUnderline); }},
        {"strike ", [](auto &f) { f.setFontStrikeOut(true); }},
        {"red ", [](auto &f) { f.setForeground(QColor(200, 0, 0)); }},
        {"Times 16", [](auto &f) {
             f.setFontFamilies({QStringLiteral("Times New Roman")});
             f.setFontPointSize(16); }},
    };
    for (const auto &[text, set] : runs) {
        QTextCharFormat f;
        set(f);
        c.insertText(QString::fromLatin1(text), f);
    }
    QTextBlockFormat centre, right;
    centre.setAlignment(Qt::AlignHCenter);
    right.setAlignment(Qt::AlignRight);
    c.insertBlock(centre, QTextCharFormat());
    c.insertText(QStringLiteral("Centred caf\u00e9 \u20ac \u041f\u0440\u0438 \u4e2d\u6587 a\tb"));
    c.insertBlock(right, QTextCharFormat());
    c.insertText(QStringLiteral("Right one") + QChar(QChar::LineSeparator) + QStringLiteral("two"));
    c.insertBlock(QTextBlockFormat(), QTextCharFormat());
    c.createList(QTextListFormat::ListDisc);
    c.insertText(QStringLiteral("Bullet one"));
    c.insertBlock();
    c.insertText(QStringLiteral("Bullet two"));
    c.insertBlock(QTextBlockFormat(), QTextCharFormat());
    c.insertText(QStringLiteral("After the list {with braces} and \\ backslash"));
}

// One conversion run of the word processor; the profile in the work folder
// is made on the first run and reused, so no home folder is needed.
bool convert(const QString &program, const QTemporaryDir &work, const QString &format, const QString &input,
             const QString &outDir)
{
    QProcess p;
    p.setProcessChannelMode(QProcess::MergedChannels);
    p.start(program, {QStringLiteral("-env:UserInstallation=")
                          + QUrl::fromLocalFile(work.filePath(QStringLiteral("profile"))).toString(),
                      QStringLiteral("--headless"), QStringLiteral("--norestore"), QStringLiteral("--convert-to"),
                      format, QStringLiteral("--outdir"), outDir, input});
    if (!p.waitForFinished(90000)) {
        p.kill();
        p.waitForFinished();
        ADD_FAILURE() << "libreoffice did not finish";
        return false;
    }
    EXPECT_EQ(p.exitCode(), 0) << "libreoffice failed: " << p.readAll().constData();
    return p.exitCode() == 0;
}

} // namespace

TEST(LibreOffice, OurFormatsSurviveAConversionToItsOwnFormatAndBack)
{
    QString program = QStandardPaths::findExecutable(QStringLiteral("libreoffice"));
    if (program.isEmpty())
        program = QStandardPaths::findExecutable(QStringLiteral("soffice"));
    if (program.isEmpty())
        GTEST_SKIP() << "libreoffice is not on PATH: interoperability with LibreOffice is not checked";
    QTemporaryDir work;
    ASSERT_TRUE(work.isValid());
    QTextDocument doc;
    buildSample(doc);
    const QString ours = work.filePath(QStringLiteral("sample.rtf"));
    ASSERT_TRUE(TextFile::writeBytes(ours, Rtf::fromDocument(doc)));
    ASSERT_TRUE(convert(program, work, QStringLiteral("odt"), ours, work.path()));
    const QString back = work.filePath(QStringLiteral("back"));
    ASSERT_TRUE(convert(program, work, QStringLiteral("rtf"), work.filePath(QStringLiteral("sample.odt")), back));

    // LibreOffice's RTF of our document reads as our document did, every
    // character and paragraph end.
    const QByteArray theirs = TextFile::readBytes(back + QStringLiteral("/sample.rtf")).value_or(QByteArray());
    ASSERT_TRUE(Rtf::looksLikeRtf(theirs));
    QTextDocument read;
    read.setDefaultFont(QFont(QStringLiteral("Arial"), 10));
    Rtf::load(read, theirs);
    EXPECT_EQ(looks(read).toStdString(), looks(doc).toStdString());
}
