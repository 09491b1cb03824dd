#pragma once

#include "mediaview/Peaks.h"

#include <QWidget>
#include <functional>
#include <vector>

// The whole recording from start to end across the widget's width: for every
// column the loudest and softest sample of the stretch of time it covers,
// the player's position as a line and the bookmarks as marks. It draws the
// peaks it holds so far, so a computation still under way shows as far as it
// has got. A click (on release, as the position bar takes it) hands over the
// time under the mouse.
class WaveformView : public QWidget
{
public:
    explicit WaveformView(QWidget *parent = nullptr);

    Peaks &peaks() { return m_peaks; }
    // Length of the whole recording: the scale of the width.
    void setLength(double seconds);
    double length() const { return m_length; }
    void setPosition(double seconds);
    void setMarks(std::vector<double> seconds);
    const std::vector<double> &marks() const { return m_marks; }

    // The time under column x; 0 with nothing to scale.
    double timeAt(int x) const;
    int xAt(double seconds) const;

    std::function<void(double seconds)> onSeek;

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    Peaks m_peaks;
    double m_length = 0;
    double m_position = -1;
    std::vector<double> m_marks;
};
