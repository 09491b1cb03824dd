#include "platform/LazyAudioInput.h"

namespace {

// The module's entry point (see platform/capture/QtAudioInput.h).
using CreateInput = AudioInput *(*)();
const char *const EntryPoint = "quillmere_create_audio_input";

} // namespace

LazyAudioInput::LazyAudioInput(const QString &moduleDir)
    : m_library(moduleDir + QStringLiteral("/quillmere-capture"))
{
    // The sound libraries start threads of their own: once loaded, the
    // module stays until the process ends.
    m_library.setLoadHints(QLibrary::PreventUnloadHint);
}

LazyAudioInput::~LazyAudioInput() = default;

QString LazyAudioInput::start(const AudioFormat &format)
{
    if (!m_real) {
        if (auto create = reinterpret_cast<CreateInput>(m_library.resolve(EntryPoint)))
            m_real.reset(create());
        if (!m_real)
            return NoAudioInput().start(format);
        // The callbacks are read at each call: whoever set them, set them
        // on this object.
        m_real->onData = [this](const QByteArray &bytes) {
            if (onData)
                onData(bytes);
        };
        m_real->onLost = [this](const QString &reason) {
            if (onLost)
                onLost(reason);
        };
    }
    return m_real->start(format);
}

void LazyAudioInput::suspend()
{
    if (m_real)
        m_real->suspend();
}

void LazyAudioInput::resume()
{
    if (m_real)
        m_real->resume();
}

void LazyAudioInput::close()
{
    if (m_real)
        m_real->close();
}
