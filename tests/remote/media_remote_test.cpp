// The media interface on a private session bus, driven by dbus-send as the
// desktop's media controls would, on the fake player.

#include "TestApp.h"
#include "WaitFor.h"

#include "player/Form1.h"
#include "remote/MediaRemote.h"

#include <QDBusConnection>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <gtest/gtest.h>

namespace {

class SignalLog : public QObject
{
    Q_OBJECT
public:
    QStringList changed; // names of the properties announced, in order
public Q_SLOTS:
    void propertiesChanged(const QString &, const QVariantMap &properties, const QStringList &)
    {
        changed += properties.keys();
    }
};

struct Bus
{
    QProcess daemon;
    QString address;
    Bus()
    {
        if (QStandardPaths::findExecutable(QStringLiteral("dbus-send")).isEmpty())
            return;
        daemon.start(QStringLiteral("dbus-daemon"), QStringLiteral("--session --nofork --print-address").split(u' '));
        if (daemon.waitForReadyRead(5000))
            address = QString::fromUtf8(daemon.readLine()).trimmed();
    }
    ~Bus()
    {
        daemon.terminate();
        daemon.waitForFinished(2000);
    }
    // One call of dbus-send on the player's object, its words split at
    // blanks; its printed reply.
    QString send(const QString &call)
    {
        QProcess p;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), address);
        p.setProcessEnvironment(env);
        const QString dest = QStringLiteral("--dest=org.mpris.MediaPlayer2.quillmere /org/mpris/MediaPlayer2 ");
        p.start(QStringLiteral("dbus-send"),
                QStringLiteral("--session --print-reply %1%2").arg(dest, call).split(u' '));
        // The service answers from this thread's event loop.
        waitFor([&] { return p.state() == QProcess::NotRunning; }, 5000);
        return QString::fromUtf8(p.readAllStandardOutput() + p.readAllStandardError());
    }
    // Get or Set of a property of the player's interface.
    QString property(const char *method, const char *nameAndValue)
    {
        return send(QStringLiteral("org.freedesktop.DBus.Properties.%1 string:org.mpris.MediaPlayer2.Player string:%2")
                        .arg(QLatin1String(method), QLatin1String(nameAndValue)));
    }
    void player(const QString &call) { send(QStringLiteral("org.mpris.MediaPlayer2.Player.") + call); }
    void player(const char *call) { player(QLatin1String(call)); }
};

} // namespace

TEST(MediaRemote, DesktopControlsDriveThePlayerThroughItsRoutines)
{
    Bus bus;
    if (bus.address.isEmpty())
        GTEST_SKIP() << "dbus-daemon or dbus-send is missing, or no private bus could be started";
    TestApp app;
    app.folder.setSettingsLine(5, QStringLiteral("3")); // SecIndietro
    ASSERT_TRUE(app.start());
    const QDBusConnection connection = QDBusConnection::connectToBus(bus.address, QStringLiteral("quillmere"));
    MediaRemote remote(app.ctx(), connection);
    ASSERT_TRUE(remote.registered());
    const QDBusConnection listener = QDBusConnection::connectToBus(bus.address, QStringLiteral("listener"));
    SignalLog log;
    ASSERT_TRUE(QDBusConnection(listener).connect(
        QString(), QStringLiteral("/org/mpris/MediaPlayer2"), QStringLiteral("org.freedesktop.DBus.Properties"),
        QStringLiteral("PropertiesChanged"), &log, SLOT(propertiesChanged(QString, QVariantMap, QStringList))));

    EXPECT_TRUE(bus.property("Get", "PlaybackStatus").contains(QStringLiteral("\"Stopped\"")));
    bus.player("PlayPause"); // nothing open: nothing happens
    EXPECT_EQ(app.player->playState(), PlayerControl::Undefined);

    app.form1().ApriMedia(app.mediaFile(QStringLiteral("talk.wav"), 300));
    app.advance(10000);
    app.form1().cmdPlay_Click(); // paused at 7
    bus.player("PlayPause");
    EXPECT_TRUE(bus.property("Get", "PlaybackStatus").contains(QStringLiteral("\"Playing\"")));
    app.advance(5000);
    bus.player("PlayPause");
    EXPECT_TRUE(bus.property("Get", "PlaybackStatus").contains(QStringLiteral("\"Paused\"")));
    EXPECT_DOUBLE_EQ(app.player->currentPosition(), 9.0); // 12 less the step back

    const QString meta = bus.property("Get", "Metadata");
    EXPECT_TRUE(meta.contains(QStringLiteral("\"talk.wav\""))) << meta.toStdString();
    EXPECT_TRUE(meta.contains(QStringLiteral("int64 300000000"))) << meta.toStdString();
    const QString track = QRegularExpression(QStringLiteral("object path \"([^\"]+)\"")).match(meta).captured(1);
    bus.player(QStringLiteral("SetPosition objpath:%1 int64:42000000").arg(track));
    EXPECT_TRUE(bus.property("Get", "Position").contains(QStringLiteral("int64 42000000")));
    bus.player("SetPosition objpath:/other/track int64:1000000");
    bus.player("Seek int64:-2000000");
    EXPECT_DOUBLE_EQ(app.player->currentPosition(), 40.0);
    EXPECT_EQ(app.player->playState(), PlayerControl::Paused);

    bus.property("Set", "Volume variant:double:0.37");
    bus.property("Set", "Rate variant:double:1.3");
    EXPECT_EQ(app.player->volume(), 37);
    EXPECT_NEAR(app.player->rate(), 1.3, 1e-9);
    EXPECT_EQ(app.form1().Label7->Caption(), QStringLiteral("1.3 x"));

    bus.player("Stop");
    EXPECT_EQ(app.player->playState(), PlayerControl::Stopped);
    app.advance(500); // the look that notices what changed without a call
    waitFor([&] { return log.changed.count(QStringLiteral("PlaybackStatus")) >= 3; });
    EXPECT_GE(log.changed.count(QStringLiteral("PlaybackStatus")), 3) << log.changed.join(u' ').toStdString();
    EXPECT_TRUE(log.changed.contains(QStringLiteral("Metadata")));
}

#include "media_remote_test.moc"
