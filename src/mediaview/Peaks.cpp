#include "mediaview/Peaks.h"

#include <QCryptographicHash>
#include <QDataStream>
#include <QDir>
#include <QFileInfo>
#include <QIODevice>
#include <algorithm>
#include <cmath>

namespace {

constexpr quint32 Mark = 0x4b504d51; // "QMPK"
constexpr quint32 Version = 1;

qint16 toSample(float v)
{
    return qint16(std::lround(std::clamp(v, -1.0f, 1.0f) * 32767.0f));
}

} // namespace

PeaksBuilder::PeaksBuilder(int sampleRate) : m_rate(std::max(sampleRate, 1)), m_stepEnd(m_rate / Peaks::PerSecond) {}

void PeaksBuilder::add(const float *samples, int frames, int channels)
{
    for (int f = 0; f < frames; ++f) {
        while (m_frame >= m_stepEnd)
            closeStep();
        const float *frame = samples + qsizetype(f) * channels;
        for (int c = 0; c < channels; ++c) {
            const float v = frame[c];
            if (!m_any) {
                m_low = m_high = v;
                m_any = true;
            } else {
                m_low = std::min(m_low, v);
                m_high = std::max(m_high, v);
            }
        }
        ++m_frame;
    }
}

void PeaksBuilder::closeStep()
{
    m_peaks.append(m_any ? toSample(m_low) : 0, m_any ? toSample(m_high) : 0);
    m_any = false;
    m_stepEnd = (int64_t(m_peaks.size()) + 1) * m_rate / Peaks::PerSecond;
}

void PeaksBuilder::finish()
{
    if (m_any)
        closeStep();
}

namespace PeaksFile {

Key keyOf(const QString &mediaPath)
{
    const QFileInfo info(mediaPath);
    if (!info.exists())
        return {};
    return {info.size(), info.lastModified().toMSecsSinceEpoch()};
}

QString pathFor(const QString &cacheFolder, const QString &mediaPath)
{
    const QByteArray full = QFileInfo(mediaPath).absoluteFilePath().toUtf8();
    const QByteArray hash = QCryptographicHash::hash(full, QCryptographicHash::Sha1).toHex();
    return cacheFolder + u'/' + QString::fromLatin1(hash) + QStringLiteral(".peaks");
}

QByteArray encode(const Key &key, bool hasVideo, const Peaks &peaks)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setByteOrder(QDataStream::LittleEndian);
    out << Mark << Version << key.size << key.modifiedMs << quint8(hasVideo ? 1 : 0) << quint32(peaks.size());
    for (int i = 0; i < peaks.size(); ++i)
        out << peaks.low[i] << peaks.high[i];
    return bytes;
}

std::optional<Content> decode(const QByteArray &bytes, const Key &key)
{
    QDataStream in(bytes);
    in.setByteOrder(QDataStream::LittleEndian);
    quint32 mark = 0, version = 0, count = 0;
    Key stored;
    quint8 video = 0;
    in >> mark >> version >> stored.size >> stored.modifiedMs >> video >> count;
    if (in.status() != QDataStream::Ok || mark != Mark || version != Version || !(stored == key) || key.size < 0)
        return std::nullopt;
    // The count must agree with the bytes, so a cut file is never half read.
    if (qint64(count) * 4 != bytes.size() - in.device()->pos())
        return std::nullopt;
    Content content;
    content.hasVideo = video != 0;
    content.peaks.low.resize(count);
    content.peaks.high.resize(count);
    for (quint32 i = 0; i < count; ++i)
        in >> content.peaks.low[i] >> content.peaks.high[i];
    return content;
}

} // namespace PeaksFile

std::optional<int> bookmarkSeconds(const QString &line)
{
    const QString time = line.trimmed().right(8);
    const QStringList parts = time.split(u':');
    if (time.size() != 8 || parts.size() != 3)
        return std::nullopt;
    int total = 0;
    for (const QString &part : parts) {
        bool ok = false;
        const int n = part.toInt(&ok);
        if (!ok || n < 0)
            return std::nullopt;
        total = total * 60 + n;
    }
    return total;
}
