// The vCard writer: one card → vCard 3.0 text.
//
// What other programs read without complaint: UTF-8, CRLF line ends, lines
// folded at 75 octets (never inside a UTF-8 character), text escaped,
// the photo as PHOTO;ENCODING=b;TYPE=<ImageType>. FN and N are always
// written, as 3.0 requires, even when empty. Empty phones, e-mail addresses
// and web pages are left out; everything else the content holds is written,
// so that reading the text back gives the same content.
#pragma once

#include <string>

#include "platform/vcard/vcard_content.h"

namespace zelvo::vcard {

std::string WriteVCard(const VCardContent& card);

}  // namespace zelvo::vcard
