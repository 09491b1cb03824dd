#pragma once

// Small mono 16-bit WAV files with signals that tell where in the file a
// stretch of sound comes from, and a reader for raw 16-bit output.

#include <QFile>
#include <QString>
#include <QtEndian>
#include <cmath>
#include <cstdint>
#include <vector>

namespace WavSignal {

constexpr int Rate = 8000;

// Sample i holds i modulo 65536, so any stretch of output tells to the
// sample where it was taken from (within each 8.192 s period at 8 kHz).
inline std::vector<int16_t> ramp(double seconds)
{
    std::vector<int16_t> samples(size_t(std::lround(seconds * Rate)));
    for (size_t i = 0; i < samples.size(); ++i)
        samples[i] = int16_t(uint16_t(i & 0xffff));
    return samples;
}

inline std::vector<int16_t> tone(double hz, double seconds)
{
    std::vector<int16_t> samples(size_t(std::lround(seconds * Rate)));
    for (size_t i = 0; i < samples.size(); ++i)
        samples[i] = int16_t(std::lround(16383 * std::sin(2 * M_PI * hz * double(i) / Rate)));
    return samples;
}

inline bool write(const QString &path, const std::vector<int16_t> &samples)
{
    QByteArray data(int(samples.size() * 2), Qt::Uninitialized);
    qToLittleEndian<int16_t>(samples.data(), qsizetype(samples.size()), data.data());
    const auto le32 = [](quint32 v) {
        QByteArray bytes(4, Qt::Uninitialized);
        qToLittleEndian(v, bytes.data());
        return bytes;
    };
    // PCM, mono, the rate, bytes per second, 2 bytes per frame, 16 bits.
    const QByteArray header = "RIFF" + le32(36 + data.size()) + "WAVEfmt " + le32(16) + le32(0x00010001) + le32(Rate)
                              + le32(Rate * 2) + le32(0x00100002) + "data" + le32(data.size());
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(header + data) == header.size() + data.size();
}

// Raw little-endian 16-bit samples (mpv's pcm output without a header).
inline std::vector<int16_t> readRaw(const QString &path)
{
    QFile file(path);
    const QByteArray bytes = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    std::vector<int16_t> samples(size_t(bytes.size() / 2));
    qFromLittleEndian<int16_t>(bytes.constData(), qsizetype(samples.size()), samples.data());
    return samples;
}

// Frequency of a tone from its rising zero crossings, to within a cycle of
// the stretch's length.
inline double frequency(const std::vector<int16_t> &samples, size_t from, size_t to)
{
    int crossings = 0;
    for (size_t i = from + 1; i < to && i < samples.size(); ++i)
        crossings += samples[i - 1] < 0 && samples[i] >= 0;
    return to > from ? crossings * double(Rate) / double(to - from) : 0;
}

} // namespace WavSignal
