#pragma once

#include <QByteArray>
#include <QList>
#include <QtGlobal>

// What a foot pedal says, reduced to one byte: bit n set while pedal n is
// down. Every device, whatever its protocol, ends up as such a mask.
namespace Pedal {
enum Id { Left = 0, Middle = 1, Right = 2, Fourth = 3, Count = 4 };
inline quint8 bit(int pedal) { return quint8(1u << pedal); }
} // namespace Pedal

// A pedal that is a plain HID device: which byte of its input report holds
// the pedals, and which bit stands for which pedal.
struct HidPedalModel
{
    quint16 vendor;
    quint16 product;
    const char *name;
    int minSize;          // shortest report the device sends
    int maxSize;          // longest; other lengths are not pedal reports
    int byteIndex;        // the byte that holds the pedal bits
    quint8 masks[Pedal::Count]; // left, middle, right, fourth; 0 when absent
};

// The model of a vendor and product id, or nullptr for a device that is not
// a known pedal.
const HidPedalModel *findHidPedal(quint16 vendor, quint16 product);

// The pedals down in one report of that model, or -1 when the report is not
// a pedal report (another length, or bits the model does not use).
int pedalsInReport(const HidPedalModel &model, const QByteArray &report);

// One record of the kernel's input event stream (struct input_event on a
// 64-bit system: a 16-byte time stamp, then type, code and value).
struct InputEvent
{
    quint16 type;
    quint16 code;
    qint32 value;
};

// Cuts an evdev byte stream into records. A read may end in the middle of a
// record (a pipe does not keep record bounds): the rest waits for the next.
class EvdevStream
{
public:
    static constexpr int RecordSize = 24;
    QList<InputEvent> feed(const QByteArray &bytes);

private:
    QByteArray m_pending;
};

// The pedal of a key or button code of an evdev pedal, or -1.
int pedalOfKey(quint16 code);

// Follows the key events of an evdev pedal and gives the mask of the pedals
// down after them; auto-repeat (value 2) and other event types change
// nothing.
quint8 applyEvdevEvents(quint8 mask, const QList<InputEvent> &events);
