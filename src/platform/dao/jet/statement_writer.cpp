// TranslateStatement: one Jet statement → one SQLite statement (or, for DDL,
// the column definitions the engine applies itself).
#include "platform/dao/jet/ddl_types.h"
#include "platform/dao/jet/errors.h"
#include "platform/dao/jet/writer.h"

namespace zelvo::dao::jet {

namespace {

// The one table an Insert, Update or Delete writes.
CatalogObject WrittenTable(const Catalog& catalog, const std::string& name) {
    std::optional<CatalogObject> obj = catalog.Find(name);
    if (!obj) ThrowUnknownInput(name);
    if (obj->isQuery) ThrowNotUpdatable();  // a saved query is a view: SQLite cannot write it
    return *obj;
}

SourceScope SingleTableScope(const CatalogObject& t) {
    SourceScope scope;
    SourceScope::Entry e;
    e.ref = t.name;
    e.written = t.name;
    e.columns = t.columns;
    scope.entries.push_back(std::move(e));
    return scope;
}

const std::string* FindColumn(const CatalogObject& t, const std::string& name) {
    for (const std::string& c : t.columns)
        if (SameName(c, name)) return &c;
    return nullptr;
}

ColumnDef MakeColumnDef(const ColumnSpec& written, const std::vector<Variant>& literals, void (*fail)(),
                        bool& cacheable) {
    DdlType t = LookupDdlType(written.typeName);
    if (t.type == 0) throw Error(3259, "Invalid field data type.", kErrorSource);
    ColumnDef def;
    def.name = written.name;
    def.type = t.type;
    def.counter = t.counter;
    def.notNull = written.notNull || written.primaryKey;
    def.primaryKey = written.primaryKey;
    def.unique = written.unique;
    if (t.type == 10 || t.type == 9) def.size = 255;
    if (written.sizeLiteral >= 0 && t.sized) {
        cacheable = false;  // the size is written into the definition
        std::int64_t n = written.sizeLiteral < static_cast<int>(literals.size())
                             ? literals[written.sizeLiteral].AsInteger() : 0;
        if (n < 1 || n > 255) fail();
        def.size = static_cast<int>(n);
    }
    return def;
}

Translation TranslateDdl(const Statement& st, const Parser& parser, const Catalog& catalog) {
    Translation tr;
    std::optional<CatalogObject> obj = catalog.Find(st.table);
    switch (st.kind) {
    case Statement::Kind::CreateTable: {
        tr.kind = StatementKind::CreateTable;
        if (obj) ThrowTableExists(st.table);
        tr.table = st.table;
        int counters = 0;
        for (std::size_t k = 0; k < st.columnSpecs.size(); ++k) {
            for (std::size_t j = 0; j < k; ++j)
                if (SameName(st.columnSpecs[j].name, st.columnSpecs[k].name))
                    throw Error(3191, "Cannot define field more than once.", kErrorSource);
            tr.columnDefs.push_back(
                MakeColumnDef(st.columnSpecs[k], parser.literals(), &ThrowCreateTableSyntax, tr.cacheable));
            if (tr.columnDefs.back().counter && ++counters > 1)
                throw Error(3090, "Resulting table would have more than one AutoNumber field.", kErrorSource);
            const ColumnDef& d = tr.columnDefs.back();
            if (d.primaryKey || d.unique) tr.keys.push_back({d.primaryKey, {d.name}});
        }
        for (const auto& key : st.tableKeys) {
            Translation::Key k{key.primary, {}};
            for (const auto& name : key.columns) {
                ColumnDef* def = nullptr;
                for (auto& d : tr.columnDefs)
                    if (SameName(d.name, name)) def = &d;
                if (!def) ThrowCreateTableSyntax();
                if (key.primary) def->notNull = true;
                k.columns.push_back(def->name);
            }
            tr.keys.push_back(std::move(k));
        }
        break;
    }
    case Statement::Kind::AlterTable: {
        tr.kind = StatementKind::AlterTable;
        if (!obj || obj->isQuery) ThrowNoSuchTable(st.table);
        tr.table = obj->name;
        if (st.alter == Statement::Alter::Drop) {
            tr.alter = Translation::AlterAction::DropColumn;
            const std::string* c = FindColumn(*obj, st.dropColumn);
            if (!c) ThrowItemNotFound();
            tr.dropColumn = *c;
        } else {
            ColumnDef def = MakeColumnDef(st.columnSpecs[0], parser.literals(), &ThrowAlterTableSyntax, tr.cacheable);
            const std::string* c = FindColumn(*obj, def.name);
            if (st.alter == Statement::Alter::Add) {
                tr.alter = Translation::AlterAction::AddColumn;
                if (c) ThrowFieldExists(def.name, obj->name);
            } else {
                tr.alter = Translation::AlterAction::AlterColumn;
                if (!c) ThrowItemNotFound();
                def.name = *c;
            }
            tr.columnDefs.push_back(std::move(def));
        }
        break;
    }
    default:
        tr.kind = StatementKind::DropTable;
        if (!obj || obj->isQuery) ThrowNoSuchTable(st.table);
        tr.table = obj->name;
        break;
    }
    return tr;
}

}  // namespace

Translation TranslateStatement(const Shape& shape, const Catalog& catalog) {
    Parser parser(shape.key, shape.literals);
    Statement st = parser.ParseStatement();
    Writer w(parser, &catalog);
    Translation tr;

    switch (st.kind) {
    case Statement::Kind::Select: {
        tr.kind = StatementKind::Select;
        Writer::SelectResult r = w.WriteSelect(*st.select, nullptr, true);
        tr.sql = std::move(r.sql);
        tr.columns = std::move(r.columns);
        tr.sources = std::move(r.sources);
        tr.hiddenRowids = r.hiddenRowids;
        tr.distinct = r.distinct;
        tr.commaJoin = r.commaJoin;
        tr.joinLinks = std::move(r.joinLinks);
        tr.lookupColumns = std::move(r.lookupColumns);
        break;
    }
    case Statement::Kind::Insert: {
        tr.kind = StatementKind::Insert;
        CatalogObject t = WrittenTable(catalog, st.table);
        tr.table = t.name;
        std::vector<std::string> columns;
        if (st.columns.empty()) {
            columns = t.columns;
        } else {
            for (const std::string& c : st.columns) {
                const std::string* stored = FindColumn(t, c);
                if (!stored) ThrowUnknownInsertField(c);
                columns.push_back(*stored);
            }
        }
        std::string sql = "INSERT INTO " + Writer::Quote(t.name) + " (";
        for (std::size_t k = 0; k < columns.size(); ++k) sql += (k ? ", " : "") + Writer::Quote(columns[k]);
        sql += ") ";
        if (st.select) {
            Writer::SelectResult r = w.WriteSelect(*st.select, nullptr, false);
            if (r.columns.size() != columns.size()) ThrowValueCountMismatch();
            sql += r.sql;
        } else {
            if (st.values.size() != columns.size()) ThrowValueCountMismatch();
            SourceScope none;
            sql += "VALUES (";
            for (std::size_t k = 0; k < st.values.size(); ++k)
                sql += (k ? ", " : "") + w.Expression(*st.values[k], none);
            sql += ")";
        }
        tr.sql = std::move(sql);
        break;
    }
    case Statement::Kind::Update: {
        tr.kind = StatementKind::Update;
        CatalogObject t = WrittenTable(catalog, st.table);
        tr.table = t.name;
        SourceScope scope = SingleTableScope(t);
        std::string sql = "UPDATE " + Writer::Quote(t.name) + " SET ";
        for (std::size_t k = 0; k < st.columns.size(); ++k) {
            const std::string* stored = FindColumn(t, st.columns[k]);
            if (!stored) w.AddUnknown("", st.columns[k]);
            sql += (k ? ", " : "") + Writer::Quote(stored ? *stored : st.columns[k]) + " = " +
                   w.Expression(*st.values[k], scope);
        }
        if (st.where) sql += " WHERE " + w.Expression(*st.where, scope);
        tr.sql = std::move(sql);
        break;
    }
    case Statement::Kind::Delete: {
        tr.kind = StatementKind::Delete;
        if (st.table.empty()) throw Error(3086, "Could not delete from the tables named.", kErrorSource);
        CatalogObject t = WrittenTable(catalog, st.table);
        tr.table = t.name;
        SourceScope scope = SingleTableScope(t);
        if (!st.deleteFrom.empty() && !st.deleteFrom[0]->alias.empty()) {
            scope.entries[0].written = st.deleteFrom[0]->alias;
        }
        std::string sql = "DELETE FROM " + Writer::Quote(t.name);
        if (st.where) sql += " WHERE " + w.Expression(*st.where, scope);
        tr.sql = std::move(sql);
        break;
    }
    default:
        tr = TranslateDdl(st, parser, catalog);
        break;
    }
    w.CheckUnknownNames();
    tr.cacheable = tr.cacheable && w.cacheable;
    return tr;
}

Translation TranslateView(const Shape& shape, const Catalog& catalog) {
    Parser parser(shape.key, shape.literals);
    Statement st = parser.ParseStatement();
    if (st.kind != Statement::Kind::Select) ThrowNotAStatement();
    Writer w(parser, &catalog);
    w.inlineLiterals = true;
    Writer::SelectResult r = w.WriteSelect(*st.select, nullptr, false);
    w.CheckUnknownNames();
    Translation tr;
    tr.kind = StatementKind::Select;
    tr.sql = std::move(r.sql);
    tr.columns = std::move(r.columns);
    tr.sources = std::move(r.sources);
    tr.distinct = r.distinct;
    tr.cacheable = false;
    return tr;
}

}  // namespace zelvo::dao::jet
