// The answer of the update check: any body decides without a fault, and
// only a text of exactly nine characters can offer a new version.
#include "outside/Version.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString body = QString::fromLatin1(reinterpret_cast<const char *>(data), qsizetype(size));
    if (Outside::offersNewVersion(body, Outside::ownVersionText()) && body.size() != 9)
        std::abort();
    Outside::updateQuestion(body);
    Outside::helpLanguageCode(body);
    return 0;
}
