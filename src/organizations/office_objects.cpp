#include "organizations/office_objects.h"

#include <vector>

#include "hostservices/lng_text.h"
#include "organizations/org_codes.h"
#include "organizations/org_sql.h"
#include "personslist/persons_query.h"
#include "platform/core/error.h"
#include "platform/core/value_conv.h"
#include "zelvo/enums.h"

namespace zelvo {

namespace {

std::vector<std::string> ImageKeysOf(std::int32_t ObjectType) {
    switch (ObjectType) {
        case oOrganization_ID: return {kIconOrg, kIconSubDiv};
        case oJob_ID: return {kIconJobTitle};
        case oEmployees_ID: return {kIconEmployee};
        default: return {};
    }
}

}  // namespace

void NavigateABObjectsInsPrj(std::int32_t ObjectType, ui::ListView& Listview, const std::string& rProject,
                             bool InsArcPrj, std::int32_t Flags2, std::int32_t tagOffset, const dao::Database& db) {
    const char* section = "Module1.NavigateABObjectsInsPrj";
    OnErrorResumeNext on(section);
    const auto& images = Listview.View() == 0 ? Listview.Icons() : Listview.SmallIcons();
    if (!images) return;
    std::vector<std::string> keys = ImageKeysOf(ObjectType);
    if (keys.empty()) return;
    for (const std::string& key : keys)
        if (!images->ListImages().Exists(key)) return;

    std::string sql = on.Resume([&] {
        return ObjectType == oOrganization_ID ? OrgsInProjectSQL(rProject, InsArcPrj, db)
               : ObjectType == oJob_ID        ? JobTitlesInProjectSQL(rProject, InsArcPrj, db)
                                              : EmployeesInProjectSQL(rProject, InsArcPrj, db);
    });
    if (sql.empty()) return;
    dao::Recordset rs = on.Resume([&] { return db.OpenRecordset(sql, dao::dbOpenDynaset); });
    if (!rs || on.Resume([&] { return rs.IsEOF(); }, true)) {
        if (rs) on.Do([&] { rs.Close(); });
        return;
    }
    const std::string groupOrg = " " + LngText(section, "org", "Organization");
    const std::string groupJob = " " + LngText(section, "job", "Organization - jobtitle");
    const std::string groupEmployee = " " + LngText(section, "empl", "Organization - employee");
    const bool withEmail = Listview.ColumnHeaders().Count() > 1;
    const std::string resourceColumns = withEmail ? on.Resume([&] { return TableColumnList("Resources", db); }) : "";

    on.Do([&] { rs.MoveLast(); });
    while (!on.Resume([&] { return rs.IsBOF(); }, true)) {
        std::string text, icon;
        std::int32_t id = 0;
        if (ObjectType == oOrganization_ID) {
            std::int32_t parent = on.Resume([&] { return ValueConv::ToLong(rs("Parent ID")); });
            icon = IconOfUnit(parent);
            if (parent != 0 && !(Flags2 & ShowSubDiv)) {
                on.Do([&] { rs.MovePrevious(); });
                continue;
            }
            text = on.Resume([&] { return ValueConv::ToText(rs("Organization")); });
            id = on.Resume([&] { return ValueConv::ToLong(rs("Organization ID")); });
        } else if (ObjectType == oJob_ID) {
            icon = kIconJobTitle;
            text = on.Resume([&] { return ValueConv::ToText(rs("JobTitle")); });
            id = on.Resume([&] { return ValueConv::ToLong(rs("Job ID")); });
        } else {
            icon = kIconEmployee;
            text = on.Resume([&] { return ValueConv::ToText(rs("FullName")); });
            id = on.Resume([&] { return ValueConv::ToLong(rs("Employee ID")); });
        }
        ui::ListItem* row = on.Resume([&]() -> ui::ListItem* {
            ui::ListItem& item = Listview.ListItems().Add();
            item.SetText(text);
            item.SetIcon(Variant(icon));
            item.SetSmallIcon(Variant(icon));
            item.SetTag(Variant(std::int64_t{id}));
            return &item;
        });
        if (row) {
            // A sub-item's Tag needs the sub-item: each is written back
            // before its Tag is set, as the host's controls ask.
            auto tagAt = [&](std::int32_t n, const char* column) {
                on.Do([&] {
                    row->SetSubItems(n, row->SubItems(n));
                    row->SetSubItemTag(n, Variant(std::int64_t{ValueConv::ToLong(rs(column))}));
                });
            };
            if (ObjectType == oOrganization_ID) {
                on.Do([&] { row->SetSubItems(1, groupOrg); });
            } else if (ObjectType == oJob_ID) {
                on.Do([&] { row->SetSubItems(1, groupJob); });
                tagAt(tagOffset + 1, "Organization ID");
            } else {
                on.Do([&] { row->SetSubItems(1, groupEmployee); });
                tagAt(tagOffset + 1, "PersonalData.Personal ID");
                on.Do([&] { row->SetSubItems(2, ""); });
                tagAt(tagOffset + 2, "Job ID");
                on.Do([&] { row->SetSubItems(3, ""); });
                tagAt(tagOffset + 3, "Organization ID");
            }
            if (withEmail) {
                dao::Recordset mail = on.Resume([&] {
                    return db.OpenRecordset(GetOwnerResourcesQuery(resourceColumns, id, ObjectType, RsEmail),
                                            dao::dbOpenDynaset);
                });
                if (mail) {
                    if (!on.Resume([&] { return mail.IsEOF(); }, true))
                        on.Do([&] { row->SetSubItems(2, ValueConv::ToText(mail("ResourceString"))); });
                    on.Do([&] { mail.Close(); });
                }
            }
        }
        if (!on.Do([&] { rs.MovePrevious(); })) break;
    }
    on.Do([&] { rs.Close(); });
}

}  // namespace zelvo
