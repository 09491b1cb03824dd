#include "remote/PedalDevices.h"

#include "platform/TextFile.h"

#include <QDir>
#include <QSet>
#include <QSocketNotifier>
#include <cerrno>
#include <unistd.h>

namespace {

QString firstLine(const QString &path)
{
    return TextFile::readLines(path).value_or(QStringList()).value(0).trimmed();
}

// HID_ID=0003:000005F3:000000FF: bus, vendor, product in hexadecimal.
bool hidIds(const QString &ueventPath, quint16 &vendor, quint16 &product)
{
    const QStringList lines = TextFile::readLines(ueventPath).value_or(QStringList());
    for (const QString &line : lines) {
        if (!line.startsWith(u"HID_ID="))
            continue;
        const QStringList parts = line.mid(7).split(u':');
        bool okV = false, okP = false;
        vendor = quint16(parts.value(1).toUInt(&okV, 16));
        product = quint16(parts.value(2).toUInt(&okP, 16));
        return parts.size() == 3 && okV && okP;
    }
    return false;
}

QString idKey(quint16 vendor, quint16 product)
{
    return QString::number(vendor, 16) + u':' + QString::number(product, 16);
}

} // namespace

QList<PedalNode> findPedals(const QString &sysClass, const QString &dev)
{
    QList<PedalNode> found;
    QSet<QString> withHidraw;
    const QDir hidraw(sysClass + QStringLiteral("/hidraw"));
    for (const QString &name : hidraw.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
        quint16 vendor = 0, product = 0;
        if (!hidIds(hidraw.filePath(name) + QStringLiteral("/device/uevent"), vendor, product))
            continue;
        if (const HidPedalModel *model = findHidPedal(vendor, product)) {
            found.append({dev + u'/' + name, model});
            withHidraw.insert(idKey(vendor, product));
        }
    }
    const QDir input(sysClass + QStringLiteral("/input"));
    for (const QString &name : input.entryList({QStringLiteral("event*")}, QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
        const QString device = input.filePath(name) + QStringLiteral("/device/");
        bool okV = false, okP = false;
        const quint16 vendor = quint16(firstLine(device + QStringLiteral("id/vendor")).toUInt(&okV, 16));
        const quint16 product = quint16(firstLine(device + QStringLiteral("id/product")).toUInt(&okP, 16));
        const QString title = firstLine(device + QStringLiteral("name"));
        const bool known = okV && okP && findHidPedal(vendor, product);
        const bool named = title.contains(u"pedal", Qt::CaseInsensitive)
                           || title.contains(u"foot", Qt::CaseInsensitive);
        if ((known && !withHidraw.contains(idKey(vendor, product))) || (!known && named))
            found.append({dev + QStringLiteral("/input/") + name, nullptr});
    }
    return found;
}

PedalReader::PedalReader(int fd, const HidPedalModel *model, std::function<void(quint8)> onMask,
                         std::function<void()> onGone)
    : m_fd(fd), m_model(model), m_onMask(std::move(onMask)), m_onGone(std::move(onGone)),
      m_notifier(std::make_unique<QSocketNotifier>(fd, QSocketNotifier::Read))
{
    connect(m_notifier.get(), &QSocketNotifier::activated, this, [this] { readable(); });
}

PedalReader::~PedalReader()
{
    m_notifier.reset();
    ::close(m_fd);
}

void PedalReader::readable()
{
    // A hidraw node gives one report per read; 64 bytes hold any pedal's.
    char buffer[64 * EvdevStream::RecordSize];
    for (;;) {
        const ssize_t n = ::read(m_fd, buffer, m_model ? 64 : sizeof buffer);
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0 && (errno == EAGAIN || errno == EWOULDBLOCK))
            return;
        if (n <= 0) {
            // Unplugged: stop listening; the owner drops this reader.
            m_notifier->setEnabled(false);
            if (m_onGone)
                m_onGone();
            return;
        }
        const QByteArray bytes(buffer, int(n));
        const int mask = m_model ? pedalsInReport(*m_model, bytes)
                                 : applyEvdevEvents(m_mask, m_stream.feed(bytes));
        if (mask >= 0 && quint8(mask) != m_mask) {
            m_mask = quint8(mask);
            m_onMask(m_mask);
        }
    }
}
