#include "personcard/person_records.h"

#include "platform/core/error.h"
#include "platform/core/value_conv.h"
#include "resources/resource_ops.h"
#include "store/book_transaction.h"
#include "store/own_database.h"

namespace zelvo {

namespace {

// Whether `table` has a row `where`. Asked before each write: the engine
// keeps an index for a column a query looks rows up by, so the write that
// follows finds the person's rows by that index instead of reading the
// whole table, and a table with none of them is not written at all.
bool HasRows(const dao::Database& db, const char* table, const std::string& where) {
    dao::Recordset rs = db.OpenRecordset(std::string("Select * From ") + table + where + ";", dao::dbOpenSnapshot);
    bool any = !rs.IsEOF();
    rs.Close();
    return any;
}

}  // namespace

std::int32_t NewPersonRecord(const std::string& rProject, bool InsArcPrj) {
    OnErrorResumeNext on("Module1.NewPersonRecord");
    OwnDatabase own(on);
    if (!own.IsOpen()) return 0;

    // The person and its project row are one transaction: a project row that
    // cannot be written (a path too long for its column) takes the person
    // back with it, so no unsorted person appears that the caller meant to
    // file.
    std::int32_t id = 0;
    bool written = on.Do([&] {
        BookTransaction transaction(own.db);
        // Record sets of no rows: a row added stands last in its record set,
        // so adding to one over a whole table would read the table first.
        dao::Recordset persons = own.db.OpenRecordset("Select * From PersonalData Where False;", dao::dbOpenDynaset);
        persons.AddNew();
        // The Counter is numbered at AddNew: read it before Update.
        id = ValueConv::ToLong(persons("Personal ID"));
        persons.Update();
        persons.Close();
        if (!rProject.empty()) {
            dao::Recordset projects = own.db.OpenRecordset("Select * From Projects Where False;", dao::dbOpenDynaset);
            projects.AddNew();
            projects.SetValue("Owner ID", Variant(std::int64_t{id}));
            projects.SetValue("OwnerType", Variant(std::int64_t{0}));
            projects.SetValue("Project", Variant(rProject));
            projects.SetValue("InsArcPrj", Variant(InsArcPrj));
            projects.Update();
            projects.Close();
        }
        transaction.Commit();
    });
    return written ? id : 0;
}

void DeletePersonData(std::int32_t Personal_ID) {
    if (Personal_ID == 0) return;
    OnErrorResumeNext on("Module1.DeletePersonData");
    OwnDatabase own(on);
    if (!own.IsOpen()) return;
    on.Do([&] {
        BookTransaction transaction(own.db);
        DeletePersonDataIn(own.db, Personal_ID);
        transaction.Commit();
    });
}

void DeletePersonDataIn(const dao::Database& db, std::int32_t Personal_ID) {
    if (Personal_ID == 0) return;
    // One statement a table, in the caller's transaction: a person with many
    // resources, jobs and photos costs one sync of the file, and a failure
    // leaves every table as it was. The jobs stay as vacancies, so the
    // organization keeps its posts; a resource another owner still links to
    // stays for that owner.
    const std::string person = std::to_string(Personal_ID);
    DeletePersonResourcesIn(db, Personal_ID);
    const std::string jobs = " Where [Personal ID]=" + person;
    if (HasRows(db, "Employees", jobs)) db.Execute("Update Employees Set [Personal ID]=0" + jobs + ";");
    const std::string projects = " Where [Owner ID]=" + person + " And [OwnerType]=0";
    if (HasRows(db, "Projects", projects)) db.Execute("Delete From Projects" + projects + ";");
    const std::string photos = " Where [Personal ID]=" + person;
    if (HasRows(db, "Photo", photos)) db.Execute("Delete From Photo" + photos + ";");
}

}  // namespace zelvo
