#pragma once

#include "app/Controls.h"
#include "editor/UndoHistory.h"

#include <QColor>
#include <QSet>
#include <QTextEdit>
#include <functional>
#include <optional>

class QPrinter;
class QTextCursor;

// The editor's rich-text control. It offers the operations the editor's
// routines are written against, in the control's units: Text reads a line
// end as the two characters CR LF, and SelStart and SelLength count in the
// same units, while the document underneath counts a paragraph break as
// one position. Keys come out as KeyDown and KeyUp events with the
// platform's key codes (F1 = 112, letters 65 to 90, Esc 27) and shift bits
// (1 Shift, 2 Ctrl, 4 Alt); KeyDown may cancel a key by clearing its code.
//
// Formatting properties read a selection as true, false or mixed (no value).
// Placed in twips like the other controls of the program.
class RichTextBox : public QTextEdit, public UndoTarget, public TwipsPlacement
{
public:
    explicit RichTextBox(QWidget *parent = nullptr);
    ~RichTextBox() override;

    // --- Text and selection ----------------------------------------------
    QString Text() const;
    // Replaces the whole text with plain text; raises Change even when the
    // text stays the same, as assigning the property always did.
    void setText(const QString &text);
    qint32 SelStart() const override;
    void setSelStart(qint32 start) override;
    qint32 SelLength() const;
    void setSelLength(qint32 length) override;
    QString SelText() const;
    // Replaces the selection with plain text, in the format at the
    // selection's start, and leaves the caret behind it.
    void setSelText(const QString &text) override;
    // The selection as a complete RTF text (ASCII). Writing replaces the
    // selection; a text that isn't RTF goes in as plain text.
    QString SelRTF() const;
    void setSelRTF(const QString &rtf);

    // --- Character and paragraph format -----------------------------------
    std::optional<QString> SelFontName() const;
    void setSelFontName(const QString &name);
    std::optional<double> SelFontSize() const;
    void setSelFontSize(double points);
    std::optional<QColor> SelColor() const;
    void setSelColor(const QColor &color);
    std::optional<bool> SelBold() const;
    void setSelBold(bool on);
    std::optional<bool> SelItalic() const;
    void setSelItalic(bool on);
    std::optional<bool> SelUnderline() const;
    void setSelUnderline(bool on);
    std::optional<bool> SelStrikeThru() const;
    void setSelStrikeThru(bool on);
    std::optional<bool> SelBullet() const;
    void setSelBullet(bool on);
    // 0 left, 1 right, 2 centre, on the selected paragraphs.
    void setSelAlignment(int alignment);

    // --- Files, printing, search -------------------------------------------
    // What a load found beyond the text it loaded.
    struct LoadOutcome
    {
        bool notText = false;     // binary or a word processor's container: not loaded
        bool lostContent = false; // RTF content the editor cannot keep was dropped
    };
    // Replaces the whole content by the file: RTF when it is RTF, otherwise
    // plain text decoded by its byte-order mark, as UTF-8, or else in
    // `plainTextCodec`. Raises Change. False (content kept) when unreadable
    // or not text at all.
    bool LoadFile(const QString &path, LoadOutcome *outcome = nullptr);
    // Writes the whole content as RTF, whatever the extension, through the
    // program's one write routine. False with the system's reason in `error`.
    bool SaveFile(const QString &path, QString *error = nullptr);
    // The single-byte code page of plain text that is not UTF-8.
    QByteArray plainTextCodec = "windows-1252";
    // Prints the selection, or the whole document when nothing is
    // selected, on `printer` with the control's own pagination.
    void SelPrint(QPrinter &printer);
    // Searches from `start` (the caret when negative); options 2 whole word,
    // 4 match case, 8 no highlight. Returns the position or -1.
    qint32 Find(const QString &text, qint32 start = -1, int options = 0);

    // While one of these lives, the text isn't laid out after each edit;
    // it is laid out once when the last one ends. Qt lays out every
    // paragraph behind an edit again at once, which makes a run of
    // thousands of edits (Replace All in a long transcript) quadratic.
    // Positions, text and events are unaffected; what is drawn and the
    // caret's place on screen wait for the end.
    class LayoutHold
    {
    public:
        explicit LayoutHold(RichTextBox &box);
        ~LayoutHold();
        LayoutHold(const LayoutHold &) = delete;
        LayoutHold &operator=(const LayoutHold &) = delete;

    private:
        RichTextBox &m_box;
    };

    void SetFocus() override;

    // --- Undo target ---------------------------------------------------------
    qint32 textLength() const override;
    QString textMid(qint32 start, qint32 length) const override;
    UnchangedEnds unchangedEnds() const override;
    void markUnchanged() override;

    // --- Events ----------------------------------------------------------------
    std::function<void()> onChange;
    std::function<void(int &KeyCode, int &Shift)> onKeyDown;
    std::function<void(int &KeyCode, int &Shift)> onKeyUp;
    std::function<void(int Button, int Shift, int X, int Y)> onMouseDown; // X, Y in twips
    std::function<void()> onLostFocus;

    // The platform's key code and shift bits of a Qt key event; 0 for keys
    // that have no code of their own here.
    static int keyCode(const QKeyEvent *event);
    static int shiftState(Qt::KeyboardModifiers modifiers);

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    bool canInsertFromMimeData(const QMimeData *source) const override;
    QMimeData *createMimeDataFromSelection() const override;
    void insertFromMimeData(const QMimeData *source) override;

private:
    // Qt reports one edit as several content changes (a character typed
    // over a selection is a removal and an insertion). Everything done
    // inside a scope raises Change once, when the outermost scope ends.
    class EditScope
    {
    public:
        explicit EditScope(RichTextBox &box) : m_box(box) { ++m_box.m_editDepth; }
        ~EditScope() { m_box.endEdit(); }
        EditScope(const EditScope &) = delete;
        EditScope &operator=(const EditScope &) = delete;

    private:
        RichTextBox &m_box;
    };

    // Format commands change no character: the content changes Qt reports
    // while one runs raise no Change and so make no undo record.
    class FormatScope
    {
    public:
        explicit FormatScope(RichTextBox &box) : m_box(box) { ++m_box.m_formatDepth; }
        ~FormatScope() { --m_box.m_formatDepth; }
        FormatScope(const FormatScope &) = delete;
        FormatScope &operator=(const FormatScope &) = delete;

    private:
        RichTextBox &m_box;
    };

    // Document positions and the control's units.
    qint32 unitsOf(int position) const;
    int positionOf(qint32 units, bool roundUp) const;
    static QString unitsText(QStringView raw);
    static void insertPlain(QTextCursor &cursor, const QString &text);
    void insertRtf(QTextCursor &cursor, const QByteArray &rtf);
    std::optional<bool> charFlag(const std::function<bool(const QTextCharFormat &)> &test) const;
    template <typename T>
    std::optional<T> charValue(const std::function<T(const QTextCharFormat &)> &get) const;
    void mergeFormat(const QTextCharFormat &format);

    void onContentsChange(int position, int removed, int added);
    void wholeTextChanged();
    void endEdit();

    int m_editDepth = 0;
    int m_layoutHolds = 0;
    int m_formatDepth = 0;
    bool m_changePending = false;
    UnchangedEnds m_unchanged;
    // Keys whose press this control received and whose release is to come.
    QSet<int> m_pressedKeys;
};
