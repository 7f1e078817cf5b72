// zelvo org: the organizations of the book for a person at a terminal: the
// tree of units with their job titles and employees, and the premises of
// one organization. Read-only: units are made with 'zelvo call
// AddNewOfficeObject', and deleted with DeleteObjfromPrj.
#include <iostream>
#include <unordered_set>
#include <vector>

#include "command.h"
#include "json_writer.h"
#include "organizations/org_model.h"
#include "organizations/org_sql.h"
#include "personslist/persons_query.h"
#include "platform/core/error.h"
#include "platform/core/value_conv.h"
#include "store/library_state.h"
#include "zelvo/enums.h"

namespace zelvo::cli {

namespace {

constexpr std::string_view kUsage =
    "Usage: zelvo org tree [--json] [--app-path DIR]\n"
    "       zelvo org rooms ORG_ID [--json] [--app-path DIR]\n"
    "\n"
    "'tree' prints every organization with its subdivisions, to any depth;\n"
    "under each unit its job titles, and under each job title the persons\n"
    "who hold it. Objects without a name are shown as the organization\n"
    "window names them (\"Organization with no name\", \"Job title without a\n"
    "name [...]\"). A job place with nobody in it is not shown.\n"
    "\n"
    "'rooms ORG_ID' prints the premises of the organization ORG_ID: its\n"
    "containers (building, floor) and rooms, to any depth, each with its\n"
    "phones and the employees placed in it. Rooms belong to the organization\n"
    "at the top, never to a subdivision.\n"
    "\n"
    "  --json          print JSON: for tree {\"units\": [{id, parent, name,\n"
    "                  jobTitles: [{id, name, employees: [{id, personId,\n"
    "                  name}]}]}]}, the units in the order of the tree; for rooms\n"
    "                  {\"organization\", \"rooms\": [{id, parent, name, container,\n"
    "                  path, phones: [text], employees: [{id, personId, name}]}]}\n"
    "  --app-path DIR  the application folder (default: $XDG_DATA_HOME/zelvo,\n"
    "                  i.e. ~/.local/share/zelvo)\n"
    "\n"
    "A book damaged by hand (a unit that is its own ancestor) is printed\n"
    "without looping: a unit is shown once. Nothing is changed.\n"
    "\n"
    "Exit status: 0 done, 1 no book or it cannot be read, 2 bad usage.\n";

std::string Id(std::int32_t id) { return std::to_string(id); }

struct Person {
    std::int32_t employeeId, personId;
    std::string name;
};

std::vector<Person> PersonsOf(const dao::Database& db, const std::string& sql) {
    std::vector<Person> persons;
    for (auto rs = db.OpenRecordset(sql, dao::dbOpenSnapshot); !rs.IsEOF(); rs.MoveNext())
        persons.push_back({ValueConv::ToLong(rs("Employee ID")), ValueConv::ToLong(rs("PersonalData.Personal ID")),
                           ValueConv::ToText(rs("FullName"))});
    return persons;
}

std::string PersonsJson(const std::vector<Person>& persons) {
    std::string out = "[";
    for (size_t i = 0; i < persons.size(); ++i)
        out += (i ? ", " : "") + std::string("{\"id\": ") + Id(persons[i].employeeId) +
               ", \"personId\": " + Id(persons[i].personId) + ", \"name\": " + JsonString(persons[i].name) + "}";
    return out + "]";
}

// Rows of `sql` as (identity, parent, name), in the order read.
struct Node {
    std::int32_t id, parent;
    std::string name;
    bool container = false;
};
std::vector<Node> NodesOf(const dao::Database& db, const std::string& sql, const char* idColumn,
                          const char* parentColumn, const char* nameColumn) {
    std::vector<Node> nodes;
    for (auto rs = db.OpenRecordset(sql, dao::dbOpenSnapshot); !rs.IsEOF(); rs.MoveNext()) {
        Node n{ValueConv::ToLong(rs(idColumn)), ValueConv::ToLong(rs(parentColumn)), ValueConv::ToText(rs(nameColumn))};
        if (std::string_view(idColumn) == "Room ID") n.container = ValueConv::ToBool(rs("IsContainer"));
        nodes.push_back(std::move(n));
    }
    return nodes;
}

// Visits a tree depth first from the children of `rootParent`, each node
// once, with a stack of its own; `children(id)` lists a node's children.
template <class Children, class Visit>
void WalkTree(std::int32_t rootParent, Children&& children, Visit&& visit) {
    std::unordered_set<std::int32_t> seen;
    std::vector<std::pair<Node, int>> stack;
    auto push = [&](std::int32_t parent, int depth) {
        std::vector<Node> kids = children(parent);
        for (auto it = kids.rbegin(); it != kids.rend(); ++it)
            if (seen.insert(it->id).second) stack.push_back({*it, depth});
    };
    push(rootParent, 0);
    while (!stack.empty()) {
        auto [node, depth] = stack.back();
        stack.pop_back();
        visit(node, depth);
        push(node.id, depth + 1);
    }
}

int Tree(const dao::Database& db, bool json) {
    std::string out = json ? "{\"units\": [" : "";
    bool first = true;
    int units = 0;
    WalkTree(
        0, [&](std::int32_t id) { return NodesOf(db, OrgChildrenSQL(id), "Organization ID", "Parent ID", "Organization"); },
        [&](const Node& unit, int depth) {
            ++units;
            std::vector<Node> jobs = NodesOf(db, JobTitlesOfOrgSQL(unit.id), "Job ID", "Organization ID", "JobTitle");
            if (json) {
                out += (first ? "" : ", ") + std::string("{\"id\": ") + Id(unit.id) + ", \"parent\": " +
                       Id(unit.parent) + ", \"name\": " + JsonString(unit.name) + ", \"jobTitles\": [";
                for (size_t j = 0; j < jobs.size(); ++j)
                    out += (j ? ", " : "") + std::string("{\"id\": ") + Id(jobs[j].id) + ", \"name\": " +
                           JsonString(jobs[j].name) +
                           ", \"employees\": " + PersonsJson(PersonsOf(db, EmployeesPersonsOfJobSQL(jobs[j].id, db))) +
                           "}";
                out += "]}";
                first = false;
                return;
            }
            std::string indent(2 * depth, ' ');
            out += indent + UnitCaption(unit.name) + "  #" + Id(unit.id) + "\n";
            for (const Node& job : jobs) {
                std::string caption = job.name.find_first_not_of(' ') == std::string::npos
                                          ? JobTitleCaption(job.name, unit.name)
                                          : job.name;
                out += indent + "  - " + caption + "  (job #" + Id(job.id) + ")\n";
                for (const Person& p : PersonsOf(db, EmployeesPersonsOfJobSQL(job.id, db)))
                    out += indent + "      " +
                           (p.name.find_first_not_of(' ') == std::string::npos ? EmployeeCaption(p.name, unit.name)
                                                                                : p.name) +
                           "  (employee #" + Id(p.employeeId) + ", person #" + Id(p.personId) + ")\n";
            }
        });
    if (json) {
        std::cout << out << "]}\n";
    } else {
        std::cout << out << "(" << units << (units == 1 ? " unit)\n" : " units)\n");
    }
    return kExitOk;
}

int Rooms(const dao::Database& db, std::int32_t org, bool json) {
    std::string resourceColumns = TableColumnList("Resources", db);
    std::string out = json ? "{\"organization\": " + Id(org) + ", \"rooms\": [" : "";
    bool first = true;
    int rooms = 0;
    std::vector<std::string> path;  // names from the top down to the room shown
    WalkTree(
        0,
        [&](std::int32_t id) {
            return NodesOf(db, RoomsOfLevelSQL(org, id), "Room ID", "rParent ID", "RoomName");
        },
        [&](const Node& room, int depth) {
            ++rooms;
            path.resize(depth);
            path.push_back(room.name);
            std::vector<std::string> phones;
            for (auto rs = db.OpenRecordset(GetOwnerResourcesQuery(resourceColumns, room.id, oRoom_ID, rsPhone),
                                            dao::dbOpenSnapshot);
                 !rs.IsEOF(); rs.MoveNext())
                phones.push_back(ValueConv::ToText(rs("ResourceString")));
            std::vector<Person> persons = PersonsOf(db, EmployeesPersonsOfRoomSQL(room.id, db));
            if (json) {
                std::string joined;
                for (const auto& name : path) joined += (joined.empty() ? "" : ", ") + name;
                out += (first ? "" : ", ") + std::string("{\"id\": ") + Id(room.id) + ", \"parent\": " +
                       Id(room.parent) + ", \"name\": " + JsonString(room.name) +
                       ", \"container\": " + (room.container ? "true" : "false") + ", \"path\": " + JsonString(joined) +
                       ", \"phones\": [";
                for (size_t i = 0; i < phones.size(); ++i) out += (i ? ", " : "") + JsonString(phones[i]);
                out += "], \"employees\": " + PersonsJson(persons) + "}";
                first = false;
                return;
            }
            std::string indent(2 * depth, ' ');
            out += indent + (room.container ? "[" + room.name + "]" : room.name) + "  #" + Id(room.id) + "\n";
            for (const auto& phone : phones) out += indent + "    phone " + phone + "\n";
            for (const Person& p : persons)
                out += indent + "    " + p.name + "  (employee #" + Id(p.employeeId) + ")\n";
        });
    if (json) {
        std::cout << out << "]}\n";
    } else {
        std::cout << out << "(" << rooms << (rooms == 1 ? " room or container)\n" : " rooms and containers)\n");
    }
    return kExitOk;
}

int RunOrg(std::span<const std::string> args) {
    bool json = false;
    std::optional<std::string> what, orgText;
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        if (a == "--app-path") {
            if (i + 1 >= args.size()) return UsageError("org", "--app-path needs a value");
            Host().appPath = args[++i];
        } else if (a == "--json") {
            json = true;
        } else if (!what && (a == "tree" || a == "rooms")) {
            what = a;
        } else if (what == "rooms" && !orgText && a.rfind("--", 0) != 0) {
            orgText = a;
        } else {
            return UsageError("org", "unexpected argument '" + a + "'");
        }
    }
    if (!what) return UsageError("org", "say 'tree' or 'rooms ORG_ID'");
    std::int32_t org = 0;
    if (*what == "rooms") {
        if (!orgText) return UsageError("org", "rooms needs the ORG_ID of an organization");
        try {
            size_t used = 0;
            long value = std::stol(*orgText, &used);
            if (used != orgText->size() || value < 1 || value > INT32_MAX) throw std::out_of_range("id");
            org = static_cast<std::int32_t>(value);
        } catch (const std::exception&) {
            return UsageError("org", "ORG_ID must be a whole number above 0, not '" + *orgText + "'");
        }
    }

    AppPath = HostAppPath();
    std::string bookPath = DatabasePath();
    try {
        dao::Database db = DBEngine().OpenDatabase(bookPath, false, true, "Access");
        int status = *what == "tree" ? Tree(db, json) : Rooms(db, org, json);
        db.Close();
        return status;
    } catch (const Error& e) {
        return ReportBookError("org", bookPath, e);
    }
}

}  // namespace

extern const Command kOrgCommand{"org", "the organizations with their job titles and employees, and their rooms (read-only)",
                                 kUsage, RunOrg};

}  // namespace zelvo::cli
