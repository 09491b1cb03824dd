// Foot pedals on the fake player: evdev records through a pipe, hidraw
// reports through a packet socket (one report per read, as a hidraw node
// gives them), and pedals found in a sysfs tree as they come and go.

#include "TestApp.h"
#include "WaitFor.h"

#include "player/Form1.h"
#include "remote/Pedals.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <cstring>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/input.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// A button's event and the report that ends it, as two input_event records.
QByteArray button(quint16 code, qint32 value)
{
    const input_event e[2] = {{{}, EV_KEY, code, value}, {{}, EV_SYN, SYN_REPORT, 0}};
    return QByteArray(reinterpret_cast<const char *>(e), sizeof e);
}

struct Desk
{
    TestApp app;
    QTemporaryDir tree; // a sysfs and a /dev of its own
    std::unique_ptr<Pedals> pedals;
    Desk()
    {
        app.folder.setSettingsLine(4, QStringLiteral("5")); // SecSalto
        app.folder.setSettingsLine(5, QStringLiteral("3")); // SecIndietro
        EXPECT_TRUE(app.start());
        app.form1().ApriMedia(app.mediaFile(QStringLiteral("talk.wav"), 300));
        app.form1().cmdPlay_Click(); // paused
        app.form1().WMP1.setCurrentPosition(60);
        QDir(tree.path()).mkpath(QStringLiteral("dev/input"));
        pedals = std::make_unique<Pedals>(app.ctx(), tree.path() + QStringLiteral("/sys"),
                                          tree.path() + QStringLiteral("/dev"));
    }
    double position() const { return app.player->currentPosition(); }
    bool playing() const { return app.player->playState() == PlayerControl::Playing; }
    // Writes to the device and waits until the player has been told something.
    void feed(int fd, const QByteArray &bytes)
    {
        const qsizetype before = app.player->log.size();
        ASSERT_EQ(::write(fd, bytes.constData(), bytes.size()), bytes.size());
        ASSERT_TRUE(waitFor([&] { return app.player->log.size() > before; }));
    }
    void file(const char *relPath, const char *text)
    {
        const QString path = tree.path() + u'/' + QLatin1String(relPath);
        QDir().mkpath(QFileInfo(path).path());
        QFile f(path);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly) && f.write(text) > 0);
    }
};

} // namespace

TEST(Pedals, AnEvdevPedalPlaysWhileHeldPausesWithTheStepBackAndStepsWhileHeld)
{
    Desk d;
    int p[2];
    ASSERT_EQ(::pipe2(p, O_NONBLOCK | O_CLOEXEC), 0);
    d.pedals->attach(QStringLiteral("pipe"), p[0], nullptr);
    d.feed(p[1], button(BTN_1, 1)); // middle down: play
    EXPECT_TRUE(d.playing());
    d.app.advance(4000);
    d.feed(p[1], button(BTN_1, 0)); // middle up: pause, 3 s back
    EXPECT_FALSE(d.playing());
    EXPECT_DOUBLE_EQ(d.position(), 61.0);
    d.feed(p[1], button(BTN_0, 1)); // left held: a step at once, then every 300 ms
    EXPECT_DOUBLE_EQ(d.position(), 56.0);
    d.app.advance(900);
    EXPECT_DOUBLE_EQ(d.position(), 41.0);
    d.feed(p[1], button(BTN_0, 0) + button(BTN_2, 1)); // left up, right down
    d.app.advance(300);
    EXPECT_DOUBLE_EQ(d.position(), 51.0);
    EXPECT_FALSE(d.playing());
    // Pulled out while the right pedal is down: it stops stepping.
    ::close(p[1]);
    ASSERT_TRUE(waitFor([&] { return d.pedals->deviceCount() == 0; }));
    d.app.advance(900);
    EXPECT_DOUBLE_EQ(d.position(), 51.0);
}

TEST(Pedals, HidrawReportsAreReadOneAtATime)
{
    Desk d;
    int s[2];
    ASSERT_EQ(::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_NONBLOCK | SOCK_CLOEXEC, 0, s), 0);
    d.pedals->attach(QStringLiteral("hid"), s[0], findHidPedal(0x05f3, 0x00ff));
    // Right down, a report of no pedal's length, right and middle down.
    for (const char *report : {"0400", "020000", "0600"})
        ASSERT_GT(::write(s[1], QByteArray::fromHex(report).constData(), strlen(report) / 2), 0);
    ASSERT_TRUE(waitFor([&] { return d.playing(); }));
    EXPECT_GE(d.position(), 65.0);
    d.feed(s[1], QByteArray(2, '\0'));
    EXPECT_FALSE(d.playing());
    ::close(s[1]);
}

TEST(Pedals, PedalsAreFoundInSysfsWhenPluggedInAndDroppedWhenPulledOut)
{
    Desk d;
    // A keyboard, and the input side of an IN-USB (read through its hidraw node).
    d.file("sys/hidraw/hidraw1/device/uevent", "HID_ID=0003:0000046D:0000C31C\n");
    d.file("sys/input/event3/device/id/vendor", "05f3\n");
    d.file("sys/input/event3/device/id/product", "00ff\n");
    d.file("sys/hidraw/hidraw0/device/uevent", "DRIVER=hid-generic\nHID_ID=0003:000005F3:000000FF\n");
    d.file("sys/input/event4/device/name", "Generic USB Foot Pedal\n");
    const QList<PedalNode> nodes = findPedals(d.tree.path() + QStringLiteral("/sys"), QStringLiteral("/dev"));
    ASSERT_EQ(nodes.size(), 2);
    EXPECT_EQ(nodes[0].model, findHidPedal(0x05f3, 0x00ff));
    EXPECT_EQ(nodes[1].path, QStringLiteral("/dev/input/event4"));

    // Plugged in after the start: no node readable yet, then one appears.
    d.app.advance(2000);
    EXPECT_EQ(d.pedals->deviceCount(), 0);
    const QByteArray node = (d.tree.path() + QStringLiteral("/dev/input/event4")).toLocal8Bit();
    ASSERT_EQ(::mkfifo(node.constData(), 0600), 0);
    d.app.advance(2000);
    ASSERT_EQ(d.pedals->deviceCount(), 1);
    const int w = ::open(node.constData(), O_WRONLY | O_NONBLOCK);
    d.feed(w, button(BTN_1, 1));
    EXPECT_TRUE(d.playing());
    // Pulled out with the middle pedal down: the release comes from the drop.
    QDir(d.tree.path() + QStringLiteral("/sys/input/event4")).removeRecursively();
    d.app.advance(2000);
    EXPECT_EQ(d.pedals->deviceCount(), 0);
    EXPECT_FALSE(d.playing());
    ::close(w);
}
