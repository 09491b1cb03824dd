#pragma once

#include <QString>

// Actions that leave the program: a web address or a file opened in the
// program the desktop assigns, or a command run in the background.
class Shell
{
public:
    virtual ~Shell() = default;
    virtual void openUrl(const QString &url) = 0;
    virtual void openFile(const QString &path) = 0;
    virtual void runCommand(const QString &command) = 0;
    // Whether a program of this name is installed (found on the PATH).
    virtual bool hasProgram(const QString &name) = 0;
};
