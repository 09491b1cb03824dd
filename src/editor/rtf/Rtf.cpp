#include "editor/rtf/Rtf.h"

#include "editor/rtf/RtfBuilder.h"
#include "editor/rtf/RtfReader.h"
#include "editor/rtf/RtfWriter.h"
#include "platform/TextFile.h"

#include <QTextCursor>
#include <QTextDocument>

namespace Rtf {

bool looksLikeRtf(const QByteArray &data)
{
    return data.mid(rtfStart(data)).startsWith("{\\rtf");
}

qsizetype rtfStart(const QByteArray &data)
{
    // Editors that save RTF as "text" may put a UTF-8 byte-order mark or
    // blank lines before it.
    qsizetype at = data.startsWith("\xEF\xBB\xBF") ? 3 : 0;
    while (at < data.size() && (data[at] == ' ' || data[at] == '\t' || data[at] == '\r' || data[at] == '\n'))
        ++at;
    return at;
}

QByteArray fromDocument(const QTextDocument &doc)
{
    return detail::write(doc, 0, doc.characterCount());
}

QByteArray fromSelection(const QTextCursor &cursor)
{
    if (!cursor.document()) {
        const QTextDocument empty;
        return detail::write(empty, 0, 0);
    }
    return detail::write(*cursor.document(), cursor.selectionStart(), cursor.selectionEnd());
}

QString plainFallbackDecode(const QByteArray &data)
{
    QString text = TextFile::decode(data);
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    return text;
}

void insert(QTextCursor &cursor, const QByteArray &data)
{
    if (!cursor.document())
        return;
    cursor.beginEditBlock();
    cursor.removeSelectedText();
    if (looksLikeRtf(data)) {
        detail::DocumentBuilder builder(cursor, false);
        detail::read(data.mid(rtfStart(data)), builder);
    } else {
        const QString text = plainFallbackDecode(data);
        if (!text.isEmpty())
            cursor.insertText(text);
    }
    cursor.endEditBlock();
}

LoadReport load(QTextDocument &doc, const QByteArray &data)
{
    LoadReport report;
    // A loaded file is no edit to undo; recording it would only cost time.
    const bool undo = doc.isUndoRedoEnabled();
    doc.setUndoRedoEnabled(false);
    doc.clear();
    QTextCursor cursor(&doc);
    cursor.beginEditBlock();
    if (looksLikeRtf(data)) {
        detail::DocumentBuilder builder(cursor, true);
        detail::read(data, builder);
        report.lostContent = builder.lostContent;
    } else {
        const QString text = plainFallbackDecode(data);
        if (!text.isEmpty())
            cursor.insertText(text);
    }
    cursor.endEditBlock();
    doc.setUndoRedoEnabled(undo);
    return report;
}

} // namespace Rtf
