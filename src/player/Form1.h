#pragma once

#include <QPoint>
#include <optional>

#include "app/Controls.h"
#include "platform/Timer.h"

#include <QMainWindow>
#include <memory>

class AppContext;
class PlayerControl;
class QAction;
class QMenu;
class QMimeData;

// The player window: the skin, the menus, the timers and the routines of the
// media player. It owns the process: its start-up routines run while the
// program starts and its exit sequence ends it.
//
// The routines keep the program's names so that every reader shares one
// vocabulary; the controls and menu commands are members of the same names.
// Routine bodies live in files by concern: start-up and exit (app/), the
// media session, transport, display, speed and drop (player/), smart play,
// the timed cycle and the keys (dictation/), the language (lang/).
class Form1 : public QMainWindow, public WindowTwips
{
public:
    explicit Form1(AppContext &ctx);
    ~Form1() override;

    AppContext &ctx;
    PlayerControl &WMP1;

    // --- Skin controls --------------------------------------------------
    PictureBox *cmdPlay = nullptr;
    PictureBox *cmdIndietro = nullptr;
    PictureBox *cmdStop = nullptr;
    PictureBox *cmdAvanz = nullptr;
    PictureBox *cmdRec = nullptr;
    PictureBox *Image3 = nullptr;   // open button
    PictureBox *imgDetta = nullptr; // smart play button
    PictureBox *Image4 = nullptr;   // logo
    PictureBox *Image1 = nullptr;   // volume thumb
    PictureBox *Image2 = nullptr;   // volume bar
    PictureBox *Shape1 = nullptr;   // position bar
    PictureBox *Shape3 = nullptr;   // backing of the title strip
    CaptionLabel *Label1 = nullptr; // "+"
    CaptionLabel *Label2 = nullptr; // position text over the bar
    CaptionLabel *Label3 = nullptr; // "-"
    CaptionLabel *Label4 = nullptr; // title line
    CaptionLabel *Label5 = nullptr; // volume in per cent
    CaptionLabel *Label7 = nullptr; // rate

    // --- Timers ---------------------------------------------------------
    std::unique_ptr<Timer> Timer1; // display tick
    std::unique_ptr<Timer> Timer2; // volume drag
    std::unique_ptr<Timer> Timer3; // volume label fade
    std::unique_ptr<Timer> Timer4; // end-of-media watch
    std::unique_ptr<Timer> Timer5; // timed play/pause cycle
    std::unique_ptr<Timer> Timer6; // typing watch
    std::unique_ptr<Timer> TimerKey;

    // --- Menus ----------------------------------------------------------
    QMenu *mnuFile = nullptr;
    QAction *mnuApri = nullptr;
    QAction *mnuChiudi = nullptr;
    QAction *mnuRegistra = nullptr;
    QAction *mnuRiga = nullptr;
    QAction *mnuRecent[4] = {};
    QAction *mnuR1 = nullptr;
    QAction *mnuEsci = nullptr;
    QMenu *mnuRiproduzione = nullptr;
    QAction *mnuPlay = nullptr;
    QAction *mnuStop = nullptr;
    QAction *mnuIndietro = nullptr;
    QAction *mnuAvanti = nullptr;
    QAction *mnuDiminuisciVelocità = nullptr;
    QAction *mnuAumentaVelocità = nullptr;
    QAction *mnuVai = nullptr;
    QAction *mnuAddBM = nullptr;
    QAction *mnuBMsuccessivo = nullptr;
    QAction *mnuBMprecedente = nullptr;
    QMenu *mnuVisualizza = nullptr;
    QAction *mnuMostraNascondi = nullptr;
    QAction *mnuBookMark = nullptr;
    QMenu *mnuOpzioni = nullptr;
    QAction *mnuImpostaAudio = nullptr;
    QAction *mnuSecIndietro = nullptr;
    QAction *mnuSalto = nullptr;
    QAction *mnuSmartPlay = nullptr;
    QAction *mnuTempoPlay = nullptr;
    QAction *mnuTempoPause = nullptr;
    QAction *mnuNoPlayOnWrite = nullptr;
    QAction *mnuTitoloCompleto = nullptr;
    QAction *mnuPrimoPiano = nullptr;
    QAction *mnuLingua = nullptr;
    QAction *mnuAggLingua = nullptr;
    QMenu *mnuDonazioni = nullptr;
    QAction *mnuFaiDonazione = nullptr;
    QMenu *mnuHelp = nullptr;
    QAction *mnuGuida = nullptr;
    QAction *mnuVersioni = nullptr;
    QAction *mnuAggiornamenti = nullptr;
    QAction *mnuCheckUpdateStartup = nullptr;
    QAction *mnuInfo = nullptr;

    // --- Window state ---------------------------------------------------
    qint16 HoverPlay = 0;
    qint16 HoverApri = 0;
    qint16 HoverIndietro = 0;
    qint16 HoverStop = 0;
    qint16 HoverAvanz = 0;
    qint16 HoverRec = 0;
    qint16 DettaTop = 0;
    qint16 DettaLeft = 0;
    bool FlagFocusPlayer = false;
    int VolumeMax = 100;
    int VolumeCorrente = 0;
    qint16 MouseButton = 0;
    float DragY = 0;
    qint16 FadeVolume = -15;

    // The stay-on-top switch with a move to the pixel (50, 50).
    void setWindowPosTopmost(bool topmost);

