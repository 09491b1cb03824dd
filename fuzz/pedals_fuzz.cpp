// What pedals send: a HID report of any known model gives a mask within
// that model's pedals or is refused; an evdev byte stream cut anywhere gives
// the same events as in one piece; the pedal map reads any file.
#include "remote/PedalDriver.h"
#include "remote/PedalInput.h"
#include "platform/TextFile.h"

#include <cstdint>
#include <cstdlib>

namespace {

const quint16 Models[][2] = {{0x05f3, 0x00ff}, {0x0911, 0x1844}, {0x0911, 0x091a}, {0x07b4, 0x0218}};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size < 2)
        return 0;
    const QByteArray rest(reinterpret_cast<const char *>(data) + 2, qsizetype(size - 2));
    const auto &ids = Models[data[0] % (sizeof Models / sizeof Models[0])];
    if (const HidPedalModel *model = findHidPedal(ids[0], ids[1])) {
        const int mask = pedalsInReport(*model, rest);
        int pedals = 0; // the pedals the model has
        for (int p = 0; p < Pedal::Count; ++p)
            pedals |= model->masks[p] ? Pedal::bit(p) : 0;
        if (mask != -1 && (mask < 0 || (mask & ~pedals) != 0))
            std::abort();
    }

    EvdevStream whole;
    const QList<InputEvent> all = whole.feed(rest);
    EvdevStream cut;
    const qsizetype at = qsizetype(data[1]) % (rest.size() + 1);
    QList<InputEvent> pieces = cut.feed(rest.left(at));
    pieces += cut.feed(rest.mid(at));
    if (pieces.size() != all.size())
        std::abort();
    for (qsizetype i = 0; i < all.size(); ++i) {
        if (pieces[i].type != all[i].type || pieces[i].code != all[i].code || pieces[i].value != all[i].value)
            std::abort();
    }
    applyEvdevEvents(0, all);

    const PedalMap map = PedalMap::fromLines(TextFile::splitLines(TextFile::decode(rest)));
    if (map.repeatMs <= 0)
        std::abort();
    return 0;
}
