// zelvo list: the persons of one filter, as the address book window lists
// them: the same queries, the same fill, sorted by name.
#include <iostream>

#include "command.h"
#include "control_json.h"
#include "json_writer.h"
#include "organizations/office_objects.h"
#include "organizations/org_codes.h"
#include "personslist/lvw_add_persons.h"
#include "personslist/persons_query.h"
#include "platform/core/error.h"
#include "store/library_state.h"

namespace zelvo::cli {

namespace {

constexpr std::string_view kUsage =
    "Usage: zelvo list [--project PATH] [--archive] [--unsorted | --all] [--emails] [--json]\n"
    "                  [--app-path DIR]\n"
    "\n"
    "Lists the persons of the address book the way its window does, sorted by\n"
    "name. Which persons:\n"
    "  --project PATH  the members of the project PATH (e.g. 'A\\B': only that\n"
    "                  project, not the projects below it)\n"
    "  --unsorted      the persons who are in no project at all\n"
    "  --all           the persons who are in at least one project\n"
    "  --archive       with --project or --all: the archive of completed\n"
    "                  projects instead of the live projects\n"
    "  (none of these) the persons who are in no project, as the window opens\n"
    "                  when no project is current\n"
    "\n"
    "Other options:\n"
    "  --emails        add each person's first e-mail address\n"
    "  --json          print {\"filter\": ..., \"project\": ..., \"archive\": ...,\n"
    "                  \"rows\": [{tag, text, icon, smallIcon, subItems}, ...]}\n"
    "  --app-path DIR  the application folder (default: $XDG_DATA_HOME/zelvo,\n"
    "                  i.e. ~/.local/share/zelvo)\n"
    "\n"
    "With --project, the organizations, subdivisions, job titles and employees\n"
    "filed in the project follow the persons, each marked with its kind\n"
    "(icon \"Org\", \"SubDiv\", \"JobTitle\", \"Employee\" in JSON); with\n"
    "--unsorted or no filter, the organizations filed in no project.\n"
    "\n"
    "A person's name is the \"display as\" name, or else last name, first name\n"
    "and patronymic. Make the book first with 'zelvo correct-db'.\n"
    "\n"
    "Exit status: 0 done, 1 no book or it cannot be read (the reason is\n"
    "printed), 2 bad usage.\n";

// The kind of an office row in words; "" for a person's row.
std::string OfficeKind(const ui::ListItem& item) {
    switch (GetObjTypeByIcon(item.Icon())) {
        case oOrganization_ID: return item.Icon().AsText() == kIconSubDiv ? "subdivision" : "organization";
        case oJob_ID: return "job title";
        case oEmployees_ID: return "employee";
        default: return {};
    }
}

// Display width of a UTF-8 text, in characters.
size_t Columns(const std::string& s) {
    size_t n = 0;
    for (unsigned char c : s) n += (c & 0xC0) != 0x80;
    return n;
}

int RunList(std::span<const std::string> args) {
    std::optional<std::string> project;
    bool archive = false, unsorted = false, all = false, emails = false, json = false;
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        if (a == "--project" || a == "--app-path") {
            if (i + 1 >= args.size()) return UsageError("list", a + " needs a value");
            (a == "--project" ? project : Host().appPath) = args[++i];
        } else if (a == "--archive") {
            archive = true;
        } else if (a == "--unsorted") {
            unsorted = true;
        } else if (a == "--all") {
            all = true;
        } else if (a == "--emails") {
            emails = true;
        } else if (a == "--json") {
            json = true;
        } else {
            return UsageError("list", "unexpected argument '" + a + "'");
        }
    }
    if (unsorted && all) return UsageError("list", "--unsorted and --all exclude each other");
    if (project && (unsorted || all)) return UsageError("list", "--project names one filter; leave out --unsorted and --all");
    if (unsorted && archive) return UsageError("list", "--archive has no meaning for --unsorted");
    if (archive && !project && !all) return UsageError("list", "--archive goes with --project or --all");

