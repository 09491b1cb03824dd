// The file side of the capture engine: the blocks as the device delivered
// them and the RIFF header.

#include "recorder/WaveIn.h"

#include <QtEndian>

namespace {

void putU32(QByteArray &b, int at, quint32 v)
{
    qToLittleEndian<quint32>(v, b.data() + at);
}

void putU16(QByteArray &b, int at, quint16 v)
{
    qToLittleEndian<quint16>(v, b.data() + at);
}

} // namespace

QByteArray WaveIn::header(const AudioFormat &format, quint32 dataSize)
{
    QByteArray h(44, '\0');
    h.replace(0, 4, "RIFF");
    putU32(h, 4, dataSize + 36);
    h.replace(8, 8, "WAVEfmt ");
    putU32(h, 16, 16);
    putU16(h, 20, 1);
    putU16(h, 22, quint16(format.channels));
    putU32(h, 24, quint32(format.rate));
    putU32(h, 28, quint32(format.bytesPerSecond()));
    putU16(h, 32, quint16(format.blockAlign()));
    putU16(h, 34, quint16(format.bits));
    h.replace(36, 4, "data");
    putU32(h, 40, dataSize);
    return h;
}

void WaveIn::ScriviBlocco(const QByteArray *dati)
{
    if (!dati) {
        BytesScritti += DimBuffer;
        return;
    }
    if (BytesScritti == 0)
        BytesScritti = 1;
    if (!m_fileFailed) {
        const qint64 at = BytesScritti - 1;
        if (m_file.seek(at) && m_file.write(*dati) == dati->size())
            m_fileEnd = std::max(m_fileEnd, at + dati->size());
        else
            fileFailed();
    }
    BytesScritti += DimBuffer;
    if (!m_fileFailed && BytesScritti - 45 >= m_nextLengths) {
        writeLengths();
        m_nextLengths += Formato.bytesPerSecond() / 2;
    }
}

void WaveIn::writeLengths()
{
    // The whole blocks written so far; the zero byte behind the last one is
    // left out until the stop counts it.
    const quint32 data = quint32(std::max<qint64>(0, m_fileEnd - 45));
    QByteArray riff(4, '\0');
    QByteArray size(4, '\0');
    putU32(riff, 0, data + 36);
    putU32(size, 0, data);
    if (!(m_file.seek(4) && m_file.write(riff) == 4 && m_file.seek(40) && m_file.write(size) == 4))
        fileFailed();
}

void WaveIn::fileFailed()
{
    if (m_fileFailed)
        return;
    m_fileFailed = true;
    if (m_failure == 0)
        m_failure = 140;
    // A block cut short by a full disk is taken off: the file is then what
    // it would be had that block never come, and the stop's header fits it.
    if (m_file.isOpen())
        m_file.resize(std::max<qint64>(m_fileEnd, 44));
}

void WaveIn::ScriviIntestazione()
{
    // The plain writer's header: the sizes from the length of the file as
    // its writes made it (so -44 when nothing came), and a 45th byte 0 over
    // the first byte of the data.
    const quint32 dataSize = quint32(m_fileEnd - 44);
    QByteArray h = header(Formato, dataSize);
    h.append('\0');
    if (m_file.seek(0))
        m_file.write(h);
    HeaderScritto = true;
}
