#include "hostservices/view_settings.h"

#include <cctype>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "platform/shell/shell_paths.h"

namespace zelvo {

namespace {

constexpr const char* kSection = "ZELVO";

std::string IniPath(const std::string& AppPath) {
    shell::ShellPaths& paths = shell::SharedShellPaths();
    paths.SetAppPath(AppPath);
    return shell::ShellPaths::AddSeparator(paths.GetSettingsFolder()) + "Custom.ini";
}

std::string Utf16LeToUtf8(const std::string& bytes, size_t from) {
    std::string out;
    for (size_t i = from; i + 1 < bytes.size(); i += 2) {
        std::uint32_t c = std::uint8_t(bytes[i]) | (std::uint8_t(bytes[i + 1]) << 8);
        if (c >= 0xD800 && c < 0xDC00 && i + 3 < bytes.size()) {
            std::uint32_t low = std::uint8_t(bytes[i + 2]) | (std::uint8_t(bytes[i + 3]) << 8);
            if (low >= 0xDC00 && low < 0xE000) {
                c = 0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00);
                i += 2;
            }
        }
        if (c < 0x80) {
            out += char(c);
        } else if (c < 0x800) {
            out += char(0xC0 | (c >> 6));
            out += char(0x80 | (c & 0x3F));
        } else if (c < 0x10000) {
            out += char(0xE0 | (c >> 12));
            out += char(0x80 | ((c >> 6) & 0x3F));
            out += char(0x80 | (c & 0x3F));
        } else {
            out += char(0xF0 | (c >> 18));
            out += char(0x80 | ((c >> 12) & 0x3F));
            out += char(0x80 | ((c >> 6) & 0x3F));
            out += char(0x80 | (c & 0x3F));
        }
    }
    return out;
}

std::string Utf8ToUtf16Le(const std::string& text) {
    std::string out;
    auto unit = [&](std::uint32_t u) {
        out += char(u & 0xFF);
        out += char(u >> 8);
    };
    for (size_t i = 0; i < text.size();) {
        std::uint8_t b = text[i];
        std::uint32_t c = b;
        int extra = b >= 0xF0 ? 3 : b >= 0xE0 ? 2 : b >= 0xC0 ? 1 : 0;
        if (extra) c = b & (0x3F >> extra);
        for (int k = 1; k <= extra && i + k < text.size(); ++k) c = (c << 6) | (std::uint8_t(text[i + k]) & 0x3F);
        i += extra + 1;
        if (c >= 0x10000) {
            c -= 0x10000;
            unit(0xD800 + (c >> 10));
            unit(0xDC00 + (c & 0x3FF));
        } else {
            unit(c);
        }
    }
    return out;
}

// The file's lines as text, whatever its encoding; none when it is missing.
std::vector<std::string> ReadLines(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    bool unicode = bytes.size() >= 2 && std::uint8_t(bytes[0]) == 0xFF && std::uint8_t(bytes[1]) == 0xFE;
    std::string text = unicode ? Utf16LeToUtf8(bytes, 2) : bytes;
    std::vector<std::string> lines;
    std::istringstream s(text);
    for (std::string line; std::getline(s, line);) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        lines.push_back(line);
    }
    return lines;
}

std::string Trim(const std::string& s) {
    size_t a = s.find_first_not_of(" \t"), b = s.find_last_not_of(" \t");
    return a == std::string::npos ? std::string() : s.substr(a, b - a + 1);
}

bool SameName(const std::string& a, const std::string& b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i)
        if (std::tolower(std::uint8_t(a[i])) != std::tolower(std::uint8_t(b[i]))) return false;
    return true;
}

bool IsSection(const std::string& line, std::string* name = nullptr) {
    std::string t = Trim(line);
    if (t.size() < 2 || t.front() != '[' || t.back() != ']') return false;
    if (name) *name = t.substr(1, t.size() - 2);
    return true;
}

// The key's line of the section: its index, or -1; `end` gets the index
// after the section's last line (-1 when there is no such section).
int FindKey(const std::vector<std::string>& lines, const std::string& key, int& end) {
    end = -1;
    bool inside = false;
    for (int i = 0; i < int(lines.size()); ++i) {
        std::string name;
        if (IsSection(lines[i], &name)) {
            if (inside) return -1;
            inside = SameName(name, kSection);
            if (inside) end = i + 1;
            continue;
        }
        if (!inside) continue;
        if (!Trim(lines[i]).empty()) end = i + 1;
        size_t eq = lines[i].find('=');
        if (eq != std::string::npos && SameName(Trim(lines[i].substr(0, eq)), key)) return i;
    }
    return -1;
}

std::string KeyOf(std::int32_t ListNumber) { return "View" + std::to_string(ListNumber); }

}  // namespace

std::int32_t ReadViewSetting(const std::string& AppPath, std::int32_t ListNumber, std::int32_t Default) {
    std::vector<std::string> lines = ReadLines(IniPath(AppPath));
    int end = -1;
    int at = FindKey(lines, KeyOf(ListNumber), end);
    if (at < 0) return Default;
    std::string value = Trim(lines[at].substr(lines[at].find('=') + 1));
    return static_cast<std::int32_t>(std::lround(std::strtod(value.c_str(), nullptr)));
}

void WriteViewSetting(const std::string& AppPath, std::int32_t ListNumber, std::int32_t View) {
    const std::string path = IniPath(AppPath);
    std::vector<std::string> lines = ReadLines(path);
    const std::string entry = KeyOf(ListNumber) + "=" + std::to_string(View);
    int end = -1;
    int at = FindKey(lines, KeyOf(ListNumber), end);
    if (at >= 0) {
        lines[at] = entry;
    } else if (end >= 0) {
        lines.insert(lines.begin() + end, entry);
    } else {
        lines.push_back(std::string("[") + kSection + "]");
        lines.push_back(entry);
    }
    std::string text;
    for (const std::string& line : lines) text += line + "\r\n";
    std::error_code ec;
    std::filesystem::create_directories(std::filesystem::path(path).parent_path(), ec);
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << "\xFF\xFE" << Utf8ToUtf16Le(text);
}

}  // namespace zelvo
