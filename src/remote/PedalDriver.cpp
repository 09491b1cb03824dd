#include "remote/PedalDriver.h"

#include "platform/TextFile.h"

#include <utility>

namespace {

const std::pair<const char *, PedalAction> ActionNames[] = {
    {"none", PedalAction::None},
    {"play", PedalAction::Play},
    {"pause", PedalAction::Pause},
    {"playpause", PedalAction::PlayPause},
    {"stop", PedalAction::Stop},
    {"back", PedalAction::StepBack},
    {"forward", PedalAction::StepForward},
    {"back-held", PedalAction::StepBackHeld},
    {"forward-held", PedalAction::StepForwardHeld},
    {"next-bookmark", PedalAction::NextBookmark},
    {"previous-bookmark", PedalAction::PreviousBookmark},
};

const char *const PedalNames[Pedal::Count] = {"left", "middle", "right", "fourth"};

bool actionOf(const QString &name, PedalAction &action)
{
    for (const auto &[text, value] : ActionNames)
        if (name.compare(QLatin1String(text), Qt::CaseInsensitive) == 0) {
            action = value;
            return true;
        }
    return false;
}

PedalAction stepOf(PedalAction held)
{
    return held == PedalAction::StepBackHeld ? PedalAction::StepBack : PedalAction::StepForward;
}

} // namespace

PedalMap PedalMap::fromLines(const QStringList &lines)
{
    PedalMap map;
    for (const QString &raw : lines) {
        const QString line = raw.section(u';', 0, 0).trimmed();
        const int eq = line.indexOf(u'=');
        if (eq < 0)
            continue;
        const QString key = line.left(eq).trimmed().toLower();
        const QString value = line.mid(eq + 1).trimmed();
        if (key == u"repeatms") {
            bool ok = false;
            const int ms = value.toInt(&ok);
            if (ok && ms >= 50 && ms <= 5000)
                map.repeatMs = ms;
            continue;
        }
        for (int p = 0; p < Pedal::Count; ++p) {
            const QString name = QLatin1String(PedalNames[p]);
            if (key == name + QStringLiteral("press"))
                actionOf(value, map.press[p]);
            else if (key == name + QStringLiteral("release"))
                actionOf(value, map.release[p]);
        }
    }
    return map;
}

PedalMap PedalMap::load(const QString &path)
{
    return fromLines(TextFile::readLines(path).value_or(QStringList()));
}

PedalDriver::PedalDriver(TimerFactory &timers, PedalMap map, Run run)
    : m_map(map), m_run(std::move(run))
{
    for (int p = 0; p < Pedal::Count; ++p) {
        m_repeat[p] = timers.createTimer();
        m_repeat[p]->setInterval(0);
        m_repeat[p]->onTimeout = [this, p] { m_run(stepOf(m_map.press[p])); };
    }
}

void PedalDriver::report(const QString &device, quint8 mask)
{
    const quint8 before = m_masks.value(device);
    m_masks.insert(device, mask);
    for (int p = 0; p < Pedal::Count; ++p) {
        const bool was = before & Pedal::bit(p);
        const bool is = mask & Pedal::bit(p);
        if (was != is)
            changed(p, is);
    }
}

void PedalDriver::changed(int pedal, bool down)
{
    if (!down) {
        m_repeat[pedal]->setInterval(0);
        m_run(m_map.release[pedal]);
        return;
    }
    const PedalAction action = m_map.press[pedal];
    if (action == PedalAction::StepBackHeld || action == PedalAction::StepForwardHeld) {
        m_run(stepOf(action));
        m_repeat[pedal]->setInterval(m_map.repeatMs);
        return;
    }
    m_run(action);
}
