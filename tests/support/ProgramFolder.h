#pragma once

#include <QHash>
#include <QString>
#include <QTemporaryDir>

#include "QtPrinters.h"

// A fresh copy of the built program folder (Files, Files/Lang, Bookmarks) in
// a temporary directory, removed with the object. Each test that starts the
// program's windows works on one of these, so no test sees another's files.
class ProgramFolder
{
public:
    ProgramFolder();

    QString path() const { return m_dir.path(); }
    QString file(const QString &relative) const;

    // Replaces or reads a file below the folder (relative path, '/' separated).
    void write(const QString &relative, const QByteArray &bytes) const;
    QByteArray read(const QString &relative) const;
    void remove(const QString &relative) const;

    // The settings file as lines, and a way to change single lines of it
    // (1-based, as the file's format counts them).
    QStringList settingsLines() const;
    void setSettingsLine(int line, const QString &value) const;

    // Writes a language file of `lines` entries into Files/Lang and makes it
    // the one in use: the entries given, every other a text of its own, "T"
    // and its number.
    void setLanguage(const QString &name, const QHash<int, QString> &entries, int lines = 151) const;

    // Folder of the source tree, whose data folder the copy is taken from.
    static QString sourceDir();

private:
    QTemporaryDir m_dir;
};
