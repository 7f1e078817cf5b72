#include "personslist/lvw_add_persons.h"

#include "hostservices/lng_text.h"
#include "personslist/persons_query.h"
#include "platform/core/error.h"
#include "platform/core/value_conv.h"
#include "store/library_state.h"
#include "zelvo/enums.h"

namespace zelvo {

namespace {

PersonPhotoLoader& PhotoLoader() {
    static PersonPhotoLoader loader;
    return loader;
}

// The five columns the fill reads, found once by name; a column the record
// set lacks stays an empty Field, whose reads fail and so read as Null.
struct PersonColumns {
    dao::Field id, firstName, middleName, surname, fullName;

    PersonColumns(const dao::Recordset& Rs, const OnErrorResumeNext& on) {
        auto find = [&](const char* name) { return on.Resume([&] { return Rs.Fields().Item(name); }); };
        id = find("Personal ID");
        firstName = find("FirstName");
        middleName = find("MiddleName");
        surname = find("Surname");
        fullName = find("FullName");
    }

    static Variant Read(const dao::Field& f, const OnErrorResumeNext& on) {
        return on.Resume([&] { return f.Value(); });
    }

    // The full name when there is one; the parts are read only without it.
    // (The value's own text is moved out, not copied.)
    std::string Text(const OnErrorResumeNext& on) const {
        std::string full = Read(fullName, on).AsText();
        if (!full.empty()) return full;
        std::string first = ValueConv::ToText(Read(firstName, on));
        std::string middle = ValueConv::ToText(Read(middleName, on));
        std::string sur = ValueConv::ToText(Read(surname, on));
        return first + " " + middle + " " + sur;
    }
};

}  // namespace

PersonPhotoLoader SetPersonPhotoLoader(PersonPhotoLoader loader) {
    PersonPhotoLoader previous = std::move(PhotoLoader());
    PhotoLoader() = std::move(loader);
    return previous;
}

void LvwAddPersons2(ui::ListView& Lvw, dao::Recordset& Rs, std::int32_t EmailColumn, const Variant& Icon,
                    bool ShowPhotos, ui::PictureBox* PicPhoto, ui::PictureBox* ScaledPhoto, std::int32_t PhotoWidth,
                    std::int32_t PhotoHeight) {
    OnErrorResumeNext on("Module1.LvwAddPersons2");

    bool redraw = Lvw.AllowRedraw();
    if (redraw) Lvw.SetAllowRedraw(false);

    // An empty record set fails the move; its count stays 0.
    on.Do([&] { Rs.MoveLast(); });
    std::int64_t count = on.Resume([&] { return Rs.RecordCount(); });

    std::shared_ptr<ui::ImageList> icons = Lvw.Icons();
    std::shared_ptr<ui::ImageList> smallIcons = Lvw.SmallIcons();

    // One database for the e-mail addresses of all rows.
    dao::Database emailDb;
    if (EmailColumn > 0)
        emailDb = on.Resume([] { return DBEngine().OpenDatabase(DatabasePath(), false, false, "Access"); });

    bool photoMode = ShowPhotos && PicPhoto && ScaledPhoto;
    PersonPhotoLoader loader;
    int savedWidth = 0, savedHeight = 0;
    if (photoMode) {
        loader = PhotoLoader();
        // Photos of an earlier fill go; the first image (the caller's) stays.
        Lvw.SetIcons(nullptr);
        Lvw.SetSmallIcons(nullptr);
        if (Lvw.View() == ui::lvwIcon && icons)
            for (int i = icons->ListImages().Count(); i >= 2; --i) icons->ListImages().Remove(i);
        Lvw.SetIcons(icons);
        Lvw.SetSmallIcons(smallIcons);
        if (icons) ScaledPhoto->BackColor = icons->MaskColor;
        savedWidth = ScaledPhoto->Width;
        savedHeight = ScaledPhoto->Height;
        ScaledPhoto->Width = PhotoWidth;
        ScaledPhoto->Height = PhotoHeight;
    }

    // Fetched once for the whole list, not once a row.
    const std::string typeText = " " + LngText("Module1.LvwAddPersons2", "man", "Man");
    const bool emailWanted = EmailColumn > 0 && Lvw.ColumnHeaders().Count() > 1 && emailDb.IsOpen();
    // The columns of Resources cannot change during the fill (nothing else
    // runs meanwhile), so the e-mail query's column list is read once from
    // the fill's own database rather than by opening the book again a row.
    const std::string resourceColumns =
        emailWanted ? on.Resume([&] { return TableColumnList("Resources", emailDb); }) : std::string();

    const PersonColumns columns(Rs, on);
    for (std::int64_t i = 1; i <= count; ++i) {
        Variant id = PersonColumns::Read(columns.id, on);
        ui::ListItem& item = Lvw.ListItems().Add();
        std::int32_t personalId = ValueConv::ToLong(id);
        item.SetTag(Variant(std::int64_t{personalId}));
        std::string text = columns.Text(on);

        Variant largeIcon = Icon;
        if (photoMode && loader) {
            bool hasPhoto = on.Resume([&] { return loader(personalId, *PicPhoto, *ScaledPhoto); });
            if (hasPhoto && icons) {
                std::string key = "ID_" + std::to_string(personalId);
                bool added = on.Do([&] {
                    icons->ListImages().Add(key, ScaledPhoto->Picture
                                                     ? std::make_shared<imaging::Picture>(*ScaledPhoto->Picture)
                                                     : nullptr);
                });
                if (added) largeIcon = Variant(key);
            }
        }
        item.SetIcon(largeIcon);
        item.SetSmallIcon(Icon);
        item.SetText(text);

        if (emailWanted) {
            dao::Recordset rsEmail = on.Resume(
                [&] { return emailDb.OpenRecordset(GetOwnerResourcesQuery(resourceColumns, personalId, oPersonal_ID, RsEmail)); });
            if (on.Resume([&] { return rsEmail.AbsolutePosition() != -1; }))
                on.Do([&] { item.SetSubItems(EmailColumn, ValueConv::ToText(rsEmail("ResourceString"))); });
            if (EmailColumn > 1) on.Do([&] { item.SetSubItems(1, typeText); });
            on.Do([&] { rsEmail.Close(); });
        }
        if (i < count) on.Do([&] { Rs.MovePrevious(); });
    }

    if (emailDb.IsOpen()) on.Do([&] { emailDb.Close(); });
    if (photoMode) {
        ScaledPhoto->Width = savedWidth;
        ScaledPhoto->Height = savedHeight;
    }
    if (redraw) Lvw.SetAllowRedraw(true);
}

}  // namespace zelvo
