#pragma once

#include "platform/AudioInput.h"

#include <QByteArray>
#include <QFile>
#include <QString>
#include <array>
#include <deque>
#include <functional>

// The capture engine and its WAV file. Sound arrives from an AudioInput in
// pieces of any size; the engine gathers it into a queue of five buffers of
// `DimBuffer` bytes, and each buffer that fills is handed to `ProcCattura`
// (the handler a hooked recorder window installs), which writes it with
// `ScriviBlocco` and offers every buffer to the queue again. Everything runs
// on the GUI thread.
//
// The file is the only copy of what was said, so beyond the plain writer it
// keeps a valid header while recording: a header with length 0 at the start
// and the two length fields brought up to date after every half second of
// sound (two small writes a second). A crash or a killed process leaves a
// file that plays up to its last half second; after a normal stop the header written by `ScriviIntestazione`
// makes the file exactly what the plain writer leaves.
class WaveIn
{
public:
    static constexpr int NumeroBuffer = 5;

    explicit WaveIn(AudioInput &source);
    ~WaveIn();
    WaveIn(const WaveIn &) = delete;
    WaveIn &operator=(const WaveIn &) = delete;

    // Whether finished buffers reach `ProcCattura`; hooking twice is refused
    // with a message and keeps the first hook.
    void AggancioCattura(bool attiva);
    void AvviaCattura(qint16 canali, qint16 bit, qint32 frequenza, const QString &fileName);
    void PausaCattura();
    void FermaCattura();
    // The finished buffer `buffer` reaches the hooked window.
    void ProcCattura(int buffer);

    void LeggiPicchi(int &sinistro, int &destro);
    qint64 ByteRegistrati() const { return BytesScritti; }
    qint64 SecondiRegistrati() const;
    double ValoreMassimo() const;

    // A little-endian signed 16-bit sample from its two bytes.
    static int IntDaByte(int basso, int alto);

    // The message boxes of the engine (text, style, title).
    std::function<int(const QString &, int, const QString &)> message;

    // A failure that ended what the recording can do, as a language entry:
    // 140 the file could not be written, 141 the device was lost; 0 when
    // none. The window asks on its tick and stops the recording, so that no
    // stop runs inside a write. Reading it clears it.
    int takeFailure();

    bool CattureInCorso = false;
    bool InPausa = false;
    bool ConFile = false;
    bool HeaderScritto = false;
    bool hooked() const { return m_hooked; }
    int DimBuffer = 0;
    qint64 BytesScritti = 0;
    int UltimoBuffer = 0;
    QString TestoErrore;
    AudioFormat Formato;

private:
    struct Buffer
    {
        QByteArray data;
        int bytesRecorded = 0;
        bool done = false;
    };

    void deliver(const QByteArray &bytes);
    void lost(const QString &reason);
    void addBuffer(int i);
    void bufferDone(int i);

    // The file side.
    void ScriviBlocco(const QByteArray *dati);
    void ScriviIntestazione();
    static QByteArray header(const AudioFormat &format, quint32 dataSize);
    void writeLengths();
    void fileFailed();

    AudioInput &m_source;
    bool m_hooked = false;
    std::array<Buffer, NumeroBuffer> m_buffers;
    std::deque<int> m_queue; // buffers offered to the device, the one filling first
    struct
    {
        int buffer = 0;
        bool seenOther = false;
    } StatoPicco;

    QFile m_file;
    qint64 m_fileEnd = 0;      // bytes the writes have put in the file
    qint64 m_nextLengths = 0;  // data size at which the lengths are written again
    bool m_fileFailed = false;
    int m_failure = 0;
};
