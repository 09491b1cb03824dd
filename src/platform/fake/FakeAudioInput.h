#pragma once

#include "platform/AudioInput.h"

#include <QStringList>

// A scripted sound source: the test hands over each piece with `deliver`,
// and reads back the calls the engine made.
class FakeAudioInput : public AudioInput
{
public:
    QString refusal;      // what the next start answers
    QStringList calls;    // "start 2x16x44100", "suspend", "resume", "close"
    AudioFormat format;
    bool running = false;

    QString start(const AudioFormat &f) override
    {
        format = f;
        calls.append(QStringLiteral("start %1x%2x%3").arg(f.channels).arg(f.bits).arg(f.rate));
        running = refusal.isEmpty();
        return refusal;
    }
    void suspend() override { calls.append(QStringLiteral("suspend")); running = false; }
    void resume() override { calls.append(QStringLiteral("resume")); running = true; }
    void close() override { calls.append(QStringLiteral("close")); running = false; }

    void deliver(const QByteArray &bytes)
    {
        if (onData)
            onData(bytes);
    }
    void lose(const QString &reason)
    {
        running = false;
        if (onLost)
            onLost(reason);
    }
};
