#include "projects/project_sql.h"

#include "personslist/persons_query.h"
#include "platform/core/value_conv.h"

namespace zelvo {

std::string OwnerProjectsSQL(std::int32_t id, std::int32_t type) {
    return "Select * from Projects WHERE (((Projects.[Owner ID])=" + std::to_string(id) +
           ") and Projects.[OwnerType]=" + std::to_string(type) + ");";
}

std::string PersonProjectsSQL(std::int32_t id) { return OwnerProjectsSQL(id, oPersonal_ID); }

std::string OwnerProjectRowsSQL(std::int32_t id, std::int32_t type) {
    return "SELECT Projects.[Owner ID], Projects.OwnerType, Projects.Project, Projects.InsArcPrj "
           "From Projects WHERE (((Projects.[Owner ID])=" +
           std::to_string(id) + ") AND ((Projects.OwnerType)=" + std::to_string(type) + "));";
}

std::string ProjectRowsSQL(const std::string& path, bool InsArcPrj, AddrFiltr filter) {
    return "Select Projects.[Owner ID] ,Projects.[OwnerType] ,Projects.[Project] ,Projects.[InsArcPrj] "
           "From Projects Where ( (" +
           ProjectCondition(path, filter) + ") and (Projects.InsArcPrj=" + ValueConv::BoolToSql(InsArcPrj) +
           ")  ) ;";
}

}  // namespace zelvo
