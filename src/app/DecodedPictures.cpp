#include "app/DecodedPictures.h"

#include <QImageReader>

DecodedPictures::DecodedPictures(const QString &folder, const QStringList &names)
{
    std::promise<void> done;
    m_done = done.get_future();
    m_thread = std::thread([this, folder, names, done = std::move(done)]() mutable {
        for (const QString &name : names) {
            const QString path = folder + u'/' + name;
            m_images.insert(path, QImageReader(path).read());
        }
        done.set_value();
    });
}

DecodedPictures::~DecodedPictures()
{
    m_thread.join();
}

QImage DecodedPictures::take(const QString &path)
{
    m_done.wait();
    return m_images.take(path);
}
