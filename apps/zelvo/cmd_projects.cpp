// zelvo projects: what is filed in the book's projects, for a person at a
// terminal. Read-only: every change goes through the automation members
// (zelvo call MoveABObject2, rProjectMoved, ...).
#include <algorithm>
#include <iostream>
#include <map>
#include <set>
#include <tuple>

#include "command.h"
#include "json_writer.h"
#include "personslist/persons_query.h"
#include "platform/core/error.h"
#include "platform/core/value_conv.h"
#include "projects/project_sql.h"
#include "store/library_state.h"

namespace zelvo::cli {

namespace {

constexpr std::string_view kUsage =
    "Usage: zelvo projects [--archive] [--json] [--app-path DIR]\n"
    "       zelvo projects ls PATH [--deep] [--archive] [--json] [--app-path DIR]\n"
    "\n"
    "The first form lists the projects of the address book, each with the\n"
    "number of persons, organizations (and subdivisions), job titles and\n"
    "employees filed in it. A project is a path such as 'A\\B'; a path below\n"
    "another is its subproject and is counted on its own line.\n"
    "\n"
    "'ls PATH' lists the objects filed in the project PATH: kind, number and\n"
    "name. Paths are compared without regard to case.\n"
    "  --deep          also the objects of the projects below PATH, each with\n"
    "                  its project\n"
    "\n"
    "Options of both:\n"
    "  --archive       the archive of completed projects instead of the live\n"
    "                  projects\n"
    "  --json          print JSON: {\"archive\", \"projects\": [{project, persons,\n"
    "                  organizations, jobTitles, employees}]}, or for ls\n"
    "                  {\"archive\", \"project\", \"deep\", \"objects\": [{project, type,\n"
    "                  kind, id, name}]}\n"
    "  --app-path DIR  the application folder (default: $XDG_DATA_HOME/zelvo,\n"
    "                  i.e. ~/.local/share/zelvo)\n"
    "\n"
    "An object whose record was deleted while its project row stayed is shown\n"
    "with the name \"(deleted)\". Nothing is changed: to file, move or archive,\n"
    "use 'zelvo call' with MoveABObject2, DeleteObjfromPrj, PrjArcPrj2,\n"
    "rProjectMoved, rProjectCopied or rProjectDeleted.\n"
    "\n"
    "Exit status: 0 done, 1 no book or it cannot be read, 2 bad usage.\n";

// The kinds of object a project row files, in the order they are shown.
struct Kind {
    std::int32_t type;
    const char* word;  // text output
    const char* key;   // JSON
};
constexpr Kind kKinds[] = {{oPersonal_ID, "person", "persons"},
                           {oOrganization_ID, "organization", "organizations"},
                           {oJob_ID, "job title", "jobTitles"},
                           {oEmployees_ID, "employee", "employees"}};

const char* KindWord(std::int32_t type) {
    for (const Kind& k : kKinds)
        if (k.type == type) return k.word;
    return "?";
}

// Paths in the order of a tree: "A", "A\B", "AB".
bool TreeOrder(const std::string& a, const std::string& b) {
    return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
        auto rank = [](char c) { return c == '\\' ? 1 : static_cast<unsigned char>(c) + 1; };
        return rank(x) < rank(y);
    });
}

size_t Columns(const std::string& s) {
    size_t n = 0;
    for (unsigned char c : s) n += (c & 0xC0) != 0x80;
    return n;
}

std::string Pad(const std::string& s, size_t width) { return s + std::string(width - std::min(width, Columns(s)), ' '); }

