#include "personslist/persons_query.h"

#include "platform/core/value_conv.h"
#include "store/library_state.h"

namespace zelvo {

std::string QuoteSqlText(const std::string& text) {
    std::string quoted = "\"";
    for (char c : text) {
        quoted += c;
        if (c == '"') quoted += '"';
    }
    return quoted + "\"";
}

std::string TableColumnList(const std::string& Table, const dao::Database& db) {
    std::string list;
    dao::Fields fields = db.TableDefs().Item(Table).Fields();
    int count = fields.Count();
    for (int i = 0; i < count; ++i) {
        if (i) list += ", ";
        list += "[" + Table + "].[" + fields.Item(i).Name() + "]";
    }
    return list + " ";
}

std::string TableColumnList(const std::string& Table, const std::string& DatabaseName) {
    dao::Database db = DBEngine().OpenDatabase(DatabaseName, false, false, "Access");
    // The database closes however the reading ends.
    struct Closer {
        dao::Database& db;
        ~Closer() { db.Close(); }
    } closer{db};
    return TableColumnList(Table, db);
}

std::string GetAllPersonsQuery(bool InsArcPrj) {
    return "Select distinct " + TableColumnList("PersonalData", DatabasePath()) + "," +
           " Projects.[Owner ID], Projects.[OwnerType], Projects.InsArcPrj " + " From [PersonalData],Projects " +
           " Where [Projects].InsArcPrj=" + ValueConv::BoolToSql(InsArcPrj) + " and [Projects].[OwnerType]=" +
           std::to_string(oPersonal_ID) + " and Projects.[Owner ID]=PersonalData.[Personal ID] " + ";";
}

std::string GetNoPrjPersonsQuery() {
    return "SELECT PersonalData.[Personal ID] ,PersonalData.[FirstName] ,PersonalData.MiddleName "
           ",PersonalData.Surname,PersonalData.FullName FROM PersonalData LEFT JOIN PersPrj ON "
           "PersonalData.[Personal ID] = PersPrj.[Owner ID] WHERE (((PersPrj.[Owner ID]) Is Null) );";
}

std::string ProjectCondition(const std::string& rProject, AddrFiltr Filter) {
    if (Filter == InsCurPrj) {
        // Both paths end in a backslash, so "A" does not take in "AB".
        return "Instr(1,[Projects].[Project] & \"\\\"," + QuoteSqlText(rProject + "\\") + ",1)=1";
    }
    return "(Projects.Project)=" + QuoteSqlText(rProject);
}

std::string GetPrjPersonsQuery(const std::string& rProject, bool InsArcPrj, AddrFiltr Filter) {
    std::string criterion = ProjectCondition(rProject, Filter);
    return "SELECT PersonalData.[Personal ID] as [Personal ID],PersonalData.[FirstName],PersonalData.MiddleName,"
           "PersonalData.Surname,PersonalData.FullName,Projects.Project,Projects.InsArcPrj,Projects.[Owner ID] "
           ",Projects.[OwnerType]  From Projects,PersonalData " +
           std::string("WHERE (( ") + criterion + ") AND ((Projects.InsArcPrj)=" + ValueConv::BoolToSql(InsArcPrj) +
           ") AND ((Projects.[Owner ID])=[PersonalData].[Personal ID]) and (Projects.[OwnerType]= " +
           std::to_string(oPersonal_ID) + ") );";
}

std::string GetOwnerResourcesQuery(std::int32_t Owner_ID, std::int32_t OwnerType, std::int32_t ResType) {
    return GetOwnerResourcesQuery(TableColumnList("Resources", DatabasePath()), Owner_ID, OwnerType, ResType);
}

std::string GetOwnerResourcesQuery(const std::string& ResourceColumns, std::int32_t Owner_ID, std::int32_t OwnerType,
                                   std::int32_t ResType) {
    return "Select " + ResourceColumns + ", ResourcesOwners.[Owner ID], ResourcesOwners.[OwnerType] " +
           "From ResourcesOwners INNER JOIN [Resources] ON ResourcesOwners.[Resource ID] = [Resources].[Resource ID] " +
           " Where [Owner ID]=" + std::to_string(Owner_ID) + " and [OwnerType]=" + std::to_string(OwnerType) +
           " and [ResourceType]=" + std::to_string(ResType) + ";";
}

}  // namespace zelvo
