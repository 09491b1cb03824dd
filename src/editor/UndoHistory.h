#pragma once

#include <QString>
#include <QtGlobal>
#include <vector>

// The text control as the undo history sees it. Positions and lengths are
// in the units of the control's Text, where a line end counts as the two
// characters CR LF.
class UndoTarget
{
public:
    virtual ~UndoTarget() = default;

    virtual qint32 SelStart() const = 0;
    // A negative start is refused and the selection stays as it was, as the
    // control's property refuses it.
    virtual void setSelStart(qint32 start) = 0;
    virtual void setSelLength(qint32 length) = 0;
    virtual void setSelText(const QString &text) = 0;
    virtual qint32 textLength() const = 0;
    // Mid of Text, 0-based; cut short at the end of the text.
    virtual QString textMid(qint32 start, qint32 length) const = 0;
    virtual void SetFocus() = 0;

    // How many characters at the start and at the end of the text are known
    // to be the same as at the last markUnchanged(). Over-reporting the
    // changed middle is harmless; under-reporting it is not.
    struct UnchangedEnds
    {
        qint32 head = 0;
        qint32 tail = 0;
    };
    virtual UnchangedEnds unchangedEnds() const = 0;
    virtual void markUnchanged() = 0;
};

// One state of the text. The program's model keeps the whole text per
// record; this one keeps only how the text differs from the record before
// it (at `at`, `removed` gave way to `inserted`), and the history keeps one
// whole text, that of the last record of ListaUndo. Every text the two
// routines read is rebuilt from those exactly, so they behave as if each
// record held its full snapshot, while the memory grows with the size of
// the edits instead of text length times keystrokes.
class UndoElement
{
public:
    qint32 SelStart = 0; // the caret just after the change
    qint32 TextLen = 0;  // Len(Text) just after the change
    qint32 at = 0;
    QString removed;
    QString inserted;
};

// The editor's own undo and redo, on plain text only.
class UndoHistory
{
public:
    // True at rest; false only while EseguiUndo or EseguiRedo edits the
    // text, so that their own changes are not recorded.
    bool RegistraUndo = false;

    // Oldest first; the last record describes the current text.
    std::vector<UndoElement> ListaUndo;
    // The records undone, most recently undone last.
    std::vector<UndoElement> ListaRedo;

    // The recording part of the change routine: any new change ends the
    // redo chain, and the text as it now is becomes the last record.
    void capture(UndoTarget &target);

    void EseguiUndo(UndoTarget &target);
    void EseguiRedo(UndoTarget &target);

    // The text of the last record of ListaUndo.
    const QString &lastText() const { return m_text; }

    // Bytes held by the records and by the one whole text, for the
    // benchmark's report.
    qint64 recordBytes() const;
    qint64 textBytes() const;

private:
    void forward(const UndoElement &record);
    void backward(const UndoElement &record);
    void noteTextChange(qint32 at, qint32 removedLength);

    QString m_text;
    const UndoTarget *m_target = nullptr;
    // How much of m_text, at each end, is the same as when the target was
    // last marked; together with the target's own report this bounds the
    // part of the text that a capture has to compare.
    qint32 m_head = 0;
    qint32 m_tail = 0;
};

// The text by which two strings differ: the |Len(a) - Len(b)| characters of
// the longer one that end just before 1-based `posizione`. Nothing is
// compared; equal lengths give "". A start before the first character is the
// failing Mid of the program and gives "" as well.
QString DifferenzaTesto(const QString &a, const QString &b, qint32 posizione);
