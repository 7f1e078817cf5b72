#include "platform/core/mail_string.h"

#include <string_view>
#include <vector>

#include "platform/vcard/vcard_charset.h"
#include "platform/vcard/vcard_codec.h"

namespace zelvo::ValueConv {

namespace {

bool IsBlank(char c) { return c == ' '; }

// Line breaks and tabs become blanks, as in a folded header; the other C0
// and C1 controls and DEL go. C1 controls are two bytes in UTF-8 (C2 80 to
// C2 9F).
std::string WithoutControls(std::string_view in) {
    std::string out;
    out.reserve(in.size());
    for (std::size_t i = 0; i < in.size(); ++i) {
        unsigned char c = static_cast<unsigned char>(in[i]);
        if (c == '\t' || c == '\r' || c == '\n') out += ' ';
        else if (c < 0x20 || c == 0x7F) continue;
        else if (c == 0xC2 && i + 1 < in.size() && static_cast<unsigned char>(in[i + 1]) >= 0x80 &&
                 static_cast<unsigned char>(in[i + 1]) <= 0x9F)
            ++i;
        else out += static_cast<char>(c);
    }
    return out;
}

// The position of an opening quote or parenthesis that is never closed, or
// npos. Escaped characters and quotes inside comments do not count.
std::size_t UnclosedOpening(std::string_view s) {
    bool quoted = false;
    std::size_t quote = std::string_view::npos;
    std::vector<std::size_t> comments;  // the parentheses still open
    for (std::size_t i = 0; i < s.size(); ++i) {
        char c = s[i];
        if (c == '\\') {
            ++i;
            continue;
        }
        if (quoted) {
            if (c == '"') quoted = false;
        } else if (!comments.empty()) {
            if (c == '(') comments.push_back(i);
            else if (c == ')') comments.pop_back();
        } else if (c == '"') {
            quoted = true;
            quote = i;
        } else if (c == '(') {
            comments.push_back(i);
        }
    }
    if (quoted) return quote;
    return comments.empty() ? std::string_view::npos : comments.back();
}

// The first mailbox of a list. A comma or semicolon outside quotes,
// comments and brackets ends it only once an address has been seen ("@" or
// "<"): before that it is part of the name, as in `Petrov, Ivan <i@x.org>`.
std::string_view FirstMailbox(std::string_view s) {
    bool quoted = false;
    bool bracket = false;
    bool address = false;
    int comment = 0;
    for (std::size_t i = 0; i < s.size(); ++i) {
        char c = s[i];
        if (c == '\\') {
            ++i;
            continue;
        }
        if (quoted) {
            if (c == '"') quoted = false;
        } else if (comment > 0) {
            if (c == '(') ++comment;
            else if (c == ')') --comment;
        } else if (bracket) {
            if (c == '>') bracket = false;
            else if (c == '(') ++comment;
        } else if (c == '"') {
            quoted = true;
        } else if (c == '(') {
            ++comment;
        } else if (c == '<') {
            bracket = true;
            address = true;
        } else if (c == '@') {
            address = true;
        } else if ((c == ',' || c == ';') && address) {
            return s.substr(0, i);
        }
    }
    return s;
}

// One word of the display text: a quoted string (quotes gone, escapes
// resolved) or a run of other characters between blanks.
struct Word {
    std::string text;
    bool quoted = false;
};

// What one mailbox is made of.
struct Parts {
    std::vector<Word> words;    // the display text outside the brackets
    std::string comment;        // the first comment, without its parentheses
    std::string bracketed;      // the text in angle brackets
    bool hasBracket = false;
};

Parts Split(std::string_view s) {
    Parts p;
    std::string* target = nullptr;  // the unquoted word being read, if any
    bool commentTaken = false;
    auto endWord = [&] { target = nullptr; };
    auto word = [&](bool quoted) -> std::string& {
        if (!target || quoted) {
            p.words.push_back({{}, quoted});
            target = &p.words.back().text;
        }
        return *target;
    };
    bool inBracket = false;
    for (std::size_t i = 0; i < s.size(); ++i) {
        char c = s[i];
        if (c == '(') {
            // A comment, nested parentheses and escapes included.
            std::string text;
            int depth = 1;
            for (++i; i < s.size() && depth > 0; ++i) {
                char d = s[i];
                if (d == '\\' && i + 1 < s.size()) d = s[++i];
                else if (d == '(') ++depth;
                else if (d == ')' && --depth == 0) break;
                text += d;
            }
            if (!commentTaken) {
                p.comment = std::move(text);
                commentTaken = true;
            }
            if (!inBracket) endWord();
            continue;
        }
        if (inBracket) {
            if (c == '>') inBracket = false;
            else p.bracketed += c;
            continue;
        }
        if (c == '"') {
            std::string& text = word(true);
            for (++i; i < s.size() && s[i] != '"'; ++i) {
                if (s[i] == '\\' && i + 1 < s.size()) ++i;
                text += s[i];
            }
            endWord();
            continue;
        }
        if (c == '<' && !p.hasBracket) {
            inBracket = true;
            p.hasBracket = true;
            endWord();
            continue;
        }
        if (IsBlank(c) || c == '<' || c == '>') {
            // A second bracket pair and stray brackets are no part of a name.
            endWord();
            continue;
        }
        if (c == '\\' && i + 1 < s.size()) c = s[++i];
        word(false) += c;
    }
    return p;
}

std::string Trimmed(std::string_view s) {
    std::size_t b = s.find_first_not_of(' ');
    if (b == std::string_view::npos) return {};
    std::size_t e = s.find_last_not_of(' ');
    return std::string(s.substr(b, e - b + 1));
}

bool StartsWithNoCase(std::string_view s, std::string_view prefix) {
    if (s.size() < prefix.size()) return false;
    for (std::size_t i = 0; i < prefix.size(); ++i) {
        char a = s[i];
        if (a >= 'A' && a <= 'Z') a = static_cast<char>(a - 'A' + 'a');
        if (a != prefix[i]) return false;
    }
    return true;
}

// An address as stored: no blanks (an address has none outside quotes, and
// pasted ones often carry some around the "@"), no angle brackets (a second
// "<" inside the pair, an escaped one), no "mailto:".
std::string CleanAddress(std::string_view s) {
    std::string out;
    for (char c : s)
        if (!IsBlank(c) && c != '<' && c != '>') out += c;
    if (StartsWithNoCase(out, "mailto:")) out.erase(0, 7);
    return out;
}

// Decodes one encoded word `=?charset?enc?text?=` into `out`. False, with
// `out` untouched, when it is malformed or its charset is not known.
bool DecodeEncodedWord(std::string_view word, vcard::CharsetDecoder& charsets, std::string& out) {
    // word is "=?" charset "?" enc "?" text "?="
    std::string_view inner = word.substr(2, word.size() - 4);
    std::size_t q1 = inner.find('?');
    if (q1 == std::string_view::npos || q1 == 0) return false;
    std::size_t q2 = inner.find('?', q1 + 1);
    if (q2 != q1 + 2) return false;
    std::string_view charset = inner.substr(0, q1);
    // RFC 2231 lets a language follow the charset: "utf-8*ru".
    if (std::size_t star = charset.find('*'); star != std::string_view::npos) charset = charset.substr(0, star);
    char enc = inner[q1 + 1];
    std::string_view text = inner.substr(q2 + 1);
    std::string bytes;
    if (enc == 'B' || enc == 'b') {
        if (!vcard::DecodeBase64(text, bytes)) return false;
    } else if (enc == 'Q' || enc == 'q') {
        // Q is quoted-printable with "_" for a blank.
        std::string plain(text);
        for (char& c : plain)
            if (c == '_') c = ' ';
        if (!vcard::DecodeQuotedPrintable(plain, bytes)) return false;
    } else {
        return false;
    }
    std::string decoded;
    if (!charsets.AppendUtf8(charset, bytes, decoded)) return false;
    out += decoded;
    return true;
}

// The text with its encoded words decoded. Blanks between two encoded words
// go, so that a name split over several words comes out whole.
std::string DecodeEncodedWords(std::string_view s) {
    if (s.find("=?") == std::string_view::npos) return std::string(s);
    vcard::CharsetDecoder charsets;
    std::string out;
    std::size_t pendingBlanks = std::string::npos;  // where blanks after an encoded word start in `out`
    std::size_t i = 0;
    while (i < s.size()) {
        if (s.compare(i, 2, "=?") == 0) {
            // charset ? enc ? text ?= : the end is the "?=" after the third "?".
            std::size_t q1 = s.find('?', i + 2);
            std::size_t q2 = q1 == std::string_view::npos ? q1 : s.find('?', q1 + 1);
            std::size_t end = q2 == std::string_view::npos ? q2 : s.find("?=", q2 + 1);
            if (end != std::string_view::npos) {
                std::string_view word = s.substr(i, end + 2 - i);
                std::string decoded;
                if (word.find(' ') == std::string_view::npos && DecodeEncodedWord(word, charsets, decoded)) {
                    if (pendingBlanks != std::string::npos) out.resize(pendingBlanks);
                    out += decoded;
                    i = end + 2;
                    pendingBlanks = out.size();
                    continue;
                }
            }
        }
        if (!IsBlank(s[i])) pendingBlanks = std::string::npos;
        out += s[i++];
    }
    return out;
}

// Joins words with one blank each.
std::string Joined(const std::vector<Word>& words) {
    std::string out;
    for (const Word& w : words) {
        std::string t = Trimmed(w.text);
        if (t.empty()) continue;
        if (!out.empty()) out += ' ';
        out += t;
    }
    return out;
}

// Runs of blanks become one; blanks, commas and semicolons at the ends go.
std::string TidyName(std::string_view s) {
    std::string out;
    for (char c : s) {
        if (IsBlank(c) && (out.empty() || IsBlank(out.back()))) continue;
        out += c;
    }
    std::size_t b = out.find_first_not_of(" ,;");
    if (b == std::string::npos) return {};
    std::size_t e = out.find_last_not_of(" ,;");
    return out.substr(b, e - b + 1);
}

struct Mailbox {
    std::string name;
    std::string address;
};

Mailbox ParseMailbox(const std::string& mail) {
    std::string text = WithoutControls(mail);
    for (std::size_t q; (q = UnclosedOpening(text)) != std::string::npos;) text.erase(q, 1);
    Parts p = Split(FirstMailbox(text));

    Mailbox m;
    std::string candidate;  // the text that stands where the address would
    if (p.hasBracket) {
        candidate = CleanAddress(p.bracketed);
    } else {
        // No brackets: the first unquoted word with an "@" is the address.
        for (auto it = p.words.begin(); it != p.words.end(); ++it) {
            if (!it->quoted && it->text.find('@') != std::string::npos) {
                candidate = CleanAddress(it->text);
                p.words.erase(it);
                break;
            }
        }
    }
    if (candidate.find('@') != std::string::npos) m.address = candidate;

    // A decoded word may carry control characters of its own ("=0A").
    auto decoded = [](std::string_view s) { return TidyName(WithoutControls(DecodeEncodedWords(s))); };
    m.name = decoded(Joined(p.words));
    if (m.name.empty()) m.name = decoded(p.comment);
    if (m.name.empty() && m.address.empty()) m.name = TidyName(candidate);
    return m;
}

}  // namespace

std::string MailNamePart(const std::string& Mail) { return ParseMailbox(Mail).name; }

std::string MailAddressPart(const std::string& Mail) { return ParseMailbox(Mail).address; }

}  // namespace zelvo::ValueConv
