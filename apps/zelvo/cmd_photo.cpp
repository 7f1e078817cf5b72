// zelvo photo: a person's photo in and out of the book, through dbPhoto.
#include <charconv>
#include <filesystem>
#include <fstream>
#include <iostream>

#include "command.h"
#include "photos/photo_queries.h"
#include "platform/core/error.h"
#include "platform/core/value_conv.h"
#include "platform/imaging/encode_png.h"
#include "store/library_state.h"
#include "zelvo/db_photo.h"

namespace zelvo::cli {

namespace {

constexpr std::string_view kUsage =
    "Usage: zelvo photo add --person ID FILE\n"
    "       zelvo photo get (--person ID | --email ADDRESS) OUT [--fit WxH]\n"
    "       zelvo photo rm --person ID [--all]\n"
    "\n"
    "A person's photo in the book (AddressBookW.mdb of the application folder).\n"
    "\n"
    "  add  stores FILE as the person's newest photo: the file's bytes exactly\n"
    "       as they are (JPEG, PNG, GIF, TIFF, BMP, PNM), never recoded. A file\n"
    "       that is no picture is refused and nothing is stored.\n"
    "  get  writes the newest photo of the person, or of the person who owns the\n"
    "       e-mail address (else whose employee row owns it), to OUT. Without\n"
    "       --fit OUT gets the stored bytes as they were added, in their own\n"
    "       format whatever OUT is called; with --fit the photo is shrunk to fit\n"
    "       a box of W x H pixels (never enlarged), centred on white, and OUT is\n"
    "       a PNG of the box.\n"
    "  rm   deletes the person's newest photo (the one shown); with --all every\n"
    "       photo of the person.\n"
    "\n"
    "Options:\n"
    "  --app-path DIR  the application folder (default: $XDG_DATA_HOME/zelvo)\n"
    "\n"
    "Examples:\n"
    "  zelvo photo add --person 5 ~/Pictures/anna.jpg\n"
    "  zelvo photo get --email anna@example.org anna.jpg\n"
    "  zelvo photo get --person 5 thumb.png --fit 120x160\n"
    "\n"
    "Exit status: 0 done; 1 nothing to do or refused (no such person, no\n"
    "photo, not a picture); 2 bad usage.\n";

constexpr int kTwipsPerPixel = 15;

// A dialog that is never shown: the file was named on the command line.
class NamedFile : public ui::UiHost {
public:
    explicit NamedFile(std::string path) : path_(std::move(path)) {}
    std::string ShowOpenDialog(const ui::FileDialogRequest&) override { return path_; }
    std::string ShowSaveDialog(const ui::FileDialogRequest&) override { return {}; }

private:
    std::string path_;
};

std::optional<std::int32_t> ParseId(const std::string& text) {
    std::int32_t v = 0;
    auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), v);
    if (ec != std::errc() || end != text.data() + text.size() || v <= 0) return std::nullopt;
    return v;
}

std::optional<std::pair<int, int>> ParseBox(const std::string& text) {
    size_t x = text.find_first_of("xX");
    if (x == std::string::npos) return std::nullopt;
    auto w = ParseId(text.substr(0, x)), h = ParseId(text.substr(x + 1));
    if (!w || !h || *w > 10000 || *h > 10000) return std::nullopt;
    return std::make_pair(*w, *h);
}

bool WriteFile(const std::string& path, const std::vector<std::uint8_t>& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
    return bool(out.flush());
}

int Fail(const std::string& reason) {
    std::cerr << "zelvo photo: " << reason << "\n";
    return kExitFailure;
}

bool PersonExists(std::int32_t id) {
    dao::Database db = DBEngine().OpenDatabase(DatabasePath(), false, true, "Access");
    dao::Recordset rs = db.OpenRecordset("Select [Personal ID] From PersonalData Where [Personal ID]=" + std::to_string(id));
    bool found = rs.AbsolutePosition() != -1;
    rs.Close();
    db.Close();
    return found;
}

struct Options {
    std::string action;
    std::optional<std::int32_t> person;
    std::optional<std::string> email;
    std::optional<std::pair<int, int>> fit;
    bool all = false;
    std::vector<std::string> files;
};

int Add(const Options& o) {
    if (!o.person || o.files.size() != 1 || o.email || o.fit || o.all)
        return UsageError("photo", "add takes --person ID and one FILE");
    if (!PersonExists(*o.person)) return Fail("there is no person " + std::to_string(*o.person));
    ui::PictureBox picPhoto, scaledPhoto;
    dbPhoto photos;
    photos.SetpicPhoto(&picPhoto);
    photos.SetScaledPhoto(&scaledPhoto);
    NamedFile dialog(o.files[0]);
    if (!photos.AddPhoto(*o.person, &dialog))
        return Fail(o.files[0] + " is not a picture Zelvo can read; nothing was stored");
    std::cout << "stored " << o.files[0] << " as the photo of person " << *o.person << "\n";
    return kExitOk;
}

