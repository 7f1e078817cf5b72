// zelvo call: a late-bound call of one member of a new cAddressbook, as the
// host program makes it, with the result printed as JSON.
#include <filesystem>
#include <iostream>

#include "command.h"
#include "control_json.h"
#include "json_writer.h"
#include "member_call.h"
#include "platform/core/error.h"
#include "platform/shell/shell_paths.h"
#include "store/library_state.h"
#include "zelvo/addressbook.h"
#include "zelvo/dispatch.h"

namespace zelvo::cli {

namespace {

constexpr std::string_view kUsage =
    "Usage: zelvo call MEMBER [ARG]... [--set PROPERTY=VALUE]... [--app-path DIR] [--answer TEXT]...\n"
    "       zelvo call --members\n"
    "\n"
    "Calls MEMBER of a new cAddressbook, the address book's automation object,\n"
    "as the host program does: first the properties are set, then the member is\n"
    "called. Prints one JSON object:\n"
    "  \"result\"  what the member gives; null for a member that gives nothing\n"
    "  \"byref\"   each by-reference argument given, by name, with its value\n"
    "            after the call (CorrectDB fills in an empty Path)\n"
    "  \"rows\"    each list or data control the member got, by name, with the\n"
    "            rows it holds afterwards: for a list {tag, text, icon,\n"
    "            smallIcon, subItems}, for a data control its records\n"
    "\n"
    "ARGs fill the member's parameters in order, leaving out the controls: zelvo\n"
    "makes those itself (a list with the columns Name, Type and E-mail; data\n"
    "controls bound to nothing). Each ARG is converted to its parameter's type:\n"
    "a number for Long, True/False (or a number) for Boolean, the text as it is\n"
    "for String. Optional arguments at the end may be left out; \"\" is an empty\n"
    "text. 'zelvo call --members' lists the members with their parameters.\n"
    "\n"
    "Options:\n"
    "  --set NAME=VALUE  set a property before the call: rProject (the current\n"
    "                    project's path), InsArcPrj (True: the project is in the\n"
    "                    archive), Flags (0 members of rProject, 1 persons of no\n"
    "                    project), Flags2 (1 persons, 2 organizations, 4\n"
    "                    subdivisions, 8 job titles, 16 employees; 31 all),\n"
    "                    AppPath, tagOffset\n"
    "  --app-path DIR    the application folder; AppPath unless set otherwise\n"
    "                    (default: $XDG_DATA_HOME/zelvo, i.e. ~/.local/share/zelvo)\n"
    "  --answer TEXT     the answer to the next text prompt, in order\n"
    "\n"
    "The book must have been made first (zelvo correct-db, or zelvo call\n"
    "CorrectDB \"\"), as a host runs CorrectDB before the other members.\n"
    "\n"
    "Examples:\n"
    "  zelvo call CorrectDB \"\"\n"
    "  zelvo call Navigate --set 'rProject=A\\B'\n"
    "  zelvo call Navigate --set Flags=1 --set Flags2=1\n"
    "  zelvo call GetDatabasename --app-path /tmp/book\n"
    "\n"
    "Exit status: 0 done; 1 the call failed or the member reported an error\n"
    "(the report is on stderr; the JSON is still printed); 2 bad usage: an\n"
    "unknown member or property, a missing argument, or a value of the wrong\n"
    "type.\n";

int ListMembers() {
    for (const DispMember& m : cAddressbookMembers())
        std::cout << Signature(m) << "\n    " << m.summary << "\n";
    return kExitOk;
}

int RunCall(std::span<const std::string> args) {
    if (!args.empty() && args[0] == "--members") return ListMembers();
    std::string memberName;
    std::vector<std::string> positional;
    std::vector<std::pair<std::string, std::string>> sets;
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        if (a == "--set" || a == "--app-path" || a == "--answer") {
            if (i + 1 >= args.size()) return UsageError("call", a + " needs a value");
            const std::string& v = args[++i];
            if (a == "--set") {
                size_t eq = v.find('=');
                if (eq == std::string::npos || eq == 0) return UsageError("call", "--set takes PROPERTY=VALUE, not '" + v + "'");
                sets.emplace_back(v.substr(0, eq), v.substr(eq + 1));
            } else if (a == "--app-path") {
                Host().appPath = v;
            } else if (Host().terminal) {
                Host().terminal->AddAnswer(v);
            }
        } else if (a.size() > 2 && a.rfind("--", 0) == 0) {
            return UsageError("call", "unknown option '" + a + "'");
        } else if (memberName.empty()) {
            memberName = a;
        } else {
            positional.push_back(a);
        }
    }
    if (memberName.empty()) return UsageError("call", "no member given (see 'zelvo call --members')");
    const DispMember* member = FindcAddressbookMember(memberName);
    if (!member) return UsageError("call", "cAddressbook has no member '" + memberName + "' (see 'zelvo call --members')");

    cAddressbook book;
    book.AppPath = HostAppPath();
    for (const auto& [name, value] : sets)
        if (std::string why = MemberCall::SetProperty(book, name, value); !why.empty()) return UsageError("call", why);
    {
        std::error_code ec;
        if (!book.AppPath.empty()) std::filesystem::create_directories(book.AppPath, ec);
    }

    MemberCall call(*member);
    if (std::string why = call.Prepare({positional.begin(), positional.end()}); !why.empty())
        return UsageError("call", why);

    int reportsBefore = ShellPaths().ReportCount();
    Variant result;
    try {
        result = call.Invoke(book);
    } catch (const Error& e) {
        if (IsUsageError(e.number()))
            return UsageError("call", e.description() + " (" + std::to_string(e.number()) + "): " + Signature(*member));
        std::cerr << "zelvo call " << member->name << ": error " << e.number() << ": " << e.description() << "\n";
        return kExitFailure;
    }

    std::cout << "{" << call.ResultJson(result) << ", \"rows\": " << call.RowsJson() << "}\n";
    if (ShellPaths().ReportCount() > reportsBefore) {
        std::cerr << "zelvo call " << member->name << ": the call ended in an error (reported above)\n";
        return kExitFailure;
    }
    return kExitOk;
}

}  // namespace

extern const Command kCallCommand{"call", "call a member of the address book's automation object (JSON out)", kUsage,
                                  RunCall};

}  // namespace zelvo::cli
