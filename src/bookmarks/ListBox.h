#pragma once

#include <QCollator>
#include <QListWidget>

// A sorted list box: every row added goes to its place in the order of
// BookmarkFile::listOrder, and the selection is the list's index as the
// bookmark routines read and set it (-1: no row selected).
class ListBox : public QListWidget
{
public:
    explicit ListBox(QWidget *parent);

    void AddItem(const QString &text);
    void RemoveItem(int row);
    void Clear() { clear(); }

    // The text of a row; the empty text outside the list.
    QString List(int row) const;
    int ListCount() const { return count(); }
    // The selected row, -1 when no row is selected (a row that only has the
    // keyboard's focus frame is not selected).
    int ListIndex() const;
    void setListIndex(int row);

    // Every row, top to bottom.
    QStringList rows() const;

private:
    QCollator m_order;
};
