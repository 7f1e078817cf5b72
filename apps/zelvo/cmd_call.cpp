// zelvo call: a late-bound call of one member of a new cAddressbook, as the
// host program makes it, with the result printed as JSON.
#include <filesystem>
#include <iostream>
#include <list>
#include <map>

#include "command.h"
#include "control_json.h"
#include "json_writer.h"
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

std::string Signature(const DispMember& m) {
    std::string s = m.name;
    if (m.kind == DispKind::Property) return s + " As " + DispTypeName(*m.result) + " (property)";
    s += "(";
    for (size_t i = 0; i < m.params.size(); ++i) {
        const DispParam& p = m.params[i];
        s += i ? ", " : "";
        if (p.optional) s += "Optional ";
        s += p.byRef ? "ByRef " : "";
        s += p.name + " As " + DispTypeName(p.type);
        if (p.defaultValue) s += " = " + JsonValue(*p.defaultValue);
    }
    s += ")";
    if (m.result) s += " As " + std::string(DispTypeName(*m.result));
    return s;
}

int ListMembers() {
    for (const DispMember& m : cAddressbookMembers())
        std::cout << Signature(m) << "\n    " << m.summary << "\n";
    return kExitOk;
}

// Numbers of the dispatch that mean the caller asked wrongly.
bool IsUsageError(int number) {
    return number == 438 || number == 449 || number == 450 || number == 13 || number == 6 || number == 94 ||
           number == 424;
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
    for (const auto& [name, value] : sets) {
        const DispMember* p = FindcAddressbookMember(name);
        if (!p || p->kind != DispKind::Property) return UsageError("call", "cAddressbook has no property '" + name + "'");
        try {
            SetProperty(book, name, Variant(value));
        } catch (const Error& e) {
            return UsageError("call", "--set " + name + ": '" + value + "' is no " + DispTypeName(*p->result) +
                                          " (" + e.description() + ")");
        }
    }
    {
        std::error_code ec;
        if (!book.AppPath.empty()) std::filesystem::create_directories(book.AppPath, ec);
    }

    // The arguments: controls made here, values from the command line.
    std::list<ui::ListView> lists;
    std::list<ui::DataControl> datas;
    std::vector<DispArg> dispArgs;
    std::vector<std::pair<std::string, ui::ListView*>> listArgs;
    std::vector<std::pair<std::string, ui::DataControl*>> dataArgs;
    size_t next = 0;
    if (member->kind == DispKind::Property) {
        if (positional.size() > 1) return UsageError("call", "a property takes at most one value");
        if (!positional.empty()) dispArgs.emplace_back(Variant(positional[0]));
        next = positional.size();
    }
    for (const DispParam& p : member->params) {
        if (p.type == DispType::Object) {
            if (p.name.rfind("Data", 0) == 0) {
                datas.emplace_back();
                dataArgs.emplace_back(p.name, &datas.back());
                dispArgs.emplace_back(&datas.back());
            } else {
                ui::ListView& lv = lists.emplace_back();
                lv.SetView(ui::lvwReport);
                for (const char* h : {"Name", "Type", "E-mail"}) lv.ColumnHeaders().Add(h);
                // The icons of every kind of row, as a host's list has them:
                // without them Navigate adds no office objects.
                auto icons = std::make_shared<ui::ImageList>();
                for (const char* key : {"User", "Org", "SubDiv", "JobTitle", "Employee"})
                    icons->ListImages().Add(key, nullptr);
                lv.SetSmallIcons(icons);
                listArgs.emplace_back(p.name, &lv);
                dispArgs.emplace_back(&lv);
            }
        } else if (next < positional.size()) {
            dispArgs.emplace_back(Variant(positional[next++]));
        } else {
            dispArgs.emplace_back();  // left out
        }
    }
    if (next < positional.size())
        return UsageError("call", memberName + " takes " + std::to_string(next) + " argument" +
                                      (next == 1 ? "" : "s") + ", not " + std::to_string(positional.size()) +
                                      ": " + Signature(*member));
    // Trailing arguments that were left out are not passed at all.
    while (!dispArgs.empty() && !dispArgs.back().value &&
           std::holds_alternative<std::monostate>(dispArgs.back().object))
        dispArgs.pop_back();

    int reportsBefore = ShellPaths().ReportCount();
    Variant result;
    try {
        result = Invoke(book, member->name, dispArgs);
    } catch (const Error& e) {
        if (IsUsageError(e.number()))
            return UsageError("call", e.description() + " (" + std::to_string(e.number()) + "): " + Signature(*member));
        std::cerr << "zelvo call " << member->name << ": error " << e.number() << ": " << e.description() << "\n";
        return kExitFailure;
    }

    std::string json = "{\"result\": " + JsonValue(result) + ", \"byref\": {";
    bool first = true;
    for (size_t i = 0; i < member->params.size() && i < dispArgs.size(); ++i) {
        const DispParam& p = member->params[i];
        if (!p.byRef || p.type == DispType::Object || !dispArgs[i].value) continue;
        json += (first ? "" : ", ") + JsonString(p.name) + ": " + JsonValue(*dispArgs[i].value);
        first = false;
    }
    json += "}, \"rows\": {";
    first = true;
    for (const auto& [name, lv] : listArgs) {
        json += (first ? "" : ", ") + JsonString(name) + ": " + ListRowsJson(*lv);
        first = false;
    }
    for (const auto& [name, data] : dataArgs) {
        json += (first ? "" : ", ") + JsonString(name) + ": " + DataRowsJson(*data);
        first = false;
    }
    std::cout << json << "}}\n";
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
