// Books of the layouts that earlier versions wrote, made from nothing for the
// tests of their conversion.
#pragma once

#include <initializer_list>
#include <string>

#include "platform/dao/dbengine.h"

namespace zelvo::testing {

struct Col {
    const char* name;
    int type;
    int size = 0;
    bool required = false;
};

// Appends the table `name` with `cols`, then its Counter `counter` if given,
// as the book's own code adds one.
void MakeTable(const dao::Database& db, const std::string& name, std::initializer_list<Col> cols,
               const char* counter = nullptr);

// The earliest layout: e-mail addresses in a table of their own, projects
// keyed by person, organizations as one person's employer, an archive flag
// on the person, no other tables. Persons 1 `marker`, 2 "Bob", 3 "Cy";
// addresses ada@a.org, ada@b.org (1), bob@c.org (2); projects "A" (1),
// "A\B" (2), "Old" archived (3); employers "Acme" (1), a blank one (2),
// "Globex" (3). `marker` tells books apart.
void CreateEarliestBook(const std::string& path, const std::string& marker = "Ada");

// The old traits a book may carry alone.
enum OldTrait : unsigned {
    kOldEmails = 1,         // E-MailAdresses instead of Resources
    kOldProjects = 2,       // Projects keyed by Personal ID
    kOldOrganizations = 4,  // Organizations rows that carry a Personal ID
};

// A book of today's layout in which only the tables of `traits` have their
// old form, holding the rows of the earliest book.
void CreatePartlyOldBook(const std::string& path, unsigned traits);

}  // namespace zelvo::testing