// Every name of one kind of object, by identity.
std::map<std::int32_t, std::string> Names(const dao::Database& db, std::int32_t type) {
    std::map<std::int32_t, std::string> names;
    auto read = [&](const std::string& sql, auto name) {
        for (dao::Recordset rs = db.OpenRecordset(sql, dao::dbOpenSnapshot); !rs.IsEOF(); rs.MoveNext())
            names[ValueConv::ToLong(rs.Value(0))] = name(rs);
    };
    auto personName = [](const dao::Recordset& rs, int first) {
        std::string full = ValueConv::ToText(rs.Value(first));
        if (!full.empty()) return full;
        std::string parts;
        for (int i = first + 1; i <= first + 3; ++i) {
            std::string p = ValueConv::ToText(rs.Value(i));
            if (!p.empty()) parts += (parts.empty() ? "" : " ") + p;
        }
        return parts;
    };
    switch (type) {
        case oPersonal_ID:
            read("Select [Personal ID], FullName, FirstName, MiddleName, SurName From PersonalData",
                 [&](const dao::Recordset& rs) { return personName(rs, 1); });
            break;
        case oOrganization_ID:
            read("Select [Organization ID], Organization From Organizations",
                 [](const dao::Recordset& rs) { return ValueConv::ToText(rs.Value(1)); });
            break;
        case oJob_ID:
            read("Select [Job ID], JobTitle From JobTitles",
                 [](const dao::Recordset& rs) { return ValueConv::ToText(rs.Value(1)); });
            break;
        case oEmployees_ID:
            read("Select Employees.[Employee ID], PersonalData.FullName, PersonalData.FirstName, "
                 "PersonalData.MiddleName, PersonalData.SurName, JobTitles.JobTitle From (Employees LEFT JOIN "
                 "PersonalData ON Employees.[Personal ID] = PersonalData.[Personal ID]) LEFT JOIN JobTitles ON "
                 "Employees.[Job ID] = JobTitles.[Job ID]",
                 [&](const dao::Recordset& rs) {
                     std::string who = personName(rs, 1);
                     std::string job = ValueConv::ToText(rs.Value(5));
                     return (who.empty() ? std::string("(vacancy)") : who) + (job.empty() ? "" : ", " + job);
                 });
            break;
    }
    return names;
}

int Summary(const dao::Database& db, bool archive, bool json) {
    // Each project's distinct objects of each kind.
    std::map<std::string, std::map<std::int32_t, std::set<std::int32_t>>, decltype(&TreeOrder)> projects(&TreeOrder);
    for (dao::Recordset rs = db.OpenRecordset("Select [Owner ID], OwnerType, Project From Projects Where InsArcPrj=" +
                                                  ValueConv::BoolToSql(archive),
                                              dao::dbOpenSnapshot);
         !rs.IsEOF(); rs.MoveNext())
        projects[ValueConv::ToText(rs.Value(2))][ValueConv::ToLong(rs.Value(1))].insert(ValueConv::ToLong(rs.Value(0)));

    if (json) {
        std::cout << "{\"archive\": " << (archive ? "true" : "false") << ", \"projects\": [";
        bool first = true;
        for (const auto& [path, kinds] : projects) {
            std::cout << (first ? "" : ", ") << "{\"project\": " << JsonString(path);
            for (const Kind& k : kKinds) {
                auto it = kinds.find(k.type);
                std::cout << ", " << JsonString(k.key) << ": " << (it == kinds.end() ? 0 : it->second.size());
            }
            std::cout << "}";
            first = false;
        }
        std::cout << "]}\n";
        return kExitOk;
    }
    std::cout << (archive ? "Archived projects" : "Projects") << " (" << DatabasePath() << "):\n";
    size_t width = Columns("Project");
    for (const auto& entry : projects) width = std::max(width, Columns(entry.first));
    std::cout << Pad("Project", width) << "  Persons  Organizations  Job titles  Employees\n";
    for (const auto& [path, kinds] : projects) {
        std::cout << Pad(path, width);
        const int widths[] = {9, 15, 12, 11};
        int column = 0;
        for (const Kind& k : kKinds) {
            auto it = kinds.find(k.type);
            std::string n = std::to_string(it == kinds.end() ? 0 : it->second.size());
            std::cout << std::string(widths[column++] - n.size(), ' ') << n;
        }
        std::cout << "\n";
    }
    std::cout << "(" << projects.size() << (projects.size() == 1 ? " project)\n" : " projects)\n");
    return kExitOk;
}

