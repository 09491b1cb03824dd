#pragma once

#include "app/Controls.h"

#include <QDialog>

class AppContext;
class QLineEdit;
class QPushButton;

// The one small input dialog, used for six jobs: the four seconds settings,
// go-to, and naming a new bookmark. It keeps no mode of its own: the caller
// sets the caption and the prompt, and the OK routine tells the job from
// them, so a caller and the dialog agree through the language table alone.
//
// Each caller builds one, fills it and calls showModal(), which returns once
// the dialog is unloaded (OK, Cancel or the frame's close button). Timers
// run on while it is open. The routines work on a dialog that was never
// shown as well, which is how the validation is tested without an event
// loop; tests of the callers reach the open dialog from inside the modal
// loop instead (a zero-time single shot finds it as the active modal
// widget), so the program needs no test hook.
class Form4 : public QDialog, public WindowTwips
{
public:
    // Loads the dialog: the controls, their language texts and the place in
    // the middle of the screen. `owner` lends its icon and parents the
    // dialog; it may be null.
    Form4(AppContext &ctx, QWidget *owner);
    ~Form4() override;

    AppContext &ctx;

    PictureBox *Image1 = nullptr;   // background, the player's title strip
    CaptionLabel *Label1 = nullptr; // prompt
    QLineEdit *Text1 = nullptr;     // the value
    QPushButton *Command1 = nullptr; // OK, pressed by Enter
    QPushButton *Command2 = nullptr; // Cancel

    // The window's caption, which the OK routine reads back as data.
    QString Caption() const { return windowTitle(); }
    void setCaption(const QString &caption) { setWindowTitle(caption); }

    void Form_Load();
    void Command1_Click();
    void Command2_Click();

    // Shows the dialog modally and returns when it has been unloaded.
    void showModal();

    // True once OK or Cancel has closed the dialog for good.
    bool isUnloaded() const { return m_unloaded; }

    // The bounds of the four seconds settings, as the OK routine applies
    // them after reading the number.
    struct Bounds
    {
        qint16 lower;
        qint16 upper;
    };
    static constexpr Bounds SecIndietroBounds{0, 20};
    static constexpr Bounds SecSaltoBounds{1, 60};
    static constexpr Bounds TempoPlayBounds{3, 20};
    static constexpr Bounds TempoPauseBounds{1, 20};

protected:
    void keyPressEvent(QKeyEvent *event) override;
    // Closing by the frame (and any other reject) is the Cancel button.
    void reject() override;

private:
    void Unload();
    void storeSeconds(qint16 &variable, Bounds bounds);
    void goTo();
    void addBookmark();

    bool m_unloaded = false;
};
