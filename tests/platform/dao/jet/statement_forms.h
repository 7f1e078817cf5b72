// The forms of SQL text the address book builds, with the rows each must
// give over the small book of test_book.cpp, and the criteria strings of its
// Find calls. The texts are built here as the book's code builds them: by
// concatenation, column lists as "[Table].[Field], …" with a blank after the
// last, literals in double quotes, numbers in decimal, True/False as words.
// The translator's tests run them against raw SQLite, the engine's tests
// through Database and Recordset.
#pragma once

#include <initializer_list>
#include <ostream>
#include <string>
#include <vector>

namespace zelvo::dao::jet::testing {

struct Form {
    const char* name;
    std::string sql;
    std::vector<std::string> rows;  // each "v1|v2|…"; compared as a set unless `ordered`
    bool ordered = false;
};

// A criteria string over the record set of `base`, with the rows it picks.
struct Criteria {
    const char* name;
    std::string base;
    std::string criteria;
    std::vector<std::string> rows;
};

inline void PrintTo(const Form& f, std::ostream* os) { *os << f.name; }
inline void PrintTo(const Criteria& c, std::ostream* os) { *os << c.name; }

std::vector<Form> Forms();
std::vector<Criteria> CriteriaForms();

// A form's name as a test name: letters and digits, the rest "_".
std::string TestName(const char* name);

// Pieces of the forms, also used by the tests of field names. They are
// inline here so that they are made before any test list that uses them.
// The column list a table gives, the way the book's list builder writes it.
inline std::string Cols(const std::string& table, std::initializer_list<const char*> fields) {
    std::string out;
    std::size_t k = 0;
    for (const char* f : fields) {
        out += "[" + table + "].[" + f + "]";
        out += ++k < fields.size() ? ", " : " ";
    }
    return out;
}

inline const std::string kResources = Cols("Resources", {"ResourceString", "ResourceType", "ResourceSubType", "Resource ID"});
inline const std::string kPersonal =
    Cols("PersonalData", {"FirstName", "MiddleName", "SurName", "FullName", "Comments", "Personal ID"});
inline const std::string kEmployees = Cols("Employees", {"Job ID", "Personal ID", "Room ID", "Comments", "Employee ID"});
inline const std::string kProjects = Cols("Projects", {"Owner ID", "OwnerType", "Project", "InsArcPrj"});
inline const std::string kOrganizations = Cols("Organizations", {"Organization", "Parent ID", "Comments", "Organization ID"});
inline const std::string kJobTitles = Cols("JobTitles", {"Organization ID", "JobTitle", "Comments", "Job ID"});
inline const std::string kPhoto = Cols("Photo", {"Personal ID", "Photo", "Photo ID"});
inline const std::string kOrgPrj = Cols("OrgPrj", {"Owner ID", "OwnerType", "Project", "InsArcPrj"});
inline const std::string Q = "\"";
inline const std::string kPerson1 = "Иванов|Иван|Иванович|ИВАНОВ Иван|<null>|1";
inline const std::string kPerson2 = "Smith|John||John Smith|<null>|2";

std::string GetPrjPersonsQuery(const std::string& criterion, bool archive);

}  // namespace zelvo::dao::jet::testing
