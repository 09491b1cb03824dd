#pragma once

#include <QByteArray>
#include <QString>
#include <functional>

// A capture format as the recorder offers it: PCM, 1 or 2 channels, 8 or 16
// bits, one of the usual rates.
struct AudioFormat
{
    int channels = 2;
    int bits = 16;
    int rate = 44100;

    int blockAlign() const { return channels * bits / 8; }
    int bytesPerSecond() const { return rate * blockAlign(); }
};

// Any source of sound buffers: the default input of the sound server, or a
// script in tests. Calls come from the GUI thread, and the callbacks run on
// it, in the order the sound was captured; a real source captures on a
// thread of its own and hands each piece over as a queued call.
class AudioInput
{
public:
    virtual ~AudioInput() = default;

    // Opens the default input in the format and starts the delivery.
    // Returns the empty text, or the device's own words for its refusal.
    virtual QString start(const AudioFormat &format) = 0;
    // Pause and resume: while suspended nothing is captured.
    virtual void suspend() = 0;
    virtual void resume() = 0;
    // Ends the capture and lets the device go; pieces still on their way
    // are not delivered.
    virtual void close() = 0;

    // Captured bytes, whole frames, in order; any size.
    std::function<void(const QByteArray &bytes)> onData;
    // The device went away during a capture (server ended, card removed),
    // with the device's words.
    std::function<void(const QString &reason)> onLost;
};

// The source of a program built without any sound input: every start is
// refused with the same words.
class NoAudioInput : public AudioInput
{
public:
    QString start(const AudioFormat &) override { return QStringLiteral("No sound input device is available."); }
    void suspend() override {}
    void resume() override {}
    void close() override {}
};
