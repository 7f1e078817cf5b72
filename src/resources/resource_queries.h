// The SQL texts by which the windows read an owner's resources and the
// link rows behind them.
//
// A resource is one row of Resources (the text and its kind); a link row of
// ResourcesOwners binds it to an owner, the pair [Owner ID] and [OwnerType].
// Every list query selects all columns of Resources (as the book has them
// now, read from the file) and then ResourcesOwners.[Owner ID] and
// [OwnerType], so that a list row can tell whose resource it shows.
//
// GetOwnerResourcesQuery, the base of most of them, lives with the persons
// list's queries (persons_query.h), which needed it first.
#pragma once

#include <cstdint>
#include <string>

#include "personslist/persons_query.h"

namespace zelvo {

// The mail addresses of an owner.
std::string SqlEmails(std::int32_t OwnerID, std::int32_t OwnerType);
// The web pages of a person.
std::string SqlPersonWebs(std::int32_t PersonalID);

// The phone list of a person's card: the person's own phones, and every
// resource (of any kind) owned by the address node `AddressID` selected on
// the card. A node's phone so shows on the card of everyone who lives there.
// AddressID 0 matches no node.
std::string SqlHomePhones(std::int32_t PersonalID, std::int32_t AddressID);

// The resources of kind `ResType` of a job: those of the employee row, of the
// room the employee sits in and of the job title. What belongs to the
// organization itself is not read.
std::string SqlJobResources(std::int32_t EmployeeID, std::int32_t RoomID, std::int32_t JobID, std::int32_t ResType);
std::string SqlJobPhones(std::int32_t EmployeeID, std::int32_t RoomID, std::int32_t JobID);
std::string SqlJobWebs(std::int32_t EmployeeID, std::int32_t RoomID, std::int32_t JobID);
std::string SqlJobEmails(std::int32_t EmployeeID, std::int32_t RoomID, std::int32_t JobID);

// All columns of the row of `Table` whose `KeyColumn` is `ID`. For ID 0 the
// rows whose key is Null match too (a key never written reads as 0).
std::string SqlRecordByID(const std::string& Table, const std::string& KeyColumn, std::int32_t ID);
std::string SqlResourceByID(std::int32_t ResourceID);

// The link rows of a person, including links whose [OwnerType] is Null
// (rows written by hand or by old versions count as the person's).
std::string SqlPersonLinks(std::int32_t PersonalID);
// The link rows of any owner.
std::string SqlOwnerLinks(std::int32_t OwnerID, std::int32_t OwnerType);

}  // namespace zelvo
