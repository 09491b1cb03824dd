#include "remote/Pedals.h"

#include "app/AppContext.h"

#include <fcntl.h>

namespace {
constexpr int ScanMs = 2000;
}

Pedals::Pedals(AppContext &ctx, QString sysClass, QString dev)
    : ctx(ctx), m_sysClass(std::move(sysClass)), m_dev(std::move(dev)), m_commands(ctx),
      m_driver(ctx.timers(), PedalMap::load(ctx.filesPath(QStringLiteral("Pedals.ini"))),
               [this](PedalAction a) { m_commands.run(a); }),
      m_scanTimer(ctx.timers().createTimer())
{
    m_scanTimer->onTimeout = [this] { scan(); };
    m_scanTimer->setCoarse(true);
    m_scanTimer->setInterval(ScanMs);
    scan();
}

Pedals::~Pedals() = default;

void Pedals::scan()
{
    QSet<QString> present;
    for (const PedalNode &node : findPedals(m_sysClass, m_dev)) {
        present.insert(node.path);
        if (m_readers.count(node.path))
            continue;
        const int fd = ::open(node.path.toLocal8Bit().constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
        if (fd < 0)
            continue;
        attach(node.path, fd, node.model);
        m_scanned.insert(node.path);
    }
    const QSet<QString> gone = m_scanned - present;
    for (const QString &name : gone)
        drop(name);
}

void Pedals::attach(const QString &name, int fd, const HidPedalModel *model)
{
    drop(name);
    m_readers[name] = std::make_unique<PedalReader>(
        fd, model, [this, name](quint8 mask) { m_driver.report(name, mask); },
        [this, name] { drop(name); });
}

void Pedals::drop(const QString &name)
{
    m_scanned.remove(name);
    const auto it = m_readers.find(name);
    if (it == m_readers.end())
        return;
    // The reader may be the caller (its device just went away): it goes
    // once the event it is handling is over.
    it->second.release()->deleteLater();
    m_readers.erase(it);
    m_driver.deviceGone(name);
}
