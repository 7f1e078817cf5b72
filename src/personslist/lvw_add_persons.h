// LvwAddPersons2: fills a list control with the persons of an open record
// set. The address book window, the list embedded in a host window and the
// host's own list (cAddressbook.Navigate) are all filled by it.
#pragma once

#include <cstdint>
#include <functional>

#include "platform/core/variant.h"
#include "platform/dao/recordset.h"
#include "platform/ui/listview.h"
#include "platform/ui/picture_box.h"

namespace zelvo {

// Adds one row a record of `Rs` to `Lvw`, from the last record to the first;
// the caller clears the list before and sorts it after, if it wants to.
//
//   Rs           an open record set with the columns Personal ID, FirstName,
//                MiddleName, Surname, FullName (a missing column reads as
//                Null: a missing Personal ID gives Tag 0)
//   EmailColumn  0 or less: no e-mail column and no extra database. Above 0:
//                the sub-item that takes the person's first e-mail address,
//                when the list has more than one column; above 1 also
//                SubItems(1) := " Man" (in the person's language) for every
//                row. One extra database is opened for the whole fill.
//   Icon         the image key of the rows
//   ShowPhotos   photo mode: each person with a photo gets it as the large
//                icon "ID_<id>"; counts as False unless both PicPhoto and
//                ScaledPhoto are given
//   PhotoWidth, PhotoHeight   the size of a photo in the list, in twips
//
// A row: Tag = Personal ID as a whole number; Text = FullName, or else
// FirstName, " ", MiddleName, " ", Surname as they are (so all-Null names
// give two blanks). AllowRedraw is off during the fill and comes back as it
// was. Nothing is reported: a failing step is passed over and the row keeps
// what it has.
void LvwAddPersons2(ui::ListView& Lvw, dao::Recordset& Rs, std::int32_t EmailColumn, const Variant& Icon,
                    bool ShowPhotos = false, ui::PictureBox* PicPhoto = nullptr, ui::PictureBox* ScaledPhoto = nullptr,
                    std::int32_t PhotoWidth = 1395, std::int32_t PhotoHeight = 1860);

// Photo mode asks this for each person's photo: it loads the photo of
// `Personal_ID` and scales it into `ScaledPhoto` (PicPhoto is working space),
// and says whether the person has one. The photo records install it; with
// none installed nobody has a photo. Returns the previous one.
using PersonPhotoLoader =
    std::function<bool(std::int32_t Personal_ID, ui::PictureBox& PicPhoto, ui::PictureBox& ScaledPhoto)>;
PersonPhotoLoader SetPersonPhotoLoader(PersonPhotoLoader loader);

}  // namespace zelvo
