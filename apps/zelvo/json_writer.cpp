#include "json_writer.h"

#include <cstdio>

namespace zelvo::cli {

std::string JsonString(std::string_view text) {
    std::string out = "\"";
    for (unsigned char c : text) {
        switch (c) {
            case '"': out += "\\\""; break;
            case '\\': out += "\\\\"; break;
            case '\n': out += "\\n"; break;
            case '\r': out += "\\r"; break;
            case '\t': out += "\\t"; break;
            default:
                if (c < 0x20) {
                    char buf[8];
                    std::snprintf(buf, sizeof buf, "\\u%04x", c);
                    out += buf;
                } else {
                    out += static_cast<char>(c);
                }
        }
    }
    return out + "\"";
}

namespace {
std::string Base64(const Bytes& b) {
    static const char* abc = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string out;
    size_t i = 0;
    for (; i + 2 < b.size(); i += 3) {
        unsigned v = (b[i] << 16) | (b[i + 1] << 8) | b[i + 2];
        out += abc[v >> 18]; out += abc[(v >> 12) & 63]; out += abc[(v >> 6) & 63]; out += abc[v & 63];
    }
    if (i + 1 == b.size()) {
        unsigned v = b[i] << 16;
        out += abc[v >> 18]; out += abc[(v >> 12) & 63]; out += "==";
    } else if (i + 2 == b.size()) {
        unsigned v = (b[i] << 16) | (b[i + 1] << 8);
        out += abc[v >> 18]; out += abc[(v >> 12) & 63]; out += abc[(v >> 6) & 63]; out += '=';
    }
    return out;
}
}  // namespace

std::string JsonValue(const Variant& v) {
    switch (v.kind()) {
        case Variant::Kind::Null: return "null";
        case Variant::Kind::Boolean: return v.boolean() ? "true" : "false";
        case Variant::Kind::Integer:
        case Variant::Kind::Double: return v.AsText();
        case Variant::Kind::Text: return JsonString(v.text());
        case Variant::Kind::Bytes: return JsonString(Base64(v.bytes()));
    }
    return "null";
}

}  // namespace zelvo::cli
