// One content line of a card, taken apart: [group.]NAME;PARAM…:VALUE.
//
// Parameters come in the forms of all three versions: TYPE=WORK,VOICE,
// TYPE=WORK;TYPE=VOICE, bare WORK (2.1), quoted values (4.0). All views point
// into the line the property was parsed from.
#pragma once

#include <string_view>

namespace zelvo::vcard {

enum class Transfer { None, QuotedPrintable, Base64 };

struct PropertyParam {
    std::string_view name;   // empty for a bare 2.1 parameter
    std::string_view value;  // as written, quotes included
};

struct Property {
    static constexpr int kMaxParams = 24;  // more are read past, not kept

    std::string_view group;
    bool hasGroup = false;  // a '.' stood before the name, even with nothing before it
    std::string_view name;
    PropertyParam params[kMaxParams];
    int paramCount = 0;
    std::string_view value;
    Transfer transfer = Transfer::None;
    std::string_view charset;  // empty when not given
    bool valueIsUri = false;   // VALUE=URI or VALUE=URL

    // True when a TYPE parameter or a bare parameter lists `type`
    // (ignoring case, quotes and blanks).
    bool HasType(std::string_view type) const;

    // The first value of parameter `name`, unquoted, or "".
    std::string_view Param(std::string_view name) const;

    // The first TYPE value (or bare parameter) that is not an encoding, a
    // charset or PREF: the image format of a PHOTO, for instance.
    std::string_view FirstPlainType() const;
};

// Parses `line`. Returns false when it holds no ':' outside quotes, i.e. is
// no property at all.
bool ParseProperty(std::string_view line, Property& p);

}  // namespace zelvo::vcard
