// The update check at start against a local HTTP server: the one answer that
// asks, the answers that must stay silent, and servers that fail in the
// ways the network does. The player is on screen and usable throughout.

#include "TestApp.h"
#include "WaitFor.h"

#include "outside/Version.h"
#include "platform/QtWebReader.h"
#include "player/Form1.h"

#include <QElapsedTimer>
#include <QTcpServer>
#include <QTcpSocket>
#include <gtest/gtest.h>

namespace {

// Answers every request with one canned response; an empty response means
// the server accepts and then says nothing.
class LocalServer
{
public:
    explicit LocalServer(QByteArray response) : m_response(std::move(response))
    {
        m_server.listen(QHostAddress::LocalHost);
        QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this] {
            while (QTcpSocket *socket = m_server.nextPendingConnection()) {
                QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
                    m_request += socket->readAll();
                    if (!m_request.contains("\r\n\r\n") || m_response.isEmpty())
                        return;
                    socket->write(m_response);
                    socket->disconnectFromHost();
                });
            }
        });
    }
    bool listening() const { return m_server.isListening(); }
    QString url() const { return QStringLiteral("http://127.0.0.1:%1/ver.txt").arg(m_server.serverPort()); }
    void close() { m_server.close(); }
    const QByteArray &request() const { return m_request; }

private:
    QTcpServer m_server;
    QByteArray m_response;
    QByteArray m_request;
};

QByteArray http(const QByteArray &status, const QByteArray &body, bool withLength = true)
{
    QByteArray head = "HTTP/1.1 " + status + "\r\nContent-Type: text/plain\r\nConnection: close\r\n";
    if (withLength)
        head += "Content-Length: " + QByteArray::number(body.size()) + "\r\n";
    return head + "\r\n" + body;
}

struct Check
{
    TestApp app;
    LocalServer server;

    explicit Check(QByteArray response) : server(std::move(response))
    {
        app.folder.setSettingsLine(24, QStringLiteral("1"));
        app.web->target = std::make_unique<QtWebReader>();
        app.web->address = server.url();
    }
};

} // namespace

TEST(UpdateCheck, AsksOnlyForANewerVersionOfNineCharacters)
{
    const QByteArray big(10 * 1024 * 1024, '9');
    struct Row
    {
        const char *what;
        QByteArray response;
        bool asks;
    } rows[] = {
        {"newer revision", http("200 OK", "001015003"), true},
        {"letters sort above digits", http("200 OK", "00a000000"), true},
        {"the same version", http("200 OK", "001015002"), false},
        {"an older one", http("200 OK", "001014009"), false},
        {"with a line end", http("200 OK", "999999999\r\n"), false},
        {"an HTML error page", http("404 Not Found", "<html><body>Not Found</body></html>"), false},
        {"nine characters of an error", http("500 Internal Server Error", "999999999"), false},
        {"an empty body", http("200 OK", ""), false},
        {"10 MB announced", http("200 OK", big), false},
        {"10 MB unannounced", http("200 OK", big, false), false},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.what);
        Check check(row.response);
        ASSERT_TRUE(check.server.listening());
        check.app.dialogs->msgBoxAnswers = {MsgBox::No};
        ASSERT_TRUE(check.app.start());
        ASSERT_TRUE(waitFor([&] { return !check.app.web->answers.isEmpty(); }, 6000));
        EXPECT_EQ(check.app.web->urls, QStringList{Outside::versionFileAddress()});
        EXPECT_TRUE(check.server.request().startsWith("GET /ver.txt HTTP/1.1\r\n"));
        EXPECT_LE(check.app.web->answers.first().size(), QtWebReader::DefaultMaxBytes);
        EXPECT_EQ(check.app.dialogs->messages.size(), row.asks ? 1 : 0);
        // No is as if nothing had happened.
        EXPECT_FALSE(check.app.ctx().processEnded());
        EXPECT_TRUE(check.app.shell->urls.isEmpty());
    }
}

TEST(UpdateCheck, YesOpensThePageAndEndsWithoutSaving)
{
    Check check(http("200 OK", "001015003"));
    const QByteArray settings = check.app.folder.read(QStringLiteral("Files/Quillmere.ini"));
    check.app.dialogs->msgBoxAnswers = {MsgBox::Yes};
    ASSERT_TRUE(check.app.start());
    ASSERT_TRUE(waitFor([&] { return check.app.ctx().processEnded(); }, 6000));

    ASSERT_EQ(check.app.dialogs->messages.size(), 1);
    const FakeDialogs::Message &m = check.app.dialogs->messages.first();
    EXPECT_EQ(m.text, QString(check.app.ctx().Lingua(131)).replace(QStringLiteral("<BR>"), QStringLiteral("\r\n\r\n")));
    EXPECT_TRUE(m.text.contains(QStringLiteral("\r\n\r\n")));
    EXPECT_EQ(m.style, 68);
    EXPECT_EQ(m.title, check.app.ctx().Lingua(132));
    EXPECT_EQ(check.app.shell->urls, QStringList{Outside::webPage("/quillmere.html")});
    EXPECT_EQ(check.app.folder.read(QStringLiteral("Files/Quillmere.ini")), settings);
}

TEST(UpdateCheck, SilentOrAbsentServerNeitherHoldsTheStartNorAsks)
{
    for (const bool listening : {true, false}) {
        SCOPED_TRACE(listening ? "accepts and never answers" : "no server");
        Check check{QByteArray()};
        if (!listening)
            check.server.close();
        QElapsedTimer clock;
        clock.start();
        ASSERT_TRUE(check.app.start());
        // Up and usable at once: the window is shown and takes a command.
        EXPECT_LT(clock.elapsed(), 1000);
        EXPECT_TRUE(check.app.form1().isVisible());
        check.app.form1().mnuCheckUpdateStartup->trigger();
        EXPECT_FALSE(check.app.form1().mnuCheckUpdateStartup->isChecked());

        ASSERT_TRUE(waitFor([&] { return !check.app.web->answers.isEmpty(); }, QtWebReader::DefaultTimeoutMs + 2000));
        EXPECT_LT(clock.elapsed(), QtWebReader::DefaultTimeoutMs + 1000);
        EXPECT_EQ(check.app.web->answers.first(), QByteArray());
        EXPECT_TRUE(check.app.dialogs->messages.isEmpty());
    }
}

TEST(UpdateCheck, RunsOnlyWhenTheSettingIsOn)
{
    TestApp app;
    app.folder.setSettingsLine(24, QStringLiteral("0"));
    ASSERT_TRUE(app.start());
    EXPECT_TRUE(app.web->urls.isEmpty());
}
