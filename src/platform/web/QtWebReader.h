#pragma once

#include "platform/WebReader.h"

#include <QtGlobal>
#include <memory>

class QNetworkAccessManager;

// The web reader over Qt Network: never from a cache and never into one, at
// most `maxBytes` of body (anything longer is given up as a failure), and a
// time limit on the whole request, so that a slow or silent server costs
// nothing but the wait in the background.
//
// It lives in the module quillmere-web, which the program loads at the first
// request (LazyWebReader): Qt Network and the libraries it pulls in (the
// Kerberos ones, the proxy finder) are not loaded by starts that never ask.
class QtWebReader : public WebReader
{
public:
    QtWebReader(int maxBytes, int timeoutMs);
    ~QtWebReader() override;

    void get(const QString &url, QObject *context, std::function<void(const QByteArray &)> done) override;

private:
    int m_maxBytes;
    int m_timeoutMs;
    // Made on the first request: most starts never ask the network anything.
    std::unique_ptr<QNetworkAccessManager> m_manager;
};

// The module's one entry point.
extern "C" Q_DECL_EXPORT WebReader *quillmere_create_web_reader(int maxBytes, int timeoutMs);
