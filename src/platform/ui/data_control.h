// The data control of a host window: a book, a record source and the record
// set it gives. The host's controls are passed to many automation calls; the
// library drives one through its properties alone, in this order:
// DatabaseName, Connect, RecordSource, then Refresh, after which Recordset()
// is an open record set over the source.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/dao/database.h"

namespace zelvo::ui {

class DataControl {
public:
    std::string DatabaseName;
    std::string Connect;       // accepted for the book's code ("Access"); not used
    std::string RecordSource;  // a table, a saved query or a Jet SELECT
    int RecordsetType = dao::dbOpenDynaset;

    // Opens the book (once for a name; a new name opens the new book) and
    // the record source as a fresh record set. Errors of the engine (3024
    // no book, 3078 no such table …) are thrown; the control is then left
    // without a record set.
    void Refresh();

    // The record set of the last Refresh; an empty Recordset before.
    dao::Recordset& Recordset() { return recordset_; }
    const dao::Database& Database() const { return database_; }

    // Called after every Refresh.
    void Observe(std::function<void()> observer) { observers_.push_back(std::move(observer)); }

private:
    dao::Database database_;
    std::string openName_;
    dao::Recordset recordset_;
    std::vector<std::function<void()>> observers_;
};

}  // namespace zelvo::ui
