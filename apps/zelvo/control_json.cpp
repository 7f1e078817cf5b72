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
    std::string out = "[";
    bool first = true;
    for (const auto& record : data.Records()) {
        out += first ? "{" : ", {";
        first = false;
        for (size_t i = 0; i < record.size(); ++i)
            out += (i ? ", " : "") + JsonString(record[i].first) + ": " + JsonValue(record[i].second);
        out += "}";
    }
    return out + "]";
}

}  // namespace zelvo::cli
