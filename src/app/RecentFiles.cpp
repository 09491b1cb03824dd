#include "app/RecentFiles.h"

#include "platform/TextFile.h"

#include <QAction>

namespace RecentFiles {

void load(const QString &listFile, QAction *const items[4], QAction *separator, int &mark)
{
    // A missing file is not read; the mark, shared with the list loaded
    // before, may still show the separator and the items.
    if (const auto lines = TextFile::readLines(listFile)) {
        std::array<QString, 4> captions;
        for (int n = 0; n < 4; ++n)
            captions[size_t(n)] = items[n]->text();
        if (readCaptions(*lines, captions))
            mark = 1;
        for (int n = 0; n < 4; ++n)
            items[n]->setText(captions[size_t(n)]);
    }
    if (mark == 1) {
        separator->setVisible(true);
        for (int n = 0; n < 4; ++n)
            items[n]->setVisible(!isFreeSlot(items[n]->text()));
    }
}

void update(const QString &path, QAction *const items[4], QAction *separator, const QString &listFile)
{
    int n = 0;
    for (int i = 0; i < 4; ++i) {
        if (items[i]->text() == path)
            n = i + 1;
    }
    auto shiftDown = [items](int to) {
        for (int i = to; i >= 1; --i)
            items[i]->setText(items[i - 1]->text());
    };
    if (n >= 2)
        shiftDown(n - 1);
    items[0]->setVisible(true);
    for (int i = 1; i < 4; ++i)
        items[i]->setVisible(!isFreeSlot(items[i]->text()));
    if (n == 0)
        shiftDown(3);
    items[0]->setText(path);
    separator->setVisible(true);
    QStringList captions;
    for (int i = 0; i < 4; ++i)
        captions.append(items[i]->text());
    // A list that cannot be written costs nothing the user made: the menu
    // is right for this session, and the failure is let go.
    if (!TextFile::writeLines(listFile, captions))
        return;
}

} // namespace RecentFiles
