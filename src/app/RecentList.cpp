// The list file of a recent list as plain data, below the menus that show it.

#include "app/RecentFiles.h"

namespace RecentFiles {

bool isFreeSlot(const QString &caption)
{
    return caption.left(9) == QLatin1String("mnuRecent");
}

bool readCaptions(const QStringList &lines, std::array<QString, 4> &captions)
{
    bool read = false;
    QString line;
    for (int n = 0; n < 4; ++n) {
        if (n < lines.size())
            line = lines.at(n);
        if (!line.isEmpty()) {
            captions[size_t(n)] = line;
            read = true;
        }
    }
    return read;
}

} // namespace RecentFiles
