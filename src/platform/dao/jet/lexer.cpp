// Parameterize and the token cutter. Parameterize runs once per execution of
// a statement, so it makes one pass, one reserved string and one vector.
#include "platform/dao/jet/lexer.h"

#include <charconv>
#include <cstdlib>
#include <string>

#include "platform/dao/jet/errors.h"
#include "platform/dao/jet/jet_sql.h"

namespace zelvo::dao::jet {

namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// The bytes that go into a shape's key as they stand, whatever comes
// before them: all but what may start a literal or a bracketed name ("'#,
// digits, '.'), '[' and the marks themselves. A digit inside a word goes
// in as well; the caller sees to that.
constexpr struct PlainBytes {
    bool is[256] = {};
    constexpr PlainBytes() {
        for (int c = 0; c < 256; ++c)
            is[c] = !(c == '"' || c == '\'' || c == '#' || c == '[' || c == '.' || (c >= '0' && c <= '9') ||
                      c == kStringMark || c == kNumberMark);
    }
} kPlainBytes;

// Reads a number starting at text[i]; returns its end and stores its value.
std::size_t ReadNumber(std::string_view text, std::size_t i, Variant& value) {
    std::size_t start = i;
    bool real = false;
    while (i < text.size() && IsDigit(text[i])) ++i;
    if (i < text.size() && text[i] == '.') {
        real = true;
        ++i;
        while (i < text.size() && IsDigit(text[i])) ++i;
    }
    if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
        std::size_t j = i + 1;
        if (j < text.size() && (text[j] == '+' || text[j] == '-')) ++j;
        if (j < text.size() && IsDigit(text[j])) {
            real = true;
            i = j;
            while (i < text.size() && IsDigit(text[i])) ++i;
        }
    }
    std::string_view digits = text.substr(start, i - start);
    if (!real) {
        std::int64_t n = 0;
        auto [end, ec] = std::from_chars(digits.data(), digits.data() + digits.size(), n);
        if (ec == std::errc() && end == digits.data() + digits.size()) {
            value = Variant(n);
            return i;
        }
    }
    // Too large for 64 bits, or a fraction: a double, as Jet makes it.
    value = Variant(std::strtod(std::string(digits).c_str(), nullptr));
    return i;
}

}  // namespace

Shape Parameterize(std::string_view text) {
    Shape shape;
    shape.key.reserve(text.size());
    std::size_t i = 0;
    const std::size_t n = text.size();
    while (i < n) {
        char c = text[i];
        if (kPlainBytes.is[static_cast<unsigned char>(c)]) {
            // Most of a statement is names, keywords, blanks and operators:
            // copied in one piece, digits included where they continue a word.
            std::size_t j = i + 1;
            while (j < n && (kPlainBytes.is[static_cast<unsigned char>(text[j])] ||
                             (IsDigit(text[j]) && IsWordByte(static_cast<unsigned char>(text[j - 1])))))
                ++j;
            shape.key.append(text.substr(i, j - i));
            i = j;
            continue;
        }
        if (c == '"' || c == '\'' || c == '#') {
            // A string literal; the delimiter doubled stands for itself. A
            // #date# literal is kept as its text.
            char quote = c;
            std::string value;
            std::size_t j = i + 1;
            bool closed = false;
            while (j < n) {
                if (text[j] == quote) {
                    if (quote != '#' && j + 1 < n && text[j + 1] == quote) {
                        value += quote;
                        j += 2;
                        continue;
                    }
                    closed = true;
                    break;
                }
                value += text[j++];
            }
            if (!closed) ThrowStringSyntax(text.substr(i));
            shape.key += kStringMark;
            shape.literals.emplace_back(std::move(value));
            i = j + 1;
        } else if (c == '[') {
            std::size_t close = text.find(']', i + 1);
            if (close == std::string_view::npos) ThrowMissingParen(text.substr(i));
            shape.key.append(text.substr(i, close + 1 - i));
            i = close + 1;
        } else if (IsDigit(c) || (c == '.' && i + 1 < n && IsDigit(text[i + 1]) &&
                                  (i == 0 || !IsWordByte(static_cast<unsigned char>(text[i - 1])) ))) {
            // A '.' after a name or bracket is a qualifier, not a fraction.
            if (c == '.' && i > 0 && (text[i - 1] == ']' || text[i - 1] == ')')) {
                shape.key += c;
                ++i;
                continue;
            }
            Variant v;
            i = ReadNumber(text, i, v);
            shape.key += kNumberMark;
            shape.literals.push_back(std::move(v));
        } else if (IsWordByte(static_cast<unsigned char>(c))) {
            std::size_t j = i;
            while (j < n && IsWordByte(static_cast<unsigned char>(text[j]))) ++j;
            shape.key.append(text.substr(i, j - i));
            i = j;
        } else if (c == kStringMark || c == kNumberMark) {
            ThrowMissingOperator(text);
        } else {
            shape.key += c;
            ++i;
        }
    }
    return shape;
}

Token Lexer::Next() {
    const std::size_t n = key_.size();
    while (pos_ < n) {
        char c = key_[pos_];
        if (c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f' || c == '\v') {
            ++pos_;
            continue;
        }
        break;
    }
    Token t;
    t.pos = pos_;
    if (pos_ >= n) return t;
    char c = key_[pos_];
    if (c == kStringMark || c == kNumberMark) {
        t.kind = c == kStringMark ? Tok::String : Tok::Number;
        t.literal = literals_++;
        t.text = key_.substr(pos_, 1);
        ++pos_;
        return t;
    }
    if (c == '[') {
        std::size_t close = key_.find(']', pos_ + 1);
        if (close == std::string_view::npos) ThrowMissingParen(key_.substr(pos_));
        t.kind = Tok::Bracket;
        t.text = key_.substr(pos_ + 1, close - pos_ - 1);
        pos_ = close + 1;
        return t;
    }
    if (IsWordByte(static_cast<unsigned char>(c))) {
        std::size_t j = pos_;
        while (j < n && IsWordByte(static_cast<unsigned char>(key_[j]))) ++j;
        t.kind = Tok::Word;
        t.text = key_.substr(pos_, j - pos_);
        pos_ = j;
        return t;
    }
    static constexpr std::string_view kTwo[] = {"<>", "<=", ">=", "!=", "=<", "=>"};
    for (std::string_view two : kTwo) {
        if (key_.substr(pos_, 2) == two) {
            t.kind = Tok::Symbol;
            t.text = key_.substr(pos_, 2);
            pos_ += 2;
            return t;
        }
    }
    static constexpr std::string_view kOne = "(),.;*=<>+-/\\^&!";
    if (kOne.find(c) != std::string_view::npos) {
        t.kind = Tok::Symbol;
        t.text = key_.substr(pos_, 1);
        ++pos_;
        return t;
    }
    ThrowMissingOperator(key_.substr(pos_));
}

}  // namespace zelvo::dao::jet
