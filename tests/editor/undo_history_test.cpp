// The editor's undo history against the model it replaces: one full text
// per record. The compact history keeps only the edits and must act the
// same in every case, the odd ones of the design included, on a plain
// string target and on the real control.

#include "editor/RTB.h"
#include "editor/UndoHistory.h"

#include <QString>
#include <algorithm>
#include <gtest/gtest.h>
#include <limits>
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

// Runs the same edits on two targets, one under each history, and checks
// after every step that both texts, selections and lists agree.
class TwinHistories
{
public:
    explicit TwinHistories(bool vague = false)
    {
        compactTarget.vague = vague;
        compact.RegistraUndo = true;
        reference.RegistraUndo = true;
        change();
    }

    StringTarget compactTarget;
    StringTarget referenceTarget;
    UndoHistory compact;
    FullSnapshotHistory reference;

    void edit(qint32 at, qint32 removed, const QString &inserted, qint32 caret)
    {
        compactTarget.replace(at, removed, inserted, caret);
        referenceTarget.replace(at, removed, inserted, caret);
        change();
    }
    void setCaret(qint32 caret)
    {
        compactTarget.setSelStart(caret);
        referenceTarget.setSelStart(caret);
    }
    void undo()
    {
        compact.EseguiUndo(compactTarget);
        reference.EseguiUndo(referenceTarget);
    }
    void redo()
    {
        compact.EseguiRedo(compactTarget);
        reference.EseguiRedo(referenceTarget);
    }

    void expectSame(const std::string &where) const
    {
        ASSERT_EQ(compactTarget.text, referenceTarget.text) << where;
        ASSERT_EQ(compactTarget.start, referenceTarget.start) << where;
        ASSERT_EQ(compactTarget.length, referenceTarget.length) << where;
        ASSERT_EQ(compact.ListaUndo.size(), reference.ListaUndo.size()) << where;
        ASSERT_EQ(compact.ListaRedo.size(), reference.ListaRedo.size()) << where;
        ASSERT_EQ(compact.lastText(), reference.ListaUndo.back().Text) << where;
        for (size_t i = 0; i < compact.ListaUndo.size(); ++i) {
            ASSERT_EQ(compact.ListaUndo[i].SelStart, reference.ListaUndo[i].SelStart) << where;
            ASSERT_EQ(compact.ListaUndo[i].TextLen, reference.ListaUndo[i].TextLen) << where;
        }
    }

private:
    // The change event: both histories record while at rest.
    void change()
    {
        if (compact.RegistraUndo)
            compact.capture(compactTarget);
        if (reference.RegistraUndo)
            reference.capture(referenceTarget);
    }
};

QString randomText(std::mt19937 &rng, int maxLength)
{
    static const QString pieces[] = {QStringLiteral("a"), QStringLiteral("b"), QStringLiteral(" "),
                                     QStringLiteral("\r\n"), QStringLiteral("word"), QStringLiteral("é")};
    const int length = std::uniform_int_distribution<int>(0, maxLength)(rng);
    QString out;
    for (int i = 0; i < length; ++i)
        out += pieces[std::uniform_int_distribution<int>(0, 5)(rng)];
    return out;
}

void runRandomSession(unsigned seed, bool vague)
{
    std::mt19937 rng(seed);
    TwinHistories twins(vague);
    auto pick = [&rng](int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng); };
    for (int step = 0; step < 300; ++step) {
        const qint32 length = qint32(twins.referenceTarget.text.size());
        const qint32 a = pick(0, length);
        const qint32 b = pick(a, std::min(length, a + 12));
        switch (pick(0, 11)) {
        case 0: case 1: case 2: { // typing or pasting at a caret
            const QString s = randomText(rng, 3);
            if (!s.isEmpty())
                twins.edit(a, 0, s, a + qint32(s.size()));
            break;
        }
        case 3: // deleting a run, as Backspace, Delete or a cut does
            if (b > a)
                twins.edit(a, b - a, QString(), a);
            break;
        case 4: { // overtyping a selection with the same length
            if (b > a) {
                QString s(b - a, u'z');
                twins.edit(a, b - a, s, b);
            }
            break;
        }
        case 5: { // overtyping a selection with another length
            const QString s = randomText(rng, 4);
            if (b > a || !s.isEmpty())
                twins.edit(a, b - a, s, a + qint32(s.size()));
            break;
        }
        case 6: // a whole new text with the caret at the start, as a load does
            twins.edit(0, length, randomText(rng, 20), 0);
            break;
        case 7:
            twins.setCaret(pick(0, length));
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
        if (::testing::Test::HasFatalFailure())
            return;
    }
}

} // namespace

