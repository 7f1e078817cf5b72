#include "organizations/org_sql.h"

#include "personslist/persons_query.h"
#include "platform/core/value_conv.h"
#include "zelvo/enums.h"

namespace zelvo {

namespace {

std::string Id(std::int32_t id) { return std::to_string(id); }

std::string EmployeesPersonsWhere(const std::string& column, std::int32_t id, const dao::Database& db) {
    return "Select " + TableColumnList("Employees", db) + "," + TableColumnList("PersonalData", db) +
           " from [Employees], [PersonalData] " + "Where [Employees].[" + column + "]=" + Id(id) +
           " and [PersonalData].[Personal ID]=[Employees].[Personal ID] ;";
}

// The membership condition shared by the three project queries.
std::string InProject(std::int32_t ownerType, const std::string& rProject, bool InsArcPrj) {
    return "AND ((Projects.OwnerType)=" + Id(ownerType) + ") and Projects.Project=" + QuoteSqlText(rProject) +
           " and Projects.InsArcPrj=" + ValueConv::BoolToSql(InsArcPrj);
}

// The column list of a saved query, in TableColumnList's form: the book
// keeps OrgPrj as a query, whose fields are read from an empty opening.
std::string QueryColumnList(const std::string& query, const dao::Database& db) {
    dao::Recordset rs = db.OpenRecordset("Select * from [" + query + "] Where False;", dao::dbOpenSnapshot);
    std::string list;
    auto fields = rs.Fields();
    for (int i = 0; i < fields.Count(); ++i)
        list += (i ? ", [" : "[") + query + "].[" + fields.Item(i).Name() + "]";
    rs.Close();
    return list + " ";
}

}  // namespace

std::string OrgChildrenSQL(std::int32_t id) {
    std::string sql = "Select * from Organizations ";
    sql += " Where Organizations.[Parent ID]=" + Id(id);
    if (id == 0) sql += " or (Organizations.[Parent ID] Is Null) ";
    return sql + " ;";
}

std::string JobTitlesOfOrgSQL(std::int32_t id) {
    std::string sql = "Select * from JobTitles ";
    sql += " Where JobTitles.[Organization ID]=" + Id(id);
    if (id == 0) sql += " or (JobTitles.[Organization ID] Is Null) ";
    return sql + " ;";
}

std::string EmployeesOfJobSQL(std::int32_t id) { return "Select * from Employees Where [Job ID]=" + Id(id) + ";"; }

std::string EmployeesPersonsOfJobSQL(std::int32_t id, const dao::Database& db) {
    return EmployeesPersonsWhere("Job ID", id, db);
}

std::string EmployeesPersonsOfRoomSQL(std::int32_t id, const dao::Database& db) {
    return EmployeesPersonsWhere("Room ID", id, db);
}

std::string SqlPersonJobs(std::int32_t id) {
    std::string criterion = id >= 1 ? " WHERE (((PersonalData.[Personal ID])=" + Id(id) + ")"
                                    : " WHERE ( (PersonalData.[Personal ID]=0) or (PersonalData.[Personal ID] Is Null) ";
    return "SELECT PersonalData.[Personal ID], PersonalData.FullName, Organizations.Organization, JobTitles.JobTitle, "
           "Organizations.[Organization ID], Organizations.[Parent ID], Employees.[Job ID], Employees.[Employee ID]  "
           " FROM ((Employees RIGHT JOIN PersonalData ON Employees.[Personal ID] = PersonalData.[Personal ID]) LEFT "
           "JOIN JobTitles ON Employees.[Job ID] = JobTitles.[Job ID]) LEFT JOIN Organizations ON "
           "JobTitles.[Organization ID] = Organizations.[Organization ID] " +
           criterion + " and (Employees.[Job ID]>0));";
}

std::string RoomsOfLevelSQL(std::int32_t OrganizationID, std::int32_t rParent_ID) {
    std::string sql = "Select * from Rooms Where [Organization ID]=" + Id(OrganizationID);
    if (rParent_ID != 0) return sql + " And ([rParent ID]=" + Id(rParent_ID) + ");";
    return sql + " And ([rParent ID]=0 or [rParent ID] Is Null); ";
}

std::string OrgsInProjectSQL(const std::string& rProject, bool InsArcPrj, const dao::Database& db) {
    if (rProject.empty()) {
        return "SELECT " + TableColumnList("Organizations", db) + "," + QueryColumnList("OrgPrj", db) +
               " FROM Organizations left JOIN  OrgPrj ON OrgPrj.[Owner ID] = Organizations.[Organization ID] "
               " WHERE (((OrgPrj.Project) Is Null) and (Organizations.[Parent ID] is null  or  "
               "Organizations.[Parent ID]=0)  ); ";
    }
    return "SELECT " + TableColumnList("Organizations", db) + "," + TableColumnList("Projects", db) +
           " From Projects, Organizations " + "WHERE (((Organizations.[Organization ID])=[Projects].[Owner ID]) " +
           InProject(oOrganization_ID, rProject, InsArcPrj) + ");";
}

std::string JobTitlesInProjectSQL(const std::string& rProject, bool InsArcPrj, const dao::Database& db) {
    return "SELECT " + TableColumnList("Projects", db) + "," + TableColumnList("JobTitles", db) +
           " From Projects, JobTitles " + "WHERE (((JobTitles.[Job ID])=[Projects].[Owner ID]) " +
           InProject(oJob_ID, rProject, InsArcPrj) + ");";
}

std::string EmployeesInProjectSQL(const std::string& rProject, bool InsArcPrj, const dao::Database& db) {
    return "SELECT " + TableColumnList("Projects", db) + "," + TableColumnList("Employees", db) + "," +
           TableColumnList("PersonalData", db) + "," + " JobTitles.[Organization ID]" +
           " From Projects, Employees, PersonalData, JobTitles " +
           "WHERE (((Employees.[Employee ID])=[Projects].[Owner ID]) " + InProject(oEmployees_ID, rProject, InsArcPrj) +
           " and (PersonalData.[Personal ID]=Employees.[Personal ID]) and (JobTitles.[Job ID]=Employees.[Job ID]) );";
}

}  // namespace zelvo
