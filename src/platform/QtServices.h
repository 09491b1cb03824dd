#pragma once

#include "platform/Dialogs.h"
#include "platform/PrinterSetup.h"
#include "platform/Shell.h"
#include "platform/SystemInfo.h"
#include "platform/Timer.h"

#include <QString>
#include <memory>


// The real platform services over Qt.

class QtTimerFactory : public TimerFactory
{
public:
    std::unique_ptr<Timer> createTimer() override;
};

class QtDialogs : public Dialogs
{
public:
    int msgBox(const QString &text, int style, const QString &title) override;
    FileDialogAnswer fileDialog(const FileDialogRequest &request) override;
    bool chooseColor(QWidget *owner, QColor &color) override;
    bool chooseColorWithCustom(QWidget *owner, QColor &color, std::array<QColor, 16> &customColors) override;
    void beep() override;

    // Converts the NUL-joined filter of the program ("Name\0*.a;*.b\0...")
    // into Qt's form ("Name (*.a *.b);;...").
    static QString qtFilter(const QString &filter, QString *selected, int filterIndex);
};

class QtPrinterSetup : public PrinterSetup
{
public:
    QStringList installedPrinters() override;
    QString currentPrinter(const QPrinter &printer) override;
    void selectPrinter(QPrinter &printer, const QString &name) override;
    bool setupDialog(QWidget *owner, QPrinter &printer) override;
};

class QtShell : public Shell
{
public:
    void openUrl(const QString &url) override;
    void openFile(const QString &path) override;
    void runCommand(const QString &command) override;
    bool hasProgram(const QString &name) override;
};

class QtSystemInfo : public SystemInfo
{
public:
    explicit QtSystemInfo(QString programFolder);
    ~QtSystemInfo() override;
    QString countryEnglishName() override;
    bool acquireInstanceLock() override;

private:
    QString m_programFolder;
    int m_lockFd = -1;
};
