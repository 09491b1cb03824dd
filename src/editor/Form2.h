#pragma once

#include "app/Controls.h"
#include "editor/RTB.h"
#include "platform/Timer.h"

#include <QAbstractButton>
#include <QMainWindow>
#include <array>
#include <memory>

class AppContext;
class QAction;
class QComboBox;
class QFrame;
class QMenu;
class QPrinter;
class frmFind;

// A hot area of the toolbar: an invisible button laid over the toolbar
// picture, which carries the icons.
class ToolbarButton : public QAbstractButton, public TwipsPlacement
{
public:
    explicit ToolbarButton(QWidget *parent) : QAbstractButton(parent), TwipsPlacement(this) {}

protected:
    void paintEvent(QPaintEvent *) override {}
};

// The transcription editor window: one rich-text document, its commands,
// the keys that drive the player from the text, the clipboard in two forms
// and the editor's own undo.
//
// Routine bodies live in files by concern: the window and its language
// (Form2.cpp), the document commands (Document.cpp), the events of the text
// and the clipboard (EditorEvents.cpp).
class Form2 : public QMainWindow, public ShownLater
{
public:
    explicit Form2(AppContext &ctx);
    ~Form2() override;

    AppContext &ctx;

    // --- Controls ---------------------------------------------------------
    RichTextBox *RTB = nullptr;
    CaptionLabel *Label1 = nullptr;  // the frame round the text
    PictureBox *Image1 = nullptr;    // the toolbar picture
    CaptionLabel *Line1 = nullptr;   // the rule under the toolbar
    std::array<ToolbarButton *, 17> Label2 = {};
    std::array<CaptionLabel *, 4> Label3 = {}; // letters over the style buttons
    std::unique_ptr<Timer> Timer1;   // clipboard form swap
    // The font boxes and the hover mark come with the window's first show:
    // the player's first paint does not wait for them. The hover routines
    // run only over the window on screen.
    QComboBox *Combo1 = nullptr;     // font names
    QComboBox *Combo2 = nullptr;     // font sizes
    QFrame *Shape1 = nullptr;        // the hover mark over the toolbar
    // "" while the find window is to open for Find, "1" for Replace.
    QString Tag;

    // --- Menus -------------------------------------------------------------
    QMenu *mnuFile = nullptr;
    QAction *mnuNuovo = nullptr;
    QAction *mnuApri = nullptr;
    QAction *mnuSalva = nullptr;
    QAction *mnuSalvaConNome = nullptr;
    QAction *mnuRecent[4] = {};
    QAction *mnur = nullptr;
    QAction *mnuStampa = nullptr;
    QMenu *mnuModifica = nullptr;
    QAction *mnuAnnulla = nullptr;
    QAction *mnuRipeti = nullptr;
    QAction *mnuTaglia = nullptr;
    QAction *mnuCopia = nullptr;
    QAction *mnuIncolla = nullptr;
    QAction *mnuSelezionaTutto = nullptr;
    QAction *mnuTrova = nullptr;
    QAction *mnuSostituisci = nullptr;
    QMenu *mnuStrumenti = nullptr;
    QAction *mnuOrtografia = nullptr;
    QAction *mnuTimeStamp = nullptr; // a command on the menu bar itself

    // --- Clipboard state -----------------------------------------------------
    // The two forms of the last copy or cut (kept in the font boxes' hidden
    // Tag texts by the original design): RTF source and plain text.
    QString clipRtf;
    QString clipPlain;
    // True while the clipboard is taken to hold the RTF form.
    bool ClipRtfOn = false;

    // --- Geometry in twips (outer frame) ----------------------------------------
    int Left() const;
    int Top() const;
    int Width() const;
    int Height() const;
    void setLeft(int twips);
    void setTop(int twips);
    void setWidth(int twips);
    void setHeight(int twips);

    // --- Window (Form2.cpp) -------------------------------------------------------
    void Form_Load();
    void Form_Resize();
    void Form_KeyDown(int &KeyCode, int &Shift);
    void CambiaLingua2();
    void SetFocus();
    QString Text() const;

    // --- Document (Document.cpp) --------------------------------------------------
    void Label2_Click(int Index);
    void mnuNuovo_Click() { Label2_Click(0); }
    void mnuApri_Click() { Label2_Click(1); }
    void mnuSalva_Click() { Label2_Click(2); }
    void mnuStampa_Click() { Label2_Click(3); }
    void mnuSalvaConNome_Click();
    void ApriDocumento(const QString &path);
    void SalvaFilesRecenti(const QString &path);
    void mnuRecent_Click(int index); // 0..3
    void mnuSelezionaTutto_Click();
    // The file whose load dropped content the editor cannot keep (tables,
    // footnotes...): the first save over it asks for another name.
    QString fileLosingContent;
    void mnuTrova_Click();        // FindWindow.cpp
    void mnuSostituisci_Click();
    void Stampa();                // Printing.cpp
    void ShowColor();             // Toolbar.cpp

    // --- Events, clipboard, undo (EditorEvents.cpp) -----------------------------------
    void RTB_Change();
    void RTB_KeyDown(int &KeyCode, int &Shift);
    void RTB_KeyUp(int &KeyCode, int &Shift);
    void RTB_MouseDown(int Button, int Shift, int X, int Y);
    void RTB_LostFocus();
    void mnuCopia_Click();
    void mnuTaglia_Click();
    void mnuIncolla_Click();
    void Timer1_Timer();
    void mnuTimeStamp_Click();
    void mnuAnnulla_Click();
    void mnuRipeti_Click();

    // --- Font boxes and the toolbar's hover (Toolbar.cpp) --------------------------------
    void Combo1_Change();
    void Combo2_Change();
    void Combo1_Click() { Combo1_Change(); }
    void Combo2_Click() { Combo2_Change(); }
    void Label2_MouseMove(int Index);
    void NascondiEvidenza();

    // --- Printing (Printing.cpp) ----------------------------------------------------------
    // The printer the editor prints on; the user's choices stay with it.
    QPrinter &Printer();
    bool ScegliStampante(QWidget *finestra, const QString &nomeStampante, int flags);

    // --- The find window (FindWindow.cpp) ---------------------------------------------------
    frmFind *existingFrmFind() const { return m_frmFind.get(); }
    void unloadFrmFind();
    // The program's exit: the window is hidden and goes with its timer.
    void frmFindAtExit();

    // The files of the pictures the window shows as it is built.
    static QStringList picturesAtStart();
    void setVisible(bool visible) override;

protected:
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void buildControls();
    void buildMenus();
    // The question before New and Open; false when the user cancels.
    bool askToSaveChanges();
    // The filter of the editor's dialogs and its default extension, chosen
    // by the first entry of the recent list.
    QString dialogFilter(QString &defaultExtension) const;
    // The caption with the name behind the last '/' of `path`; kept as it
    // is when there is none.
    void showDocumentName(const QString &path);
    // Writes the document; a failure is told with the system's reason.
    bool writeDocument(const QString &path);
    // The question before a save over a file whose load lost content; true
    // when the user wants another name.
    bool wantsAnotherName(const QString &path);

    // Toolbar.cpp: the font boxes, the hover mark and tool tips; their lists.
    // toolbarTools builds them unless they are there.
    void toolbarTools();
    void buildToolbarTools();
    void fillFontBoxes();
    // The settings after a toolbar command that may have moved the folder
    // of the editor's dialogs.
    void saveSettingsAfter(int Index);

    // Loads the find window if it isn't, and shows it.
    void showFrmFind();

    std::unique_ptr<QPrinter> m_printer;
    std::unique_ptr<frmFind> m_frmFind;
};
