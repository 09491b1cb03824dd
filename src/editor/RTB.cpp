// The rich-text control: text, selection and units, the change event, keys
// and the mouse. Formats, files and search are in RTBFormat.cpp.

#include "editor/RTB.h"

#include "app/Controls.h"
#include "editor/rtf/Rtf.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QKeySequence>
#include <QMimeData>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextDocumentFragment>
#include <algorithm>
#include <limits>

namespace {

const QString RtfMime = QStringLiteral("text/rtf");

// The keys the editor's key tables take: they must reach the control and
// not a menu shortcut of the window.
bool takesKey(int code, int shift)
{
    if (shift == 2) {
        for (int c : {77, 79, 81, 87, 112, 115, 117, 118, 88, 67, 86, 90, 73, 89}) {
            if (code == c)
                return true;
        }
    }
    for (int c : {112, 114, 115, 116, 117, 118, 119, 120, 122}) {
        if (code == c)
            return true;
    }
    return false;
}

// The control's own undo, redo, clipboard and italic never run: the
// editor's commands replace them.
bool lockedOut(const QKeyEvent *event)
{
    for (QKeySequence::StandardKey key : {QKeySequence::Undo, QKeySequence::Redo, QKeySequence::Cut,
                                          QKeySequence::Copy, QKeySequence::Paste, QKeySequence::Italic}) {
        if (event->matches(key))
            return true;
    }
    return false;
}

Qt::KeyboardModifiers modifiersOf(int shift)
{
    Qt::KeyboardModifiers m;
    if (shift & 1)
        m |= Qt::ShiftModifier;
    if (shift & 2)
        m |= Qt::ControlModifier;
    if (shift & 4)
        m |= Qt::AltModifier;
    return m;
}

int buttonCode(Qt::MouseButton button)
{
    switch (button) {
    case Qt::LeftButton:
        return 1;
    case Qt::RightButton:
        return 2;
    case Qt::MiddleButton:
        return 4;
    default:
        return 0;
    }
}

} // namespace

RichTextBox::RichTextBox(QWidget *parent) : QTextEdit(parent), TwipsPlacement(this)
{
    setObjectName(QStringLiteral("RTB"));
    setAccessibleName(QStringLiteral("Text"));
    // The editor keeps its own history (UndoHistory); the document's would
    // only cost memory and answer keys that must do nothing.
    setUndoRedoEnabled(false);
    setAcceptRichText(true);
    setTabChangesFocus(false);
    setFont(QFont(QStringLiteral("Arial"), 12));
    connect(document(), &QTextDocument::contentsChange, this,
            [this](int position, int removed, int added) { onContentsChange(position, removed, added); });
}

RichTextBox::~RichTextBox()
{
    // The handlers belong to the window, which is going away with us.
    disconnect(document(), nullptr, this, nullptr);
    onChange = nullptr;
    onLostFocus = nullptr;
}

// --- Units ---------------------------------------------------------------

qint32 RichTextBox::textLength() const
{
    const QTextDocument *doc = document();
    // Every paragraph break but the document's own last one reads as two.
    return qint32(doc->characterCount() - 1 + doc->blockCount() - 1);
}

qint32 RichTextBox::unitsOf(int position) const
{
    const QTextDocument *doc = document();
    position = std::clamp(position, 0, doc->characterCount() - 1);
    return qint32(position + doc->findBlock(position).blockNumber());
}

int RichTextBox::positionOf(qint32 units, bool roundUp) const
{
    const QTextDocument *doc = document();
    if (units <= 0)
        return 0;
    if (units >= textLength())
        return doc->characterCount() - 1;
    // The last block whose start, in units, is not beyond `units`.
    int lo = 0;
    int hi = doc->blockCount() - 1;
    while (lo < hi) {
        const int mid = lo + (hi - lo + 1) / 2;
        if (doc->findBlockByNumber(mid).position() + mid <= units)
            lo = mid;
        else
            hi = mid - 1;
    }
    const QTextBlock block = doc->findBlockByNumber(lo);
    const int offset = units - (block.position() + lo);
    const int textLength = block.length() - 1;
    if (offset <= textLength)
        return block.position() + offset;
    // Between the CR and the LF of a line end: a caret goes before the
    // break, the end of a range takes the whole break.
    return block.position() + textLength + (roundUp ? 1 : 0);
}

QString RichTextBox::unitsText(QStringView raw)
{
    QString out;
    out.reserve(raw.size() + raw.size() / 16 + 2);
    for (QChar c : raw) {
        switch (c.unicode()) {
        case QChar::ParagraphSeparator:
        case 0xFDD0: // beginning of a frame: also a paragraph break
        case 0xFDD1: // end of a frame
            out += u'\r';
            out += u'\n';
            break;
        case QChar::LineSeparator:
            out += u'\v';
            break;
        default:
            out += c;
        }
    }
    return out;
}

