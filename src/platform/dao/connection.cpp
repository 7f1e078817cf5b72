#include "platform/dao/connection.h"

#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "platform/core/error.h"
#include "platform/dao/jet/text_util.h"
#include "platform/dao/lock_registry.h"
#include "platform/dao/recordset_impl.h"

namespace zelvo::dao::detail {

namespace fs = std::filesystem;

namespace {

constexpr const char* kCatalogDdl =
    "CREATE TABLE IF NOT EXISTS MSysFields ("
    " TableName TEXT NOT NULL COLLATE JET, FieldName TEXT NOT NULL COLLATE JET,"
    " Position INTEGER NOT NULL, Type INTEGER NOT NULL, Size INTEGER NOT NULL,"
    " Attributes INTEGER NOT NULL, DefaultValue TEXT NOT NULL DEFAULT '',"
    " Required INTEGER NOT NULL, AllowZeroLength INTEGER NOT NULL);"
    "CREATE TABLE IF NOT EXISTS MSysQueries (Name TEXT NOT NULL COLLATE JET, SQL TEXT NOT NULL);";

// Tables and views the book's code never sees.
bool IsSystemObject(std::string_view name) {
    auto starts = [&](std::string_view p) {
        return name.size() >= p.size() && SameName(name.substr(0, p.size()), p);
    };
    return starts("MSys") || starts("sqlite_") || starts("~");
}

// The header every SQLite 3 file begins with.
bool HasSqliteHeader(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    char header[16] = {};
    in.read(header, sizeof header);
    return in.gcount() == 16 && std::memcmp(header, "SQLite format 3", 16) == 0;
}

// The field's properties as a table made outside the engine declares them.
FieldProps InferProps(const std::string& name, const std::string& declType, bool pk) {
    FieldProps f;
    f.name = name;
    std::string t;
    for (char c : declType) t += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    if (t.find("INT") != std::string::npos) f.type = dbLong;
    else if (t.find("BLOB") != std::string::npos || t.empty()) f.type = dbLongBinary;
    else if (t.find("REAL") != std::string::npos || t.find("DOUB") != std::string::npos) f.type = dbDouble;
    else f.type = dbText;
    if (f.type == dbText) f.size = 255;
    if (pk && f.type == dbLong) f.attributes = dbAutoIncrField;
    f.allowZeroLength = f.IsText();
    return f;
}

}  // namespace

std::string HostName() {
    char buf[256] = {};
    if (gethostname(buf, sizeof buf - 1) != 0) return "localhost";
    return buf;
}

std::string QuoteName(std::string_view name) {
    std::string out = "\"";
    for (char c : name) {
        if (c == '"') out += '"';
        out += c;
    }
    out += '"';
    return out;
}

const FieldProps* TableSchema::Find(std::string_view field) const {
    int i = IndexOf(field);
    return i < 0 ? nullptr : &fields[static_cast<size_t>(i)];
}

int TableSchema::IndexOf(std::string_view field) const {
    for (size_t i = 0; i < fields.size(); ++i)
        if (SameName(fields[i].name, field)) return static_cast<int>(i);
    return -1;
}

const FieldProps* TableSchema::Counter() const {
    for (const auto& f : fields)
        if (f.IsCounter()) return &f;
    return nullptr;
}

// ------------------------------------------------------------ StatementLease

StatementLease::StatementLease(std::shared_ptr<Connection> owner, std::vector<sqlite3_stmt*>* idle,
                               sqlite3_stmt* stmt, std::uint64_t generation)
    : owner_(std::move(owner)), idle_(idle), stmt_(stmt), generation_(generation) {}

StatementLease::~StatementLease() { Release(); }

StatementLease::StatementLease(StatementLease&& o) noexcept
    : owner_(std::move(o.owner_)), idle_(std::exchange(o.idle_, nullptr)), stmt_(std::exchange(o.stmt_, nullptr)),
      generation_(o.generation_) {}

StatementLease& StatementLease::operator=(StatementLease&& o) noexcept {
    if (this != &o) {
        Release();
        owner_ = std::move(o.owner_);
        idle_ = std::exchange(o.idle_, nullptr);
        stmt_ = std::exchange(o.stmt_, nullptr);
        generation_ = o.generation_;
    }
    return *this;
}

void StatementLease::Release() {
    if (!stmt_) return;
    if (owner_ && !owner_->closed()) {
        owner_->ReturnStatement(idle_, stmt_, generation_);
    } else {
        sqlite3_finalize(stmt_);
    }
    stmt_ = nullptr;
    owner_.reset();
}

// ------------------------------------------------------------ Connection

std::shared_ptr<Connection> Connection::Open(const std::string& path, const Options& options) {
    std::error_code ec;
    fs::path p(path);
    fs::path folder = p.has_parent_path() ? p.parent_path() : fs::path(".");
    if (!fs::is_directory(folder, ec)) throw DaoError(kNotValidPath, folder.string());

    bool exists = fs::exists(p, ec);
    if (options.create && exists) throw DaoError(kDatabaseExists);
    if (!options.create) {
        if (!exists || fs::is_directory(p, ec)) throw DaoError(kFileNotFound, path);
        if (!HasSqliteHeader(path)) throw DaoError(kUnrecognizedFormat, path);
    }

    std::shared_ptr<Connection> c(new Connection());
    c->path_ = path;
    c->readOnly_ = options.readOnly;
    c->exclusive_ = options.exclusive;

    int flags = options.readOnly ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE;
    if (options.create) flags |= SQLITE_OPEN_CREATE;
    flags |= SQLITE_OPEN_NOMUTEX;
    if (options.create) {
        // Make the file first so that it can be claimed before SQLite writes to it.
        int rc = sqlite3_open_v2(path.c_str(), &c->db_, flags, nullptr);
        if (rc != SQLITE_OK) {
            sqlite3_close_v2(c->db_);
            c->db_ = nullptr;
            throw DaoError(kNotValidPath, path);
        }
    }

    std::string canonical = fs::weakly_canonical(p, ec).string();
    auto mode = options.exclusive ? FileHolder::Mode::Exclusive : FileHolder::Mode::Shared;
    if (!options.create) {
        switch (c->holder_.Claim(path, mode)) {
            case FileHolder::Result::Held: break;
            case FileHolder::Result::NotFound: throw DaoError(kFileNotFound, path);
            case FileHolder::Result::Busy:
                if (LockRegistry::HeldExclusivelyHere(canonical))
                    throw DaoError(kOpenedExclusively, "Admin", HostName());
                throw DaoError(kFileInUse, path);
            case FileHolder::Result::Failed: throw DaoError(kCannotOpenFile, path);
        }
        int rc = sqlite3_open_v2(path.c_str(), &c->db_, flags, nullptr);
        if (rc != SQLITE_OK) {
            sqlite3_close_v2(c->db_);
            c->db_ = nullptr;
            throw DaoError(rc == SQLITE_CANTOPEN ? kCannotOpenFile : kUnrecognizedFormat, path);
        }
    } else {
        c->holder_.Claim(path, mode);
    }
    if (options.exclusive) LockRegistry::MarkExclusive(canonical, true);

    try {
        c->Configure();
        if (options.create) {
            c->ExecRaw("PRAGMA application_id = " + std::to_string(kApplicationId));
            c->ExecRaw(kCatalogDdl);
            if (!options.readOnly) c->ExecRaw("PRAGMA journal_mode = WAL");
        } else {
            StatementLease s = c->PrepareRaw("PRAGMA application_id");
            std::int64_t id = c->Step(s.get()) ? sqlite3_column_int64(s.get(), 0) : 0;
            s.Release();
            if (id != kApplicationId) throw DaoError(kUnrecognizedFormat, path);
            if (!options.readOnly) {
                StatementLease j = c->PrepareRaw("PRAGMA journal_mode = WAL");
                c->Step(j.get());
            }
        }
    } catch (const Error& e) {
        c->Close();
        // A damaged file fails on its first read with no more precise error.
        if (e.number() == 3000) throw DaoError(kUnrecognizedFormat, path);
        throw;
    }
    return c;
}

Connection::~Connection() { Close(); }

void Connection::Close() {
    if (!db_) return;
    CloseRecordsets();
    for (auto& [key, entry] : cache_)
        for (sqlite3_stmt* s : entry.idle) sqlite3_finalize(s);
    cache_.clear();
    layouts_.clear();
    if (schemaVersionStmt_) sqlite3_finalize(schemaVersionStmt_);
    schemaVersionStmt_ = nullptr;
    sqlite3_close_v2(db_);  // statements still leased are finalized as their leases end
    db_ = nullptr;
    if (exclusive_) {
        std::error_code ec;
        LockRegistry::MarkExclusive(fs::weakly_canonical(path_, ec).string(), false);
    }
    holder_.Release();
}

void Connection::Configure() {
    sqlite3_db_config(db_, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
    sqlite3_db_config(db_, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
    sqlite3_extended_result_codes(db_, 1);
    sqlite3_busy_timeout(db_, LockRegistry::LockTimeoutMs());
    // The card writes a name at every keystroke, one commit each. With the
    // write-ahead log a commit need not wait for the disk: a program that is
    // killed loses nothing it committed, and a power cut can take back only
    // the last commits, never leave the book damaged. Waiting for the disk
    // at each commit cost 20 ms a keystroke here.
    sqlite3_exec(db_, "PRAGMA synchronous = NORMAL", nullptr, nullptr, nullptr);
    // A Select Distinct or an Order By over the whole book builds a table of
    // its own; kept in memory it is not written to a temporary file and
    // read back (the kernel's copies showed in the profile of the list).
    sqlite3_exec(db_, "PRAGMA temp_store = MEMORY", nullptr, nullptr, nullptr);
    if (jet::RegisterJetRuntime(db_) != SQLITE_OK) throw Error(3000, "Cannot register the Jet runtime.");
}

// ------------------------------------------------------------ errors

[[noreturn]] void Connection::ThrowSqlite(int rc, std::string_view table) {
    std::string msg = db_ ? sqlite3_errmsg(db_) : sqlite3_errstr(rc);
    auto after = [&](std::string_view prefix) -> std::string {
        auto at = msg.find(prefix);
        return at == std::string::npos ? std::string() : msg.substr(at + prefix.size());
    };
    switch (rc) {
        case SQLITE_CONSTRAINT_CHECK: {
            std::string name = after("CHECK constraint failed: ");
            if (name.rfind("zls:", 0) == 0) throw DaoError(kZeroLengthString, name.substr(4));
            throw DaoError(kFieldTooSmall);
        }
        case SQLITE_CONSTRAINT_NOTNULL: {
            std::string name = after("NOT NULL constraint failed: ");
            auto dot = name.find('.');
            throw DaoError(kRequiredNull, dot == std::string::npos ? name : name.substr(dot + 1));
        }
        case SQLITE_CONSTRAINT_UNIQUE:
        case SQLITE_CONSTRAINT_PRIMARYKEY:
        case SQLITE_CONSTRAINT_ROWID:
            throw DaoError(kDuplicateValues);
        case SQLITE_READONLY:
        case SQLITE_READONLY_DBMOVED:
            throw DaoError(kReadOnly);
        case SQLITE_NOTADB:
        case SQLITE_CORRUPT:
            throw DaoError(kUnrecognizedFormat, path_);
        case SQLITE_CANTOPEN:
            throw DaoError(kCannotOpenFile, path_);
        case SQLITE_FULL:
            throw DaoError(kDiskFull);
        default: break;
    }
    if ((rc & 0xff) == SQLITE_IOERR) throw DaoError(kDiskError);
    if ((rc & 0xff) == SQLITE_BUSY || (rc & 0xff) == SQLITE_LOCKED) throw DaoError(kCurrentlyLocked);
    if (msg.rfind("no such column: ", 0) == 0) throw DaoError(kTooFewParameters, "1");
    if (msg.rfind("no such table: ", 0) == 0) throw DaoError(kInputTableNotFound, after("no such table: "));
    throw Error(3000, "Reserved error: " + msg, "DAO.Engine");
}

bool Connection::Step(sqlite3_stmt* stmt, std::string_view table) {
    int rc = sqlite3_step(stmt);
    if (rc == SQLITE_ROW) return true;
    if (rc == SQLITE_DONE) return false;
    sqlite3_reset(stmt);
    ThrowSqlite(sqlite3_extended_errcode(db_), table);
}

void Connection::ExecRaw(const std::string& sql) {
    if (!db_) throw DaoError(kObjectInvalid);
    char* err = nullptr;
    int rc = sqlite3_exec(db_, sql.c_str(), nullptr, nullptr, &err);
    sqlite3_free(err);
    if (rc != SQLITE_OK) ThrowSqlite(sqlite3_extended_errcode(db_));
}

// ------------------------------------------------------------ catalog

std::uint64_t Connection::SchemaVersion() {
    if (!schemaVersionStmt_) {
        if (sqlite3_prepare_v3(db_, "PRAGMA schema_version", -1, SQLITE_PREPARE_PERSISTENT,
                               &schemaVersionStmt_, nullptr) != SQLITE_OK)
            ThrowSqlite(sqlite3_extended_errcode(db_));
    }
    std::int64_t v = 0;
    int rc = sqlite3_step(schemaVersionStmt_);
    if (rc == SQLITE_ROW) v = sqlite3_column_int64(schemaVersionStmt_, 0);
    sqlite3_reset(schemaVersionStmt_);
    if (rc != SQLITE_ROW) ThrowSqlite(sqlite3_extended_errcode(db_));
    return static_cast<std::uint64_t>(v);
}

void Connection::SchemaChanged() {
    catalogLoaded_ = false;
    ++generation_;
    for (auto& [key, entry] : cache_)
        for (sqlite3_stmt* s : entry.idle) sqlite3_finalize(s);
    cache_.clear();
    layouts_.clear();
    indexedColumns_.clear();
    smallTables_.clear();
}

std::shared_ptr<const RecordsetLayout> Connection::LayoutOf(const jet::Translation* translation) const {
    auto it = layouts_.find(translation);
    return it == layouts_.end() ? nullptr : it->second;
}

void Connection::KeepLayout(const jet::Translation* translation, std::shared_ptr<const RecordsetLayout> layout) {
    layouts_[translation] = std::move(layout);
}

std::uint64_t Connection::DataVersion() {
    // SQLite's count of commits to the file, as of this connection's last
    // transaction: reading it takes no lock, unlike any query.
    unsigned int v = 0;
    sqlite3_file_control(db_, "main", SQLITE_FCNTL_DATA_VERSION, &v);
    return v;
}

bool Connection::LoadCatalog(bool verify) {
    // TableDefs, QueryDefs and their items outlive Close; using them after it is 3420.
    if (!db_) throw DaoError(kObjectInvalid);
    // Every query starts a read transaction, which takes file locks; asking
    // for the schema version before each statement would double that cost.
    // Nothing committed since the last look means no schema change either.
    if (catalogLoaded_ && !verify && DataVersion() == catalogDataVersion_) return false;
    std::int64_t version = static_cast<std::int64_t>(SchemaVersion());
    catalogDataVersion_ = DataVersion();
    if (catalogLoaded_ && version == catalogSchemaVersion_) return true;
    if (catalogLoaded_) SchemaChanged();
    tables_.clear();
    queries_.clear();

    // Tables, in the order they were made.
    std::vector<std::pair<std::string, std::string>> objects;  // name, type
    {
        StatementLease s = PrepareRaw("SELECT name, type FROM sqlite_master WHERE type IN ('table','view') ORDER BY rowid");
        while (Step(s.get())) {
            std::string name = reinterpret_cast<const char*>(sqlite3_column_text(s.get(), 0));
            std::string type = reinterpret_cast<const char*>(sqlite3_column_text(s.get(), 1));
            if (!IsSystemObject(name)) objects.emplace_back(name, type);
        }
    }
    std::map<std::string, std::vector<FieldProps>, std::less<>> defined;
    {
        StatementLease s = PrepareRaw(
            "SELECT TableName, FieldName, Type, Size, Attributes, DefaultValue, Required, AllowZeroLength "
            "FROM MSysFields ORDER BY TableName, Position");
        while (Step(s.get())) {
            FieldProps f;
            std::string table = reinterpret_cast<const char*>(sqlite3_column_text(s.get(), 0));
            f.name = reinterpret_cast<const char*>(sqlite3_column_text(s.get(), 1));
            f.type = sqlite3_column_int(s.get(), 2);
            f.size = sqlite3_column_int(s.get(), 3);
            f.attributes = sqlite3_column_int(s.get(), 4);
            const unsigned char* dv = sqlite3_column_text(s.get(), 5);
            f.defaultValue = dv ? reinterpret_cast<const char*>(dv) : "";
            f.required = sqlite3_column_int(s.get(), 6) != 0;
            f.allowZeroLength = sqlite3_column_int(s.get(), 7) != 0;
            defined[table].push_back(std::move(f));
        }
    }
    // Saved queries in the order they were saved; a view with no text of
    // ours (made outside the engine) is a query all the same.
    {
        StatementLease s = PrepareRaw("SELECT Name, SQL FROM MSysQueries ORDER BY rowid");
        while (Step(s.get()))
            queries_.push_back({reinterpret_cast<const char*>(sqlite3_column_text(s.get(), 0)),
                                reinterpret_cast<const char*>(sqlite3_column_text(s.get(), 1)), false});
    }
    for (auto& [name, type] : objects) {
        if (type == "view") {
            const std::string& viewName = name;  // a structured binding is not captured by clang 14
            auto q = std::find_if(queries_.begin(), queries_.end(),
                                  [&](const QuerySchema& k) { return SameName(k.name, viewName); });
            if (q == queries_.end()) q = queries_.insert(queries_.end(), QuerySchema{name, {}, false});
            q->hasView = true;
            continue;
        }
        TableSchema t{name, {}};
        auto it = defined.find(name);
        if (it != defined.end()) {
            t.fields = it->second;
        } else {
            // Made outside the engine: read what SQLite knows.
            StatementLease s = PrepareRaw("SELECT name, type, pk FROM pragma_table_info(?1)");
            sqlite3_bind_text(s.get(), 1, name.c_str(), -1, SQLITE_TRANSIENT);
            while (Step(s.get())) {
                const unsigned char* decl = sqlite3_column_text(s.get(), 1);
                t.fields.push_back(InferProps(reinterpret_cast<const char*>(sqlite3_column_text(s.get(), 0)),
                                              decl ? reinterpret_cast<const char*>(decl) : "",
                                              sqlite3_column_int(s.get(), 2) != 0));
            }
        }
        tables_.push_back(std::move(t));
    }
    catalogLoaded_ = true;
    catalogSchemaVersion_ = version;
    return true;
}

const std::vector<TableSchema>& Connection::Tables() {
    LoadCatalog();
    return tables_;
}

const std::vector<QuerySchema>& Connection::Queries() {
    LoadCatalog();
    return queries_;
}

const TableSchema* Connection::FindTable(std::string_view name) {
    for (const auto& t : Tables())
        if (SameName(t.name, name)) return &t;
    return nullptr;
}

const QuerySchema* Connection::FindQuery(std::string_view name) {
    for (const auto& q : Queries())
        if (SameName(q.name, name)) return &q;
    return nullptr;
}

std::optional<jet::CatalogObject> Connection::Find(std::string_view name) const {
    auto* self = const_cast<Connection*>(this);
    if (const TableSchema* t = self->FindTable(name)) {
        jet::CatalogObject o{t->name, false, {}};
        for (const auto& f : t->fields) o.columns.push_back(f.name);
        return o;
    }
    if (const QuerySchema* q = self->FindQuery(name)) {
        // A saved query that names a table or field the book no longer has
        // is kept as text alone; using it fails as its text does (3078,
        // 3061), as Jet checks a saved query only when it runs.
        if (!q->hasView) {
            jet::TranslateStatement(jet::Parameterize(q->sql), *self);
            throw DaoError(kInputTableNotFound, q->name);
        }
        jet::CatalogObject o{q->name, true, {}};
        StatementLease s = self->PrepareRaw("SELECT name FROM pragma_table_info(?1)");
        sqlite3_bind_text(s.get(), 1, q->name.c_str(), -1, SQLITE_TRANSIENT);
        while (self->Step(s.get())) o.columns.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(s.get(), 0)));
        return o;
    }
    return std::nullopt;
}

// ------------------------------------------------------------ statements

Connection::Prepared Connection::Prepare(const jet::Shape& shape) {
    if (!db_) throw DaoError(kObjectInvalid);
    bool verified = LoadCatalog();  // also drops the cache when the schema moved under us
    auto it = cache_.find(shape.key);
    if (it == cache_.end()) {
        std::shared_ptr<const jet::Translation> translation;
        try {
            translation = std::make_shared<const jet::Translation>(jet::TranslateStatement(shape, *this));
        } catch (const Error& e) {
            // The last look at the schema may predate another connection's
            // change that this statement relies on: look again, then retry.
            if (verified || (e.number() != kTooFewParameters && e.number() != kInputTableNotFound)) throw;
            LoadCatalog(true);
            translation = std::make_shared<const jet::Translation>(jet::TranslateStatement(shape, *this));
        }
        // A shape that looks rows up by a field is usually run again with
        // other values (a list filled one query per row): index the field
        // once, so that each run is a lookup. This may reset the cache.
        for (const auto& lookup : translation->lookupColumns)
            EnsureLookupIndex(translation->sources[static_cast<size_t>(lookup.source)].name, lookup.column);
        // A field joined to a looked-up one is looked up as well, by the
        // join ("the jobs of person 5": Employees.[Personal ID] joined to
        // PersonalData.[Personal ID]=5); unindexed, every run reads the
        // whole joined table.
        auto looked = [&](const jet::Translation::LookupColumn& c) {
            for (const auto& lookup : translation->lookupColumns)
                if (lookup.source == c.source && lookup.column == c.column) return true;
            return false;
        };
        for (const auto& link : translation->joinLinks) {
            if (looked(link.a) && link.b.source >= 0)
                EnsureLookupIndex(translation->sources[static_cast<size_t>(link.b.source)].name, link.b.column);
            if (looked(link.b) && link.a.source >= 0)
                EnsureLookupIndex(translation->sources[static_cast<size_t>(link.a.source)].name, link.a.column);
        }
        if (!translation->cacheable) {
            Prepared p{translation, {}};
            if (!translation->sql.empty()) {
                sqlite3_stmt* stmt = nullptr;
                if (sqlite3_prepare_v2(db_, translation->sql.c_str(), -1, &stmt, nullptr) != SQLITE_OK)
                    ThrowSqlite(sqlite3_extended_errcode(db_));
                p.statement = StatementLease(shared_from_this(), nullptr, stmt, 0);
            }
            return p;
        }
        it = cache_.emplace(shape.key, CacheEntry{translation, {}}).first;
    }
    Prepared p{it->second.translation, {}, true};
    if (p.translation->sql.empty()) return p;
    sqlite3_stmt* stmt = nullptr;
    if (!it->second.idle.empty()) {
        stmt = it->second.idle.back();
        it->second.idle.pop_back();
    } else if (sqlite3_prepare_v3(db_, p.translation->sql.c_str(), -1, SQLITE_PREPARE_PERSISTENT, &stmt,
                                  nullptr) != SQLITE_OK) {
        ThrowSqlite(sqlite3_extended_errcode(db_));
    }
    p.statement = StatementLease(shared_from_this(), &it->second.idle, stmt, generation_);
    return p;
}

StatementLease Connection::PrepareRaw(const std::string& sql) {
    if (!db_) throw DaoError(kObjectInvalid);
    std::string key = "\x01" + sql;  // raw texts never collide with Jet shapes
    auto it = cache_.find(key);
    sqlite3_stmt* stmt = nullptr;
    if (it != cache_.end() && !it->second.idle.empty()) {
        stmt = it->second.idle.back();
        it->second.idle.pop_back();
    } else {
        if (sqlite3_prepare_v3(db_, sql.c_str(), -1, SQLITE_PREPARE_PERSISTENT, &stmt, nullptr) != SQLITE_OK)
            ThrowSqlite(sqlite3_extended_errcode(db_));
        if (it == cache_.end()) it = cache_.emplace(std::move(key), CacheEntry{nullptr, {}}).first;
    }
    return StatementLease(shared_from_this(), &it->second.idle, stmt, generation_);
}

void Connection::ReturnStatement(std::vector<sqlite3_stmt*>* idle, sqlite3_stmt* stmt, std::uint64_t generation) {
    sqlite3_reset(stmt);
    sqlite3_clear_bindings(stmt);
    // A schema change empties the cache and moves the generation on: a
    // lease from before it must not touch the entry it came from.
    if (!idle || generation != generation_ || idle->size() >= 4) {
        sqlite3_finalize(stmt);
        return;
    }
    idle->push_back(stmt);
}

void Connection::Bind(sqlite3_stmt* stmt, int index, const Variant& v) {
    switch (v.kind()) {
        case Variant::Kind::Null: sqlite3_bind_null(stmt, index); break;
        case Variant::Kind::Integer: sqlite3_bind_int64(stmt, index, v.integer()); break;
        case Variant::Kind::Double: sqlite3_bind_double(stmt, index, v.real()); break;
        case Variant::Kind::Boolean: sqlite3_bind_int(stmt, index, v.boolean() ? -1 : 0); break;
        case Variant::Kind::Text:
            sqlite3_bind_text(stmt, index, v.text().data(), static_cast<int>(v.text().size()), SQLITE_TRANSIENT);
            break;
        case Variant::Kind::Bytes:
            sqlite3_bind_blob(stmt, index, v.bytes().data(), static_cast<int>(v.bytes().size()), SQLITE_TRANSIENT);
            break;
    }
}

void Connection::BindLiterals(sqlite3_stmt* stmt, const std::vector<Variant>& literals, int offset) {
    int count = sqlite3_bind_parameter_count(stmt);
    for (size_t i = 0; i < literals.size(); ++i) {
        int index = offset + static_cast<int>(i) + 1;
        if (index > count) break;
        Bind(stmt, index, literals[i]);
    }
}

// ------------------------------------------------------------ record sets

void Connection::Register(RecordsetImpl* rs) { recordsets_.push_back(rs); }
void Connection::Unregister(RecordsetImpl* rs) {
    // The set closed is most often the one opened last.
    auto it = std::find(recordsets_.rbegin(), recordsets_.rend(), rs);
    if (it != recordsets_.rend()) recordsets_.erase(std::next(it).base());
}

void Connection::BeforeWrite() {
    if (readOnly_) throw DaoError(kReadOnly);
    for (RecordsetImpl* rs : recordsets_) rs->FinishReading();
}

void Connection::CloseRecordsets() {
    auto open = recordsets_;
    for (RecordsetImpl* rs : open) rs->CloseFromConnection();
    recordsets_.clear();
}

bool Connection::HasCounterTable() {
    // Once made, SQLite never drops it: ask only until it is there.
    if (!counterTableSeen_) {
        StatementLease s = PrepareRaw("SELECT 1 FROM sqlite_master WHERE type='table' AND name='sqlite_sequence'");
        counterTableSeen_ = Step(s.get());
    }
    return counterTableSeen_;
}

std::int64_t Connection::ReserveCounter(const TableSchema& table) {
    const FieldProps* counter = table.Counter();
    if (!counter || !HasCounterTable()) return 0;
    BeforeWrite();
    std::string maxId = "coalesce((SELECT max(" + QuoteName(counter->name) + ") FROM " + QuoteName(table.name) + "),0)";
    {
        StatementLease s = PrepareRaw("UPDATE sqlite_sequence SET seq = max(seq, " + maxId +
                                      ") + 1 WHERE name = ?1 RETURNING seq");
        sqlite3_bind_text(s.get(), 1, table.name.c_str(), -1, SQLITE_TRANSIENT);
        if (Step(s.get(), table.name)) {
            std::int64_t v = sqlite3_column_int64(s.get(), 0);
            while (Step(s.get(), table.name)) {}
            return v;
        }
    }
    StatementLease s = PrepareRaw("INSERT INTO sqlite_sequence(name, seq) VALUES(?1, " + maxId + " + 1) RETURNING seq");
    sqlite3_bind_text(s.get(), 1, table.name.c_str(), -1, SQLITE_TRANSIENT);
    std::int64_t v = Step(s.get(), table.name) ? sqlite3_column_int64(s.get(), 0) : 0;
    while (Step(s.get(), table.name)) {}
    return v;
}

void Connection::EnsureLookupIndex(const std::string& table, const std::string& column) {
    if (readOnly_) return;
    std::string key = table + "\n" + column;
    // A table found too small is looked at again only after a commit.
    if (auto small = smallTables_.find(key); small != smallTables_.end() && small->second == DataVersion()) return;
    if (!indexedColumns_.insert(key).second) return;
    const TableSchema* t = FindTable(table);
    if (!t) return;
    const FieldProps* f = t->Find(column);
    if (!f || f->IsCounter() || f->type == dbLongBinary || f->type == dbBoolean) return;
    try {
        // Small tables are scanned faster than an index is kept.
        StatementLease n = PrepareRaw("SELECT coalesce(max(rowid),0) FROM " + QuoteName(t->name));
        std::int64_t rows = Step(n.get()) ? sqlite3_column_int64(n.get(), 0) : 0;
        n.Release();
        if (rows < 1000) {
            indexedColumns_.erase(key);  // look again when the table has grown
            smallTables_[key] = DataVersion();
            return;
        }
        smallTables_.erase(key);
        std::string bare = "~ix " + t->name + "." + f->name;
        std::string index = QuoteName(bare);
        StatementLease exists = PrepareRaw("SELECT 1 FROM sqlite_master WHERE type='index' AND name=?1");
        sqlite3_bind_text(exists.get(), 1, bare.c_str(), -1, SQLITE_TRANSIENT);
        bool have = Step(exists.get());
        exists.Release();
        if (have) return;
        BeforeWrite();
        ExecRaw("CREATE INDEX IF NOT EXISTS " + index + " ON " + QuoteName(t->name) + "(" + QuoteName(f->name) + ")");
        // Statistics let the planner prefer a selective index over a poor one.
        ExecRaw("ANALYZE " + index);
        SchemaChanged();
        indexedColumns_.insert(key);  // the change forgot it with the rest
    } catch (const Error& e) {
        RecordSwallowed(e, "Engine.EnsureLookupIndex");
        Err().Clear();
    }
}

}  // namespace zelvo::dao::detail
