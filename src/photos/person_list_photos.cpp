#include "photos/person_list_photos.h"

#include <memory>

#include "personslist/lvw_add_persons.h"
#include "platform/core/error.h"
#include "store/library_state.h"
#include "photos/db_photo.h"

namespace zelvo {

namespace {

// The loader of one fill. LvwAddPersons2 takes a copy of the installed
// loader when a fill begins and drops it when the fill ends, so a copy is a
// fill: it opens the book on its first photo, reads every photo of the list
// through it, and closes it when the fill drops it. The book is not held
// between fills (a compaction needs it free).
class FillPhotoLoader {
public:
    FillPhotoLoader() = default;
    FillPhotoLoader(const FillPhotoLoader&) {}  // a new fill: nothing shared
    FillPhotoLoader& operator=(const FillPhotoLoader&) = delete;
    ~FillPhotoLoader() {
        if (book_ && book_->IsOpen()) {
            OnErrorResumeNext on("PersonListPhotos");
            on.Do([&] { book_->Close(); });
        }
    }

    bool operator()(std::int32_t Personal_ID, ui::PictureBox& PicPhoto, ui::PictureBox& ScaledPhoto) {
        if (!book_) {
            OnErrorResumeNext on("PersonListPhotos");
            book_ = std::make_shared<dao::Database>(
                on.Resume([] { return DBEngine().OpenDatabase(DatabasePath(), false, false, "Access"); }));
        }
        dbPhoto photos;
        photos.SetpicPhoto(&PicPhoto);
        photos.SetScaledPhoto(&ScaledPhoto);
        photos.SetPhotoBook(*book_);
        bool found = false;
        photos.LoadPersonPhoto(Personal_ID, found);
        // The list takes the drawing as the row's icon.
        if (found) ScaledPhoto.Picture = ScaledPhoto.Image;
        return found;
    }

private:
    std::shared_ptr<dao::Database> book_;
};

}  // namespace

void InstallPersonListPhotos() { SetPersonPhotoLoader(FillPhotoLoader()); }

}  // namespace zelvo
