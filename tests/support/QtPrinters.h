#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <ostream>

// Readable failure messages for Qt's text types.
inline void PrintTo(const QString &s, std::ostream *os)
{
    *os << '"' << s.toStdString() << '"';
}

inline void PrintTo(const QStringList &list, std::ostream *os)
{
    *os << '{';
    for (qsizetype i = 0; i < list.size(); ++i)
        *os << (i ? ", " : "") << '"' << list.at(i).toStdString() << '"';
    *os << '}';
}

inline void PrintTo(const QByteArray &bytes, std::ostream *os)
{
    *os << '"' << bytes.toStdString() << '"';
}
