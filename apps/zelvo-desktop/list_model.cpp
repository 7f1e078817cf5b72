#include "list_model.h"

#include <algorithm>

namespace zelvo::desktop {

ListViewModel::ListViewModel(ui::ListView& list, QObject* parent) : QAbstractTableModel(parent), list_(list) {
    observer_ = list_.Observe([this](const ui::ListViewChange& change) { OnChange(change); });
}

ListViewModel::~ListViewModel() { list_.Unobserve(observer_); }

int ListViewModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : list_.ListItems().Count();
}

int ListViewModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : std::max(1, list_.ColumnHeaders().Count());
}

QVariant ListViewModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= list_.ListItems().Count()) return {};
    const ui::ListItem& item = list_.ListItems().Item(index.row() + 1);
    if (role == Qt::DisplayRole || role == Qt::ToolTipRole) {
        if (index.column() == 0) return QString::fromStdString(item.Text());
        const auto& subs = item.SubItemsRaw();
        size_t n = static_cast<size_t>(index.column()) - 1;
        return n < subs.size() ? QString::fromStdString(subs[n]) : QString();
    }
    if (role == Qt::DecorationRole && index.column() == 0) {
        const Variant& key = list_.View() == ui::lvwIcon ? item.Icon() : item.SmallIcon();
        return key.IsText() ? IconForKey(key.text()) : QVariant();
    }
    return {};
}

QVariant ListViewModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
    if (section < list_.ColumnHeaders().Count())
        return QString::fromStdString(list_.ColumnHeaders().Item(section + 1).Text);
    return {};
}

void ListViewModel::OnChange(const ui::ListViewChange& change) {
    switch (change.kind) {
        case ui::ListViewChange::Item:
            if (change.index >= 1 && change.index <= rowCount()) {
                emit dataChanged(index(change.index - 1, 0), index(change.index - 1, columnCount() - 1));
                ShowListSelection();
            }
            break;
        case ui::ListViewChange::Items:
        case ui::ListViewChange::Columns:
        case ui::ListViewChange::Redraw:
            beginResetModel();
            endResetModel();
            ShowListSelection();
            break;
        case ui::ListViewChange::Property: break;
    }
}

void ListViewModel::BindSelection(QItemSelectionModel* selection) {
    selection_ = selection;
    QObject::connect(selection, &QItemSelectionModel::selectionChanged, this, [this] { TakeViewSelection(); });
    ShowListSelection();
}

void ListViewModel::ShowListSelection() {
    if (!selection_ || syncing_ || !list_.AllowRedraw()) return;
    syncing_ = true;
    QItemSelection wanted;
    int first = -1;
    for (int i = 1; i <= list_.ListItems().Count(); ++i) {
        if (!list_.ListItems().Item(i).Selected()) continue;
        wanted.select(index(i - 1, 0), index(i - 1, columnCount() - 1));
        if (first < 0) first = i - 1;
    }
    selection_->select(wanted, QItemSelectionModel::ClearAndSelect);
    if (first >= 0) selection_->setCurrentIndex(index(first, 0), QItemSelectionModel::NoUpdate);
    syncing_ = false;
}

void ListViewModel::TakeViewSelection() {
    if (syncing_) return;
    std::vector<int> rows;
    for (const QModelIndex& i : selection_->selectedRows()) rows.push_back(i.row() + 1);
    if (rows.empty()) return;
    std::sort(rows.begin(), rows.end());
    // The row the person clicked comes first: it is the one the window's
    // item click is about.
    QModelIndex current = selection_->currentIndex();
    if (current.isValid() && selection_->isRowSelected(current.row(), {})) {
        auto at = std::find(rows.begin(), rows.end(), current.row() + 1);
        if (at != rows.end()) std::rotate(rows.begin(), at, at + 1);
    }
    syncing_ = true;
    list_.UserSelect(rows);
    syncing_ = false;
}

}  // namespace zelvo::desktop
