// A file dropped on the player window.

#include "app/AppContext.h"
#include "player/Form1.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QUrl>
#include <exception>

void Form1::dragEnterEvent(QDragEnterEvent *event)
{
    if (event->mimeData()->hasUrls())
        event->acceptProposedAction();
}

void Form1::dropEvent(QDropEvent *event)
{
    if (dropFiles(event->mimeData()))
        event->acceptProposedAction();
}

bool Form1::dropFiles(const QMimeData *data)
{
    const QList<QUrl> urls = data->urls();
    if (urls.isEmpty())
        return false;
    // Only the first of several dropped files counts.
    const QUrl &first = urls.first();
    GotADrop(first.isLocalFile() ? first.toLocalFile() : first.toString());
    return true;
}

void Form1::GotADrop(const QString &path)
{
    try {
        QString file = path;
        while (file.endsWith(QChar(0)))
            file.chop(1);
        // The short way: the file plays, but the title, the bookmarks and
        // the recent list stay those of the file opened before.
        if (!file.isEmpty())
            vai(file);
    } catch (const std::exception &) {
        ctx.msgBox(TogliAmp(ctx.Lingua(36)), MsgBox::Exclamation, TogliAmp(ctx.Lingua(37)));
    }
}
