// The membership bar of the person card: the person's project list and the
// three keys that change it. Add files the person into a picked project,
// Del takes the selected rows away, InsArcPrj sends the selected row to the
// other side. The list is the one FillLvwProjects fills from `rsProjects`,
// so a position in the list is a position in the record set.
//
// Errors are reported with the label "Module1.tbPrj_ButtonClick" and end
// the click; what was written before stays.
#pragma once

#include <string>

#include "platform/dao/database.h"
#include "platform/ui/listview.h"

namespace zelvo {

// `key`: "Add", "Del" or "InsArcPrj" (the address book window's list uses
// "PrjArcPrj" for the last, which is taken alike). `rsPersonal` stands on the
// person. `InsArcPrj` is the side the picker browses for Add; InsArcPrj
// leaves in it the new side of the row sent across.
void tbPrj_ButtonClick(const std::string& key, const dao::Database& db, dao::Recordset& rsPersonal,
                       dao::Recordset& rsProjects, ui::ListView& list, bool& InsArcPrj);

}  // namespace zelvo
