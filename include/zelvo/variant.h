// A value as it comes out of a field or goes into a late-bound call: Null,
// a whole number, a double, a Boolean, a text or bytes.
//
// Booleans are kept as their own kind so that a Yes/No field reads back as a
// Boolean; as numbers they are -1 (True) and 0 (False), as in the database
// engine's SQL. Text is UTF-8.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "zelvo/export.h"

namespace zelvo {

using Bytes = std::vector<std::uint8_t>;

struct Null {
    friend bool operator==(Null, Null) { return true; }
};

class ZELVO_EXPORT Variant {
public:
    enum class Kind { Null, Integer, Double, Boolean, Text, Bytes };

    Variant() = default;
    Variant(Null) {}
    Variant(int v) : v_(std::int64_t{v}) {}
    Variant(std::int64_t v) : v_(v) {}
    Variant(double v) : v_(v) {}
    Variant(bool v) : v_(v) {}
    Variant(std::string v) : v_(std::move(v)) {}
    Variant(std::string_view v) : v_(std::string(v)) {}
    Variant(const char* v) : v_(std::string(v)) {}
    Variant(Bytes v) : v_(std::move(v)) {}

    Kind kind() const { return static_cast<Kind>(v_.index()); }
    bool IsNull() const { return kind() == Kind::Null; }
    bool IsText() const { return kind() == Kind::Text; }
    bool IsNumeric() const {
        return kind() == Kind::Integer || kind() == Kind::Double || kind() == Kind::Boolean;
    }

    // Exact accessors: call only when kind() says so.
    std::int64_t integer() const { return std::get<std::int64_t>(v_); }
    double real() const { return std::get<double>(v_); }
    bool boolean() const { return std::get<bool>(v_); }
    const std::string& text() const { return std::get<std::string>(v_); }
    const Bytes& bytes() const { return std::get<Bytes>(v_); }

    // Loose conversions in the manner of the runtime: a Boolean is -1/0, a
    // numeric text is its number, anything else non-numeric is 0.
    std::int64_t AsInteger() const;
    double AsDouble() const;
    // Text of the value: numbers in plain decimal, True/False as "True" and
    // "False", bytes one byte to a character; Null gives "".
    std::string AsText() const&;
    // A temporary gives up its text rather than copying it: rs("Name").AsText().
    std::string AsText() &&;

    // A short rendering for diagnostics and tests: Null, 42, 1.5, True, "x", <3 bytes>.
    std::string Debug() const;

    friend bool operator==(const Variant& a, const Variant& b) { return a.v_ == b.v_; }

private:
    std::variant<Null, std::int64_t, double, bool, std::string, Bytes> v_;
};

}  // namespace zelvo
