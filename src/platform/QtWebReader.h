#pragma once

#include "platform/WebReader.h"

#include <memory>

class QNetworkAccessManager;

// The web reader over Qt Network: never from a cache and never into one, at
// most `maxBytes` of body (anything longer is given up as a failure), and a
// time limit on the whole request, so that a slow or silent server costs
// nothing but the wait in the background.
class QtWebReader : public WebReader
{
public:
    static constexpr int DefaultMaxBytes = 4096;
    static constexpr int DefaultTimeoutMs = 4000;

    explicit QtWebReader(int maxBytes = DefaultMaxBytes, int timeoutMs = DefaultTimeoutMs);
    ~QtWebReader() override;

    void get(const QString &url, QObject *context, std::function<void(const QByteArray &)> done) override;

private:
    int m_maxBytes;
    int m_timeoutMs;
    // Made on the first request: most starts never ask the network anything.
    std::unique_ptr<QNetworkAccessManager> m_manager;
};
