// The recent lists of both windows: the rotation in its order, what shows,
// the shared mark at loading, and the list files read back.

#include "TestApp.h"

#include "editor/Form2.h"
#include "player/Form1.h"

#include <QAction>
#include <gtest/gtest.h>

namespace {

QStringList captions(QAction *const *items)
{
    return {items[0]->text(), items[1]->text(), items[2]->text(), items[3]->text()};
}

QString shown(QAction *const *items)
{
    QString out;
    for (int i = 0; i < 4; ++i)
        out += items[i]->isVisible() ? u'1' : u'0';
    return out;
}

} // namespace

TEST(RecentFiles, UpdatesRotateInTheirOrderOnBothWindows)
{
    const auto free = [](int n) { return QStringLiteral("mnuRecent%1").arg(n); };
    for (const bool player : {true, false}) {
        SCOPED_TRACE(player ? "player" : "editor");
        TestApp app;
        ASSERT_TRUE(app.start());
        QAction *const *items = player ? app.form1().mnuRecent : app.form2().mnuRecent;
        QAction *separator = player ? app.form1().mnuRiga : app.form2().mnur;
        const QString file = player ? QStringLiteral("Files/LastFiles.ini") : QStringLiteral("Files/LastFilesEditor.ini");
        QStringList p; // the second with an "&", which a caption shows as it is
        for (const char *name : {"a.wav", "b & c.wav", "c.wav", "d.wav", "e.wav"})
            p.append(app.mediaFile(QString::fromLatin1(name)));
        const struct { const char *step; QString path; QStringList order; const char *visible; } steps[] = {
            // The first file ever: item 1 and the separator show. The
            // rotation moves the placeholder captions down like paths.
            {"first", p[0], {p[0], free(1), free(2), free(3)}, "1000"},
            // The first moves to item 2, which shows only at the next update.
            {"second", p[1], {p[1], p[0], free(1), free(2)}, "1000"},
            {"third", p[2], {p[2], p[1], p[0], free(1)}, "1100"},
            {"fourth", p[3], {p[3], p[2], p[1], p[0]}, "1110"},
            // Item 3 again: 3, 1, 2, 4; item 1 again: the same order, the
            // file written again; a new one: the oldest goes.
            {"item 3", p[1], {p[1], p[3], p[2], p[0]}, "1111"},
            {"item 1", p[1], {p[1], p[3], p[2], p[0]}, "1111"},
            {"fifth", p[4], {p[4], p[1], p[3], p[2]}, "1111"},
        };
        for (const auto &step : steps) {
            SCOPED_TRACE(step.step);
            app.folder.remove(file);
            player ? app.form1().ApriMedia(step.path) : app.form2().SalvaFilesRecenti(step.path);
            EXPECT_EQ(captions(items), step.order);
            EXPECT_EQ(shown(items), QLatin1String(step.visible));
            EXPECT_TRUE(separator->isVisible());
            EXPECT_EQ(QString::fromUtf8(app.folder.read(file)), step.order.join(QStringLiteral("\r\n")) + QStringLiteral("\r\n"));
        }
    }
}

TEST(RecentFiles, LoadingSharesOneMarkAndAVanishedFileStaysOffered)
{
    const auto start = [](TestApp &app, const QString &first) {
        app.folder.remove(QStringLiteral("Files/LastFilesEditor.ini"));
        app.folder.write(QStringLiteral("Files/LastFiles.ini"),
                         (first + QStringLiteral("\r\nmnuRecent2\r\nmnuRecent3\r\nmnuRecent4\r\n")).toUtf8());
        return app.start();
    };
    {
        // Four placeholders: the separator shows and no item does.
        TestApp app;
        ASSERT_TRUE(start(app, QStringLiteral("mnuRecent1")));
        EXPECT_TRUE(app.form1().mnuRiga->isVisible());
        EXPECT_EQ(shown(app.form1().mnuRecent), QStringLiteral("0000"));
    }
    // A media list and no editor list: the editor's separator shows too.
    TestApp app;
    const QString gone = app.folder.file(QStringLiteral("gone.wav"));
    ASSERT_TRUE(start(app, gone));
    EXPECT_EQ(shown(app.form1().mnuRecent), QStringLiteral("1000"));
    EXPECT_TRUE(app.form2().mnur->isVisible());
    EXPECT_EQ(shown(app.form2().mnuRecent), QStringLiteral("0000"));
    // The file has gone: the menu offers it, the open reports it, the entry
    // stays.
    app.form1().mnuRecent[0]->trigger();
    ASSERT_EQ(app.dialogs->messages.size(), 1);
    EXPECT_EQ(app.dialogs->messages[0].text, TogliAmp(app.ctx().Lingua(98)));
    EXPECT_EQ(app.form1().mnuRecent[0]->text(), gone);
}
