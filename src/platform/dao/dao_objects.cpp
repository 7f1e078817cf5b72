// The public DAO objects: thin handles over the connection, the record set
// state and the schema editor.
#include <filesystem>

#include "platform/dao/connection.h"
#include "platform/dao/database.h"
#include "platform/dao/dbengine.h"
#include "platform/dao/jet_file/jet_file_reader.h"
#include "platform/dao/jet_file/jet_import.h"
#include "platform/dao/lock_registry.h"
#include "platform/dao/recordset_impl.h"
#include "platform/dao/schema_editor.h"
#include "platform/dao/sql_text.h"

namespace zelvo::dao {

namespace detail {

struct TableDefNode {
    std::shared_ptr<Connection> conn;  // set once the table is in the file
    std::string name;
    std::vector<std::shared_ptr<FieldNode>> fields;  // a free table's fields
};

struct FieldNode {
    FieldProps props;
    std::shared_ptr<TableDefNode> table;  // the table in the file it was appended to
    // Appended to a table not yet in the file: that table holds the field,
    // not the other way round, so that neither keeps the other alive.
    bool inFreeTable = false;
    std::shared_ptr<RecordsetImpl> rs;    // or the record set it is a value of
    int index = -1;
};

struct QueryDefNode {
    std::shared_ptr<Connection> conn;
    std::string name;
    std::string sql;
    bool saved = false;
};

}  // namespace detail

using detail::Connection;
using detail::FieldNode;
using detail::QueryDefNode;
using detail::RecordsetImpl;
using detail::TableDefNode;

namespace {

[[noreturn]] void Invalid() { throw DaoError(kObjectInvalid); }

bool InFile(const TableDefNode& t) { return t.conn != nullptr; }

const detail::TableSchema& SchemaOf(const TableDefNode& t) {
    const detail::TableSchema* s = t.conn->FindTable(t.name);
    if (!s) throw DaoError(kItemNotFound);
    return *s;
}

std::shared_ptr<FieldNode> NodeFor(const std::shared_ptr<TableDefNode>& t, const FieldProps& p) {
    auto n = std::make_shared<FieldNode>();
    n->props = p;
    n->table = t;
    return n;
}

bool LooksLikeSql(std::string_view s) {
    size_t i = 0;
    while (i < s.size() && (std::isspace(static_cast<unsigned char>(s[i])) || s[i] == '(')) ++i;
    std::string word;
    while (i < s.size() && std::isalpha(static_cast<unsigned char>(s[i])))
        word += static_cast<char>(std::tolower(static_cast<unsigned char>(s[i++])));
    // An action query is SQL too: opening one is refused (3219), not
    // taken for the name of a table.
    for (const char* w : {"select", "transform", "parameters", "insert", "update", "delete", "create", "alter", "drop"})
        if (word == w && (i == s.size() || !std::isalnum(static_cast<unsigned char>(s[i])))) return true;
    return false;
}

std::string SelectAllFrom(std::string_view name) { return "SELECT * FROM [" + std::string(name) + "]"; }

// What opening `source` runs: SQL as it is, a saved query by its own text
// (so that a query over one table can be edited, as in Jet), a table whole.
std::string SourceSql(Connection& c, std::string_view source) {
    if (LooksLikeSql(source)) return std::string(source);
    if (const detail::QuerySchema* q = c.FindQuery(source))
        if (LooksLikeSql(q->sql)) return q->sql;
    return SelectAllFrom(source);
}

// The Jet format a book stands for is kept in the file header's user
// version, which SQLite leaves to the application and copies with the file.
// A new book has 0 there, which reads as "4.0": only a copy of a Jet 3 file
// made without dbVersion40 carries the mark of "3.0".
constexpr std::int64_t kJet3Mark = 30;

std::string BookVersion(Connection& c) {
    detail::StatementLease s = c.PrepareRaw("PRAGMA user_version");
    std::int64_t mark = c.Step(s.get()) ? sqlite3_column_int64(s.get(), 0) : 0;
    return mark == kJet3Mark ? "3.0" : "4.0";
}

void MarkBookVersion(Connection& c, const std::string& version) {
    c.ExecRaw("PRAGMA user_version = " + std::to_string(version == "3.0" ? kJet3Mark : 0));
}

// The Version a compacted copy is to have: the one the options ask for, or
// "" to keep the source's.
std::string RequestedVersion(int options) {
    if (options & dbVersion40) return "4.0";
    if (options & dbVersion30) return "3.0";
    return {};
}

}  // namespace

// ------------------------------------------------------------ Field

FieldNode& Field::N() const {
    if (!node_) Invalid();
    return *node_;
}

void Field::Change(void (*apply)(FieldProps&, const void*), const void* arg) {
    FieldNode& n = N();
    if (n.rs) throw DaoError(kInvalidOperation);  // a record set's field definitions are fixed
    FieldProps next = n.props;
    apply(next, arg);
    if (n.table && InFile(*n.table)) detail::AlterField(*n.table->conn, n.table->name, n.props.name, next);
    n.props = next;
}

#define ZELVO_FIELD_PROPERTY(Getter, Setter, Type, member)                                   \
    Type Field::Getter() const {                                                            \
        const FieldNode& n = N();                                                           \
        return n.rs ? static_cast<Type>(n.rs->FieldDefinition(n.index).member) : n.props.member; \
    }                                                                                       \
    void Field::Setter(Type v) {                                                            \
        Change([](FieldProps& p, const void* a) { p.member = *static_cast<const Type*>(a); }, &v); \
    }

std::string Field::Name() const {
    const FieldNode& n = N();
    return n.rs ? n.rs->FieldName(n.index) : n.props.name;
}
void Field::SetName(const std::string& name) {
    Change([](FieldProps& p, const void* a) { p.name = *static_cast<const std::string*>(a); }, &name);
}
ZELVO_FIELD_PROPERTY(Type, SetType, int, type)
ZELVO_FIELD_PROPERTY(Size, SetSize, int, size)
ZELVO_FIELD_PROPERTY(Attributes, SetAttributes, int, attributes)
ZELVO_FIELD_PROPERTY(Required, SetRequired, bool, required)
ZELVO_FIELD_PROPERTY(AllowZeroLength, SetAllowZeroLength, bool, allowZeroLength)
#undef ZELVO_FIELD_PROPERTY

std::string Field::DefaultValue() const {
    const FieldNode& n = N();
    return n.rs ? n.rs->FieldDefinition(n.index).defaultValue : n.props.defaultValue;
}
void Field::SetDefaultValue(const std::string& value) {
    Change([](FieldProps& p, const void* a) { p.defaultValue = *static_cast<const std::string*>(a); }, &value);
}

Variant Field::Value() const {
    const FieldNode& n = N();
    if (!n.rs) throw DaoError(kInvalidOperation);
    return n.rs->Value(n.index);
}

void Field::SetValue(const Variant& value) {
    const FieldNode& n = N();
    if (!n.rs) throw DaoError(kInvalidOperation);
    n.rs->SetValue(n.index, value);
}

// ------------------------------------------------------------ Fields / TableDef

int Fields::Count() const {
    if (!table_) Invalid();
    return InFile(*table_) ? static_cast<int>(SchemaOf(*table_).fields.size()) : static_cast<int>(table_->fields.size());
}

Field Fields::Item(int index) const {
    if (!table_) Invalid();
    if (index < 0 || index >= Count()) throw DaoError(kItemNotFound);
    if (!InFile(*table_)) return Field(table_->fields[static_cast<size_t>(index)]);
    return Field(NodeFor(table_, SchemaOf(*table_).fields[static_cast<size_t>(index)]));
}

Field Fields::Item(const std::string& name) const {
    if (!table_) Invalid();
    if (!InFile(*table_)) {
        for (const auto& f : table_->fields)
            if (detail::SameName(f->props.name, name)) return Field(f);
        throw DaoError(kItemNotFound);
    }
    const FieldProps* p = SchemaOf(*table_).Find(name);
    if (!p) throw DaoError(kItemNotFound);
    return Field(NodeFor(table_, *p));
}

void Fields::Append(const Field& field) {
    if (!table_ || !field) Invalid();
    FieldNode& f = *field.node();
    if (f.rs || f.table || f.inFreeTable) throw DaoError(kInvalidOperation);  // already belongs somewhere
    if (InFile(*table_)) {
        detail::AddField(*table_->conn, table_->name, f.props);
        f.table = table_;
    } else {
        for (const auto& g : table_->fields)
            if (detail::SameName(g->props.name, f.props.name)) throw DaoError(kFieldExists, f.props.name, table_->name);
        table_->fields.push_back(field.node());
        f.inFreeTable = true;
    }
}

void Fields::Delete(const std::string& name) {
    if (!table_) Invalid();
    if (InFile(*table_)) {
        detail::DropField(*table_->conn, table_->name, name);
        return;
    }
    auto& v = table_->fields;
    for (auto it = v.begin(); it != v.end(); ++it) {
        if (detail::SameName((*it)->props.name, name)) {
            (*it)->inFreeTable = false;
            v.erase(it);
            return;
        }
    }
    throw DaoError(kItemNotFound);
}

std::string TableDef::Name() const {
    if (!node_) Invalid();
    return node_->name;
}

void TableDef::SetName(const std::string& name) {
    if (!node_) Invalid();
    if (InFile(*node_)) detail::RenameTable(*node_->conn, node_->name, name);
    node_->name = name;
}

dao::Fields TableDef::Fields() const {
    if (!node_) Invalid();
    return dao::Fields(node_);
}

Field TableDef::CreateField(const std::string& name, int type, int size) const {
    if (!node_) Invalid();
    auto n = std::make_shared<FieldNode>();
    n->props.name = name;
    n->props.type = type;
    n->props.size = type == dbText ? (size > 0 ? size : 255) : FixedSizeOf(type);
    return Field(n);
}

int TableDefs::Count() const {
    if (!conn_) Invalid();
    return static_cast<int>(conn_->Tables().size());
}

TableDef TableDefs::Item(int index) const {
    if (!conn_) Invalid();
    const auto& tables = conn_->Tables();
    if (index < 0 || index >= static_cast<int>(tables.size())) throw DaoError(kItemNotFound);
    auto n = std::make_shared<TableDefNode>();
    n->conn = conn_;
    n->name = tables[static_cast<size_t>(index)].name;
    return TableDef(n);
}

TableDef TableDefs::Item(const std::string& name) const {
    if (!conn_) Invalid();
    const detail::TableSchema* t = conn_->FindTable(name);
    if (!t) throw DaoError(kItemNotFound);
    auto n = std::make_shared<TableDefNode>();
    n->conn = conn_;
    n->name = t->name;
    return TableDef(n);
}

void TableDefs::Append(const TableDef& table) {
    if (!conn_ || !table) Invalid();
    TableDefNode& t = *table.node();
    if (InFile(t)) throw DaoError(kTableExists, t.name);
    std::vector<FieldProps> fields;
    for (const auto& f : t.fields) fields.push_back(f->props);
    detail::CreateTable(*conn_, t.name, fields);
    t.conn = conn_;
    // From now on the file holds the fields; a change to one goes there.
    for (const auto& f : t.fields) {
        f->table = table.node();
        f->inFreeTable = false;
    }
    t.fields.clear();
}

void TableDefs::Delete(const std::string& name) {
    if (!conn_) Invalid();
    detail::DropTable(*conn_, name);
}

// ------------------------------------------------------------ QueryDef

std::string QueryDef::Name() const {
    if (!node_) Invalid();
    return node_->name;
}

void QueryDef::SetName(const std::string& name) {
    if (!node_) Invalid();
    if (node_->saved) detail::RenameQuery(*node_->conn, node_->name, name);
    node_->name = name;
}

std::string QueryDef::SQL() const {
    if (!node_) Invalid();
    if (node_->saved) {
        if (const detail::QuerySchema* q = node_->conn->FindQuery(node_->name)) return q->sql;
    }
    return node_->sql;
}

void QueryDef::SetSQL(const std::string& sql) {
    if (!node_) Invalid();
    if (node_->saved) detail::SetQuerySql(*node_->conn, node_->name, sql);
    node_->sql = sql;
}

Recordset QueryDef::OpenRecordset(int type) const {
    if (!node_) Invalid();
    return Database(node_->conn).OpenRecordset(node_->saved ? node_->name : node_->sql, type);
}

int QueryDefs::Count() const {
    if (!conn_) Invalid();
    return static_cast<int>(conn_->Queries().size());
}

QueryDef QueryDefs::Item(int index) const {
    if (!conn_) Invalid();
    const auto& qs = conn_->Queries();
    if (index < 0 || index >= static_cast<int>(qs.size())) throw DaoError(kItemNotFound);
    return Item(qs[static_cast<size_t>(index)].name);
}

QueryDef QueryDefs::Item(const std::string& name) const {
    if (!conn_) Invalid();
    const detail::QuerySchema* q = conn_->FindQuery(name);
    if (!q) throw DaoError(kItemNotFound);
    auto n = std::make_shared<QueryDefNode>();
    n->conn = conn_;
    n->name = q->name;
    n->sql = q->sql;
    n->saved = true;
    return QueryDef(n);
}

void QueryDefs::Append(const QueryDef& query) {
    if (!conn_ || !query) Invalid();
    QueryDefNode& q = *query.node();
    if (q.saved) {
        if (conn_->FindQuery(q.name)) return;  // already saved: nothing to do
    }
    detail::CreateQuery(*conn_, q.name, q.sql);
    q.conn = conn_;
    q.saved = true;
}

void QueryDefs::Delete(const std::string& name) {
    if (!conn_) Invalid();
    detail::DropQuery(*conn_, name);
}

// ------------------------------------------------------------ Recordset

RecordsetImpl& Recordset::I() const {
    if (!impl_ || impl_->closed()) Invalid();
    return *impl_;
}

std::int64_t Recordset::AbsolutePosition() const { return I().AbsolutePosition(); }
void Recordset::SetAbsolutePosition(std::int64_t p) { I().SetAbsolutePosition(p); }
std::int64_t Recordset::RecordCount() const { return I().RecordCount(); }
bool Recordset::IsBOF() const { return I().Bof(); }
bool Recordset::IsEOF() const { return I().Eof(); }
void Recordset::MoveFirst() { I().MoveFirst(); }
void Recordset::MoveLast() { I().MoveLast(); }
void Recordset::MoveNext() { I().MoveNext(); }
void Recordset::MovePrevious() { I().MovePrevious(); }
void Recordset::FindFirst(std::string_view c) { I().Find(RecordsetImpl::FindKind::First, c); }
void Recordset::FindNext(std::string_view c) { I().Find(RecordsetImpl::FindKind::Next, c); }
void Recordset::FindLast(std::string_view c) { I().Find(RecordsetImpl::FindKind::Last, c); }
void Recordset::FindPrevious(std::string_view c) { I().Find(RecordsetImpl::FindKind::Previous, c); }
bool Recordset::NoMatch() const { return I().NoMatch(); }
RecordsetFields Recordset::Fields() const {
    I();
    return RecordsetFields(impl_);
}
Variant Recordset::operator()(std::string_view field) const { return I().Value(I().FieldIndex(field)); }
Variant Recordset::Value(int index) const {
    if (index < 0 || index >= I().FieldCount()) throw DaoError(kItemNotFound);
    return I().Value(index);
}
void Recordset::SetValue(std::string_view field, const Variant& v) { I().SetValue(I().FieldIndex(field), v); }
void Recordset::SetValue(int index, const Variant& v) {
    if (index < 0 || index >= I().FieldCount()) throw DaoError(kItemNotFound);
    I().SetValue(index, v);
}
void Recordset::Edit() { I().Edit(); }
void Recordset::AddNew() { I().AddNew(); }
void Recordset::Update() { I().Update(); }
void Recordset::CancelUpdate() { I().CancelUpdate(); }
void Recordset::Delete() { I().Delete(); }
void Recordset::Requery() { I().Requery(); }
void Recordset::Close() { I().Close(); }
int Recordset::EditMode() const { return I().EditMode(); }
bool Recordset::Updatable() const { return I().Updatable(); }
bool Recordset::IsOpen() const { return impl_ && !impl_->closed(); }

int RecordsetFields::Count() const {
    if (!rs_ || rs_->closed()) Invalid();
    return rs_->FieldCount();
}

Field RecordsetFields::Item(int index) const {
    if (index < 0 || index >= Count()) throw DaoError(kItemNotFound);
    auto n = std::make_shared<FieldNode>();
    n->rs = rs_;
    n->index = index;
    return Field(n);
}

Field RecordsetFields::Item(std::string_view name) const {
    if (!rs_ || rs_->closed()) Invalid();
    return Item(rs_->FieldIndex(name));
}

// ------------------------------------------------------------ Database

Connection& Database::C() const {
    if (!conn_ || conn_->closed()) Invalid();
    return *conn_;
}

Recordset Database::OpenRecordset(std::string_view source, int type) const {
    C();
    std::string sql = SourceSql(*conn_, source);
    bool readOnly = type == dbOpenSnapshot || type == dbOpenForwardOnly || conn_->readOnly();
    return Recordset(RecordsetImpl::Open(conn_, jet::Parameterize(sql), readOnly));
}

void Database::Execute(std::string_view sql) const {
    Connection& c = C();
    jet::Shape shape = jet::Parameterize(sql);
    Connection::Prepared p = c.Prepare(shape);
    const jet::Translation& tr = *p.translation;
    auto propsOf = [](const jet::ColumnDef& d) {
        FieldProps f;
        f.name = d.name;
        f.type = d.counter ? dbLong : d.type;
        f.size = d.size;
        f.attributes = d.counter ? dbAutoIncrField : 0;
        f.required = d.notNull;
        // SQL DDL leaves zero-length texts allowed; the property means
        // nothing for other types, which report False as DAO does.
        f.allowZeroLength = f.IsText();
        return f;
    };
    *affected_ = 0;
    switch (tr.kind) {
        case jet::StatementKind::Select:
            throw Error(kSelectNotExecutable, DaoErrorText(kSelectNotExecutable), "DAO.Database");
        case jet::StatementKind::CreateTable: {
            std::vector<FieldProps> fields;
            for (const auto& d : tr.columnDefs) fields.push_back(propsOf(d));
            std::vector<std::vector<std::string>> keys;
            for (const auto& k : tr.keys) keys.push_back(k.columns);
            detail::CreateTable(c, tr.table, fields, keys);
            return;
        }
        case jet::StatementKind::DropTable:
            if (!c.FindTable(tr.table))
                throw Error(kTableMissing, DaoErrorText(kTableMissing, tr.table), "DAO.Database");
            detail::DropTable(c, tr.table);
            return;
        case jet::StatementKind::AlterTable: {
            using A = jet::Translation::AlterAction;
            if (tr.alter == A::AddColumn) {
                detail::AddField(c, tr.table, propsOf(tr.columnDefs.at(0)));
            } else if (tr.alter == A::DropColumn) {
                detail::DropField(c, tr.table, tr.dropColumn);
            } else if (tr.alter == A::AlterColumn) {
                const detail::TableSchema* t = c.FindTable(tr.table);
                if (!t) throw DaoError(kInputTableNotFound, tr.table);
                const FieldProps* old = t->Find(tr.columnDefs.at(0).name);
                if (!old) throw DaoError(kItemNotFound);
                FieldProps next = propsOf(tr.columnDefs.at(0));
                next.name = old->name;
                next.defaultValue = old->defaultValue;
                next.allowZeroLength = old->allowZeroLength;
                detail::AlterField(c, tr.table, old->name, next);
            }
            return;
        }
        default: break;
    }
    c.BeforeWrite();
    sqlite3_stmt* st = p.statement.get();
    c.BindLiterals(st, shape.literals);
    while (c.Step(st, tr.table)) {}
    *affected_ = sqlite3_changes64(c.db());
}

std::int64_t Database::RecordsAffected() const { return *affected_; }

void Database::Close() {
    if (!conn_ || conn_->closed()) Invalid();
    conn_->Close();
}

bool Database::IsOpen() const { return conn_ && !conn_->closed(); }
std::string Database::Name() const { return C().path(); }
std::string Database::Version() const { return BookVersion(C()); }

dao::TableDefs Database::TableDefs() const {
    C();
    return dao::TableDefs(conn_);
}

TableDef Database::CreateTableDef(const std::string& name) const {
    C();
    auto n = std::make_shared<TableDefNode>();
    n->name = name;
    return TableDef(n);
}

dao::QueryDefs Database::QueryDefs() const {
    C();
    return dao::QueryDefs(conn_);
}

QueryDef Database::CreateQueryDef(const std::string& name, const std::string& sql) const {
    Connection& c = C();
    auto n = std::make_shared<QueryDefNode>();
    n->conn = conn_;
    n->name = name;
    n->sql = sql;
    if (!name.empty()) {
        detail::CreateQuery(c, name, sql);
        n->saved = true;
    }
    return QueryDef(n);
}

// ------------------------------------------------------------ DBEngine

Database DBEngine::OpenDatabase(const std::string& path, bool exclusive, bool readOnly, const std::string&) const {
    Connection::Options o;
    o.exclusive = exclusive;
    o.readOnly = readOnly;
    return Database(Connection::Open(path, o));
}

Database DBEngine::CreateDatabase(const std::string& path, const std::string&, int options) const {
    Connection::Options o;
    o.create = true;
    Database db(Connection::Open(path, o));
    if (RequestedVersion(options) == "3.0") MarkBookVersion(*db.connection(), "3.0");
    return db;
}

void DBEngine::CompactDatabase(const std::string& source, const std::string& destination, const std::string&,
                               int options) const {
    namespace fs = std::filesystem;
    std::error_code ec;
    if (!fs::exists(source, ec)) throw DaoError(kFileNotFound, source);
    if (fs::exists(destination, ec)) throw DaoError(kDatabaseExists);
    fs::path folder = fs::path(destination).has_parent_path() ? fs::path(destination).parent_path() : fs::path(".");
    if (!fs::is_directory(folder, ec)) throw DaoError(kNotValidPath, folder.string());
    // A file of the original engine (an earlier installation's book) is
    // converted: read through libmdb and written as a book.
    const std::string requested = RequestedVersion(options);
    auto removeCopy = [&] {
        fs::remove(destination, ec);
        for (const char* suffix : kSideFileSuffixes) fs::remove(destination + suffix, ec);
    };
    if (jetfile::JetFileFormat(source) != jetfile::JetFormat::NotJet) {
        jetfile::ImportJetFile(source, destination);
        const std::string version = requested.empty() ? jetfile::JetFileVersion(source) : requested;
        if (version == "3.0") {
            try {
                Database copy = OpenDatabase(destination);
                MarkBookVersion(*copy.connection(), version);
                copy.Close();
            } catch (...) {
                removeCopy();
                throw;
            }
        }
        return;
    }

    Connection::Options alone;
    alone.exclusive = true;
    std::shared_ptr<Connection> src;
    try {
        src = Connection::Open(source, alone);
    } catch (const Error& e) {
        // Held by anyone else: the source stays as it is.
        if (e.number() == kOpenedExclusively) throw DaoError(kFileInUse, source);
        throw;
    }
    try {
        src->ExecRaw("VACUUM INTO " + detail::SqlLiteral(Variant(destination)));
        src->Close();
        // Counters go on from the highest number left, as after a compaction
        // of the original engine.
        Database copy = OpenDatabase(destination);
        Connection& c = *copy.connection();
        if (!requested.empty()) MarkBookVersion(c, requested);
        for (const auto& t : c.Tables()) {
            if (const FieldProps* counter = t.Counter()) {
                detail::StatementLease s = c.PrepareRaw("UPDATE sqlite_sequence SET seq = coalesce((SELECT max(" +
                                                detail::QuoteName(counter->name) + ") FROM " +
                                                detail::QuoteName(t.name) + "), 0) WHERE name = ?1");
                sqlite3_bind_text(s.get(), 1, t.name.c_str(), -1, SQLITE_TRANSIENT);
                c.Step(s.get());
            }
        }
        copy.Close();
    } catch (...) {
        if (src) src->Close();
        removeCopy();
        throw;
    }
}

void DBEngine::SetLockTimeout(int ms) { detail::LockRegistry::SetLockTimeoutMs(ms); }

DBEngine& Engine() {
    static DBEngine engine;
    return engine;
}

}  // namespace zelvo::dao
