#pragma once

#include <QString>
#include <QStringList>
#include <array>

class QAction;

// The lists of the last four files under the file menus. The menu items are
// the list: their captions hold the paths, and a caption that still begins
// with "mnuRecent" marks a free slot.
namespace RecentFiles {

bool isFreeSlot(const QString &caption);

// The captions after the lines of a list file are read over them: a short
// file leaves its last line in place for the slots behind it, and an empty
// line leaves a slot as it was. True when a non-empty line was read.
bool readCaptions(const QStringList &lines, std::array<QString, 4> &captions);

// Fills the items from the list file, if there is one. `mark` is shared by the two lists of
// the program and is set when a non-empty line was read; while it is set
// the separator shows and each item shows unless it is a free slot.
void load(const QString &listFile, QAction *const items[4], QAction *separator, int &mark);

// Puts `path` at the top of the list, rotating the others, and rewrites the
// list file. An entry that moves into a free slot stays hidden until the
// next update or start, as the list always behaved.
void update(const QString &path, QAction *const items[4], QAction *separator, const QString &listFile);

} // namespace RecentFiles
