// The update check at start against a local HTTP server: the one answer that
// asks, the answers that must stay silent, and servers that fail in the
// ways the network does. The player is on screen and usable throughout.

#include "TestApp.h"
#include "WaitFor.h"

#include "outside/Version.h"
#include "platform/LazyWebReader.h"
#include "player/Form1.h"

#include <QAction>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTcpServer>
#include <QTcpSocket>
#include <gtest/gtest.h>

namespace {

// Answers every request with one canned response; with none it accepts and
// then says nothing.
struct LocalServer : QTcpServer
{
    QByteArray response, request;
    explicit LocalServer(QByteArray r) : response(std::move(r))
    {
        listen(QHostAddress::LocalHost);
        connect(this, &QTcpServer::newConnection, this, [this] {
            QTcpSocket *socket = nextPendingConnection();
            connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
                request += socket->readAll();
                if (request.contains("\r\n\r\n") && !response.isEmpty()) {
                    socket->write(response);
                    socket->disconnectFromHost();
                }
            });
        });
    }
};

QByteArray http(const QByteArray &status, const QByteArray &body, bool withLength = true)
{
    const QByteArray length = withLength ? "Content-Length: " + QByteArray::number(body.size()) + "\r\n" : QByteArray();
    return "HTTP/1.1 " + status + "\r\nConnection: close\r\n" + length + "\r\n" + body;
}

// The program with the check on, its address pointed at the server.
struct Check : TestApp
{
    LocalServer server;
    explicit Check(QByteArray response) : server(std::move(response))
    {
        folder.setSettingsLine(24, QStringLiteral("1"));
        web->target = std::make_unique<LazyWebReader>(QStringLiteral(QM_MODULE_DIR));
        web->address = QStringLiteral("http://127.0.0.1:%1/ver.txt").arg(server.serverPort());
    }
};

} // namespace

TEST(UpdateCheck, AsksOnlyForANewerVersionOfNineCharacters)
{
    const QByteArray big(10 * 1024 * 1024, '9');
    const struct { const char *what; QByteArray response; int answer; } rows[] = {
        {"newer, Yes", http("200 OK", "001015003"), MsgBox::Yes},
        {"letters sort above digits, No", http("200 OK", "00a000000"), MsgBox::No},
        {"the same version", http("200 OK", "001015002"), 0},
        {"an older one", http("200 OK", "001014009"), 0},
        {"with a line end", http("200 OK", "999999999\r\n"), 0},
        {"nine characters of an error", http("500 Internal Server Error", "999999999"), 0},
        {"10 MB with no length announced", http("200 OK", big, false), 0},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.what);
        Check app(row.response);
        const QByteArray settings = app.folder.read(QStringLiteral("Files/Quillmere.ini"));
        app.dialogs->msgBoxAnswers = {row.answer};
        ASSERT_TRUE(app.start());
        ASSERT_TRUE(waitFor([&] { return !app.web->answers.isEmpty(); }, 6000));
        EXPECT_EQ(app.web->urls, QStringList{Outside::versionFileAddress()});
        EXPECT_LE(app.web->answers.first().size(), LazyWebReader::DefaultMaxBytes);
        ASSERT_EQ(app.dialogs->messages.size(), row.answer ? 1 : 0);
        if (row.answer) {
            const FakeDialogs::Message &m = app.dialogs->messages.first();
            EXPECT_TRUE(m.text.contains(QStringLiteral("\r\n\r\n"))); // <BR><BR>
            EXPECT_EQ(m.style, 68);
            EXPECT_EQ(m.title, app.ctx().Lingua(132));
        }
        // Yes opens the page and ends at once, without saving; No is as if
        // nothing had happened.
        const bool yes = row.answer == MsgBox::Yes;
        EXPECT_EQ(app.ctx().processEnded(), yes);
        EXPECT_EQ(app.shell->urls, yes ? QStringList{Outside::webPage("/quillmere.html")} : QStringList());
        EXPECT_EQ(app.folder.read(QStringLiteral("Files/Quillmere.ini")), settings);
    }
}

TEST(UpdateCheck, SilentOrAbsentServerNeitherHoldsTheStartNorAsks)
{
    for (const bool listening : {true, false}) {
        SCOPED_TRACE(listening ? "accepts and never answers" : "no server");
        Check app{QByteArray()};
        if (!listening)
            app.server.close();
        QElapsedTimer clock;
        clock.start();
        ASSERT_TRUE(app.start());
        // Up and usable at once: the window is shown and takes a command.
        EXPECT_LT(clock.elapsed(), 1000);
        EXPECT_TRUE(app.form1().isVisible());
        app.form1().mnuCheckUpdateStartup->trigger();
        EXPECT_FALSE(app.form1().mnuCheckUpdateStartup->isChecked());

        ASSERT_TRUE(waitFor([&] { return !app.web->answers.isEmpty(); }, LazyWebReader::DefaultTimeoutMs + 2000));
        EXPECT_LT(clock.elapsed(), LazyWebReader::DefaultTimeoutMs + 1000);
        EXPECT_EQ(app.web->answers.first(), QByteArray());
        EXPECT_TRUE(app.dialogs->messages.isEmpty());
    }
    TestApp off;
    off.folder.setSettingsLine(24, QStringLiteral("0"));
    ASSERT_TRUE(off.start());
    EXPECT_TRUE(off.web->urls.isEmpty());
}

// A program folder without the web module: every request fails, as with no
// network, and like every answer the failure comes after the call.
TEST(LazyWebReader, WithoutItsModuleEveryRequestFailsLater)
{
    QTemporaryDir empty;
    LazyWebReader reader(empty.path());
    QObject context;
    QList<QByteArray> answers;
    reader.get(QStringLiteral("http://127.0.0.1:1/"), &context, [&](const QByteArray &b) { answers << b; });
    EXPECT_TRUE(answers.isEmpty());
    ASSERT_TRUE(waitFor([&] { return !answers.isEmpty(); }, 1000));
    EXPECT_EQ(answers, QList<QByteArray>{QByteArray()});
}
