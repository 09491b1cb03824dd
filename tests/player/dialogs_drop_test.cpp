// The file dialog wrapper, the open dialog of the player and dropped files.

#include "TestApp.h"

#include "player/Form1.h"

#include <QAction>
#include <QDir>
#include <QMimeData>
#include <QUrl>
#include <QTest>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

// The chosen file plays and the media folder follows the dialog; a cancel
// leaves the playing file paused, and a missing file is reported.
TEST(ApriMedia, TheDialogStartsInTheMediaFolderACancelPausesAndAMissingFileIsReported)
{
    TestApp app;
    ASSERT_TRUE(app.start());
    const QString media = app.mediaFile(u"memo.wav"_s);
    app.ctx().CartellaMedia = u"/recordings"_s;
    app.dialogs->answerFile(media);
    app.form1().mnuApri_Click();
    ASSERT_EQ(app.dialogs->fileDialogs.size(), 1);
    const FileDialogRequest &r = app.dialogs->fileDialogs[0];
    EXPECT_TRUE(r.open);
    EXPECT_EQ(r.owner, &app.form1());
    EXPECT_EQ(r.title, app.ctx().Lingua(25));
    EXPECT_EQ(r.initialFolder, u"/recordings"_s);
    // Two pairs of name and patterns, the media types first.
    const QStringList filter = r.filter.split(QChar(0));
    ASSERT_EQ(filter.size(), 4);
    EXPECT_TRUE(filter[1].startsWith(u"*.aac;*.avi;*.mp3"_s));
    EXPECT_EQ(app.player->URL(), media);
    EXPECT_EQ(app.ctx().CartellaMedia, QFileInfo(media).absolutePath());

    app.advance(5000);
    app.form1().mnuApri_Click(); // the script has no answer: cancel
    EXPECT_EQ(app.form1().cmdPlay->Tag, app.ctx().Lingua(7));
    EXPECT_EQ(app.player->playState(), PlayerControl::Paused);

    app.form1().ApriMedia(u"/no/such/file.wav"_s);
    ASSERT_FALSE(app.dialogs->messages.isEmpty());
    EXPECT_EQ(app.dialogs->messages.last().text, TogliAmp(app.ctx().Lingua(98)));
    EXPECT_EQ(app.dialogs->messages.last().title, TogliAmp(app.ctx().Lingua(1)));
    EXPECT_EQ(app.dialogs->messages.last().style, 48);
    EXPECT_EQ(app.player->URL(), media);
}

TEST(FileDlg, CancelGivesTheEmptyTextAndMultiSelectJoinsTheFolder)
{
    TestApp app;
    ASSERT_TRUE(app.start());
    quint32 flags = 512;
    FileDlgArgs args;
    args.flags = &flags;
    args.open = true;
    EXPECT_EQ(app.ctx().FileDlg(args), QString());
    EXPECT_EQ(app.dialogs->fileDialogs.last().initialFolder, app.ctx().currentDirectory);

    app.dialogs->fileAnswers.push_back({{u"/data"_s, u"a.wav"_s, u"b.wav"_s}, 512 | 4});
    QStringList more;
    EXPECT_EQ(app.ctx().FileDlg(args, &more), u"/data/a.wav"_s);
    EXPECT_EQ(more, QStringList{u"/data/b.wav"_s});
    EXPECT_EQ(flags, 512u | 4u);

    app.dialogs->fileAnswers.push_back({{u"/one/c.wav"_s}, 512});
    EXPECT_EQ(app.ctx().FileDlg(args), u"/one/c.wav"_s);

    // Without the flag the first part is the whole answer.
    args.flags = nullptr;
    app.dialogs->fileAnswers.push_back({{u"/x/y.wav"_s, u"z"_s}, 0});
    EXPECT_EQ(app.ctx().FileDlg(args), u"/x/y.wav"_s);
}

namespace {

void drop(Form1 &form, const QStringList &paths)
{
    QMimeData data;
    QList<QUrl> urls;
    for (const QString &p : paths)
        urls.append(QUrl::fromLocalFile(p));
    data.setUrls(urls);
    form.dropFiles(&data);
}

} // namespace

// A folder loads nothing but enables the commands and presses play; of
// files only the first plays, the short way: no title, no recent entry.
TEST(Drop, AFolderOrTheFirstOfTheFilesIsPlayed)
{
    TestApp app;
    ASSERT_TRUE(app.start());
    drop(app.form1(), {app.folder.path()});
    EXPECT_EQ(app.player->URL(), QString());
    EXPECT_TRUE(app.form1().cmdPlay->isEnabled());
    EXPECT_EQ(app.form1().cmdPlay->Tag, app.ctx().Lingua(8));
    EXPECT_TRUE(app.dialogs->messages.isEmpty());

    const QString a = app.mediaFile(u"a.wav"_s), b = app.mediaFile(u"b.wav"_s), c = app.mediaFile(u"c.wav"_s);
    drop(app.form1(), {b, a, c});
    EXPECT_EQ(app.player->URL(), b);
    EXPECT_FALSE(app.player->log.contains(u"url "_s + a));
    EXPECT_EQ(app.form1().Label4->Tag, QString());
    EXPECT_FALSE(app.form1().mnuRecent[0]->isVisible());
    EXPECT_EQ(app.form1().cmdPlay->Tag, app.ctx().Lingua(8));
}