int List(const dao::Database& db, const std::string& path, bool deep, bool archive, bool json) {
    struct Object {
        std::string project;
        std::int32_t type, id;
    };
    std::vector<Object> objects;
    std::set<std::tuple<std::string, std::int32_t, std::int32_t>> seen;
    for (dao::Recordset rs = db.OpenRecordset(ProjectRowsSQL(path, archive, deep ? InsCurPrj : CurPrj),
                                              dao::dbOpenSnapshot);
         !rs.IsEOF(); rs.MoveNext()) {
        Object o{ValueConv::ToText(rs("Project")), ValueConv::ToLong(rs("OwnerType")), ValueConv::ToLong(rs("Owner ID"))};
        if (seen.insert({o.project, o.type, o.id}).second) objects.push_back(o);
    }
    std::map<std::int32_t, std::map<std::int32_t, std::string>> names;
    for (const Object& o : objects)
        if (!names.count(o.type)) names[o.type] = Names(db, o.type);
    auto nameOf = [&](const Object& o) {
        auto it = names[o.type].find(o.id);
        return it == names[o.type].end() ? std::string("(deleted)") : it->second;
    };
    std::stable_sort(objects.begin(), objects.end(), [&](const Object& a, const Object& b) {
        if (a.project != b.project) return TreeOrder(a.project, b.project);
        if (a.type != b.type) return a.type < b.type;
        return a.id < b.id;
    });

    if (json) {
        std::cout << "{\"archive\": " << (archive ? "true" : "false") << ", \"project\": " << JsonString(path)
                  << ", \"deep\": " << (deep ? "true" : "false") << ", \"objects\": [";
        for (size_t i = 0; i < objects.size(); ++i) {
            const Object& o = objects[i];
            std::cout << (i ? ", " : "") << "{\"project\": " << JsonString(o.project) << ", \"type\": " << o.type
                      << ", \"kind\": " << JsonString(KindWord(o.type)) << ", \"id\": " << o.id
                      << ", \"name\": " << JsonString(nameOf(o)) << "}";
        }
        std::cout << "]}\n";
        return kExitOk;
    }
    std::cout << (archive ? "Archived project " : "Project ") << path << (deep ? " and below" : "") << ":\n";
    size_t idWidth = 1;
    for (const Object& o : objects) idWidth = std::max(idWidth, std::to_string(o.id).size());
    for (const Object& o : objects) {
        std::string id = std::to_string(o.id);
        std::cout << Pad(KindWord(o.type), 13) << std::string(idWidth - id.size(), ' ') << id << "  " << nameOf(o);
        if (deep) std::cout << "  [" << o.project << "]";
        std::cout << "\n";
    }
    std::cout << "(" << objects.size() << (objects.size() == 1 ? " object)\n" : " objects)\n");
    return kExitOk;
}

int RunProjects(std::span<const std::string> args) {
    bool archive = false, json = false, deep = false, ls = false;
    std::optional<std::string> path;
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        if (a == "--app-path") {
            if (i + 1 >= args.size()) return UsageError("projects", "--app-path needs a value");
            Host().appPath = args[++i];
        } else if (a == "--archive") {
            archive = true;
        } else if (a == "--json") {
            json = true;
        } else if (a == "--deep") {
            deep = true;
        } else if (a == "ls" && i == 0) {
            ls = true;
        } else if (ls && !path && (a.size() < 2 || a.rfind("--", 0) != 0)) {
            path = a;
        } else {
            return UsageError("projects", "unexpected argument '" + a + "'");
        }
    }
    if (ls && !path) return UsageError("projects", "ls needs the PATH of a project");
    if (deep && !ls) return UsageError("projects", "--deep goes with ls");

    AppPath = HostAppPath();
    std::string bookPath = DatabasePath();
    try {
        dao::Database db = DBEngine().OpenDatabase(bookPath, false, true, "Access");
        int status = ls ? List(db, *path, deep, archive, json) : Summary(db, archive, json);
        db.Close();
        return status;
    } catch (const Error& e) {
        return ReportBookError("projects", bookPath, e);
    }
}

}  // namespace

extern const Command kProjectsCommand{"projects", "list the projects and what is filed in each (read-only)", kUsage,
                                      RunProjects};

}  // namespace zelvo::cli
