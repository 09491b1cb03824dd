// Pedal reports, evdev records, the pedal map and time stamps: the data side
// of the commands that come from outside the keyboard.

#include "remote/PedalDriver.h"
#include "remote/PedalInput.h"
#include "remote/TimeStamp.h"

#include <gtest/gtest.h>
#include <linux/input.h>

namespace {

QByteArray record(quint16 type, quint16 code, qint32 value)
{
    const input_event e{{}, type, code, value};
    return QByteArray(reinterpret_cast<const char *>(&e), sizeof e);
}

constexpr int L = 1, M = 2, R = 4, F = 8;

} // namespace

TEST(PedalInput, HidReportsOfTheKnownPedals)
{
    const struct { quint16 vendor, product; const char *report; int want; } cases[] = {
        {0x05f3, 0x00ff, "0500", L | R}, // two at once
        {0x05f3, 0x00ff, "02", -1},      // wrong length
        {0x05f3, 0x00ff, "4000", -1},    // a bit it never sends
        {0x0911, 0x1844, "0a000000", M | F},
        {0x0911, 0x091a, "04", R},
        {0x07b4, 0x0218, "0300", L | M},
    };
    for (const auto &c : cases) {
        const HidPedalModel *model = findHidPedal(c.vendor, c.product);
        ASSERT_NE(model, nullptr) << c.vendor << ':' << c.product;
        EXPECT_EQ(pedalsInReport(*model, QByteArray::fromHex(c.report)), c.want) << model->name << ' ' << c.report;
    }
}

TEST(PedalInput, EvdevRecordsCutAnywhereGiveThePedalsDown)
{
    // BTN_1 (middle) down, a sync, BTN_0 (left) down, auto-repeat, BTN_1 up,
    // and a relative move that is no pedal's business.
    const QByteArray stream = record(1, 0x101, 1) + record(0, 0, 0) + record(1, 0x100, 1)
                              + record(1, 0x100, 2) + record(1, 0x101, 0) + record(2, 0, 5);
    for (int cut : {0, 1, 24, 37, 71}) {
        EvdevStream s;
        QList<InputEvent> events = s.feed(stream.left(cut));
        events += s.feed(stream.mid(cut));
        EXPECT_EQ(events.size(), 6) << "cut at " << cut;
        EXPECT_EQ(applyEvdevEvents(0, events.mid(0, 1)), M);
        EXPECT_EQ(applyEvdevEvents(0, events.mid(0, 4)), L | M);
        EXPECT_EQ(applyEvdevEvents(0, events), L);
    }
}

TEST(PedalInput, PedalMapReadsItsLinesAndKeepsDefaultsForTheRest)
{
    const PedalMap m = PedalMap::fromLines({
        QStringLiteral("; MiddlePress=stop"),
        QStringLiteral(" middlepress = PlayPause ; toggles"),
        QStringLiteral("MiddleRelease=none"),
        QStringLiteral("LeftPress=rewind"),  // unknown: default kept
        QStringLiteral("FourthPress=next-bookmark"),
        QStringLiteral("RepeatMs=10"),       // out of range: default kept
    });
    EXPECT_EQ(m.press[Pedal::Middle], PedalAction::PlayPause);
    EXPECT_EQ(m.release[Pedal::Middle], PedalAction::None);
    EXPECT_EQ(m.press[Pedal::Left], PedalAction::StepBackHeld);
    EXPECT_EQ(m.press[Pedal::Right], PedalAction::StepForwardHeld);
    EXPECT_EQ(m.press[Pedal::Fourth], PedalAction::NextBookmark);
    EXPECT_EQ(m.repeatMs, 300);
}

TEST(TimeStamp, StampsUnderAPositionAndMalformedOnes)
{
    const struct { const char *line; int pos; int want; } cases[] = {
        {"[00:01:30] text", 0, 90},
        {"[00:01:30] text", 10, 90},   // just behind the bracket
        {"[00:01:30] text", 11, -1},
        {"a [1:02:03] b", 4, 3723},
        {"x [12:34] y", 5, 754},
        {"[00:00:05] [00:00:09]", 12, 9},
        {"[00:61:00]", 3, -1},
        {"[00:1:30]", 3, -1},
        {"[00:01:30", 3, -1},
        {"[1:2:3:4]", 2, -1},
    };
    for (const auto &c : cases)
        EXPECT_EQ(timeStampAt(QLatin1String(c.line), c.pos).value_or(-1), c.want) << c.line << " @" << c.pos;
}
