#include "platform/mpv/MpvMedia.h"

#include <QMetaObject>
#include <QOpenGLContext>
#include <mpv/client.h>
#include <mpv/render_gl.h>

namespace {

void *procAddress(void *, const char *name)
{
    QOpenGLContext *context = QOpenGLContext::currentContext();
    return context ? reinterpret_cast<void *>(context->getProcAddress(name)) : nullptr;
}

void setVid(mpv_handle *handle, bool on)
{
    if (!handle)
        return;
    // Asynchronous: a synchronous set waits about 0.2 s for mpv's core.
    const char *value = on ? "auto" : "no";
    mpv_set_property_async(handle, 0, "vid", MPV_FORMAT_STRING, &value);
}

} // namespace

MpvVideoWidget::MpvVideoWidget(mpv_handle *handle, QWidget *parent) : QOpenGLWidget(parent), m_handle(handle)
{
    setFocusPolicy(Qt::NoFocus);
}

MpvVideoWidget::~MpvVideoWidget()
{
    makeCurrent();
    freeRender();
    doneCurrent();
}

void MpvVideoWidget::setWanted(bool wanted)
{
    m_wanted = wanted;
    applyVid();
}

// Video is switched on only once there is somewhere to draw it: mpv gives up
// the video track when its output cannot start.
void MpvVideoWidget::applyVid()
{
    if (!m_wanted)
        setVid(m_handle, false);
    else if (m_render)
        setVid(m_handle, true);
}

void MpvVideoWidget::initializeGL()
{
    if (!m_handle || m_render)
        return;
    mpv_opengl_init_params gl{&procAddress, nullptr};
    // No MPV_RENDER_PARAM_ADVANCED_CONTROL: with it, a property read on the
    // GUI thread can deadlock against the render thread.
    mpv_render_param params[] = {
        {MPV_RENDER_PARAM_API_TYPE, const_cast<char *>(MPV_RENDER_API_TYPE_OPENGL)},
        {MPV_RENDER_PARAM_OPENGL_INIT_PARAMS, &gl},
        {MPV_RENDER_PARAM_INVALID, nullptr},
    };
    if (mpv_render_context_create(&m_render, m_handle, params) < 0) {
        m_render = nullptr;
        return;
    }
    mpv_render_context_set_update_callback(m_render, &MpvVideoWidget::onUpdate, this);
    connect(context(), &QOpenGLContext::aboutToBeDestroyed, this, [this] {
        makeCurrent();
        freeRender();
        doneCurrent();
    });
    applyVid();
}

// On one of mpv's threads: must not call mpv, only post one check.
void MpvVideoWidget::onUpdate(void *self)
{
    auto *widget = static_cast<MpvVideoWidget *>(self);
    if (!widget->m_checkQueued.exchange(true))
        QMetaObject::invokeMethod(widget, &MpvVideoWidget::checkFrame, Qt::QueuedConnection);
}

void MpvVideoWidget::checkFrame()
{
    m_checkQueued.store(false);
    if (m_render && (mpv_render_context_update(m_render) & MPV_RENDER_UPDATE_FRAME))
        update();
}

void MpvVideoWidget::paintGL()
{
    if (!m_render)
        return;
    const qreal ratio = devicePixelRatioF();
    mpv_opengl_fbo fbo{int(defaultFramebufferObject()), int(width() * ratio), int(height() * ratio), 0};
    int flip = 1;
    mpv_render_param params[] = {
        {MPV_RENDER_PARAM_OPENGL_FBO, &fbo},
        {MPV_RENDER_PARAM_FLIP_Y, &flip},
        {MPV_RENDER_PARAM_INVALID, nullptr},
    };
    mpv_render_context_render(m_render, params);
}

// With the GL context current: the update callback first, then the context.
void MpvVideoWidget::freeRender()
{
    if (!m_render)
        return;
    mpv_render_context_set_update_callback(m_render, nullptr, nullptr);
    mpv_render_context_free(m_render);
    m_render = nullptr;
}

MpvMedia::MpvMedia(MpvPlayer &player) : m_player(player) {}

AudioDecoder MpvMedia::audioDecoder()
{
    return &decodeAudio;
}

QWidget *MpvMedia::createVideoWidget(QWidget *parent)
{
    if (!m_player.handle())
        return nullptr;
    auto *widget = new MpvVideoWidget(m_player.handle(), parent);
    m_widget = widget;
    widget->setWanted(m_enabled);
    return widget;
}

void MpvMedia::setVideoEnabled(bool enabled)
{
    m_enabled = enabled;
    if (m_widget)
        m_widget->setWanted(enabled);
    else
        setVid(m_player.handle(), false);
}

MpvPlayer::Options videoPlayerOptions()
{
    return {
        {"vo", "libmpv"},
        {"vid", "no"},
        {"hwdec", "auto-safe"},
    };
}

MediaBackend *quillmere_create_media(PlayerControl *player)
{
    auto *mpv = dynamic_cast<MpvPlayer *>(player);
    return mpv && mpv->isValid() ? new MpvMedia(*mpv) : nullptr;
}
