#include "hostservices/shell_actions.h"

#include <fnmatch.h>

#include <algorithm>
#include <filesystem>

#include "hostservices/lng_text.h"
#include "hostservices/message_wrappers.h"
#include "platform/core/error.h"
#include "platform/shell/desktop_services.h"
#include "platform/shell/lng_res.h"
#include "platform/shell/shell_paths.h"

namespace zelvo {

namespace {

// The value of `section`/`key` in Shell.ini of the settings folder of
// `appPath`; "" when the file or the key is missing. Read with the reader of
// the language catalogues, which has the same form.
std::string ShellSetting(const std::string& appPath, const std::string& section, const std::string& key) {
    shell::ShellPaths paths;
    paths.SetAppPath(appPath);
    std::string file = paths.GetSettingsFolder() + "Shell.ini";
    std::error_code ec;
    if (!std::filesystem::exists(file, ec)) return {};
    try {
        auto settings = shell::ReadCatalogue(file);
        auto lower = [](std::string s) {
            for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
            return s;
        };
        auto s = settings.find(lower(section));
        if (s == settings.end()) return {};
        auto k = s->second.find(lower(key));
        return k == s->second.end() ? std::string() : k->second;
    } catch (const Error& e) {
        RecordSwallowed(e, "Shell.ini");
        return {};
    }
}

bool IsTrue(const std::string& value) {
    std::string v;
    for (char c : value) v += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return v == "true" || v == "1" || v == "-1" || v == "yes";
}

// Every " vbcrlf " of a text, blanks included and in any case, becomes a
// line break.
std::string ReplaceLineBreaks(std::string text) {
    const std::string marker = " vbcrlf ";
    for (size_t at = 0; at + marker.size() <= text.size();) {
        bool same = std::equal(marker.begin(), marker.end(), text.begin() + at, [](char a, char b) {
            return a == std::tolower(static_cast<unsigned char>(b));
        });
        if (same) {
            text.replace(at, marker.size(), "\n");
            at += 1;
        } else {
            ++at;
        }
    }
    return text;
}

}  // namespace

void ShowHelp(const std::string& Topic, std::int64_t) {
    std::string helpFile = LngHelpFile();
    if (helpFile.empty()) {
        std::string text = LngText("Module1.ShowHelp", "1", "The help file vbcrlf %1 vbcrlf was not found!");
        if (size_t at = text.find("%1"); at != std::string::npos) text.replace(at, 2, kManualFileName);
        // A message box of this desktop breaks lines at "\n", where the
        // Windows one wanted a carriage return before it.
        UniMsgBox(ReplaceLineBreaks(text), 48);
        return;
    }
    // As with the help viewer's call, whether the browser came up is not
    // looked at.
    shell::CurrentDesktopServices().OpenHelp(helpFile, Topic);
}

Variant ExecuteExternalMailer(const std::string& Address) {
    if (!shell::CurrentDesktopServices().OpenMailClient("mailto:" + Address))
        shell::SharedShellPaths().ReportError(Error(53, "The mail client could not be started", "xdg-open"),
                                              "Zelvo.dll\\ExecuteExternalMailer");
    return Variant();
}

bool MailSettings::UseExternalMailer() const { return IsTrue(ShellSetting(appPath_, "Mail", "UseExternalMailer")); }

MailSettings& SharedMailSettings() {
    static MailSettings settings;
    return settings;
}

void MailAction(const std::string& Address, const std::string& AppPath, const std::string& rProject,
                bool inArchive) {
    if (Address.empty()) return;
    MailSettings& settings = SharedMailSettings();
    settings.SetAppPath(AppPath);
    if (settings.UseExternalMailer()) {
        ExecuteExternalMailer(Address);
        return;
    }
    shell::LetterRequest letter;
    letter.project = rProject;
    letter.filter = 2;
    letter.inArchive = inArchive;
    letter.address = Address;
    shell::CurrentDesktopServices().ComposeLetter(letter);
}

void OpenPage(const std::string& page) { shell::CurrentDesktopServices().OpenWebPage(page); }

std::string LauncherParameters(const std::vector<std::string>& fields) {
    // The first part is the code of the separator that parts the rest.
    std::string text = std::to_string(static_cast<int>('*')) + ";CustomPostrel.cPostrel*LoadABPack*";
    for (size_t i = 0; i < fields.size(); ++i) text += (i ? "*" : "") + fields[i];
    return text;
}

void StartLauncher(const std::vector<std::string>& fields, const std::string& AppPath) {
    // A Windows build ran kolbrun.exe beside the library; here the settings
    // name the program, and with none there is nothing to start.
    std::string command = ShellSetting(AppPath, "Launcher", "Command");
    if (command.empty()) return;
    shell::CurrentDesktopServices().StartLauncher(command, LauncherParameters(fields));
}

std::string UniDir(const std::string& PathName, std::int32_t Attributes) {
    namespace fs = std::filesystem;
    fs::path path(PathName);
    fs::path folder = path.has_parent_path() ? path.parent_path() : fs::path(".");
    std::string pattern = path.filename().string();
    if (pattern.empty()) pattern = "*";
    std::vector<std::string> names;
    std::error_code ec;
    for (fs::directory_iterator it(folder, ec), end; !ec && it != end; it.increment(ec)) {
        std::string name = it->path().filename().string();
        if (name[0] == '.' && !(Attributes & vbHidden)) continue;
        std::error_code sec;
        bool isDir = it->is_directory(sec);
        if (isDir && !(Attributes & vbDirectory)) continue;
        if (fnmatch(pattern.c_str(), name.c_str(), FNM_CASEFOLD) == 0) names.push_back(name);
    }
    if (names.empty()) return {};
    return *std::min_element(names.begin(), names.end());
}

}  // namespace zelvo
