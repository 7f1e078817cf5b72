// dbPhoto: the photos of persons — storing one from a file, finding one by
// a mail address, and scaling one into a picture box for display.
//
// A person may have several rows in Photo; wherever one photo is wanted it
// is the newest (the highest [Photo ID]). A row's [Photo] holds the image in
// its own file format exactly as it came — never recoded, never scaled — so
// what goes in comes out byte for byte; the format is told from the bytes.
// Scaling happens only for display and is never stored.
//
// The owner of the object (a window, a host, the command line) sets the two
// picture boxes: picPhoto is working space that takes a photo before it is
// scaled, ScaledPhoto shows the scaled one. The object's record set of Photo
// is DataPhoto's when a data control is set, else the one given through
// SetRecordset, else one the object opens itself on first need.
//
// Like the book's other calls these pass over failures and answer False;
// only AddPhoto tells the person something ("Invalid image").
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/dao/database.h"
#include "platform/imaging/picture.h"
#include "platform/ui/data_control.h"
#include "platform/ui/listview.h"
#include "platform/ui/picture_box.h"
#include "platform/ui/ui_host.h"

namespace zelvo {

class dbPhoto {
public:
    dbPhoto();
    ~dbPhoto();
    dbPhoto(const dbPhoto&) = delete;
    dbPhoto& operator=(const dbPhoto&) = delete;

    // The application folder, shared by the whole library.
    std::string AppPath() const;
    void SetAppPath(const std::string& path);

    // The data control bound to Photo by the owning window; not owned.
    ui::DataControl* DataPhoto() const { return dataPhoto_; }
    void SetDataPhoto(ui::DataControl* data) { dataPhoto_ = data; }
    // The two picture boxes; not owned.
    ui::PictureBox* picPhoto() const { return picPhoto_; }
    void SetpicPhoto(ui::PictureBox* box) { picPhoto_ = box; }
    ui::PictureBox* ScaledPhoto() const { return scaledPhoto_; }
    void SetScaledPhoto(ui::PictureBox* box) { scaledPhoto_ = box; }

    // Asks for a picture file through the open-file dialog of `Dlg` (the
    // process's UiHost when null) and stores it as the person's newest photo:
    // the file's bytes as they are. True when a row was added, and it is
    // then current. A cancelled dialog gives False and changes nothing. A
    // file that is not a picture the loader reads (or no picPhoto set) shows
    // "Invalid image" (style 48) and stores nothing.
    bool AddPhoto(std::int32_t Personal_ID, ui::UiHost* Dlg = nullptr);

    // Deletes the current row of the record set. False without one.
    bool DeletePhoto();

    // Draws picPhoto's picture into ScaledPhoto's Image: shrunk to fit the
    // box keeping its proportions (never enlarged), centred on the box's
    // back colour, by area averaging. The box shows a border (BorderStyle 1)
    // exactly when it holds no photo. False when there was nothing to draw.
    bool ScalingPhoto();

    // Points `DataPhotoEx` at the photos of the person who owns the mail
    // address, else of the person whose employee row owns it, newest first.
    // True when it has a row.
    bool FindPhotoByEmail(const std::string& strEmail, ui::DataControl& DataPhotoEx);

    // The width, height and depth of a BMP file from its head (one byte a
    // character, at least 29). Zeros for a shorter head.
    static void GetBMPDimensions(const std::string& strPic, double& picWidth, double& picHeight,
                                 double* picDepth = nullptr);

    // The fit of a picture into a frame: shrunk to touch the frame on one
    // side keeping its proportions, never enlarged; dx and dy centre it.
    static void GetNewDimensions(double picWidth, double picHeight, double StWidth, double StHeight, double& NewWidth,
                                 double& NewHeight, double* dx = nullptr, double* dy = nullptr);

    // The newest photo of the person who owns the mail address, else of the
    // person whose employee row owns it (the person's own address wins). The
    // address is compared as a whole text: quotes and wildcards in it are
    // plain characters. With Scaling and both picture boxes set, iPic is the
    // photo drawn into ScaledPhoto; else the photo at full size. Stored bytes
    // that no decoder reads give True with an empty iPic. False when no
    // photo is found.
    bool GetPhotoByEmail(const std::string& strEmail, std::shared_ptr<imaging::Picture>* iPic = nullptr,
                         bool Scaling = false, std::int32_t* Personal_ID = nullptr);

    // The current row's photo at full size; null without a row or when its
    // bytes are no picture.
    std::shared_ptr<imaging::Picture> UnScaledPhoto();

    // Replaces the image `key` of the list's image list by the no-photo
    // card: white, framed, the words "No Photo" centred, at the image list's
    // size.
    void ReplaceNoPhotoImage(ui::ImageList& ImageList1, const std::string& key = "User");

    // ---- for the library's windows

    // The record set of the object (see the header comment).
    dao::Recordset& Recordset();
    void SetRecordset(dao::Recordset rs);

    // Draws the person's newest photo into the two boxes. Found is True when
    // there was one and it could be drawn; without one the boxes are empty
    // and ScaledPhoto shows its border.
    void LoadPersonPhoto(std::int32_t Personal_ID, bool& Found);

    // In the large-icon view, gives each row that still shows the default
    // icon "User" its person's photo as icon ("ID_<id>"), reading each
    // person's photo once while the image list lives.
    void SetListIcons(ui::ListView& Lvw);

private:
    // Shows `pic` (decoded at a scale that still covers the box) in picPhoto
    // and scales it.
    bool ShowScaled(std::shared_ptr<imaging::Picture> pic);
    // The box's size in pixels.
    static int Pixels(int twips);

    ui::DataControl* dataPhoto_ = nullptr;
    ui::PictureBox* picPhoto_ = nullptr;
    ui::PictureBox* scaledPhoto_ = nullptr;
    dao::Database ownDb_;
    dao::Recordset rs_;
};

}  // namespace zelvo
