#include "resources/resource_queries.h"

#include "store/library_state.h"
#include "zelvo/enums.h"

namespace zelvo {

namespace {

std::string N(std::int32_t v) { return std::to_string(v); }

std::string ResourceColumns() { return TableColumnList("Resources", DatabasePath()); }

}  // namespace

std::string SqlEmails(std::int32_t OwnerID, std::int32_t OwnerType) {
    return GetOwnerResourcesQuery(OwnerID, OwnerType, RsEmail);
}

std::string SqlPersonWebs(std::int32_t PersonalID) {
    return GetOwnerResourcesQuery(PersonalID, oPersonal_ID, rsWebPage);
}

std::string SqlHomePhones(std::int32_t PersonalID, std::int32_t AddressID) {
    // The second branch tests no kind: whatever the node owns stands in the
    // phone list, since the windows bind only phones to nodes.
    return " Select " + ResourceColumns() + " , ResourcesOwners.[Owner ID],ResourcesOwners.[OwnerType] " +
           " FROM ResourcesOwners INNER JOIN Resources ON ResourcesOwners.[Resource ID] = Resources.[Resource ID] " +
           " WHERE  ( ([Owner ID]=" + N(PersonalID) + ") AND ([OwnerType]=0  and [ResourceType]=" + "0" + ") )" +
           " or ([Owner ID]=" + N(AddressID) + " AND ([OwnerType]=8 ))" + ";";
}

std::string SqlJobResources(std::int32_t EmployeeID, std::int32_t RoomID, std::int32_t JobID, std::int32_t ResType) {
    return "Select " + ResourceColumns() + " , " + " ResourcesOwners.[Owner ID],ResourcesOwners.[OwnerType] " +
           "FROM Resources INNER JOIN ResourcesOwners ON Resources.[Resource ID] = ResourcesOwners.[Resource ID]" +
           " Where ([ResourceType]=" + N(ResType) + ") and (" + " ( [Owner ID]=" + N(EmployeeID) +
           " and [OwnerType]=4)" + " or " + " ([Owner ID]=" + N(RoomID) + " and [OwnerType]=16)" + " or " +
           " ([Owner ID]=" + N(JobID) + " and [OwnerType]=2)" + ");";
}

std::string SqlJobPhones(std::int32_t EmployeeID, std::int32_t RoomID, std::int32_t JobID) {
    return SqlJobResources(EmployeeID, RoomID, JobID, rsPhone);
}
std::string SqlJobWebs(std::int32_t EmployeeID, std::int32_t RoomID, std::int32_t JobID) {
    return SqlJobResources(EmployeeID, RoomID, JobID, rsWebPage);
}
std::string SqlJobEmails(std::int32_t EmployeeID, std::int32_t RoomID, std::int32_t JobID) {
    return SqlJobResources(EmployeeID, RoomID, JobID, RsEmail);
}

std::string SqlRecordByID(const std::string& Table, const std::string& KeyColumn, std::int32_t ID) {
    std::string sql = "Select * from [" + Table + "] " + " Where [" + KeyColumn + "]=" + N(ID);
    if (ID == 0) return sql + " or [" + KeyColumn + "] Is Null ;";
    return sql + ";";
}

std::string SqlResourceByID(std::int32_t ResourceID) { return SqlRecordByID("Resources", "Resource ID", ResourceID); }

std::string SqlPersonLinks(std::int32_t PersonalID) {
    return "Select * from ResourcesOwners " + std::string(" where [Owner ID]=") + N(PersonalID) +
           " And ([OwnerType]=" + "0" + "  or [OwnerType] Is Null) ;";
}

std::string SqlOwnerLinks(std::int32_t OwnerID, std::int32_t OwnerType) {
    return "Select * from ResourcesOwners" + std::string(" Where [Owner ID]=") + N(OwnerID) +
           " and [OwnerType]=" + N(OwnerType) + ";";
}

}  // namespace zelvo
