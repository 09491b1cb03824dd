#include "mediaview/frmMedia.h"

#include "app/AppContext.h"
#include "mediaview/WaveformView.h"
#include "platform/MediaBackend.h"
#include "platform/PlayerControl.h"
#include "platform/TextFile.h"
#include "player/Form1.h"

#include <QAction>
#include <QEvent>
#include <QFileInfo>
#include <QLabel>
#include <QMenu>
#include <QMetaObject>
#include <QScreen>
#include <QVBoxLayout>

namespace {

// Files/Layout.ini: one line per window, "MediaWindow=left top width height
// shown", shown as the program writes booleans (-1 true, 0 false).
const QString LayoutKey = QStringLiteral("MediaWindow=");

} // namespace

frmMedia::frmMedia(AppContext &context, MediaBackend &backend)
    : QWidget(nullptr, Qt::Window | Qt::WindowDoesNotAcceptFocus), ctx(context), m_backend(backend)
{
    setObjectName(QStringLiteral("frmMedia"));
    // Showing it never takes the keyboard from the editor.
    setAttribute(Qt::WA_ShowWithoutActivating);
    setFocusPolicy(Qt::NoFocus);
    resize(480, 320);

    Waveform = new WaveformView(this);
    Waveform->onSeek = [this](double seconds) { Waveform_Seek(seconds); };
    Label1 = new QLabel(this);
    Label1->setFocusPolicy(Qt::NoFocus);
    m_layout = new QVBoxLayout(this);
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setSpacing(0);
    m_layout->addWidget(Waveform, 1);
    m_layout->addWidget(Label1);

    // Beside the player, until the user has placed it.
    if (Form1 *player = ctx.form1())
        move(player->frameGeometry().topRight() + QPoint(8, 0));
    if (const auto lines = TextFile::readLines(layoutPath())) {
        for (const QString &line : *lines) {
            if (!line.startsWith(LayoutKey))
                continue;
            const QStringList n = line.mid(LayoutKey.size()).split(u' ', Qt::SkipEmptyParts);
            if (n.size() >= 4 && n[2].toInt() > 50 && n[3].toInt() > 50)
                setGeometry(n[0].toInt(), n[1].toInt(), n[2].toInt(), n[3].toInt());
        }
    }

    if (Form1 *player = ctx.form1()) {
        mnuMedia = new QAction(this);
        mnuMedia->setObjectName(QStringLiteral("mnuMedia"));
        mnuMedia->setCheckable(true);
        QObject::connect(mnuMedia, &QAction::triggered, this, [this] { mnuMedia_Click(); });
        player->mnuVisualizza->addAction(mnuMedia);
        // The language may change at any time; the menu reads it as it opens.
        QObject::connect(player->mnuVisualizza, &QMenu::aboutToShow, this, [this] { applyLanguage(); });
    }
    applyLanguage();

    m_timer = ctx.timers().createTimer();
    m_timer->onTimeout = [this] { Timer1_Timer(); };
    m_timer->setCoarse(true);
    m_timer->setInterval(100);
}

frmMedia::~frmMedia()
{
    saveLayout();
    m_job.reset();
}

QString frmMedia::layoutPath() const
{
    return ctx.filesPath(QStringLiteral("Layout.ini"));
}

void frmMedia::saveLayout()
{
    // Other windows' lines in the file are kept as they are.
    QStringList lines;
    if (const auto old = TextFile::readLines(layoutPath())) {
        for (const QString &line : *old) {
            if (!line.startsWith(LayoutKey))
                lines.append(line);
        }
    }
    const QRect g = geometry();
    lines.append(LayoutKey
                 + QStringLiteral("%1 %2 %3 %4 %5").arg(g.x()).arg(g.y()).arg(g.width()).arg(g.height()).arg(isVisible() ? -1 : 0));
    // Losing the layout costs only the window's place at the next start.
    TextFile::writeLines(layoutPath(), lines);
}

void frmMedia::restoreShown()
{
    if (const auto lines = TextFile::readLines(layoutPath())) {
        for (const QString &line : *lines) {
            if (line.startsWith(LayoutKey) && line.split(u' ').value(4) == QStringLiteral("-1"))
                show();
        }
    }
}

void frmMedia::applyLanguage()
{
    const QString name = QFileInfo(m_path).fileName();
    setWindowTitle(name.isEmpty() ? TogliAmp(ctx.Lingua(143)) : ctx.Lingua(144) + u' ' + name);
    Waveform->setAccessibleName(TogliAmp(ctx.Lingua(143)));
    if (mnuMedia) {
        mnuMedia->setText(ctx.Lingua(143));
        mnuMedia->setChecked(isVisible());
    }
}

void frmMedia::mnuMedia_Click()
{
    if (!isVisible())
        ensureVideo();
    setVisible(!isVisible());
    saveLayout();
    if (Form1 *player = ctx.form1())
        player->TornaAllEditor();
}

