#pragma once

#include "platform/Timer.h"

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QThreadPool>
#include <atomic>
#include <functional>
#include <memory>
#include <optional>

class AppContext;
class QTextDocument;

// Keeps the unsaved document on disk while it is being typed, so that a
// crash, a kill or a power cut loses at most the last two seconds.
//
// Every change of the document (formatting alone included) arms a write of
// the whole document as RTF into one journal file: shortly after the last
// change, and at the latest every 30 s while changes go on. The RTF is made
// on the GUI thread (the document is not thread-safe) and written off it,
// atomically. The document marked unmodified (a save, a New, an open) and the
// end of the program remove the journal. At the next start, a journal left
// behind is offered back.
class RecoveryJournal : public QObject
{
public:
    // What names the document, kept with its content.
    struct Name
    {
        QString path;    // empty for an untitled document
        qint16 number = 1;
        QString caption;
    };

    static constexpr int IdleMs = 1500;
    static constexpr int LongestMs = 30000;

    RecoveryJournal(TimerFactory &timers, QString folder);
    // Waits for the write under way.
    ~RecoveryJournal() override;

    // Starts following this document; `name` is read at each write.
    void follow(QTextDocument *document, std::function<Name()> name);

    // The question at start-up: Yes loads a journal left behind into the
    // editor as an unsaved document named as it was; No removes it. Then
    // follows the editor's document.
    void offer(AppContext &ctx);

    // The document's changes were given up: the journal goes.
    void discard();

    QString path() const { return m_folder + QStringLiteral("/Document.rtf"); }

    // The journal file's bytes and the name they carry.
    static QByteArray encode(const QByteArray &rtf, const Name &name);
    static std::optional<Name> decodeName(const QByteArray &journal);

    // For tests and the benchmark: waits until queued file work is done, and
    // the times the last write took on the GUI thread and off it.
    void waitForWrites() { m_pool.waitForDone(); }
    qint64 lastRtfMicros() const { return m_rtfMicros; }
    qint64 lastFileMicros() const { return m_fileMicros; }

private:
    void changed();
    void write();
    void remove();

    QString m_folder;
    QTextDocument *m_document = nullptr;
    std::function<Name()> m_name;
    std::unique_ptr<Timer> m_idle;
    std::unique_ptr<Timer> m_longest;
    bool m_pending = false;
    // One thread, so that writes and removals happen in the order asked; a
    // queued write that a later request overtook is skipped.
    QThreadPool m_pool;
    std::atomic<quint64> m_generation{0};
    qint64 m_rtfMicros = 0;
    std::atomic<qint64> m_fileMicros{0};
};
