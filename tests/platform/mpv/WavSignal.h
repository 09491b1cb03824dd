#pragma once

// Small mono 16-bit WAV files with signals that tell where in the file a
// stretch of sound comes from, and a reader for raw 16-bit output.

#include <QByteArray>
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
    QByteArray out;
    const auto u32 = [&out](uint32_t v) {
        for (int i = 0; i < 4; ++i)
            out.append(char((v >> (8 * i)) & 0xff));
    };
    const auto u16 = [&out](uint16_t v) {
        out.append(char(v & 0xff));
        out.append(char(v >> 8));
    };
    const uint32_t dataBytes = uint32_t(samples.size() * 2);
    out.append("RIFF");
    u32(36 + dataBytes);
    out.append("WAVEfmt ");
    u32(16);
    u16(1); // PCM
    u16(1); // mono
    u32(Rate);
    u32(Rate * 2);
    u16(2);
    u16(16);
    out.append("data");
    u32(dataBytes);
    for (int16_t s : samples)
        u16(uint16_t(s));
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(out) == out.size();
}

// Raw little-endian 16-bit samples (mpv's pcm output without a header).
inline std::vector<int16_t> readRaw(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray bytes = file.readAll();
    std::vector<int16_t> samples(size_t(bytes.size() / 2));
    for (size_t i = 0; i < samples.size(); ++i)
        samples[i] = int16_t(uint16_t(uint8_t(bytes[2 * i])) | uint16_t(uint8_t(bytes[2 * i + 1])) << 8);
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
