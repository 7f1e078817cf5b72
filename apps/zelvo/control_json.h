// The rows of the host's controls as JSON, for zelvo call and zelvo list.
#pragma once

#include <string>

#include "zelvo/data_control.h"
#include "zelvo/listview.h"

namespace zelvo::cli {

// [{"tag": 1, "text": "…", "icon": "User", "smallIcon": "User",
//   "subItems": ["…", …]}, …] in the order of the list; with
// `withSelection` each row also tells "selected": true/false.
std::string ListRowsJson(const ui::ListView& list, bool withSelection = false);

// The records of a data control's record set from the first, each as an
// object of its fields: [{"FirstName": "…", …}, …]; [] when it has none.
// The record set is left on its last record.
std::string DataRowsJson(ui::DataControl& data);

}  // namespace zelvo::cli
