// zelvo call: late-bound calls of the members of a new object of a public
// class, as the host program makes them, with the results printed as JSON.
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <list>
#include <map>

#include "command.h"
#include "control_json.h"
#include "json_writer.h"
#include "member_call.h"
#include "sha256.h"
#include "platform/core/error.h"
#include "platform/imaging/encode_png.h"
#include "platform/shell/shell_paths.h"
#include "store/library_state.h"
#include "zelvo/addressbook.h"
#include "zelvo/dispatch.h"

namespace zelvo::cli {

namespace {

constexpr std::string_view kUsage =
    "Usage: zelvo call [--class CLASS] [--set PROPERTY=VALUE]... MEMBER [ARG]...\n"
    "                  [--then MEMBER [ARG]...]... [--app-path DIR] [--answer TEXT]...\n"
    "                  [--save-picture FILE]\n"
    "       zelvo call [--class CLASS] --members\n"
    "\n"
    "Makes an object of a public class of the address book (cAddressbook unless\n"
    "--class names another: dbPhoto, AddressByOwner, AddressFields) and calls its\n"
    "members as the host program does: first the properties are set, then the\n"
    "members run in order on the same object. Prints one JSON object:\n"
    "  \"result\"   what the last member gives; null for a member that gives nothing\n"
    "  \"results\"  what each member gives, in order\n"
    "  \"byref\"    each by-reference argument given, by name, with its value\n"
    "             after the call (CorrectDB fills in an empty Path)\n"
    "  \"rows\"     each list or data control the members got, by name, with the\n"
    "             rows it holds afterwards: for a list {tag, text, icon,\n"
    "             smallIcon, subItems}, for a data control its records\n"
    "An object of a public class prints as an object of its properties (an\n"
    "AddressFields as {\"PostIndex\", \"Street\", \"City\", \"Country\", \"Region\"}); a\n"
    "picture as {\"width\", \"height\", \"sha256\"} of its pixels.\n"
    "\n"
    "ARGs fill the member's parameters in order, leaving out the controls: zelvo\n"
    "makes those itself (a list with the columns Name, Type and E-mail for a\n"
    "parameter named ...list... or Lvw..., a data control bound to nothing for\n"
    "one named Data...); any other object parameter is left for the member to\n"
    "give an object back in. Each ARG is converted to its parameter's type: a\n"
    "number for Long, True/False (or a number) for Boolean, the text as it is\n"
    "for String. Optional arguments at the end may be left out; \"\" is an empty\n"
    "text. 'zelvo call --members' lists the classes and their members.\n"
    "\n"
    "Options:\n"
    "  --class CLASS       the public class to make (default cAddressbook)\n"
    "  --set NAME=VALUE    set a property before the calls; for cAddressbook:\n"
    "                      rProject (the current project's path), InsArcPrj\n"
    "                      (True: the project is in the archive), Flags (0\n"
    "                      members of rProject, 1 persons of no project), Flags2\n"
    "                      (1 persons, 2 organizations, 4 subdivisions, 8 job\n"
    "                      titles, 16 employees; 31 all), AppPath, tagOffset\n"
    "  --then MEMBER ARG.. call another member of the same object afterwards\n"
    "  --app-path DIR      the application folder; AppPath unless set otherwise\n"
    "                      (default: $XDG_DATA_HOME/zelvo, i.e. ~/.local/share/zelvo)\n"
    "  --answer TEXT       the answer to the next prompt, in order (a file dialog\n"
    "                      takes the file name)\n"
    "  --save-picture FILE write the last picture the members gave as PNG\n"
    "\n"
    "The book must have been made first (zelvo correct-db, or zelvo call\n"
    "CorrectDB \"\"), as a host runs CorrectDB before the other members.\n"
    "\n"
    "Examples:\n"
    "  zelvo call CorrectDB \"\"\n"
    "  zelvo call Navigate --set 'rProject=A\\B'\n"
    "  zelvo call Navigate --set Flags=1 --set Flags2=1\n"
    "  zelvo call GetDatabasename --app-path /tmp/book\n"
    "  zelvo call --class AddressByOwner InitDB --then SelectOwner 5 0 --then AddressFields\n"
    "  zelvo call --class dbPhoto GetPhotoByEmail anna@example.org --save-picture anna.png\n"
    "  zelvo call MoveABObject2 1 0 \"\" False 'A\\B' False   (file person 1 into A\\B)\n"
    "  zelvo call rProjectMoved 'A' False 'C' False         (folder A became C)\n"
    "\n"
    "Exit status: 0 done; 1 a call failed or a member reported an error (the\n"
    "report is on stderr; the JSON is still printed); 2 bad usage: an unknown\n"
    "class, member or property, a missing argument, or a value of the wrong type.\n";

int ListMembers(const DispClass* only) {
    for (const DispClass* cls : PublicClasses()) {
        if (only && only != cls) continue;
        if (!only) std::cout << "Class " << cls->Name() << "\n";
        for (const DispMember& m : cls->Members()) std::cout << Signature(m) << "\n    " << m.summary << "\n";
        if (!only) std::cout << "\n";
    }
    return kExitOk;
}

// Which control zelvo makes for an Object parameter, told by its name.
enum class ControlKind { None, List, Data };
ControlKind ControlFor(const std::string& name) {
    if (name.rfind("Data", 0) == 0) return ControlKind::Data;
    std::string lower;
    for (char c : name) lower += char(std::tolower(static_cast<unsigned char>(c)));
    if (lower.find("list") != std::string::npos || lower.rfind("lvw", 0) == 0) return ControlKind::List;
    return ControlKind::None;
}

const imaging::Picture* PictureOf(const std::shared_ptr<DispatchObject>& object) {
    auto* handle = dynamic_cast<DispatchHandle<imaging::Picture>*>(object.get());
    return handle ? &handle->Object() : nullptr;
}

std::string ObjectJson(const std::shared_ptr<DispatchObject>& object, int depth = 0) {
    if (!object) return "null";
    if (const imaging::Picture* pic = PictureOf(object))
        return "{\"width\": " + std::to_string(pic->Width) + ", \"height\": " + std::to_string(pic->Height) +
               ", \"sha256\": " + JsonString(Sha256Hex(pic->Pixels)) + "}";
    std::string json = "{";
    bool first = true;
    for (const DispMember& m : object->Class().Members()) {
        if (m.kind != DispKind::Property) continue;
        std::string value = "null";
        try {
            DispResult r = object->GetProperty(m.name);
            if (r.Object()) value = depth < 2 ? ObjectJson(r.Object(), depth + 1) : "{}";
            else value = JsonValue(r.ValueOrNull());
        } catch (const Error&) {
        }
        json += (first ? "" : ", ") + JsonString(m.name) + ": " + value;
        first = false;
    }
    return json + "}";
}

std::string ResultJson(const DispResult& r) { return r.Object() ? ObjectJson(r.Object()) : JsonValue(r.ValueOrNull()); }

struct Call {
    std::string member;
    std::vector<std::string> positional;
};

// The JSON of a name, kept in the order first seen; a later value replaces.
struct NamedJson {
    std::vector<std::pair<std::string, std::string>> items;
    void Put(const std::string& name, std::string json) {
        for (auto& [n, j] : items)
            if (n == name) {
                j = std::move(json);
                return;
            }
        items.emplace_back(name, std::move(json));
    }
    std::string Json() const {
        std::string json = "{";
        for (size_t i = 0; i < items.size(); ++i) json += (i ? ", " : "") + JsonString(items[i].first) + ": " + items[i].second;
        return json + "}";
    }
};

int RunCall(std::span<const std::string> args) {
    std::string className = "cAddressbook";
    bool classGiven = false;
    bool members = false;
    std::string savePicture;
    std::vector<Call> calls(1);
    std::vector<std::pair<std::string, std::string>> sets;
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        if (a == "--members") {
            members = true;
        } else if (a == "--then") {
            if (calls.back().member.empty()) return UsageError("call", "--then must follow a member");
            calls.emplace_back();
        } else if (a == "--set" || a == "--app-path" || a == "--answer" || a == "--class" || a == "--save-picture") {
            if (i + 1 >= args.size()) return UsageError("call", a + " needs a value");
            const std::string& v = args[++i];
            if (a == "--set") {
                size_t eq = v.find('=');
                if (eq == std::string::npos || eq == 0) return UsageError("call", "--set takes PROPERTY=VALUE, not '" + v + "'");
                sets.emplace_back(v.substr(0, eq), v.substr(eq + 1));
            } else if (a == "--app-path") {
                Host().appPath = v;
            } else if (a == "--class") {
                className = v;
                classGiven = true;
            } else if (a == "--save-picture") {
                savePicture = v;
            } else if (Host().terminal) {
                Host().terminal->AddAnswer(v);
            }
        } else if (a.size() > 2 && a.rfind("--", 0) == 0) {
            return UsageError("call", "unknown option '" + a + "'");
        } else if (calls.back().member.empty()) {
            calls.back().member = a;
        } else {
            calls.back().positional.push_back(a);
        }
    }
    const DispClass* cls = FindPublicClass(className);
    if (!cls) return UsageError("call", "there is no public class '" + className + "' (see 'zelvo call --members')");
    if (members) return ListMembers(classGiven ? cls : nullptr);
    if (calls.back().member.empty())
        return UsageError("call", calls.size() > 1 ? "--then needs a member" : "no member given (see 'zelvo call --members')");
    for (const Call& c : calls)
        if (!cls->FindMember(c.member))
            return UsageError("call", cls->Name() + " has no member '" + c.member + "' (see 'zelvo call --class " +
                                          cls->Name() + " --members')");

