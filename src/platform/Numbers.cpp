#include "platform/Numbers.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace Numbers {

namespace {

bool isBlank(QChar c)
{
    return c == u' ' || c == u'\t' || c == u'\r' || c == u'\n';
}

// Length of the longest prefix of text[pos..] that forms a number, or 0.
qsizetype numberLength(const QString &text, qsizetype pos)
{
    const qsizetype n = text.size();
    qsizetype i = pos;
    if (i < n && (text.at(i) == u'+' || text.at(i) == u'-'))
        ++i;
    qsizetype digits = 0;
    while (i < n && text.at(i).isDigit() && text.at(i).unicode() < 128) {
        ++i;
        ++digits;
    }
    if (i < n && text.at(i) == u'.') {
        qsizetype j = i + 1;
        qsizetype fraction = 0;
        while (j < n && text.at(j).isDigit() && text.at(j).unicode() < 128) {
            ++j;
            ++fraction;
        }
        if (digits + fraction > 0) {
            i = j;
            digits += fraction;
        }
    }
    if (digits == 0)
        return 0;
    if (i < n && (text.at(i) == u'e' || text.at(i) == u'E')) {
        qsizetype j = i + 1;
        if (j < n && (text.at(j) == u'+' || text.at(j) == u'-'))
            ++j;
        qsizetype expDigits = 0;
        while (j < n && text.at(j).isDigit() && text.at(j).unicode() < 128) {
            ++j;
            ++expDigits;
        }
        if (expDigits > 0)
            i = j;
    }
    return i - pos;
}

// A number that a double cannot hold: its decimal magnitude tells whether
// it was too large (an infinity of its sign) or too small (0).
double beyondDouble(QStringView number)
{
    const bool negative = number.startsWith(u'-');
    qsizetype i = (negative || number.startsWith(u'+')) ? 1 : 0;
    // The power of ten of the first significant digit, before the exponent.
    qint64 magnitude = 0;
    bool significant = false;
    bool inFraction = false;
    for (; i < number.size() && number.at(i) != u'e' && number.at(i) != u'E'; ++i) {
        const QChar c = number.at(i);
        if (c == u'.') {
            inFraction = true;
            continue;
        }
        if (!significant && c != u'0')
            significant = true;
        if (significant && !inFraction)
            ++magnitude;
        else if (!significant && inFraction)
            --magnitude;
    }
    if (!significant)
        return 0.0;
    if (i < number.size()) {
        // The exponent, saturated: a thousand digits of it mean the same.
        const QStringView exponent = number.mid(i + 1);
        const bool down = exponent.startsWith(u'-');
        qint64 e = 0;
        for (QChar c : exponent) {
            if (c.isDigit())
                e = std::min<qint64>(e * 10 + c.digitValue(), 1'000'000'000);
        }
        magnitude += down ? -e : e;
    }
    if (magnitude <= 0)
        return 0.0;
    return negative ? -std::numeric_limits<double>::infinity() : std::numeric_limits<double>::infinity();
}

} // namespace

double leadingNumber(const QString &text)
{
    qsizetype pos = 0;
    while (pos < text.size() && isBlank(text.at(pos)))
        ++pos;
    const qsizetype len = numberLength(text, pos);
    if (len == 0)
        return 0.0;
    const QStringView number = QStringView(text).mid(pos, len);
    bool ok = false;
    const double value = number.toDouble(&ok);
    if (ok && std::isfinite(value))
        return value;
    return beyondDouble(number);
}

double roundHalfEven(double value)
{
    return std::nearbyint(value); // the default rounding mode is to nearest, ties to even
}

std::optional<qint16> toInt16(double value)
{
    if (!std::isfinite(value))
        return std::nullopt;
    const double r = roundHalfEven(value);
    if (r < std::numeric_limits<qint16>::min() || r > std::numeric_limits<qint16>::max())
        return std::nullopt;
    return static_cast<qint16>(r);
}

std::optional<qint32> toInt32(double value)
{
    if (!std::isfinite(value))
        return std::nullopt;
    const double r = roundHalfEven(value);
    if (r < std::numeric_limits<qint32>::min() || r > std::numeric_limits<qint32>::max())
        return std::nullopt;
    return static_cast<qint32>(r);
}

bool assignInt16(qint16 &target, double value)
{
    const auto v = toInt16(value);
    if (!v)
        return false;
    target = *v;
    return true;
}

std::optional<qint16> multiplyInt16(qint16 a, qint16 b)
{
    const int product = int(a) * int(b);
    if (product < std::numeric_limits<qint16>::min() || product > std::numeric_limits<qint16>::max())
        return std::nullopt;
    return static_cast<qint16>(product);
}

QString numberText(double value)
{
    if (value == 0.0)
        return QStringLiteral("0");
    QString text = QString::number(value, 'g', 15);
    if (text.contains(u'e')) {
        // Keep the plain decimal form for the magnitudes the program shows.
        if (std::fabs(value) >= 1e-4 && std::fabs(value) < 1e15) {
            text = QString::number(value, 'f', 15);
            while (text.contains(u'.') && (text.endsWith(u'0') || text.endsWith(u'.')))
                text.chop(1);
        }
    }
    return text;
}

bool isNumeric(const QString &text)
{
    const QString t = text.trimmed();
    if (t.isEmpty())
        return false;
    return numberLength(t, 0) == t.size();
}

} // namespace Numbers
