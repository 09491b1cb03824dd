#include "platform/web/QtWebReader.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QTimer>
#include <memory>

QtWebReader::QtWebReader(int maxBytes, int timeoutMs) : m_maxBytes(maxBytes), m_timeoutMs(timeoutMs) {}

QtWebReader::~QtWebReader() = default;

void QtWebReader::get(const QString &url, QObject *context, std::function<void(const QByteArray &)> done)
{
    if (!m_manager)
        m_manager = std::make_unique<QNetworkAccessManager>();

    QNetworkRequest request{QUrl(url)};
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    request.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
    request.setHeader(QNetworkRequest::UserAgentHeader, QStringLiteral("Quillmere"));
    // Redirects stay on the same or a safer scheme (Qt's default policy).
    QNetworkReply *reply = m_manager->get(request);

    struct Progress
    {
        QByteArray body;
        bool failed = false;
    };
    auto progress = std::make_shared<Progress>();
    const int maxBytes = m_maxBytes;
    auto take = [reply, progress, maxBytes] {
        if (progress->failed)
            return;
        if (progress->body.size() + reply->bytesAvailable() > maxBytes) {
            progress->failed = true;
            reply->abort();
            return;
        }
        progress->body += reply->readAll();
    };

    // The limit holds for the whole request, a server that trickles included.
    QTimer::singleShot(m_timeoutMs, reply, [reply, progress] {
        progress->failed = true;
        reply->abort();
    });
    QObject::connect(reply, &QNetworkReply::metaDataChanged, reply, [reply, progress, maxBytes] {
        bool known = false;
        const qlonglong length = reply->header(QNetworkRequest::ContentLengthHeader).toLongLong(&known);
        if (known && length > maxBytes && !progress->failed) {
            progress->failed = true;
            reply->abort();
        }
    });
    QObject::connect(reply, &QNetworkReply::readyRead, reply, take);
    QObject::connect(reply, &QNetworkReply::finished, reply, &QObject::deleteLater);
    QObject::connect(reply, &QNetworkReply::finished, context, [reply, progress, take, done = std::move(done)] {
        take();
        const bool ok = !progress->failed && reply->error() == QNetworkReply::NoError;
        done(ok ? progress->body : QByteArray());
    });
}

WebReader *quillmere_create_web_reader(int maxBytes, int timeoutMs)
{
    return new QtWebReader(maxBytes, timeoutMs);
}
