// Load and save of a long formatted transcript as RTF, against Qt's own
// HTML import and export of the same document in the same run.
//
// Run offscreen: QT_QPA_PLATFORM=offscreen rtf_bench

#include "editor/rtf/Rtf.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextList>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

namespace {

// About 500 KB of transcript: time stamps in bold, speakers in colour,
// italic and underlined asides, some centred headings and bullet lists.
void buildTranscript(QTextDocument &doc, qsizetype size)
{
    static const char *words[] = {"the", "witness", "said", "that", "on", "monday", "morning", "she",
                                  "went", "to", "office", "and", "found", "door", "already", "open",
                                  "counsel", "asked", "whether", "anyone", "else", "had", "keys", "caf\u00e9"};
    QTextCursor c(&doc);
    QTextCharFormat plain;
    QTextCharFormat stamp;
    stamp.setFontWeight(QFont::Bold);
    QTextCharFormat speaker;
    speaker.setForeground(QColor(0x20, 0x50, 0xa0));
    QTextCharFormat aside;
    aside.setFontItalic(true);
    aside.setFontUnderline(true);
    aside.setFontFamilies({QStringLiteral("Times New Roman")});
    aside.setFontPointSize(13);
    unsigned seed = 12345;
    int turn = 0;
    while (doc.characterCount() < size) {
        QTextBlockFormat block;
        block.setAlignment(turn % 40 == 0 ? Qt::AlignHCenter : Qt::AlignLeft);
        if (turn > 0)
            c.insertBlock(block);
        else
            c.setBlockFormat(block);
        if (turn % 25 == 3) {
            QTextListFormat list;
            list.setStyle(QTextListFormat::ListDisc);
            c.createList(list);
        }
        c.insertText(QStringLiteral("[%1:%2] ").arg(turn / 60, 2, 10, QLatin1Char('0'))
                         .arg(turn % 60, 2, 10, QLatin1Char('0')), stamp);
        c.insertText(QStringLiteral("Speaker %1: ").arg(turn % 3 + 1), speaker);
        for (int w = 0; w < 60; ++w) {
            seed = seed * 1103515245u + 12345u;
            const QString word = QString::fromUtf8(words[(seed >> 16) % (sizeof words / sizeof *words)]);
            c.insertText(word + u' ', w % 17 == 5 ? aside : plain);
        }
        ++turn;
    }
}

double medianMs(int runs, const std::function<void()> &job)
{
    std::vector<double> times;
    for (int i = 0; i < runs; ++i) {
        QElapsedTimer t;
        t.start();
        job();
        times.push_back(double(t.nsecsElapsed()) / 1e6);
    }
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);

    QTextDocument doc;
    buildTranscript(doc, 500000);
    const int runs = 7;

    QByteArray rtf;
    const double rtfSave = medianMs(runs, [&] { rtf = Rtf::fromDocument(doc); });
    QString html;
    const double htmlSave = medianMs(runs, [&] { html = doc.toHtml(); });
    const double rtfLoad = medianMs(runs, [&] {
        QTextDocument read;
        Rtf::load(read, rtf);
    });
    const double htmlLoad = medianMs(runs, [&] {
        QTextDocument read;
        read.setHtml(html);
    });

    QTextDocument check;
    Rtf::load(check, rtf);
    std::printf("transcript: %d characters, %d paragraphs; RTF %.0f KB, HTML %.0f KB\n",
                doc.characterCount(), doc.blockCount(), double(rtf.size()) / 1024,
                double(html.toUtf8().size()) / 1024);
    std::printf("text survives the round trip: %s\n", check.toPlainText() == doc.toPlainText() ? "yes" : "NO");
    std::printf("save: RTF %.1f ms, HTML %.1f ms (ratio %.2f)\n", rtfSave, htmlSave, rtfSave / htmlSave);
    std::printf("load: RTF %.1f ms, HTML %.1f ms (ratio %.2f)\n", rtfLoad, htmlLoad, rtfLoad / htmlLoad);
    return 0;
}
