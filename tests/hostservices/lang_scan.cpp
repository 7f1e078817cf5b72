#include "lang_scan.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>

namespace zelvo::testing {

namespace {

class Scanner {
public:
    Scanner(const std::string& s, const std::string& file) : s_(s), file_(file) {}

    std::vector<SourceText> Run() {
        std::vector<SourceText> out;
        while (pos_ < s_.size()) {
            char c = s_[pos_];
            if (StartsWith("//")) SkipLine();
            else if (StartsWith("/*")) SkipBlock();
            else if (c == '"') ReadLiteral();
            else if (c == '\'') SkipChar();
            else if (IsIdentStart(c)) {
                size_t start = pos_;
                while (pos_ < s_.size() && IsIdent(s_[pos_])) ++pos_;
                if (s_.compare(start, pos_ - start, "LngText") == 0) {
                    size_t line = LineOf(start);
                    size_t resume = pos_;
                    if (auto t = Call()) {
                        t->where = file_ + ":" + std::to_string(line);
                        out.push_back(*t);
                    } else {
                        pos_ = resume;
                    }
                }
            } else ++pos_;
        }
        return out;
    }

private:
    static bool IsIdentStart(char c) { return std::isalpha(static_cast<unsigned char>(c)) || c == '_'; }
    static bool IsIdent(char c) { return std::isalnum(static_cast<unsigned char>(c)) || c == '_'; }
    bool StartsWith(const char* t) const { return s_.compare(pos_, std::char_traits<char>::length(t), t) == 0; }
    void SkipLine() { while (pos_ < s_.size() && s_[pos_] != '\n') ++pos_; }
    void SkipBlock() {
        size_t end = s_.find("*/", pos_ + 2);
        pos_ = end == std::string::npos ? s_.size() : end + 2;
    }
    void SkipChar() {
        ++pos_;
        while (pos_ < s_.size() && s_[pos_] != '\'') pos_ += s_[pos_] == '\\' ? 2 : 1;
        ++pos_;
    }
    size_t LineOf(size_t at) const { return 1 + std::count(s_.begin(), s_.begin() + static_cast<long>(at), '\n'); }
    void SkipSpace() {
        for (;;) {
            while (pos_ < s_.size() && std::isspace(static_cast<unsigned char>(s_[pos_]))) ++pos_;
            if (StartsWith("//")) SkipLine();
            else if (StartsWith("/*")) SkipBlock();
            else return;
        }
    }
    // A string literal at pos_, with its escapes resolved.
    std::string ReadLiteral() {
        std::string v;
        ++pos_;
        while (pos_ < s_.size() && s_[pos_] != '"') {
            char c = s_[pos_++];
            if (c != '\\' || pos_ >= s_.size()) {
                v += c;
                continue;
            }
            char e = s_[pos_++];
            switch (e) {
                case 'n': v += '\n'; break;
                case 't': v += '\t'; break;
                case 'r': v += '\r'; break;
                case '0': v += '\0'; break;
                case 'x': {
                    int n = 0, digits = 0;
                    while (pos_ < s_.size() && std::isxdigit(static_cast<unsigned char>(s_[pos_])) && digits < 2) {
                        n = n * 16 + std::stoi(std::string(1, s_[pos_++]), nullptr, 16);
                        ++digits;
                    }
                    v += static_cast<char>(n);
                    break;
                }
                default: v += e;
            }
        }
        ++pos_;
        return v;
    }
    // One argument made of adjacent literals ("a" "b"), or nothing.
    std::optional<std::string> Literal() {
        SkipSpace();
        if (pos_ >= s_.size() || s_[pos_] != '"') return std::nullopt;
        std::string v;
        while (pos_ < s_.size() && s_[pos_] == '"') {
            v += ReadLiteral();
            SkipSpace();
        }
        return v;
    }
    bool Expect(char c) {
        SkipSpace();
        if (pos_ < s_.size() && s_[pos_] == c) {
            ++pos_;
            return true;
        }
        return false;
    }
    std::optional<SourceText> Call() {
        if (!Expect('(')) return std::nullopt;
        auto section = Literal();
        if (!section || !Expect(',')) return std::nullopt;
        auto key = Literal();
        if (!key || !Expect(',')) return std::nullopt;
        auto text = Literal();
        if (!text || !Expect(')')) return std::nullopt;
        return SourceText{*section, *key, *text, {}};
    }

    const std::string& s_;
    std::string file_;
    size_t pos_ = 0;
};

std::string Lower(std::string s) {
    for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return s;
}

// A text that the catalogue reader would trim or unquote goes in quotes.
std::string Quoted(const std::string& t) {
    bool edge = !t.empty() && (std::isspace(static_cast<unsigned char>(t.front())) ||
                               std::isspace(static_cast<unsigned char>(t.back())) || t.front() == '"');
    return edge ? "\"" + t + "\"" : t;
}

}  // namespace

std::vector<SourceText> ScanSource(const std::string& source, const std::string& file) {
    return Scanner(source, file).Run();
}

std::vector<SourceText> ScanFolder(const std::string& folder) {
    std::vector<std::filesystem::path> files;
    for (const auto& e : std::filesystem::recursive_directory_iterator(folder)) {
        auto ext = e.path().extension();
        if (e.is_regular_file() && (ext == ".h" || ext == ".cpp")) files.push_back(e.path());
    }
    std::sort(files.begin(), files.end());
    std::vector<SourceText> out;
    for (const auto& f : files) {
        std::ifstream in(f, std::ios::binary);
        std::string text((std::istreambuf_iterator<char>(in)), {});
        auto found = ScanSource(text, std::filesystem::relative(f, folder).string());
        out.insert(out.end(), found.begin(), found.end());
    }
    return out;
}

std::string CatalogueText(const std::vector<SourceText>& texts, std::vector<std::string>* conflicts) {
    struct Section {
        std::string name;
        std::vector<const SourceText*> keys;
    };
    std::map<std::string, Section> sections;  // by lower-case name
    std::map<std::string, const SourceText*> seen;
    for (const auto& t : texts) {
        std::string id = Lower(t.section) + "\n" + Lower(t.key);
        auto it = seen.find(id);
        if (it != seen.end()) {
            if (it->second->text != t.text && conflicts)
                conflicts->push_back(t.section + "/" + t.key + ": " + it->second->where + " vs " + t.where);
            continue;
        }
        seen.emplace(id, &t);
        Section& s = sections[Lower(t.section)];
        if (s.name.empty()) s.name = t.section;
        s.keys.push_back(&t);
    }
    std::string out =
        "; The English texts of the address book, one per section and key, as\n"
        "; the code gives them by default. Made from the sources by the build\n"
        "; target lang-catalogue; do not edit by hand.\n"
        ";\n"
        "; To translate: copy this file to <language>.lng (de.lng, fr.lng, ...)\n"
        "; in the same folder and translate the texts after the '='. Keep \" vbcrlf \"\n"
        "; (a line break) and %1, %2 (filled in by the program) as they are. A\n"
        "; text in double quotes keeps its leading and trailing blanks.\n";
    for (const auto& [lower, s] : sections) {
        out += "\n[" + s.name + "]\n";
        for (const SourceText* t : s.keys) out += t->key + "=" + Quoted(t->text) + "\n";
    }
    return out;
}

}  // namespace zelvo::testing
