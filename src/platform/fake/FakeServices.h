#pragma once

#include "platform/Dialogs.h"
#include "platform/PrinterSetup.h"
#include "platform/Shell.h"
#include "platform/SystemInfo.h"
#include "platform/WebReader.h"

#include <QColor>
#include <QList>
#include <QStringList>
#include <deque>
#include <functional>
#include <memory>

// Message boxes and dialogs for tests: every call is recorded, and answers
// come from scripts that the test fills beforehand. An empty script answers
// a message box with its first button (OK or Yes) and cancels a file dialog.
class FakeDialogs : public Dialogs
{
public:
    struct Message
    {
        QString text;
        int style = 0;
        QString title;
    };

    QList<Message> messages;
    QList<FileDialogRequest> fileDialogs;
    int colorDialogs = 0;
    QList<QColor> colorStarts; // the colour each colour dialog opened on
    int beeps = 0;

    std::deque<int> msgBoxAnswers;
    std::deque<FileDialogAnswer> fileAnswers;
    std::deque<QColor> colorAnswers; // an invalid colour answers cancel

    // Runs inside a message box or dialog, as the event loop would run
    // timers there; tests use it to advance the virtual clock.
    std::function<void()> whileOpen;

    void answerFile(const QString &path) { fileAnswers.push_back({path.isEmpty() ? QStringList() : QStringList{path}, 0}); }

    int msgBox(const QString &text, int style, const QString &title) override;
    FileDialogAnswer fileDialog(const FileDialogRequest &request) override;
    bool chooseColor(QWidget *owner, QColor &color) override;
    void beep() override { ++beeps; }
};

// Printers for tests: a list of names and a script of answers to the set-up
// dialog. An answer may change the printer, as the user's choices would (a
// test sends the output to a PDF file); an empty script cancels.
class FakePrinterSetup : public PrinterSetup
{
public:
    QStringList printers;
    QString current;
    QStringList selected; // every printer made current, in order
    int dialogs = 0;
    std::deque<std::function<bool(QPrinter &)>> answers;

    QStringList installedPrinters() override { return printers; }
    QString currentPrinter(const QPrinter &) override { return current; }
    void selectPrinter(QPrinter &printer, const QString &name) override;
    bool setupDialog(QWidget *owner, QPrinter &printer) override;
};

class FakeShell : public Shell
{
public:
    QStringList urls;
    QStringList files;
    QStringList commands;
    void openUrl(const QString &url) override { urls.append(url); }
    void openFile(const QString &path) override { files.append(path); }
    void runCommand(const QString &command) override { commands.append(command); }
    QStringList installed; // programs that hasProgram() finds
    bool hasProgram(const QString &name) override { return installed.contains(name); }
};

// A web reader for tests: records every address asked for. With a target (a
// real reader) and an address (a local server), the request goes there
// instead; without, it is never answered, as from a silent server.
class FakeWebReader : public WebReader
{
public:
    QStringList urls;
    QList<QByteArray> answers; // what the target gave, in order
    std::unique_ptr<WebReader> target;
    QString address;
    void get(const QString &url, QObject *context, std::function<void(const QByteArray &)> done) override
    {
        urls.append(url);
        if (target) {
            target->get(address, context, [this, done = std::move(done)](const QByteArray &body) {
                answers.append(body);
                done(body);
            });
        }
    }
};

class FakeSystemInfo : public SystemInfo
{
public:
    QString country = QStringLiteral("United Kingdom");
    bool anotherInstance = false;
    QString countryEnglishName() override { return country; }
    bool acquireInstanceLock() override { return !anotherInstance; }
};
