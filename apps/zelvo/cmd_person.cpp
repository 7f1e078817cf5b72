// zelvo person: a person in and out of the book, and the summary the address
// book window shows of one. Adding and deleting are the library's own
// members (cAddressbook.AddPersonbyStrMail, DeletePerson); the summary is
// the window's reading (ReadPersonSummary).
#include <charconv>
#include <iostream>

#include "command.h"
#include "json_writer.h"
#include "personswindow/person_summary.h"
#include "photos/db_photo.h"
#include "platform/core/error.h"
#include "platform/core/value_conv.h"
#include "platform/ui/ui_host.h"
#include "resources/resource_queries.h"
#include "store/library_state.h"
#include "zelvo/addressbook.h"

namespace zelvo::cli {

namespace {

constexpr std::string_view kUsage =
    "Usage: zelvo person add ADDRESS [--project P] [--archive] [--app-path DIR]\n"
    "       zelvo person show ID [--json] [--app-path DIR]\n"
    "       zelvo person rm ID [--app-path DIR]\n"
    "\n"
    "  add   makes a person from one address as a mail program shows it:\n"
    "        'Anna Smith <anna@example.org>', '\"Smith, Anna\" <anna@example.org>'\n"
    "        or a bare 'anna@example.org'. The person gets the name and the\n"
    "        address as an e-mail address, and is filed in the project P (on\n"
    "        the archive side with --archive); without --project the person is\n"
    "        unsorted. Prints the new person's number.\n"
    "  show  prints what the address book window shows beside its list for the\n"
    "        person ID: name, home address and phones, the first job and its\n"
    "        phones, e-mail addresses, web pages, projects and whether there\n"
    "        is a photo.\n"
    "  rm    deletes the person ID with the person's e-mail addresses, phones\n"
    "        and web pages (those another owner shares stay), project rows and\n"
    "        photos; the person's jobs stay as vacancies.\n"
    "\n"
    "Options:\n"
    "  --project P     add: the project path, e.g. 'Clients\\2024'\n"
    "  --archive       add: P lies in the archive of completed projects\n"
    "  --json          show: print JSON: {id, name, address, homePhones, job,\n"
    "                  workPhones, emails: [...], webs: [...], projects:\n"
    "                  [{project, archive}], photo: {width, height} or null}\n"
    "  --app-path DIR  the application folder (default: $XDG_DATA_HOME/zelvo)\n"
    "\n"
    "Examples:\n"
    "  zelvo person add 'Anna Smith <anna@example.org>' --project Clients\n"
    "  zelvo person show 12 --json\n"
    "  zelvo person rm 12\n"
    "\n"
    "Exit status: 0 done; 1 no such person, nothing added, or no book; 2 bad\n"
    "usage.\n";

// The summary's photo box, as the window has it (twips).
constexpr int kPhotoWidth = 1395, kPhotoHeight = 1860;

// The card that AddPersonbyStrMail opens is closed at once: the terminal
// has no card to work in. Every other question goes to the terminal.
class CardClosesAtOnce : public ui::UiHost {
public:
    explicit CardClosesAtOnce(ui::UiHost& inner) : inner_(inner) {}
    int ShowMessageBox(const ui::MessageBoxRequest& r) override { return inner_.ShowMessageBox(r); }
    std::optional<std::string> ShowInputBox(const ui::InputBoxRequest& r) override { return inner_.ShowInputBox(r); }
    std::string ShowOpenDialog(const ui::FileDialogRequest& r) override { return inner_.ShowOpenDialog(r); }
    std::string ShowSaveDialog(const ui::FileDialogRequest& r) override { return inner_.ShowSaveDialog(r); }
    std::optional<ui::ProjectPickerAnswer> ShowProjectPicker(const ui::ProjectPickerRequest& r) override {
        return inner_.ShowProjectPicker(r);
    }
    void RunWindow(ui::Form& form) override { ui::UiHost::RunWindow(form); }

private:
    ui::UiHost& inner_;
};

std::optional<std::int32_t> ParseId(const std::string& text) {
    std::int32_t v = 0;
    auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), v);
    if (ec != std::errc() || end != text.data() + text.size() || v <= 0) return std::nullopt;
    return v;
}

