#pragma once

// Helpers of the RTF tests: documents as comparable text, and the paths of
// the committed data.

#include <QByteArray>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFont>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextList>
#include <string>

#include "QtPrinters.h"

namespace RtfTest {

// The source tree, which the test runner names in QM_SOURCE_DIR.
inline QString sourceDir()
{
    return qEnvironmentVariable("QM_SOURCE_DIR");
}

// The font the editor gives its documents.
inline QFont editorFont()
{
    return QFont(QStringLiteral("Arial"), 10);
}

inline QString describeFormat(const QTextFormat &format)
{
    QString out;
    QDebug d(&out);
    d.nospace().noquote();
    const auto props = format.properties();
    for (auto it = props.cbegin(); it != props.cend(); ++it) {
        if (it.key() == QTextFormat::ObjectIndex)
            continue; // differs between documents; lists are described apart
        d << Qt::hex << it.key() << Qt::dec << '=' << it.value() << ' ';
    }
    return out;
}

// The text as the blocks hold it: unlike toPlainText(), line separators and
// no-break spaces stay as they are.
inline QString rawText(const QTextDocument &doc)
{
    QStringList blocks;
    for (QTextBlock b = doc.begin(); b.isValid(); b = b.next())
        blocks.append(b.text());
    return blocks.join(u'\n');
}

// Every block with its format, its list, and every run with its text and
// format; an empty block shows the format of what is typed into it. Two
// documents that describe alike look and behave alike.
inline std::string describe(const QTextDocument &doc)
{
    QString out;
    for (QTextBlock b = doc.begin(); b.isValid(); b = b.next()) {
        out += QStringLiteral("P{") + describeFormat(b.blockFormat()) + u'}';
        if (const QTextList *list = b.textList())
            out += QStringLiteral(" list(style=%1 indent=%2)")
                       .arg(int(list->format().style()))
                       .arg(list->format().indent());
        out += u'\n';
        if (b.length() == 1)
            out += QStringLiteral("  mark{") + describeFormat(b.charFormat()) + QStringLiteral("}\n");
        for (auto it = b.begin(); !it.atEnd(); ++it) {
            const QTextFragment f = it.fragment();
            QString text = f.text();
            text.replace(QChar::LineSeparator, QLatin1String("<LS>"));
            out += QStringLiteral("  [") + text + QStringLiteral("] {")
                   + describeFormat(f.charFormat()) + QStringLiteral("}\n");
        }
    }
    return out.toStdString();
}

// Lists are told apart by identity: which blocks share one.
inline std::string listMembership(const QTextDocument &doc)
{
    std::string out;
    QList<const QTextList *> seen;
    for (QTextBlock b = doc.begin(); b.isValid(); b = b.next()) {
        const QTextList *list = b.textList();
        if (list && !seen.contains(list))
            seen.append(list);
        out += list ? std::to_string(seen.indexOf(list) + 1) : std::string("-");
    }
    return out;
}

inline QByteArray readFile(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

} // namespace RtfTest
