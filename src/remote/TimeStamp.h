#pragma once

#include <QString>
#include <optional>

// The seconds of the time stamp "[hh:mm:ss]" or "[mm:ss]" in `line` that
// covers position `pos`, from its "[" to just behind its "]". Minutes and
// seconds have two digits and are below 60, hours one or two digits. None
// when no stamp covers the position or the one there is malformed.
std::optional<int> timeStampAt(const QString &line, int pos);