    std::shared_ptr<DispatchObject> object;
    try {
        object = cls->Create();
    } catch (const Error& e) {
        return UsageError("call", e.description() + ": " + cls->Name());
    }
    // The host's folder is the object's unless the caller sets another.
    const DispMember* appPath = cls->FindMember("AppPath");
    if (appPath && appPath->kind == DispKind::Property) object->SetProperty("AppPath", Variant(HostAppPath()));
    for (const auto& [name, value] : sets) {
        const DispMember* p = cls->FindMember(name);
        if (!p || p->kind != DispKind::Property) return UsageError("call", cls->Name() + " has no property '" + name + "'");
        try {
            object->SetProperty(name, Variant(value));
        } catch (const Error& e) {
            return UsageError("call", "--set " + name + ": '" + value + "' is no " + DispTypeName(*p->result) + " (" +
                                          e.description() + ")");
        }
    }
    std::string folder = appPath ? object->GetProperty("AppPath").ValueOrNull().AsText() : HostAppPath();
    {
        std::error_code ec;
        if (!folder.empty()) std::filesystem::create_directories(folder, ec);
    }
    AppPath = folder;

    // The controls made for the calls live until the JSON is written.
    std::list<ui::ListView> lists;
    std::list<ui::DataControl> datas;
    std::vector<std::pair<std::string, ui::ListView*>> listArgs;
    std::vector<std::pair<std::string, ui::DataControl*>> dataArgs;
    std::vector<DispResult> results;
    NamedJson byref;
    const imaging::Picture* lastPicture = nullptr;
    auto notePicture = [&](const std::shared_ptr<DispatchObject>& o) {
        if (const imaging::Picture* pic = PictureOf(o)) lastPicture = pic;
    };
    std::vector<std::shared_ptr<DispatchObject>> keep;  // objects given back, alive until the end

