#include "platform/vcard/vcard_charset.h"

#include <unicode/ucnv.h>
#include <unicode/ustring.h>

#include "platform/vcard/vcard_ascii.h"

namespace zelvo::vcard {

CharsetDecoder::~CharsetDecoder() {
    for (auto& e : open_) {
        if (e.converter) ucnv_close(e.converter);
    }
}

UConverter* CharsetDecoder::Open(std::string_view charset) {
    for (auto& e : open_) {
        if (IEquals(e.name, charset)) return e.converter;
    }
    std::string name(charset);
    UErrorCode status = U_ZERO_ERROR;
    UConverter* c = ucnv_open(name.c_str(), &status);
    if (U_FAILURE(status)) c = nullptr;
    // A file could name endless made-up charsets; remember only a few.
    if (open_.size() < 32) open_.push_back({std::move(name), c});
    else if (c) {
        ucnv_close(open_.back().converter);
        open_.back() = {std::move(name), c};
    }
    return c;
}

bool CharsetDecoder::AppendUtf8(std::string_view charset, std::string_view bytes, std::string& out) {
    UConverter* c = Open(charset);
    if (!c) return false;
    if (bytes.empty()) return true;
    ucnv_reset(c);
    // Every byte gives at most two UTF-16 units (a surrogate pair).
    wide_.resize(bytes.size() * 2 + 2);
    UErrorCode status = U_ZERO_ERROR;
    int32_t n = ucnv_toUChars(c, wide_.data(), static_cast<int32_t>(wide_.size()), bytes.data(),
                              static_cast<int32_t>(bytes.size()), &status);
    if (U_FAILURE(status)) return false;
    std::size_t base = out.size();
    out.resize(base + static_cast<std::size_t>(n) * 3 + 1);
    int32_t written = 0;
    status = U_ZERO_ERROR;
    u_strToUTF8WithSub(out.data() + base, static_cast<int32_t>(out.size() - base), &written,
                       wide_.data(), n, 0xFFFD, nullptr, &status);
    if (U_FAILURE(status)) {
        out.resize(base);
        return false;
    }
    out.resize(base + static_cast<std::size_t>(written));
    return true;
}

bool IsUtf8Charset(std::string_view charset) {
    return IEquals(charset, "UTF-8") || IEquals(charset, "UTF8") || IEquals(charset, "US-ASCII") ||
           IEquals(charset, "ASCII");
}

bool DecodeUtf16File(std::string_view bytes, std::string& out) {
    if (bytes.size() < 2) return false;
    auto b = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
    const char* from = nullptr;
    std::size_t skip = 0;
    if (b(0) == 0xFF && b(1) == 0xFE) { from = "UTF-16LE"; skip = 2; }
    else if (b(0) == 0xFE && b(1) == 0xFF) { from = "UTF-16BE"; skip = 2; }
    else if (bytes.size() >= 4 && b(0) == 0 && b(1) != 0 && b(2) == 0 && b(3) != 0) from = "UTF-16BE";
    else if (bytes.size() >= 4 && b(0) != 0 && b(1) == 0 && b(2) != 0 && b(3) == 0) from = "UTF-16LE";
    if (!from) return false;
    std::string_view body = bytes.substr(skip);
    body = body.substr(0, body.size() & ~std::size_t{1});  // a cut-off last unit is dropped, not fatal
    // A UTF-16 unit becomes at most three UTF-8 bytes.
    out.assign(body.size() / 2 * 3 + 4, '\0');
    UErrorCode status = U_ZERO_ERROR;
    int32_t n = ucnv_convert("UTF-8", from, out.data(), static_cast<int32_t>(out.size()), body.data(),
                             static_cast<int32_t>(body.size()), &status);
    if (U_FAILURE(status)) {
        out.clear();
        return false;
    }
    out.resize(static_cast<std::size_t>(n));
    return true;
}

}  // namespace zelvo::vcard
