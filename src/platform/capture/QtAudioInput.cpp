#include "platform/capture/QtAudioInput.h"

#include <QAudioDevice>
#include <QAudioFormat>
#include <QAudioSource>
#include <QMediaDevices>
#include <QPointer>

namespace {

QString errorText(QAudio::Error error)
{
    switch (error) {
    case QAudio::NoError: return QString();
    case QAudio::OpenError: return QStringLiteral("The sound input device could not be opened.");
    case QAudio::IOError: return QStringLiteral("The sound input device could not be read.");
    case QAudio::UnderrunError: return QStringLiteral("The sound input device stopped delivering sound.");
    case QAudio::FatalError: return QStringLiteral("The sound input device is no longer available.");
    }
    return QStringLiteral("The sound input device failed.");
}

} // namespace

// Lives on the capture thread; everything it does runs there.
class CaptureWorker : public QObject
{
public:
    std::function<void(int, const QByteArray &)> onData; // called on the capture thread
    std::function<void(int, const QString &)> onLost;

    QString open(int capture, const AudioFormat &format)
    {
        close();
        m_capture = capture;
        const QAudioDevice device = QMediaDevices::defaultAudioInput();
        if (device.isNull())
            return QStringLiteral("No sound input device is available.");
        QAudioFormat f;
        f.setSampleRate(format.rate);
        f.setChannelCount(format.channels);
        f.setSampleFormat(format.bits == 8 ? QAudioFormat::UInt8 : QAudioFormat::Int16);
        if (!device.isFormatSupported(f))
            return QStringLiteral("The sound input device does not support this format.");
        m_source = new QAudioSource(device, f, this);
        // Pieces of about 20 ms: the meters follow the voice closely, and
        // the server keeps far more than that when the thread is late.
        m_source->setBufferSize(std::max(format.bytesPerSecond() / 50, 1024));
        QObject::connect(m_source, &QAudioSource::stateChanged, this, [this](QAudio::State state) {
            if (m_source && state == QAudio::StoppedState && m_source->error() != QAudio::NoError && onLost)
                onLost(m_capture, errorText(m_source->error()));
        });
        m_io = m_source->start();
        if (!m_io || m_source->error() != QAudio::NoError) {
            const QString reason = errorText(m_source->error() == QAudio::NoError ? QAudio::OpenError
                                                                                   : m_source->error());
            close();
            return reason;
        }
        QObject::connect(m_io, &QIODevice::readyRead, this, [this] {
            // bytesAvailable() reads 0 here while readAll() has the data.
            const QByteArray bytes = m_io ? m_io->readAll() : QByteArray();
            if (!bytes.isEmpty() && onData)
                onData(m_capture, bytes);
        });
        return QString();
    }

    void suspend()
    {
        if (m_source)
            m_source->suspend();
    }
    void resume()
    {
        if (m_source)
            m_source->resume();
    }
    void close()
    {
        if (!m_source)
            return;
        QAudioSource *source = m_source;
        m_source = nullptr;
        m_io = nullptr;
        source->stop();
        delete source;
    }

private:
    int m_capture = 0;
    QPointer<QAudioSource> m_source;
    QIODevice *m_io = nullptr;
};

QtAudioInput::QtAudioInput()
{
    m_thread.setObjectName(QStringLiteral("sound capture"));
    m_worker = new CaptureWorker;
    m_worker->moveToThread(&m_thread);
    m_worker->onData = [this](int capture, const QByteArray &bytes) {
        QMetaObject::invokeMethod(this, [this, capture, bytes] { received(capture, bytes); }, Qt::QueuedConnection);
    };
    m_worker->onLost = [this](int capture, const QString &reason) {
        QMetaObject::invokeMethod(this, [this, capture, reason] { failed(capture, reason); }, Qt::QueuedConnection);
    };
    QObject::connect(&m_thread, &QThread::finished, m_worker, &QObject::deleteLater);
    m_thread.start();
}

QtAudioInput::~QtAudioInput()
{
    close();
    m_thread.quit();
    m_thread.wait();
}

QString QtAudioInput::start(const AudioFormat &format)
{
    const int capture = ++m_capture;
    QString reason;
    QMetaObject::invokeMethod(
        m_worker, [&] { reason = m_worker->open(capture, format); }, Qt::BlockingQueuedConnection);
    return reason;
}

void QtAudioInput::suspend()
{
    QMetaObject::invokeMethod(m_worker, [w = m_worker] { w->suspend(); }, Qt::QueuedConnection);
}

void QtAudioInput::resume()
{
    QMetaObject::invokeMethod(m_worker, [w = m_worker] { w->resume(); }, Qt::QueuedConnection);
}

void QtAudioInput::close()
{
    // What is still on its way belongs to a capture that is over.
    ++m_capture;
    QMetaObject::invokeMethod(m_worker, [w = m_worker] { w->close(); }, Qt::BlockingQueuedConnection);
}

void QtAudioInput::received(int capture, const QByteArray &bytes)
{
    if (capture == m_capture && onData)
        onData(bytes);
}

void QtAudioInput::failed(int capture, const QString &reason)
{
    if (capture == m_capture && onLost)
        onLost(reason);
}

AudioInput *quillmere_create_audio_input()
{
    return new QtAudioInput;
}
