// The members of cAddressbook by which persons come in and go: from a mail
// string, empty, and deleted.
#include <string>

#include "hostservices/lng_text.h"
#include "hostservices/message_wrappers.h"
#include "personcard/person_records.h"
#include "platform/core/error.h"
#include "platform/core/mail_string.h"
#include "platform/core/value_conv.h"
#include "platform/ui/ui_host.h"
#include "store/book_transaction.h"
#include "store/own_database.h"
#include "zelvo/addressbook.h"

namespace zelvo {

namespace {

bool Blank(const std::string& text) { return text.find_first_not_of(" \t\r\n") == std::string::npos; }

// Characters, not bytes: the book's text columns count characters.
std::size_t CharCount(const std::string& text) {
    std::size_t n = 0;
    for (char c : text)
        if ((static_cast<unsigned char>(c) & 0xC0) != 0x80) ++n;
    return n;
}

std::string WithNumber(std::string text, const std::string& value) {
    if (std::size_t at = text.find("%1"); at != std::string::npos) text.replace(at, 2, value);
    return text;
}

// Whether `text` fits the text column `field` of `rs`; a column whose size
// cannot be read is taken to fit, and the engine has the last word.
bool Fits(const dao::Recordset& rs, const char* field, const std::string& text, const OnErrorResumeNext& on,
          int& size) {
    size = on.Resume([&] { return rs.Fields()(field).Size(); });
    return size <= 0 || CharCount(text) <= static_cast<std::size_t>(size);
}

// Writes the person named `name` with the e-mail address `address` (none
// when empty) and, when `rProject` is not empty, its project row, as one
// transaction. A text too long for its column is refused with a message
// before anything is written. Returns the new [Personal ID], or 0 when
// nothing was written.
std::int32_t WriteMailPerson(const std::string& name, const std::string& address, const std::string& rProject,
                             bool InsArcPrj) {
    OnErrorResumeNext on("cAddressbook.AddPersonbyStrMail");
    OwnDatabase own(on);
    if (!own.IsOpen()) return 0;
    // Record sets of no rows: a row added to a record set stands last in it,
    // so adding to one over a whole table would read the table first.
    auto open = [&](const char* table) {
        return on.Resume([&] {
            return own.db.OpenRecordset(std::string("Select * From ") + table + " Where False;", dao::dbOpenDynaset);
        });
    };
    dao::Recordset persons = open("PersonalData");
    dao::Recordset resources = open("Resources");
    dao::Recordset owners = open("ResourcesOwners");
    dao::Recordset projects = open("Projects");
    if (!persons || !resources || !owners || !projects) return 0;

    // The engine would refuse such a text only halfway through; telling it
    // first keeps the book as it was and says why.
    int size = 0;
    if (!Fits(persons, "FullName", name, on, size) || !Fits(resources, "ResourceString", address, on, size) ||
        !Fits(projects, "Project", rProject, on, size)) {
        UniMsgBox(WithNumber(LngText("cAddressbook.AddPersonbyStrMail", "TooLong",
                                     "The name, the e-mail address or the project is too long for the address "
                                     "book: at most %1 characters fit. Nothing was added."),
                             std::to_string(size)),
                  ui::vbExclamation);
        return 0;
    }

    // The person, its address and its project row stand or fall together:
    // a failure on the way leaves no person without the rest.
    std::int32_t person = 0;
    bool written = on.Do([&] {
        BookTransaction transaction(own.db);
        persons.AddNew();
        persons.SetValue("FullName", ValueConv::TextToField(name));
        // Counters are numbered at AddNew: read them before Update.
        person = ValueConv::ToLong(persons("Personal ID"));
        persons.Update();
        if (!address.empty()) {
            resources.AddNew();
            resources.SetValue("ResourceString", Variant(address));
            resources.SetValue("ResourceType", Variant(std::int64_t{2}));
            std::int32_t resource = ValueConv::ToLong(resources("Resource ID"));
            resources.Update();
            owners.AddNew();
            owners.SetValue("Owner ID", Variant(std::int64_t{person}));
            owners.SetValue("OwnerType", Variant(std::int64_t{0}));
            owners.SetValue("Resource ID", Variant(std::int64_t{resource}));
            owners.Update();
        }
        if (!rProject.empty()) {
            projects.AddNew();
            projects.SetValue("Owner ID", Variant(std::int64_t{person}));
            projects.SetValue("OwnerType", Variant(std::int64_t{0}));
            projects.SetValue("Project", ValueConv::TextToField(rProject));
            projects.SetValue("InsArcPrj", Variant(InsArcPrj));
            projects.Update();
        }
        transaction.Commit();
    });
    for (dao::Recordset* rs : {&persons, &resources, &owners, &projects}) on.Do([&] { rs->Close(); });
    return written ? person : 0;
}

}  // namespace

void cAddressbook::AddPersonbyStrMail(std::string& strMail, ui::DataControl*, ui::DataControl*, ui::DataControl*) {
    EnterCall();
    if (Blank(strMail)) return;
    OnErrorResumeNext on("cAddressbook.AddPersonbyStrMail");
    if (on.Resume([&] { return GetDatabasename(); }).empty()) return;

    // The address is looked up nowhere first: a sender already in the book
    // gets a second person, whom the user may merge or delete on the card.
    std::string address = ValueConv::MailAddressPart(strMail);
    std::string name = ValueConv::MailNamePart(strMail);
    if (name.empty()) name = address;
    // Punctuation alone (",", "<>") names nobody: a person with neither a
    // name nor an address would only be an empty row to clean up.
    if (name.empty()) return;

    std::int32_t person = WriteMailPerson(name, address, rProject, InsArcPrj);
    if (person != 0) ShowPersProp(person);
}

void cAddressbook::AddNewPerson() {
    EnterCall();
    std::int32_t person = NewPersonRecord(rProject, InsArcPrj);
    if (person != 0) ShowPersProp(person);
}

void cAddressbook::DeletePerson(std::int32_t Personal_ID, ui::DataControl*, ui::DataControl*, ui::DataControl*) {
    EnterCall();
    OnErrorResumeNext on("cAddressbook.DeletePerson");
    if (on.Resume([&] { return GetDatabasename(); }).empty()) return;
    OwnDatabase own(on);
    if (!own.IsOpen()) return;

    const std::string person = std::to_string(Personal_ID);
    bool found = on.Resume([&] {
        dao::Recordset rs = own.db.OpenRecordset(
            "Select [Personal ID] From PersonalData Where [Personal ID]=" + person + ";", dao::dbOpenSnapshot);
        bool there = !rs.IsEOF();
        rs.Close();
        return there;
    });
    if (!found) {
        UniMsgBox(WithNumber(LngText("cAddressbook.SelectPerson", "msg", "Person number %1 is not found!"), person),
                  ui::vbCritical);
        return;
    }
    // The person and all that hangs on it go in one transaction: a failure
    // on the way leaves the person whole, never rows of a person who is gone
    // nor a person who lost half its data.
    on.Do([&] {
        BookTransaction transaction(own.db);
        DeletePersonDataIn(own.db, Personal_ID);
        own.db.Execute("Delete From PersonalData Where [Personal ID]=" + person + ";");
        transaction.Commit();
    });
}

}  // namespace zelvo
