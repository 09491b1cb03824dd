#pragma once

#include "app/Controls.h"
#include "bookmarks/ListBox.h"
#include "platform/Timer.h"

#include <QWidget>
#include <memory>

class AppContext;
class QPushButton;

// The bookmark window: the visible list of bookmarks (time, two blanks,
// name), the hidden list of the whole lines behind it, and the buttons that
// add and delete. Both lists are sorted list boxes, so row i of one is meant
// to be row i of the other; the delete button knowingly breaks that (see
// Command2_Click). The table and the file are BookmarkFile's and the
// context's `BookMark`.
//
// The window is loaded by the first routine that touches it (the context's
// form3()), which runs Form_Load; ctx.unloadForm3() runs Form_Unload and
// destroys it.
class Form3 : public QWidget, public WindowTwips, public ShownLater
{
public:
    explicit Form3(AppContext &ctx);
    ~Form3() override;

    AppContext &ctx;
    ListBox *List1 = nullptr;       // shown rows: the key of each bookmark
    ListBox *List2 = nullptr;       // the whole lines, hidden
    QPushButton *Command1 = nullptr; // "+": add
    QPushButton *Command2 = nullptr; // "-": delete the selected row
    // Period 0 until the exit sequence arms it; its tick unloads the window.
    std::unique_ptr<Timer> Timer1;

    // Set when the window gets the focus, cleared by a key's release there.
    // Nothing reads it.
    bool FlagFocusBookmark = false;

    // The outer size, as WindowTwips sets it; it is remembered and set again
    // once the window has its frame (a window not yet on screen has none,
    // and the frame arrives with the first showing).
    void setWidth(int twips);
    void setHeight(int twips);

    void Form_Load();
    void Form_Resize();
    void Form_Unload();
    void Command1_Click();
    void Command2_Click();
    void List1_DblClick();
    void Timer1_Timer();

protected:
    void resizeEvent(QResizeEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    bool event(QEvent *event) override;

private:
    void fitOuterSize();
    int m_outerWidth = -1;  // twips; -1 when no routine set it
    int m_outerHeight = -1;
    QSize m_frameUsed;      // the frame the outer size was last set with

    void SvuotaBookMark();
    // BookMark(i) = List2.List(i) for each row of List1.
    void copyListToTable();
};
