// RegisterJetRuntime: the JET collation and the jet_* functions the
// translated SQL calls, each behaving as the Jet expression service does.
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <string>

#include <sqlite3.h>

#include "platform/dao/jet/jet_sql.h"
#include "platform/dao/jet/like.h"
#include "platform/dao/jet/text_util.h"

namespace zelvo::dao::jet {

namespace {

constexpr const char* kInvalidCall = "Invalid procedure call or argument";

bool IsNull(sqlite3_value* v) { return sqlite3_value_type(v) == SQLITE_NULL; }

// A value as text the way Jet turns numbers into text: a whole double has no
// ".0", other doubles keep 15 significant digits.
std::string Text(sqlite3_value* v) {
    switch (sqlite3_value_type(v)) {
    case SQLITE_NULL: return {};
    case SQLITE_INTEGER: return std::to_string(sqlite3_value_int64(v));
    case SQLITE_FLOAT: {
        double d = sqlite3_value_double(v);
        if (std::isfinite(d) && d == std::floor(d) && std::fabs(d) < 1e15) {
            return std::to_string(static_cast<long long>(d));
        }
        char buf[40];
        std::snprintf(buf, sizeof buf, "%.15g", d);
        return buf;
    }
    default: {
        const auto* p = reinterpret_cast<const char*>(sqlite3_value_text(v));
        return p ? std::string(p, static_cast<std::size_t>(sqlite3_value_bytes(v))) : std::string();
    }
    }
}

std::string_view TextView(sqlite3_value* v, std::string& holder) {
    if (sqlite3_value_type(v) == SQLITE_TEXT) {
        const auto* p = reinterpret_cast<const char*>(sqlite3_value_text(v));
        return std::string_view(p ? p : "", static_cast<std::size_t>(sqlite3_value_bytes(v)));
    }
    holder = Text(v);
    return holder;
}

void ResultText(sqlite3_context* ctx, const std::string& s) {
    sqlite3_result_text(ctx, s.data(), static_cast<int>(s.size()), SQLITE_TRANSIENT);
}

// A whole number from a value, rounding half to even as CLng does; false
// when the value is not a number.
bool Whole(sqlite3_value* v, std::int64_t& out) {
    int t = sqlite3_value_type(v);
    if (t == SQLITE_INTEGER) {
        out = sqlite3_value_int64(v);
        return true;
    }
    double d;
    if (t == SQLITE_FLOAT) {
        d = sqlite3_value_double(v);
    } else {
        std::string s = Text(v);
        char* end = nullptr;
        d = std::strtod(s.c_str(), &end);
        if (s.empty() || end == s.c_str()) return false;
        while (*end == ' ') ++end;
        if (*end) return false;
    }
    if (!std::isfinite(d) || std::fabs(d) > 9.2e18) return false;
    out = static_cast<std::int64_t>(std::nearbyint(d));  // default rounding: half to even
    return true;
}

void Concat(sqlite3_context* ctx, int, sqlite3_value** v) {
    if (IsNull(v[0]) && IsNull(v[1])) {
        sqlite3_result_null(ctx);
        return;
    }
    ResultText(ctx, Text(v[0]) + Text(v[1]));
}

void Plus(sqlite3_context* ctx, int, sqlite3_value** v) {
    if (IsNull(v[0]) || IsNull(v[1])) {
        sqlite3_result_null(ctx);
        return;
    }
    int a = sqlite3_value_type(v[0]), b = sqlite3_value_type(v[1]);
    if (a == SQLITE_TEXT && b == SQLITE_TEXT) {
        ResultText(ctx, Text(v[0]) + Text(v[1]));
        return;
    }
    // A text beside a number is read as a number ("1" + 2 is 3); whole
    // numbers stay whole.
    bool whole = a != SQLITE_FLOAT && b != SQLITE_FLOAT;
    std::int64_t x = 0, y = 0, r = 0;
    if (whole && Whole(v[0], x) && Whole(v[1], y) && (a != SQLITE_TEXT || Text(v[0]).find('.') == std::string::npos) &&
        (b != SQLITE_TEXT || Text(v[1]).find('.') == std::string::npos) && !__builtin_add_overflow(x, y, &r)) {
        sqlite3_result_int64(ctx, r);
        return;
    }
    sqlite3_result_double(ctx, sqlite3_value_double(v[0]) + sqlite3_value_double(v[1]));
}

// Instr(start, s1, s2, compare): 1-based position of s2 in s1 from start, in
// characters; 0 when absent; compare 0 is binary, any other value textual.
void Instr(sqlite3_context* ctx, int, sqlite3_value** v) {
    std::int64_t start = 1, compare = 1;
    if (IsNull(v[0]) || !Whole(v[0], start) || start < 1) {
        sqlite3_result_error(ctx, kInvalidCall, -1);
        return;
    }
    if (IsNull(v[1]) || IsNull(v[2])) {
        sqlite3_result_null(ctx);
        return;
    }
    if (!IsNull(v[3]) && !Whole(v[3], compare)) compare = 1;
    std::string h1, h2;
    std::u32string s1 = DecodeUtf8(TextView(v[1], h1));
    std::u32string s2 = DecodeUtf8(TextView(v[2], h2));
    if (s1.empty() || static_cast<std::size_t>(start) > s1.size()) {
        sqlite3_result_int64(ctx, 0);
        return;
    }
    if (s2.empty()) {
        sqlite3_result_int64(ctx, start);
        return;
    }
    if (compare != 0) {
        s1 = FoldCase(std::move(s1));
        s2 = FoldCase(std::move(s2));
    }
    std::size_t at = s1.find(s2, static_cast<std::size_t>(start - 1));
    sqlite3_result_int64(ctx, at == std::u32string::npos ? 0 : static_cast<std::int64_t>(at) + 1);
}

// Mid(s, start[, length]) in characters.
void Mid(sqlite3_context* ctx, int argc, sqlite3_value** v) {
    if (IsNull(v[0])) {
        sqlite3_result_null(ctx);
        return;
    }
    std::int64_t start = 0, length = std::numeric_limits<std::int64_t>::max();
    if (IsNull(v[1]) || !Whole(v[1], start) || start < 1 ||
        (argc > 2 && !IsNull(v[2]) && (!Whole(v[2], length) || length < 0))) {
        sqlite3_result_error(ctx, kInvalidCall, -1);
        return;
    }
    std::string h;
    std::u32string s = DecodeUtf8(TextView(v[0], h));
    if (static_cast<std::size_t>(start) > s.size()) {
        ResultText(ctx, "");
        return;
    }
    std::size_t from = static_cast<std::size_t>(start - 1);
    std::size_t count = static_cast<std::size_t>(std::min<std::int64_t>(length, static_cast<std::int64_t>(s.size() - from)));
    ResultText(ctx, EncodeUtf8(std::u32string_view(s).substr(from, count)));
}

void LeftRight(sqlite3_context* ctx, sqlite3_value** v, bool left) {
    if (IsNull(v[0])) {
        sqlite3_result_null(ctx);
        return;
    }
    std::int64_t n = 0;
    if (IsNull(v[1]) || !Whole(v[1], n) || n < 0) {
        sqlite3_result_error(ctx, kInvalidCall, -1);
        return;
    }
    std::string h;
    std::u32string s = DecodeUtf8(TextView(v[0], h));
    std::size_t count = static_cast<std::size_t>(std::min<std::int64_t>(n, static_cast<std::int64_t>(s.size())));
    std::u32string_view sv(s);
    ResultText(ctx, EncodeUtf8(left ? sv.substr(0, count) : sv.substr(s.size() - count)));
}

void Left(sqlite3_context* ctx, int, sqlite3_value** v) { LeftRight(ctx, v, true); }
void Right(sqlite3_context* ctx, int, sqlite3_value** v) { LeftRight(ctx, v, false); }

void Len(sqlite3_context* ctx, int, sqlite3_value** v) {
    if (IsNull(v[0])) {
        sqlite3_result_null(ctx);
        return;
    }
    std::string h;
    sqlite3_result_int64(ctx, static_cast<std::int64_t>(DecodeUtf8(TextView(v[0], h)).size()));
}

void CaseMap(sqlite3_context* ctx, sqlite3_value** v, bool upper) {
    if (IsNull(v[0])) {
        sqlite3_result_null(ctx);
        return;
    }
    std::string h;
    std::u32string s = DecodeUtf8(TextView(v[0], h));
    for (char32_t& c : s) c = upper ? ToUpper(c) : ToLower(c);
    ResultText(ctx, EncodeUtf8(s));
}

void UCase(sqlite3_context* ctx, int, sqlite3_value** v) { CaseMap(ctx, v, true); }
void LCase(sqlite3_context* ctx, int, sqlite3_value** v) { CaseMap(ctx, v, false); }

void TrimSpaces(sqlite3_context* ctx, sqlite3_value** v, bool front, bool back) {
    if (IsNull(v[0])) {
        sqlite3_result_null(ctx);
        return;
    }
    std::string h;
    std::string_view s = TextView(v[0], h);
    while (front && !s.empty() && s.front() == ' ') s.remove_prefix(1);
    while (back && !s.empty() && s.back() == ' ') s.remove_suffix(1);
    ResultText(ctx, std::string(s));
}

void Trim(sqlite3_context* ctx, int, sqlite3_value** v) { TrimSpaces(ctx, v, true, true); }
void LTrim(sqlite3_context* ctx, int, sqlite3_value** v) { TrimSpaces(ctx, v, true, false); }
void RTrim(sqlite3_context* ctx, int, sqlite3_value** v) { TrimSpaces(ctx, v, false, true); }

// Asc takes a text: a number is its decimal text first, so Asc(124) is 49.
void Asc(sqlite3_context* ctx, int, sqlite3_value** v) {
    if (IsNull(v[0])) {
        sqlite3_result_null(ctx);
        return;
    }
    std::string h;
    std::u32string s = DecodeUtf8(TextView(v[0], h));
    if (s.empty()) {
        sqlite3_result_error(ctx, kInvalidCall, -1);
        return;
    }
    sqlite3_result_int64(ctx, static_cast<std::int64_t>(s[0]));
}

void Chr(sqlite3_context* ctx, int, sqlite3_value** v) {
    if (IsNull(v[0])) {
        sqlite3_result_null(ctx);
        return;
    }
    std::int64_t n = 0;
    if (!Whole(v[0], n) || n < 0 || n > 0x10FFFF || (n >= 0xD800 && n <= 0xDFFF)) {
        sqlite3_result_error(ctx, kInvalidCall, -1);
        return;
    }
    std::string out;
    AppendUtf8(out, static_cast<char32_t>(n));
    ResultText(ctx, out);
}

void CLng(sqlite3_context* ctx, int, sqlite3_value** v) {
    if (IsNull(v[0])) {
        sqlite3_result_null(ctx);
        return;
    }
    std::int64_t n = 0;
    if (!Whole(v[0], n)) {
        sqlite3_result_error(ctx, "Type mismatch", -1);
        return;
    }
    sqlite3_result_int64(ctx, n);
}

void CDbl(sqlite3_context* ctx, int, sqlite3_value** v) {
    if (IsNull(v[0])) {
        sqlite3_result_null(ctx);
        return;
    }
    sqlite3_result_double(ctx, sqlite3_value_double(v[0]));
}

void CStr(sqlite3_context* ctx, int, sqlite3_value** v) {
    if (IsNull(v[0])) {
        sqlite3_result_null(ctx);
        return;
    }
    ResultText(ctx, Text(v[0]));
}

// Val: the number at the head of a text, blanks skipped; 0 when none.
void Val(sqlite3_context* ctx, int, sqlite3_value** v) {
    std::string s;
    for (char c : Text(v[0]))
        if (c != ' ' && c != '\t') s += c;
    char* end = nullptr;
    double d = std::strtod(s.c_str(), &end);
    if (end == s.c_str()) d = 0;
    if (d == std::floor(d) && std::fabs(d) < 9e18) sqlite3_result_int64(ctx, static_cast<std::int64_t>(d));
    else sqlite3_result_double(ctx, d);
}

void IntegerOp(sqlite3_context* ctx, sqlite3_value** v, bool mod) {
    if (IsNull(v[0]) || IsNull(v[1])) {
        sqlite3_result_null(ctx);
        return;
    }
    std::int64_t a = 0, b = 0;
    if (!Whole(v[0], a) || !Whole(v[1], b)) {
        sqlite3_result_error(ctx, "Type mismatch", -1);
        return;
    }
    if (b == 0) {
        sqlite3_result_error(ctx, "Division by zero", -1);
        return;
    }
    if (b == -1) {  // avoids INT64_MIN / -1
        sqlite3_result_int64(ctx, mod ? 0 : -a);
        return;
    }
    sqlite3_result_int64(ctx, mod ? a % b : a / b);
}

void IntDiv(sqlite3_context* ctx, int, sqlite3_value** v) { IntegerOp(ctx, v, false); }
void Mod(sqlite3_context* ctx, int, sqlite3_value** v) { IntegerOp(ctx, v, true); }

void Pow(sqlite3_context* ctx, int, sqlite3_value** v) {
    if (IsNull(v[0]) || IsNull(v[1])) {
        sqlite3_result_null(ctx);
        return;
    }
    sqlite3_result_double(ctx, std::pow(sqlite3_value_double(v[0]), sqlite3_value_double(v[1])));
}

// Like, with the compiled pattern kept by SQLite between rows while the
// pattern argument stays the same.
void Like(sqlite3_context* ctx, int, sqlite3_value** v) {
    if (IsNull(v[0]) || IsNull(v[1])) {
        sqlite3_result_null(ctx);
        return;
    }
    auto* pattern = static_cast<LikePattern*>(sqlite3_get_auxdata(ctx, 1));
    if (!pattern) {
        std::string h;
        pattern = new LikePattern(TextView(v[1], h));
        sqlite3_set_auxdata(ctx, 1, pattern, [](void* p) { delete static_cast<LikePattern*>(p); });
        pattern = static_cast<LikePattern*>(sqlite3_get_auxdata(ctx, 1));
        if (!pattern) {  // SQLite could not keep it (out of memory) and has freed it
            std::string h2;
            LikePattern once(TextView(v[1], h2));
            std::string t;
            sqlite3_result_int(ctx, once.Matches(TextView(v[0], t)) ? 1 : 0);
            return;
        }
    }
    std::string t;
    sqlite3_result_int(ctx, pattern->Matches(TextView(v[0], t)) ? 1 : 0);
}

int CollationCallback(void*, int an, const void* a, int bn, const void* b) {
    return CompareText(std::string_view(static_cast<const char*>(a), static_cast<std::size_t>(an)),
                       std::string_view(static_cast<const char*>(b), static_cast<std::size_t>(bn)));
}

struct FunctionEntry {
    const char* name;
    int args;
    void (*fn)(sqlite3_context*, int, sqlite3_value**);
};

constexpr FunctionEntry kRuntime[] = {
    {"jet_concat", 2, Concat}, {"jet_plus", 2, Plus},   {"jet_instr", 4, Instr}, {"jet_mid", 2, Mid},
    {"jet_mid", 3, Mid},       {"jet_left", 2, Left},   {"jet_right", 2, Right}, {"jet_len", 1, Len},
    {"jet_ucase", 1, UCase},   {"jet_lcase", 1, LCase}, {"jet_trim", 1, Trim},   {"jet_ltrim", 1, LTrim},
    {"jet_rtrim", 1, RTrim},   {"jet_asc", 1, Asc},     {"jet_chr", 1, Chr},     {"jet_clng", 1, CLng},
    {"jet_cdbl", 1, CDbl},     {"jet_cstr", 1, CStr},   {"jet_val", 1, Val},     {"jet_intdiv", 2, IntDiv},
    {"jet_mod", 2, Mod},       {"jet_pow", 2, Pow},     {"jet_like", 2, Like},
};

}  // namespace

int RegisterJetRuntime(sqlite3* db) {
    int rc = sqlite3_create_collation_v2(db, kCollation, SQLITE_UTF8, nullptr, CollationCallback, nullptr);
    if (rc != SQLITE_OK) return rc;
    for (const FunctionEntry& f : kRuntime) {
        rc = sqlite3_create_function_v2(db, f.name, f.args, SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS,
                                        nullptr, f.fn, nullptr, nullptr, nullptr);
        if (rc != SQLITE_OK) return rc;
    }
    return SQLITE_OK;
}

}  // namespace zelvo::dao::jet
