#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

// The loudest and the softest sample of every 10 ms of a recording, over all
// its channels, in 16-bit full scale: what the waveform draws. An hour is
// 360,000 pairs, 1.4 MB.
struct Peaks
{
    static constexpr int PerSecond = 100;
    std::vector<qint16> low;
    std::vector<qint16> high;

    int size() const { return int(low.size()); }
    void append(qint16 lo, qint16 hi)
    {
        low.push_back(lo);
        high.push_back(hi);
    }
};

// Gathers decoded samples, interleaved floats of full scale 1.0, into peaks.
// The 10 ms steps are counted in samples from the start, so that a rate
// that is not a multiple of 100 (22050 Hz) does not drift.
class PeaksBuilder
{
public:
    explicit PeaksBuilder(int sampleRate);
    void add(const float *samples, int frames, int channels);
    // The last, partial step.
    void finish();
    const Peaks &peaks() const { return m_peaks; }

private:
    void closeStep();

    int m_rate;
    int64_t m_frame = 0;
    int64_t m_stepEnd;
    float m_low = 0;
    float m_high = 0;
    bool m_any = false;
    Peaks m_peaks;
};

// What a decoder finds in a media file before it decodes.
struct MediaFacts
{
    bool hasAudio = false;
    bool hasVideo = false;
    int sampleRate = 0;
    double seconds = 0; // as the container estimates it; may be short
};

// Where a decoder puts what it decodes; it asks cancelled() between packets.
class DecodeTarget
{
public:
    virtual ~DecodeTarget() = default;
    virtual void opened(const MediaFacts &facts) = 0;
    virtual void samples(const float *interleaved, int frames, int channels) = 0;
    virtual bool cancelled() const = 0;
};

enum class DecodeResult { Done, NoAudio, Unreadable, Cancelled };

// Decodes the first audio stream of a file into the target. Runs on a
// thread of its own, so it touches nothing but its arguments.
using AudioDecoder = std::function<DecodeResult(const QString &path, DecodeTarget &target)>;

// The peaks file kept for a media file: a fixed header (mark, version, the
// media's size and time stamp, which are the key, whether it has video, the
// count) and the pairs, little-endian. A file whose key does not match the
// media as it is now is stale.
namespace PeaksFile {
struct Key
{
    qint64 size = -1;
    qint64 modifiedMs = 0;
    bool operator==(const Key &) const = default;
};
Key keyOf(const QString &mediaPath);
// Where the peaks of a media file are kept, inside cacheFolder: named by a
// hash of the media's full path.
QString pathFor(const QString &cacheFolder, const QString &mediaPath);
QByteArray encode(const Key &key, bool hasVideo, const Peaks &peaks);
struct Content
{
    Peaks peaks;
    bool hasVideo = false;
};
// nullopt when the bytes are not a peaks file or belong to another key.
std::optional<Content> decode(const QByteArray &bytes, const Key &key);
} // namespace PeaksFile

// The seconds of a bookmark line (its last 8 characters, hh:mm:ss);
// nullopt for a line that has none.
std::optional<int> bookmarkSeconds(const QString &line);
