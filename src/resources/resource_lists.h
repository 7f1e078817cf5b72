// Filling the windows' lists of resources from their record sets.
//
// A list of resources is never sorted: row i shows record i of the record
// set that filled it, so a selected row is turned back into its record by
// AbsolutePosition = row - 1. Each row carries its [Resource ID] in Tag and
// the icon of its kind. The fills pass over a failing step and go on.
#pragma once

#include <cstdint>
#include <string>

#include "platform/dao/recordset.h"
#include "platform/ui/listview.h"

namespace zelvo {

// The icon key of a kind of resource: 0 "Phone", 1 "IE", 2 "Email",
// 4 "ICQ"; "" for a kind that does not exist.
std::string ResourceIcon(std::int32_t ResType);

// Replaces the rows of `Lvw` with the records of `Rs`: the text is
// ResourceString, the icon that of `ResType`, the tag the [Resource ID].
// `Rs` is left on its first record.
void FillLvwResources(dao::Recordset& Rs, ui::ListView& Lvw, std::int32_t ResType);
void FillLvwEmails(dao::Recordset& Rs, ui::ListView& Lvw);

// The phone list: as above with the icon "Phone" for every row (a node's
// resource of another kind included), and the word "Phone" in the second
// column when the list has one. An empty record set just clears the list.
void FilllvwPhones(dao::Recordset& Rs, ui::ListView& Lvw);

// The web list: as above with the icon "IE" and the text trimmed; a page
// with no text shows "<No address given>". A failure is reported
// (label "frmMain.NavigateWebList") and ends the fill.
void NavigateWebList(dao::Recordset& Rs, ui::ListView& Lvw);

}  // namespace zelvo
