#include "mediaview/PeaksJob.h"

#include "platform/TextFile.h"

#include <QDir>

// Hands the decoder's samples to a builder and publishes the new steps
// under the lock, a packet at a time.
class PeaksJob::Target : public DecodeTarget
{
public:
    explicit Target(PeaksJob &job) : m_job(job) {}

    void opened(const MediaFacts &facts) override
    {
        m_builder.emplace(facts.sampleRate);
        const std::lock_guard lock(m_job.m_mutex);
        m_job.m_facts = facts;
    }
    void samples(const float *interleaved, int frames, int channels) override
    {
        if (!m_builder || channels <= 0)
            return;
        m_builder->add(interleaved, frames, channels);
        publish();
    }
    bool cancelled() const override { return m_job.m_cancel.load(); }

    void finish()
    {
        if (!m_builder)
            return;
        m_builder->finish();
        publish();
    }
    const Peaks *peaks() const { return m_builder ? &m_builder->peaks() : nullptr; }

private:
    void publish()
    {
        const Peaks &all = m_builder->peaks();
        const std::lock_guard lock(m_job.m_mutex);
        for (int i = m_job.m_peaks.size(); i < all.size(); ++i)
            m_job.m_peaks.append(all.low[i], all.high[i]);
    }

    PeaksJob &m_job;
    std::optional<PeaksBuilder> m_builder;
};

PeaksJob::PeaksJob(AudioDecoder decoder, QString mediaPath, QString cacheFolder) : m_path(std::move(mediaPath))
{
    m_thread = std::thread([this, decoder = std::move(decoder), cacheFolder = std::move(cacheFolder)]() mutable {
        run(std::move(decoder), std::move(cacheFolder));
    });
}

PeaksJob::~PeaksJob()
{
    cancel();
    if (m_thread.joinable())
        m_thread.join();
}

void PeaksJob::run(AudioDecoder decoder, QString cacheFolder)
{
    const PeaksFile::Key key = PeaksFile::keyOf(m_path);
    const QString cachePath = cacheFolder.isEmpty() ? QString() : PeaksFile::pathFor(cacheFolder, m_path);
    if (!cachePath.isEmpty()) {
        if (const auto bytes = TextFile::readBytes(cachePath)) {
            if (auto content = PeaksFile::decode(*bytes, key)) {
                const std::lock_guard lock(m_mutex);
                m_facts = {true, content->hasVideo, 0, content->peaks.size() / double(Peaks::PerSecond)};
                m_peaks = std::move(content->peaks);
                m_fromCache = true;
                m_state = State::Done;
                return;
            }
        }
    }

    Target target(*this);
    const DecodeResult result = decoder ? decoder(m_path, target) : DecodeResult::Unreadable;
    if (result == DecodeResult::Done)
        target.finish();
    State state = State::Unreadable;
    switch (result) {
    case DecodeResult::Done: state = State::Done; break;
    case DecodeResult::NoAudio: state = State::NoAudio; break;
    case DecodeResult::Unreadable: state = State::Unreadable; break;
    case DecodeResult::Cancelled: state = State::Cancelled; break;
    }
    // Only a whole computation is kept; a cancelled one starts over next time.
    if (state == State::Done && !cachePath.isEmpty() && target.peaks() && key.size >= 0) {
        QDir().mkpath(cacheFolder);
        bool video = false;
        {
            const std::lock_guard lock(m_mutex);
            video = m_facts.hasVideo;
        }
        // A cache that cannot be written only costs the next opening time.
        TextFile::writeBytes(cachePath, PeaksFile::encode(key, video, *target.peaks()));
    }
    const std::lock_guard lock(m_mutex);
    m_state = state;
}

PeaksJob::State PeaksJob::state() const
{
    const std::lock_guard lock(m_mutex);
    return m_state;
}

MediaFacts PeaksJob::facts() const
{
    const std::lock_guard lock(m_mutex);
    return m_facts;
}

bool PeaksJob::fromCache() const
{
    const std::lock_guard lock(m_mutex);
    return m_fromCache;
}

int PeaksJob::takeNew(Peaks &into) const
{
    const std::lock_guard lock(m_mutex);
    const int before = into.size();
    for (int i = before; i < m_peaks.size(); ++i)
        into.append(m_peaks.low[i], m_peaks.high[i]);
    return into.size() - before;
}
