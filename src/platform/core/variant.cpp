#include "platform/core/variant.h"

#include <charconv>
#include <cmath>
#include <cstdio>

namespace zelvo {

namespace {

bool ParseNumber(const std::string& s, double& out) {
    size_t b = s.find_first_not_of(" \t");
    size_t e = s.find_last_not_of(" \t");
    if (b == std::string::npos) return false;
    const char* first = s.data() + b;
    const char* last = s.data() + e + 1;
    auto [p, ec] = std::from_chars(first, last, out);
    return ec == std::errc{} && p == last;
}

std::string FormatDouble(double d) {
    if (std::isfinite(d) && d == std::floor(d) && std::fabs(d) < 1e15) {
        return std::to_string(static_cast<long long>(d));
    }
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.15g", d);
    return buf;
}

}  // namespace

std::int64_t Variant::AsInteger() const {
    switch (kind()) {
        case Kind::Null: return 0;
        case Kind::Integer: return integer();
        case Kind::Double: return static_cast<std::int64_t>(std::nearbyint(real()));
        case Kind::Boolean: return boolean() ? -1 : 0;
        case Kind::Text: {
            double d = 0;
            if (ParseNumber(text(), d)) return static_cast<std::int64_t>(std::nearbyint(d));
            if (text() == "True" || text() == "true") return -1;
            return 0;
        }
        case Kind::Bytes: return 0;
    }
    return 0;
}

double Variant::AsDouble() const {
    switch (kind()) {
        case Kind::Double: return real();
        case Kind::Text: {
            double d = 0;
            return ParseNumber(text(), d) ? d : 0.0;
        }
        default: return static_cast<double>(AsInteger());
    }
}

std::string Variant::AsText() && {
    if (kind() == Kind::Text) return std::move(std::get<std::string>(v_));
    return static_cast<const Variant&>(*this).AsText();
}

std::string Variant::AsText() const& {
    switch (kind()) {
        case Kind::Null: return {};
        case Kind::Integer: return std::to_string(integer());
        case Kind::Double: return FormatDouble(real());
        case Kind::Boolean: return boolean() ? "True" : "False";
        case Kind::Text: return text();
        case Kind::Bytes: return std::string(bytes().begin(), bytes().end());
    }
    return {};
}

std::string Variant::Debug() const {
    switch (kind()) {
        case Kind::Null: return "Null";
        case Kind::Text: return "\"" + text() + "\"";
        case Kind::Bytes: return "<" + std::to_string(bytes().size()) + " bytes>";
        default: return AsText();
    }
}

}  // namespace zelvo
