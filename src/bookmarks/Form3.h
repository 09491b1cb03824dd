#pragma once

#include "app/Controls.h"

#include <QWidget>

class AppContext;
class QListWidget;

// The bookmark window: the visible list of marks and the hidden list of the
// file's lines behind it.
class Form3 : public QWidget, public WindowTwips
{
public:
    explicit Form3(AppContext &ctx);
    ~Form3() override;

    AppContext &ctx;
    QListWidget *List1 = nullptr; // shown rows: time, two blanks, name
    QListWidget *List2 = nullptr; // the same rows as kept in the file, hidden
};