int Get(const Options& o) {
    if (o.person.has_value() == o.email.has_value() || o.files.size() != 1 || o.all)
        return UsageError("photo", "get takes --person ID or --email ADDRESS, and one OUT file");
    ui::PictureBox picPhoto, scaledPhoto;
    if (o.fit) {
        scaledPhoto.Width = o.fit->first * kTwipsPerPixel;
        scaledPhoto.Height = o.fit->second * kTwipsPerPixel;
    }
    dbPhoto photos;
    photos.SetpicPhoto(&picPhoto);
    photos.SetScaledPhoto(&scaledPhoto);
    const std::string who = o.person ? "person " + std::to_string(*o.person) : "the owner of " + *o.email;

    std::shared_ptr<imaging::Picture> pic;
    bool found = false;
    if (o.email) {
        found = photos.GetPhotoByEmail(*o.email, &pic, o.fit.has_value());
    } else if (o.fit) {
        photos.LoadPersonPhoto(*o.person, found);
        if (found) pic = scaledPhoto.Image;
    } else {
        dao::Database db = DBEngine().OpenDatabase(DatabasePath(), false, true, "Access");
        photos.SetRecordset(db.OpenRecordset(SqlPersonPhotos(*o.person)));
        found = photos.Recordset().AbsolutePosition() != -1;
        pic = photos.UnScaledPhoto();
        photos.SetRecordset({});
        db.Close();
    }
    if (!found) return Fail("no photo of " + who);
    if (!pic) return Fail("the photo of " + who + " is stored in a format Zelvo cannot read");

    const std::vector<std::uint8_t> bytes = o.fit ? imaging::EncodePng(*pic) : pic->FileBytes;
    if (!WriteFile(o.files[0], bytes)) return Fail("cannot write " + o.files[0]);
    std::cout << "wrote the photo of " << who << " to " << o.files[0] << " (" << pic->Width << "x" << pic->Height
              << ", " << bytes.size() << " bytes)\n";
    return kExitOk;
}

int Remove(const Options& o) {
    if (!o.person || !o.files.empty() || o.email || o.fit) return UsageError("photo", "rm takes --person ID");
    dao::Database db = DBEngine().OpenDatabase(DatabasePath(), false, false, "Access");
    dbPhoto photos;
    photos.SetRecordset(db.OpenRecordset("Select * From Photo Where [Personal ID]=" + std::to_string(*o.person) +
                                         " Order By [Photo ID] Desc"));
    int removed = 0;
    while (photos.DeletePhoto()) {
        ++removed;
        if (!o.all) break;
    }
    photos.SetRecordset({});
    db.Close();
    if (removed == 0) return Fail("no photo of person " + std::to_string(*o.person));
    std::cout << "removed " << removed << " photo" << (removed == 1 ? "" : "s") << " of person " << *o.person << "\n";
    return kExitOk;
}

int RunPhoto(std::span<const std::string> args) {
    Options o;
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        if (a == "--person" || a == "--email" || a == "--fit" || a == "--app-path") {
            if (i + 1 >= args.size()) return UsageError("photo", a + " needs a value");
            const std::string& v = args[++i];
            if (a == "--person") {
                if (!(o.person = ParseId(v))) return UsageError("photo", "--person takes a number above 0, not '" + v + "'");
            } else if (a == "--email") {
                o.email = v;
            } else if (a == "--fit") {
                if (!(o.fit = ParseBox(v))) return UsageError("photo", "--fit takes WxH in pixels, e.g. 120x160, not '" + v + "'");
            } else {
                Host().appPath = v;
            }
        } else if (a == "--all") {
            o.all = true;
        } else if (a.size() > 1 && a[0] == '-') {
            return UsageError("photo", "unknown option '" + a + "'");
        } else if (o.action.empty()) {
            o.action = a;
        } else {
            o.files.push_back(a);
        }
    }
    AppPath = HostAppPath();
    try {
        if (o.action == "add") return Add(o);
        if (o.action == "get") return Get(o);
        if (o.action == "rm") return Remove(o);
    } catch (const Error& e) {
        return Fail(e.description() + " (" + std::to_string(e.number()) + ")");
    }
    return UsageError("photo", o.action.empty() ? "add, get or rm?" : "unknown action '" + o.action + "'");
}

}  // namespace

extern const Command kPhotoCommand{"photo", "add, get or remove a person's photo", kUsage, RunPhoto};

}  // namespace zelvo::cli
