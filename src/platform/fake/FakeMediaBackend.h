#pragma once

#include "platform/MediaBackend.h"

#include <QWidget>
#include <atomic>

// The media back-end for tests: a decoder that the test supplies, a plain
// widget for the picture, and a record of the video switch.
class FakeMediaBackend : public MediaBackend
{
public:
    AudioDecoder decoder;
    bool videoEnabled = true;
    int widgetsMade = 0;

    AudioDecoder audioDecoder() override { return decoder; }
    QWidget *createVideoWidget(QWidget *parent) override
    {
        ++widgetsMade;
        return new QWidget(parent);
    }
    void setVideoEnabled(bool enabled) override { videoEnabled = enabled; }
};
