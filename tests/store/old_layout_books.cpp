#include "old_layout_books.h"

#include "support/book_fixture.h"

namespace zelvo::testing {

using namespace zelvo::dao;

namespace {

void MakeOldEmails(const Database& db) {
    MakeTable(db, "E-MailAdresses", {{"E-mailAdress", dbText, 255}, {"Personal ID", dbLong}});
    db.Execute("Insert Into [E-MailAdresses] ([E-mailAdress], [Personal ID]) Values (\"ada@a.org\", 1)");
    db.Execute("Insert Into [E-MailAdresses] ([E-mailAdress], [Personal ID]) Values (\"ada@b.org\", 1)");
    db.Execute("Insert Into [E-MailAdresses] ([E-mailAdress], [Personal ID]) Values (\"bob@c.org\", 2)");
}

void MakeOldProjects(const Database& db) {
    MakeTable(db, "Projects", {{"Personal ID", dbLong}, {"Project", dbText, 255}, {"InsArcPrj", dbBoolean}});
    db.Execute("Insert Into Projects ([Personal ID], Project, InsArcPrj) Values (1, \"A\", False)");
    db.Execute("Insert Into Projects ([Personal ID], Project, InsArcPrj) Values (2, \"A\\B\", False)");
    db.Execute("Insert Into Projects ([Personal ID], Project, InsArcPrj) Values (3, \"Old\", True)");
}

void MakeOldOrganizations(const Database& db) {
    MakeTable(db, "Organizations", {{"Organization", dbText, 255, true}, {"Personal ID", dbLong, 0, true}});
    db.Execute("Insert Into Organizations (Organization, [Personal ID]) Values (\"Acme\", 1)");
    db.Execute("Insert Into Organizations (Organization, [Personal ID]) Values (\"   \", 2)");
    db.Execute("Insert Into Organizations (Organization, [Personal ID]) Values (\"Globex\", 3)");
}

}  // namespace

void MakeTable(const Database& db, const std::string& name, std::initializer_list<Col> cols, const char* counter) {
    TableDef t = db.CreateTableDef(name);
    for (const Col& c : cols) {
        Field f = t.CreateField(c.name, c.type, c.size);
        f.SetRequired(c.required);
        t.Fields().Append(f);
    }
    db.TableDefs().Append(t);
    if (counter) db.Execute(std::string("Alter Table [") + name + "] Add Column [" + counter + "] Counter");
}

void CreateEarliestBook(const std::string& path, const std::string& marker) {
    Database db = Engine().CreateDatabase(path);
    MakeTable(db, "PersonalData",
              {{"FirstName", dbText, 50}, {"MiddleName", dbText, 50}, {"SurName", dbText, 50},
               {"FullName", dbText, 255}, {"InsArcPrj", dbBoolean}},
              "Personal ID");
    db.Execute("Insert Into PersonalData (FullName, InsArcPrj) Values (\"" + marker + "\", False)");
    db.Execute("Insert Into PersonalData (FullName, InsArcPrj) Values (\"Bob\", True)");
    db.Execute("Insert Into PersonalData (FullName, InsArcPrj) Values (\"Cy\", False)");
    MakeOldEmails(db);
    MakeOldProjects(db);
    MakeOldOrganizations(db);
    db.Close();
}

void CreatePartlyOldBook(const std::string& path, unsigned traits) {
    Database db = Engine().CreateDatabase(path);
    CreateBookSchema(db);
    for (const char* name : {"Ada", "Bob", "Cy"})
        db.Execute(std::string("Insert Into PersonalData (FullName) Values (\"") + name + "\")");
    if (traits & kOldEmails) {
        db.TableDefs().Delete("Resources");
        MakeOldEmails(db);
    }
    if (traits & kOldProjects) {
        // The saved queries read Projects; they are written again by the
        // correction.
        db.QueryDefs().Delete("OrgPrj");
        db.QueryDefs().Delete("PersPrj");
        db.TableDefs().Delete("Projects");
        MakeOldProjects(db);
    }
    if (traits & kOldOrganizations) {
        db.TableDefs().Delete("Organizations");
        MakeOldOrganizations(db);
    }
    db.Close();
}

}  // namespace zelvo::testing
