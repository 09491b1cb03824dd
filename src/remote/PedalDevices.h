#pragma once

#include "remote/PedalInput.h"

#include <QList>
#include <QObject>
#include <QString>
#include <functional>
#include <memory>

class QSocketNotifier;

// A pedal's device node found in sysfs.
struct PedalNode
{
    QString path;                          // the node below /dev
    const HidPedalModel *model = nullptr;  // set for a hidraw node
    bool hidraw() const { return model != nullptr; }
};

// The pedals plugged in now. Known pedals are read through their hidraw
// node; an input device is taken when it is a known pedal without a hidraw
// node, or when its name says it is a pedal. `sysClass` and `dev` are the
// roots (/sys/class and /dev on a running system).
QList<PedalNode> findPedals(const QString &sysClass, const QString &dev);

// Reads one open pedal device: hidraw reports (one per read) or evdev
// records, and hands on the mask of the pedals down whenever it changes.
// When the device goes away (end of file or an error other than "try
// again") `onGone` is called once and nothing more is read.
class PedalReader : public QObject
{
public:
    // Takes ownership of `fd`, which should be non-blocking.
    PedalReader(int fd, const HidPedalModel *model, std::function<void(quint8)> onMask,
                std::function<void()> onGone);
    ~PedalReader() override;

private:
    void readable();

    int m_fd;
    const HidPedalModel *m_model;
    std::function<void(quint8)> m_onMask;
    std::function<void()> m_onGone;
    std::unique_ptr<QSocketNotifier> m_notifier;
    EvdevStream m_stream;
    quint8 m_mask = 0;
};