void RichTextBox::insertPlain(QTextCursor &cursor, const QString &text)
{
    QString normal = text;
    normal.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    normal.replace(u'\r', u'\n');
    normal.replace(u'\v', QChar(QChar::LineSeparator));
    if (normal.isEmpty())
        cursor.removeSelectedText();
    else
        cursor.insertText(normal);
}

QString RichTextBox::Text() const
{
    return unitsText(document()->toRawText());
}

QString RichTextBox::textMid(qint32 start, qint32 length) const
{
    const qint32 total = textLength();
    start = std::clamp(start, 0, total);
    const qint32 end = qint32(std::clamp<qint64>(qint64(start) + std::max(length, 0), start, total));
    if (end == start)
        return QString();
    const int from = positionOf(start, false);
    QTextCursor c(document());
    c.setPosition(from);
    c.setPosition(positionOf(end, true), QTextCursor::KeepAnchor);
    return unitsText(c.selectedText()).mid(start - unitsOf(from), end - start);
}

void RichTextBox::setText(const QString &text)
{
    EditScope scope(*this);
    wholeTextChanged();
    QTextCursor c(document());
    c.select(QTextCursor::Document);
    c.removeSelectedText();
    c.setBlockFormat(QTextBlockFormat());
    c.setCharFormat(QTextCharFormat());
    setCurrentCharFormat(QTextCharFormat());
    insertPlain(c, text);
    c.setPosition(0);
    setTextCursor(c);
}

qint32 RichTextBox::SelStart() const
{
    return unitsOf(textCursor().selectionStart());
}

void RichTextBox::setSelStart(qint32 start)
{
    if (start < 0)
        return;
    QTextCursor c = textCursor();
    c.setPosition(positionOf(start, false));
    setTextCursor(c);
}

qint32 RichTextBox::SelLength() const
{
    const QTextCursor c = textCursor();
    return unitsOf(c.selectionEnd()) - unitsOf(c.selectionStart());
}

void RichTextBox::setSelLength(qint32 length)
{
    if (length < 0)
        return;
    QTextCursor c = textCursor();
    const int start = c.selectionStart();
    const qint64 end = std::min<qint64>(qint64(unitsOf(start)) + length, textLength());
    c.setPosition(start);
    c.setPosition(positionOf(qint32(end), true), QTextCursor::KeepAnchor);
    setTextCursor(c);
}

QString RichTextBox::SelText() const
{
    return unitsText(textCursor().selectedText());
}

void RichTextBox::setSelText(const QString &text)
{
    EditScope scope(*this);
    QTextCursor c = textCursor();
    insertPlain(c, text);
    setTextCursor(c);
}

QString RichTextBox::SelRTF() const
{
    return QString::fromLatin1(Rtf::fromSelection(textCursor()));
}

void RichTextBox::setSelRTF(const QString &rtf)
{
    EditScope scope(*this);
    QTextCursor c = textCursor();
    const bool latin1 = std::all_of(rtf.cbegin(), rtf.cend(), [](QChar ch) { return ch.unicode() < 256; });
    const QByteArray bytes = latin1 ? rtf.toLatin1() : rtf.toUtf8();
    if (Rtf::looksLikeRtf(bytes))
        insertRtf(c, bytes);
    else
        insertPlain(c, rtf);
    setTextCursor(c);
}

void RichTextBox::insertRtf(QTextCursor &cursor, const QByteArray &rtf)
{
    // The text outside the selection stays whatever the reader does inside
    // it, and the caret goes behind what came in.
    const int tailPositions = document()->characterCount() - 1 - cursor.selectionEnd();
    const qint32 head = unitsOf(cursor.selectionStart());
    const qint32 tail = textLength() - unitsOf(cursor.selectionEnd());
    Rtf::insert(cursor, rtf);
    m_unchanged.head = std::min(m_unchanged.head, head);
    m_unchanged.tail = std::min(m_unchanged.tail, tail);
    m_changePending = true;
    cursor.setPosition(std::max(0, document()->characterCount() - 1 - tailPositions));
}

// --- Change ---------------------------------------------------------------

