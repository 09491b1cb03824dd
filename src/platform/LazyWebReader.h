#pragma once

#include "platform/WebReader.h"

#include <QLibrary>
#include <memory>

// The program's web reader: the module quillmere-web's own, loaded at the
// first request. Until then nothing of the network is loaded. Without the
// module every request fails, as with no network.
class LazyWebReader : public WebReader
{
public:
    static constexpr int DefaultMaxBytes = 4096;
    static constexpr int DefaultTimeoutMs = 4000;

    // moduleDir: the folder holding the module, normally the program folder.
    explicit LazyWebReader(const QString &moduleDir, int maxBytes = DefaultMaxBytes,
                           int timeoutMs = DefaultTimeoutMs);
    ~LazyWebReader() override;

    void get(const QString &url, QObject *context, std::function<void(const QByteArray &)> done) override;

private:
    QLibrary m_library;
    int m_maxBytes;
    int m_timeoutMs;
    std::unique_ptr<WebReader> m_real;
};
