#pragma once

#include <QColor>
#include <QString>
#include <QStringList>
#include <array>

class QWidget;

// Message box styles and results, with the platform's values, since the
// program's routines compute and compare them as numbers.
namespace MsgBox {
enum Style : int {
    OkOnly = 0,
    OkCancel = 1,
    AbortRetryIgnore = 2,
    YesNoCancel = 3,
    YesNo = 4,
    RetryCancel = 5,
    Critical = 16,
    Question = 32,
    Exclamation = 48,
    Information = 64,
};
enum Result : int {
    Ok = 1,
    Cancel = 2,
    Abort = 3,
    Retry = 4,
    Ignore = 5,
    Yes = 6,
    No = 7,
};
} // namespace MsgBox

// What one call of the system's open or save dialog is given. The filter is
// the platform form: pairs of a name and a pattern list, all joined with NUL
// characters ("Text\0*.txt\0All\0*.*").
struct FileDialogRequest
{
    bool open = false;
    QWidget *owner = nullptr;
    QString title;
    QString fileName;      // initial name
    QString defaultExtension; // without the point
    QString initialFolder;
    QString filter;
    int filterIndex = 1;   // 1-based
    quint32 flags = 0;     // 512: several files may be chosen
};

// The answer of the dialog: the chosen paths (empty on cancel), the flags as
// the dialog gave them back. With several files the first entry is the
// folder and the rest are the names in it, as the system dialog returns them.
struct FileDialogAnswer
{
    QStringList parts;
    quint32 flags = 0;
};

// Message boxes and the system's dialogs. The real implementation shows Qt
// dialogs; the fake records every call and answers from a script.
class Dialogs
{
public:
    virtual ~Dialogs() = default;

    // A message box with text, style (buttons + icon) and title. The empty
    // title means the platform's default one. Returns a MsgBox::Result.
    virtual int msgBox(const QString &text, int style, const QString &title) = 0;

    virtual FileDialogAnswer fileDialog(const FileDialogRequest &request) = 0;

    // The colour dialog; false when cancelled.
    virtual bool chooseColor(QWidget *owner, QColor &color) = 0;

    // The colour dialog with its sixteen custom colours given in and, when
    // confirmed, read back. Dialogs that keep no custom colours answer as
    // chooseColor does.
    virtual bool chooseColorWithCustom(QWidget *owner, QColor &color, std::array<QColor, 16> &customColors)
    {
        (void)customColors;
        return chooseColor(owner, color);
    }

    // The system's beep.
    virtual void beep() = 0;
};
