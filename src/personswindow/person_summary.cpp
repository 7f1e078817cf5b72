#include "personswindow/person_summary.h"

#include "addresses/address_by_owner.h"
#include "addresses/standard_address.h"
#include "organizations/org_model.h"
#include "organizations/org_sql.h"
#include "personslist/lvw_add_persons.h"
#include "personslist/persons_query.h"
#include "photos/db_photo.h"
#include "platform/core/error.h"
#include "platform/core/value_conv.h"
#include "projects/project_sql.h"
#include "resources/resource_queries.h"

namespace zelvo {

namespace {

constexpr std::int32_t kPerson = 0;
constexpr std::int32_t kWeb = 1, kEmail = 2;

// Runs `each` on every row of `sql`, in the order of the record set.
template <class F>
void ForEachRow(const dao::Database& db, const std::string& sql, const OnErrorResumeNext& on, F&& each) {
    dao::Recordset rs = on.Resume([&] { return db.OpenRecordset(sql, dao::dbOpenDynaset); });
    if (!rs) return;
    on.Do([&] {
        for (; !rs.IsEOF(); rs.MoveNext()) each(rs);
    });
    on.Do([&] { rs.Close(); });
}

void AddResourceTexts(const dao::Database& db, const std::string& sql, std::vector<std::string>& into,
                      const OnErrorResumeNext& on) {
    ForEachRow(db, sql, on, [&](dao::Recordset& rs) {
        std::string text = ValueConv::ToText(rs("ResourceString"));
        if (!text.empty()) into.push_back(std::move(text));
    });
}

std::string ListText(const dao::Database& db, std::int32_t id, const OnErrorResumeNext& on) {
    // The list's own rule for a person's text, so that the summary names
    // the person as the row does.
    dao::Recordset rs = on.Resume([&] {
        return db.OpenRecordset(SqlRecordByID("PersonalData", "Personal ID", id), dao::dbOpenDynaset);
    });
    if (!rs) return {};
    ui::ListView list;
    on.Do([&] { LvwAddPersons2(list, rs, -1, Variant("User")); });
    on.Do([&] { rs.Close(); });
    return list.ListItems().Count() > 0 ? list.ListItems().Item(1).Text() : std::string();
}

void ReadHome(const dao::Database& db, std::int32_t id, PersonSummary& s, const OnErrorResumeNext& on) {
    std::int32_t addressId = 0;
    dao::Recordset bindings =
        on.Resume([&] { return db.OpenRecordset(SqlAddressBindings(id, kPerson), dao::dbOpenDynaset); });
    if (bindings) {
        on.Do([&] {
            if (!bindings.IsEOF()) addressId = ValueConv::ToLong(bindings("Address ID"));
        });
        on.Do([&] { bindings.Close(); });
    }
    // The home phones come with the address: a person with no address
    // shows none, as the card's home tab does.
    if (addressId == 0) return;
    s.HomePhones = JoinResourceTexts(db, on.Resume([&] { return SqlHomePhones(id, addressId); }), ",   ");
    StandardAddress walker;
    on.Do([&] { walker.SetRecordset(db.OpenRecordset("PostAddresses", dao::dbOpenDynaset)); });
    s.Address = on.Resume([&] { return walker.GetFullAddress(addressId); });
    on.Do([&] { walker.Recordset().Close(); });
}

void ReadJob(const dao::Database& db, std::int32_t id, PersonSummary& s, const OnErrorResumeNext& on) {
    bool found = false;
    std::string title;
    std::int32_t unit = 0, employee = 0, job = 0;
    dao::Recordset rs = on.Resume([&] { return db.OpenRecordset(SqlPersonJobs(id), dao::dbOpenDynaset); });
    if (!rs) return;
    on.Do([&] {
        // Only the first job: the summary has room for one.
        if (rs.IsEOF()) return;
        found = true;
        title = ValueConv::ToText(rs("JobTitle"));
        unit = ValueConv::ToLong(rs("Organization ID"));
        employee = ValueConv::ToLong(rs("Employee ID"));
        job = ValueConv::ToLong(rs("Job ID"));
    });
    on.Do([&] { rs.Close(); });
    if (!found) return;

    // The job row names no room; the room's resources stay on the card.
    constexpr std::int32_t kNoRoom = 0;
    s.OrgPhones = JoinResourceTexts(db, on.Resume([&] { return SqlJobPhones(employee, kNoRoom, job); }), ", ");

    std::string subdivisions, organization;
    std::int32_t top = 0;
    dao::Recordset units = on.Resume([&] { return db.OpenRecordset("Organizations", dao::dbOpenDynaset); });
    if (units) {
        GetOrgPath(unit, units, subdivisions, organization, top);
        on.Do([&] { units.Close(); });
    }
    for (const std::string* part : {&organization, &subdivisions, &title}) {
        if (part->empty()) continue;
        if (!s.Job.empty()) s.Job += ", ";
        s.Job += *part;
    }

    AddResourceTexts(db, on.Resume([&] { return SqlJobEmails(employee, kNoRoom, job); }), s.Emails, on);
    AddResourceTexts(db, on.Resume([&] { return SqlJobWebs(employee, kNoRoom, job); }), s.Webs, on);
}

}  // namespace

std::string JoinResourceTexts(const dao::Database& db, const std::string& sql, const std::string& separator) {
    OnErrorResumeNext on("PersonSummary.JoinResourceTexts");
    std::vector<std::string> texts;
    if (!sql.empty()) AddResourceTexts(db, sql, texts, on);
    std::string joined;
    for (const std::string& t : texts) joined += (joined.empty() ? "" : separator) + t;
    return joined;
}

PersonSummary ReadPersonSummary(const dao::Database& db, std::int32_t Personal_ID, const SummaryParts& parts) {
    OnErrorResumeNext on("PersonSummary.Read");
    PersonSummary s;
    s.PersonalID = Personal_ID;
    if (!db.IsOpen()) return s;
    if (parts.name) s.Name = ListText(db, Personal_ID, on);
    if (parts.projects)
        ForEachRow(db, PersonProjectsSQL(Personal_ID), on, [&](dao::Recordset& rs) {
            s.Projects.push_back({ValueConv::ToText(rs("Project")), ValueConv::ToBool(rs("InsArcPrj"))});
        });
    ReadHome(db, Personal_ID, s, on);

    // One reading of the column list serves both lists.
    const std::string columns = on.Resume([&] { return TableColumnList("Resources", db); });
    if (!columns.empty()) {
        AddResourceTexts(db, GetOwnerResourcesQuery(columns, Personal_ID, kPerson, kEmail), s.Emails, on);
        AddResourceTexts(db, GetOwnerResourcesQuery(columns, Personal_ID, kPerson, kWeb), s.Webs, on);
    }
    ReadJob(db, Personal_ID, s, on);

    if (parts.photos && parts.photos->ScaledPhoto()) {
        bool found = false;
        parts.photos->LoadPersonPhoto(Personal_ID, found);
        if (found) s.Photo = parts.photos->ScaledPhoto()->Image;
    }
    return s;
}

}  // namespace zelvo
