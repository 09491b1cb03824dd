#pragma once

#include <QByteArray>
#include <QString>
#include <functional>

class QObject;

// Reads a short text from the web without blocking the program: get()
// returns at once and `done` comes later, on the GUI thread, exactly once,
// with the body of the answer, or the empty body on any failure (no network,
// a refused or failed request, an HTTP error, an answer longer than the
// reader takes, no complete answer within its time limit). `done` is dropped
// when `context` is destroyed first.
class WebReader
{
public:
    virtual ~WebReader() = default;
    virtual void get(const QString &url, QObject *context, std::function<void(const QByteArray &)> done) = 0;
};
