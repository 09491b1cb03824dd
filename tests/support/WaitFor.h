#pragma once

#include <QElapsedTimer>
#include <QEventLoop>
#include <QObject>
#include <QTimer>
#include <functional>

// Runs the event loop until done() holds or the time is up, checking every
// millisecond; whether done() holds at the end.
inline bool waitFor(const std::function<bool()> &done, int timeoutMs = 3000)
{
    if (done())
        return true;
    QEventLoop loop;
    QTimer poll;
    QElapsedTimer clock;
    clock.start();
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        if (done() || clock.elapsed() > timeoutMs)
            loop.quit();
    });
    poll.start(1);
    loop.exec();
    return done();
}
