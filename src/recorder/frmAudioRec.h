#pragma once

#include "platform/Timer.h"

#include <QWidget>
#include <functional>
#include <memory>

class AppContext;
class PictureBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class WaveIn;

// The recorder window: format and file, start/pause/resume and stop, two
// peak meters, the clock and the byte counter. The capture engine is its
// own; the window hooks it while it is loaded.
class frmAudioRec : public QWidget
{
public:
    explicit frmAudioRec(AppContext &ctx);
    ~frmAudioRec() override;

    // Loading and unloading: the window object stays, a later load starts
    // it afresh (a new default name, its hook again).
    void Form_Load();
    void Form_Unload();
    bool isLoaded() const { return m_loaded; }

    void ScegliFileWav();
    void btnStart_Click();
    void btnStop_Click();
    void EnableRecording();
    void DisableRecording();
    void Timer_Timer();

    WaveIn &waveIn() { return *m_waveIn; }

    QLineEdit *txtFile = nullptr;
    QComboBox *cmbChannels = nullptr;
    QComboBox *cmbFrequency = nullptr;
    QComboBox *cmbBits = nullptr;
    QPushButton *btnStart = nullptr;
    QString btnStartTag;
    QPushButton *btnStop = nullptr;
    QLabel *lblState = nullptr;
    int lblStateForeColor = 0xFF0000; // blue-green-red order
    bool lblStateBold = false;
    QLabel *lblTime = nullptr;
    QLabel *lblBytesWritten = nullptr;
    QLabel *Label1 = nullptr;
    QLabel *Label2 = nullptr;
    QWidget *Picture1 = nullptr;
    static constexpr int ScaleWidth = 3000; // the meters' full scale, twips
    QProgressBar *picPeakLeft = nullptr;  // its value is the bar's width
    QProgressBar *picPeakRight = nullptr;
    PictureBox *Image2 = nullptr;
    QWidget *Picture4 = nullptr;
    std::unique_ptr<::Timer> Timer;

    bool bCattura = false;
    bool bMisura = false;
    // The window's Tag: "1" starts a capture as soon as it loads.
    QString Tag;

    // Milliseconds of a steady clock; tests put the virtual clock here.
    std::function<qint64()> now;

protected:
    void showEvent(QShowEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void setState(const QString &caption, int color, bool bold);
    void setRecordingControls(bool recording);
    void setMeter(QProgressBar *meter, qint64 width);
    void stopAfterFailure(int entry);

    AppContext &ctx;
    std::unique_ptr<WaveIn> m_waveIn;
    bool m_loaded = false;
    double m_lastBlink = 0;
    double m_lastMeter = 0;
};
