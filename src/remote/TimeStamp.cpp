#include "remote/TimeStamp.h"

#include <QStringList>

namespace {

std::optional<int> number(const QString &text, int minDigits, int maxDigits)
{
    if (text.size() < minDigits || text.size() > maxDigits)
        return std::nullopt;
    for (QChar c : text)
        if (c < u'0' || c > u'9')
            return std::nullopt;
    return text.toInt();
}

} // namespace

std::optional<int> timeStampAt(const QString &line, int pos)
{
    if (pos < 0 || pos > line.size() || line.isEmpty())
        return std::nullopt;
    const int open = line.lastIndexOf(u'[', qMin(pos, int(line.size()) - 1));
    const int close = open < 0 ? -1 : line.indexOf(u']', open);
    if (close < 0 || pos > close + 1)
        return std::nullopt;
    const QStringList parts = line.mid(open + 1, close - open - 1).split(u':');
    if (parts.size() != 2 && parts.size() != 3)
        return std::nullopt;
    const bool withHours = parts.size() == 3;
    const auto h = withHours ? number(parts[0], 1, 2) : std::optional<int>(0);
    const auto m = number(parts[withHours ? 1 : 0], 2, 2);
    const auto s = number(parts[withHours ? 2 : 1], 2, 2);
    if (!h || !m || !s || *m > 59 || *s > 59)
        return std::nullopt;
    return *h * 3600 + *m * 60 + *s;
}
