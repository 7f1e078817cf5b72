#include "resources/resource_ops.h"

#include <algorithm>
#include <vector>

#include "hostservices/lng_text.h"
#include "hostservices/message_wrappers.h"
#include "personslist/persons_query.h"
#include "platform/core/error.h"
#include "platform/core/value_conv.h"
#include "platform/dao/connection.h"
#include "platform/ui/ui_host.h"
#include "resources/resource_queries.h"
#include "store/book_transaction.h"
#include "store/library_state.h"
#include "store/own_database.h"

namespace zelvo {

namespace {

bool BlankAfterTrim(const std::string& text) { return text.find_first_not_of(" \t") == std::string::npos; }

std::string ResourceCriteria(std::int32_t ResourceID) { return "[Resource ID]=" + std::to_string(ResourceID); }

bool HasCurrentRow(const dao::Recordset& rs, const OnErrorResumeNext& on) {
    return on.Resume([&] { return rs.AbsolutePosition() != -1; });
}

}  // namespace

std::int32_t AddResource(dao::Recordset& RsResources, dao::Recordset& RsOwners, const std::string& Text,
                         std::int32_t ResType, std::int32_t OwnerID, std::int32_t OwnerType) {
    if (BlankAfterTrim(Text)) return 0;
    OnErrorResumeNext on("AddResource");
    std::int32_t id = 0;
    bool added = on.Do([&] {
        RsResources.AddNew();
        RsResources.SetValue("ResourceString", Variant(Text));
        RsResources.SetValue("ResourceType", Variant(std::int64_t{ResType}));
        // The Counter is numbered at AddNew; read it before Update, which
        // makes the record that was current before current again.
        id = ValueConv::ToLong(RsResources("Resource ID"));
        RsResources.Update();
    });
    if (!added) {
        on.Do([&] { RsResources.CancelUpdate(); });
        return 0;
    }
    on.Do([&] { RsResources.Requery(); });
    on.Do([&] {
        RsOwners.AddNew();
        RsOwners.SetValue("Resource ID", Variant(std::int64_t{id}));
        RsOwners.SetValue("Owner ID", Variant(std::int64_t{OwnerID}));
        RsOwners.SetValue("OwnerType", Variant(std::int64_t{OwnerType}));
        RsOwners.Update();
    });
    on.Do([&] { RsOwners.Requery(); });
    return id;
}

void ResourceAfterLabelEdit(dao::Recordset& RsList, dao::Recordset& RsResources, bool& Cancel,
                            const std::string& NewString) {
    if (BlankAfterTrim(NewString)) {
        Cancel = true;
        return;
    }
    OnErrorResumeNext on("ResourceAfterLabelEdit");
    std::int32_t id = on.Resume([&] { return ValueConv::ToLong(RsList("Resource ID")); });
    if (!FindResource(id, RsResources)) return;
    on.Do([&] {
        RsResources.Edit();
        RsResources.SetValue("ResourceString", Variant(NewString));
        RsResources.Update();
    });
}

bool FindResource(std::int32_t ResourceID, dao::Recordset& RsResources) {
    OnErrorResumeNext on("Module1.FindResource");
    if (!on.Do([&] { RsResources.MoveFirst(); })) return false;
    if (!on.Do([&] { RsResources.FindFirst(ResourceCriteria(ResourceID)); })) return false;
    return !on.Resume([&] { return RsResources.NoMatch(); }, true);
}

void DeleteResByID(std::int32_t ResourceID, dao::Recordset& RsResources) {
    OnErrorResumeNext on("Module1.DeleteResByID");
    on.Do([&] { RsResources.MoveFirst(); });
    on.Do([&] { RsResources.FindFirst(ResourceCriteria(ResourceID)); });
    if (on.Resume([&] { return RsResources.NoMatch(); }, true)) {
        UniMsgBox(LngText("Module1.DeleteResByID", "msg", "Resource was not found in database!"), ui::vbExclamation);
        return;
    }
    on.Do([&] { RsResources.Delete(); });
}

int DeleteRes2(dao::Recordset& RsResources, dao::Recordset& RsOwners, std::int32_t ResourceID, std::int32_t OwnerID,
               std::int32_t OwnerType) {
    OnErrorResumeNext on("Module1.DeleteRes2");
    OwnDatabase second(on);
    on.Do([&] { RsOwners.MoveFirst(); });
    on.Do([&] {
        RsOwners.FindFirst(ResourceCriteria(ResourceID) + " and [Owner ID]=" + std::to_string(OwnerID) +
                           " and [OwnerType]=" + std::to_string(OwnerType));
    });
    if (on.Resume([&] { return RsOwners.NoMatch(); }, true)) {
        UniMsgBox(LngText("Module1.DeleteRes2", "msg", "Resource was not found in database!"), ui::vbExclamation);
        return 0;
    }
    on.Do([&] { RsOwners.Delete(); });
    on.Do([&] { RsOwners.Requery(); });

    // The row goes with its last link: read through the second database,
    // which sees the link just deleted as gone.
    if (!second.IsOpen()) return 1;
    dao::Recordset left = on.Resume([&] {
        return second.db.OpenRecordset("Select * from ResourcesOwners" + std::string(" Where [Resource ID]=") +
                                       std::to_string(ResourceID) + ";");
    });
    if (left && !HasCurrentRow(left, on)) {
        DeleteResByID(ResourceID, RsResources);
        on.Do([&] { RsResources.Requery(); });
    }
    if (left) on.Do([&] { left.Close(); });
    return 1;
}

bool DeleteOwnerResources(std::int32_t OwnerID, std::int32_t OwnerType, dao::Recordset& RsResources) {
    if (OwnerID == 0) return false;
    OnErrorResumeNext on("Module1.DeleteOwnerResources");
    OwnDatabase own(on);
    if (!own.IsOpen()) return true;
    dao::Recordset links = on.Resume([&] { return own.db.OpenRecordset(SqlOwnerLinks(OwnerID, OwnerType)); });
    if (!links) return true;
    // DeleteRes2 re-queries the links after each removal, so the first row
    // is always the next one to go. A removal that fails would leave the
    // same row first for ever; it ends the loop.
    while (HasCurrentRow(links, on)) {
        std::int32_t resourceId = on.Resume([&] { return ValueConv::ToLong(links("Resource ID")); });
        if (DeleteRes2(RsResources, links, resourceId, OwnerID, OwnerType) == 0) break;
    }
    on.Do([&] { links.Close(); });
    return true;
}

// Deletes the rows of `noted` to which no link is left: one statement for
// each thousand rows, the links left looked up by key in the same
// statement. A statement for each row would make removing an owner with
// many resources (an organization's thousands) slow.
// The links left are found by [Resource ID] with "In", which the engine
// does not index by itself (it indexes a column a query compares with "=").
static void DeleteUnlinkedResources(const dao::Database& db, const std::vector<std::int32_t>& noted) {
    db.connection()->EnsureLookupIndex("ResourcesOwners", "Resource ID");
    constexpr std::size_t kChunk = 1000;
    for (std::size_t from = 0; from < noted.size(); from += kChunk) {
        std::string ids;
        for (std::size_t i = from; i < std::min(noted.size(), from + kChunk); ++i)
            ids += (ids.empty() ? "" : ",") + std::to_string(noted[i]);
        db.Execute("Delete From Resources Where [Resource ID] In (" + ids +
                   ") And [Resource ID] Not In (Select [Resource ID] From ResourcesOwners Where [Resource ID] In (" +
                   ids + "));");
    }
}

bool DeletePersonResources(std::int32_t PersonalID) {
    if (PersonalID == 0) return false;
    OnErrorResumeNext on("Module1.DeletePersonResources");
    OwnDatabase own(on);
    if (!own.IsOpen()) return false;
    // The links and the rows they leave unlinked go in one transaction, so
    // the file is synced once, and a failure of either (passed over like any
    // other here) leaves both tables as they were.
    on.Do([&] {
        BookTransaction together(own.db);
        DeletePersonResourcesIn(own.db, PersonalID);
        together.Commit();
    });
    return true;
}

bool DeletePersonResourcesIn(const dao::Database& db, std::int32_t PersonalID) {
    if (PersonalID == 0) return false;
    // The resources the person links to, noted before the links go.
    std::vector<std::int32_t> noted;
    dao::Recordset links = db.OpenRecordset(SqlPersonLinks(PersonalID), dao::dbOpenSnapshot);
    for (; !links.IsEOF(); links.MoveNext()) noted.push_back(ValueConv::ToLong(links("Resource ID")));
    links.Close();
    if (noted.empty()) return true;

    // All of the person's links go in one statement, and the rows no other
    // owner links to in one more: a card can carry many resources, and a
    // write for each would make removing a person slow.
    db.Execute("Delete From ResourcesOwners Where [Owner ID]=" + std::to_string(PersonalID) +
               " And ([OwnerType]=0 Or [OwnerType] Is Null);");
    DeleteUnlinkedResources(db, noted);
    return true;
}

bool DeleteOwnerResourcesIn(const dao::Database& db, std::int32_t OwnerID, std::int32_t OwnerType) {
    if (OwnerID == 0) return false;
    std::vector<std::int32_t> noted;
    dao::Recordset links = db.OpenRecordset(SqlOwnerLinks(OwnerID, OwnerType), dao::dbOpenSnapshot);
    for (; !links.IsEOF(); links.MoveNext()) noted.push_back(ValueConv::ToLong(links("Resource ID")));
    links.Close();
    if (noted.empty()) return true;
    db.Execute("Delete From ResourcesOwners Where [Owner ID]=" + std::to_string(OwnerID) +
               " And [OwnerType]=" + std::to_string(OwnerType) + ";");
    DeleteUnlinkedResources(db, noted);
    return true;
}

void DeleteOwnersResourcesIn(const dao::Database& db, std::int32_t OwnerType, const std::string& OwnerIDs) {
    const std::string links =
        " From ResourcesOwners Where [OwnerType]=" + std::to_string(OwnerType) + " And [Owner ID] In (" + OwnerIDs + ");";
    db.connection()->EnsureLookupIndex("ResourcesOwners", "Owner ID");
    std::vector<std::int32_t> noted;
    dao::Recordset rs = db.OpenRecordset("Select [Resource ID]" + links, dao::dbOpenSnapshot);
    for (; !rs.IsEOF(); rs.MoveNext()) noted.push_back(ValueConv::ToLong(rs("Resource ID")));
    rs.Close();
    if (noted.empty()) return;
    db.Execute("Delete" + links);
    DeleteUnlinkedResources(db, noted);
}

bool OwnerHasResource(std::int32_t OwnerID, std::int32_t OwnerType, std::int32_t ResType) {
    OnErrorResumeNext on("cAddressbook.ResourceExists");
    OwnDatabase own(on);
    if (!own.IsOpen()) return false;
    dao::Recordset rs = on.Resume([&] {
        return own.db.OpenRecordset(GetOwnerResourcesQuery(TableColumnList("Resources", own.db), OwnerID, OwnerType, ResType));
    });
    bool found = rs && HasCurrentRow(rs, on);
    if (rs) on.Do([&] { rs.Close(); });
    return found;
}

}  // namespace zelvo