void frmMedia::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    m_backend.setVideoEnabled(true);
    applyLanguage();
}

void frmMedia::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    // Nobody sees the picture: mpv stops decoding it.
    m_backend.setVideoEnabled(false);
    if (mnuMedia)
        mnuMedia->setChecked(false);
}

void frmMedia::closeEvent(QCloseEvent *event)
{
    QWidget::closeEvent(event);
    saveLayout();
}

void frmMedia::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    // A window manager may still activate it on a click: hand the keyboard
    // back at once.
    if (event->type() == QEvent::ActivationChange && isActiveWindow() && ctx.form1())
        QMetaObject::invokeMethod(this, [this] { ctx.form1()->TornaAllEditor(); }, Qt::QueuedConnection);
}

void frmMedia::ensureVideo()
{
    if (Video || !m_hasVideo)
        return;
    QWidget *video = m_backend.createVideoWidget(this);
    if (!video)
        return; // the back-end is not there yet; the next tick asks again
    // Qt makes a shown window anew when it gets its first OpenGL child, and
    // mpv's picture stalled when that happened under it: the child goes
    // into a hidden window.
    const bool shown = isVisible();
    if (shown)
        hide();
    Video = video;
    Video->setFocusPolicy(Qt::NoFocus);
    Video->setMinimumSize(160, 90);
    m_layout->insertWidget(0, Video, 4);
    if (shown)
        show();
}

void frmMedia::openMedia(const QString &path)
{
    m_job.reset(); // cancels and waits for the old computation
    m_path = path;
    m_started = false;
    m_hasVideo = false;
    m_shownForVideo = false;
    Waveform->peaks() = Peaks();
    Waveform->setLength(0);
    Waveform->update();
    Label1->clear();
    if (Video)
        Video->hide();
    applyLanguage();
}

void frmMedia::Timer1_Timer()
{
    PlayerControl &player = ctx.player();
    // The player keeps the path of a file it could not play, so that the
    // window can say what is wrong with it; closing empties the path.
    const QString url = player.URL();
    if (url != m_path)
        openMedia(url);
    if (m_path.isEmpty())
        return;
    if (!m_started) {
        // Before the back-end is loaded there is no decoder: ask next tick.
        if (AudioDecoder decoder = m_backend.audioDecoder()) {
            m_job = std::make_unique<PeaksJob>(std::move(decoder), m_path, ctx.programFolder() + QStringLiteral("/Files/Peaks"));
            m_started = true;
        }
    }
    takePeaks();

    std::vector<double> marks;
    for (const QString &line : ctx.BookMark) {
        if (line.isEmpty())
            break;
        if (const auto seconds = bookmarkSeconds(line))
            marks.push_back(*seconds);
    }
    Waveform->setMarks(std::move(marks));
    Waveform->setPosition(player.currentPosition());
}

void frmMedia::takePeaks()
{
    if (!m_job)
        return;
    const PeaksJob::State state = m_job->state();
    const MediaFacts facts = m_job->facts();
    if (facts.hasVideo && !m_hasVideo) {
        m_hasVideo = true;
        ensureVideo();
        if (Video)
            Video->show();
        if (!isVisible() && !m_shownForVideo) {
            m_shownForVideo = true;
            show();
        }
    } else if (m_hasVideo && !Video) {
        ensureVideo();
    }
    const double length = ctx.player().duration();
    const int before = Waveform->peaks().size();
    if (m_job->takeNew(Waveform->peaks()) > 0 || Waveform->length() == 0) {
        // The player's length is the truth; the container's may be an
        // estimate (a VBR MP3 without a header is estimated short), and the
        // peaks themselves may run past either.
        const double known = std::max({length, facts.seconds, Waveform->peaks().size() / double(Peaks::PerSecond)});
        Waveform->setLength(known);
        if (Waveform->peaks().size() != before)
            Waveform->update();
    }
    const bool bad = state == PeaksJob::State::Unreadable || (state == PeaksJob::State::NoAudio && !facts.hasVideo);
    const QString line = bad ? TogliAmp(ctx.Lingua(145))
        : state == PeaksJob::State::Working ? TogliAmp(ctx.Lingua(146))
                                            : QString();
    if (Label1->text() != line)
        Label1->setText(line);
}

void frmMedia::Waveform_Seek(double seconds)
{
    Form1 *form = ctx.form1();
    PlayerControl &player = ctx.player();
    if (!form || player.URL().isEmpty())
        return;
    player.setCurrentPosition(seconds);
    player.play();
    // As on the position bar: a seek on a paused player starts it for an
    // instant, then pauses it with the usual step back.
    if (form->cmdPlay->Tag == ctx.Lingua(7)) {
        form->cmdPlay->Tag = ctx.Lingua(8);
        form->cmdPlay_Click();
    }
    form->Timer1_Timer();
    form->TornaAllEditor();
}
