// VCardContent: everything one business card holds that the book uses.
//
// The reader fills one per card of a file, the writer turns one into text,
// and VCardDocument shows one to its callers. The name fields carry the
// book's meanings, not vCard's: `FirstName` is the family name (N's first
// part), `MiddleName` the given name (N's second), `SurName` the patronymic
// or other additional names (N's third).
#pragma once

#include <string>

#include "platform/vcard/vcard_addresses.h"
#include "platform/vcard/vcard_photo.h"
#include "platform/vcard/vcard_resources.h"
#include "platform/vcard/vcard_text_list.h"

namespace zelvo::vcard {

struct VCardContent {
    std::string FullName;    // FN
    std::string FirstName;   // N: family name
    std::string MiddleName;  // N: given name
    std::string SurName;     // N: additional names
    std::string Title;       // TITLE, the job title
    VCardTextList Organization;  // ORG, top level first
    VCardPhones Phones;          // TEL
    VCardEmails Emails;          // EMAIL
    VCardUrls Urls;              // URL
    VCardAddresses Addresses;    // ADR
    VCardPhoto Photo;            // PHOTO

    friend bool operator==(const VCardContent&, const VCardContent&) = default;
};

}  // namespace zelvo::vcard
