// Character sets through ICU.
//
// Text in a card may be in any charset its CHARSET parameter names
// (windows-1251, ISO-8859-x, KOI8-R, Shift_JIS, …); the book keeps UTF-8.
// A CharsetDecoder keeps the converters it has opened, so a file of many
// cards in one legacy charset opens that converter once.
#pragma once

#include <string>
#include <string_view>
#include <vector>

struct UConverter;

namespace zelvo::vcard {

class CharsetDecoder {
public:
    CharsetDecoder() = default;
    ~CharsetDecoder();
    CharsetDecoder(const CharsetDecoder&) = delete;
    CharsetDecoder& operator=(const CharsetDecoder&) = delete;

    // Appends `bytes`, read in `charset`, to `out` as UTF-8. Bytes that have
    // no meaning in the charset become U+FFFD. Returns false, leaving `out`
    // untouched, when ICU does not know the charset.
    bool AppendUtf8(std::string_view charset, std::string_view bytes, std::string& out);

private:
    UConverter* Open(std::string_view charset);
    struct Entry {
        std::string name;
        UConverter* converter;  // nullptr: ICU does not know the name
    };
    std::vector<Entry> open_;
    std::u16string wide_;  // scratch, reused
};

// True for the names of UTF-8 and of plain ASCII, whose bytes the reader
// takes as they are.
bool IsUtf8Charset(std::string_view charset);

// The text of a whole file as UTF-8 when the file is UTF-16: by its byte
// order mark, or — for the programs that write UTF-16 without one — by the
// zero bytes of its first ASCII characters. Returns false for anything else
// (the file is then read byte by byte). A UTF-8 byte order mark is not
// handled here.
bool DecodeUtf16File(std::string_view bytes, std::string& out);

}  // namespace zelvo::vcard
