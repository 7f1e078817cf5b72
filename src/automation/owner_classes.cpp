// The member tables of dbPhoto, AddressByOwner and AddressFields, and of the
// picture and record set objects their members give back.
#include "zelvo/owner_classes.h"

#include "automation/dispatch_table.h"
#include "platform/core/value_conv.h"
#include "platform/imaging/picture.h"
#include "addresses/address_by_owner.h"
#include "zelvo/address_fields.h"
#include "photos/db_photo.h"

namespace zelvo {

namespace {

using T = DispType;

Variant Long(std::int64_t v) { return Variant(v); }
std::int32_t Long(const Variant& v) { return static_cast<std::int32_t>(v.integer()); }

DispParam In(std::string name, DispType type) { return {std::move(name), type}; }
DispParam Ref(std::string name, DispType type) { return {std::move(name), type, true}; }
DispParam Opt(DispParam p, std::optional<Variant> def = std::nullopt) {
    p.optional = true;
    p.defaultValue = std::move(def);
    return p;
}

DispMember Method(std::string name, std::vector<DispParam> params, std::optional<DispType> result, std::string summary,
                  std::string resultClass = {}) {
    return {std::move(name), DispKind::Method, std::move(params), result, false, std::move(summary),
            std::move(resultClass)};
}
DispMember Property(std::string name, DispType type, bool readOnly, std::string summary, std::string resultClass = {}) {
    return {std::move(name), DispKind::Property, {}, type, readOnly, std::move(summary), std::move(resultClass)};
}

DispResult PictureResult(std::shared_ptr<imaging::Picture> pic) {
    if (!pic) return Variant();
    return ObjectResult(PictureClass(), std::move(pic));
}

// dbPhoto as a late-bound client holds it: with its two picture boxes of its
// own, as a window would give it, so that the scaling members work. The box
// is that of a photo in a person list (93 x 124 pixels).
class DispatchedPhoto : public dbPhoto {
public:
    DispatchedPhoto() {
        scaled_.Width = 1395;
        scaled_.Height = 1860;
        SetpicPhoto(&pic_);
        SetScaledPhoto(&scaled_);
    }

private:
    ui::PictureBox pic_, scaled_;
};

}  // namespace

const DispClass& PictureClass() {
    static const DispClass cls = MakeDispClass<imaging::Picture>(
        "Picture",
        {
            {Property("Width", T::Long, true, "width in pixels"), nullptr,
             [](const imaging::Picture& p) { return DispResult(Long(p.Width)); }},
            {Property("Height", T::Long, true, "height in pixels"), nullptr,
             [](const imaging::Picture& p) { return DispResult(Long(p.Height)); }},
        },
        false);
    return cls;
}

const DispClass& RecordsetClass() {
    auto move = [](void (dao::Recordset::*step)()) {
        return [step](dao::Recordset& rs, std::vector<Variant>&, std::vector<DispObject>&) {
            (rs.*step)();
            return DispResult(Variant());
        };
    };
    static const DispClass cls = MakeDispClass<dao::Recordset>(
        "Recordset",
        {
            {Property("RecordCount", T::Long, true, "records reached so far"), nullptr,
             [](const dao::Recordset& rs) { return DispResult(Long(rs.RecordCount())); }},
            {Property("AbsolutePosition", T::Long, true, "the current record from 0; -1 for none"), nullptr,
             [](const dao::Recordset& rs) { return DispResult(Long(rs.AbsolutePosition())); }},
            {Property("EOF", T::Boolean, true, "past the last record"), nullptr,
             [](const dao::Recordset& rs) { return DispResult(Variant(rs.IsEOF())); }},
            {Method("MoveNext", {}, std::nullopt, "the next record"), move(&dao::Recordset::MoveNext)},
            {Method("MoveFirst", {}, std::nullopt, "the first record"), move(&dao::Recordset::MoveFirst)},
        },
        false);
    return cls;
}

const DispClass& AddressFieldsClass() {
    auto text = [](std::string AddressFields::*field, const char* name, const char* summary) {
        return DispEntry<AddressFields>{Property(name, T::String, false, summary), nullptr,
                                        [field](const AddressFields& a) { return DispResult(Variant(a.*field)); },
                                        [field](AddressFields& a, const Variant& v) { a.*field = v.text(); }};
    };
    static const DispClass cls = MakeDispClass<AddressFields>(
        "AddressFields", {
                             text(&AddressFields::PostIndex, "PostIndex", "the postcode nearest the node"),
                             text(&AddressFields::Street, "Street", "street, house and apartment, outermost first"),
                             text(&AddressFields::City, "City", "the city or other locality"),
                             text(&AddressFields::Country, "Country", "the country"),
                             text(&AddressFields::Region, "Region", "the region"),
                         });
    return cls;
}

const DispClass& AddressByOwnerClass() {
    static const DispClass cls = MakeDispClass<AddressByOwner>(
        "AddressByOwner",
        {
            {Method("InitDB", {}, std::nullopt, "opens the book of AppPath read-only; call it first"),
             [](AddressByOwner& a, std::vector<Variant>&, std::vector<DispObject>&) {
                 a.InitDB();
                 return DispResult(Variant());
             }},
            {Property("AppPath", T::String, false, "the folder of the book"), nullptr,
             [](const AddressByOwner& a) { return DispResult(Variant(a.AppPath())); },
             [](AddressByOwner& a, const Variant& v) { a.SetAppPath(v.text()); }},
            {Method("SelectOwner", {In("Owner_ID", T::Long), In("OwnerType", T::Long)}, T::Boolean,
                    "selects the owner's addresses (OwnerType 0 person, 1 organization); True when it has any"),
             [](AddressByOwner& a, std::vector<Variant>& v, std::vector<DispObject>&) {
                 return DispResult(Variant(a.SelectOwner(Long(v[0]), Long(v[1]))));
             }},
            {Property("rsAddresses", T::Object, true, "the owner's bindings, to move through", "Recordset"), nullptr,
             [](const AddressByOwner& a) {
                 auto& rs = const_cast<AddressByOwner&>(a).rsAddresses();
                 if (!rs) return DispResult(Variant());
                 return ObjectResult(RecordsetClass(), std::make_shared<dao::Recordset>(rs));
             }},
            {Property("Address_ID", T::Long, true, "the node of the current binding; 0 for none"), nullptr,
             [](const AddressByOwner& a) { return DispResult(Long(a.Address_ID())); }},
            {Property("AddressFields", T::Object, true, "the address of the current binding", "AddressFields"),
             nullptr,
             [](const AddressByOwner& a) {
                 return ObjectResult(AddressFieldsClass(), std::make_shared<AddressFields>(
                                                               const_cast<AddressByOwner&>(a).AddressFields()));
             }},
        });
    return cls;
}

const DispClass& dbPhotoClass() {
    static const DispClass cls = [] {
        DispClass base = MakeDispClass<DispatchedPhoto>(
            "dbPhoto",
            {
                {Property("AppPath", T::String, false, "the folder of the book"), nullptr,
                 [](const DispatchedPhoto& p) { return DispResult(Variant(p.AppPath())); },
                 [](DispatchedPhoto& p, const Variant& v) { p.SetAppPath(v.text()); }},
                {Method("AddPhoto", {In("Personal_ID", T::Long)}, T::Boolean,
                        "asks for a picture file and stores its bytes as the person's newest photo"),
                 [](DispatchedPhoto& p, std::vector<Variant>& v, std::vector<DispObject>&) {
                     return DispResult(Variant(p.AddPhoto(Long(v[0]))));
                 }},
                {Method("DeletePhoto", {}, T::Boolean, "deletes the current photo row"),
                 [](DispatchedPhoto& p, std::vector<Variant>&, std::vector<DispObject>&) {
                     return DispResult(Variant(p.DeletePhoto()));
                 }},
                {Method("ScalingPhoto", {}, T::Boolean, "fits the working picture into the 93 x 124 box"),
                 [](DispatchedPhoto& p, std::vector<Variant>&, std::vector<DispObject>&) {
                     return DispResult(Variant(p.ScalingPhoto()));
                 }},
                {Method("FindPhotoByEmail", {In("strEmail", T::String), In("DataPhotoEx", T::Object)}, T::Boolean,
                        "points the data control at the photos of the address's owner"),
                 [](DispatchedPhoto& p, std::vector<Variant>& v, std::vector<DispObject>& o) {
                     ui::DataControl* data = ObjectArg<ui::DataControl>(o[1]);
                     if (!data) throw Error(424, "Object required: DataPhotoEx", "Zelvolib");
                     return DispResult(Variant(p.FindPhotoByEmail(v[0].text(), *data)));
                 }},
                {Method("GetBMPDimensions",
                        {In("strPic", T::String), Ref("picWidth", T::Variant), Ref("picHeight", T::Variant),
                         Opt(Ref("picDepth", T::Variant))},
                        std::nullopt, "width, height and depth from the head of a BMP file"),
                 [](DispatchedPhoto&, std::vector<Variant>& v, std::vector<DispObject>&) {
                     double w = 0, h = 0, d = 0;
                     dbPhoto::GetBMPDimensions(v[0].text(), w, h, &d);
                     v[1] = Variant(w), v[2] = Variant(h), v[3] = Variant(d);
                     return DispResult(Variant());
                 }},
                {Method("GetNewDimensions",
                        {In("picWidth", T::Variant), In("picHeight", T::Variant), In("StWidth", T::Variant),
                         In("StHeight", T::Variant), Ref("NewWidth", T::Variant), Ref("NewHeight", T::Variant),
                         Opt(Ref("dx", T::Variant)), Opt(Ref("dy", T::Variant))},
                        std::nullopt, "the fit of a picture into a frame, never enlarged, and the margins"),
                 [](DispatchedPhoto&, std::vector<Variant>& v, std::vector<DispObject>&) {
                     double nw = 0, nh = 0, dx = 0, dy = 0;
                     dbPhoto::GetNewDimensions(v[0].AsDouble(), v[1].AsDouble(), v[2].AsDouble(), v[3].AsDouble(), nw,
                                               nh, &dx, &dy);
                     v[4] = Variant(nw), v[5] = Variant(nh), v[6] = Variant(dx), v[7] = Variant(dy);
                     return DispResult(Variant());
                 }},
                {Method("GetPhotoByEmail",
                        {In("strEmail", T::String), Opt(Ref("iPic", T::Object)),
                         Opt(In("Scaling", T::Boolean), Variant(false)), Opt(Ref("Personal_ID", T::Long))},
                        T::Boolean,
                        "the newest photo of the address's owner (person, else employee); scaled into 93 x 124 "
                        "with Scaling"),
                 [](DispatchedPhoto& p, std::vector<Variant>& v, std::vector<DispObject>& o) {
                     std::shared_ptr<imaging::Picture> pic;
                     std::int32_t id = 0;
                     bool found = p.GetPhotoByEmail(v[0].text(), &pic, v[2].boolean(), &id);
                     v[3] = Long(id);
                     DispResult picture = PictureResult(pic);
                     o[1] = picture.object;
                     return DispResult(Variant(found));
                 }},
                {Property("UnScaledPhoto", T::Object, true, "the current row's photo at full size", "Picture"),
                 nullptr,
                 [](const DispatchedPhoto& p) {
                     return PictureResult(const_cast<DispatchedPhoto&>(p).UnScaledPhoto());
                 }},
                {Method("ReplaceNoPhotoImage", {In("ImageList1", T::Object), Opt(In("key", T::String), Variant("User"))},
                        std::nullopt, "puts the no-photo card in the list's image list under the key"),
                 [](DispatchedPhoto& p, std::vector<Variant>& v, std::vector<DispObject>& o) {
                     ui::ListView* list = ObjectArg<ui::ListView>(o[0]);
                     if (!list) throw Error(424, "Object required: ImageList1", "Zelvolib");
                     if (!list->Icons()) {
                         auto icons = std::make_shared<ui::ImageList>();
                         icons->ImageWidth = 93, icons->ImageHeight = 124;
                         list->SetIcons(icons);
                     }
                     p.ReplaceNoPhotoImage(*list->Icons(), v[1].text());
                     return DispResult(Variant());
                 }},
            });
        return base;
    }();
    return cls;
}

}  // namespace zelvo
