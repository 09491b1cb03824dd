#include "mediaview/WaveformView.h"

#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

WaveformView::WaveformView(QWidget *parent) : QWidget(parent)
{
    setFocusPolicy(Qt::NoFocus);
    setMinimumHeight(60);
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void WaveformView::setLength(double seconds)
{
    if (seconds != m_length) {
        m_length = seconds;
        update();
    }
}

void WaveformView::setPosition(double seconds)
{
    // Only the two columns of the old and the new line are redrawn.
    if (xAt(seconds) != xAt(m_position)) {
        update(QRect(xAt(m_position) - 1, 0, 3, height()));
        update(QRect(xAt(seconds) - 1, 0, 3, height()));
    }
    m_position = seconds;
}

void WaveformView::setMarks(std::vector<double> seconds)
{
    if (seconds != m_marks) {
        m_marks = std::move(seconds);
        update();
    }
}

double WaveformView::timeAt(int x) const
{
    if (m_length <= 0 || width() <= 0)
        return 0;
    return std::clamp(m_length * x / width(), 0.0, m_length);
}

int WaveformView::xAt(double seconds) const
{
    if (m_length <= 0 || seconds < 0)
        return -10;
    return int(std::lround(seconds / m_length * width()));
}

void WaveformView::paintEvent(QPaintEvent *event)
{
    QPainter p(this);
    p.fillRect(event->rect(), QColor(24, 28, 36));
    const int w = width();
    const double mid = height() / 2.0;
    const double scale = (height() / 2.0 - 1) / 32768.0;
    p.setPen(QColor(70, 80, 96));
    p.drawLine(event->rect().left(), int(mid), event->rect().right(), int(mid));

    const int steps = int(std::ceil(m_length * Peaks::PerSecond));
    if (steps > 0) {
        p.setPen(QColor(110, 200, 140));
        for (int x = event->rect().left(); x <= event->rect().right() && x < w; ++x) {
            const int from = int(qint64(x) * steps / w);
            const int to = std::min(int(qint64(x + 1) * steps / w), m_peaks.size());
            if (from >= to)
                continue;
            const qint16 lo = *std::min_element(m_peaks.low.begin() + from, m_peaks.low.begin() + to);
            const qint16 hi = *std::max_element(m_peaks.high.begin() + from, m_peaks.high.begin() + to);
            p.drawLine(x, int(mid - hi * scale), x, int(mid - lo * scale));
        }
    }
    p.setPen(QColor(240, 190, 60));
    for (double mark : m_marks) {
        const int x = xAt(mark);
        p.drawLine(x, 0, x, height() / 5);
        p.drawLine(x, height() - height() / 5, x, height());
    }
    p.setPen(QColor(240, 70, 70));
    const int x = xAt(m_position);
    p.drawLine(x, 0, x, height());
}

void WaveformView::mousePressEvent(QMouseEvent *event)
{
    event->accept();
}

void WaveformView::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && onSeek && m_length > 0)
        onSeek(timeAt(int(event->position().x())));
    event->accept();
}
