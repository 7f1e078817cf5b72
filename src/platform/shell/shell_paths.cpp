#include "platform/shell/shell_paths.h"

#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <mutex>

namespace fs = std::filesystem;

namespace zelvo::shell {

namespace {

std::string& ProgramFolderOverride() {
    static std::string folder;
    return folder;
}

std::string RealProgramFolder() {
    std::error_code ec;
    fs::path exe = fs::read_symlink("/proc/self/exe", ec);
    if (ec || exe.empty()) return ShellPaths::AddSeparator(fs::current_path(ec).string());
    return ShellPaths::AddSeparator(exe.parent_path().string());
}

// "a/b/" and "a/b" name the same folder; compare them without the separator.
std::string WithoutSeparator(std::string path) {
    while (path.size() > 1 && path.back() == '/') path.pop_back();
    return path;
}

std::string Timestamp() {
    std::time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    std::tm utc{};
    gmtime_r(&now, &utc);
    char buf[32];
    std::strftime(buf, sizeof buf, "%Y-%m-%dT%H:%M:%SZ", &utc);
    return buf;
}

}  // namespace

std::string ProgramFolder() {
    const std::string& forced = ProgramFolderOverride();
    if (!forced.empty()) return forced;
    static const std::string real = RealProgramFolder();
    return real;
}

void SetProgramFolder(const std::string& folder) {
    ProgramFolderOverride() = ShellPaths::AddSeparator(folder);
}

ShellPaths& SharedShellPaths() {
    static ShellPaths paths;
    return paths;
}

void ShellPaths::SetAppPath(const std::string& folder) { appPath_ = folder; }

std::string ShellPaths::AddSeparator(const std::string& folder) {
    if (folder.empty() || folder.back() == '/') return folder;
    return folder + '/';
}

std::string ShellPaths::Base() const { return appPath_.empty() ? ProgramFolder() : AddSeparator(appPath_); }

std::string ShellPaths::GetDataFolder() const { return Base(); }
std::string ShellPaths::GetArchiveFolder() const { return Base() + ".archive/"; }
std::string ShellPaths::GetSettingsFolder() const { return Base() + ".settings/"; }

std::string ShellPaths::GetCurrentFolder() const {
    return currentFolder_.empty() ? GetDataFolder() : AddSeparator(currentFolder_);
}

void ShellPaths::SetCurrentFolder(const std::string& folder) { currentFolder_ = folder; }

bool ShellPaths::IsArchivePath(const std::string& path) const {
    std::string root = WithoutSeparator(GetArchiveFolder());
    std::string p = WithoutSeparator(path);
    if (p == root) return true;
    return p.size() > root.size() && p.compare(0, root.size(), root) == 0 && p[root.size()] == '/';
}

std::string ShellPaths::GetOldDataPath(const std::string& path) const {
    return ProgramFolder() + GetFileName(path);
}

void ShellPaths::ReportError(const Error& err, std::string_view label) const {
    ErrObject e;
    e.Set(err);
    ReportError(e, label);
}

void ShellPaths::ReportError(const ErrObject& err, std::string_view label) const {
    std::string line = Timestamp() + " " + std::string(label) + ": error " + std::to_string(err.Number) + ": " +
                       err.Description;
    if (!err.Source.empty()) line += " (" + err.Source + ")";
    ++reports_;
    std::cerr << "zelvo: " << line << "\n";
    try {
        std::error_code ec;
        std::string folder = GetSettingsFolder();
        fs::create_directories(folder, ec);
        std::ofstream log(folder + "zelvo.log", std::ios::app);
        if (log) log << line << "\n";
    } catch (...) {
        // The report has reached stderr; a log that cannot be written is not
        // worth failing the caller for.
    }
}

std::string ShellPaths::ToWinName(const std::string& name) {
    std::string out;
    out.reserve(name.size());
    for (unsigned char c : name) {
        bool bad = c < 0x20 || c == 0x7F || c == '/' || c == '\\' || c == '<' || c == '>' || c == ':' ||
                   c == '"' || c == '|' || c == '?' || c == '*';
        out += bad ? '_' : static_cast<char>(c);
    }
    while (!out.empty() && (out.back() == ' ' || out.back() == '.')) out.pop_back();
    return out.empty() ? "_" : out;
}

std::string ShellPaths::GetFolderOfPath(const std::string& path) {
    size_t slash = path.find_last_of('/');
    return slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
}

std::string ShellPaths::GetFileOfPath(const std::string& path) {
    size_t slash = path.find_last_of('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

std::string ShellPaths::GetExtension(const std::string& path) {
    std::string file = GetFileOfPath(path);
    size_t dot = file.find_last_of('.');
    return dot == std::string::npos || dot == 0 ? std::string() : file.substr(dot + 1);
}

std::string ShellPaths::StripExtension(const std::string& name) {
    std::string folder = GetFolderOfPath(name);
    std::string file = GetFileOfPath(name);
    size_t dot = file.find_last_of('.');
    return dot == std::string::npos || dot == 0 ? name : folder + file.substr(0, dot);
}

std::string ShellPaths::GetParentFolderName(const std::string& path) {
    std::string p = WithoutSeparator(path);
    size_t slash = p.find_last_of('/');
    if (slash == std::string::npos) return {};
    return slash == 0 ? "/" : p.substr(0, slash);
}

std::string ShellPaths::GetFileName(const std::string& path) { return GetFileOfPath(WithoutSeparator(path)); }

}  // namespace zelvo::shell
