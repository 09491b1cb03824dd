#pragma once

#include <QObject>

class AppContext;
class QAction;

// Time stamps in the transcript lead back to the recording: a Ctrl+click on
// "[hh:mm:ss]" or "[mm:ss]", or the command "Go to time stamp" with the
// caret in one, moves the player there and leaves it playing or paused as
// it was. The text, its undo history and its changed flag are not touched.
class TimeStampLink : public QObject
{
public:
    explicit TimeStampLink(AppContext &ctx);

    // The command on the editor's menu bar (F2: free in every key table).
    QAction *command() const { return m_command; }
    // Seeks to the stamp at the caret; false when there is none.
    bool goToStampAtCaret();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool goTo(const class QTextCursor &cursor);

    AppContext &ctx;
    QAction *m_command = nullptr;
};
