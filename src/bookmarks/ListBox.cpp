#include "bookmarks/ListBox.h"

#include "bookmarks/BookmarkFile.h"

ListBox::ListBox(QWidget *parent) : QListWidget(parent), m_order(BookmarkFile::listOrder())
{
    setSelectionMode(QAbstractItemView::SingleSelection);
}

QStringList ListBox::rows() const
{
    QStringList out;
    out.reserve(count());
    for (int i = 0; i < count(); ++i)
        out.append(item(i)->text());
    return out;
}

void ListBox::AddItem(const QString &text)
{
    insertItem(int(BookmarkFile::insertPosition(rows(), text, m_order)), text);
}

void ListBox::RemoveItem(int row)
{
    if (row < 0 || row >= count())
        return;
    const bool wasSelected = row == ListIndex();
    delete takeItem(row);
    // The list box selects nothing after its selected row is removed; the
    // view would move the selection to the next row.
    if (wasSelected)
        setListIndex(-1);
}

QString ListBox::List(int row) const
{
    const QListWidgetItem *it = item(row);
    return it ? it->text() : QString();
}

int ListBox::ListIndex() const
{
    const int row = currentRow();
    const QListWidgetItem *it = item(row);
    return it && it->isSelected() ? row : -1;
}

void ListBox::setListIndex(int row)
{
    if (row < 0 || row >= count()) {
        clearSelection();
        setCurrentRow(-1);
        return;
    }
    setCurrentRow(row, QItemSelectionModel::ClearAndSelect);
}
