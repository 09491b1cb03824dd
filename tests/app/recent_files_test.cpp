// The recent lists of both windows: the rotation in its order, what shows,
// the shared mark at loading, and the list files read back.

#include "TestApp.h"

#include "editor/Form2.h"
#include "player/Form1.h"

#include <QAction>
#include <gtest/gtest.h>

namespace {

// One window's list: its items, its separator, its file and how a path
// enters it.
struct List
{
    const char *name;
    QAction *const *items;
    QAction *separator;
    QString file;
    std::function<void(const QString &)> add;
};

QStringList captions(const List &list)
{
    QStringList out;
    for (int i = 0; i < 4; ++i)
        out.append(list.items[i]->text());
    return out;
}

QString shown(const List &list)
{
    QString out;
    for (int i = 0; i < 4; ++i)
        out += list.items[i]->isVisible() ? u'1' : u'0';
    return out;
}

QStringList media(TestApp &app, std::initializer_list<const char *> names)
{
    QStringList paths;
    for (const char *name : names)
        paths.append(app.mediaFile(QString::fromLatin1(name)));
    return paths;
}

} // namespace

TEST(RecentFiles, UpdatesRotateInTheirOrderOnBothWindows)
{
    const auto free = [](int n) { return QStringLiteral("mnuRecent%1").arg(n); };
    for (int window = 0; window < 2; ++window) {
        TestApp app;
        ASSERT_TRUE(app.start());
        Form1 &f1 = app.form1();
        Form2 &f2 = app.form2();
        const List list = window == 0
            ? List{"player", f1.mnuRecent, f1.mnuRiga, QStringLiteral("Files/LastFiles.ini"),
                   [&](const QString &p) { f1.ApriMedia(p); }}
            : List{"editor", f2.mnuRecent, f2.mnur, QStringLiteral("Files/LastFilesEditor.ini"),
                   [&](const QString &p) { f2.SalvaFilesRecenti(p); }};
        SCOPED_TRACE(list.name);
        const QStringList p = media(app, {"a.wav", "b & c.wav", "c.wav", "d.wav", "e.wav"});
        const auto fileLines = [&] {
            return QString::fromUtf8(app.folder.read(list.file)).split(QStringLiteral("\r\n"));
        };

        const struct
        {
            const char *step;
            QString path;
            QStringList order;
            const char *visible;
        } steps[] = {
            // The first file ever: item 1 and the separator show.
            // The rotation moves the placeholder captions down like paths.
            {"first", p[0], {p[0], free(1), free(2), free(3)}, "1000"},
            // The first moves to item 2, which shows only at the next update.
            {"second", p[1], {p[1], p[0], free(1), free(2)}, "1000"},
            {"third", p[2], {p[2], p[1], p[0], free(1)}, "1100"},
            {"fourth", p[3], {p[3], p[2], p[1], p[0]}, "1110"},
            // Item 3 again: 3, 1, 2, 4.
            {"item 3", p[1], {p[1], p[3], p[2], p[0]}, "1111"},
            // Item 1 again: no change of order, the file is written again.
            {"item 1", p[1], {p[1], p[3], p[2], p[0]}, "1111"},
            // A new one: the oldest goes.
            {"fifth", p[4], {p[4], p[1], p[3], p[2]}, "1111"},
        };
        for (const auto &step : steps) {
            SCOPED_TRACE(step.step);
            app.folder.remove(list.file);
            list.add(step.path);
            EXPECT_EQ(captions(list), step.order);
            EXPECT_EQ(shown(list), QLatin1String(step.visible));
            EXPECT_TRUE(list.separator->isVisible());
            EXPECT_EQ(fileLines(), step.order + QStringList{QString()});
        }
        // The caption is the path as it is, "&" included.
        EXPECT_EQ(list.items[1]->text(), p[1]);
    }
}

TEST(RecentFiles, LoadingSharesOneMarkAndAVanishedFileStaysOffered)
{
    const auto write = [](TestApp &app, const char *file, const QStringList &lines) {
        app.folder.write(QString::fromLatin1(file), (lines.join(QStringLiteral("\r\n")) + QStringLiteral("\r\n")).toUtf8());
    };
    const QStringList placeholders = {QStringLiteral("mnuRecent1"), QStringLiteral("mnuRecent2"),
                                      QStringLiteral("mnuRecent3"), QStringLiteral("mnuRecent4")};
    {
        // Four placeholders: the separator shows and no item does.
        TestApp app;
        write(app, "Files/LastFiles.ini", placeholders);
        ASSERT_TRUE(app.start());
        EXPECT_TRUE(app.form1().mnuRiga->isVisible());
        EXPECT_EQ(shown({"", app.form1().mnuRecent, nullptr, {}, {}}), QStringLiteral("0000"));
    }
    {
        // A media list, no editor list: the editor's separator shows too.
        TestApp app;
        app.folder.remove(QStringLiteral("Files/LastFilesEditor.ini"));
        const QString gone = app.folder.file(QStringLiteral("gone.wav"));
        write(app, "Files/LastFiles.ini", {gone, QStringLiteral("mnuRecent2"), QStringLiteral("mnuRecent3"),
                                           QStringLiteral("mnuRecent4")});
        ASSERT_TRUE(app.start());
        EXPECT_EQ(shown({"", app.form1().mnuRecent, nullptr, {}, {}}), QStringLiteral("1000"));
        EXPECT_TRUE(app.form2().mnur->isVisible());
        EXPECT_EQ(shown({"", app.form2().mnuRecent, nullptr, {}, {}}), QStringLiteral("0000"));
        // The file has gone: the menu offers it, the open reports it, the
        // entry stays.
        app.form1().mnuRecent[0]->trigger();
        ASSERT_EQ(app.dialogs->messages.size(), 1);
        EXPECT_EQ(app.dialogs->messages[0].text, TogliAmp(app.ctx().Lingua(98)));
        EXPECT_EQ(app.form1().mnuRecent[0]->text(), gone);
    }
}
