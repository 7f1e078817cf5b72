// The list control of the windows and of the host: rows with a tag, a text,
// icons and sub-items, shown in one of four views, with column headers and
// two image lists. It holds no logic of the book; the fill routines write
// into it and a host draws it.
//
// What callers rely on, as with the control the book was written for:
//  - Collections count from 1: ListItems(1) is the first row, SubItems(1)
//    the text of the second column, ColumnHeaders(1) the first column.
//  - A sub-item exists only for a column that exists: SubItems(n) needs
//    1 <= n < ColumnHeaders.Count(), else 35600 "Index out of bounds". A
//    list with one column (or none) so takes no sub-item at all.
//  - An image key must be unique in its list (35602); an unknown key is
//    35601 "Element not found".
//  - Every change is told to the observers. While AllowRedraw is False no
//    change is told; turning it back on tells one `Redraw`, so that a host
//    repaints once after a fill instead of once a row.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "zelvo/export.h"
#include "zelvo/variant.h"

namespace zelvo::imaging {
// A decoded picture; the library's image code defines it, a host only passes
// it around.
struct Picture;
}  // namespace zelvo::imaging

namespace zelvo::ui {

// Error numbers of the common controls.
enum ControlErrorNumber : int {
    kIndexOutOfBounds = 35600,
    kElementNotFound = 35601,
    kKeyNotUnique = 35602,
};

// The four views.
enum ListViewView : int { lvwIcon = 0, lvwSmallIcon = 1, lvwList = 2, lvwReport = 3 };
enum ListSortOrder : int { lvwAscending = 0, lvwDescending = 1 };

class ListView;

// One picture of an image list, found by its 1-based index or its key.
struct ListImage {
    std::string Key;
    std::shared_ptr<const imaging::Picture> Picture;
};

class ImageList;

class ZELVO_EXPORT ListImages {
public:
    int Count() const { return static_cast<int>(images_.size()); }
    // Adds at the end. A non-empty key must be new (35602).
    ListImage& Add(const std::string& key, std::shared_ptr<const imaging::Picture> picture);
    const ListImage& Item(int index) const;               // 35600
    const ListImage& Item(const std::string& key) const;  // 35601
    bool Exists(const std::string& key) const;
    void Remove(int index);                // 35600
    void Remove(const std::string& key);   // 35601
    void Clear() { images_.clear(); }

private:
    int IndexOf(const std::string& key) const;  // 0 when absent
    std::vector<ListImage> images_;
};

// The image list bound to a list's Icons or SmallIcons.
class ZELVO_EXPORT ImageList {
public:
    ui::ListImages& ListImages() { return images_; }
    const ui::ListImages& ListImages() const { return images_; }
    // The colour drawn as transparent, as 0x00BBGGRR.
    std::int32_t MaskColor = 0xC0C0C0;
    int ImageWidth = 0;
    int ImageHeight = 0;

private:
    ui::ListImages images_;
};

class ColumnHeader {
public:
    std::string Text;
    std::string Key;
    int Width = 0;  // twips
};

class ZELVO_EXPORT ColumnHeaders {
public:
    int Count() const { return static_cast<int>(columns_.size()); }
    ColumnHeader& Add(const std::string& text, int width = 0, const std::string& key = {});
    const ColumnHeader& Item(int index) const;  // 35600
    void Remove(int index);                     // 35600
    void Clear();

private:
    friend class ListView;
    explicit ColumnHeaders(ListView& owner) : owner_(owner) {}
    ListView& owner_;
    std::vector<ColumnHeader> columns_;
};

// One row.
class ZELVO_EXPORT ListItem {
public:
    // The row's place from the top, from 1.
    int Index() const;

    const Variant& Tag() const { return tag_; }
    void SetTag(const Variant& tag);
    const std::string& Text() const { return text_; }
    void SetText(const std::string& text);
    // Image keys (or 1-based indexes) into Icons and SmallIcons.
    const Variant& Icon() const { return icon_; }
    void SetIcon(const Variant& key);
    const Variant& SmallIcon() const { return smallIcon_; }
    void SetSmallIcon(const Variant& key);
    const std::string& Key() const { return key_; }
    bool Selected() const { return selected_; }
    void SetSelected(bool selected);

    // The text of column n + 1; "" when never set. 35600 unless
    // 1 <= n < ColumnHeaders.Count().
    std::string SubItems(int n) const;
    void SetSubItems(int n, const std::string& text);
    // The sub-items as they are stored: SubItemsRaw()[0] is SubItems(1).
    const std::vector<std::string>& SubItemsRaw() const { return subItems_; }
    // The Tag of sub-item n (ListSubItems(n).Tag): an identity a host keeps
    // beside a column's text. Empty when never set; 35600 as for SubItems.
    Variant SubItemTag(int n) const;
    void SetSubItemTag(int n, const Variant& tag);

private:
    friend class ListItems;
    explicit ListItem(ListView& owner) : owner_(&owner) {}
    void CheckColumn(int n) const;

