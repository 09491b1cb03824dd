#include "editor/journal/RecoveryJournal.h"

#include "app/AppContext.h"
#include "editor/Form2.h"
#include "editor/rtf/Rtf.h"
#include "platform/TextFile.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTextDocument>

namespace {

// The name travels inside the RTF as a destination that readers skip, so
// that the journal stays one file, written in one atomic step, and loads
// as it is.
const QByteArray NameGroup = "{\\*\\qmrecovery ";

} // namespace

RecoveryJournal::RecoveryJournal(TimerFactory &timers, QString folder)
    : m_folder(std::move(folder))
    , m_idle(timers.createTimer())
    , m_longest(timers.createTimer())
{
    m_pool.setMaxThreadCount(1);
    m_idle->onTimeout = [this] { write(); };
    m_longest->onTimeout = [this] { write(); };
}

RecoveryJournal::~RecoveryJournal()
{
    m_pool.waitForDone();
}

void RecoveryJournal::follow(QTextDocument *document, std::function<Name()> name)
{
    if (m_document)
        disconnect(m_document, nullptr, this, nullptr);
    m_document = document;
    m_name = std::move(name);
    m_pending = false;
    m_idle->setInterval(0);
    m_longest->setInterval(0);
    if (!m_document)
        return;
    // contentsChanged comes for formats as well as for text.
    connect(m_document, &QTextDocument::contentsChanged, this, [this] { changed(); });
    connect(m_document, &QTextDocument::modificationChanged, this, [this](bool modified) {
        if (!modified)
            discard();
    });
}

void RecoveryJournal::changed()
{
    // The editor keeps its own undo, so the document's flag is ours to set;
    // the editor clears it where the document becomes clean.
    if (!m_document->isModified())
        m_document->setModified(true);
    if (!m_pending) {
        m_pending = true;
        m_longest->setInterval(LongestMs);
    }
    m_idle->setInterval(IdleMs);
}

void RecoveryJournal::write()
{
    m_idle->setInterval(0);
    m_longest->setInterval(0);
    if (!m_pending || !m_document)
        return;
    m_pending = false;
    if (m_document->isEmpty()) {
        remove();
        return;
    }
    QElapsedTimer clock;
    clock.start();
    const QByteArray bytes = encode(Rtf::fromDocument(*m_document), m_name ? m_name() : Name());
    m_rtfMicros = clock.nsecsElapsed() / 1000;

    const quint64 mine = ++m_generation;
    m_pool.start([this, mine, bytes] {
        if (m_generation != mine)
            return;
        QElapsedTimer fileClock;
        fileClock.start();
        QDir().mkpath(m_folder);
        // A journal that cannot be written is no reason to disturb the
        // typist: the next change tries again.
        TextFile::writeBytes(path(), bytes);
        m_fileMicros = fileClock.nsecsElapsed() / 1000;
    });
}

void RecoveryJournal::discard()
{
    m_pending = false;
    m_idle->setInterval(0);
    m_longest->setInterval(0);
    remove();
}

void RecoveryJournal::remove()
{
    const quint64 mine = ++m_generation;
    m_pool.start([this, mine] {
        if (m_generation == mine)
            QFile::remove(path());
    });
}

QByteArray RecoveryJournal::encode(const QByteArray &rtf, const Name &name)
{
    const QByteArray group = NameGroup + 'N' + QByteArray::number(name.number) + " P" + name.path.toUtf8().toHex()
                             + " C" + name.caption.toUtf8().toHex() + '}';
    // Behind "{\rtf1", where a destination may stand.
    const qsizetype at = rtf.startsWith("{\\rtf1") ? 6 : 0;
    QByteArray out = rtf;
    out.insert(at, group);
    return out;
}

std::optional<RecoveryJournal::Name> RecoveryJournal::decodeName(const QByteArray &journal)
{
    const qsizetype start = journal.indexOf(NameGroup);
    if (start < 0 || start > 64)
        return std::nullopt;
    const qsizetype from = start + NameGroup.size();
    const qsizetype end = journal.indexOf('}', from);
    if (end < 0)
        return std::nullopt;
    Name name;
    for (const QByteArray &field : journal.mid(from, end - from).split(' ')) {
        if (field.startsWith('N'))
            name.number = qint16(field.mid(1).toShort());
        else if (field.startsWith('P'))
            name.path = QString::fromUtf8(QByteArray::fromHex(field.mid(1)));
        else if (field.startsWith('C'))
            name.caption = QString::fromUtf8(QByteArray::fromHex(field.mid(1)));
    }
    return name;
}

void RecoveryJournal::offer(AppContext &ctx)
{
    Form2 *editor = ctx.form2();
    const auto journal = TextFile::readBytes(path());
    bool restored = false;
    if (journal) {
        const auto name = decodeName(*journal);
        const int answer = ctx.msgBox(TogliAmp(ctx.Lingua(137)), MsgBox::YesNo | MsgBox::Exclamation,
                                      TogliAmp(ctx.Lingua(1)));
        if (answer == MsgBox::Yes && name && editor->RTB->LoadFile(path())) {
            ctx.FileEditor = name->path;
            ctx.NumeroDocumento = name->number;
            if (!name->caption.isEmpty())
                editor->setWindowTitle(name->caption);
            ctx.TestoModificato = 1;
            editor->show();
            restored = true;
        } else {
            QFile::remove(path());
        }
    }
    follow(editor->RTB->document(), [&ctx, editor] {
        return Name{ctx.FileEditor, ctx.NumeroDocumento, editor->windowTitle()};
    });
    // What was loaded back is as unsaved as it was, and kept so.
    if (restored)
        changed();
}
