// The SQL texts of the photo lookups. Each photo query gives a person's rows
// newest first, so its first row is the photo to show.
#pragma once

#include <cstdint>
#include <string>

#include "platform/dao/database.h"

namespace zelvo {

// [Personal ID] and [Photo] of the person's photos, newest first.
std::string SqlPersonPhotos(std::int32_t PersonalID);

// The photos of the person who owns the mail address `Mail` (owner type 0),
// with all columns of Resources, Photo and PersonalData; newest first. The
// column lists are read through `db`. The address goes between double
// quotes with any quote in it doubled, so no text changes the statement.
std::string SqlPhotoByPersonMail(const std::string& Mail, const dao::Database& db);

// The same for an address owned by an employee row (owner type 4): the
// photos of that employee's person, with the columns of Employees too.
std::string SqlPhotoByEmployeeMail(const std::string& Mail, const dao::Database& db);

}  // namespace zelvo
