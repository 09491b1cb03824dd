#pragma once

#include "platform/AudioInput.h"

#include <QLibrary>
#include <memory>

// The program's sound input: the module quillmere-capture's own, loaded at
// the first start of a capture, which comes at a user's click. Until then
// nothing of the sound server is loaded. Without the module every start is
// refused as with no input device.
class LazyAudioInput : public AudioInput
{
public:
    // moduleDir: the folder holding the module, normally the program folder.
    explicit LazyAudioInput(const QString &moduleDir);
    ~LazyAudioInput() override;

    QString start(const AudioFormat &format) override;
    void suspend() override;
    void resume() override;
    void close() override;

private:
    QLibrary m_library;
    std::unique_ptr<AudioInput> m_real;
};
