// Typing into a 500 KB transcript with the recovery journal following the
// document and without it: the time from a key event to the handled Change,
// and what one journal write costs on the GUI thread (the RTF of the whole
// document) and off it (the atomic file write).
//
// Run offscreen: QT_QPA_PLATFORM=offscreen journal_bench

#include "editor/RTB.h"
#include "editor/journal/RecoveryJournal.h"
#include "platform/fake/VirtualClock.h"
#include "Transcript.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QTemporaryDir>
#include <QTextDocument>
#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

struct Figures
{
    double median, p95, worst;
};

Figures figures(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return {v[v.size() / 2], v[size_t(0.95 * double(v.size() - 1))], v.back()};
}

// Types `keys` letters mid-text; with a clock, time moves 100 ms a key (a
// fast typist), so the journal's timers fire as they would while typing:
// the writes, made inside a key's handling, count in that key's time.
std::vector<double> type(RichTextBox &rtb, int keys, VirtualClock *clock)
{
    std::vector<double> micros;
    for (int i = 0; i < keys; ++i) {
        const QString typed(QChar(u'a' + i % 26));
        QKeyEvent press(QEvent::KeyPress, Qt::Key_A + i % 26, Qt::NoModifier, typed);
        QKeyEvent release(QEvent::KeyRelease, Qt::Key_A + i % 26, Qt::NoModifier, typed);
        QElapsedTimer t;
        t.start();
        QApplication::sendEvent(&rtb, &press);
        if (clock)
            clock->advance(100);
        micros.push_back(double(t.nsecsElapsed()) / 1e3);
        QApplication::sendEvent(&rtb, &release);
    }
    return micros;
}

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QTemporaryDir dir;

    RichTextBox rtb;
    rtb.onChange = [] {};
    rtb.resize(800, 600);
    rtb.show();
    rtb.setText(transcript(500000));
    rtb.setSelStart(rtb.textLength() / 2);

    // Blocks of keys with the journal on and off in turn, so that the load
    // of the machine weighs on both alike: 3000 keys each, 100 ms apart, in
    // blocks of 30 s, each of which ends with the journal's write.
    const int keys = 3000;
    VirtualClock clock;
    RecoveryJournal journal(clock, dir.path());
    std::vector<double> offMicros, onMicros;
    for (int block = 0; block < keys / 300; ++block) {
        journal.follow(nullptr, {});
        const std::vector<double> off = type(rtb, 300, &clock);
        offMicros.insert(offMicros.end(), off.begin(), off.end());
        journal.follow(rtb.document(), [] { return RecoveryJournal::Name{}; });
        const std::vector<double> on = type(rtb, 300, &clock);
        onMicros.insert(onMicros.end(), on.begin(), on.end());
    }
    const Figures off = figures(offMicros), on = figures(onMicros);

    // Writes after a pause in the typing.
    std::vector<double> rtfMs, fileMs;
    for (int i = 0; i < 11; ++i) {
        type(rtb, 1, nullptr);
        clock.advance(RecoveryJournal::IdleMs);
        journal.waitForWrites();
        rtfMs.push_back(double(journal.lastRtfMicros()) / 1e3);
        fileMs.push_back(double(journal.lastFileMicros()) / 1e3);
    }
    const Figures rtf = figures(rtfMs), file = figures(fileMs);
    std::vector<double> cloneMs;
    for (int i = 0; i < 11; ++i) {
        QElapsedTimer t;
        t.start();
        delete rtb.document()->clone();
        cloneMs.push_back(double(t.nsecsElapsed()) / 1e6);
    }

    std::printf("transcript: %d characters; %d keys typed mid-text, 100 ms apart (virtual time)\n",
                int(rtb.textLength()), keys);
    std::printf("key to handled Change, journal off: median %.1f us, p95 %.1f us, worst %.1f us\n", off.median,
                off.p95, off.worst);
    std::printf("key to handled Change, journal on:  median %.1f us, p95 %.1f us, worst %.1f us "
                "(the worst holds a 30 s write)\n",
                on.median, on.p95, on.worst);
    std::printf("journal write, RTF on the GUI thread: median %.1f ms, worst %.1f ms\n", rtf.median, rtf.worst);
    std::printf("journal write, file off the GUI thread: median %.1f ms, worst %.1f ms\n", file.median, file.worst);
    std::printf("(a copy of the document, to make the RTF off the GUI thread instead: median %.1f ms)\n",
                figures(cloneMs).median);
    return 0;
}
