#include "remote/PedalInput.h"

#include <cstring>

namespace {

// Pedal layouts by vendor and product. The IN-USB family and the Philips
// pedals send one byte of pedal bits; the RS-28 is taken to follow the same
// layout as the IN-USB (its own has not been confirmed on a device).
const HidPedalModel Models[] = {
    {0x05f3, 0x00ff, "VEC/Infinity IN-USB-1/2/3", 2, 2, 0, {0x01, 0x02, 0x04, 0}},
    {0x0911, 0x1844, "Philips ACC2310/2320", 1, 8, 0, {0x01, 0x02, 0x04, 0x08}},
    {0x0911, 0x091a, "Philips ACC2330", 1, 8, 0, {0x01, 0x02, 0x04, 0x08}},
    {0x07b4, 0x0218, "Olympus RS-28", 2, 2, 0, {0x01, 0x02, 0x04, 0}},
};

// linux/input-event-codes.h
constexpr quint16 EvKey = 0x01;
constexpr quint16 Btn0 = 0x100, Btn3 = 0x103;
constexpr quint16 BtnLeft = 0x110, BtnRight = 0x111, BtnMiddle = 0x112;

} // namespace

const HidPedalModel *findHidPedal(quint16 vendor, quint16 product)
{
    for (const HidPedalModel &m : Models)
        if (m.vendor == vendor && m.product == product)
            return &m;
    return nullptr;
}

int pedalsInReport(const HidPedalModel &model, const QByteArray &report)
{
    if (report.size() < model.minSize || report.size() > model.maxSize || model.byteIndex >= report.size())
        return -1;
    const quint8 byte = quint8(report.at(model.byteIndex));
    quint8 known = 0;
    int mask = 0;
    for (int p = 0; p < Pedal::Count; ++p) {
        known |= model.masks[p];
        if (model.masks[p] && (byte & model.masks[p]))
            mask |= Pedal::bit(p);
    }
    return (byte & ~known) ? -1 : mask;
}

QList<InputEvent> EvdevStream::feed(const QByteArray &bytes)
{
    m_pending += bytes;
    QList<InputEvent> events;
    int at = 0;
    for (; at + RecordSize <= m_pending.size(); at += RecordSize) {
        InputEvent e;
        std::memcpy(&e.type, m_pending.constData() + at + 16, 2);
        std::memcpy(&e.code, m_pending.constData() + at + 18, 2);
        std::memcpy(&e.value, m_pending.constData() + at + 20, 4);
        events.append(e);
    }
    m_pending.remove(0, at);
    return events;
}

int pedalOfKey(quint16 code)
{
    if (code >= Btn0 && code <= Btn3)
        return code - Btn0;
    switch (code) {
    case BtnLeft: return Pedal::Left;
    case BtnMiddle: return Pedal::Middle;
    case BtnRight: return Pedal::Right;
    default: return -1;
    }
}

quint8 applyEvdevEvents(quint8 mask, const QList<InputEvent> &events)
{
    for (const InputEvent &e : events) {
        const int pedal = e.type == EvKey ? pedalOfKey(e.code) : -1;
        if (pedal < 0 || e.value == 2)
            continue;
        mask = e.value ? quint8(mask | Pedal::bit(pedal)) : quint8(mask & ~Pedal::bit(pedal));
    }
    return mask;
}
