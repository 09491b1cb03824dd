#include "ProgramFolder.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <gtest/gtest.h>

QString ProgramFolder::sourceDir()
{
    return qEnvironmentVariable("QM_SOURCE_DIR");
}

// The copy is taken from the source tree's data folder, not from the built
// program folder, whose settings file a developer's runs may have changed.
ProgramFolder::ProgramFolder()
{
    EXPECT_FALSE(sourceDir().isEmpty()) << "QM_SOURCE_DIR is not set";
    const QDir data(sourceDir() + QStringLiteral("/data"));
    for (const QString &sub : {QStringLiteral("Files"), QStringLiteral("Bookmarks")}) {
        QDir().mkpath(file(sub));
        QDirIterator it(data.filePath(sub), QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden,
                        QDirIterator::Subdirectories);
        while (it.hasNext()) {
            const QString target = file(data.relativeFilePath(it.next()));
            if (it.fileInfo().isDir())
                QDir().mkpath(target);
            else if (it.fileName() != QLatin1String(".keep"))
                QFile::copy(it.filePath(), target);
        }
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
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
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
    if (lines.last().isEmpty())
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

void ProgramFolder::setLanguage(const QString &name, const QHash<int, QString> &entries, int lines) const
{
    QByteArray text;
    for (int i = 0; i < lines; ++i) {
        const QString entry = entries.value(i, u'T' + QString::number(i));
        text += QByteArray::number(i).rightJustified(3, '0') + entry.toUtf8() + "\r\n";
    }
    write(QStringLiteral("Files/Lang/") + name, text);
    setSettingsLine(1, name);
}
