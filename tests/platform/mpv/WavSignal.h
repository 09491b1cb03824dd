#pragma once

// Small mono 16-bit WAV files with signals that tell where in the file a
// stretch of sound comes from, and a reader for raw 16-bit output.

#include <QDataStream>
#include <QFile>
#include <QString>
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

inline std::vector<int16_t> tone(double hz, double seconds, double amplitude = 0.5)
{
    std::vector<int16_t> samples(size_t(std::lround(seconds * Rate)));
    for (size_t i = 0; i < samples.size(); ++i)
        samples[i] = int16_t(std::lround(32767 * amplitude * std::sin(2 * M_PI * hz * double(i) / Rate)));
    return samples;
}

inline bool write(const QString &path, const std::vector<int16_t> &samples)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    QDataStream out(&file);
    out.setByteOrder(QDataStream::LittleEndian);
    const quint32 dataBytes = quint32(samples.size() * 2);
    out.writeRawData("RIFF", 4);
    out << quint32(36 + dataBytes);
    out.writeRawData("WAVEfmt ", 8);
    // PCM, mono, the rate, bytes per second, bytes per frame, bits.
    out << quint32(16) << quint16(1) << quint16(1) << quint32(Rate) << quint32(Rate * 2) << quint16(2) << quint16(16);
    out.writeRawData("data", 4);
    out << dataBytes;
    for (int16_t sample : samples)
        out << qint16(sample);
    return out.status() == QDataStream::Ok;
}

// Raw little-endian 16-bit samples (mpv's pcm output without a header).
inline std::vector<int16_t> readRaw(const QString &path)
{
    QFile file(path);
    std::vector<int16_t> samples;
    if (!file.open(QIODevice::ReadOnly))
        return samples;
    QDataStream in(&file);
    in.setByteOrder(QDataStream::LittleEndian);
    samples.resize(size_t(file.size() / 2));
    for (int16_t &sample : samples)
        in >> sample;
    return samples;
}

// Frequency of a tone from its rising zero crossings.
inline double frequency(const std::vector<int16_t> &samples, size_t from, size_t to)
{
    int crossings = 0;
    size_t first = 0, last = 0;
    for (size_t i = from + 1; i < to && i < samples.size(); ++i) {
        if (samples[i - 1] < 0 && samples[i] >= 0) {
            if (crossings == 0)
                first = i;
            last = i;
            ++crossings;
        }
    }
    if (crossings < 2)
        return 0;
    return double(crossings - 1) * Rate / double(last - first);
}

} // namespace WavSignal
