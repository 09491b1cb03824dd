#pragma once

#include "mediaview/PeaksJob.h"

#include <QWidget>
#include <memory>

class AppContext;
class MediaBackend;
class QAction;
class QLabel;
class QVBoxLayout;
class Timer;
class WaveformView;

// The media window: the picture of a video and the waveform of the sound of
// the file the player has open, with the position and the bookmarks on it.
// It follows the player by itself, on a 100 ms tick: a new file in the player
// cancels the computation under way and starts the next. It shows itself
// when a video is opened, and the View menu shows and hides it; its place,
// size and shown state live in Files/Layout.ini. It never keeps the
// keyboard: the editor gets it back after every click, as after any command
// given with the mouse.
class frmMedia : public QWidget
{
public:
    frmMedia(AppContext &ctx, MediaBackend &backend);
    ~frmMedia() override;

    AppContext &ctx;

    QAction *mnuMedia = nullptr; // View > Media window
    WaveformView *Waveform = nullptr;
    QLabel *Label1 = nullptr; // one line: bad media, or the computation under way
    QWidget *Video = nullptr; // the picture, once the back-end gives one

    void mnuMedia_Click();
    void Timer1_Timer();
    // A click on the waveform: the seek of the position bar.
    void Waveform_Seek(double seconds);
    // Shows the window if Files/Layout.ini says it was shown at the last exit.
    void restoreShown();

    const PeaksJob *job() const { return m_job.get(); }
    QString layoutPath() const;

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void openMedia(const QString &path);
    void takePeaks();
    void ensureVideo();
    void applyLanguage();
    void saveLayout();

    MediaBackend &m_backend;
    std::unique_ptr<Timer> m_timer;
    std::unique_ptr<PeaksJob> m_job;
    QVBoxLayout *m_layout = nullptr;
    QString m_path;          // the file the window shows
    bool m_started = false;  // its computation has begun
    bool m_hasVideo = false; // it has a picture
    bool m_shownForVideo = false;
};
