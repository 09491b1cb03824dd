#pragma once

#include <QFileInfo>
#include <QProcess>
#include <QString>

namespace bench {

// The program writes its settings into its own folder: benchmarks run a copy
// of the built folder, placed in `dir`. Returns the copy's executable.
inline QString copyProgram(const QString &built, const QString &dir)
{
    QProcess::execute(QStringLiteral("cp"), {QStringLiteral("-r"), QFileInfo(built).absolutePath(),
                                             dir + QStringLiteral("/program")});
    return dir + QStringLiteral("/program/") + QFileInfo(built).fileName();
}

} // namespace bench
