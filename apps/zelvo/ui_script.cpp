#include "ui_script.h"

#include <fstream>
#include <sstream>

namespace zelvo::cli {

namespace {

void AppendUtf8(std::string& out, unsigned cp) {
    if (cp < 0x80) {
        out += static_cast<char>(cp);
    } else if (cp < 0x800) {
        out += static_cast<char>(0xC0 | (cp >> 6));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    } else if (cp < 0x10000) {
        out += static_cast<char>(0xE0 | (cp >> 12));
        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (cp >> 18));
        out += static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    }
}

// A JSON string literal that makes up the whole of `s`; false when it is not one.
bool ParseJsonString(const std::string& s, std::string& out) {
    if (s.size() < 2 || s.front() != '"' || s.back() != '"') return false;
    auto hex4 = [&](size_t at, unsigned& v) {
        if (at + 4 > s.size() - 1) return false;
        v = 0;
        for (size_t k = at; k < at + 4; ++k) {
            char c = s[k];
            v <<= 4;
            if (c >= '0' && c <= '9') v |= c - '0';
            else if (c >= 'a' && c <= 'f') v |= c - 'a' + 10;
            else if (c >= 'A' && c <= 'F') v |= c - 'A' + 10;
            else return false;
        }
        return true;
    };
    out.clear();
    for (size_t i = 1; i + 1 < s.size(); ++i) {
        char c = s[i];
        if (c == '"') return false;
        if (c != '\\') {
            out += c;
            continue;
        }
        if (++i + 1 > s.size() - 1) return false;
        switch (s[i]) {
            case '"': out += '"'; break;
            case '\\': out += '\\'; break;
            case '/': out += '/'; break;
            case 'n': out += '\n'; break;
            case 'r': out += '\r'; break;
            case 't': out += '\t'; break;
            case 'b': out += '\b'; break;
            case 'f': out += '\f'; break;
            case 'u': {
                unsigned cp;
                if (!hex4(i + 1, cp)) return false;
                i += 4;
                if (cp >= 0xD800 && cp < 0xDC00) {
                    unsigned low;
                    if (s.compare(i + 1, 2, "\\u") != 0 || !hex4(i + 3, low) || low < 0xDC00 || low > 0xDFFF)
                        return false;
                    cp = 0x10000 + ((cp - 0xD800) << 10) + (low - 0xDC00);
                    i += 6;
                }
                AppendUtf8(out, cp);
                break;
            }
            default: return false;
        }
    }
    return true;
}

// "FORM.CONTROL[:KEY]" into its parts; false when it is not that shape.
bool SplitTarget(const std::string& target, ScriptStep& step, bool keyAllowed) {
    size_t dot = target.find('.');
    if (dot == std::string::npos || dot == 0 || dot + 1 == target.size()) return false;
    step.form = target.substr(0, dot);
    step.control = target.substr(dot + 1);
    size_t colon = step.control.find(':');
    if (colon != std::string::npos) {
        if (!keyAllowed || colon == 0 || colon + 1 == step.control.size()) return false;
        step.key = step.control.substr(colon + 1);
        step.control.resize(colon);
    }
    return step.control.find('.') == std::string::npos;
}

bool ParseRows(const std::string& text, std::vector<int>& rows) {
    std::stringstream ss(text);
    std::string part;
    while (std::getline(ss, part, ',')) {
        if (part.empty() || part.size() > 9 || part.find_first_not_of("0123456789") != std::string::npos) return false;
        int n = std::stoi(part);
        if (n < 1) return false;
        rows.push_back(n);
    }
    return !rows.empty();
}

}  // namespace

void UiScript::Fail(const ScriptStep& step, const std::string& what) const {
    throw ScriptError(name_ + ":" + std::to_string(step.line) + ": " + what);
}

UiScript UiScript::Read(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) throw ScriptError("cannot read the script " + path);
    std::stringstream ss;
    ss << in.rdbuf();
    if (in.bad()) throw ScriptError("cannot read the script " + path);
    return Parse(ss.str(), path);
}

UiScript UiScript::Parse(const std::string& text, const std::string& name) {
    UiScript script;
    script.name_ = name;
    std::stringstream in(text);
    std::string line;
    int number = 0;
    while (std::getline(in, line)) {
        ++number;
        if (!line.empty() && line.back() == '\r') line.pop_back();
        size_t b = line.find_first_not_of(" \t");
        if (b == std::string::npos || line[b] == '#') continue;
        line = line.substr(b);
        ScriptStep step;
        step.line = number;
        auto fail = [&](const std::string& what) { script.Fail(step, what); };

        size_t sp = line.find_first_of(" \t");
        step.verb = line.substr(0, sp);
        std::string rest;
        if (sp != std::string::npos) {
            size_t r = line.find_first_not_of(" \t", sp);
            if (r != std::string::npos) rest = line.substr(r);
        }
        // The target is the first word of the rest; the remainder a text.
        std::string target = rest.substr(0, rest.find_first_of(" \t"));
        std::string tail;
        if (size_t t = rest.find_first_of(" \t"); t != std::string::npos) {
            size_t r = rest.find_first_not_of(" \t", t);
            if (r != std::string::npos) tail = rest.substr(r);
        }
        auto value = [&](const std::string& raw) {
            if (raw.empty() || raw.front() != '"') return raw;
            std::string out;
            if (!ParseJsonString(raw, out)) fail("a text that starts with \" must be one JSON string: " + raw);
            return out;
        };

        if (step.verb == "dump") {
            if (!tail.empty() || target.find('.') != std::string::npos) fail("dump takes at most a window's name");
            step.form = target;
        } else if (step.verb == "click") {
            if (!tail.empty() || !SplitTarget(target, step, true))
                fail("click takes FORM.CONTROL or FORM.TOOLBAR:KEY, not '" + rest + "'");
        } else if (step.verb == "select" || step.verb == "dblclick") {
            if (!SplitTarget(target, step, false) || !ParseRows(tail, step.rows))
                fail(step.verb + " takes FORM.LIST and row numbers from 1, not '" + rest + "'");
            if (step.verb == "dblclick" && step.rows.size() != 1) fail("dblclick takes one row");
        } else if (step.verb == "type") {
            if (!SplitTarget(target, step, false)) fail("type takes FORM.CONTROL and a text, not '" + rest + "'");
            step.text = value(tail);
        } else if (step.verb == "close") {
            if (target.empty() || !tail.empty() || target.find('.') != std::string::npos)
                fail("close takes a window's name");
            step.form = target;
        } else if (step.verb == "answer") {
            if (rest.empty()) fail("answer takes a value");
            step.text = value(rest);
        } else {
            fail("unknown step '" + step.verb + "' (dump, click, select, dblclick, type, close, answer)");
        }
        script.steps_.push_back(std::move(step));
    }
    return script;
}

}  // namespace zelvo::cli