    AddrFiltr filter = all ? AllPersons : project ? CurPrj : NoPrj;
    AppPath = HostAppPath();
    std::string bookPath = DatabasePath();
    try {
        dao::Database db = DBEngine().OpenDatabase(bookPath, false, false, "Access");
        std::string query = filter == AllPersons ? GetAllPersonsQuery(archive)
                            : filter == CurPrj  ? GetPrjPersonsQuery(*project, archive, CurPrj)
                                                : GetNoPrjPersonsQuery();
        dao::Recordset rs = db.OpenRecordset(query, dao::dbOpenDynaset);

        ui::ListView list;
        list.SetView(ui::lvwReport);
        list.ColumnHeaders().Add("Name");
        if (emails) list.ColumnHeaders().Add("E-mail");
        LvwAddPersons2(list, rs, emails ? 1 : -1, Variant("User"));
        if (filter != AllPersons) {
            // The office objects filed in the project (for the unsorted: the
            // organizations filed nowhere), as Navigate lists them. Their
            // group text stands in a column of its own, before the e-mail.
            ui::ListView office;
            office.SetView(ui::lvwReport);
            for (const char* h : {"Name", "Type", "E-mail"}) office.ColumnHeaders().Add(h);
            auto icons = std::make_shared<ui::ImageList>();
            for (const char* key : {"Org", "SubDiv", "JobTitle", "Employee"}) icons->ListImages().Add(key, nullptr);
            office.SetSmallIcons(icons);
            std::string officeProject = filter == CurPrj ? *project : std::string();
            for (std::int32_t type : {oOrganization_ID, oJob_ID, oEmployees_ID}) {
                if (filter == NoPrj && type != oOrganization_ID) break;
                NavigateABObjectsInsPrj(type, office, officeProject, archive, 31, 0, db);
            }
            for (int i = 1; i <= office.ListItems().Count(); ++i) {
                const ui::ListItem& from = office.ListItems().Item(i);
                ui::ListItem& row = list.ListItems().Add();
                row.SetText(from.Text());
                row.SetTag(from.Tag());
                row.SetIcon(from.Icon());
                row.SetSmallIcon(from.SmallIcon());
                if (emails) row.SetSubItems(1, from.SubItems(2));
            }
        }
        list.SetSortKey(0);
        list.Sort();
        rs.Close();
        db.Close();

        const char* filterName = filter == AllPersons ? "AllPersons" : filter == CurPrj ? "CurPrj" : "NoPrj";
        if (json) {
            std::cout << "{\"filter\": " << JsonString(filterName) << ", \"project\": "
                      << (project ? JsonString(*project) : "null") << ", \"archive\": " << (archive ? "true" : "false")
                      << ", \"rows\": " << ListRowsJson(list) << "}\n";
            return kExitOk;
        }
        const int n = list.ListItems().Count();
        std::string heading = filter == NoPrj      ? "Persons in no project"
                              : filter == AllPersons ? std::string("Persons in ") + (archive ? "archived" : "live") + " projects"
                                                     : std::string("Members of ") + (archive ? "archived " : "") +
                                                           "project " + *project;
        std::cout << heading << " (" << bookPath << "):\n";
        std::vector<std::string> ids;
        size_t idWidth = 1, nameWidth = 1;
        for (int i = 1; i <= n; ++i) {
            ids.push_back(list.ListItems().Item(i).Tag().AsText());
            idWidth = std::max(idWidth, ids.back().size());
            nameWidth = std::max(nameWidth, Columns(list.ListItems().Item(i).Text()));
        }
        for (int i = 1; i <= n; ++i) {
            const ui::ListItem& item = list.ListItems().Item(i);
            std::cout << std::string(idWidth - ids[i - 1].size(), ' ') << ids[i - 1] << "  " << item.Text();
            if (std::string kind = OfficeKind(item); !kind.empty()) std::cout << "  [" << kind << "]";
            if (emails && !item.SubItems(1).empty())
                std::cout << std::string(nameWidth - Columns(item.Text()) + 2, ' ') << item.SubItems(1);
            std::cout << "\n";
        }
        int officeRows = 0;
        for (int i = 1; i <= n; ++i) officeRows += !OfficeKind(list.ListItems().Item(i)).empty();
        const int persons = n - officeRows;
        std::cout << "(" << persons << (persons == 1 ? " person" : " persons");
        if (officeRows) std::cout << ", " << officeRows << (officeRows == 1 ? " office object" : " office objects");
        std::cout << ")\n";
        return kExitOk;
    } catch (const Error& e) {
        return ReportBookError("list", bookPath, e);
    }
}

}  // namespace

extern const Command kListCommand{"list", "list the persons of a project, of no project, or of all projects", kUsage,
                                  RunList};

}  // namespace zelvo::cli
