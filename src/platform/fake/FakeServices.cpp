#include "platform/fake/FakeServices.h"

int FakeDialogs::msgBox(const QString &text, int style, const QString &title)
{
    messages.append({text, style, title});
    if (whileOpen)
        whileOpen();
    if (!msgBoxAnswers.empty()) {
        const int answer = msgBoxAnswers.front();
        msgBoxAnswers.pop_front();
        return answer;
    }
    switch (style & 7) {
    case MsgBox::YesNoCancel:
    case MsgBox::YesNo:
        return MsgBox::Yes;
    case MsgBox::AbortRetryIgnore:
        return MsgBox::Abort;
    case MsgBox::RetryCancel:
        return MsgBox::Retry;
    default:
        return MsgBox::Ok;
    }
}

FileDialogAnswer FakeDialogs::fileDialog(const FileDialogRequest &request)
{
    fileDialogs.append(request);
    if (whileOpen)
        whileOpen();
    if (fileAnswers.empty())
        return {};
    FileDialogAnswer answer = fileAnswers.front();
    fileAnswers.pop_front();
    if (answer.flags == 0)
        answer.flags = request.flags;
    return answer;
}

bool FakeDialogs::chooseColor(QWidget *, QColor &color)
{
    ++colorDialogs;
    colorStarts.append(color);
    if (colorAnswers.empty())
        return false;
    const QColor answer = colorAnswers.front();
    colorAnswers.pop_front();
    if (!answer.isValid())
        return false;
    color = answer;
    return true;
}

void FakePrinterSetup::selectPrinter(QPrinter &, const QString &name)
{
    // The print system here may know no printer of this name: the fake
    // keeps the choice itself.
    selected.append(name);
    current = name;
}

bool FakePrinterSetup::setupDialog(QWidget *, QPrinter &printer)
{
    ++dialogs;
    if (answers.empty())
        return false;
    const auto answer = answers.front();
    answers.pop_front();
    return answer(printer);
}
