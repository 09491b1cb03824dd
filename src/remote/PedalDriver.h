#pragma once

#include "platform/Timer.h"
#include "remote/PedalInput.h"

#include <QHash>
#include <QString>
#include <QStringList>
#include <array>
#include <functional>
#include <memory>

// The commands a pedal can give. The "held" steps repeat while the pedal
// stays down.
enum class PedalAction {
    None,
    Play,       // play if not playing
    Pause,      // pause if playing (with the usual step back)
    PlayPause,
    Stop,
    StepBack,
    StepForward,
    StepBackHeld,
    StepForwardHeld,
    NextBookmark,
    PreviousBookmark,
};

// What each pedal does when pressed and when released, read from
// Files/Pedals.ini: lines "MiddlePress=play", "MiddleRelease=pause",
// "RepeatMs=300"; ';' starts a comment. A missing file, an unknown name or
// a bad value leaves the default of that line.
struct PedalMap
{
    std::array<PedalAction, Pedal::Count> press{PedalAction::StepBackHeld, PedalAction::Play,
                                                PedalAction::StepForwardHeld, PedalAction::None};
    std::array<PedalAction, Pedal::Count> release{PedalAction::None, PedalAction::Pause,
                                                  PedalAction::None, PedalAction::None};
    int repeatMs = 300;

    static PedalMap fromLines(const QStringList &lines);
    static PedalMap load(const QString &path);
};

// Turns pedal masks from any number of devices into commands: a press or a
// release of one pedal runs its mapped action once; a held step runs at the
// press and then every repeatMs until the release. A device that goes away
// reports the empty mask, so that nothing stays held.
class PedalDriver
{
public:
    using Run = std::function<void(PedalAction)>;
    PedalDriver(TimerFactory &timers, PedalMap map, Run run);

    void report(const QString &device, quint8 mask);
    void deviceGone(const QString &device) { report(device, 0); m_masks.remove(device); }

    const PedalMap &map() const { return m_map; }

private:
    void changed(int pedal, bool down);

    PedalMap m_map;
    Run m_run;
    QHash<QString, quint8> m_masks;
    std::array<std::unique_ptr<Timer>, Pedal::Count> m_repeat;
};
