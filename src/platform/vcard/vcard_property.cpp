#include "platform/vcard/vcard_property.h"

#include "platform/vcard/vcard_ascii.h"

namespace zelvo::vcard {

namespace {

std::string_view Unquote(std::string_view v) {
    v = Trim(v);
    if (v.size() >= 2 && v.front() == '"' && v.back() == '"') v = v.substr(1, v.size() - 2);
    return Trim(v);
}

// Calls f(piece) for each comma-separated piece of a parameter value.
template <class F>
bool AnyPiece(std::string_view value, F&& f) {
    value = Unquote(value);  // TYPE="work,voice"
    std::size_t start = 0;
    for (;;) {
        std::size_t comma = value.find(',', start);
        std::string_view piece = value.substr(start, comma == std::string_view::npos ? comma : comma - start);
        if (f(Unquote(piece))) return true;
        if (comma == std::string_view::npos) return false;
        start = comma + 1;
    }
}

bool IsEncodingWord(std::string_view v) {
    return IEquals(v, "QUOTED-PRINTABLE") || IEquals(v, "BASE64") || IEquals(v, "B") ||
           IEquals(v, "8BIT") || IEquals(v, "7BIT") || IEquals(v, "Q");
}

}  // namespace

bool Property::HasType(std::string_view type) const {
    for (int i = 0; i < paramCount; ++i) {
        const auto& prm = params[i];
        if (!prm.name.empty() && !IEquals(prm.name, "TYPE")) continue;
        if (AnyPiece(prm.value, [&](std::string_view piece) { return IEquals(piece, type); })) return true;
    }
    return false;
}

std::string_view Property::Param(std::string_view wanted) const {
    for (int i = 0; i < paramCount; ++i) {
        if (IEquals(params[i].name, wanted)) return Unquote(params[i].value);
    }
    return {};
}

std::string_view Property::FirstPlainType() const {
    for (int i = 0; i < paramCount; ++i) {
        const auto& prm = params[i];
        if (!prm.name.empty() && !IEquals(prm.name, "TYPE")) continue;
        std::string_view found;
        AnyPiece(prm.value, [&](std::string_view piece) {
            if (piece.empty() || IsEncodingWord(piece) || IEquals(piece, "PREF")) return false;
            found = piece;
            return true;
        });
        if (!found.empty()) return found;
    }
    return {};
}

bool ParseProperty(std::string_view line, Property& p) {
    p.group = {};
    p.hasGroup = false;
    p.paramCount = 0;
    p.transfer = Transfer::None;
    p.charset = {};
    p.valueIsUri = false;

    const std::size_t n = line.size();
    std::size_t i = 0;
    while (i < n && line[i] != ';' && line[i] != ':') ++i;
    std::string_view name = Trim(line.substr(0, i));
    std::size_t dot = name.rfind('.');
    if (dot != std::string_view::npos) {
        p.group = name.substr(0, dot);
        p.hasGroup = true;
        name = name.substr(dot + 1);
    }
    p.name = name;

    while (i < n && line[i] == ';') {
        ++i;
        std::size_t k = i;
        while (k < n && line[k] != '=' && line[k] != ';' && line[k] != ':') ++k;
        PropertyParam prm;
        if (k < n && line[k] == '=') {
            prm.name = Trim(line.substr(i, k - i));
            std::size_t v = k + 1;
            std::size_t e = v;
            while (e < n && line[e] != ';' && line[e] != ':') {
                if (line[e] == '"') {
                    std::size_t close = line.find('"', e + 1);
                    if (close == std::string_view::npos) return false;  // the quote never ends
                    e = close;
                }
                ++e;
            }
            prm.value = line.substr(v, e - v);
            i = e;
        } else {
            prm.value = Trim(line.substr(i, k - i));
            i = k;
        }
        if (prm.name.empty() && prm.value.empty()) continue;  // ";;" or a trailing ';'

        if (IEquals(prm.name, "ENCODING") || prm.name.empty()) {
            std::string_view v = Unquote(prm.value);
            if (IEquals(v, "QUOTED-PRINTABLE") || (IEquals(v, "Q") && !prm.name.empty())) {
                p.transfer = Transfer::QuotedPrintable;
            } else if (IEquals(v, "BASE64") || (IEquals(v, "B") && !prm.name.empty())) {
                p.transfer = Transfer::Base64;
            }
        } else if (IEquals(prm.name, "CHARSET")) {
            p.charset = Unquote(prm.value);
        } else if (IEquals(prm.name, "VALUE")) {
            std::string_view v = Unquote(prm.value);
            p.valueIsUri = IEquals(v, "URI") || IEquals(v, "URL");
        }
        if (p.paramCount < Property::kMaxParams) p.params[p.paramCount++] = prm;
    }
    if (i >= n || line[i] != ':') return false;
    p.value = line.substr(i + 1);
    return !p.name.empty();
}

}  // namespace zelvo::vcard
