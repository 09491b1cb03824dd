#pragma once

#include "mediaview/Peaks.h"

class QWidget;

// What the media window asks of the player back-end beyond playing: the
// picture and the decoded sound. The real one lives in the libmpv module and
// is there only once that module is loaded; until then every call answers
// "not yet" (an empty decoder, no widget) and the window asks again later.
class MediaBackend
{
public:
    virtual ~MediaBackend() = default;

    // The decoder of sound for the waveform; empty until the back-end is there.
    virtual AudioDecoder audioDecoder() = 0;
    // A widget showing the player's picture, a child of parent; null until
    // the back-end is there or where no picture can be drawn.
    virtual QWidget *createVideoWidget(QWidget *parent) = 0;
    // Whether the player decodes video at all. Off while no window shows it,
    // so that a session nobody watches costs what sound alone costs.
    virtual void setVideoEnabled(bool enabled) = 0;
};
