// PersonSummary: what the address book window shows beside its list about
// the selected person, read from the book without a window, so that the
// window and `zelvo person show` show the same thing.
//
// What goes where:
//   Name        the text of the person's row in a list (FullName, or else
//               the three name parts)
//   Address     the first postal address bound to the person, on one line
//   HomePhones  with an address only: the person's phones and those of
//               that address node, joined by "," and three blanks
//   Job         the first job only: the top organization, the subdivisions
//               down to the job's unit, the job title, ", " between the
//               non-empty ones
//   OrgPhones   the phones of that employee row and of its job title,
//               joined by ", " (the job row names no room, so a room's
//               phones are not among them)
//   Emails      the person's own addresses, then those of the job
//   Webs        the same for web pages
//   Projects    the person's project rows, both sides, in the book's order
//   Photo       the newest photo, scaled into the box the caller gave
//
// Every part is read on its own and a part that fails to read stays empty:
// a person with no address and no job has empty texts, and nobody is told.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/dao/database.h"
#include "platform/imaging/picture.h"

namespace zelvo {

class dbPhoto;

struct PersonSummary {
    struct Project {
        std::string Path;
        bool Archive = false;
    };

    std::int32_t PersonalID = 0;
    std::string Name;
    std::string Address;
    std::string HomePhones;
    std::string Job;
    std::string OrgPhones;
    std::vector<std::string> Emails;
    std::vector<std::string> Webs;
    std::vector<Project> Projects;
    std::shared_ptr<imaging::Picture> Photo;
};

// Which parts to read. The window fills the name from its row and the
// projects from a record set it keeps open, so it leaves those out.
struct SummaryParts {
    bool name = true;
    bool projects = true;
    // Read through this dbPhoto (its two picture boxes set); null: no photo.
    dbPhoto* photos = nullptr;
};

// Reads the summary of `Personal_ID` from the open book `db`. A person who
// is not in the book gives an empty summary.
PersonSummary ReadPersonSummary(const dao::Database& db, std::int32_t Personal_ID, const SummaryParts& parts = {});

// The text of a resource list's rows joined by `separator`, empty texts
// left out: the phone texts of the summary.
std::string JoinResourceTexts(const dao::Database& db, const std::string& sql, const std::string& separator);

}  // namespace zelvo
