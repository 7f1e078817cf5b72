#include "photos/person_list_photos.h"

#include "personslist/lvw_add_persons.h"
#include "zelvo/db_photo.h"

namespace zelvo {

void InstallPersonListPhotos() {
    SetPersonPhotoLoader([](std::int32_t Personal_ID, ui::PictureBox& PicPhoto, ui::PictureBox& ScaledPhoto) {
        dbPhoto photos;
        photos.SetpicPhoto(&PicPhoto);
        photos.SetScaledPhoto(&ScaledPhoto);
        bool found = false;
        photos.LoadPersonPhoto(Personal_ID, found);
        // The list takes the drawing as the row's icon.
        if (found) ScaledPhoto.Picture = ScaledPhoto.Image;
        return found;
    });
}

}  // namespace zelvo