int Fail(const std::string& reason) {
    std::cerr << "zelvo person: " << reason << "\n";
    return kExitFailure;
}

dao::Database OpenBook(bool readOnly) { return DBEngine().OpenDatabase(DatabasePath(), false, readOnly, "Access"); }

// The highest person number in the book; 0 for an empty book.
std::int32_t HighestPerson(const dao::Database& db) {
    dao::Recordset rs =
        db.OpenRecordset("Select [Personal ID] From PersonalData Order By [Personal ID] Desc", dao::dbOpenSnapshot);
    std::int32_t id = rs.IsEOF() ? 0 : ValueConv::ToLong(rs.Value(0));
    rs.Close();
    return id;
}

struct Options {
    std::string action;
    std::vector<std::string> operands;
    std::optional<std::string> project;
    bool archive = false;
    bool json = false;
};

int Add(const Options& o) {
    if (o.operands.size() != 1 || o.json) return UsageError("person", "add takes one ADDRESS");
    if (o.archive && !o.project) return UsageError("person", "--archive goes with --project");
    std::int32_t before = 0;
    {
        dao::Database db = OpenBook(true);
        before = HighestPerson(db);
        db.Close();
    }
    cAddressbook book;
    book.AppPath = AppPath;
    book.rProject = o.project.value_or("");
    book.InsArcPrj = o.archive;
    std::string address = o.operands[0];
    {
        CardClosesAtOnce host(ui::CurrentUiHost());
        ui::UiHost* previous = ui::SetUiHost(&host);
        struct PutBack {
            ui::UiHost* host;
            ~PutBack() { ui::SetUiHost(host); }
        } putBack{previous};
        book.AddPersonbyStrMail(address);
    }
    dao::Database db = OpenBook(true);
    std::int32_t after = HighestPerson(db);
    db.Close();
    if (after <= before) return Fail("nothing was added for '" + o.operands[0] + "'");
    std::cout << after << "\n";
    return kExitOk;
}

std::string JsonList(const std::vector<std::string>& texts) {
    std::string out = "[";
    for (size_t i = 0; i < texts.size(); ++i) out += (i ? ", " : "") + JsonString(texts[i]);
    return out + "]";
}

std::string Joined(const std::vector<std::string>& texts) {
    std::string out;
    for (const std::string& t : texts) out += (out.empty() ? "" : ", ") + t;
    return out;
}