    ListView* owner_;
    Variant tag_;
    std::string text_;
    Variant icon_;
    Variant smallIcon_;
    std::string key_;
    bool selected_ = false;
    std::vector<std::string> subItems_;
    std::vector<Variant> subItemTags_;
};

class ZELVO_EXPORT ListItems {
public:
    int Count() const { return static_cast<int>(items_.size()); }
    // A new row at the end, or before row `index` (1 .. Count + 1, else
    // 35600). A non-empty key must be new (35602).
    ListItem& Add();
    ListItem& Add(int index, const std::string& key = {}, const std::string& text = {},
                  const Variant& icon = {}, const Variant& smallIcon = {});
    ListItem& Item(int index);              // 35600
    const ListItem& Item(int index) const;  // 35600
    ListItem& Item(const std::string& key); // 35601
    ListItem& operator()(int index) { return Item(index); }
    void Remove(int index);                 // 35600
    void Clear();

private:
    friend class ListView;
    friend class ListItem;
    explicit ListItems(ListView& owner) : owner_(owner) {}
    int IndexOf(const ListItem* item) const;

    ListView& owner_;
    std::vector<std::unique_ptr<ListItem>> items_;
};

// What changed, as told to the observers.
struct ListViewChange {
    enum Kind {
        Items,     // rows added, removed or cleared, or their order changed
        Item,      // one row's contents; `index` says which
        Columns,   // the column headers
        Property,  // View, the image lists, sorting
        Redraw,    // AllowRedraw came back on: everything may have changed
    };
    Kind kind;
    int index = 0;
};

class ZELVO_EXPORT ListView {
public:
    ListView();
    ListView(const ListView&) = delete;
    ListView& operator=(const ListView&) = delete;

    ui::ListItems& ListItems() { return items_; }
    const ui::ListItems& ListItems() const { return items_; }
    ui::ColumnHeaders& ColumnHeaders() { return columns_; }
    const ui::ColumnHeaders& ColumnHeaders() const { return columns_; }

    int View() const { return view_; }
    void SetView(int view);

    bool AllowRedraw() const { return allowRedraw_; }
    void SetAllowRedraw(bool allow);

    // The bound image lists; nullptr unbinds.
    const std::shared_ptr<ImageList>& Icons() const { return icons_; }
    void SetIcons(std::shared_ptr<ImageList> images);
    const std::shared_ptr<ImageList>& SmallIcons() const { return smallIcons_; }
    void SetSmallIcons(std::shared_ptr<ImageList> images);

    // Sorting: SortKey 0 sorts by Text, n by SubItems(n); texts compare
    // without regard to case. Setting Sorted to True sorts at once; Sort()
    // sorts again after a fill.
    bool Sorted() const { return sorted_; }
    void SetSorted(bool sorted);
    int SortKey() const { return sortKey_; }
    void SetSortKey(int key) { sortKey_ = key; }
    int SortOrder() const { return sortOrder_; }
    void SetSortOrder(int order) { sortOrder_ = order; }
    void Sort();

    // The first selected row, or nullptr.
    ListItem* SelectedItem();

    // Observers are called after each change (see the header comment).
    // Returns an id for Unobserve.
    using Observer = std::function<void(const ListViewChange&)>;
    int Observe(Observer observer);
    void Unobserve(int id);

    // For the rows and collections of this list.
    void Notify(const ListViewChange& change);
    void NotifyItem(const ListItem* item);

    // Whether a person can reach the list (a change is told as Property).
    bool Enabled() const { return enabled_; }
    void SetEnabled(bool enabled);
    bool Visible() const { return visible_; }
    void SetVisible(bool visible);

    // The events a window handles: a row clicked (after the selection has
    // changed), and a double click on the list.
    std::function<void(ListItem&)> OnItemClick;
    std::function<void()> OnDblClick;

    // The person selects the rows `indexes` (1-based; only those stay
    // selected) and OnItemClick runs for the first. False, changing nothing,
    // when the list is disabled or hidden or `indexes` is empty; an index
    // outside the list is 35600.
    bool UserSelect(const std::vector<int>& indexes);
    // The person double-clicks row `index`: it is selected alone, clicked,
    // then OnDblClick runs.
    bool UserDblClick(int index);

private:
    ui::ListItems items_;
    ui::ColumnHeaders columns_;
    int view_ = lvwIcon;
    bool allowRedraw_ = true;
    bool dirty_ = false;
    bool sorted_ = false;
    int sortKey_ = 0;
    int sortOrder_ = lvwAscending;
    std::shared_ptr<ImageList> icons_;
    std::shared_ptr<ImageList> smallIcons_;
    std::vector<std::pair<int, Observer>> observers_;
    int nextObserver_ = 1;
    bool enabled_ = true;
    bool visible_ = true;
};

}  // namespace zelvo::ui
