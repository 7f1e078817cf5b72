// The data control of a host window: a book, a record source and the record
// set it gives. The host's controls are passed to many automation calls; the
// library drives one through its properties alone, in this order:
// DatabaseName, Connect, RecordSource, then Refresh, after which the record
// set is open over the source. A host reads what it holds with Records().
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "zelvo/export.h"
#include "zelvo/variant.h"

namespace zelvo::dao {
// The database engine's types; the library's own code reaches them through
// Recordset() and Database(), a host through Records().
class Database;
class Recordset;
}  // namespace zelvo::dao

namespace zelvo::ui {

class ZELVO_EXPORT DataControl {
public:
    std::string DatabaseName;
    std::string Connect;       // accepted for the book's code ("Access"); not used
    std::string RecordSource;  // a table, a saved query or a Jet SELECT
    int RecordsetType = 2;     // a dynaset, as the engine's dbOpenDynaset

    DataControl();
    ~DataControl();
    // A copy is a new control with the same properties: it opens its own
    // book and record set at its first Refresh, and has no observers.
    DataControl(const DataControl& other);
    DataControl& operator=(const DataControl& other);
    DataControl(DataControl&&) noexcept;
    DataControl& operator=(DataControl&&) noexcept;

    // Opens the book (once for a name; a new name opens the new book) and
    // the record source as a fresh record set. Errors of the engine (3024
    // no book, 3078 no such table …) are thrown as zelvo::Error; the control
    // is then left without a record set.
    void Refresh();

    // The record set of the last Refresh; an empty Recordset before.
    dao::Recordset& Recordset();
    const dao::Database& Database() const;

    // One record: its fields by name, in the order of the record source.
    using Record = std::vector<std::pair<std::string, Variant>>;
    // The records of the record set from the first on; none before a
    // Refresh or when the source is empty. The current record moves.
    std::vector<Record> Records();

    // Called after every Refresh.
    void Observe(std::function<void()> observer) { observers_.push_back(std::move(observer)); }

private:
    struct State;
    std::unique_ptr<State> state_;
    std::vector<std::function<void()>> observers_;
};

}  // namespace zelvo::ui
