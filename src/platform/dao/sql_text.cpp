#include "platform/dao/sql_text.h"

#include <cctype>
#include <cstdio>

namespace zelvo::dao::detail {

namespace {

// Calls `onParameter(n)` for each parameter ?N outside quotes and copies
// everything else; shared by the two rewrites below.
template <class F>
std::string RewriteParameters(std::string_view sql, F onParameter) {
    std::string out;
    out.reserve(sql.size() + 8);
    for (size_t i = 0; i < sql.size();) {
        char c = sql[i];
        if (c == '"' || c == '\'' || c == '[' || c == '`') {
            char close = c == '[' ? ']' : c;
            size_t j = i + 1;
            while (j < sql.size()) {
                if (sql[j] == close) {
                    if (close != ']' && j + 1 < sql.size() && sql[j + 1] == close) { j += 2; continue; }
                    break;
                }
                ++j;
            }
            out.append(sql.substr(i, j + 1 - i));
            i = j + 1;
            continue;
        }
        if (c == '?') {
            size_t j = i + 1;
            while (j < sql.size() && std::isdigit(static_cast<unsigned char>(sql[j]))) ++j;
            int n = j > i + 1 ? std::stoi(std::string(sql.substr(i + 1, j - i - 1))) : 1;
            out += onParameter(n);
            i = j;
            continue;
        }
        out += c;
        ++i;
    }
    return out;
}

}  // namespace

std::string ShiftParameters(std::string_view sql, int offset) {
    return RewriteParameters(sql, [&](int n) { return "?" + std::to_string(n + offset); });
}

std::string SqlLiteral(const Variant& v) {
    switch (v.kind()) {
        case Variant::Kind::Null: return "NULL";
        case Variant::Kind::Boolean: return v.boolean() ? "-1" : "0";
        case Variant::Kind::Integer: return std::to_string(v.integer());
        case Variant::Kind::Double: {
            char buf[64];
            std::snprintf(buf, sizeof buf, "%.17g", v.real());
            return buf;
        }
        case Variant::Kind::Bytes: {
            static const char* hex = "0123456789ABCDEF";
            std::string out = "X'";
            for (auto b : v.bytes()) { out += hex[b >> 4]; out += hex[b & 15]; }
            return out + "'";
        }
        case Variant::Kind::Text: {
            std::string out = "'";
            for (char c : v.text()) {
                if (c == '\'') out += '\'';
                out += c;
            }
            return out + "'";
        }
    }
    return "NULL";
}

std::string InlineParameters(std::string_view sql, const std::vector<Variant>& literals) {
    return RewriteParameters(sql, [&](int n) {
        return n >= 1 && static_cast<size_t>(n) <= literals.size() ? SqlLiteral(literals[static_cast<size_t>(n - 1)])
                                                                    : std::string("NULL");
    });
}

}  // namespace zelvo::dao::detail
