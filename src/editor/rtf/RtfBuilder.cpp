#include "editor/rtf/RtfBuilder.h"

#include <QTextBlock>
#include <QTextDocument>
#include <QTextList>
#include <QUrl>

namespace Rtf::detail {

DocumentBuilder::DocumentBuilder(QTextCursor &cursor, bool wholeDocument)
    : m_cursor(cursor), m_whole(wholeDocument)
{
    m_defaultFont = cursor.document()->defaultFont();
    if (!wholeDocument) {
        m_tailBlock = cursor.blockFormat();
        m_tailChar = cursor.block().charFormat();
        m_intoEmptyParagraph = cursor.block().length() == 1;
    }
}

void DocumentBuilder::openPendingParagraph()
{
    if (!m_pending)
        return;
    m_pending = false;
    // The new block is the one behind the cursor: it carries on with the
    // format of the paragraph the insertion started in.
    m_cursor.insertBlock(m_tailBlock, m_tailChar);
}

void DocumentBuilder::addText(const QString &text, const QTextCharFormat &format)
{
    if (text.isEmpty())
        return;
    openPendingParagraph();
    m_cursor.insertText(text, format);
}

void DocumentBuilder::addImage(const QTextImageFormat &format, const QImage &image)
{
    openPendingParagraph();
    m_cursor.document()->addResource(QTextDocument::ImageResource, QUrl(format.name()), image);
    m_cursor.insertImage(format);
}

void DocumentBuilder::formatCurrentBlock(const QTextBlockFormat &block, const ListRequest &list,
                                         const QTextCharFormat &mark)
{
    QTextBlock current = m_cursor.block();
    QTextList *wanted = nullptr;
    bool create = false;
    if (list.key != 0) {
        auto &slot = m_lists[{list.key, list.level}];
        wanted = slot.data();
        create = !wanted;
    }
    if (QTextList *old = current.textList(); old && (old != wanted || create))
        old->remove(current); // leaves an indent behind, overwritten just below
    m_cursor.setBlockFormat(block);
    if (create) {
        QTextListFormat format;
        format.setStyle(list.style);
        format.setIndent(list.level + 1);
        m_lists[{list.key, list.level}] = m_cursor.createList(format);
    } else if (wanted && current.textList() != wanted) {
        wanted->add(current);
    }
    if (current.length() == 1)
        m_cursor.setBlockCharFormat(mark);
}

void DocumentBuilder::endParagraph(const QTextBlockFormat &block, const ListRequest &list,
                                   const QTextCharFormat &mark)
{
    openPendingParagraph();
    formatCurrentBlock(block, list, mark);
    m_pending = true;
}

void DocumentBuilder::finish(const QTextBlockFormat &block, const ListRequest &list,
                             const QTextCharFormat &mark)
{
    if (m_whole) {
        // A final paragraph with no \par of its own is still a paragraph of
        // the file; an empty one after the last \par is not.
        if (!m_pending)
            formatCurrentBlock(block, list, mark);
        m_pending = false;
        return;
    }
    // The last paragraph, unended, runs on into the text behind the cursor
    // and takes its format, unless it lands in an empty paragraph: there it
    // brings its own, as a whole paragraph copied would.
    if (!m_pending && m_intoEmptyParagraph && m_cursor.block().length() > 1)
        formatCurrentBlock(block, list, mark);
    openPendingParagraph();
}

} // namespace Rtf::detail
