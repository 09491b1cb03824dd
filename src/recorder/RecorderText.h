#pragma once

#include <QString>

// hh:mm:ss of a count of seconds, each field at least two digits; with
// `millisecondi` the count is in milliseconds and is first rounded to
// seconds, half to even.
QString FormatTime(qint32 secondi, bool millisecondi = false);

// The first free "Rec NN.wav" in a folder: NN from 01 upward, two digits
// until 99, then as the number comes (100, 101...).
QString freeRecordingName(const QString &folder);
