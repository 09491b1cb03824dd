#include "recorder/WaveIn.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

WaveIn::WaveIn(AudioInput &source) : m_source(source)
{
    m_source.onData = [this](const QByteArray &bytes) { deliver(bytes); };
    m_source.onLost = [this](const QString &reason) { lost(reason); };
}

WaveIn::~WaveIn()
{
    m_hooked = false;
    FermaCattura();
    m_source.onData = nullptr;
    m_source.onLost = nullptr;
}

void WaveIn::AggancioCattura(bool attiva)
{
    if (attiva && m_hooked) {
        if (message)
            message(QStringLiteral("Double-hooking not permited!"), 16, QStringLiteral("ERROR!"));
        return;
    }
    m_hooked = attiva;
}

void WaveIn::AvviaCattura(qint16 canali, qint16 bit, qint32 frequenza, const QString &fileName)
{
    CattureInCorso = true;
    BytesScritti = 0;
    m_failure = 0;
    m_fileFailed = false;
    m_fileEnd = 0;

    Formato.channels = canali;
    Formato.bits = bit;
    Formato.rate = frequenza;

    if (!fileName.isEmpty()) {
        ConFile = true;
        QFile::remove(fileName);
        m_file.setFileName(fileName);
        // Unbuffered: what is written is with the system at once, so a
        // killed process loses nothing that was handed over.
        if (m_file.open(QIODevice::ReadWrite | QIODevice::Truncate | QIODevice::Unbuffered)) {
            if (m_file.write(header(Formato, 0)) != 44)
                fileFailed();
        } else {
            fileFailed();
        }
        BytesScritti = 45;
        HeaderScritto = false;
        m_nextLengths = Formato.bytesPerSecond() / 2;
    } else {
        ConFile = false;
    }

    const int align = Formato.blockAlign();
    DimBuffer = align > 0 ? 8192 - 8192 % align : 8192;

    TestoErrore = m_source.start(Formato);
    if (!TestoErrore.isEmpty() && message)
        message(TestoErrore.trimmed(), 0, QString());

    // A fresh set of buffers for each capture, all five queued in order.
    m_queue.clear();
    for (int i = 0; i < NumeroBuffer; ++i) {
        m_buffers[i].data = QByteArray(DimBuffer, '\0');
        m_buffers[i].done = false;
        addBuffer(i);
    }
}

void WaveIn::PausaCattura()
{
    InPausa = !InPausa;
    if (!InPausa) {
        for (int i = 0; i < NumeroBuffer; ++i)
            addBuffer(i);
        m_source.resume();
    } else {
        m_source.suspend();
        // Stopping the device hands back the buffer it was filling; its
        // message comes while paused and is dropped with it.
        if (!m_queue.empty() && m_buffers[m_queue.front()].bytesRecorded > 0) {
            const int i = m_queue.front();
            m_queue.pop_front();
            bufferDone(i);
        }
    }
}

void WaveIn::FermaCattura()
{
    if (!CattureInCorso)
        return;
    m_source.close();
    // The reset hands every queued buffer back after the device is closed:
    // what they hold is not written.
    for (int i : m_queue)
        m_buffers[i].done = true;
    m_queue.clear();
    if (!HeaderScritto && ConFile)
        ScriviIntestazione();
    if (ConFile)
        m_file.close();
    CattureInCorso = false;
    InPausa = false;
}

void WaveIn::addBuffer(int i)
{
    // A buffer still in the queue is refused, and the refusal ignored.
    if (std::find(m_queue.begin(), m_queue.end(), i) != m_queue.end())
        return;
    m_buffers[i].done = false;
    m_buffers[i].bytesRecorded = 0;
    m_queue.push_back(i);
}

void WaveIn::bufferDone(int i)
{
    m_buffers[i].done = true;
    if (m_hooked)
        ProcCattura(i);
}

void WaveIn::deliver(const QByteArray &bytes)
{
    if (!CattureInCorso || InPausa)
        return;
    qsizetype at = 0;
    // With no buffer in the queue the device has nowhere to put the sound.
    while (at < bytes.size() && !m_queue.empty()) {
        const int i = m_queue.front();
        Buffer &b = m_buffers[i];
        const qsizetype n = std::min<qsizetype>(bytes.size() - at, DimBuffer - b.bytesRecorded);
        std::copy_n(bytes.constData() + at, n, b.data.data() + b.bytesRecorded);
        b.bytesRecorded += int(n);
        at += n;
        if (b.bytesRecorded == DimBuffer) {
            m_queue.pop_front();
            bufferDone(i);
        }
    }
}

void WaveIn::ProcCattura(int buffer)
{
    if (InPausa || buffer < 0 || buffer >= NumeroBuffer)
        return;
    const Buffer &b = m_buffers[buffer];
    if (b.done) {
        if (ConFile) {
            // One byte more than was recorded, the last one 0: the next
            // block covers it, and only the last block of a file leaves it.
            QByteArray dati(b.data.constData(), b.bytesRecorded);
            dati.append('\0');
            ScriviBlocco(&dati);
        } else {
            ScriviBlocco(nullptr);
        }
        UltimoBuffer = buffer;
    }
    for (int i = 0; i < NumeroBuffer; ++i)
        addBuffer(i);
}

void WaveIn::lost(const QString &reason)
{
    if (!CattureInCorso)
        return;
    TestoErrore = reason;
    if (m_failure == 0)
        m_failure = 141;
}

int WaveIn::takeFailure()
{
    return std::exchange(m_failure, 0);
}

qint64 WaveIn::SecondiRegistrati() const
{
    const int perSecond = Formato.bytesPerSecond();
    return perSecond > 0 ? BytesScritti / perSecond : 0;
}

double WaveIn::ValoreMassimo() const
{
    if (Formato.bits == 16)
        return 32767.0;
    if (Formato.bits == 8)
        return 127.0;
    return 0.0;
}

int WaveIn::IntDaByte(int basso, int alto)
{
    return alto > 127 ? (alto * 256 + basso) - 65536 : alto * 256 + basso;
}

void WaveIn::LeggiPicchi(int &sinistro, int &destro)
{
    const int align = Formato.blockAlign();
    const int n = int(std::lround(Formato.rate / 1000.0 * align));

    if (StatoPicco.buffer != UltimoBuffer && !StatoPicco.seenOther)
        StatoPicco.seenOther = true;
    else if (!StatoPicco.seenOther && StatoPicco.buffer == 0)
        return;
    StatoPicco.buffer = UltimoBuffer == 0 ? NumeroBuffer - 1 : UltimoBuffer - 1;
    if (n <= 0 || align <= 0)
        return;

    // The device may be filling this buffer again: accepted for a display.
    const QByteArray &data = m_buffers[StatoPicco.buffer].data;
    const int bytes = std::min<int>(n, int(data.size()));
    const auto at = [&](int i) { return i < bytes ? int(quint8(data[i])) : 0; };
    const int upper = n - 1;
    int left = 0;
    int right = 0;
    const bool stereo = Formato.channels == 2;
    for (int i = 0; i < upper - 1; i += align) {
        if (Formato.bits == 8) {
            left = std::max(left, std::abs(at(i) - 128));
            if (stereo)
                right = std::max(right, std::abs(at(i + 1) - 128));
        } else if (Formato.bits == 16) {
            left = std::max(left, std::abs(IntDaByte(at(i), at(i + 1))));
            if (stereo)
                right = std::max(right, std::abs(IntDaByte(at(i + 2), at(i + 3))));
        }
    }
    sinistro = left;
    destro = stereo ? right : left;
}
