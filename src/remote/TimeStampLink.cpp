#include "remote/TimeStampLink.h"

#include "app/AppContext.h"
#include "editor/Form2.h"
#include "remote/PlayerCommands.h"
#include "remote/TimeStamp.h"

#include <QAction>
#include <QMenuBar>
#include <QMouseEvent>
#include <QTextBlock>

TimeStampLink::TimeStampLink(AppContext &ctx) : ctx(ctx)
{
    Form2 *editor = ctx.form2();
    m_command = new QAction(editor);
    m_command->setObjectName(QStringLiteral("mnuVaiTimeStamp"));
    m_command->setShortcut(QKeySequence(Qt::Key_F2));
    connect(m_command, &QAction::triggered, this, [this] { goToStampAtCaret(); });
    editor->menuBar()->addAction(m_command);
    // The command follows the time stamp command beside it: enabled while a
    // media file is open, and captioned anew whenever the language is
    // applied (which sets that command's caption and so reports a change).
    auto follow = [this, editor] {
        const QString caption = this->ctx.Lingua(142);
        m_command->setText(caption.isEmpty() ? QStringLiteral("&Go to time stamp") : caption);
        m_command->setEnabled(editor->mnuTimeStamp->isEnabled());
    };
    connect(editor->mnuTimeStamp, &QAction::changed, this, follow);
    follow();
    editor->RTB->viewport()->installEventFilter(this);
}

bool TimeStampLink::goToStampAtCaret()
{
    return goTo(ctx.form2()->RTB->textCursor());
}

bool TimeStampLink::goTo(const QTextCursor &cursor)
{
    PlayerCommands commands(ctx);
    if (!commands.mediaOpen())
        return false;
    const auto seconds = timeStampAt(cursor.block().text(), cursor.positionInBlock());
    if (!seconds)
        return false;
    commands.seekTo(*seconds);
    return true;
}

bool TimeStampLink::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::MouseButtonPress)
        return false;
    const auto *mouse = static_cast<QMouseEvent *>(event);
    if (mouse->button() != Qt::LeftButton || !(mouse->modifiers() & Qt::ControlModifier))
        return false;
    // Taken only when a stamp is hit: the caret and the selection stay as
    // they were. Any other Ctrl+click is the text control's.
    return goTo(ctx.form2()->RTB->cursorForPosition(mouse->position().toPoint()));
}
