// zelvo ui: a member of cAddressbook called with a script for a person, so
// that tests, scripts and bug reports drive the library's windows from a
// terminal.
#include <filesystem>
#include <iostream>

#include "command.h"
#include "json_writer.h"
#include "member_call.h"
#include "platform/core/error.h"
#include "platform/shell/desktop_services.h"
#include "script_host.h"
#include "store/library_state.h"
#include "ui_script.h"

namespace zelvo::cli {

namespace {

constexpr std::string_view kUsage =
    "Usage: zelvo ui [--app-path DIR] [--set NAME=VALUE]... --script FILE MEMBER [--arg NAME=VALUE]...\n"
    "\n"
    "Calls MEMBER of a new cAddressbook (as 'zelvo call' does) while FILE plays\n"
    "the person at the screen. Whenever the library waits for the person - a\n"
    "window, a message box, an input box, a file dialog - the next lines of FILE\n"
    "say what the person does:\n"
    "\n"
    "  dump [FORM]                 print the window as one JSON line (the window\n"
    "                              on top when no FORM is given)\n"
    "  click FORM.CONTROL          press a button or choose a menu item\n"
    "  click FORM.TOOLBAR:KEY      press a toolbar's button, or choose a popup menu's item\n"
    "  select FORM.LIST N[,M...]   select rows (from 1); the first is clicked.\n"
    "                              On a tab strip or combo box: the Nth entry\n"
    "  dblclick FORM.LIST N        double-click a row\n"
    "  type FORM.CONTROL TEXT      replace the text of a text box\n"
    "  close FORM                  the window's close button\n"
    "  answer VALUE                answer the next dialog: a message box with a\n"
    "                              button number (1 OK, 2 Cancel, 6 Yes, 7 No), an\n"
    "                              input box with a text, a file dialog or the\n"
    "                              project picker with a path, or cancel\n"
    "\n"
    "A TEXT or VALUE runs to the end of the line; one in double quotes is read\n"
    "as a JSON string (\"a\\tb\"). Blank lines and lines starting with # are skipped.\n"
    "\n"
    "Output, one JSON object a line, in the order things happen:\n"
    "  {\"form\": NAME, \"caption\": ..., \"controls\": {CONTROL: ...}}   a dump: a list\n"
    "      gives rows (text, tag, icon, subItems, selected), enabled, visible; a\n"
    "      text box its text; a toolbar its buttons by key (pressed, enabled,\n"
    "      visible, image, tip); a button its caption\n"
    "  {\"msgbox\": {\"prompt\", \"style\", \"title\"}}, {\"inputbox\": ...}, {\"open\": ...},\n"
    "  {\"save\": ...}, {\"picker\": ...}   each dialog as it is shown\n"
    "  {\"shell\": {\"action\", ...}}        each help, mail, web or launcher action\n"
    "  {\"result\": ..., \"byref\": {...}}   last: what the member gave\n"
    "\n"
    "A dialog with no answer left is cancelled, and a window still open when the\n"
    "script ends is closed by its frame; both are said on stderr. A click on a\n"
    "disabled, hidden or read-only control does nothing (said on stderr).\n"
    "\n"
    "Options:\n"
    "  --app-path DIR    the application folder (default: $XDG_DATA_HOME/zelvo)\n"
    "  --set NAME=VALUE  set a property of cAddressbook first (rProject, InsArcPrj,\n"
    "                    Flags, Flags2, AppPath, tagOffset)\n"
    "  --script FILE     the person's steps\n"
    "  --arg NAME=VALUE  a parameter of MEMBER by name\n"
    "\n"
    "Example: the unsorted persons, then all persons, then closed with Cancel:\n"
    "  printf 'dump\\nclick frmPersons.tbPrj:AllPersons\\ndump\\nclick frmPersons.cmdCancel\\n' >s\n"
    "  zelvo ui --script s ShowAddressBook\n"
    "\n"
    "Exit status: 0 done; 1 the member reported an error, or the script had\n"
    "steps left when the call returned; 2 bad usage: an unknown member, a\n"
    "missing or unreadable script, or a step that cannot be done (the message\n"
    "names the file and line).\n";

int RunUi(std::span<const std::string> args) {
    std::string scriptPath;
    std::string memberName;
    std::vector<std::pair<std::string, std::string>> sets;
    std::vector<std::pair<std::string, std::string>> namedArgs;
    auto pair = [](const std::string& v, std::vector<std::pair<std::string, std::string>>& into) {
        size_t eq = v.find('=');
        if (eq == std::string::npos || eq == 0) return false;
        into.emplace_back(v.substr(0, eq), v.substr(eq + 1));
        return true;
    };
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        if (a == "--set" || a == "--arg" || a == "--app-path" || a == "--script") {
            if (i + 1 >= args.size()) return UsageError("ui", a + " needs a value");
            const std::string& v = args[++i];
            if (a == "--set" && !pair(v, sets)) return UsageError("ui", "--set takes NAME=VALUE, not '" + v + "'");
            if (a == "--arg" && !pair(v, namedArgs)) return UsageError("ui", "--arg takes NAME=VALUE, not '" + v + "'");
            if (a == "--app-path") Host().appPath = v;
            if (a == "--script") scriptPath = v;
        } else if (a.size() > 1 && a[0] == '-') {
            return UsageError("ui", "unknown option '" + a + "'");
        } else if (memberName.empty()) {
            memberName = a;
        } else {
            return UsageError("ui", "one member only; give its parameters as --arg NAME=VALUE");
        }
    }
    if (scriptPath.empty()) return UsageError("ui", "no --script FILE given");
    if (memberName.empty()) return UsageError("ui", "no member given (see 'zelvo call --members')");
    const DispMember* member = FindcAddressbookMember(memberName);
    if (!member) return UsageError("ui", "cAddressbook has no member '" + memberName + "'");

