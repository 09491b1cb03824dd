#include "platform/LazyWebReader.h"

#include <QTimer>

namespace {

// The module's entry point (see platform/web/QtWebReader.h).
using CreateReader = WebReader *(*)(int maxBytes, int timeoutMs);
const char *const EntryPoint = "quillmere_create_web_reader";

} // namespace

LazyWebReader::LazyWebReader(const QString &moduleDir, int maxBytes, int timeoutMs)
    : m_library(moduleDir + QStringLiteral("/quillmere-web")), m_maxBytes(maxBytes), m_timeoutMs(timeoutMs)
{
    // Qt Network keeps threads and objects of its own once used.
    m_library.setLoadHints(QLibrary::PreventUnloadHint);
}

LazyWebReader::~LazyWebReader() = default;

void LazyWebReader::get(const QString &url, QObject *context, std::function<void(const QByteArray &)> done)
{
    if (!m_real) {
        if (auto create = reinterpret_cast<CreateReader>(m_library.resolve(EntryPoint)))
            m_real.reset(create(m_maxBytes, m_timeoutMs));
    }
    if (m_real) {
        m_real->get(url, context, std::move(done));
        return;
    }
    // The failure comes later, as every answer does.
    QTimer::singleShot(0, context, [done = std::move(done)] { done(QByteArray()); });
}
