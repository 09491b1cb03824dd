// The editor's undo history against the model it replaces: one full text
// per record. The compact history keeps only the edits and must act the
// same in every case on the real control, the odd ones of the design
// included.

#include "editor/RTB.h"
#include "editor/UndoHistory.h"

#include <QString>
#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <vector>

namespace {

// The straightforward history: a full snapshot per record and the two
// routines step by step, DifferenzaTesto included. The compact history
// must act exactly like it.
class FullSnapshotHistory
{
public:
    struct Record { qint32 SelStart = 0; qint32 TextLen = 0; QString Text; };

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
            if (p.TextLen < u.TextLen)
                replace(t, u.SelStart - (u.TextLen - p.TextLen), u.TextLen - p.TextLen, QString());
            else
                putBack(t, u.SelStart, DifferenzaTesto(p.Text, u.Text,
                                                       u.SelStart + 1 + qint32(std::abs(p.Text.size() - u.Text.size()))));
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
                replace(t, r.SelStart, t.textLength() - r.TextLen, QString());
            } else {
                const QString chg = DifferenzaTesto(textOf(t), r.Text, r.SelStart + 1);
                putBack(t, r.SelStart - qint32(chg.size()), chg);
            }
            ListaUndo.push_back(r);
            ListaRedo.pop_back();
        }
        RegistraUndo = true;
        t.SetFocus();
    }

    static void replace(UndoTarget &t, qint32 at, qint32 length, const QString &text)
    {
        t.setSelStart(at);
        t.setSelLength(length);
        t.setSelText(text);
    }

    // Writes the difference back at `at` and selects it, or puts the caret
    // behind it when it is one character or a line end.
    static void putBack(UndoTarget &t, qint32 at, const QString &chg)
    {
        replace(t, at, 0, chg);
        t.setSelStart(at);
        if (chg.size() < 2 || chg == QStringLiteral("\r\n"))
            t.setSelStart(t.SelStart() + qint32(chg.size()));
        else
            t.setSelLength(qint32(chg.size()));
    }
};

// Two real controls, one under each history: the same edits on both, and
// after every step both texts, selections and lists must agree.
class TwinHistories
{
public:
    TwinHistories()
    {
        boxes[0].onChange = [this] { if (compact.RegistraUndo) compact.capture(boxes[0]); };
        boxes[1].onChange = [this] { if (reference.RegistraUndo) reference.capture(boxes[1]); };
        compact.RegistraUndo = reference.RegistraUndo = true;
        compact.capture(boxes[0]);
        reference.capture(boxes[1]);
    }

    RichTextBox boxes[2]; // under the compact history, under the model
    UndoHistory compact;
    FullSnapshotHistory reference;

    // Selects from `at` for `length` and types `text` over it.
    void write(qint32 at, qint32 length, const QString &text)
    {
        for (RichTextBox &box : boxes)
            FullSnapshotHistory::replace(box, at, length, text);
    }
    template <class Edit> void both(Edit edit) { edit(boxes[0]); edit(boxes[1]); }
    void undo() { compact.EseguiUndo(boxes[0]); reference.EseguiUndo(boxes[1]); }
    void redo() { compact.EseguiRedo(boxes[0]); reference.EseguiRedo(boxes[1]); }

    void expectSame(const std::string &where) const
    {
        ASSERT_EQ(boxes[0].Text(), boxes[1].Text()) << where;
        ASSERT_EQ(boxes[0].SelStart(), boxes[1].SelStart()) << where;
        ASSERT_EQ(boxes[0].SelLength(), boxes[1].SelLength()) << where;
        ASSERT_EQ(compact.ListaUndo.size(), reference.ListaUndo.size()) << where;
        ASSERT_EQ(compact.ListaRedo.size(), reference.ListaRedo.size()) << where;
        ASSERT_EQ(compact.lastText(), reference.ListaUndo.back().Text) << where;
        for (size_t i = 0; i < compact.ListaUndo.size(); ++i) {
            ASSERT_EQ(compact.ListaUndo[i].SelStart, reference.ListaUndo[i].SelStart) << where;
            ASSERT_EQ(compact.ListaUndo[i].TextLen, reference.ListaUndo[i].TextLen) << where;
        }
    }
};