int Show(const Options& o, std::int32_t id) {
    ui::PictureBox work, scaled;
    scaled.Width = work.Width = kPhotoWidth;
    scaled.Height = work.Height = kPhotoHeight;
    dbPhoto photos;
    photos.SetpicPhoto(&work);
    photos.SetScaledPhoto(&scaled);
    dao::Database db = OpenBook(true);
    photos.SetPhotoBook(db);
    SummaryParts parts;
    parts.photos = &photos;
    PersonSummary s = ReadPersonSummary(db, id, parts);
    photos.SetPhotoBook({});
    db.Close();
    if (s.Name.empty()) return Fail("there is no person " + std::to_string(id));

    if (o.json) {
        std::string projects = "[";
        for (size_t i = 0; i < s.Projects.size(); ++i)
            projects += std::string(i ? ", " : "") + "{\"project\": " + JsonString(s.Projects[i].Path) +
                        ", \"archive\": " + (s.Projects[i].Archive ? "true" : "false") + "}";
        projects += "]";
        std::string photo = s.Photo ? "{\"width\": " + std::to_string(s.Photo->Width) +
                                          ", \"height\": " + std::to_string(s.Photo->Height) + "}"
                                    : "null";
        std::cout << "{\"id\": " << id << ", \"name\": " << JsonString(s.Name)
                  << ", \"address\": " << JsonString(s.Address) << ", \"homePhones\": " << JsonString(s.HomePhones)
                  << ", \"job\": " << JsonString(s.Job) << ", \"workPhones\": " << JsonString(s.OrgPhones)
                  << ", \"emails\": " << JsonList(s.Emails) << ", \"webs\": " << JsonList(s.Webs)
                  << ", \"projects\": " << projects << ", \"photo\": " << photo << "}\n";
        return kExitOk;
    }
    std::vector<std::string> projects;
    for (const PersonSummary::Project& p : s.Projects) projects.push_back(p.Path + (p.Archive ? " (archive)" : ""));
    auto line = [](const char* label, const std::string& value) {
        std::cout << "  " << label;
        if (!value.empty()) std::cout << std::string(13 - std::string_view(label).size(), ' ') << value;
        std::cout << "\n";
    };
    std::cout << "Person " << id << ": " << s.Name << "\n";
    line("Address:", s.Address);
    line("Home phone:", s.HomePhones);
    line("Job:", s.Job);
    line("Work phone:", s.OrgPhones);
    line("E-mail:", Joined(s.Emails));
    line("Web:", Joined(s.Webs));
    line("Projects:", Joined(projects));
    line("Photo:", s.Photo ? std::to_string(s.Photo->Width) + "x" + std::to_string(s.Photo->Height) : "none");
    return kExitOk;
}

int Remove(std::int32_t id) {
    {
        dao::Database db = OpenBook(true);
        dao::Recordset rs = db.OpenRecordset(SqlRecordByID("PersonalData", "Personal ID", id), dao::dbOpenSnapshot);
        bool found = !rs.IsEOF();
        rs.Close();
        db.Close();
        if (!found) return Fail("there is no person " + std::to_string(id));
    }
    cAddressbook book;
    book.AppPath = AppPath;
    book.DeletePerson(id);
    std::cout << "deleted person " << id << "\n";
    return kExitOk;
}

int RunPerson(std::span<const std::string> args) {
    Options o;
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        if (a == "--project" || a == "--app-path") {
            if (i + 1 >= args.size()) return UsageError("person", a + " needs a value");
            if (a == "--project") o.project = args[++i];
            else Host().appPath = args[++i];
        } else if (a == "--archive") {
            o.archive = true;
        } else if (a == "--json") {
            o.json = true;
        } else if (a.size() > 1 && a.rfind("--", 0) == 0) {
            return UsageError("person", "unknown option '" + a + "'");
        } else if (o.action.empty()) {
            o.action = a;
        } else {
            o.operands.push_back(a);
        }
    }
    if (o.action.empty()) return UsageError("person", "say add, show or rm");
    if (o.action != "add" && o.action != "show" && o.action != "rm")
        return UsageError("person", "unknown action '" + o.action + "'; say add, show or rm");
    if (o.action != "add" && (o.project || o.archive))
        return UsageError("person", "--project and --archive go with add");
    if (o.action == "rm" && o.json) return UsageError("person", "--json goes with show");
    std::optional<std::int32_t> id;
    if (o.action != "add") {
        if (o.operands.size() != 1) return UsageError("person", o.action + " takes one person number");
        if (!(id = ParseId(o.operands[0])))
            return UsageError("person", "a person number is a whole number above 0, not '" + o.operands[0] + "'");
    }

    AppPath = HostAppPath();
    const std::string bookPath = DatabasePath();
    try {
        if (o.action == "add") return Add(o);
        if (o.action == "show") return Show(o, *id);
        return Remove(*id);
    } catch (const Error& e) {
        return ReportBookError("person", bookPath, e);
    }
}

}  // namespace

extern const Command kPersonCommand{"person", "add a person from an e-mail address, show one, delete one", kUsage,
                                    RunPerson};

}  // namespace zelvo::cli
