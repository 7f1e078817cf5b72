// CompareText, the JET collation: ICU's root collation at secondary strength
// (case does not count, accents do), with an exact fast path for ASCII.
//
// The collation runs inside SQLite's sorts and index lookups, so it must be
// one consistent total order and it must be quick. Most of a book's text is
// ASCII; for two ASCII texts we compare per-character primary ranks that are
// read off the ICU collator itself at start-up, so both paths give the same
// order (a test holds them to it on random strings). Control characters are
// ignorable in ICU and have rank 0 here, skipped alike.
#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <unicode/ucol.h>
#include <unicode/ustring.h>

#include "platform/dao/jet/jet_sql.h"
#include "platform/dao/jet/text_util.h"

namespace zelvo::dao::jet {

namespace {

class JetCollator {
public:
    JetCollator() {
        UErrorCode status = U_ZERO_ERROR;
        collator_ = ucol_open("", &status);
        if (U_FAILURE(status) || !collator_) throw std::runtime_error("ICU root collator unavailable");
        ucol_setStrength(collator_, UCOL_SECONDARY);
        DeriveAsciiRanks();
    }
    ~JetCollator() { ucol_close(collator_); }

    int Compare(std::string_view a, std::string_view b) const {
        if (IsAscii(a) && IsAscii(b)) return CompareAscii(a, b);
        return Icu(a, b);
    }

    int Icu(std::string_view a, std::string_view b) const {
        UErrorCode status = U_ZERO_ERROR;
        UCollationResult r = ucol_strcollUTF8(collator_, a.data(), static_cast<int32_t>(a.size()), b.data(),
                                              static_cast<int32_t>(b.size()), &status);
        if (U_FAILURE(status)) return a.compare(b) < 0 ? -1 : (a == b ? 0 : 1);
        return r == UCOL_LESS ? -1 : (r == UCOL_EQUAL ? 0 : 1);
    }

    std::string Key(std::string_view text) const {
        // The collator takes UTF-16; a bad UTF-8 sequence becomes U+FFFD, as
        // the comparison of UTF-8 treats it.
        UChar small[256];
        std::vector<UChar> large;
        UChar* u = small;
        int32_t length = 0;
        UErrorCode status = U_ZERO_ERROR;
        u_strFromUTF8WithSub(small, 256, &length, text.data(), static_cast<int32_t>(text.size()), 0xFFFD, nullptr,
                             &status);
        if (status == U_BUFFER_OVERFLOW_ERROR) {
            large.resize(static_cast<std::size_t>(length));
            status = U_ZERO_ERROR;
            u_strFromUTF8WithSub(large.data(), length, &length, text.data(), static_cast<int32_t>(text.size()),
                                 0xFFFD, nullptr, &status);
            u = large.data();
        }
        if (U_FAILURE(status)) return std::string(text);
        std::string key(64, '\0');
        int32_t size = ucol_getSortKey(collator_, u, length, reinterpret_cast<uint8_t*>(key.data()),
                                       static_cast<int32_t>(key.size()));
        if (size > static_cast<int32_t>(key.size())) {
            key.resize(static_cast<std::size_t>(size));
            size = ucol_getSortKey(collator_, u, length, reinterpret_cast<uint8_t*>(key.data()), size);
        }
        key.resize(size > 0 ? static_cast<std::size_t>(size - 1) : 0);  // without the closing zero byte
        return key;
    }

private:
    int CompareAscii(std::string_view a, std::string_view b) const {
        std::size_t i = 0, j = 0;
        for (;;) {
            while (i < a.size() && rank_[static_cast<unsigned char>(a[i])] == 0) ++i;
            while (j < b.size() && rank_[static_cast<unsigned char>(b[j])] == 0) ++j;
            if (i == a.size() || j == b.size()) return (i == a.size() ? 0 : 1) - (j == b.size() ? 0 : 1);
            uint16_t x = rank_[static_cast<unsigned char>(a[i])], y = rank_[static_cast<unsigned char>(b[j])];
            if (x != y) return x < y ? -1 : 1;
            ++i;
            ++j;
        }
    }

    void DeriveAsciiRanks() {
        std::vector<char> chars;
        for (int c = 0; c < 128; ++c) {
            char ch = static_cast<char>(c);
            if (Icu(std::string_view(&ch, 1), std::string_view()) == 0) {
                rank_[c] = 0;  // ignorable
            } else {
                chars.push_back(ch);
            }
        }
        std::stable_sort(chars.begin(), chars.end(), [this](char x, char y) {
            return Icu(std::string_view(&x, 1), std::string_view(&y, 1)) < 0;
        });
        uint16_t rank = 0;
        for (std::size_t k = 0; k < chars.size(); ++k) {
            if (k == 0 || Icu(std::string_view(&chars[k - 1], 1), std::string_view(&chars[k], 1)) != 0) ++rank;
            rank_[static_cast<unsigned char>(chars[k])] = rank;
        }
    }

    UCollator* collator_ = nullptr;
    std::array<uint16_t, 128> rank_{};
};

const JetCollator& Collator() {
    static const JetCollator instance;
    return instance;
}

}  // namespace

int CompareText(std::string_view a, std::string_view b) { return Collator().Compare(a, b); }

std::string CollationKey(std::string_view text) { return Collator().Key(text); }

// The ICU path alone, for the test that holds the fast path to it.
int CompareTextWithIcu(std::string_view a, std::string_view b) { return Collator().Icu(a, b); }

}  // namespace zelvo::dao::jet