    std::vector<std::optional<std::string>> values;
    for (const auto& [name, value] : namedArgs) {
        size_t at = 0;
        bool found = false;
        for (const DispParam& p : member->params) {
            if (p.type == DispType::Object) continue;
            if (p.name.size() == name.size() &&
                std::equal(name.begin(), name.end(), p.name.begin(),
                           [](char x, char y) { return std::tolower(x) == std::tolower(y); })) {
                found = true;
                break;
            }
            ++at;
        }
        if (!found) return UsageError("ui", member->name + " has no parameter '" + name + "': " + Signature(*member));
        if (values.size() <= at) values.resize(at + 1);
        values[at] = value;
    }

    std::optional<UiScript> script;
    try {
        script = UiScript::Read(scriptPath);
    } catch (const ScriptError& e) {
        return UsageError("ui", e.what());
    }

    cAddressbook book;
    book.AppPath = HostAppPath();
    for (const auto& [name, value] : sets)
        if (std::string why = MemberCall::SetProperty(book, name, value); !why.empty()) return UsageError("ui", why);
    MemberCall call(*member);
    if (std::string why = call.Prepare(values); !why.empty()) return UsageError("ui", why);

    ScriptUiHost host(*script, std::cout, std::cerr);
    ui::UiHost* previous = ui::SetUiHost(&host);
    // The desktop's programs are not started; each call is printed instead.
    shell::RecordingDesktopServices desktop;
    desktop.onCall = [&host](const shell::RecordingDesktopServices::Call& call) {
        std::string json = "{\"shell\": {\"action\": " + JsonString(call.action);
        for (const auto& [name, value] : call.fields) json += ", " + JsonString(name) + ": " + JsonString(value);
        host.Print(json + "}}");
    };
    shell::DesktopServices* previousDesktop = shell::SetDesktopServices(&desktop);
    int reportsBefore = ShellPaths().ReportCount();
    Variant result;
    int status = kExitOk;
    try {
        result = call.Invoke(book);
    } catch (const ScriptError& e) {
        status = UsageError("ui", e.what());
    } catch (const Error& e) {
        if (IsUsageError(e.number()))
            status = UsageError("ui", e.description() + " (" + std::to_string(e.number()) + "): " + Signature(*member));
        else {
            std::cerr << "zelvo ui " << member->name << ": error " << e.number() << ": " << e.description() << "\n";
            status = kExitFailure;
        }
    }
    ui::SetUiHost(previous);
    shell::SetDesktopServices(previousDesktop);
    if (status != kExitOk) return status;

    host.Print("{" + call.ResultJson(result) + "}");
    if (!script->AtEnd()) {
        std::cerr << "zelvo ui: " << script->Name() << ":" << script->Peek().line << ": the call returned with "
                  << script->Left() << " step" << (script->Left() == 1 ? "" : "s") << " of the script unused\n";
        return kExitFailure;
    }
    if (ShellPaths().ReportCount() > reportsBefore) {
        std::cerr << "zelvo ui " << member->name << ": the call ended in an error (reported above)\n";
        return kExitFailure;
    }
    return kExitOk;
}

}  // namespace

extern const Command kUiCommand{"ui", "call a member with a script that plays the person at its windows (JSON out)",
                                kUsage, RunUi};

}  // namespace zelvo::cli
