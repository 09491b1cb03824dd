// Language files: any bytes load into the table without a fault, and the
// table written out as a language file (three-character prefix, the entry,
// CR LF, UTF-8) loads back to the same table.
#include "lang/LanguageFile.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray input(reinterpret_cast<const char *>(data), qsizetype(size));
    LanguageTable table;
    LanguageFile::loadBytes(input, table);

    QByteArray file;
    for (int i = 0; i < LanguageTable::Size; ++i)
        file += QByteArray::number(i).rightJustified(3, '0') + table(i).toUtf8() + "\r\n";
    LanguageTable again;
    if (LanguageFile::loadBytes(file, again) != LanguageFile::Result::Loaded)
        std::abort();
    for (int i = 0; i < LanguageTable::Size; ++i) {
        if (again(i) != table(i))
            std::abort();
    }
    return 0;
}