QString randomText(std::mt19937 &rng, int maxLength)
{
    static const QString pieces[] = {QStringLiteral("a"), QStringLiteral("b"), QStringLiteral(" "),
                                     QStringLiteral("\r\n"), QStringLiteral("word"), QStringLiteral("é"),
                                     QStringLiteral("\n")};
    const int length = std::uniform_int_distribution<int>(0, maxLength)(rng);
    QString out;
    for (int i = 0; i < length; ++i)
        out += pieces[std::uniform_int_distribution<int>(0, 6)(rng)];
    return out;
}

} // namespace

TEST(UndoHistory, RandomEditsMatchTheFullSnapshotModel)
{
    // Loads and pasted text leave the control unable to tell what changed:
    // the history must cope with that too.
    for (unsigned seed = 1; seed <= 60; ++seed) {
        std::mt19937 rng(seed);
        TwinHistories twins;
        auto pick = [&rng](int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng); };
        for (int step = 0; step < 300; ++step) {
            const qint32 length = twins.boxes[0].textLength();
            const qint32 a = pick(0, length);
            const qint32 b = pick(a, std::min(length, a + 12));
            switch (pick(0, 11)) {
            case 0: case 1: case 2: // typing or pasting at a caret
                twins.write(a, 0, randomText(rng, 3));
                break;
            case 3: // deleting a run, as Backspace, Delete or a cut does
                twins.write(a, b - a, QString());
                break;
            case 4: // overtyping a selection with the same length, or with another
                twins.write(a, b - a, pick(0, 1) ? QString(b - a, u'z') : randomText(rng, 4));
                break;
            case 5: // pasting formatted text
                twins.both([&](RichTextBox &box) {
                    box.setSelStart(a);
                    box.setSelLength(b - a);
                    box.setSelRTF(QStringLiteral("{\\rtf1\\ansi x\\par y}"));
                });
                break;
            case 6: { // a whole new text with the caret at the start, as a load does
                const QString text = randomText(rng, 20);
                twins.both([&](RichTextBox &box) { box.setText(text); });
                break;
            }
            case 7:
                twins.both([&](RichTextBox &box) { box.setSelStart(a); });
                break;
            case 8: case 9:
                for (int i = pick(1, 4); i > 0; --i)
                    twins.undo();
                break;
            default:
                for (int i = pick(1, 3); i > 0; --i)
                    twins.redo();
                break;
            }
            twins.expectSame("seed " + std::to_string(seed) + " step " + std::to_string(step));
            if (HasFatalFailure())
                return;
        }
    }
}

TEST(UndoHistory, RedoAfterAFailedStartTakesMoreThanTheEditAdded)
{
    // A load leaves the caret at 0; undoing it cannot select before the
    // start and deletes from the caret instead, and redoing it inserts
    // nothing. The next redo then finds a text shorter than its predecessor
    // and takes 51 characters of its record, not the one that was typed.
    TwinHistories twins;
    const QString digits = QStringLiteral("0123456789").repeated(10);
    twins.both([&](RichTextBox &box) { box.setText(digits); });
    twins.write(50, 0, QStringLiteral("x"));
    twins.undo();
    twins.undo();
    twins.expectSame("after the undos");
    EXPECT_EQ(twins.boxes[0].Text(), digits.left(50));
    twins.redo();
    twins.redo();
    twins.expectSame("after the redos");
    EXPECT_EQ(twins.boxes[0].Text(), digits.left(50) + u'x' + digits.left(50));
    EXPECT_EQ(twins.boxes[0].SelStart(), 0);
    EXPECT_EQ(twins.boxes[0].SelLength(), 51);
}

TEST(UndoHistory, MemoryGrowsWithTheEditsNotWithTheText)
{
    RichTextBox box;
    UndoHistory h;
    h.RegistraUndo = true;
    h.capture(box);
    box.onChange = [&] { h.capture(box); };
    box.setText(QString(200000, u'a'));
    const qint64 afterLoad = h.recordBytes();
    for (int i = 0; i < 2000; ++i) {
        box.setSelStart(100000 + i);
        box.setSelText(QStringLiteral("k"));
    }
    const qint64 perKeystroke = (h.recordBytes() - afterLoad) / 2000;
    EXPECT_LT(perKeystroke, 160);
    // One whole text is kept, whatever the number of records (with the
    // string's room to grow).
    EXPECT_LT(h.textBytes(), qint64(box.textLength()) * 2 * 2);
}
