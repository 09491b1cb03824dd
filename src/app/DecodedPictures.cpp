#include "app/DecodedPictures.h"

#include <QFileInfo>
#include <QImageReader>

DecodedPictures::DecodedPictures(const QString &folder, const QStringList &names)
{
    std::promise<void> done;
    m_done = done.get_future();
    m_thread = std::thread([this, folder, names, done = std::move(done)]() mutable {
        for (const QString &name : names) {
            const QString path = folder + u'/' + name;
            m_images.insert(path, read(path));
        }
        done.set_value();
    });
}

QImage DecodedPictures::read(const QString &path)
{
    QImageReader byName(path, QFileInfo(path).suffix().toLower().toLatin1());
    byName.setAutoDetectImageFormat(false);
    const QImage image = byName.read();
    if (!image.isNull() || byName.error() == QImageReader::FileNotFoundError)
        return image;
    return QImageReader(path).read();
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
