// VCardPhoto: the card's picture as raw bytes.
//
// `Data` holds the image file's bytes one byte to a character (a string of
// raw bytes, not text). `ImageType` names the format in upper case as vCard
// writes it ("JPEG", "PNG", "GIF", "TIFF", "BMP"), or is empty when neither
// the card nor the bytes tell. Bytes that are no known image are still kept:
// whether they make a picture is the caller's question.
#pragma once

#include <string>
#include <string_view>

namespace zelvo::vcard {

class VCardPhoto {
public:
    const std::string& Data() const { return data_; }
    void SetData(std::string bytes) { data_ = std::move(bytes); }
    const std::string& ImageType() const { return type_; }
    void SetImageType(std::string type) { type_ = std::move(type); }

    friend bool operator==(const VCardPhoto&, const VCardPhoto&) = default;

private:
    std::string data_;
    std::string type_;
};

// The format of an image by its first bytes: "JPEG", "PNG", "GIF", "TIFF",
// "BMP", or "" when the bytes are none of these.
std::string SniffImageType(std::string_view bytes);

// The upper-case short name for a declared type: "jpeg", "image/jpeg",
// "JPG" → "JPEG"; "image/png" → "PNG"; an unknown name is upper-cased and kept
// (without an "image/" prefix) so that it can be written back, as long as it
// is one word of letters, digits and "-+."; anything else gives "".
std::string NormalizeImageType(std::string_view declared);

}  // namespace zelvo::vcard
