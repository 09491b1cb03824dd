#pragma once

#include "platform/MediaBackend.h"

#include <memory>

class LazyPlayer;

// The media back-end of the program: the libmpv module's own, once
// LazyPlayer has loaded that module; "not yet" answers before.
class LazyMediaBackend : public MediaBackend
{
public:
    explicit LazyMediaBackend(LazyPlayer &player);
    ~LazyMediaBackend() override;

    AudioDecoder audioDecoder() override;
    QWidget *createVideoWidget(QWidget *parent) override;
    void setVideoEnabled(bool enabled) override;

private:
    MediaBackend *real();

    LazyPlayer &m_player;
    std::unique_ptr<MediaBackend> m_real;
    bool m_videoEnabled = false;
};
