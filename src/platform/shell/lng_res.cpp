#include "platform/shell/lng_res.h"

#include <cctype>
#include <cstdlib>
#include <fstream>
#include <mutex>
#include <sstream>

#include "platform/core/error.h"
#include "platform/shell/file_system.h"
#include "platform/shell/install_paths.h"
#include "platform/shell/shell_paths.h"

namespace zelvo::shell {

struct LngRes::Catalogue {
    std::string language;
    std::string folder;
    std::map<std::string, std::map<std::string, std::string>> texts;  // names in lower case
};

namespace {

std::string Lower(std::string s) {
    for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return s;
}

std::string Trim(const std::string& s) {
    size_t b = s.find_first_not_of(" \t\r");
    if (b == std::string::npos) return {};
    size_t e = s.find_last_not_of(" \t\r");
    return s.substr(b, e - b + 1);
}

std::string Env(const char* name) {
    const char* v = std::getenv(name);
    return v ? std::string(v) : std::string();
}

// "de_DE.UTF-8" -> "de"; "C" and "POSIX" say nothing of a language.
std::string LanguageOfLocale(const std::string& locale) {
    std::string lang = locale.substr(0, locale.find_first_of("_.@"));
    lang = Lower(lang);
    if (lang.empty() || lang == "c" || lang == "posix") return {};
    for (char c : lang)
        if (!std::isalpha(static_cast<unsigned char>(c))) return {};
    return lang;
}

std::string ChosenLanguage() {
    std::string forced = LanguageOfLocale(Env("ZELVO_LANG"));
    if (!forced.empty()) return forced;
    for (const char* var : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        std::string v = Env(var);
        if (v.empty()) continue;
        std::string lang = LanguageOfLocale(v);
        return lang.empty() ? "en" : lang;
    }
    return "en";
}

std::string ChosenFolder() { return LanguageFolder(); }

std::mutex& CacheMutex() {
    static std::mutex m;
    return m;
}

std::map<std::string, std::shared_ptr<const LngRes::Catalogue>>& Cache() {
    static std::map<std::string, std::shared_ptr<const LngRes::Catalogue>> cache;
    return cache;
}

}  // namespace

std::map<std::string, std::map<std::string, std::string>> ReadCatalogue(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) throw Error(53, "File not found: '" + path + "'", "LngRes");
    std::map<std::string, std::map<std::string, std::string>> texts;
    std::string line;
    std::string section;
    int number = 0;
    while (std::getline(in, line)) {
        ++number;
        if (number == 1 && line.rfind("\xEF\xBB\xBF", 0) == 0) line.erase(0, 3);
        std::string t = Trim(line);
        if (t.empty() || t[0] == ';' || t[0] == '#') continue;
        if (t.front() == '[' && t.back() == ']') {
            section = Lower(Trim(t.substr(1, t.size() - 2)));
            continue;
        }
        size_t eq = t.find('=');
        if (eq == std::string::npos || eq == 0 || section.empty())
            throw Error(75, "Not a line of a language catalogue: '" + path + "' line " + std::to_string(number),
                        "LngRes");
        std::string key = Lower(Trim(t.substr(0, eq)));
        std::string text = Trim(t.substr(eq + 1));
        // A text that begins or ends with a blank is written in double quotes.
        if (text.size() >= 2 && text.front() == '"' && text.back() == '"') text = text.substr(1, text.size() - 2);
        texts[section][key] = text;
    }
    return texts;
}

void ForgetCatalogues() {
    std::lock_guard lock(CacheMutex());
    Cache().clear();
}

LngRes::LngRes() {
    std::string language = ChosenLanguage();
    std::string folder = ChosenFolder();
    std::string key = folder + '\n' + language;
    std::lock_guard lock(CacheMutex());
    auto& cache = Cache();
    auto it = cache.find(key);
    if (it != cache.end()) {
        catalogue_ = it->second;
        return;
    }
    auto c = std::make_shared<Catalogue>();
    c->language = language;
    c->folder = folder;
    try {
        c->texts = ReadCatalogue(folder + language + ".lng");
    } catch (const Error& e) {
        // No catalogue for the language: every text is its English default.
        RecordSwallowed(e, "LngRes");
        Err().Clear();
    }
    catalogue_ = c;
    cache.emplace(key, c);
}

std::string LngRes::GetMUIString(const std::string&, const std::string& section, const std::string& key,
                                 const std::string& def) const {
    auto s = catalogue_->texts.find(Lower(section));
    if (s == catalogue_->texts.end()) return def;
    auto k = s->second.find(Lower(key));
    return k == s->second.end() ? def : k->second;
}

std::string LngRes::GetHelpFile(const std::string& name) const {
    std::string stem = ShellPaths::StripExtension(ShellPaths::GetFileOfPath(name));
    for (const std::string& lang : {catalogue_->language, std::string("en")}) {
        std::string page = catalogue_->folder + lang + "/" + stem + ".html";
        if (FileExists(page)) return page;
    }
    return {};
}

const std::string& LngRes::Language() const { return catalogue_->language; }
const std::string& LngRes::Folder() const { return catalogue_->folder; }

}  // namespace zelvo::shell
