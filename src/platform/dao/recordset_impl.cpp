#include "platform/dao/recordset_impl.h"

#include <algorithm>
#include <cmath>

#include "platform/core/number_text.h"
#include "platform/dao/jet/text_util.h"
#include "platform/dao/sql_text.h"

namespace zelvo::dao::detail {

namespace {

size_t CharCount(const std::string& s) {
    size_t n = 0;
    for (unsigned char c : s)
        if ((c & 0xC0) != 0x80) ++n;
    return n;
}

// The value of a DAO DefaultValue text: a number, a quoted text, True/False.
Variant DefaultOf(const FieldProps& f) {
    const std::string& d = f.defaultValue;
    if (d.empty()) return f.type == dbBoolean ? Variant(false) : Variant();
    if (d.size() >= 2 && (d.front() == '"' || d.front() == '\'') && d.back() == d.front())
        return Variant(d.substr(1, d.size() - 2));
    if (SameName(d, "True")) return Variant(true);
    if (SameName(d, "False")) return Variant(false);
    if (auto x = ParseNumber(d)) {
        if (f.type == dbBoolean) return Variant(*x != 0);
        if (*x == std::floor(*x)) return Variant(static_cast<std::int64_t>(*x));
        return Variant(*x);
    }
    return Variant(d);
}

}  // namespace

// ------------------------------------------------------------ opening

std::shared_ptr<RecordsetImpl> RecordsetImpl::Open(std::shared_ptr<Connection> conn, jet::Shape shape,
                                                   bool readOnly) {
    std::shared_ptr<RecordsetImpl> rs(new RecordsetImpl());
    rs->conn_ = std::move(conn);
    rs->shape_ = std::move(shape);
    rs->readOnly_ = readOnly;
    rs->Start();
    rs->conn_->Register(rs.get());
    return rs;
}

RecordsetImpl::~RecordsetImpl() {
    if (conn_) conn_->Unregister(this);
}

std::shared_ptr<const RecordsetLayout> RecordsetImpl::MakeLayout(Connection& conn, const jet::Translation& tr,
                                                                  sqlite3_stmt* st) {
    auto layout = std::make_shared<RecordsetLayout>();
    const int visible = static_cast<int>(tr.columns.size());
    const bool writable = !tr.distinct && tr.hiddenRowids > 0;
    for (int i = 0; i < visible; ++i) {
        const jet::OutputColumn& oc = tr.columns[static_cast<size_t>(i)];
        Column c;
        c.name = oc.name;
        c.source = oc.source;
        c.asciiName = jet::IsAscii(c.name);
        const char* table = sqlite3_column_table_name(st, i);
        const char* origin = sqlite3_column_origin_name(st, i);
        if (table && origin) {
            c.table = table;
            c.column = origin;
            if (const TableSchema* t = conn.FindTable(c.table)) {
                if (const FieldProps* f = t->Find(c.column)) {
                    c.props = *f;
                    c.known = true;
                }
            }
        }
        c.updatable = writable && c.known && oc.source >= 0 && tr.sources[static_cast<size_t>(oc.source)].hasRowid;
        c.firstOfName = layout->byName.emplace(FoldName(c.name), i).second;
        layout->cols.push_back(std::move(c));
    }
    for (int k = 0; k < static_cast<int>(tr.sources.size()); ++k)
        if (tr.sources[static_cast<size_t>(k)].hasRowid) layout->keySources.push_back(k);
    // A bare name also finds a field that the join named Table.Field,
    // when only one field has that bare name.
    std::unordered_map<std::string, int> bare;
    for (int i = 0; i < visible; ++i) {
        const std::string& n = layout->cols[static_cast<size_t>(i)].name;
        auto dot = n.rfind('.');
        if (dot == std::string::npos) continue;
        std::string b = FoldName(n.substr(dot + 1));
        if (layout->byName.count(b)) continue;
        auto [it, fresh] = bare.emplace(b, i);
        if (!fresh) it->second = -1;
    }
    for (auto& [b, i] : bare)
        if (i >= 0) layout->byName.emplace(b, i);
    return layout;
}

void RecordsetImpl::Start() {
    Connection::Prepared p = conn_->Prepare(shape_);
    if (p.translation->kind != jet::StatementKind::Select)
        throw DaoError(kInvalidOperation);  // only a SELECT gives rows
    tr_ = p.translation;
    live_ = std::move(p.statement);
    conn_->BindLiterals(live_.get(), shape_.literals);
    exhausted_ = false;
    updatable_ = !readOnly_ && !tr_->distinct && !tr_->commaJoin && tr_->hiddenRowids > 0;

    // Requery takes the layout afresh too: the tables may have changed since
    // the set was opened, and keys must not be read from the wrong columns.
    layout_ = p.cached ? conn_->LayoutOf(tr_.get()) : nullptr;
    if (!layout_) {
        layout_ = MakeLayout(*conn_, *tr_, live_.get());
        if (p.cached) conn_->KeepLayout(tr_.get(), layout_);
    }

    ForgetRows();
    unplaced_.reset();
    reached_ = 0;
    if (FetchOne()) {
        SetCurrent(0);
    } else {
        SetEmptyFlags();
    }
}

void RecordsetImpl::SetEmptyFlags() {
    pos_ = -1;
    bof_ = eof_ = true;
}

bool RecordsetImpl::FetchOne() {
    if (exhausted_) return false;
    if (!conn_->Step(live_.get())) {
        exhausted_ = true;
        live_.Release();
        return false;
    }
    // Read in place: a row is big enough that building it aside and moving
    // it in shows in a walk over thousands.
    try {
        ReadRow(live_.get(), rows_.emplace_back(), &arena_);
    } catch (...) {
        rows_.pop_back();
        throw;
    }
    return true;
}

void RecordsetImpl::ForgetRows() {
    rows_.clear();
    deletedAt_.clear();
    keyIndex_.clear();
    indexed_ = 0;
    arena_.Clear();  // after the rows: only they point into it
}

namespace {

// Reads column `col` of the current result row as the field `c` is typed and
// hands it to `out` (a PackedValues::Builder, or VariantSink for one value).
// The column is taken once as a value and read through it: every
// sqlite3_column_* call checks the statement again, and a row of a big
// record set would pay that three times a field. (The value is unprotected,
// which is safe: a connection is used by one thread at a time.)
template <class Sink>
void DecodeColumn(sqlite3_stmt* st, int col, const RecordsetColumn& c, Sink& out) {
    sqlite3_value* v = sqlite3_column_value(st, col);
    int type = sqlite3_value_type(v);
    if (type == SQLITE_NULL) return out.Null();
    auto text = [&] {
        const unsigned char* p = sqlite3_value_text(v);
        out.Text(std::string_view(reinterpret_cast<const char*>(p), static_cast<size_t>(sqlite3_value_bytes(v))));
    };
    auto blob = [&] {
        const auto* p = static_cast<const std::uint8_t*>(sqlite3_value_blob(v));
        out.Bytes(p, static_cast<size_t>(sqlite3_value_bytes(v)));
    };
    if (c.known) {
        switch (c.props.type) {
            case dbBoolean: return out.Boolean(sqlite3_value_int64(v) != 0);
            case dbByte: case dbInteger: case dbLong:
                if (type == SQLITE_INTEGER) return out.Integer(sqlite3_value_int64(v));
                return out.Integer(std::llround(sqlite3_value_double(v)));
            case dbText: case dbMemo: return text();
            case dbLongBinary: return blob();
            default: return out.Double(sqlite3_value_double(v));
        }
    }
    switch (type) {
        case SQLITE_INTEGER: return out.Integer(sqlite3_value_int64(v));
        case SQLITE_FLOAT: return out.Double(sqlite3_value_double(v));
        case SQLITE_BLOB: return blob();
        default: return text();
    }
}

struct VariantSink {
    Variant value;
    void Null() { value = Variant(); }
    void Integer(std::int64_t v) { value = Variant(v); }
    void Double(double v) { value = Variant(v); }
    void Boolean(bool v) { value = Variant(v); }
    void Text(std::string_view v) { value = Variant(std::string(v)); }
    void Bytes(const std::uint8_t* p, size_t n) { value = Variant(zelvo::Bytes(p, p + n)); }
};

}  // namespace

RecordsetImpl::Row RecordsetImpl::ReadRow(sqlite3_stmt* st) const {
    Row r;
    ReadRow(st, r, nullptr);
    return r;
}

void RecordsetImpl::ReadRow(sqlite3_stmt* st, Row& r, RowArena* arena) const {
    // The visible fields come first, the table keys after them.
    const int n = static_cast<int>(cols().size());
    const int keyOffset = n;
    PackedValues::Builder values(staging_, static_cast<size_t>(n));
    for (int i = 0; i < n; ++i) DecodeColumn(st, i, cols()[static_cast<size_t>(i)], values);
    r.values = values.Finish(arena);
    for (size_t k = 0; k < layout_->keySources.size(); ++k) {
        sqlite3_value* key = sqlite3_column_value(st, keyOffset + static_cast<int>(k));
        r.keys.push_back(sqlite3_value_type(key) == SQLITE_NULL ? kNoKey : sqlite3_value_int64(key));
    }
}


Variant RecordsetImpl::ReadValue(sqlite3_stmt* st, int col, const Column& c) const {
    VariantSink sink;
    DecodeColumn(st, col, c, sink);
    return std::move(sink.value);
}

// ------------------------------------------------------------ fields

void RecordsetImpl::CheckOpen() const {
    if (!conn_) throw DaoError(kObjectInvalid);
}

int RecordsetImpl::FieldIndex(std::string_view name) const {
    CheckOpen();
    const auto& c = cols();
    // The likely field first: a match on the first field of that name is
    // the field a full search finds.
    const size_t next = static_cast<size_t>(lastField_ + 1) < c.size() ? static_cast<size_t>(lastField_ + 1) : 0;
    if (next < c.size() && c[next].firstOfName && c[next].asciiName && SameAsciiName(c[next].name, name)) {
        lastField_ = static_cast<int>(next);
        return lastField_;
    }
    // Fields are read by name in every loop of the book's code: a plain
    // ASCII name is matched against the few field names directly,
    // without folding it into a new string first.
    if (jet::IsAscii(name)) {
        for (size_t i = 0; i < c.size(); ++i)
            if (c[i].asciiName ? SameAsciiName(c[i].name, name) : SameName(c[i].name, name))
                return lastField_ = static_cast<int>(i);
    }
    auto it = layout_->byName.find(FoldName(name));
    if (it == layout_->byName.end()) throw DaoError(kItemNotFound);
    return lastField_ = it->second;
}

const RecordsetImpl::Row& RecordsetImpl::CurrentRow() {
    if (pos_ == kUnplaced) return *unplaced_;
    if (bof_ || eof_ || pos_ < 0 || pos_ >= static_cast<std::int64_t>(rows_.size())) throw DaoError(kNoCurrentRecord);
    const Row& r = rows_[static_cast<size_t>(pos_)];
    if (r.deleted) throw DaoError(kRecordDeleted);
    return r;
}

Variant RecordsetImpl::Value(int i) {
    CheckOpen();
    if (editMode_ != 0) return buffer_[static_cast<size_t>(i)];
    return CurrentRow().values.Get(static_cast<size_t>(i));
}

Variant RecordsetImpl::Coerce(const Column& c, const Variant& v) const {
    if (v.IsNull()) return v;
    switch (c.props.type) {
        case dbText: case dbMemo: {
            std::string s = v.AsText();
            if (c.props.type == dbText && c.props.size > 0 && CharCount(s) > static_cast<size_t>(c.props.size))
                throw DaoError(kFieldTooSmall);
            return Variant(std::move(s));
        }
        case dbLongBinary:
            if (v.kind() == Variant::Kind::Bytes) return v;
            { std::string s = v.AsText(); return Variant(Bytes(s.begin(), s.end())); }
        default: break;
    }
    // A number field takes a text only when the whole text is a number:
    // "+5" is 5, "1-2" or "abc" is a conversion error, never a silent 0.
    if (v.kind() == Variant::Kind::Bytes) throw DaoError(kTypeConversion);
    double x = 0;
    if (v.IsText()) {
        std::optional<double> n = ParseNumber(v.text());
        if (!n && c.props.type == dbBoolean && (SameName(v.text(), "True") || SameName(v.text(), "False")))
            n = SameName(v.text(), "True") ? -1 : 0;
        if (!n) throw DaoError(kTypeConversion);
        x = *n;
    } else {
        x = v.AsDouble();
    }
    switch (c.props.type) {
        case dbBoolean: return Variant(x != 0);
        case dbByte: case dbInteger: case dbLong: return Variant(static_cast<std::int64_t>(std::nearbyint(x)));
        default: return Variant(x);
    }
}

void RecordsetImpl::SetValue(int i, const Variant& v) {
    CheckOpen();
    if (editMode_ == 0) throw DaoError(kUpdateWithoutEdit);
    const Column& c = cols()[static_cast<size_t>(i)];
    if (!c.updatable) throw Error(kFieldNotUpdatable, DaoErrorText(kFieldNotUpdatable), "DAO.Field");
    if (c.props.IsCounter() && editMode_ == 2 && !dirty_[static_cast<size_t>(i)]) {
        // The Counter of a new row is the engine's to give.
        throw Error(kFieldNotUpdatable, DaoErrorText(kFieldNotUpdatable), "DAO.Field");
    }
    buffer_[static_cast<size_t>(i)] = Coerce(c, v);
    dirty_[static_cast<size_t>(i)] = true;
}

// ------------------------------------------------------------ position

bool RecordsetImpl::EnsureRow(std::int64_t index) {
    while (static_cast<std::int64_t>(rows_.size()) <= index) {
        if (!FetchOne()) return false;
    }
    return true;
}

void RecordsetImpl::FinishReading() {
    if (conn_ == nullptr) return;
    while (FetchOne()) {}
}

void RecordsetImpl::SetCurrent(std::int64_t index) {
    pos_ = index;
    unplaced_.reset();
    bof_ = eof_ = false;
    reached_ = std::max(reached_, index + 1);
}

std::int64_t RecordsetImpl::NextLive(std::int64_t from, int step) {
    for (std::int64_t i = from;; i += step) {
        if (i < 0) return -1;
        if (!EnsureRow(i)) return static_cast<std::int64_t>(rows_.size());
        if (!rows_[static_cast<size_t>(i)].deleted) return i;
    }
}

void RecordsetImpl::Place() {
    if (pos_ != kUnplaced) return;
    const Row target = *unplaced_;
    for (std::int64_t i = 0;; ++i) {
        if (!EnsureRow(i)) {
            // The row is gone from the set (it cannot be, short of a bug):
            // stand after the last row rather than on a wrong one.
            pos_ = static_cast<std::int64_t>(rows_.size());
            unplaced_.reset();
            eof_ = true;
            return;
        }
        if (!rows_[static_cast<size_t>(i)].deleted && rows_[static_cast<size_t>(i)].keys == target.keys) {
            SetCurrent(i);
            return;
        }
    }
}

void RecordsetImpl::DiscardEdit() {
    editMode_ = 0;
    buffer_.clear();
    original_.clear();
    dirty_.clear();
}

void RecordsetImpl::MoveFirst() {
    CheckOpen();
    if (bof_ && eof_) throw DaoError(kNoCurrentRecord);
    DiscardEdit();
    std::int64_t i = NextLive(0, 1);
    if (i >= static_cast<std::int64_t>(rows_.size())) { SetEmptyFlags(); return; }
    SetCurrent(i);
}

void RecordsetImpl::MoveLast() {
    CheckOpen();
    if (bof_ && eof_) throw DaoError(kNoCurrentRecord);
    DiscardEdit();
    FinishReading();
    std::int64_t i = NextLive(static_cast<std::int64_t>(rows_.size()) - 1, -1);
    if (i < 0) { SetEmptyFlags(); return; }
    SetCurrent(i);
    reached_ = static_cast<std::int64_t>(rows_.size());
}

void RecordsetImpl::MoveNext() {
    CheckOpen();
    if (eof_) throw DaoError(kNoCurrentRecord);
    DiscardEdit();
    Place();
    std::int64_t i = NextLive(pos_ + 1, 1);
    if (i >= static_cast<std::int64_t>(rows_.size())) {
        pos_ = static_cast<std::int64_t>(rows_.size());
        eof_ = true;
        reached_ = std::max(reached_, pos_);
        return;
    }
    SetCurrent(i);
}

void RecordsetImpl::MovePrevious() {
    CheckOpen();
    if (bof_) throw DaoError(kNoCurrentRecord);
    DiscardEdit();
    Place();
    std::int64_t i = NextLive(pos_ - 1, -1);
    if (i < 0) {
        pos_ = -1;
        bof_ = true;
        return;
    }
    SetCurrent(i);
}

std::int64_t RecordsetImpl::AbsolutePosition() {
    CheckOpen();
    if (bof_ || eof_) return -1;
    Place();
    if (eof_ || pos_ < 0) return -1;
    if (rows_[static_cast<size_t>(pos_)].deleted) throw DaoError(kNoCurrentRecord);
    return pos_ - DeletedBefore(pos_);
}

std::int64_t RecordsetImpl::DeletedBefore(std::int64_t index) const {
    return std::lower_bound(deletedAt_.begin(), deletedAt_.end(), index) - deletedAt_.begin();
}

void RecordsetImpl::SetAbsolutePosition(std::int64_t p) {
    CheckOpen();
    if (p < 0) throw DaoError(kInvalidArgument);
    DiscardEdit();
    // The p-th live row stands p places on, plus one for each tombstone
    // on the way.
    std::int64_t i = p;
    for (std::int64_t d : deletedAt_)
        if (d <= i) ++i;
    if (!EnsureRow(i)) throw DaoError(kInvalidArgument);
    SetCurrent(i);
}

std::int64_t RecordsetImpl::RecordCount() const {
    CheckOpen();
    std::int64_t limit = std::min<std::int64_t>(reached_, static_cast<std::int64_t>(rows_.size()));
    return limit - DeletedBefore(limit);
}

// ------------------------------------------------------------ find

StatementLease RecordsetImpl::PrepareMatcher(const std::string& criteriaSql, const std::vector<Variant>& literals) {
    // The criteria see a row as the record set holds it: its values are the
    // parameters ?1…?n, the criteria's own literals follow them.
    std::string sql = "SELECT 1 FROM (SELECT ";
    for (size_t i = 0; i < cols().size(); ++i) {
        if (i) sql += ", ";
        sql += "?" + std::to_string(i + 1) + " AS f" + std::to_string(i);
    }
    if (cols().empty()) sql += "1";
    sql += ") WHERE " + ShiftParameters(criteriaSql, static_cast<int>(cols().size()));
    StatementLease s = conn_->PrepareRaw(sql);
    conn_->BindLiterals(s.get(), literals, static_cast<int>(cols().size()));
    return s;
}

bool RecordsetImpl::MatchesAt(std::int64_t index, sqlite3_stmt* matcher) {
    const Row& r = rows_[static_cast<size_t>(index)];
    if (r.deleted) return false;
    sqlite3_reset(matcher);  // the literals stay bound
    for (size_t i = 0; i < cols().size(); ++i) Connection::Bind(matcher, static_cast<int>(i + 1), r.values.Get(i));
    return conn_->Step(matcher);
}

std::int64_t RecordsetImpl::IndexOf(const Row& row) const {
    // The index by keys is brought up to the rows read only when asked: a
    // plain walk never needs it.
    for (; indexed_ < static_cast<std::int64_t>(rows_.size()); ++indexed_)
        keyIndex_.emplace(rows_[static_cast<size_t>(indexed_)].keys.Hash(), indexed_);
    std::int64_t found = -1;
    auto [from, to] = keyIndex_.equal_range(row.keys.Hash());
    for (auto it = from; it != to; ++it) {
        const Row& r = rows_[static_cast<size_t>(it->second)];
        if (!r.deleted && r.keys == row.keys && (found < 0 || it->second < found)) found = it->second;
    }
    return found;
}

void RecordsetImpl::Find(FindKind kind, std::string_view criteria) {
    CheckOpen();
    DiscardEdit();
    jet::Shape shape = jet::Parameterize(criteria);
    std::vector<std::string> names;
    names.reserve(cols().size());
    for (const auto& c : cols()) names.push_back(c.name);
    jet::CriteriaTranslation ct = jet::TranslateCriteria(shape, names);

    if (kind == FindKind::First && !layout_->keySources.empty()) {
        // Ask SQLite for the first match: with an index on the compared text
        // this is a lookup, not a walk over the rows.
        bool indexed = false;
        for (int f : ct.equalityFields) {
            const Column& c = cols()[static_cast<size_t>(f)];
            if (c.known && c.props.IsText() && !c.table.empty()) {
                conn_->EnsureLookupIndex(c.table, c.column);
                indexed = true;
            }
        }
        if (!indexed)
            for (int f : ct.equalityFields) {
                const Column& c = cols()[static_cast<size_t>(f)];
                if (c.known && !c.table.empty()) conn_->EnsureLookupIndex(c.table, c.column);
            }
        std::string sql = "WITH r(";
        for (size_t i = 0; i < cols().size(); ++i) sql += (i ? ",f" : "f") + std::to_string(i);
        for (size_t k = 0; k < layout_->keySources.size(); ++k) sql += ",h" + std::to_string(k);
        sql += ") AS (" + tr_->sql + ") SELECT * FROM r WHERE " +
               ShiftParameters(ct.sql, static_cast<int>(shape_.literals.size()));
        // While the set is still being read, its statement holds the same
        // snapshot and order as this one: the first match is the set's first.
        // Once it is read to the end, the file may hold rows that are not in
        // the set (added by other holders since) and the set may hold rows
        // added through it, which stand last whatever the order says.
        if (!exhausted_) sql += " LIMIT 1";
        StatementLease s = conn_->PrepareRaw(sql);
        conn_->BindLiterals(s.get(), shape_.literals);
        conn_->BindLiterals(s.get(), shape.literals, static_cast<int>(shape_.literals.size()));
        if (exhausted_) {
            std::int64_t best = -1;
            while (conn_->Step(s.get())) {
                std::int64_t i = IndexOf(ReadRow(s.get()));
                if (i < 0) continue;  // not in this set
                if (best < 0 || i < best) best = i;
                if (!rows_[static_cast<size_t>(i)].added) break;  // rows read come before rows added
            }
            s.Release();
            noMatch_ = best < 0;
            if (best >= 0) SetCurrent(best);
            return;
        }
        if (!conn_->Step(s.get())) {
            noMatch_ = true;
            return;
        }
        Row found = ReadRow(s.get());
        s.Release();
        noMatch_ = false;
        // Already read that far? Then stand on it; else stand on the match
        // and find its place when a move needs it.
        if (std::int64_t i = IndexOf(found); i >= 0) {
            SetCurrent(i);
            return;
        }
        unplaced_ = std::move(found);
        pos_ = kUnplaced;
        bof_ = eof_ = false;
        return;
    }

    std::int64_t start = 0;
    int step = 1;
    switch (kind) {
        case FindKind::First: start = 0; break;
        case FindKind::Last:
            FinishReading();
            start = static_cast<std::int64_t>(rows_.size()) - 1;
            step = -1;
            break;
        case FindKind::Next:
            Place();
            start = bof_ ? 0 : pos_ + 1;
            break;
        case FindKind::Previous:
            Place();
            if (eof_) FinishReading();
            start = eof_ ? static_cast<std::int64_t>(rows_.size()) - 1 : pos_ - 1;
            step = -1;
            break;
    }
    StatementLease matcher = PrepareMatcher(ct.sql, shape.literals);
    for (std::int64_t i = start; i >= 0; i += step) {
        if (!EnsureRow(i)) break;
        if (MatchesAt(i, matcher.get())) {
            noMatch_ = false;
            SetCurrent(i);
            return;
        }
    }
    noMatch_ = true;
}

// ------------------------------------------------------------ changes

void RecordsetImpl::ProbeWriteLock() {
    // Jet locks the record when editing starts; SQLite locks the whole file
    // only while writing. Asking for the write lock now tells the person at
    // Edit, not later, that somebody else is writing.
    // Inside a transaction of this connection the lock is ours already.
    if (sqlite3_get_autocommit(conn_->db()) == 0) return;
    int rc = sqlite3_exec(conn_->db(), "BEGIN IMMEDIATE", nullptr, nullptr, nullptr);
    if (rc == SQLITE_OK) {
        sqlite3_exec(conn_->db(), "ROLLBACK", nullptr, nullptr, nullptr);
        return;
    }
    if ((rc & 0xff) == SQLITE_BUSY) throw DaoError(kLockedByUser, "Admin", HostName());
    conn_->ThrowSqlite(sqlite3_extended_errcode(conn_->db()));
}

namespace {

// A savepoint around writes that belong together; what was written is
// undone unless Commit is reached.
class AllOrNothing {
public:
    AllOrNothing(Connection& c, bool needed) : c_(needed ? &c : nullptr) {
        if (c_) c_->ExecRaw("SAVEPOINT zelvo_row");
    }
    void Commit() {
        if (c_) c_->ExecRaw("RELEASE zelvo_row");
        c_ = nullptr;
    }
    ~AllOrNothing() {
        if (!c_) return;
        sqlite3_exec(c_->db(), "ROLLBACK TO zelvo_row; RELEASE zelvo_row", nullptr, nullptr, nullptr);
    }
    AllOrNothing(const AllOrNothing&) = delete;
    AllOrNothing& operator=(const AllOrNothing&) = delete;

private:
    Connection* c_;
};

}  // namespace

void RecordsetImpl::RequireUpdatable() const {
    if (updatable_) return;
    // Jet opens a join written in WHERE as a snapshot: read-only, like a
    // set opened so; other sets it cannot write are "not updatable".
    if (readOnly_ || tr_->commaJoin) throw DaoError(kReadOnly);
    throw DaoError(kRecordsetNotUpdatable);
}

void RecordsetImpl::Edit() {
    CheckOpen();
    RequireUpdatable();
    Place();
    const Row& row = CurrentRow();  // 3021 / 3167 before the file is asked for anything
    conn_->BeforeWrite();
    ProbeWriteLock();
    buffer_ = row.values.Unpack();
    original_ = buffer_;
    dirty_.assign(cols().size(), false);
    editMode_ = 1;
}

void RecordsetImpl::AddNew() {
    CheckOpen();
    RequireUpdatable();
    conn_->BeforeWrite();
    Place();
    DiscardEdit();
    buffer_.assign(cols().size(), Variant());
    dirty_.assign(cols().size(), false);
    reservedCounter_ = 0;
    for (size_t i = 0; i < cols().size(); ++i) {
        const Column& c = cols()[i];
        if (!c.known) continue;
        if (c.props.IsCounter() && c.updatable) {
            // Readable at once, as the original engine numbered a new row at AddNew.
            if (const TableSchema* t = conn_->FindTable(c.table)) {
                reservedCounter_ = conn_->ReserveCounter(*t);
                buffer_[i] = Variant(reservedCounter_);
            }
        } else {
            buffer_[i] = DefaultOf(c.props);
        }
    }
    beforeAdd_ = pos_;
    beforeAddBof_ = bof_;
    beforeAddEof_ = eof_;
    editMode_ = 2;
}

void RecordsetImpl::CancelUpdate() {
    CheckOpen();
    if (editMode_ == 0) throw DaoError(kUpdateWithoutEdit);
    DiscardEdit();
}

void RecordsetImpl::Update() {
    CheckOpen();
    if (editMode_ == 0) throw DaoError(kUpdateWithoutEdit);
    conn_->BeforeWrite();

    // The columns to write, by table source.
    std::vector<std::vector<int>> bySource(tr_->sources.size());
    for (size_t i = 0; i < cols().size(); ++i) {
        const Column& c = cols()[i];
        if (!c.updatable || c.source < 0) continue;
        if (editMode_ == 1 && !dirty_[i]) continue;
        if (editMode_ == 2 && !dirty_[i] && !(c.props.IsCounter() && reservedCounter_ != 0) &&
            buffer_[i].IsNull())
            continue;
        bySource[static_cast<size_t>(c.source)].push_back(static_cast<int>(i));
    }
    auto keySlot = [&](int source) {
        for (size_t k = 0; k < layout_->keySources.size(); ++k)
            if (layout_->keySources[k] == source) return static_cast<int>(k);
        return -1;
    };

    // The value a field of table source `t` has in the row being written:
    // from the row's own fields when the set shows it, else from its table.
    auto valueOf = [&](const RowKeys& keys, int t, const std::string& column) -> Variant {
        for (size_t i = 0; i < cols().size(); ++i)
            if (cols()[i].source == t && SameName(cols()[i].column, column) && !buffer_[i].IsNull()) return buffer_[i];
        int slot = keySlot(t);
        if (slot < 0 || keys[static_cast<size_t>(slot)] == kNoKey) return Variant();
        const std::string& table = tr_->sources[static_cast<size_t>(t)].name;
        StatementLease q = conn_->PrepareRaw("SELECT " + QuoteName(column) + " FROM " + QuoteName(table) +
                                             " WHERE rowid = ?1");
        sqlite3_bind_int64(q.get(), 1, keys[static_cast<size_t>(slot)]);
        if (!conn_->Step(q.get(), table)) return Variant();
        switch (sqlite3_column_type(q.get(), 0)) {
            case SQLITE_INTEGER: return Variant(static_cast<std::int64_t>(sqlite3_column_int64(q.get(), 0)));
            case SQLITE_FLOAT: return Variant(sqlite3_column_double(q.get(), 0));
            case SQLITE_TEXT:
                return Variant(std::string(reinterpret_cast<const char*>(sqlite3_column_text(q.get(), 0)),
                                           static_cast<size_t>(sqlite3_column_bytes(q.get(), 0))));
            default: return Variant();  // a key is never a picture
        }
    };
    // Adds a row to the table of source `s` with the fields `colsOfSource`,
    // and the fields an ON condition links to another table's values
    // (Jet's "fill in the blank"); returns its rowid.
    auto insertRow = [&](size_t s, const std::vector<int>& colsOfSource, const RowKeys& keys) {
        const std::string& table = tr_->sources[s].name;
        std::vector<std::string> names;
        std::vector<Variant> values;
        for (int ci : colsOfSource) {
            names.push_back(cols()[static_cast<size_t>(ci)].column);
            values.push_back(buffer_[static_cast<size_t>(ci)]);
        }
        for (const auto& link : tr_->joinLinks) {
            const auto* mine = link.a.source == static_cast<int>(s) ? &link.a : link.b.source == static_cast<int>(s) ? &link.b : nullptr;
            if (!mine) continue;
            const auto& other = mine == &link.a ? link.b : link.a;
            bool named = false;
            for (const auto& n : names) named = named || SameName(n, mine->column);
            if (named) continue;
            Variant v = valueOf(keys, other.source, other.column);
            if (v.IsNull()) continue;
            names.push_back(mine->column);
            values.push_back(std::move(v));
        }
        std::string list, marks;
        for (size_t j = 0; j < names.size(); ++j) {
            list += (j ? ", " : "") + QuoteName(names[j]);
            marks += (j ? ", ?" : "?") + std::to_string(j + 1);
        }
        StatementLease ins = conn_->PrepareRaw("INSERT INTO " + QuoteName(table) + " (" + list + ") VALUES (" + marks + ")");
        for (size_t j = 0; j < values.size(); ++j) Connection::Bind(ins.get(), static_cast<int>(j + 1), values[j]);
        conn_->Step(ins.get(), table);
        return sqlite3_last_insert_rowid(conn_->db());
    };

    // A row of a join may be written to several tables: all of them or none.
    int tablesWritten = 0;
    for (const auto& v : bySource) tablesWritten += v.empty() ? 0 : 1;
    AllOrNothing whole(*conn_, tablesWritten > 1);

    if (editMode_ == 1) {
        Row& row = pos_ == kUnplaced ? *unplaced_ : rows_[static_cast<size_t>(pos_)];
        for (size_t s = 0; s < bySource.size(); ++s) {
            const auto& colsOfSource = bySource[s];
            if (colsOfSource.empty()) continue;
            int slot = keySlot(static_cast<int>(s));
            if (slot < 0) throw DaoError(kRecordsetNotUpdatable);
            if (row.keys[static_cast<size_t>(slot)] == kNoKey) {
                // The Null side of an outer join: the row is made there.
                row.keys[static_cast<size_t>(slot)] = insertRow(s, colsOfSource, row.keys);
                continue;
            }
            const std::string& table = cols()[static_cast<size_t>(colsOfSource[0])].table;
            std::int64_t key = row.keys[static_cast<size_t>(slot)];
            // Optimistic check: the row must still hold what this set read.
            std::string check = "SELECT ";
            for (size_t j = 0; j < colsOfSource.size(); ++j)
                check += (j ? ", " : "") + QuoteName(cols()[static_cast<size_t>(colsOfSource[j])].column);
            check += " FROM " + QuoteName(table) + " WHERE rowid = ?1";
            {
                StatementLease q = conn_->PrepareRaw(check);
                sqlite3_bind_int64(q.get(), 1, key);
                // Gone since this set read it: another connection deleted it.
                if (!conn_->Step(q.get(), table)) throw DaoError(kRecordDeleted);
                for (size_t j = 0; j < colsOfSource.size(); ++j) {
                    int ci = colsOfSource[j];
                    if (!(ReadValue(q.get(), static_cast<int>(j), cols()[static_cast<size_t>(ci)]) ==
                          original_[static_cast<size_t>(ci)]))
                        throw DaoError(kWriteConflict);
                }
            }
            std::string sql = "UPDATE " + QuoteName(table) + " SET ";
            for (size_t j = 0; j < colsOfSource.size(); ++j)
                sql += (j ? ", " : "") + QuoteName(cols()[static_cast<size_t>(colsOfSource[j])].column) + " = ?" +
                       std::to_string(j + 1);
            sql += " WHERE rowid = ?" + std::to_string(colsOfSource.size() + 1);
            StatementLease u = conn_->PrepareRaw(sql);
            for (size_t j = 0; j < colsOfSource.size(); ++j)
                Connection::Bind(u.get(), static_cast<int>(j + 1), buffer_[static_cast<size_t>(colsOfSource[j])]);
            sqlite3_bind_int64(u.get(), static_cast<int>(colsOfSource.size() + 1), key);
            conn_->Step(u.get(), table);
        }
        whole.Commit();
        std::vector<Variant> values = row.values.Unpack();
        for (size_t i = 0; i < cols().size(); ++i)
            if (dirty_[i]) values[i] = buffer_[i];
        row.values = PackedValues::Of(values);
        DiscardEdit();
        return;
    }

    // AddNew: a row in every table that got a value; at least in the first.
    Row added;
    added.added = true;
    added.values = PackedValues::Of(buffer_);
    added.keys.assign(layout_->keySources.size(), kNoKey);
    bool any = false;
    for (const auto& v : bySource) any = any || !v.empty();
    if (!any && !layout_->keySources.empty()) {
        // Nothing was set: the new row goes to the first table with its defaults.
        for (size_t i = 0; i < cols().size(); ++i)
            if (cols()[i].updatable && cols()[i].source == layout_->keySources[0]) {
                bySource[static_cast<size_t>(layout_->keySources[0])].push_back(static_cast<int>(i));
                break;
            }
    }
    for (size_t s = 0; s < bySource.size(); ++s) {
        const auto& colsOfSource = bySource[s];
        if (colsOfSource.empty()) continue;
        std::int64_t rowid = insertRow(s, colsOfSource, added.keys);
        int slot = keySlot(static_cast<int>(s));
        if (slot >= 0) added.keys[static_cast<size_t>(slot)] = rowid;
    }
    whole.Commit();
    FinishReading();
    rows_.push_back(std::move(added));
    if (reached_ == static_cast<std::int64_t>(rows_.size()) - 1) reached_ = static_cast<std::int64_t>(rows_.size());
    DiscardEdit();
    // The record that was current before AddNew is current again.
    if (beforeAddBof_ && beforeAddEof_) {
        pos_ = static_cast<std::int64_t>(rows_.size());
        bof_ = false;
        eof_ = true;
    } else {
        pos_ = beforeAdd_;
        bof_ = beforeAddBof_;
        eof_ = beforeAddEof_;
        if (eof_) pos_ = static_cast<std::int64_t>(rows_.size());
    }
}

void RecordsetImpl::Delete() {
    CheckOpen();
    RequireUpdatable();
    DiscardEdit();
    Place();
    CurrentRow();  // 3021 / 3167
    conn_->BeforeWrite();
    Row& row = rows_[static_cast<size_t>(pos_)];
    if (layout_->keySources.empty() || row.keys[0] == kNoKey) throw DaoError(kRecordsetNotUpdatable);
    // The first table of the query is the one whose record goes.
    std::string table = tr_->sources[static_cast<size_t>(layout_->keySources[0])].name;
    StatementLease d = conn_->PrepareRaw("DELETE FROM " + QuoteName(table) + " WHERE rowid = ?1");
    sqlite3_bind_int64(d.get(), 1, row.keys[0]);
    conn_->Step(d.get(), table);
    row.deleted = true;  // stays current, but can no longer be read
    deletedAt_.insert(std::upper_bound(deletedAt_.begin(), deletedAt_.end(), pos_), pos_);
}

void RecordsetImpl::Requery() {
    CheckOpen();
    DiscardEdit();
    live_.Release();
    noMatch_ = false;
    Start();
}

void RecordsetImpl::Close() {
    CheckOpen();
    CloseFromConnection();
}

void RecordsetImpl::CloseFromConnection() {
    live_.Release();
    ForgetRows();
    unplaced_.reset();
    if (conn_) conn_->Unregister(this);
    conn_.reset();
}

}  // namespace zelvo::dao::detail
