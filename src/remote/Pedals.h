#pragma once

#include "remote/PedalDevices.h"
#include "remote/PedalDriver.h"
#include "remote/PlayerCommands.h"

#include <QSet>
#include <map>
#include <memory>

class AppContext;

// USB foot pedals, read straight from the kernel's device nodes. Pedals
// present at start and those plugged in later are found by a look at sysfs
// every two seconds; an unplugged one is dropped, releasing whatever it
// held. A node the user may not read (no udev rule installed) is skipped
// without a word and tried again at the next look.
class Pedals
{
public:
    explicit Pedals(AppContext &ctx, QString sysClass = QStringLiteral("/sys/class"),
                    QString dev = QStringLiteral("/dev"));
    ~Pedals();

    // One look for pedals plugged in or pulled out.
    void scan();
    // Reads an open device under a name of its own; takes the descriptor.
    // `model` is the hidraw layout, nullptr for an evdev stream.
    void attach(const QString &name, int fd, const HidPedalModel *model);
    int deviceCount() const { return int(m_readers.size()); }

private:
    void drop(const QString &name);

    AppContext &ctx;
    QString m_sysClass;
    QString m_dev;
    PlayerCommands m_commands;
    PedalDriver m_driver;
    std::unique_ptr<Timer> m_scanTimer;
    std::map<QString, std::unique_ptr<PedalReader>> m_readers;
    QSet<QString> m_scanned;
};
