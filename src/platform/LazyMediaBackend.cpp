#include "platform/LazyMediaBackend.h"

#include "platform/LazyPlayer.h"

namespace {

// The module's second entry point (see platform/mpv/MpvMedia.h).
using CreateMedia = MediaBackend *(*)(PlayerControl *);
const char *const MediaEntryPoint = "quillmere_create_media";

} // namespace

LazyMediaBackend::LazyMediaBackend(LazyPlayer &player) : m_player(player) {}

LazyMediaBackend::~LazyMediaBackend() = default;

MediaBackend *LazyMediaBackend::real()
{
    if (m_real || !m_player.isLoaded())
        return m_real.get();
    if (auto create = reinterpret_cast<CreateMedia>(m_player.resolve(MediaEntryPoint))) {
        m_real.reset(create(m_player.backend()));
        if (m_real)
            m_real->setVideoEnabled(m_videoEnabled);
    }
    return m_real.get();
}

AudioDecoder LazyMediaBackend::audioDecoder()
{
    MediaBackend *media = real();
    return media ? media->audioDecoder() : AudioDecoder();
}

QWidget *LazyMediaBackend::createVideoWidget(QWidget *parent)
{
    MediaBackend *media = real();
    return media ? media->createVideoWidget(parent) : nullptr;
}

void LazyMediaBackend::setVideoEnabled(bool enabled)
{
    m_videoEnabled = enabled;
    if (MediaBackend *media = real())
        media->setVideoEnabled(enabled);
}
