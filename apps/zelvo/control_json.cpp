#include "control_json.h"

#include "json_writer.h"

namespace zelvo::cli {

std::string ListRowsJson(const ui::ListView& list, bool withSelection) {
    std::string out = "[";
    for (int i = 1; i <= list.ListItems().Count(); ++i) {
        const ui::ListItem& item = list.ListItems().Item(i);
        out += i > 1 ? ", " : "";
        out += "{\"tag\": " + JsonValue(item.Tag()) + ", \"text\": " + JsonString(item.Text()) +
               ", \"icon\": " + JsonValue(item.Icon()) + ", \"smallIcon\": " + JsonValue(item.SmallIcon()) +
               ", \"subItems\": [";
        // Every column of the list beyond the first, set or not.
        for (int n = 1; n < list.ColumnHeaders().Count(); ++n)
            out += (n > 1 ? ", " : "") + JsonString(item.SubItems(n));
        out += "]";
        if (withSelection) out += std::string(", \"selected\": ") + (item.Selected() ? "true" : "false");
        out += "}";
    }
    return out + "]";
}

std::string DataRowsJson(ui::DataControl& data) {
    dao::Recordset& rs = data.Recordset();
    if (!rs.IsOpen() || rs.AbsolutePosition() == -1) return "[]";
    std::string out = "[";
    auto fields = rs.Fields();
    bool first = true;
    for (rs.MoveFirst(); !rs.IsEOF(); rs.MoveNext()) {
        out += first ? "{" : ", {";
        first = false;
        for (int i = 0; i < fields.Count(); ++i)
            out += (i ? ", " : "") + JsonString(fields.Item(i).Name()) + ": " + JsonValue(rs.Value(i));
        out += "}";
    }
    return out + "]";
}

}  // namespace zelvo::cli
