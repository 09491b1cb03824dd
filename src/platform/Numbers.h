#pragma once

#include <QString>
#include <QtGlobal>
#include <optional>

// The number rules of the program's text input and settings.
namespace Numbers {

// The leading-number rule: blanks are skipped, then as many characters are
// read as form a decimal number (optional sign, digits, a point as the
// decimal separator whatever the locale, an optional exponent); reading stops
// at the first character that does not fit. No number at all gives 0:
// "12abc" gives 12, "abc" gives 0, " -2.5x" gives -2.5. A number too large
// even for a double ("1e400") gives an infinity of its sign, which fits no
// integer; one too small gives 0.
double leadingNumber(const QString &text);

// Rounds to the nearest whole number, halves to the even one (2.5 -> 2,
// 3.5 -> 4, -2.5 -> -2).
double roundHalfEven(double value);

// The conversion to a signed 16-bit integer: rounded half to even, nullopt
// when the result does not fit.
std::optional<qint16> toInt16(double value);

// The same for a signed 32-bit integer.
std::optional<qint32> toInt32(double value);

// Assigns the converted value; a value that does not fit leaves `target`
// as it was. Returns whether it was assigned.
bool assignInt16(qint16 &target, double value);

// The product of two 16-bit integers computed as a 16-bit integer with
// overflow detection: nullopt when it does not fit.
std::optional<qint16> multiplyInt16(qint16 a, qint16 b);

// The platform's default text form of a number: at most 15 significant
// digits, no trailing zeros, a point as separator, no exponent for the
// usual magnitudes ("1.2" for 1.2000000000000002, "100", "0.5").
QString numberText(double value);

// True when the whole text, trimmed, is a number (as a settings or combo
// box value is tested).
bool isNumeric(const QString &text);

} // namespace Numbers
