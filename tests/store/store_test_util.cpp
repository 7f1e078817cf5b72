#include "store_test_util.h"

#include <algorithm>
#include <vector>

#include "platform/core/error.h"
#include "platform/dao/field_props.h"

namespace zelvo::testing {

namespace {

std::string TypeText(const dao::Field& f) {
    switch (f.Type()) {
        case dao::dbText: return "Text(" + std::to_string(f.Size()) + ")";
        case dao::dbBoolean: return "YesNo";
        case dao::dbLongBinary: return "LongBinary";
        case dao::dbLong: return (f.Attributes() & dao::dbAutoIncrField) ? "Counter" : "Long";
        default: return "type" + std::to_string(f.Type());
    }
}

}  // namespace

std::string SchemaText(const dao::Database& db, bool sortColumns) {
    std::vector<std::string> lines;
    dao::TableDefs tables = db.TableDefs();
    for (int i = 0; i < tables.Count(); ++i) {
        dao::TableDef t = tables.Item(i);
        std::vector<std::string> columns;
        dao::Fields fields = t.Fields();
        for (int j = 0; j < fields.Count(); ++j) {
            dao::Field f = fields.Item(j);
            std::string c = f.Name() + " " + TypeText(f);
            if (f.AllowZeroLength() && f.Type() == dao::dbText) c += " zla";
            if (f.Required()) c += " required";
            if (!f.DefaultValue().empty()) c += " =" + f.DefaultValue();
            columns.push_back(c);
        }
        if (sortColumns) std::sort(columns.begin(), columns.end());
        std::string line = t.Name() + ":";
        for (size_t j = 0; j < columns.size(); ++j) line += (j ? ", " : " ") + columns[j];
        lines.push_back(line);
    }
    std::sort(lines.begin(), lines.end());
    dao::QueryDefs queries = db.QueryDefs();
    std::vector<std::string> qs;
    for (int i = 0; i < queries.Count(); ++i) {
        dao::QueryDef q = queries.Item(i);
        qs.push_back("query " + q.Name() + ": " + q.SQL());
    }
    std::sort(qs.begin(), qs.end());
    std::string out;
    for (const auto& l : lines) out += l + "\n";
    for (const auto& l : qs) out += l + "\n";
    return out;
}

std::string RowsText(const dao::Database& db, const std::string& sql) {
    dao::Recordset rs = db.OpenRecordset(sql);
    std::string out;
    if (rs.AbsolutePosition() == -1) return out;
    int n = rs.Fields().Count();
    for (rs.MoveFirst(); !rs.IsEOF(); rs.MoveNext()) {
        if (!out.empty()) out += ";";
        for (int i = 0; i < n; ++i) {
            if (i) out += "|";
            Variant v = rs.Value(i);
            out += v.IsNull() ? "Null" : v.AsText();
        }
    }
    return out;
}

long CountRows(const std::string& path, const std::string& table) {
    try {
        dao::Database db = dao::Engine().OpenDatabase(path);
        dao::Recordset rs = db.OpenRecordset("Select Count(*) As N From [" + table + "]");
        long n = static_cast<long>(rs("N").AsInteger());
        rs.Close();
        db.Close();
        return n;
    } catch (const Error&) {
        return -1;
    }
}

}  // namespace zelvo::testing
