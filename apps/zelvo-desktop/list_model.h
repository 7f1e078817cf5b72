// The Qt item model over a list control: one row a ListItem, one column
// for the text and one for each sub-item. Rows are not copied into widget
// items; the view asks for what it paints, so a list of 100,000 persons
// costs only the rows on screen.
//
// The model follows the list's changes: a fill (rows added or cleared, or
// redraw turned back on) resets it, a row's change repaints that row. The
// selection goes both ways: a person's selection in the view reaches the
// list as UserSelect (which runs the window's item click), and a selection
// made by the window's code shows in the view.
#pragma once

#include <QAbstractTableModel>
#include <QItemSelectionModel>

#include "icons.h"
#include "platform/ui/listview.h"

namespace zelvo::desktop {

class ListViewModel : public QAbstractTableModel {
public:
    explicit ListViewModel(ui::ListView& list, QObject* parent = nullptr);
    ~ListViewModel() override;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    // Keeps `selection` (of a view showing this model) and the list's
    // Selected flags in step.
    void BindSelection(QItemSelectionModel* selection);

    ui::ListView& List() { return list_; }

private:
    void OnChange(const ui::ListViewChange& change);
    void ShowListSelection();
    void TakeViewSelection();

    ui::ListView& list_;
    int observer_ = 0;
    QItemSelectionModel* selection_ = nullptr;
    bool syncing_ = false;
};

}  // namespace zelvo::desktop
