#include "platform/vcard/vcard_photo.h"

#include "platform/vcard/vcard_ascii.h"

namespace zelvo::vcard {

std::string SniffImageType(std::string_view b) {
    auto starts = [&](std::string_view magic) { return b.substr(0, magic.size()) == magic; };
    if (starts("\xFF\xD8\xFF")) return "JPEG";
    if (starts("\x89PNG\r\n\x1A\n")) return "PNG";
    if (starts("GIF87a") || starts("GIF89a")) return "GIF";
    if (starts(std::string_view("II*\0", 4)) || starts(std::string_view("MM\0*", 4))) return "TIFF";
    if (starts("BM") && b.size() > 14) return "BMP";
    return {};
}

std::string NormalizeImageType(std::string_view declared) {
    std::string t = AsciiUpper(Trim(declared));
    if (t.starts_with("IMAGE/")) t.erase(0, 6);
    if (t.starts_with("X-")) t.erase(0, 2);
    if (t == "JPG" || t == "PJPEG") return "JPEG";
    if (t == "TIF") return "TIFF";
    if (t == "MS-BMP" || t == "BITMAP") return "BMP";
    // Only a plain word can be written back as a TYPE; anything else is noise.
    for (char c : t) {
        if (!((c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' || c == '+' || c == '.')) return {};
    }
    return t;
}

}  // namespace zelvo::vcard
