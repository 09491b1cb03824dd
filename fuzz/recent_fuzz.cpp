// Recent-list files: any bytes give four captions without a fault, and the
// four captions written back as the list is written read back the same.
#include "app/RecentFiles.h"
#include "platform/TextFile.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray input(reinterpret_cast<const char *>(data), qsizetype(size));
    std::array<QString, 4> captions{QStringLiteral("mnuRecent1"), QStringLiteral("mnuRecent2"),
                                    QStringLiteral("mnuRecent3"), QStringLiteral("mnuRecent4")};
    RecentFiles::readCaptions(TextFile::splitLines(TextFile::decode(input)), captions);

    const QByteArray file = TextFile::linesToBytes(QStringList(captions.begin(), captions.end()));
    std::array<QString, 4> again;
    RecentFiles::readCaptions(TextFile::splitLines(TextFile::decode(file)), again);
    if (again != captions)
        std::abort();
    return 0;
}
