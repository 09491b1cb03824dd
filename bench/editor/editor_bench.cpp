// Typing into a long transcript: the time from a key event to the handled
// Change (the undo record included), and the memory the undo history holds.
//
// Run offscreen: QT_QPA_PLATFORM=offscreen editor_bench

#include "RecordingEditor.h"
#include "Transcript.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

double percentile(std::vector<double> v, double p)
{
    std::sort(v.begin(), v.end());
    return v[size_t(p * double(v.size() - 1))];
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

    const QString text = transcript(500000);
    QElapsedTimer load;
    load.start();
    rtb.setText(text);
    const double loadMs = double(load.nsecsElapsed()) / 1e6;
    const qint32 length = rtb.textLength();
    rtb.setSelStart(length / 2);

    const qint64 recordsBefore = history.recordBytes();
    const int keys = 5000;
    std::vector<double> micros;
    micros.reserve(keys);
    for (int i = 0; i < keys; ++i) {
        const int letter = i % 7 == 6 ? Qt::Key_Space : Qt::Key_A + i % 26;
        const QString typed = letter == Qt::Key_Space ? QStringLiteral(" ") : QString(QChar(u'a' + i % 26));
        QKeyEvent press(QEvent::KeyPress, letter, Qt::NoModifier, typed);
        QKeyEvent release(QEvent::KeyRelease, letter, Qt::NoModifier, typed);
        QElapsedTimer t;
        t.start();
        QApplication::sendEvent(&rtb, &press);
        micros.push_back(double(t.nsecsElapsed()) / 1e3);
        QApplication::sendEvent(&rtb, &release);
    }

    std::vector<double> snapshot;
    for (int i = 0; i < 21; ++i) {
        QElapsedTimer t;
        t.start();
        const QString whole = rtb.Text();
        snapshot.push_back(double(t.nsecsElapsed()) / 1e3);
        if (whole.size() != rtb.textLength())
            std::printf("unexpected length %lld\n", qint64(whole.size()));
    }

    std::vector<double> undoMicros;
    for (int i = 0; i < 200; ++i) {
        QElapsedTimer t;
        t.start();
        history.EseguiUndo(rtb);
        undoMicros.push_back(double(t.nsecsElapsed()) / 1e3);
    }

    const qint64 typedRecords = history.recordBytes() - recordsBefore;
    std::printf("transcript: %d characters (%d paragraphs), loaded in %.1f ms\n", int(length),
                int(rtb.document()->blockCount()), loadMs);
    std::printf("typed %d characters in mid text\n", keys);
    std::printf("key event to handled Change: median %.1f us, p95 %.1f us, max %.1f us\n",
                percentile(micros, 0.5), percentile(micros, 0.95), percentile(micros, 1.0));
    std::printf("one full Text() read (what a snapshot per keystroke would add): median %.1f us\n",
                percentile(snapshot, 0.5));
    std::printf("undo of one typed character: median %.1f us\n", percentile(undoMicros, 0.5));
    std::printf("undo history: %zu records; records %.1f KB (typing: %.1f bytes per character), "
                "current text %.1f KB, total %.2f MB\n",
                history.ListaUndo.size() + history.ListaRedo.size(), double(history.recordBytes()) / 1024,
                double(typedRecords) / keys, double(history.textBytes()) / 1024,
                double(history.recordBytes() + history.textBytes()) / (1024.0 * 1024.0));
    std::printf("the same history as full snapshots would hold %.0f MB\n",
                double(keys) * double(length) * 2 / (1024.0 * 1024.0));
    return 0;
}
