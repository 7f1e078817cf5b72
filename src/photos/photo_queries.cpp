#include "photos/photo_queries.h"

#include "personslist/persons_query.h"

namespace zelvo {

std::string SqlPersonPhotos(std::int32_t PersonalID) {
    return "SELECT Photo.[Personal ID],Photo.Photo From Photo WHERE (((Photo.[Personal ID])=" +
           std::to_string(PersonalID) + ")) order by Photo.[Photo ID] desc;";
}

std::string SqlPhotoByPersonMail(const std::string& Mail, const dao::Database& db) {
    return "Select " + TableColumnList("Resources", db) + " , " + TableColumnList("Photo", db) + " , " +
           TableColumnList("PersonalData", db) +
           " FROM ((Resources INNER JOIN ResourcesOwners ON Resources.[Resource ID] = ResourcesOwners.[Resource ID]) "
           "INNER JOIN Photo ON ResourcesOwners.[Owner ID] = Photo.[Personal ID]) INNER JOIN PersonalData ON "
           "Photo.[Personal ID] = PersonalData.[Personal ID]" +
           " WHERE (((Resources.ResourceString)=" + QuoteSqlText(Mail) +
           ") AND ((Resources.ResourceType)=2) AND ((ResourcesOwners.OwnerType)=" + "0" +
           ")) order by Photo.[Photo ID] desc ;";
}

std::string SqlPhotoByEmployeeMail(const std::string& Mail, const dao::Database& db) {
    return "Select " + TableColumnList("Resources", db) + " , " + TableColumnList("Photo", db) + " , " +
           TableColumnList("PersonalData", db) + " , " + TableColumnList("Employees", db) +
           " FROM ((Resources INNER JOIN ResourcesOwners ON Resources.[Resource ID] = ResourcesOwners.[Resource ID]) "
           "INNER JOIN Employees ON ResourcesOwners.[Owner ID] = Employees.[Employee ID]) INNER JOIN (Photo INNER "
           "JOIN PersonalData ON Photo.[Personal ID] = PersonalData.[Personal ID]) ON Employees.[Personal ID] = "
           "Photo.[Personal ID] " +
           " WHERE (((Resources.ResourceString)=" + QuoteSqlText(Mail) +
           ") AND ((Resources.ResourceType)=2) AND ((ResourcesOwners.OwnerType)=" + "4" +
           ")) order by Photo.[Photo ID] desc;";
}

}  // namespace zelvo
