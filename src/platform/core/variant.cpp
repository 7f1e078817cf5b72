#include "platform/core/variant.h"

#include <charconv>
#include <cmath>
#include <cstdio>

#include "platform/core/number_text.h"

namespace zelvo {

namespace {

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
            if (auto d = ParseNumber(text())) return static_cast<std::int64_t>(std::nearbyint(*d));
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
            return ParseNumber(text()).value_or(0.0);
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
