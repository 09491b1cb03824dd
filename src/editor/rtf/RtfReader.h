#pragma once

#include <QByteArray>

namespace Rtf::detail {

class DocumentBuilder;

// Reads RTF into the builder. Any bytes are accepted: what isn't
// understood is skipped, and the work is linear in the size of the data.
void read(const QByteArray &data, DocumentBuilder &builder);

} // namespace Rtf::detail
