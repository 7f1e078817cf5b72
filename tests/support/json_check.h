// Whether a text is exactly one JSON value, for tests of machine-readable
// output. A plain recursive descent over RFC 8259: strings with their
// escapes, numbers, literals, arrays and objects; control characters inside
// a string make it invalid, as do bytes after the value.
#pragma once

#include <cctype>
#include <string_view>

namespace zelvo::testing {

class JsonCheck {
public:
    static bool IsValid(std::string_view text) {
        JsonCheck c{text};
        c.Space();
        if (!c.Value()) return false;
        c.Space();
        return c.at_ == text.size();
    }

private:
    explicit JsonCheck(std::string_view t) : t_(t) {}
    bool More() const { return at_ < t_.size(); }
    char Peek() const { return More() ? t_[at_] : '\0'; }
    void Space() {
        while (More() && (Peek() == ' ' || Peek() == '\t' || Peek() == '\n' || Peek() == '\r')) ++at_;
    }
    bool Literal(std::string_view word) {
        if (t_.substr(at_, word.size()) != word) return false;
        at_ += word.size();
        return true;
    }
    bool String() {
        if (Peek() != '"') return false;
        for (++at_; More(); ++at_) {
            unsigned char c = static_cast<unsigned char>(t_[at_]);
            if (c == '"') return ++at_, true;
            if (c < 0x20) return false;
            if (c == '\\') {
                if (++at_ >= t_.size()) return false;
                char e = t_[at_];
                if (e == 'u') {
                    for (int k = 0; k < 4; ++k)
                        if (++at_ >= t_.size() || !std::isxdigit(static_cast<unsigned char>(t_[at_]))) return false;
                } else if (std::string_view("\"\\/bfnrt").find(e) == std::string_view::npos) {
                    return false;
                }
            }
        }
        return false;
    }
    bool Number() {
        size_t start = at_;
        if (Peek() == '-') ++at_;
        if (!std::isdigit(static_cast<unsigned char>(Peek()))) return false;
        while (std::isdigit(static_cast<unsigned char>(Peek()))) ++at_;
        if (Peek() == '.') {
            ++at_;
            if (!std::isdigit(static_cast<unsigned char>(Peek()))) return false;
            while (std::isdigit(static_cast<unsigned char>(Peek()))) ++at_;
        }
        if (Peek() == 'e' || Peek() == 'E') {
            ++at_;
            if (Peek() == '+' || Peek() == '-') ++at_;
            if (!std::isdigit(static_cast<unsigned char>(Peek()))) return false;
            while (std::isdigit(static_cast<unsigned char>(Peek()))) ++at_;
        }
        return at_ > start;
    }
    bool Value() {
        switch (Peek()) {
            case '"': return String();
            case 't': return Literal("true");
            case 'f': return Literal("false");
            case 'n': return Literal("null");
            case '[': return Sequence(']', false);
            case '{': return Sequence('}', true);
            default: return Number();
        }
    }
    bool Sequence(char close, bool object) {
        ++at_;
        Space();
        if (Peek() == close) return ++at_, true;
        for (;;) {
            Space();
            if (object) {
                if (!String()) return false;
                Space();
                if (Peek() != ':') return false;
                ++at_;
                Space();
            }
            if (!Value()) return false;
            Space();
            if (Peek() == close) return ++at_, true;
            if (Peek() != ',') return false;
            ++at_;
        }
    }

    std::string_view t_;
    size_t at_ = 0;
};

}  // namespace zelvo::testing