TEST(DifferenzaTesto, TakesTheLongerTextsRunEndingBeforeThePosition)
{
    struct Case { const char *a; const char *b; qint32 posizione; const char *want; };
    const Case cases[] = {
        {"abc", "abxc", 4, "x"},      // an insertion
        {"abxc", "abc", 4, "x"},      // the longer one is found either way
        {"a", "abcd", 5, "bcd"},
        {"a", "abcd", 4, "abc"},      // nothing is compared: the run is taken as it falls
        {"abc", "abd", 3, ""},        // equal lengths
        {"ab", "abcd", 2, ""},        // a start before the first character fails
        {"", "xy", 3, "xy"},
        {"", "xy", 9, ""},            // beyond the end
    };
    for (const Case &c : cases) {
        EXPECT_EQ(DifferenzaTesto(QString::fromUtf8(c.a), QString::fromUtf8(c.b), c.posizione), QString::fromUtf8(c.want))
            << c.a << " / " << c.b << " @" << c.posizione;
    }
}

TEST(UndoHistory, RandomEditsMatchTheFullSnapshotModel)
{
    for (unsigned seed = 1; seed <= 150; ++seed) {
        runRandomSession(seed, false);
        if (HasFatalFailure())
            return;
    }
}

TEST(UndoHistory, MatchesTheModelWhenTheControlCannotTellWhatChanged)
{
    for (unsigned seed = 1000; seed <= 1040; ++seed) {
        runRandomSession(seed, true);
        if (HasFatalFailure())
            return;
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
    twins.edit(0, 0, digits, 0);
    twins.edit(50, 0, QStringLiteral("x"), 51);
    twins.undo();
    twins.undo();
    twins.expectSame("after the undos");
    EXPECT_EQ(twins.compactTarget.text, digits.left(50));
    twins.redo();
    twins.redo();
    twins.expectSame("after the redos");
    EXPECT_EQ(twins.compactTarget.text, digits.left(50) + u'x' + digits.left(50));
    EXPECT_EQ(twins.compactTarget.start, 0);
    EXPECT_EQ(twins.compactTarget.length, 51);
}

TEST(UndoHistory, MemoryGrowsWithTheEditsNotWithTheText)
{
    StringTarget t;
    UndoHistory h;
    h.RegistraUndo = true;
    h.capture(t);
    t.replace(0, 0, QString(200000, u'a'), 0);
    h.capture(t);
    const qint64 afterLoad = h.recordBytes();
    for (int i = 0; i < 2000; ++i) {
        t.replace(100000 + i, 0, QStringLiteral("k"), 100001 + i);
        h.capture(t);
    }
    const qint64 perKeystroke = (h.recordBytes() - afterLoad) / 2000;
    EXPECT_LT(perKeystroke, 160);
    // One whole text is kept, whatever the number of records (with the
    // string's room to grow).
    EXPECT_LT(h.textBytes(), qint64(t.text.size()) * 2 * 2);
}

TEST(UndoHistory, MatchesTheModelOnTheRealControl)
{
    RichTextBox compactBox;
    RichTextBox referenceBox;
    UndoHistory compact;
    FullSnapshotHistory reference;
    compactBox.onChange = [&] {
        if (compact.RegistraUndo)
            compact.capture(compactBox);
    };
    referenceBox.onChange = [&] {
        if (reference.RegistraUndo)
            reference.capture(referenceBox);
    };
    compact.RegistraUndo = reference.RegistraUndo = true;
    compact.capture(compactBox);
    reference.capture(referenceBox);

    std::mt19937 rng(7);
    auto pick = [&rng](int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng); };
    const QString pieces[] = {QStringLiteral("a"), QStringLiteral("\r\n"), QStringLiteral("word "),
                              QStringLiteral("\n"), QStringLiteral("zz")};
    for (int step = 0; step < 600; ++step) {
        const int length = compactBox.textLength();
        const int start = pick(0, length);
        const int selection = pick(0, std::min(6, length - start));
        const int action = pick(0, 9);
        for (RichTextBox *box : {&compactBox, &referenceBox}) {
            box->setSelStart(start);
            box->setSelLength(selection);
        }
        QString text;
        for (int i = pick(0, 3); i > 0; --i)
            text += pieces[pick(0, 4)];
        for (RichTextBox *box : {&compactBox, &referenceBox}) {
            switch (action) {
            case 0: case 1: case 2: box->setSelText(text); break;
            case 3: box->setSelText(QString(box->SelLength(), u'q')); break;
            case 4: box->setSelRTF(QStringLiteral("{\\rtf1\\ansi x\\par y}")); break;
            case 5: if (step % 40 == 0) box->setText(text); break;
            default: break;
            }
        }
        if (action >= 6 && action <= 7) {
            compact.EseguiUndo(compactBox);
            reference.EseguiUndo(referenceBox);
        } else if (action >= 8) {
            compact.EseguiRedo(compactBox);
            reference.EseguiRedo(referenceBox);
        }
        ASSERT_EQ(compactBox.Text(), referenceBox.Text()) << "step " << step;
        ASSERT_EQ(compactBox.SelStart(), referenceBox.SelStart()) << "step " << step;
        ASSERT_EQ(compactBox.SelLength(), referenceBox.SelLength()) << "step " << step;
        ASSERT_EQ(compact.ListaUndo.size(), reference.ListaUndo.size()) << "step " << step;
        ASSERT_EQ(compact.lastText(), reference.ListaUndo.back().Text) << "step " << step;
    }
}
