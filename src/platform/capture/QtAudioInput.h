#pragma once

#include "platform/AudioInput.h"

#include <QObject>
#include <QThread>

class CaptureWorker;

// The default input of the desktop's sound server, through Qt Multimedia.
// The capture lives on a thread of its own, so that a busy window never
// makes the server drop sound; each piece comes back to the GUI thread as
// a queued call, which keeps the order. A piece of an earlier capture that
// is still on its way when the next one starts is recognised by its number
// and dropped.
//
// It lives in the module quillmere-capture, which the program loads at the
// first capture (LazyAudioInput): Qt Multimedia and the sound server's
// libraries, some twenty of them, would otherwise be loaded before the
// first paint of every start.
class QtAudioInput : public QObject, public AudioInput
{
public:
    QtAudioInput();
    ~QtAudioInput() override;

    // Opening waits for the server's answer (well under a second, but up to
    // about one when another client connects at the same moment): it comes
    // at a user's click, and its refusal is what the user is shown.
    QString start(const AudioFormat &format) override;
    void suspend() override;
    void resume() override;
    void close() override;

private:
    void received(int capture, const QByteArray &bytes);
    void failed(int capture, const QString &reason);

    QThread m_thread;
    CaptureWorker *m_worker = nullptr;
    int m_capture = 0;
};

// The module's entry point: a new input, owned by the caller.
extern "C" Q_DECL_EXPORT AudioInput *quillmere_create_audio_input();
