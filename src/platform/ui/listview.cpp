#include "platform/ui/listview.h"

#include <algorithm>

#include "platform/core/error.h"
#include "platform/dao/jet/jet_sql.h"

namespace zelvo::ui {

namespace {

[[noreturn]] void OutOfBounds() { throw Error(kIndexOutOfBounds, "Index out of bounds", "ListView"); }
[[noreturn]] void NotFound() { throw Error(kElementNotFound, "Element not found", "ListView"); }
[[noreturn]] void NotUnique() { throw Error(kKeyNotUnique, "Key is not unique in collection", "ListView"); }

}  // namespace

// ---- ListImages

int ListImages::IndexOf(const std::string& key) const {
    for (size_t i = 0; i < images_.size(); ++i)
        if (images_[i].Key == key) return static_cast<int>(i) + 1;
    return 0;
}

ListImage& ListImages::Add(const std::string& key, std::shared_ptr<const imaging::Picture> picture) {
    if (!key.empty() && IndexOf(key)) NotUnique();
    images_.push_back(ListImage{key, std::move(picture)});
    return images_.back();
}

const ListImage& ListImages::Item(int index) const {
    if (index < 1 || index > Count()) OutOfBounds();
    return images_[index - 1];
}

const ListImage& ListImages::Item(const std::string& key) const {
    int i = key.empty() ? 0 : IndexOf(key);
    if (!i) NotFound();
    return images_[i - 1];
}

bool ListImages::Exists(const std::string& key) const { return !key.empty() && IndexOf(key) != 0; }

void ListImages::Remove(int index) {
    if (index < 1 || index > Count()) OutOfBounds();
    images_.erase(images_.begin() + (index - 1));
}

void ListImages::Remove(const std::string& key) {
    int i = key.empty() ? 0 : IndexOf(key);
    if (!i) NotFound();
    images_.erase(images_.begin() + (i - 1));
}

// ---- ColumnHeaders

ColumnHeader& ColumnHeaders::Add(const std::string& text, int width, const std::string& key) {
    columns_.push_back(ColumnHeader{text, key, width});
    owner_.Notify({ListViewChange::Columns});
    return columns_.back();
}

const ColumnHeader& ColumnHeaders::Item(int index) const {
    if (index < 1 || index > Count()) OutOfBounds();
    return columns_[index - 1];
}

void ColumnHeaders::Remove(int index) {
    if (index < 1 || index > Count()) OutOfBounds();
    columns_.erase(columns_.begin() + (index - 1));
    owner_.Notify({ListViewChange::Columns});
}

void ColumnHeaders::Clear() {
    columns_.clear();
    owner_.Notify({ListViewChange::Columns});
}

// ---- ListItem

int ListItem::Index() const { return owner_->ListItems().IndexOf(this); }

void ListItem::SetTag(const Variant& tag) {
    tag_ = tag;
    owner_->NotifyItem(this);
}

void ListItem::SetText(const std::string& text) {
    text_ = text;
    owner_->NotifyItem(this);
}

void ListItem::SetIcon(const Variant& key) {
    icon_ = key;
    owner_->NotifyItem(this);
}

void ListItem::SetSmallIcon(const Variant& key) {
    smallIcon_ = key;
    owner_->NotifyItem(this);
}

void ListItem::SetSelected(bool selected) {
    selected_ = selected;
    owner_->NotifyItem(this);
}

void ListItem::CheckColumn(int n) const {
    if (n < 1 || n >= owner_->ColumnHeaders().Count()) OutOfBounds();
}

std::string ListItem::SubItems(int n) const {
    CheckColumn(n);
    return static_cast<size_t>(n) <= subItems_.size() ? subItems_[n - 1] : std::string();
}

void ListItem::SetSubItems(int n, const std::string& text) {
    CheckColumn(n);
    if (subItems_.size() < static_cast<size_t>(n)) subItems_.resize(n);
    subItems_[n - 1] = text;
    owner_->NotifyItem(this);
}

Variant ListItem::SubItemTag(int n) const {
    CheckColumn(n);
    return static_cast<size_t>(n) <= subItemTags_.size() ? subItemTags_[n - 1] : Variant();
}

void ListItem::SetSubItemTag(int n, const Variant& tag) {
    CheckColumn(n);
    if (subItemTags_.size() < static_cast<size_t>(n)) subItemTags_.resize(n);
    subItemTags_[n - 1] = tag;
    owner_->NotifyItem(this);
}

// ---- ListItems

int ListItems::IndexOf(const ListItem* item) const {
    // Rows are found from the end: a fill touches the row it just added.
    for (size_t i = items_.size(); i-- > 0;)
        if (items_[i].get() == item) return static_cast<int>(i) + 1;
    return 0;
}

ListItem& ListItems::Add() { return Add(Count() + 1); }

ListItem& ListItems::Add(int index, const std::string& key, const std::string& text, const Variant& icon,
                         const Variant& smallIcon) {
    if (index < 1 || index > Count() + 1) OutOfBounds();
    if (!key.empty())
        for (const auto& item : items_)
            if (item->key_ == key) NotUnique();
    auto item = std::unique_ptr<ListItem>(new ListItem(owner_));
    item->key_ = key;
    item->text_ = text;
    item->icon_ = icon;
    item->smallIcon_ = smallIcon;
    ListItem& added = *item;
    items_.insert(items_.begin() + (index - 1), std::move(item));
    owner_.Notify({ListViewChange::Items});
    return added;
}

ListItem& ListItems::Item(int index) {
    if (index < 1 || index > Count()) OutOfBounds();
    return *items_[index - 1];
}

const ListItem& ListItems::Item(int index) const {
    if (index < 1 || index > Count()) OutOfBounds();
    return *items_[index - 1];
}

ListItem& ListItems::Item(const std::string& key) {
    if (!key.empty())
        for (auto& item : items_)
            if (item->key_ == key) return *item;
    NotFound();
}

void ListItems::Remove(int index) {
    if (index < 1 || index > Count()) OutOfBounds();
    items_.erase(items_.begin() + (index - 1));
    owner_.Notify({ListViewChange::Items});
}

void ListItems::Clear() {
    items_.clear();
    owner_.Notify({ListViewChange::Items});
}

// ---- ListView

ListView::ListView() : items_(*this), columns_(*this) {}

void ListView::SetView(int view) {
    view_ = view;
    Notify({ListViewChange::Property});
}

void ListView::SetAllowRedraw(bool allow) {
    if (allow == allowRedraw_) return;
    allowRedraw_ = allow;
    if (allow && dirty_) {
        dirty_ = false;
        Notify({ListViewChange::Redraw});
    }
}

void ListView::SetIcons(std::shared_ptr<ImageList> images) {
    icons_ = std::move(images);
    Notify({ListViewChange::Property});
}

void ListView::SetSmallIcons(std::shared_ptr<ImageList> images) {
    smallIcons_ = std::move(images);
    Notify({ListViewChange::Property});
}

void ListView::SetSorted(bool sorted) {
    sorted_ = sorted;
    if (sorted) Sort();
}

void ListView::Sort() {
    auto keyOf = [this](const ListItem& item) -> const std::string& {
        static const std::string empty;
        if (sortKey_ <= 0) return item.Text();
        const auto& subs = item.SubItemsRaw();
        return static_cast<size_t>(sortKey_) <= subs.size() ? subs[sortKey_ - 1] : empty;
    };
    // One collation key a row, then plain byte compares: a list of 100,000
    // names takes 1.7 million comparisons, and each through the collator
    // cost more than the whole fill.
    auto& items = items_.items_;
    std::vector<std::pair<std::string, std::unique_ptr<ListItem>>> keyed;
    keyed.reserve(items.size());
    for (auto& item : items) keyed.emplace_back(dao::jet::CollationKey(keyOf(*item)), std::move(item));
    if (sortOrder_ == lvwDescending)
        std::stable_sort(keyed.begin(), keyed.end(), [](const auto& a, const auto& b) { return b.first < a.first; });
    else
        std::stable_sort(keyed.begin(), keyed.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    for (std::size_t i = 0; i < keyed.size(); ++i) items[i] = std::move(keyed[i].second);
    Notify({ListViewChange::Items});
}

ListItem* ListView::SelectedItem() {
    for (auto& item : items_.items_)
        if (item->Selected()) return item.get();
    return nullptr;
}

int ListView::Observe(Observer observer) {
    observers_.emplace_back(nextObserver_, std::move(observer));
    return nextObserver_++;
}

void ListView::Unobserve(int id) {
    std::erase_if(observers_, [id](const auto& o) { return o.first == id; });
}

void ListView::NotifyItem(const ListItem* item) {
    // The row's index is looked up only when someone will hear of it.
    if (allowRedraw_ && !observers_.empty()) Notify({ListViewChange::Item, items_.IndexOf(item)});
    else if (!allowRedraw_) dirty_ = true;
}

void ListView::Notify(const ListViewChange& change) {
    if (!allowRedraw_) {
        dirty_ = true;
        return;
    }
    // A copy, so that an observer may unobserve itself.
    auto observers = observers_;
    for (const auto& [id, observer] : observers) observer(change);
}

}  // namespace zelvo::ui

namespace zelvo::ui {

void ListView::SetEnabled(bool enabled) {
    if (enabled == enabled_) return;
    enabled_ = enabled;
    Notify({ListViewChange::Property});
}

void ListView::SetVisible(bool visible) {
    if (visible == visible_) return;
    visible_ = visible;
    Notify({ListViewChange::Property});
}

bool ListView::UserSelect(const std::vector<int>& indexes) {
    if (!enabled_ || !visible_ || indexes.empty()) return false;
    for (int i : indexes)
        if (i < 1 || i > items_.Count()) OutOfBounds();
    for (int i = 1; i <= items_.Count(); ++i) {
        ListItem& item = items_.Item(i);
        bool wanted = std::find(indexes.begin(), indexes.end(), i) != indexes.end();
        if (item.Selected() != wanted) item.SetSelected(wanted);
    }
    if (OnItemClick) OnItemClick(items_.Item(indexes.front()));
    return true;
}

bool ListView::UserDblClick(int index) {
    if (!UserSelect({index})) return false;
    if (OnDblClick) OnDblClick();
    return true;
}

}  // namespace zelvo::ui