    int reportsBefore = ShellPaths().ReportCount();
    for (const Call& c : calls) {
        const DispMember* member = cls->FindMember(c.member);
        std::vector<DispArg> dispArgs;
        size_t next = 0;
        if (member->kind == DispKind::Property) {
            if (c.positional.size() > 1) return UsageError("call", "a property takes at most one value");
            if (!c.positional.empty()) dispArgs.emplace_back(Variant(c.positional[0]));
            next = c.positional.size();
        }
        for (const DispParam& p : member->params) {
            if (p.type == DispType::Object) {
                switch (ControlFor(p.name)) {
                    case ControlKind::Data:
                        datas.emplace_back();
                        dataArgs.emplace_back(p.name, &datas.back());
                        dispArgs.emplace_back(&datas.back());
                        break;
                    case ControlKind::List: {
                        ui::ListView& lv = lists.emplace_back();
                        SetUpHostList(lv);
                        listArgs.emplace_back(p.name, &lv);
                        dispArgs.emplace_back(&lv);
                        break;
                    }
                    case ControlKind::None: dispArgs.emplace_back(); break;
                }
            } else if (next < c.positional.size()) {
                dispArgs.emplace_back(Variant(c.positional[next++]));
            } else {
                dispArgs.emplace_back();  // left out
            }
        }
        if (next < c.positional.size())
            return UsageError("call", member->name + " takes " + std::to_string(next) + " argument" +
                                          (next == 1 ? "" : "s") + ", not " + std::to_string(c.positional.size()) +
                                          ": " + Signature(*member));
        // Trailing arguments that were left out are not passed at all.
        while (!dispArgs.empty() && !dispArgs.back().value && !dispArgs.back().HasObject()) dispArgs.pop_back();
        // An object parameter left for the member keeps its slot, so the
        // object it gives back has somewhere to go.
        while (dispArgs.size() < member->params.size() && member->params[dispArgs.size()].byRef &&
               member->params[dispArgs.size()].type == DispType::Object &&
               ControlFor(member->params[dispArgs.size()].name) == ControlKind::None)
            dispArgs.emplace_back();

        try {
            DispResult result = object->Invoke(member->name, dispArgs);
            if (result.Object()) {
                notePicture(result.Object());
                keep.push_back(result.Object());
            }
            results.push_back(std::move(result));
        } catch (const Error& e) {
            if (IsUsageError(e.number()))
                return UsageError("call", e.description() + " (" + std::to_string(e.number()) + "): " + Signature(*member));
            std::cerr << "zelvo call " << member->name << ": error " << e.number() << ": " << e.description() << "\n";
            return kExitFailure;
        }
        for (size_t i = 0; i < member->params.size() && i < dispArgs.size(); ++i) {
            const DispParam& p = member->params[i];
            if (!p.byRef) continue;
            if (p.type != DispType::Object && dispArgs[i].value) byref.Put(p.name, JsonValue(*dispArgs[i].value));
            if (p.type == DispType::Object && ControlFor(p.name) == ControlKind::None) {
                notePicture(dispArgs[i].Object());
                if (dispArgs[i].Object()) keep.push_back(dispArgs[i].Object());
                byref.Put(p.name, ObjectJson(dispArgs[i].Object()));
            }
        }
    }