void RichTextBox::onContentsChange(int position, int removed, int added)
{
    // Formats alone change no character and raise no Change.
    if (m_formatDepth > 0 || (removed == 0 && added == 0))
        return;
    const int last = document()->characterCount() - 1;
    const int from = std::clamp(position, 0, last);
    const int to = std::clamp(position + added, from, last);
    m_unchanged.head = std::min(m_unchanged.head, unitsOf(from));
    m_unchanged.tail = std::min(m_unchanged.tail, textLength() - unitsOf(to));
    if (m_editDepth > 0)
        m_changePending = true;
    else if (onChange)
        onChange();
}

void RichTextBox::wholeTextChanged()
{
    m_unchanged = UnchangedEnds();
    m_changePending = true;
}

void RichTextBox::endEdit()
{
    if (--m_editDepth > 0 || !m_changePending)
        return;
    m_changePending = false;
    if (onChange)
        onChange();
}

UndoTarget::UnchangedEnds RichTextBox::unchangedEnds() const
{
    return m_unchanged;
}

void RichTextBox::markUnchanged()
{
    m_unchanged.head = std::numeric_limits<qint32>::max();
    m_unchanged.tail = std::numeric_limits<qint32>::max();
}

void RichTextBox::SetFocus()
{
    // A hidden control cannot take the keyboard; the call then does nothing.
    if (!isVisible())
        return;
    window()->activateWindow();
    setFocus(Qt::OtherFocusReason);
}

// --- Keys -------------------------------------------------------------------

int RichTextBox::keyCode(const QKeyEvent *event)
{
    const int k = KeyLayout::latinKey(event);
    if (k >= Qt::Key_A && k <= Qt::Key_Z)
        return k;
    if (k >= Qt::Key_0 && k <= Qt::Key_9)
        return (event->modifiers() & Qt::KeypadModifier) ? 96 + (k - Qt::Key_0) : k;
    if (k >= Qt::Key_F1 && k <= Qt::Key_F24)
        return 112 + (k - Qt::Key_F1);
    switch (k) {
    case Qt::Key_Backspace: return 8;
    case Qt::Key_Tab:
    case Qt::Key_Backtab: return 9;
    case Qt::Key_Return:
    case Qt::Key_Enter: return 13;
    case Qt::Key_Shift: return 16;
    case Qt::Key_Control: return 17;
    case Qt::Key_Alt: return 18;
    case Qt::Key_Pause: return 19;
    case Qt::Key_CapsLock: return 20;
    case Qt::Key_Escape: return 27;
    case Qt::Key_Space: return 32;
    case Qt::Key_PageUp: return 33;
    case Qt::Key_PageDown: return 34;
    case Qt::Key_End: return 35;
    case Qt::Key_Home: return 36;
    case Qt::Key_Left: return 37;
    case Qt::Key_Up: return 38;
    case Qt::Key_Right: return 39;
    case Qt::Key_Down: return 40;
    case Qt::Key_Insert: return 45;
    case Qt::Key_Delete: return 46;
    case Qt::Key_Menu: return 93;
    case Qt::Key_NumLock: return 144;
    case Qt::Key_ScrollLock: return 145;
    case Qt::Key_Semicolon:
    case Qt::Key_Colon: return 186;
    case Qt::Key_Equal:
    case Qt::Key_Plus: return 187;
    case Qt::Key_Comma:
    case Qt::Key_Less: return 188;
    case Qt::Key_Minus:
    case Qt::Key_Underscore: return 189;
    case Qt::Key_Period:
    case Qt::Key_Greater: return 190;
    case Qt::Key_Slash:
    case Qt::Key_Question: return 191;
    case Qt::Key_QuoteLeft:
    case Qt::Key_AsciiTilde: return 192;
    case Qt::Key_BracketLeft:
    case Qt::Key_BraceLeft: return 219;
    case Qt::Key_Backslash:
    case Qt::Key_Bar: return 220;
    case Qt::Key_BracketRight:
    case Qt::Key_BraceRight: return 221;
    case Qt::Key_Apostrophe:
    case Qt::Key_QuoteDbl: return 222;
    default: return 0;
    }
}

int RichTextBox::shiftState(Qt::KeyboardModifiers modifiers)
{
    return ((modifiers & Qt::ShiftModifier) ? 1 : 0) | ((modifiers & Qt::ControlModifier) ? 2 : 0)
        | ((modifiers & Qt::AltModifier) ? 4 : 0);
}

bool RichTextBox::event(QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride) {
        auto *key = static_cast<QKeyEvent *>(event);
        // The press is this control's even when a menu shortcut takes it
        // (Ctrl+S saves, and its release still underlines in Italian).
        m_pressedKeys.insert(key->key());
        if (takesKey(keyCode(key), shiftState(key->modifiers()))) {
            event->accept();
            return true;
        }
    }
    return QTextEdit::event(event);
}

