// The state behind a `Recordset`: a cursor over the rows of one translated
// SELECT, read lazily from SQLite and kept, with the edit buffer of Edit and
// AddNew. Internal to the engine; `Recordset` is its public face.
//
// Model. Rows are read from the live statement only as far as the cursor
// needs them and kept in `rows_`, each with the rowids of the tables it came
// from. A row deleted through the record set stays as a tombstone, so that
// the cursor can stand on it and move on from its place; a row added stays
// last until Requery. What other record sets write is seen after Requery.
// FindFirst asks SQLite for the first match (an index may serve it) and, when
// the rows up to it have not been read yet, stands on the match without
// knowing its place; the place is found the first time it is needed.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/core/variant.h"
#include "platform/dao/connection.h"
#include "platform/dao/row_storage.h"

namespace zelvo::dao::detail {

// One field of a record set, as the translation and the catalog describe it.
struct RecordsetColumn {
    std::string name;
    bool asciiName = false;  // the name is plain ASCII (the common, fast case)
    bool firstOfName = true; // no field before it has the same name
    int source = -1;       // translation source, -1 for an expression
    std::string table;     // base table of the column, "" when unknown
    std::string column;    // its name there
    FieldProps props;      // its definition (type decides how values read)
    bool known = false;    // props come from the catalog
    bool updatable = false;  // writable when the record set is
};

// The fields of a translated SELECT: the same for every record set opened
// on it, so the connection keeps one per cached translation.
struct RecordsetLayout {
    std::vector<RecordsetColumn> cols;
    std::unordered_map<std::string, int> byName;  // folded name → index
    std::vector<int> keySources;                  // source index of each key slot
};

class RecordsetImpl : public std::enable_shared_from_this<RecordsetImpl> {
public:
    // Opens the rows of `shape` (a SELECT) on `conn`.
    static std::shared_ptr<RecordsetImpl> Open(std::shared_ptr<Connection> conn, jet::Shape shape,
                                               bool readOnly);
    ~RecordsetImpl();

    // ---- fields
    int FieldCount() const { return static_cast<int>(cols().size()); }
    int FieldIndex(std::string_view name) const;  // throws 3265 when unknown
    const std::string& FieldName(int i) const { return cols()[static_cast<size_t>(i)].name; }
    const FieldProps& FieldDefinition(int i) const { return cols()[static_cast<size_t>(i)].props; }
    const std::string& FieldTable(int i) const { return cols()[static_cast<size_t>(i)].table; }
    Variant Value(int i);
    void SetValue(int i, const Variant& v);

    // ---- position
    bool Bof() const { return bof_; }
    bool Eof() const { return eof_; }
    std::int64_t AbsolutePosition();
    void SetAbsolutePosition(std::int64_t p);
    std::int64_t RecordCount() const;
    void MoveFirst();
    void MoveLast();
    void MoveNext();
    void MovePrevious();

    enum class FindKind { First, Last, Next, Previous };
    void Find(FindKind kind, std::string_view criteria);
    bool NoMatch() const { return noMatch_; }

    // ---- changes
    int EditMode() const { return editMode_; }
    bool Updatable() const { return updatable_; }
    void Edit();
    void AddNew();
    void Update();
    void CancelUpdate();
    void Delete();
    void Requery();
    void Close();
    bool closed() const { return conn_ == nullptr; }

    // ---- called by the connection
    void FinishReading();       // read the live statement to its end
    void CloseFromConnection(); // the database is closing

private:
    RecordsetImpl() = default;

    using Column = RecordsetColumn;
    struct Row {
        PackedValues values;
        RowKeys keys;  // per table source; kNoKey when the row has none
        bool deleted = false;
        bool added = false;  // by AddNew through this set: it stands last until Requery
    };
    static constexpr std::int64_t kNoKey = INT64_MIN;
    static constexpr std::int64_t kUnplaced = -2;

    void Start();                       // run the query, read the first row
    static std::shared_ptr<const RecordsetLayout> MakeLayout(Connection& conn, const jet::Translation& tr,
                                                             sqlite3_stmt* stmt);
    bool FetchOne();                    // read one more row; false at the end
    bool EnsureRow(std::int64_t index); // read up to `index`; false when there is no such row
    // The current row of `stmt` into `row`, its bytes in `arena` (rows the
    // set keeps), or as a row of its own on the heap (rows looked at on the
    // side).
    void ReadRow(sqlite3_stmt* stmt, Row& row, RowArena* arena) const;
    Row ReadRow(sqlite3_stmt* stmt) const;
    void ForgetRows();                  // drop every row read
    Variant ReadValue(sqlite3_stmt* stmt, int col, const Column& c) const;
    void CheckOpen() const;
    void DiscardEdit();
    void Place();                       // give an unplaced current row its place
    const Row& CurrentRow();            // throws 3021 / 3167
    std::int64_t NextLive(std::int64_t from, int step);  // next non-deleted index, or -1/size
    void SetCurrent(std::int64_t index);
    void SetEmptyFlags();
    Variant Coerce(const Column& c, const Variant& v) const;
    // FindNext and the like test the rows one by one with one statement.
    StatementLease PrepareMatcher(const std::string& criteriaSql, const std::vector<Variant>& literals);
    bool MatchesAt(std::int64_t index, sqlite3_stmt* matcher);
    std::int64_t IndexOf(const Row& row) const;  // the live row with row's keys, or -1
    std::int64_t DeletedBefore(std::int64_t index) const;  // tombstones among rows_[0, index)
    void ProbeWriteLock();
    void RequireUpdatable() const;  // 3027 for a read-only set, 3326 for one Jet cannot write

    std::shared_ptr<Connection> conn_;
    jet::Shape shape_;
    std::shared_ptr<const jet::Translation> tr_;
    StatementLease live_;
    bool exhausted_ = false;
    bool readOnly_ = false;
    bool updatable_ = false;

    std::shared_ptr<const RecordsetLayout> layout_;
    const std::vector<Column>& cols() const { return layout_->cols; }
    // The field found by the last lookup by name. Loops read a row's fields
    // by name in the same order row after row, so the field after it is
    // tried first, with one compare of the exact bytes.
    mutable int lastField_ = -1;

    // Growing the list never moves the rows read so far (a vector would copy
    // a hundred thousand of them a few times over while a set is read).
    RowArena arena_;               // declared before rows_, which point into it
    mutable std::vector<PackedValues::Builder::Staged> staging_;  // where ReadRow notes a row's values
    ChunkedList<Row> rows_;
    // Indexes of the tombstones in rows_, in order: positions and counts
    // are found from them without a walk over the rows.
    std::vector<std::int64_t> deletedAt_;
    mutable std::unordered_multimap<std::size_t, std::int64_t> keyIndex_;  // key hash → index in rows_
    mutable std::int64_t indexed_ = 0;  // rows_ entered in keyIndex_ so far
    std::int64_t pos_ = -1;        // index into rows_, -1 before the first, rows_.size() after the last
    std::optional<Row> unplaced_;  // the current row when pos_ == kUnplaced
    bool bof_ = true;
    bool eof_ = true;
    std::int64_t reached_ = 0;     // rows reached so far (RecordCount before MoveLast)
    bool noMatch_ = false;

    int editMode_ = 0;             // 0 none, 1 Edit, 2 AddNew
    std::vector<Variant> buffer_;
    std::vector<Variant> original_;
    std::vector<bool> dirty_;
    std::int64_t beforeAdd_ = -1;
    bool beforeAddBof_ = false, beforeAddEof_ = false;
    std::int64_t reservedCounter_ = 0;
};

using jet::FoldName;

}  // namespace zelvo::dao::detail
