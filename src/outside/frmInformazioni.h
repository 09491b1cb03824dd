#pragma once

#include "app/Controls.h"
#include "outside/Version.h"
#include "platform/Timer.h"

#include <QWidget>
#include <memory>

class AppContext;
class QFrame;

// The about box: the program's name and version, its description, and a
// panel of credits that creeps up through a well. While it is up the
// program's other windows are hidden, not closed, so playback goes on; a
// click anywhere on it or Esc unloads it and brings them back.
class frmInformazioni : public QWidget, public WindowTwips
{
public:
    explicit frmInformazioni(AppContext &ctx);
    ~frmInformazioni() override;

    AppContext &ctx;

    PictureBox *Picture1 = nullptr; // the well
    PictureBox *Picture2 = nullptr; // the panel that scrolls in it
    PictureBox *imgTitle = nullptr;
    PictureBox *Image1 = nullptr;
    CaptionLabel *lblTitle = nullptr;
    CaptionLabel *lblVersion = nullptr;
    CaptionLabel *lblDescription = nullptr;
    CaptionLabel *lblHomePageCap = nullptr;
    CaptionLabel *lblHomePage = nullptr;
    CaptionLabel *lblCopyright = nullptr;
    QLabel *lblCredits = nullptr; // the text on the panel
    QFrame *Frame1 = nullptr;
    std::unique_ptr<Timer> Timer1;

    // The panel's position and the ticks of its halt.
    Outside::CreditsScroll scroll;

    // The copyright line before " - " and the language's subtitle.
    static QString copyrightText();

    void Form_Load();
    void Timer1_Timer();
    void Form_Unload();

protected:
    void mouseReleaseEvent(QMouseEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void unload();
    bool m_unloading = false;
};