void RichTextBox::keyPressEvent(QKeyEvent *event)
{
    int code = keyCode(event);
    int shift = shiftState(event->modifiers());
    m_pressedKeys.insert(event->key());
    // A menu shortcut of the window that the layout hid (Ctrl+S under a
    // Cyrillic layout), unless the key tables take the key.
    if (!takesKey(code, shift) && KeyLayout::triggerShortcut(window(), event)) {
        event->accept();
        return;
    }
    const int codeIn = code;
    const int shiftIn = shift;
    if (onKeyDown)
        onKeyDown(code, shift);
    // The control keeps every key: none goes on to the window, which is why
    // Esc in the text does not reach the window's own key handler.
    event->accept();
    if (codeIn != 0 && code == 0)
        return;
    if (lockedOut(event) || event->key() == Qt::Key_Escape)
        return;

    Qt::KeyboardModifiers modifiers = event->modifiers();
    if (shift != shiftIn)
        modifiers = modifiersOf(shift) | (modifiers & (Qt::KeypadModifier | Qt::MetaModifier));
    // A soft line break would be one position of the document yet read as a
    // line end; Shift+Enter makes an ordinary paragraph break instead.
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        modifiers &= ~Qt::ShiftModifier;

    EditScope scope(*this);
    if (modifiers != event->modifiers()) {
        QKeyEvent changed(event->type(), event->key(), modifiers, event->nativeScanCode(),
                          event->nativeVirtualKey(), event->nativeModifiers(), event->text(),
                          event->isAutoRepeat(), ushort(event->count()));
        QTextEdit::keyPressEvent(&changed);
    } else {
        QTextEdit::keyPressEvent(event);
    }
    event->accept();
}

void RichTextBox::keyReleaseEvent(QKeyEvent *event)
{
    event->accept();
    // A held key repeats its press only; its release comes once, at the end.
    if (event->isAutoRepeat())
        return;
    // A key acts once: a press that went to another window (F5 in the
    // player, which gives the keyboard to the text at once) has already
    // done its work, and its release here must not do it again.
    if (!m_pressedKeys.remove(event->key()))
        return;
    int code = keyCode(event);
    int shift = shiftState(event->modifiers());
    if (onKeyUp)
        onKeyUp(code, shift);
}

void RichTextBox::inputMethodEvent(QInputMethodEvent *event)
{
    EditScope scope(*this);
    QTextEdit::inputMethodEvent(event);
}

// --- Mouse, focus, drag and drop -----------------------------------------------

void RichTextBox::mousePressEvent(QMouseEvent *event)
{
    if (onMouseDown)
        onMouseDown(buttonCode(event->button()), shiftState(event->modifiers()),
                    Twips::fromPixels(int(event->position().x())), Twips::fromPixels(int(event->position().y())));
    QTextEdit::mousePressEvent(event);
}

void RichTextBox::contextMenuEvent(QContextMenuEvent *event)
{
    // The editor's own menu opens on the right button (MouseDown).
    event->accept();
}

void RichTextBox::focusInEvent(QFocusEvent *event)
{
    // Keys held now were pressed elsewhere.
    m_pressedKeys.clear();
    QTextEdit::focusInEvent(event);
}

void RichTextBox::focusOutEvent(QFocusEvent *event)
{
    QTextEdit::focusOutEvent(event);
    // A menu opening, or another window coming to the front, leaves the
    // focus where it was within the editor: the control's event stays quiet.
    if (event->reason() == Qt::PopupFocusReason || event->reason() == Qt::ActiveWindowFocusReason)
        return;
    if (onLostFocus)
        onLostFocus();
}

void RichTextBox::dropEvent(QDropEvent *event)
{
    EditScope scope(*this);
    QTextEdit::dropEvent(event);
}

bool RichTextBox::canInsertFromMimeData(const QMimeData *source) const
{
    return source->hasFormat(RtfMime) || QTextEdit::canInsertFromMimeData(source);
}

QMimeData *RichTextBox::createMimeDataFromSelection() const
{
    auto *data = new QMimeData;
    const QTextCursor c = textCursor();
    data->setText(c.selection().toPlainText());
    data->setData(RtfMime, Rtf::fromSelection(c));
    return data;
}

void RichTextBox::insertFromMimeData(const QMimeData *source)
{
    EditScope scope(*this);
    QTextCursor c = textCursor();
    const QByteArray rtf = source->data(RtfMime);
    if (!rtf.isEmpty() && Rtf::looksLikeRtf(rtf))
        insertRtf(c, rtf);
    else if (source->hasText())
        insertPlain(c, source->text());
    setTextCursor(c);
    ensureCursorVisible();
}
