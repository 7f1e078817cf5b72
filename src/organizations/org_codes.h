// The three codes of an office object and the way between them.
//
// One object is named three ways, and the codes are not interchangeable:
// its owner type in the link tables (PhoneOwnerType: 1 unit, 2 job title,
// 4 employee), its kind for AddNewOfficeObject (OfficeObject: Org 0,
// SubDiv 1, JobTitle 4, employee 8), and the icon key of its row in every
// list ("Org", "SubDiv", "JobTitle", "Employee"; a person is "User").
#pragma once

#include <cstdint>
#include <string>

#include "platform/core/variant.h"

namespace zelvo {

inline constexpr const char* kIconUser = "User";
inline constexpr const char* kIconOrg = "Org";
inline constexpr const char* kIconSubDiv = "SubDiv";
inline constexpr const char* kIconJobTitle = "JobTitle";
inline constexpr const char* kIconEmployee = "Employee";

// The owner type of a row with the icon key `Icon`: "User" 0, "Org" and
// "SubDiv" 1, "JobTitle" 2, "Employee" 4, anything else (no text, an
// unknown key) 0. Keys are compared exactly, as the lists write them.
std::int32_t GetObjTypeByIcon(const Variant& Icon);

// The owner type of an OfficeObject: Org and SubDiv 1, JobTitle 2,
// employee 4; -1 for a value that is no OfficeObject.
std::int32_t OwnerTypeOfOfficeObject(std::int32_t ObjType);

// The icon key of an OfficeObject; "" for a value that is no OfficeObject.
std::string IconOfOfficeObject(std::int32_t ObjType);

// The icon key of a unit row: "Org" when it has no parent (0 or Null),
// else "SubDiv".
std::string IconOfUnit(std::int32_t ParentID);

}  // namespace zelvo
