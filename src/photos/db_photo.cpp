#include "photos/db_photo.h"

#include <algorithm>
#include <cmath>
#include <span>

#include "hostservices/lng_text.h"
#include "hostservices/message_wrappers.h"
#include "photos/area_resample.h"
#include "photos/no_photo.h"
#include "photos/photo_queries.h"
#include "platform/core/error.h"
#include "platform/core/value_conv.h"
#include "platform/dao/connection.h"
#include "platform/imaging/fit.h"
#include "platform/imaging/picture_loader.h"
#include "store/library_state.h"

namespace zelvo {

namespace {

// Twips in a pixel of the screens we draw for (96 dots an inch).
constexpr int kTwipsPerPixel = 15;

bool HasRow(const dao::Recordset& rs, const OnErrorResumeNext& on) {
    return rs && on.Resume([&] { return rs.AbsolutePosition() != -1; });
}

Bytes PhotoBytes(const dao::Recordset& rs, const OnErrorResumeNext& on) {
    Variant v = on.Resume([&] { return rs("Photo"); });
    return v.kind() == Variant::Kind::Bytes ? v.bytes() : Bytes{};
}

// A picture of the box's size on its back colour, with `pic` drawn shrunk to
// NewWidth x NewHeight at (dx, dy).
std::shared_ptr<imaging::Picture> DrawFitted(const imaging::Picture& pic, int boxWidth, int boxHeight,
                                             std::int32_t backColor) {
    imaging::NewDimensions d = imaging::GetNewDimensions(pic.Width, pic.Height, boxWidth, boxHeight);
    auto canvas = std::make_shared<imaging::Picture>();
    canvas->Width = boxWidth;
    canvas->Height = boxHeight;
    canvas->Pixels.resize(std::size_t(boxWidth) * std::size_t(boxHeight) * 3);
    const std::uint8_t back[3] = {std::uint8_t(backColor & 0xFF), std::uint8_t((backColor >> 8) & 0xFF),
                                  std::uint8_t((backColor >> 16) & 0xFF)};
    for (std::size_t i = 0; i < canvas->Pixels.size(); i += 3) std::copy(back, back + 3, &canvas->Pixels[i]);

    const int w = std::clamp(int(std::lround(d.NewWidth)), 1, boxWidth);
    const int h = std::clamp(int(std::lround(d.NewHeight)), 1, boxHeight);
    const int x = std::clamp(int(std::lround(d.dx)), 0, boxWidth - w);
    const int y = std::clamp(int(std::lround(d.dy)), 0, boxHeight - h);
    RgbView src{pic.Pixels.data(), std::ptrdiff_t(pic.Width) * 3, pic.Width, pic.Height};
    AreaResample(src, w, h, canvas->Row(y) + std::size_t(x) * 3, std::ptrdiff_t(boxWidth) * 3);
    return canvas;
}

// The book, opened shared and writable although only read here: a writable
// connection lets the engine keep the lookup indexes of the mail queries.
// Their join reaches Photo by [Personal ID], which no query compares with a
// number of its own; without an index on it the planner would read every
// photo of the book for each lookup.
dao::Database OpenBook() {
    dao::Database db = DBEngine().OpenDatabase(DatabasePath(), false, false, "Access");
    db.connection()->EnsureLookupIndex("Photo", "Personal ID");
    return db;
}

}  // namespace

dbPhoto::dbPhoto() = default;

dbPhoto::~dbPhoto() {
    // A record set of DataPhoto belongs to the window; only our own closes.
    OnErrorResumeNext on("dbPhoto.Terminate");
    if (rs_) on.Do([&] { rs_.Close(); });
    if (ownDb_.IsOpen()) on.Do([&] { ownDb_.Close(); });
}

std::string dbPhoto::AppPath() const { return zelvo::AppPath; }
void dbPhoto::SetAppPath(const std::string& path) { zelvo::AppPath = path; }

int dbPhoto::Pixels(int twips) { return std::max(1, twips / kTwipsPerPixel); }

dao::Recordset& dbPhoto::Recordset() {
    if (dataPhoto_) return dataPhoto_->Recordset();
    if (!rs_) {
        OnErrorResumeNext on("dbPhoto.Recordset");
        if (!ownDb_.IsOpen())
            ownDb_ = on.Resume([] { return OpenBook(); });
        if (ownDb_.IsOpen()) rs_ = on.Resume([&] { return ownDb_.OpenRecordset("Photo", dao::dbOpenTable); });
    }
    return rs_;
}

void dbPhoto::SetRecordset(dao::Recordset rs) { rs_ = std::move(rs); }

bool dbPhoto::AddPhoto(std::int32_t Personal_ID, ui::UiHost* Dlg) {
    OnErrorResumeNext on("dbPhoto.AddPhoto");
    ui::FileDialogRequest request;
    request.filter = LngText("dbPhoto.AddPhoto", "Filter", "Graphic files %1");
    const std::string patterns = "(*.jpg,*.jpeg,*.jpe,*.bmp,*.gif,*.tif)|*.jpg;*.jpeg;*.jpe;*.bmp;*.gif;*.tif";
    if (auto at = request.filter.find("%1"); at != std::string::npos) request.filter.replace(at, 2, patterns);
    ui::UiHost& host = Dlg ? *Dlg : ui::CurrentUiHost();
    const std::string file = on.Resume([&] { return host.ShowOpenDialog(request); });
    if (file.empty()) return false;

    // The picture is read before any row is begun, so a refused file leaves
    // nothing behind. What is stored is the file's own bytes, which the
    // loader keeps beside the pixels: never a re-encoding.
    imaging::PictureLoader loader;
    std::optional<imaging::Picture> pic = loader.LoadPicture(file);
    if (!picPhoto_ || !pic || loader.LastError().Number != 0 || pic->FileBytes.empty()) {
        UniMsgBox(LngText("dbPhoto.AddPhoto", "msgbox", "Invalid image"), ui::vbExclamation);
        return false;
    }
    Bytes bytes = pic->FileBytes;
    picPhoto_->Picture = std::make_shared<imaging::Picture>(std::move(*pic));

    // The dialog has just closed: let the window repaint before the write.
    on.Do([&] { host.DoEvents(); });
    dao::Recordset& rs = Recordset();
    bool stored = on.Do([&] {
        rs.AddNew();
        rs.SetValue("Personal ID", Variant(std::int64_t{Personal_ID}));
        rs.SetValue("Photo", Variant(std::move(bytes)));
        rs.Update();
    });
    if (!stored) {
        on.Do([&] { rs.CancelUpdate(); });
        return false;
    }
    on.Do([&] { rs.Requery(); });
    on.Do([&] { rs.MoveLast(); });
    return true;
}

bool dbPhoto::DeletePhoto() {
    OnErrorResumeNext on("dbPhoto.DeletePhoto");
    dao::Recordset& rs = Recordset();
    if (!HasRow(rs, on)) return false;
    if (!on.Do([&] { rs.Delete(); })) return false;
    on.Do([&] { rs.Requery(); });
    return true;
}

bool dbPhoto::ScalingPhoto() {
    if (!picPhoto_ || !scaledPhoto_) return false;
    ui::PictureBox& box = *scaledPhoto_;
    box.Picture.reset();
    box.Image.reset();
    box.BorderStyle = 0;
    const std::shared_ptr<imaging::Picture>& pic = picPhoto_->Picture;
    if (!pic || pic->Empty() || pic->Pixels.size() < std::size_t(pic->Width) * std::size_t(pic->Height) * 3) {
        box.BorderStyle = 1;
        return false;
    }
    try {
        box.Image = DrawFitted(*pic, Pixels(box.Width), Pixels(box.Height), box.BackColor);
    } catch (const std::bad_alloc&) {
        box.BorderStyle = 1;
        return false;
    }
    return true;
}

bool dbPhoto::ShowScaled(std::shared_ptr<imaging::Picture> pic) {
    picPhoto_->Picture = std::move(pic);
    return ScalingPhoto();
}

bool dbPhoto::FindPhotoByEmail(const std::string& strEmail, ui::DataControl& DataPhotoEx) {
    OnErrorResumeNext on("dbPhoto.FindPhotoByEmail");
    DataPhotoEx.DatabaseName = DatabasePath();
    DataPhotoEx.Connect = "Access";
    dao::Database db = on.Resume([] { return OpenBook(); });
    if (!db.IsOpen()) return false;
    DataPhotoEx.RecordSource = on.Resume([&] { return SqlPhotoByPersonMail(strEmail, db); });
    on.Do([&] { DataPhotoEx.Refresh(); });
    if (!HasRow(DataPhotoEx.Recordset(), on)) {
        DataPhotoEx.RecordSource = on.Resume([&] { return SqlPhotoByEmployeeMail(strEmail, db); });
        on.Do([&] { DataPhotoEx.Refresh(); });
    }
    on.Do([&] { db.Close(); });
    return HasRow(DataPhotoEx.Recordset(), on);
}

void dbPhoto::GetBMPDimensions(const std::string& strPic, double& picWidth, double& picHeight, double* picDepth) {
    auto le32 = [&](std::size_t at) {
        std::uint32_t v = 0;
        for (int i = 3; i >= 0; --i) v = (v << 8) | static_cast<unsigned char>(strPic[at + i]);
        return static_cast<double>(static_cast<std::int32_t>(v));
    };
    picWidth = picHeight = 0;
    if (picDepth) *picDepth = 0;
    if (strPic.size() < 29) return;
    picWidth = le32(18);
    picHeight = le32(22);
    if (picDepth) *picDepth = static_cast<unsigned char>(strPic[28]);
}

void dbPhoto::GetNewDimensions(double picWidth, double picHeight, double StWidth, double StHeight, double& NewWidth,
                               double& NewHeight, double* dx, double* dy) {
    imaging::NewDimensions d = imaging::GetNewDimensions(picWidth, picHeight, StWidth, StHeight);
    NewWidth = d.NewWidth;
    NewHeight = d.NewHeight;
    if (dx) *dx = d.dx;
    if (dy) *dy = d.dy;
}

bool dbPhoto::GetPhotoByEmail(const std::string& strEmail, std::shared_ptr<imaging::Picture>* iPic, bool Scaling,
                              std::int32_t* Personal_ID) {
    OnErrorResumeNext on("dbPhoto.GetPhotoByEmail");
    if (iPic) iPic->reset();
    dao::Database db = on.Resume([] { return OpenBook(); });
    if (!db.IsOpen()) return false;
    struct Closer {
        dao::Database& db;
        ~Closer() {
            OnErrorResumeNext on("dbPhoto.GetPhotoByEmail");
            on.Do([&] { db.Close(); });
        }
    } closer{db};

    dao::Recordset rs = on.Resume([&] { return db.OpenRecordset(SqlPhotoByPersonMail(strEmail, db)); });
    if (!HasRow(rs, on)) {
        if (rs) on.Do([&] { rs.Close(); });
        rs = on.Resume([&] { return db.OpenRecordset(SqlPhotoByEmployeeMail(strEmail, db)); });
    }
    if (!HasRow(rs, on)) return false;

    if (Personal_ID) *Personal_ID = on.Resume([&] { return ValueConv::ToLong(rs("Photo.Personal ID")); });
    const bool scale = Scaling && picPhoto_ && scaledPhoto_;
    if (!iPic && !scale) return true;  // nobody wants the picture: no decode
    const Bytes bytes = PhotoBytes(rs, on);
    imaging::PictureLoader loader;
    std::optional<imaging::Picture> pic =
        scale ? loader.PictureFromBytes(bytes, Pixels(scaledPhoto_->Width), Pixels(scaledPhoto_->Height))
              : loader.PictureFromBytes(bytes);
    if (!pic) return true;  // a photo is stored, but no decoder reads it
    auto picture = std::make_shared<imaging::Picture>(std::move(*pic));
    if (scale && ShowScaled(picture)) {
        scaledPhoto_->Picture = scaledPhoto_->Image;
        picture = scaledPhoto_->Image;
    }
    if (iPic) *iPic = std::move(picture);
    return true;
}

std::shared_ptr<imaging::Picture> dbPhoto::UnScaledPhoto() {
    OnErrorResumeNext on("dbPhoto.UnScaledPhoto");
    dao::Recordset& rs = Recordset();
    if (!HasRow(rs, on)) return nullptr;
    imaging::PictureLoader loader;
    std::optional<imaging::Picture> pic = loader.PictureFromBytes(PhotoBytes(rs, on));
    return pic ? std::make_shared<imaging::Picture>(std::move(*pic)) : nullptr;
}

void dbPhoto::LoadPersonPhoto(std::int32_t Personal_ID, bool& Found) {
    OnErrorResumeNext on("dbPhoto.LoadPersonPhoto");
    Found = false;
    for (ui::PictureBox* box : {picPhoto_, scaledPhoto_})
        if (box) {
            box->Picture.reset();
            box->Image.reset();
        }
    if (!picPhoto_ || !scaledPhoto_) return;
    const bool ownBook = !photoBook_.IsOpen();
    dao::Database db = ownBook ? on.Resume([] { return OpenBook(); }) : photoBook_;
    dao::Recordset rs;
    // Only read: a snapshot. A list in photo mode loads a photo for each row.
    if (db.IsOpen())
        rs = on.Resume([&] { return db.OpenRecordset(SqlPersonPhotos(Personal_ID), dao::dbOpenSnapshot); });
    if (!HasRow(rs, on)) {
        scaledPhoto_->BorderStyle = 1;
    } else {
        imaging::PictureLoader loader;
        // The bytes are decoded where the value holds them, not copied first.
        const Variant photo = on.Resume([&] { return rs("Photo"); });
        std::span<const std::uint8_t> bytes;
        if (photo.kind() == Variant::Kind::Bytes) bytes = photo.bytes();
        std::optional<imaging::Picture> pic =
            loader.PictureFromBytes(bytes, Pixels(scaledPhoto_->Width), Pixels(scaledPhoto_->Height));
        Found = ShowScaled(pic ? std::make_shared<imaging::Picture>(std::move(*pic)) : nullptr);
    }
    if (rs) on.Do([&] { rs.Close(); });
    if (ownBook && db.IsOpen()) on.Do([&] { db.Close(); });
}

void dbPhoto::SetListIcons(ui::ListView& Lvw) {
    OnErrorResumeNext on("dbPhoto.SetListIcons");
    if (Lvw.View() != ui::lvwIcon || !Lvw.Icons() || !scaledPhoto_) return;
    ui::ImageList& icons = *Lvw.Icons();
    if (!icons.ListImages().Exists("User")) return;
    // Every row of the model counts as on the screen.
    for (int i = 1; i <= Lvw.ListItems().Count(); ++i) {
        ui::ListItem& item = Lvw.ListItems().Item(i);
        if (item.Icon() != Variant("User")) continue;
        const std::string key = "ID_" + std::to_string(ValueConv::ToLong(Variant(item.Tag().AsInteger())));
        if (icons.ListImages().Exists(key)) {
            item.SetIcon(Variant(key));
            continue;
        }
        bool found = false;
        LoadPersonPhoto(static_cast<std::int32_t>(item.Tag().AsInteger()), found);
        if (!found) continue;
        scaledPhoto_->Picture = scaledPhoto_->Image;
        if (on.Do([&] { icons.ListImages().Add(key, scaledPhoto_->Picture); })) item.SetIcon(Variant(key));
    }
}

void dbPhoto::ReplaceNoPhotoImage(ui::ImageList& ImageList1, const std::string& key) {
    OnErrorResumeNext on("dbPhoto.ReplaceNoPhotoImage");
    const std::string text = LngText("Global", "NoPhoto", "No Photo");
    std::shared_ptr<imaging::Picture> card = MakeNoPhotoPicture(text, ImageList1.ImageWidth, ImageList1.ImageHeight);
    if (!card) return;
    on.Do([&] { ImageList1.ListImages().Remove(key); });
    on.Do([&] { ImageList1.ListImages().Add(key, card); });
}

}  // namespace zelvo
