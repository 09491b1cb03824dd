#pragma once

#include "mediaview/Peaks.h"

#include <QString>
#include <atomic>
#include <mutex>
#include <thread>

// The peaks of one media file, computed on a thread of its own (or read
// from the cache folder when a valid file is there) while the GUI thread
// takes what has come so far. Destroying the job cancels it: the decoder
// stops at its next packet and the thread is joined.
class PeaksJob
{
public:
    enum class State { Working, Done, NoAudio, Unreadable, Cancelled };

    // cacheFolder: where peaks files are kept; empty keeps none.
    PeaksJob(AudioDecoder decoder, QString mediaPath, QString cacheFolder);
    ~PeaksJob();
    PeaksJob(const PeaksJob &) = delete;
    PeaksJob &operator=(const PeaksJob &) = delete;

    void cancel() { m_cancel.store(true); }
    State state() const;
    MediaFacts facts() const;
    bool fromCache() const;
    // Appends the peaks that `into` does not hold yet; the count appended.
    int takeNew(Peaks &into) const;

    const QString &mediaPath() const { return m_path; }

private:
    class Target;
    void run(AudioDecoder decoder, QString cacheFolder);

    QString m_path;
    std::atomic<bool> m_cancel{false};
    mutable std::mutex m_mutex;
    State m_state = State::Working;
    MediaFacts m_facts;
    bool m_fromCache = false;
    Peaks m_peaks;
    std::thread m_thread;
};
