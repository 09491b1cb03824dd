#include "editor/UndoHistory.h"

#include <algorithm>
#include <limits>

namespace {

constexpr qint32 Everything = std::numeric_limits<qint32>::max();

const QString &crLf()
{
    static const QString s = QStringLiteral("\r\n");
    return s;
}

// The caret rule shared by undo and redo: a restored single character or
// line end leaves the caret behind it, anything longer stays selected.
void placeAfterRestore(UndoTarget &target, qint32 start, const QString &chg)
{
    target.setSelStart(start);
    if (chg.size() < 2 || chg == crLf())
        target.setSelStart(target.SelStart() + qint32(chg.size()));
    else
        target.setSelLength(qint32(chg.size()));
}

qint64 stringBytes(const QString &s)
{
    if (s.isNull())
        return 0;
    // The shared header of the allocation plus the characters and the
    // terminator.
    return qint64(sizeof(void *) * 2) + (s.capacity() + 1) * qint64(sizeof(QChar));
}

} // namespace

QString DifferenzaTesto(const QString &a, const QString &b, qint32 posizione)
{
    const QString &shorter = a.size() > b.size() ? b : a;
    const QString &longer = a.size() > b.size() ? a : b;
    const qint64 d = longer.size() - shorter.size();
    const qint64 start = qint64(posizione) - d; // 1-based
    if (start < 1)
        return QString();
    return longer.mid(start - 1, d);
}

void UndoHistory::noteTextChange(qint32 at, qint32 removedLength)
{
    const qint32 before = qint32(m_text.size());
    m_head = std::min(m_head, at);
    m_tail = std::min(m_tail, before - at - removedLength);
}

void UndoHistory::forward(const UndoElement &record)
{
    noteTextChange(record.at, qint32(record.removed.size()));
    m_text.replace(record.at, record.removed.size(), record.inserted);
}

void UndoHistory::backward(const UndoElement &record)
{
    noteTextChange(record.at, qint32(record.inserted.size()));
    m_text.replace(record.at, record.inserted.size(), record.removed);
}

void UndoHistory::capture(UndoTarget &target)
{
    ListaRedo.clear();

    const qint32 length = target.textLength();
    const qint32 before = qint32(m_text.size());
    // Only the middle that changed since the last record is read from the
    // control; the first record, or one on another control, reads it all.
    qint32 head = 0;
    qint32 tail = 0;
    if (m_target == &target && !ListaUndo.empty()) {
        const UndoTarget::UnchangedEnds ends = target.unchangedEnds();
        head = std::min(ends.head, m_head);
        tail = std::min(ends.tail, m_tail);
    }
    const qint32 shortest = std::min(length, before);
    head = std::clamp(head, 0, shortest);
    tail = std::clamp(tail, 0, shortest - head);

    const QString now = target.textMid(head, length - head - tail);
    const QStringView was = QStringView(m_text).mid(head, before - head - tail);
    qsizetype same = 0;
    while (same < now.size() && same < was.size() && now[same] == was[same])
        ++same;
    qsizetype sameEnd = 0;
    while (sameEnd < now.size() - same && sameEnd < was.size() - same
           && now[now.size() - 1 - sameEnd] == was[was.size() - 1 - sameEnd])
        ++sameEnd;

    UndoElement record;
    record.SelStart = target.SelStart();
    record.TextLen = length;
    record.at = head + qint32(same);
    record.removed = was.mid(same, was.size() - same - sameEnd).toString();
    record.inserted = now.mid(same, now.size() - same - sameEnd);
    m_text.replace(record.at, record.removed.size(), record.inserted);
    ListaUndo.push_back(std::move(record));

    target.markUnchanged();
    m_target = &target;
    m_head = Everything;
    m_tail = Everything;
}

void UndoHistory::EseguiUndo(UndoTarget &target)
{
    const size_t n = ListaUndo.size();
    if (n >= 2 && RegistraUndo) {
        RegistraUndo = false;
        const UndoElement &last = ListaUndo[n - 1];
        const UndoElement &previous = ListaUndo[n - 2];
        // From here on m_text is the previous record's text.
        backward(last);
        if (previous.TextLen < last.TextLen) {
            // The last change added text: take that much out before the caret.
            const qint32 added = last.TextLen - previous.TextLen;
            target.setSelStart(last.SelStart - added);
            target.setSelLength(added);
            target.setSelText(QString());
        } else {
            // DifferenzaTesto(previous.Text, last.Text, last.SelStart + 1 + d)
            // is the d characters of the previous text from last.SelStart.
            const QString chg = m_text.mid(last.SelStart, previous.TextLen - last.TextLen);
            target.setSelStart(last.SelStart);
            target.setSelLength(0);
            target.setSelText(chg);
            placeAfterRestore(target, last.SelStart, chg);
        }
        ListaRedo.push_back(std::move(ListaUndo.back()));
        ListaUndo.pop_back();
    }
    RegistraUndo = true;
    target.SetFocus();
}

void UndoHistory::EseguiRedo(UndoTarget &target)
{
    if (!ListaRedo.empty() && RegistraUndo) {
        RegistraUndo = false;
        const UndoElement &record = ListaRedo.back();
        const qint32 current = target.textLength();
        // From here on m_text is this record's text.
        forward(record);
        if (record.TextLen < current) {
            target.setSelStart(record.SelStart);
            target.setSelLength(current - record.TextLen);
            target.setSelText(QString());
        } else {
            // DifferenzaTesto(Text, record.Text, record.SelStart + 1): the
            // characters of the record's text before its caret, as many as
            // the current text is shorter; none when they would start
            // before the first character.
            const qint32 d = record.TextLen - current;
            const QString chg = record.SelStart - d >= 0 ? m_text.mid(record.SelStart - d, d) : QString();
            const qint32 start = record.SelStart - qint32(chg.size());
            target.setSelStart(start);
            target.setSelLength(0);
            target.setSelText(chg);
            placeAfterRestore(target, start, chg);
        }
        ListaUndo.push_back(std::move(ListaRedo.back()));
        ListaRedo.pop_back();
    }
    RegistraUndo = true;
    target.SetFocus();
}

qint64 UndoHistory::recordBytes() const
{
    qint64 bytes = qint64(ListaUndo.capacity() + ListaRedo.capacity()) * qint64(sizeof(UndoElement));
    for (const auto *list : {&ListaUndo, &ListaRedo}) {
        for (const UndoElement &r : *list)
            bytes += stringBytes(r.removed) + stringBytes(r.inserted);
    }
    return bytes;
}

qint64 UndoHistory::textBytes() const
{
    return stringBytes(m_text);
}
