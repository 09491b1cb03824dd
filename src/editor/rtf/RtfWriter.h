#pragma once

#include <QByteArray>

class QTextDocument;

namespace Rtf::detail {

// Writes the document's text from position `from` up to `to` as a complete
// RTF document. A paragraph whose end lies before `to` is ended by \par;
// `to` past the last character (characterCount()) ends every paragraph.
QByteArray write(const QTextDocument &doc, int from, int to);

} // namespace Rtf::detail
