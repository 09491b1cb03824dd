// The editor's undo history against the model it replaces: one full text
// per record. The compact history keeps only the edits and must act the
// same in every case, the odd ones of the design included.

#include "UndoReference.h"

#include "editor/UndoHistory.h"

#include <gtest/gtest.h>
#include <random>

namespace {

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
    struct Case
    {
        const char *a;
        const char *b;
        qint32 posizione;
        const char *want;
    };
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

TEST(UndoHistory, EqualLengthReplacementUndoesToNothingButPopsTheRecord)
{
    TwinHistories twins;
    twins.edit(0, 0, QStringLiteral("cat"), 3);
    twins.edit(0, 3, QStringLiteral("dog"), 3);
    twins.undo();
    twins.expectSame("undo");
    EXPECT_EQ(twins.compactTarget.text, QStringLiteral("dog"));
    EXPECT_EQ(twins.compact.ListaUndo.size(), 2u);
    EXPECT_EQ(twins.compact.ListaRedo.size(), 1u);
}

TEST(UndoHistory, FewerThanTwoRecordsDoNothingAndTheFlagIsBackOn)
{
    StringTarget t;
    UndoHistory h;
    h.RegistraUndo = true;
    h.capture(t);
    h.EseguiUndo(t);
    h.EseguiRedo(t);
    EXPECT_EQ(h.ListaUndo.size(), 1u);
    EXPECT_TRUE(h.RegistraUndo);
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
