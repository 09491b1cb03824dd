#pragma once

#include "editor/RTB.h"
#include "editor/UndoHistory.h"

// The editor's text control with its Change event recording undo, as in the
// editor window, shown at a typical size.
struct RecordingEditor
{
    RichTextBox rtb;
    UndoHistory history;

    RecordingEditor()
    {
        rtb.onChange = [this] {
            if (history.RegistraUndo)
                history.capture(rtb);
        };
        history.RegistraUndo = true;
        history.capture(rtb);
        rtb.resize(800, 600);
        rtb.show();
    }
};
