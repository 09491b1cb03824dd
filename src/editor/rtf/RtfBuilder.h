#pragma once

#include <QFont>
#include <QPointer>
#include <QTextBlockFormat>
#include <QTextCharFormat>
#include <QTextCursor>
#include <QTextImageFormat>
#include <QTextListFormat>
#include <map>
#include <utility>

class QTextList;

namespace Rtf::detail {

// The list a paragraph belongs to: paragraphs with the same key and level
// share one QTextList. Key 0 is "no list".
struct ListRequest
{
    int key = 0;
    int level = 0;
    QTextListFormat::Style style = QTextListFormat::ListDisc;
};

// Lays the paragraphs and runs that the reader finds into the document at
// the cursor. A paragraph end is kept pending until something follows it,
// so that the empty paragraph after a file's final \par can be dropped when
// the whole document is loaded, while an insertion keeps the break and lets
// the text behind the cursor run on after it.
class DocumentBuilder
{
public:
    DocumentBuilder(QTextCursor &cursor, bool wholeDocument);

    const QFont &defaultFont() const { return m_defaultFont; }

    void addText(const QString &text, const QTextCharFormat &format);
    // A picture: the image shown goes into the document's resources under
    // the format's name.
    void addImage(const QTextImageFormat &format, const QImage &image);

    // Set by the reader when the data held content the document cannot keep.
    bool lostContent = false;
    void endParagraph(const QTextBlockFormat &block, const ListRequest &list,
                      const QTextCharFormat &mark);
    // The end of the data, with the paragraph state then in force.
    void finish(const QTextBlockFormat &block, const ListRequest &list,
                const QTextCharFormat &mark);

private:
    void openPendingParagraph();
    void formatCurrentBlock(const QTextBlockFormat &block, const ListRequest &list,
                            const QTextCharFormat &mark);

    QTextCursor &m_cursor;
    QFont m_defaultFont;
    bool m_whole;
    bool m_pending = false;
    bool m_intoEmptyParagraph = false;
    // The format that the text behind the insertion point keeps.
    QTextBlockFormat m_tailBlock;
    QTextCharFormat m_tailChar;
    std::map<std::pair<int, int>, QPointer<QTextList>> m_lists;
};

} // namespace Rtf::detail