    // --- Start-up and exit (app/Startup.cpp) -----------------------------
    void Form_Initialize();
    void PosizionaEditor();
    // Places the editor again once the window manager has framed this window.
    void placeEditorAgain();
    void Form_Load();
    // The editor and bookmark windows that Form_Load found open are shown
    // once this window has painted, so that building them does not delay
    // the player on screen. Shows them now if they are still due; the
    // first paint calls it.
    void showDueWindows();
    // The files of the pictures the window shows as it is built.
    static QStringList picturesAtStart();
    // The editor is open, or will be at the first paint.
    bool editorOpen() const;
    void Form_Unload(int &Cancel);
    void mnuEsci_Click();
    void Salva(); // app/Settings.cpp

    // --- Media session (player/Session.cpp) ------------------------------
    void ApriMedia(const QString &path);
    void vai(const QString &path);
    void mnuChiudi_Click();
    void Image3_Click();
    void mnuApri_Click();
    // The media recent list (Files/LastFiles.ini).
    void updateRecentMedia(const QString &path);
    void mnuRecent_Click(int index); // 0..3
    // The file the recorder is writing, which is never opened as media.
    QString recorderTarget() const;

    // --- Transport (player/Transport.cpp) --------------------------------
    void cmdPlay_Click();
    void mnuPlay_Click() { cmdPlay_Click(); }
    void cmdAvanz_Click();
    void cmdIndietro_Click();
    void mnuAvanti_Click() { cmdAvanz_Click(); }
    void mnuIndietro_Click() { cmdIndietro_Click(); }
    void mnuStop_Click();
    void cmdStop_Click() { mnuStop_Click(); }
    void cmdRec_Click();
    void Timer4_Timer();

    // --- Display (player/Display.cpp) -------------------------------------
    void Timer1_Timer();
    void MostraPath();
    QString titleText() const;

    // --- Volume (player/Volume.cpp) ---------------------------------------
    void IniziaVolume();
    void ApplicaVolume();
    void computeVolumeTag();
    void Image2_MouseUp(int button, int y);  // y in twips, relative to the bar
    void Image1_MouseDown(int button);
    void Image1_MouseMove(int buttons, int y); // y relative to the thumb
    void Image1_MouseUp(int button);
    void Timer2_Timer();
    void Timer3_Timer();
    void Label2_MouseUp(int x);              // seek: x in twips on the bar

    // --- Speed (player/Speed.cpp) ------------------------------------------
    void mnuAumentaVelocità_Click();
    void mnuDiminuisciVelocità_Click();

    // --- Dropped files (player/DragDrop.cpp) -------------------------------
    void GotADrop(const QString &path);
    // What a drop on the window hands over: the first of the files.
    bool dropFiles(const QMimeData *data);

    // --- Window behaviour (player/WindowBehaviour.cpp) ---------------------
    void mnuMostraNascondi_Click();
    void mnuPrimoPiano_Click();
    void mnuTitoloCompleto_Click();
    // A click on the logo opens the about box.
    void Image4_Click() { mnuInfo_Click(); }
    void Form_Resize();

    // --- Hover pictures (player/Hover.cpp) ------------------------------------
    void cmdAvanz_MouseMove();
    void cmdIndietro_MouseMove();
    void cmdPlay_MouseMove();
    void cmdStop_MouseMove();
    void cmdRec_MouseMove();
    void Image3_MouseMove();
    void imgDetta_MouseMove();
    void Form_MouseMove();

    // --- Dictation (dictation/) ---------------------------------------------
    void mnuSmartPlay_Click();
    void imgDetta_Click();
    void mnuNoPlayOnWrite_Click();
    void Timer5_Timer();
    void Timer6_Timer();
    void mnuSecIndietro_Click();
    void mnuSalto_Click();
    void mnuTempoPlay_Click();
    void mnuTempoPause_Click();
    void mnuVai_Click();
    // Gives the keyboard back to the editor after a command given with the
    // mouse; `focusOnly` skips the reserved switch to the previous program.
    void TornaAllEditor(bool focusOnly = false);

    // --- Language (lang/) ----------------------------------------------------
    void ApplicaLingua();
    void mnuLingua_Click();

    // --- Bookmarks (bookmarks/) ----------------------------------------------
    void SalvaBookMark();
    void mnuAddBM_Click();
    void mnuBookMark_Click();
    void mnuBMsuccessivo_Click();
    void mnuBMprecedente_Click();

    // --- Outside world and recorder: commands still to come ------------------
    void mnuRegistra_Click();
    void mnuGuida_Click();
    void mnuInfo_Click();
    void mnuImpostaAudio_Click();
    void mnuAggiornamenti_Click();
    void mnuAggLingua_Click();
    void mnuFaiDonazione_Click();
    void mnuVersioni_Click();
    void ControllaAggiornamenti();

protected:
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void changeEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void moveEvent(QMoveEvent *event) override;

private:
    void buildSkin();
    void lightButton(int button);
    void restButton(int button);
    bool eventFilter(QObject *watched, QEvent *event) override;
    void buildMenus();
    void wireTimers();
    bool m_firstPaintDone = false;
    bool windowsDue() const;
    void windowsDueAtFirstPaint();
    // Where PosizionaEditor put the editor (twips) while this window had no
    // frame yet; placed again once the frame is there.
    std::optional<QPoint> m_editorPlacedUnframed;
    bool m_placingEditor = false;

public:
    // Called once after the window's first paint (the player back-end is
    // loaded then, so that it does not delay the window).
    std::function<void()> onFirstPaint;
};
