#pragma once

// Two helpers for the undo tests: the history exactly as the program's
// model states it, with the whole text in every record, and a text target
// on a plain string that behaves like the control's properties.

#include "editor/UndoHistory.h"

#include <QString>
#include <algorithm>
#include <limits>
#include <vector>

// The straightforward history: a full snapshot per record and the two
// routines step by step, DifferenzaTesto included. The compact history
// must act exactly like it.
class FullSnapshotHistory
{
public:
    struct Record
    {
        qint32 SelStart = 0;
        qint32 TextLen = 0;
        QString Text;
    };

    bool RegistraUndo = false;
    std::vector<Record> ListaUndo;
    std::vector<Record> ListaRedo;

    static QString textOf(const UndoTarget &t) { return t.textMid(0, t.textLength()); }

    void capture(UndoTarget &t)
    {
        ListaRedo.clear();
        ListaUndo.push_back({t.SelStart(), t.textLength(), textOf(t)});
    }

    void EseguiUndo(UndoTarget &t)
    {
        const size_t n = ListaUndo.size();
        if (n >= 2 && RegistraUndo) {
            RegistraUndo = false;
            const Record &u = ListaUndo[n - 1];
            const Record &p = ListaUndo[n - 2];
            if (p.TextLen < u.TextLen) {
                t.setSelStart(u.SelStart - (u.TextLen - p.TextLen));
                t.setSelLength(u.TextLen - p.TextLen);
                t.setSelText(QString());
            } else {
                const QString chg = DifferenzaTesto(
                    p.Text, u.Text, u.SelStart + 1 + qint32(std::abs(p.Text.size() - u.Text.size())));
                t.setSelStart(u.SelStart);
                t.setSelLength(0);
                t.setSelText(chg);
                t.setSelStart(u.SelStart);
                if (chg.size() < 2 || chg == QStringLiteral("\r\n"))
                    t.setSelStart(t.SelStart() + qint32(chg.size()));
                else
                    t.setSelLength(qint32(chg.size()));
            }
            ListaRedo.push_back(ListaUndo.back());
            ListaUndo.pop_back();
        }
        RegistraUndo = true;
        t.SetFocus();
    }

    void EseguiRedo(UndoTarget &t)
    {
        if (!ListaRedo.empty() && RegistraUndo) {
            RegistraUndo = false;
            const Record r = ListaRedo.back();
            if (r.TextLen < t.textLength()) {
                t.setSelStart(r.SelStart);
                t.setSelLength(t.textLength() - r.TextLen);
                t.setSelText(QString());
            } else {
                const QString chg = DifferenzaTesto(textOf(t), r.Text, r.SelStart + 1);
                t.setSelStart(r.SelStart - qint32(chg.size()));
                t.setSelLength(0);
                t.setSelText(chg);
                t.setSelStart(r.SelStart - qint32(chg.size()));
                if (chg.size() < 2 || chg == QStringLiteral("\r\n"))
                    t.setSelStart(t.SelStart() + qint32(chg.size()));
                else
                    t.setSelLength(qint32(chg.size()));
            }
            ListaUndo.push_back(r);
            ListaRedo.pop_back();
        }
        RegistraUndo = true;
        t.SetFocus();
    }
};

// A text target on a string: a negative start or length is refused, a start
// or length beyond the end is cut to it, writing the selected text leaves
// the caret behind it. It reports exactly which ends stayed unchanged, or,
// with `vague` set, nothing at all, which a history must survive too.
class StringTarget : public UndoTarget
{
public:
    QString text;
    qint32 start = 0;
    qint32 length = 0;
    bool vague = false;

    qint32 SelStart() const override { return start; }
    void setSelStart(qint32 s) override
    {
        if (s < 0)
            return;
        start = std::min(s, qint32(text.size()));
        length = 0;
    }
    void setSelLength(qint32 l) override
    {
        if (l < 0)
            return;
        length = std::min(l, qint32(text.size()) - start);
    }
    void setSelText(const QString &s) override { replace(start, length, s, start + qint32(s.size())); }
    qint32 textLength() const override { return qint32(text.size()); }
    QString textMid(qint32 s, qint32 l) const override { return text.mid(s, l); }
    void SetFocus() override {}
    UnchangedEnds unchangedEnds() const override { return vague ? UnchangedEnds() : m_ends; }
    void markUnchanged() override
    {
        m_ends.head = std::numeric_limits<qint32>::max();
        m_ends.tail = std::numeric_limits<qint32>::max();
    }

    // An edit as the user or a command makes it; the caret lands at `caret`.
    void replace(qint32 at, qint32 removed, const QString &inserted, qint32 caret)
    {
        m_ends.head = std::min(m_ends.head, at);
        m_ends.tail = std::min(m_ends.tail, qint32(text.size()) - at - removed);
        text.replace(at, removed, inserted);
        start = std::clamp(caret, 0, qint32(text.size()));
        length = 0;
    }

private:
    UnchangedEnds m_ends;
};
