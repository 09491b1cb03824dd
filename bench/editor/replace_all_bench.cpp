// Replace All of a common word in a long transcript: the time of the whole
// loop (search, replacement, the Change event and its undo record) and the
// peak memory of the process while it runs.
//
// Run offscreen: QT_QPA_PLATFORM=offscreen replace_all_bench

#include "editor/FindWindow.h"
#include "RecordingEditor.h"
#include "Transcript.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <cstdio>

namespace {

// A field of /proc/self/status in KiB (VmRSS, VmHWM).
long statusKiB(const char *field)
{
    QFile f(QStringLiteral("/proc/self/status"));
    if (!f.open(QIODevice::ReadOnly))
        return -1;
    const QByteArray key = QByteArray(field) + ':';
    for (const QByteArray &line : f.readAll().split('\n')) {
        if (line.startsWith(key))
            return line.mid(key.size()).trimmed().split(' ').value(0).toLong();
    }
    return -1;
}

// Starts the peak (VmHWM) again from the present size.
void resetPeak()
{
    QFile f(QStringLiteral("/proc/self/clear_refs"));
    if (f.open(QIODevice::WriteOnly))
        f.write("5");
}

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);

    RecordingEditor editor;
    RichTextBox &rtb = editor.rtb;
    UndoHistory &history = editor.history;

    const QString text = transcript(500000, 12);
    const qsizetype expected = text.count(QStringLiteral("and"));
    rtb.setText(text);
    rtb.setSelStart(0);
    QCoreApplication::processEvents();

    const long rssBefore = statusKiB("VmRSS");
    resetPeak();
    QElapsedTimer timer;
    timer.start();
    const qint32 count = replaceAllFromCaret(rtb, QStringLiteral("and"), QStringLiteral("plus"));
    const double ms = double(timer.nsecsElapsed()) / 1e6;
    const long peak = statusKiB("VmHWM");

    std::printf("transcript: %lld characters, %lld hits of \"and\"\n", static_cast<long long>(text.size()),
                static_cast<long long>(expected));
    std::printf("replace all: %d replacements in %.0f ms (%.1f us per hit)\n", count, ms, ms * 1000.0 / count);
    std::printf("memory: %ld KiB before, peak %ld KiB during (+%ld KiB)\n", rssBefore, peak, peak - rssBefore);
    std::printf("undo history: %lld bytes in records, %lld in its text\n",
                static_cast<long long>(history.recordBytes()), static_cast<long long>(history.textBytes()));
    return count == expected ? 0 : 1;
}
