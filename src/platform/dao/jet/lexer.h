// The lexer of Jet SQL texts.
//
// `Parameterize` (declared in jet_sql.h) lifts the literals out of a text and
// leaves a key in which each string literal is the byte kStringMark and each
// number literal the byte kNumberMark. `Lexer` then cuts such a key into
// tokens for the parser. Keeping the two apart means the per-execution cost is
// one pass over the text that copies bytes, and the token work is paid only
// when a new shape is translated.
#pragma once

#include <cstddef>
#include <string_view>

namespace zelvo::dao::jet {

inline constexpr char kStringMark = '\x01';
inline constexpr char kNumberMark = '\x02';

enum class Tok {
    End,
    Word,      // a bare word: keyword or name, as written
    Bracket,   // [a name] — text is the name inside the brackets
    String,    // a string literal (its value is in Shape::literals)
    Number,    // a number literal (its value is in Shape::literals)
    Symbol,    // punctuation and operators: ( ) , . ; * = <> < > <= >= + - / \ ^ & !
};

struct Token {
    Tok kind = Tok::End;
    std::string_view text;  // the word, the bracketed name, or the symbol
    int literal = -1;       // for String/Number: the literal's index in the shape
    std::size_t pos = 0;    // byte offset in the key, for error texts
};

// Cuts a key made by Parameterize into tokens, one at a time.
class Lexer {
public:
    explicit Lexer(std::string_view key) : key_(key) {}
    // The next token; Tok::End at the end of the key (and from then on).
    // Throws zelvo::Error 3075 for a byte that belongs to no token.
    Token Next();

private:
    std::string_view key_;
    std::size_t pos_ = 0;
    int literals_ = 0;
};

// True when `c` may continue a bare word (letters, digits, '_', '$', and every
// byte of a non-ASCII UTF-8 character, so that Cyrillic names need no brackets).
// A table, not a chain of compares: every byte of every statement text
// passes through here once per execution.
inline constexpr struct WordBytes {
    bool is[256] = {};
    constexpr WordBytes() {
        for (int c = 0; c < 256; ++c)
            is[c] = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
                    c == '$' || c >= 0x80;
    }
} kWordBytes;

inline bool IsWordByte(unsigned char c) { return kWordBytes.is[c]; }

}  // namespace zelvo::dao::jet
