#pragma once

#include "dictation/Form4.h"

#include <QApplication>
#include <QTimer>
#include <functional>

// Runs `use` on the Form4 that `open` shows modally, from inside the
// dialog's own event loop, as the user would work it. A dialog still open
// afterwards is cancelled, so a failing test cannot hang. Returns whether a
// dialog was seen.
inline bool withForm4(const std::function<void()> &open, const std::function<void(Form4 &)> &use)
{
    bool seen = false;
    QTimer poke; // destroyed with this call, so a dialog that never opens leaves nothing behind
    poke.setSingleShot(true);
    QObject::connect(&poke, &QTimer::timeout, &poke, [&] {
        auto *dialog = dynamic_cast<Form4 *>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        seen = true;
        use(*dialog);
        if (!dialog->isUnloaded())
            dialog->Command2_Click();
    });
    poke.start(0);
    open();
    return seen;
}
