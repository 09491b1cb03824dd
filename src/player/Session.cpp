// The media session: opening a file with all that goes with it, the bare
// load and start, and closing.

#include "app/AppContext.h"
#include "app/RecentFiles.h"
#include "bookmarks/BookmarkFile.h"
#include "editor/Form2.h"
#include "platform/PlayerControl.h"
#include "platform/TextFile.h"
#include "player/Form1.h"
#include "recorder/frmAudioRec.h"

#include <QAction>
#include <QFileInfo>
#include <QLineEdit>

namespace {

// The media types offered first in the open dialog.
const char *const MediaPatterns = "*.aac;*.avi;*.mp3;*.mpg;*.mpeg;*.ogg;*.ogv;*.wav;*.wma;*.wmv;*.ts;*.vob;*.flv";

} // namespace

void Form1::ApriMedia(const QString &path)
{
    // 1. A playing file pauses first, with its step back.
    if (cmdPlay->isEnabled() && cmdPlay->Tag == ctx.Lingua(8))
        cmdPlay_Click();

    // 2, 3.
    QString chosen = path;
    if (path.isEmpty()) {
        FileDlgArgs args;
        args.owner = this;
        args.title = ctx.Lingua(25);
        args.defaultExtension = QStringLiteral("wav");
        args.initialFolder = ctx.CartellaMedia;
        args.filter = ctx.Lingua(41) + QChar(0) + QLatin1String(MediaPatterns) + QChar(0)
                      + ctx.Lingua(26) + QChar(0) + QStringLiteral("*.*");
        args.open = true;
        chosen = ctx.FileDlg(args);
    }
    if (chosen.isEmpty())
        return;

    // 4. The dialog moved the current folder to the chosen file's.
    ctx.CartellaMedia = ctx.currentDirectory;

    // 5. The recorder's target is never opened while it is being written.
    if (!recorderTarget().isEmpty() && chosen == recorderTarget())
        return;

    // 6.
    if (!QFileInfo(chosen).isFile()) {
        ctx.warn(98);
        return;
    }

    // 7. The bookmarks of the file being left.
    if (!ctx.BookMark[0].isEmpty()) {
        SalvaBookMark();
        for (QString &line : ctx.BookMark)
            line.clear();
    }

    // 8.
    Label4->Tag = chosen;
    HoverPlay = 1;
    vai(chosen);
    ctx.setMousePointer(11);
    cmdPlay->LoadPicture(ctx.filesPath(QStringLiteral("pause.jpg")));

    // 9.
    updateRecentMedia(chosen);

    // 10, 11. The bookmark file of the media, by its name; the
    // window comes up by itself with the bookmarks read.
    const QString markFile = BookmarkFile::filePath(ctx.programFolder(), Label4->Tag);
    if (QFileInfo(markFile).isFile()) {
        ctx.unloadForm3();
        const QStringList lines = BookmarkFile::read(TextFile::readBytes(markFile).value_or(QByteArray()));
        for (int i = 0; i < lines.size(); ++i)
            ctx.BookMark[size_t(i)] = lines.at(i);
        mnuBookMark_Click();
        cmdPlay->LoadPicture(ctx.filesPath(QStringLiteral("pause.jpg")));
    }

    // 12. The editor goes under the player, or under the bookmarks.
    Form_Initialize();

    // 13.
    TornaAllEditor();
}

void Form1::vai(const QString &path)
{
    Label4->show();
    Shape3->show();
    if (QFileInfo(path).isFile()) {
        WMP1.setURL(path);
        WMP1.setCurrentPosition(0);
        Shape1->setWidth(0);
        Timer1->setInterval(100);
    }
    for (QAction *a : {mnuChiudi, mnuPlay, mnuStop, mnuAvanti, mnuIndietro, mnuDiminuisciVelocità,
                       mnuAumentaVelocità, mnuVai, mnuAddBM, mnuBMsuccessivo, mnuBMprecedente, mnuBookMark})
        a->setEnabled(true);
    for (PictureBox *b : {cmdPlay, cmdStop, cmdAvanz, cmdIndietro})
        b->setEnabled(true);
    ctx.form2()->mnuTimeStamp->setEnabled(true);
    cmdPlay->Tag = ctx.Lingua(7);
    cmdPlay_Click();
    MostraPath();
}

void Form1::mnuChiudi_Click()
{
    WMP1.setURL(QString());
    WMP1.close();
    Timer1->setInterval(0);
    if (HoverPlay == 1)
        HoverPlay = 0;
    Label2->setCaption(QStringLiteral("0:00 / 0:00"));
    Label4->hide();
    Shape1->hide();
    Shape3->hide();
    for (QAction *a : {mnuPlay, mnuStop, mnuAvanti, mnuIndietro, mnuDiminuisciVelocità, mnuAumentaVelocità,
                       mnuVai, mnuChiudi, mnuAddBM, mnuBMsuccessivo, mnuBMprecedente, mnuBookMark})
        a->setEnabled(false);
    for (PictureBox *b : {cmdPlay, cmdStop, cmdAvanz, cmdIndietro})
        b->setEnabled(false);
    ctx.form2()->mnuTimeStamp->setEnabled(false);
    ctx.unloadForm3();
    cmdPlay->LoadPicture(ctx.filesPath(QStringLiteral("play.jpg")));
}

void Form1::Image3_Click()
{
    ApriMedia(QString());
    HoverApri = 0;
    Image3->LoadPicture(ctx.filesPath(QStringLiteral("Apri.bmp")));
}

void Form1::mnuApri_Click()
{
    ApriMedia(QString());
}

void Form1::updateRecentMedia(const QString &path)
{
    RecentFiles::update(path, mnuRecent, mnuRiga, ctx.filesPath(QStringLiteral("LastFiles.ini")));
}

void Form1::mnuRecent_Click(int index)
{
    if (index >= 0 && index < 4)
        ApriMedia(mnuRecent[index]->text());
}

QString Form1::recorderTarget() const
{
    // Reading the recorder's file name loads the recorder, hidden.
    return ctx.recorder()->txtFile->text();
}