    std::string json = "{\"result\": " + ResultJson(results.back()) + ", \"results\": [";
    for (size_t i = 0; i < results.size(); ++i) json += (i ? ", " : "") + ResultJson(results[i]);
    json += "], \"byref\": " + byref.Json() + ", \"rows\": {";
    bool first = true;
    for (const auto& [name, lv] : listArgs) {
        json += (first ? "" : ", ") + JsonString(name) + ": " + ListRowsJson(*lv);
        first = false;
    }
    for (const auto& [name, data] : dataArgs) {
        json += (first ? "" : ", ") + JsonString(name) + ": " + DataRowsJson(*data);
        first = false;
    }
    std::cout << json << "}}\n";

    int status = kExitOk;
    if (!savePicture.empty()) {
        if (!lastPicture) {
            std::cerr << "zelvo call: no member gave a picture; " << savePicture << " not written\n";
            status = kExitFailure;
        } else {
            std::vector<std::uint8_t> png = imaging::EncodePng(*lastPicture);
            std::ofstream out(savePicture, std::ios::binary | std::ios::trunc);
            out.write(reinterpret_cast<const char*>(png.data()), std::streamsize(png.size()));
            if (!out.flush()) {
                std::cerr << "zelvo call: cannot write " << savePicture << "\n";
                status = kExitFailure;
            }
        }
    }
    if (ShellPaths().ReportCount() > reportsBefore) {
        std::cerr << "zelvo call: the call ended in an error (reported above)\n";
        return kExitFailure;
    }
    return status;
}

}  // namespace

extern const Command kCallCommand{"call", "call a member of the address book's automation object (JSON out)", kUsage,
                                  RunCall};

}  // namespace zelvo::cli
