#pragma once

#include <QByteArray>
#include <QString>
#include <QTextFormat>

class QTextCursor;
class QTextDocument;

// RTF for the editor's rich-text control: a reader and a writer over
// QTextDocument.
//
// What is kept: paragraphs, alignment (left, centre, right, justified),
// paragraph margins, bullet and numbered lists, bold, italic, underline,
// strike-through, super- and subscript, font name and size, text and
// background colour, line breaks, tabs and any Unicode text.
//
// A run with no font name, or no size, is written with the document's
// default font and read back with no font name or size of its own when the
// file's default font is the document's default. A run whose size equals the
// default size reads back with no size of its own: both look the same.
//
// The reader takes any input: it never crashes, runs in time linear in the
// input and uses memory bounded by a small multiple of it.
namespace Rtf {

// The property of a picture's image format that holds the picture's group as
// it stood in the file it came from; the writer writes it back unchanged.
inline constexpr int PictureSourceProperty = QTextFormat::UserProperty + 0x5150;

// True when the data starts with "{\rtf", after a UTF-8 byte-order mark
// and blanks, if any.
bool looksLikeRtf(const QByteArray &data);
// Where "{\rtf" starts: the length of that byte-order mark and those blanks.
qsizetype rtfStart(const QByteArray &data);

// The whole document as RTF; every paragraph ends with \par.
QByteArray fromDocument(const QTextDocument &doc);

// The selection as a complete RTF document. A paragraph end inside the
// selection is written as \par; the selection's last, partial paragraph is
// not ended. An empty selection gives a valid document with no text.
QByteArray fromSelection(const QTextCursor &cursor);

// Replaces the cursor's selection by the data: RTF when looksLikeRtf(),
// otherwise plain text (see plainFallbackDecode). The text around the
// selection stays; the cursor ends behind the inserted content. A paragraph
// of the RTF that is ended by \par brings its paragraph format along; the
// last, unended one takes the format of the paragraph it lands in. One undo
// step.
void insert(QTextCursor &cursor, const QByteArray &data);

// What a load could not keep of a file.
struct LoadReport
{
    // The file held content the editor cannot keep (tables, footnotes,
    // headers and the like): a save over it would lose that content.
    bool lostContent = false;
};

// Replaces the whole content of the document by the data, with the same
// rules as insert(). An empty last paragraph left after the final \par is
// dropped, as word processors do. Clears the document's undo history.
LoadReport load(QTextDocument &doc, const QByteArray &data);

// Plain text as it is inserted when the data isn't RTF: UTF-8 when valid,
// otherwise windows-1252; CR LF, CR and LF become paragraph ends.
QString plainFallbackDecode(const QByteArray &data);

} // namespace Rtf
