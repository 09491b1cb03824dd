#pragma once

#include <QHash>
#include <QImage>
#include <QString>
#include <QStringList>
#include <future>
#include <thread>

// Pictures decoded on a thread of their own while the first windows are
// built: they take them from here instead of decoding them on the GUI
// thread.
class DecodedPictures
{
public:
    // Starts decoding the files `names` of `folder` at once.
    DecodedPictures(const QString &folder, const QStringList &names);
    ~DecodedPictures();

    // Reads a picture by the format its name gives, and by its content if
    // that fails. Asking the content first loads every picture format
    // plug-in there is, to ask each whether it reads the file.
    static QImage read(const QString &path);

    // The picture read from `path`, once the decoding is done; a null image
    // for a path that was not asked for, a file that could not be read, or
    // a picture already taken.
    QImage take(const QString &path);

private:
    QHash<QString, QImage> m_images; // the thread's until m_done is ready
    std::future<void> m_done;
    std::thread m_thread;
};
