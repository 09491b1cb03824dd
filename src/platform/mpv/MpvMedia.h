#pragma once

#include "platform/MediaBackend.h"
#include "platform/mpv/MpvPlayer.h"

#include <QOpenGLWidget>
#include <QPointer>
#include <atomic>

struct mpv_render_context;

// The player's picture drawn by mpv's render API into a Qt OpenGL widget.
// mpv's update callback only posts a queued check to the GUI thread; the
// render context belongs to the widget's GL context and is freed when that
// goes (a reparented widget gets a new one and the picture comes back).
// It must be destroyed before the player's handle.
class QM_MPV_EXPORT MpvVideoWidget : public QOpenGLWidget
{
    Q_OBJECT

public:
    MpvVideoWidget(mpv_handle *handle, QWidget *parent = nullptr);
    ~MpvVideoWidget() override;

    bool hasRenderContext() const { return m_render != nullptr; }
    // Whether mpv is to decode video once the render context is there.
    void setWanted(bool wanted);

protected:
    void initializeGL() override;
    void paintGL() override;

private:
    static void onUpdate(void *self);
    void checkFrame();
    void freeRender();
    void applyVid();

    mpv_handle *m_handle;
    mpv_render_context *m_render = nullptr;
    std::atomic<bool> m_checkQueued{false};
    bool m_wanted = false;
};

// The media back-end on the module's player: the picture through
// MpvVideoWidget, the sound for the waveform through FFmpeg's libraries.
class QM_MPV_EXPORT MpvMedia : public MediaBackend
{
public:
    explicit MpvMedia(MpvPlayer &player);
    AudioDecoder audioDecoder() override;
    QWidget *createVideoWidget(QWidget *parent) override;
    void setVideoEnabled(bool enabled) override;

private:
    MpvPlayer &m_player;
    QPointer<MpvVideoWidget> m_widget;
    bool m_enabled = false;
};

// Decodes the first audio stream of a file with libavformat/libavcodec,
// converted to interleaved floats by libswresample.
QM_MPV_EXPORT DecodeResult decodeAudio(const QString &path, DecodeTarget &target);

// The mpv options the module's player starts with: the render API as video
// output, and no video decoding until a window shows the picture.
QM_MPV_EXPORT MpvPlayer::Options videoPlayerOptions();

// The module's entry point for the media window; null for a player that is
// not the module's own.
extern "C" QM_MPV_EXPORT MediaBackend *quillmere_create_media(PlayerControl *player);
