#include "ProgramFolder.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <gtest/gtest.h>

namespace {

void copyTree(const QString &from, const QString &to)
{
    QDir().mkpath(to);
    QDirIterator it(from, QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString source = it.next();
        const QFileInfo info = it.fileInfo();
        const QString target = to + u'/' + QDir(from).relativeFilePath(source);
        if (info.isDir())
            QDir().mkpath(target);
        else if (info.fileName() != QLatin1String(".keep"))
            QFile::copy(source, target);
    }
}

} // namespace

// The copy is taken from the source tree's data folder, not from the built
// program folder, whose settings file a developer's runs may have changed.
static QString dataDir()
{
    return ProgramFolder::sourceDir() + QStringLiteral("/data");
}

QString ProgramFolder::sourceDir()
{
    return qEnvironmentVariable("QM_SOURCE_DIR");
}

ProgramFolder::ProgramFolder()
{
    const QString from = dataDir();
    EXPECT_FALSE(sourceDir().isEmpty()) << "QM_SOURCE_DIR is not set";
    for (const char *sub : {"Files", "Bookmarks"}) {
        const QString name = QString::fromLatin1(sub);
        copyTree(from + u'/' + name, path() + u'/' + name);
    }
}

QString ProgramFolder::file(const QString &relative) const
{
    return path() + u'/' + relative;
}

void ProgramFolder::write(const QString &relative, const QByteArray &bytes) const
{
    const QString target = file(relative);
    QDir().mkpath(QFileInfo(target).absolutePath());
    QFile f(target);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate)) << target.toStdString();
    f.write(bytes);
}

QByteArray ProgramFolder::read(const QString &relative) const
{
    QFile f(file(relative));
    if (!f.open(QIODevice::ReadOnly))
        return {};
    return f.readAll();
}

void ProgramFolder::remove(const QString &relative) const
{
    QFile::remove(file(relative));
}

QStringList ProgramFolder::settingsLines() const
{
    QString text = QString::fromUtf8(read(QStringLiteral("Files/Quillmere.ini")));
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    QStringList lines = text.split(u'\n');
    if (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast();
    return lines;
}

void ProgramFolder::setSettingsLine(int line, const QString &value) const
{
    QStringList lines = settingsLines();
    while (lines.size() < line)
        lines.append(QString());
    lines[line - 1] = value;
    write(QStringLiteral("Files/Quillmere.ini"), (lines.join(QStringLiteral("\r\n")) + QStringLiteral("\r\n")).toUtf8());
}
