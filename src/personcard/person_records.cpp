#include "personcard/person_records.h"

#include "platform/core/error.h"
#include "platform/core/value_conv.h"
#include "resources/resource_ops.h"
#include "store/book_transaction.h"
#include "store/own_database.h"

namespace zelvo {

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

    // The resources first, through their own routine, which keeps a row
    // another owner still links to. It opens the book for itself, so it runs
    // before this routine takes the write lock below.
    DeletePersonResources(Personal_ID);

    OwnDatabase own(on);
    if (!own.IsOpen()) return;
    const std::string person = std::to_string(Personal_ID);
    // The rest in one statement a table and one transaction: a person with
    // many jobs and photos costs one sync of the file, and a failure leaves
    // the three tables as they were. The jobs stay as vacancies, so the
    // organization keeps its posts.
    on.Do([&] {
        BookTransaction transaction(own.db);
        own.db.Execute("Update Employees Set [Personal ID]=0 Where [Personal ID]=" + person + ";");
        own.db.Execute("Delete From Projects Where [Owner ID]=" + person + " And [OwnerType]=0;");
        own.db.Execute("Delete From Photo Where [Personal ID]=" + person + ";");
        transaction.Commit();
    });
}

}  // namespace zelvo
