// The late binding of the public classes, and the dispatch table of
// cAddressbook. Each later member of cAddressbook joins it with one entry in
// Members() (its signature and its call).
#include "zelvo/dispatch.h"

#include <cctype>
#include <cfenv>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <limits>

#include "automation/dispatch_table.h"
#include "platform/core/error.h"
#include "platform/core/number_text.h"
#include "platform/dao/jet/text_util.h"
#include "zelvo/addressbook.h"

namespace zelvo {

namespace {

[[noreturn]] void Raise(int number, const std::string& text) { throw Error(number, text, "Zelvolib"); }

using dao::jet::SameName;

std::string Trim(std::string_view s) {
    size_t b = s.find_first_not_of(" \t\r\n");
    if (b == std::string_view::npos) return {};
    size_t e = s.find_last_not_of(" \t\r\n");
    return std::string(s.substr(b, e - b + 1));
}

std::int64_t ToWhole(const Variant& value, std::int64_t lo, std::int64_t hi) {
    double d = 0;
    switch (value.kind()) {
        case Variant::Kind::Null: Raise(94, "Invalid use of Null");
        case Variant::Kind::Integer: d = static_cast<double>(value.integer()); break;
        case Variant::Kind::Boolean: return value.boolean() ? -1 : 0;
        case Variant::Kind::Double: d = value.real(); break;
        case Variant::Kind::Text: {
            auto n = ParseNumber(value.text());
            if (!n) Raise(13, "Type mismatch");
            d = *n;
            break;
        }
        case Variant::Kind::Bytes: Raise(13, "Type mismatch");
    }
    // Halves go to the even neighbour, as the runtime rounds.
    double r = std::nearbyint(d);
    if (std::fabs(d - std::trunc(d)) == 0.5) r = 2.0 * std::nearbyint(d / 2.0);
    if (r < static_cast<double>(lo) || r > static_cast<double>(hi)) Raise(6, "Overflow");
    return static_cast<std::int64_t>(r);
}

// ---- the members

using Entry = DispEntry<cAddressbook>;

template <class T>
T* Obj(const DispObject& o) {
    return ObjectArg<T>(o);
}

Variant ZeroOf(DispType type) {
    switch (type) {
        case DispType::Long:
        case DispType::Integer: return Variant(std::int64_t{0});
        case DispType::Boolean: return Variant(false);
        case DispType::String: return Variant(std::string());
        default: return Variant();
    }
}

Variant Long(std::int32_t v) { return Variant(std::int64_t{v}); }
std::int32_t Long(const Variant& v) { return static_cast<std::int32_t>(v.integer()); }

DispParam Ref(std::string name, DispType type) { return {std::move(name), type, true, false, std::nullopt}; }
DispParam Val(std::string name, DispType type) { return {std::move(name), type, false, false, std::nullopt}; }
DispParam Opt(DispParam p, std::optional<Variant> def = std::nullopt) {
    p.optional = true;
    p.defaultValue = std::move(def);
    return p;
}

const std::vector<Entry>& Members() {
    using T = DispType;
    static const std::vector<Entry> members = {
        {{"CorrectDB", DispKind::Method, {Ref("Path", T::String)}, std::nullopt, false,
          "brings the book at Path (\"\" for the book of AppPath) to today's layout, creating it when missing"},
         [](cAddressbook& b, std::vector<Variant>& v, std::vector<DispObject>&) {
             std::string path = v[0].text();
             b.CorrectDB(path);
             v[0] = Variant(path);
             return Variant();
         }},
        {{"Navigate", DispKind::Method,
          {Ref("Listview1", T::Object), Ref("DataPersonal", T::Object), Opt(Ref("DataEmail", T::Object)),
           Opt(Ref("Icon", T::Variant), Variant("User"))},
          std::nullopt, false, "fills the host's list with the persons (and office objects) of the current view"},
         [](cAddressbook& b, std::vector<Variant>& v, std::vector<DispObject>& o) {
             b.Navigate(Obj<ui::ListView>(o[0]), Obj<ui::DataControl>(o[1]), Obj<ui::DataControl>(o[2]), v[3]);
             return Variant();
         }},
        {{"GetDatabasename", DispKind::Method, {}, T::String, false, "the path of the book for AppPath"},
         [](cAddressbook& b, std::vector<Variant>&, std::vector<DispObject>&) {
             return Variant(b.GetDatabasename());
         }},
        {{"CompressDB", DispKind::Method, {}, std::nullopt, false, "compacts the book in place, keeping a backup"},
         [](cAddressbook& b, std::vector<Variant>&, std::vector<DispObject>&) {
             b.CompressDB();
             return Variant();
         }},
        // Persons in and out.
        {{"AddPersonbyStrMail", DispKind::Method,
          {Ref("strMail", T::String), Opt(Ref("DataPersonalFull", T::Object)), Opt(Ref("DataProjects", T::Object)),
           Opt(Ref("DataEmail", T::Object))},
          std::nullopt, false,
          "a new person from one address string (\"Name <addr>\"), filed in rProject; then the person's card"},
         [](cAddressbook& b, std::vector<Variant>& v, std::vector<DispObject>& o) {
             std::string mail = v[0].text();
             b.AddPersonbyStrMail(mail, Obj<ui::DataControl>(o[1]), Obj<ui::DataControl>(o[2]),
                                  Obj<ui::DataControl>(o[3]));
             v[0] = Variant(mail);
             return Variant();
         }},
        {{"AddNewPerson", DispKind::Method, {}, std::nullopt, false,
          "an empty person, filed in rProject; then the person's card"},
         [](cAddressbook& b, std::vector<Variant>&, std::vector<DispObject>&) {
             b.AddNewPerson();
             return Variant();
         }},
        {{"DeletePerson", DispKind::Method,
          {Val("Personal_ID", T::Long), Opt(Ref("DataPersonal", T::Object)), Opt(Ref("DataEmail", T::Object)),
           Opt(Ref("DataProjects", T::Object))},
          std::nullopt, false,
          "deletes the person with its resources, project rows and photos; its jobs become vacancies"},
         [](cAddressbook& b, std::vector<Variant>& v, std::vector<DispObject>& o) {
             b.DeletePerson(Long(v[0]), Obj<ui::DataControl>(o[1]), Obj<ui::DataControl>(o[2]),
                            Obj<ui::DataControl>(o[3]));
             return Variant();
         }},
        // Project membership.
        {{"MovePerson", DispKind::Method,
          {Val("Personal_ID", T::Long), Ref("rProjectTo", T::String), Ref("DataProjects", T::Object)}, std::nullopt,
          false, "moves the person's row in rProject to the project rProjectTo"},
         [](cAddressbook& b, std::vector<Variant>& v, std::vector<DispObject>& o) {
             std::string to = v[1].text();
             b.MovePerson(Long(v[0]), to, Obj<ui::DataControl>(o[2]));
             v[1] = Variant(to);
             return Variant();
         }},
        {{"MoveABObject", DispKind::Method,
          {Val("Object_ID", T::Long), Ref("ObjectType", T::Long), Ref("rProjectTo", T::String),
           Ref("DataProjects", T::Object)},
          std::nullopt, false, "moves the object's row in rProject to the project rProjectTo"},
         [](cAddressbook& b, std::vector<Variant>& v, std::vector<DispObject>& o) {
             std::int32_t type = Long(v[1]);
             std::string to = v[2].text();
             b.MoveABObject(Long(v[0]), type, to, Obj<ui::DataControl>(o[3]));
             v[1] = Long(type);
             v[2] = Variant(to);
             return Variant();
         }},
        {{"MoveABObject2", DispKind::Method,
          {Val("Object_ID", T::Long), Ref("ObjectType", T::Long), Ref("rProjectFrom", T::String),
           Ref("InsArcPrjFrom", T::Boolean), Ref("rProjectTo", T::String), Ref("InsArcPrjTo", T::Boolean),
           Ref("DataProjects", T::Object)},
          std::nullopt, false, "moves the object's row from a project and side to another (\"\" from: adds one)"},
         [](cAddressbook& b, std::vector<Variant>& v, std::vector<DispObject>& o) {
             std::int32_t type = Long(v[1]);
             std::string from = v[2].text(), to = v[4].text();
             bool fromArc = v[3].boolean(), toArc = v[5].boolean();
             b.MoveABObject2(Long(v[0]), type, from, fromArc, to, toArc, Obj<ui::DataControl>(o[6]));
             v[1] = Long(type);
             v[2] = Variant(from);
             v[3] = Variant(fromArc);
             v[4] = Variant(to);
             v[5] = Variant(toArc);
             return Variant();
         }},
        {{"DeleteObjfromPrj", DispKind::Method,
          {Ref("DataProjects", T::Object), Ref("rProject", T::String), Ref("InsArcPrj", T::Boolean),
           Val("Object_ID", T::Long), Val("ObjectType", T::Long)},
          T::Boolean, false, "takes the object's row of rProject away; True when one went"},
         [](cAddressbook& b, std::vector<Variant>& v, std::vector<DispObject>& o) {
             std::string project = v[1].text();
             bool arc = v[2].boolean();
             bool done = b.DeleteObjfromPrj(Obj<ui::DataControl>(o[0]), project, arc, Long(v[3]), Long(v[4]));
             v[1] = Variant(project);
             v[2] = Variant(arc);
             return Variant(done);
         }},
        {{"PrjArcPrjSingleProject", DispKind::Method,
          {Val("Object_ID", T::Long), Val("ObjectType", T::Long), Ref("DataProjects", T::Object),
           Ref("rProject", T::String), Ref("InsArcPrj", T::Boolean)},
          std::nullopt, false, "sends the object's row of rProject to the other side"},
         [](cAddressbook& b, std::vector<Variant>& v, std::vector<DispObject>& o) {
             std::string project = v[3].text();
             bool arc = v[4].boolean();
             b.PrjArcPrjSingleProject(Long(v[0]), Long(v[1]), Obj<ui::DataControl>(o[2]), project, arc);
             v[3] = Variant(project);
             v[4] = Variant(arc);
             return Variant();
         }},
        {{"PrjArcPrj", DispKind::Method,
          {Val("Personal_ID", T::Long), Ref("DataPersonal", T::Object), Ref("DataProjects", T::Object),
           Ref("InsArcPrj", T::Boolean)},
          std::nullopt, false, "sends every row of the person to the side opposite InsArcPrj"},
         [](cAddressbook& b, std::vector<Variant>& v, std::vector<DispObject>& o) {
             bool arc = v[3].boolean();
             b.PrjArcPrj(Long(v[0]), Obj<ui::DataControl>(o[1]), Obj<ui::DataControl>(o[2]), arc);
             v[3] = Variant(arc);
             return Variant();
         }},
        {{"PrjArcPrj2", DispKind::Method,
          {Val("Object_ID", T::Long), Val("ObjectType", T::Long), Ref("DataPersonal", T::Object),
           Ref("DataProjects", T::Object), Ref("InsArcPrj", T::Boolean)},
          std::nullopt, false, "sends every row of the object to the side opposite InsArcPrj"},
         [](cAddressbook& b, std::vector<Variant>& v, std::vector<DispObject>& o) {
             bool arc = v[4].boolean();
             b.PrjArcPrj2(Long(v[0]), Long(v[1]), Obj<ui::DataControl>(o[2]), Obj<ui::DataControl>(o[3]), arc);
             v[4] = Variant(arc);
             return Variant();
         }},
        // Folder events of the host.
        {{"FolderMoved", DispKind::Method,
          {Ref("DataProjects", T::Object), Ref("fromPrj", T::String), Ref("fromInsArcPrj", T::Boolean),
           Ref("toPrj", T::String), Ref("toInsArcPrj", T::Boolean)},
          std::nullopt, false, "the host moved a project folder: its rows and those below follow"},
         [](cAddressbook& b, std::vector<Variant>& v, std::vector<DispObject>& o) {
             std::string from = v[1].text(), to = v[3].text();
             bool fromArc = v[2].boolean(), toArc = v[4].boolean();
             b.FolderMoved(Obj<ui::DataControl>(o[0]), from, fromArc, to, toArc);
             v[1] = Variant(from);
             v[2] = Variant(fromArc);
             v[3] = Variant(to);
             v[4] = Variant(toArc);
             return Variant();
         }},
        {{"rProjectMoved", DispKind::Method,
          {Val("fromPrj", T::String), Val("fromInsArcPrj", T::Boolean), Val("toPrj", T::String),
           Val("toInsArcPrj", T::Boolean)},
          std::nullopt, false, "moves the rows of a project and its subprojects to another path and side"},
         [](cAddressbook& b, std::vector<Variant>& v, std::vector<DispObject>&) {
             b.rProjectMoved(v[0].text(), v[1].boolean(), v[2].text(), v[3].boolean());
             return Variant();
         }},
        {{"FolderDeleted", DispKind::Method,
          {Ref("DataProjects", T::Object), Ref("DataPersProjects", T::Object), Ref("DataPersonalFull", T::Object),
           Opt(Val("Shift", T::Integer))},
          std::nullopt, false, "the host deleted a project folder: nothing happens (see FolderDeleted2)"},
         [](cAddressbook& b, std::vector<Variant>& v, std::vector<DispObject>& o) {
             b.FolderDeleted(Obj<ui::DataControl>(o[0]), Obj<ui::DataControl>(o[1]), Obj<ui::DataControl>(o[2]),
                             static_cast<std::int16_t>(v[3].integer()));
             return Variant();
         }},
        {{"FolderDeleted2", DispKind::Method,
          {Ref("DataProjects", T::Object), Ref("DataPersProjects", T::Object), Ref("DataPersonalFull", T::Object),
           Ref("DataEmail", T::Object), Ref("rProject", T::String), Opt(Val("Shift", T::Integer))},
          std::nullopt, false, "the host deleted a project folder: with Shift, its rows on side InsArcPrj go"},
         [](cAddressbook& b, std::vector<Variant>& v, std::vector<DispObject>& o) {
             std::string project = v[4].text();
             b.FolderDeleted2(Obj<ui::DataControl>(o[0]), Obj<ui::DataControl>(o[1]), Obj<ui::DataControl>(o[2]),
                              Obj<ui::DataControl>(o[3]), project, static_cast<std::int16_t>(v[5].integer()));
             v[4] = Variant(project);
             return Variant();
         }},
        {{"rProjectDeleted", DispKind::Method,
          {Val("rProject", T::String), Val("InsArcPrj", T::Boolean), Val("Shift", T::Integer)}, std::nullopt, false,
          "with Shift other than 0, deletes the rows of a project and its subprojects"},
         [](cAddressbook& b, std::vector<Variant>& v, std::vector<DispObject>&) {
             b.rProjectDeleted(v[0].text(), v[1].boolean(), static_cast<std::int16_t>(v[2].integer()));
             return Variant();
         }},
        {{"FolderCopy", DispKind::Method,
          {Ref("DataProjectsSrc", T::Object), Ref("DataProjects", T::Object), Ref("rProjectFrom", T::String),
           Ref("rProjectTo", T::String), Opt(Ref("InsArcPrjFrom", T::Boolean)), Opt(Ref("InsArcPrjTo", T::Boolean))},
          std::nullopt, false, "the host copied a project folder: the copy gets the rows, none twice"},
         [](cAddressbook& b, std::vector<Variant>& v, std::vector<DispObject>& o) {
             std::string from = v[2].text(), to = v[3].text();
             bool fromArc = v[4].boolean(), toArc = v[5].boolean();
             b.FolderCopy(Obj<ui::DataControl>(o[0]), Obj<ui::DataControl>(o[1]), from, to, fromArc, toArc);
             v[2] = Variant(from);
             v[3] = Variant(to);
             v[4] = Variant(fromArc);
             v[5] = Variant(toArc);
             return Variant();
         }},
        {{"rProjectCopied", DispKind::Method,
          {Val("rProjectFrom", T::String), Val("rProjectTo", T::String), Opt(Val("InsArcPrjFrom", T::Boolean)),
           Opt(Val("InsArcPrjTo", T::Boolean))},
          std::nullopt, false, "adds rows for a copy of a project and its subprojects, none twice"},
         [](cAddressbook& b, std::vector<Variant>& v, std::vector<DispObject>&) {
             b.rProjectCopied(v[0].text(), v[1].text(), v[2].boolean(), v[3].boolean());
             return Variant();
         }},
        {{"ResourceExists", DispKind::Method,
          {DispParam{"Owner_ID", T::Long}, DispParam{"OwnerType", T::Long}, DispParam{"resType", T::Long}}, T::Boolean, false,
          "whether the owner has a resource of the kind (0 phone, 1 page, 2 e-mail, 4 ICQ)"},
         [](cAddressbook& b, std::vector<Variant>& v, std::vector<DispObject>&) {
             return Variant(b.ResourceExists(Long(v[0]), Long(v[1]), Long(v[2])));
         }},
        {{"ShowAddressBook", DispKind::Method, {}, std::nullopt, false,
          "opens the address book window and waits until it is closed"},
         [](cAddressbook& b, std::vector<Variant>&, std::vector<DispObject>&) {
             b.ShowAddressBook();
             return Variant();
         }},
        {{"ShowPersProp", DispKind::Method, {Val("Personal_ID", T::Long)}, std::nullopt, false,
          "opens the person's card in rProject and waits until it is closed"},
         [](cAddressbook& b, std::vector<Variant>& v, std::vector<DispObject>&) {
             b.ShowPersProp(Long(v[0]));
             return Variant();
         }},
        {{"SpaceNavigate", DispKind::Method,
          {{"SpaceID", T::Long, false, false, std::nullopt},
           Opt({"spaceItemNumber", T::Long, false, false, std::nullopt}, Variant(std::int64_t{0}))},
          std::nullopt, false, "opens a window in a space of the shell: 3 the address book window"},
         [](cAddressbook& b, std::vector<Variant>& v, std::vector<DispObject>&) {
             b.SpaceNavigate(Long(v[0]), Long(v[1]));
             return Variant();
         }},
        {{"AddNewOfficeObject", DispKind::Method,
          {Ref("DataOrg", T::Object), Opt(Val("ObjType", T::Long), Variant(std::int64_t{Org})),
           Opt(Ref("Parent_ID", T::Long)), Opt(Ref("Icon", T::String)), Opt(Ref("Organization_ID", T::Long)),
           Ref("DataProjects", T::Object), Opt(Ref("rProject", T::String)), Opt(Ref("InsArcPrj", T::Boolean))},
          T::String, false, "makes an organization (0) or subdivision (1) of Parent_ID, asking its name"},
         [](cAddressbook& b, std::vector<Variant>& v, std::vector<DispObject>& o) {
             std::int32_t parent = Long(v[2]);
             std::string icon = v[3].text();
             std::int32_t id = Long(v[4]);
             std::string project = v[6].text();
             bool arc = v[7].boolean();
             std::string name = b.AddNewOfficeObject(Obj<ui::DataControl>(o[0]), Long(v[1]), parent, icon, id,
                                                     Obj<ui::DataControl>(o[5]), project, arc);
             v[2] = Long(parent);
             v[3] = Variant(icon);
             v[4] = Long(id);
             v[6] = Variant(project);
             v[7] = Variant(arc);
             return Variant(name);
         }},
        // Properties.
        {{"rProject", DispKind::Property, {}, T::String, false, "the current project's path"}, nullptr,
         [](const cAddressbook& b) { return Variant(b.rProject); },
         [](cAddressbook& b, const Variant& v) { b.rProject = v.text(); }},
        {{"InsArcPrj", DispKind::Property, {}, T::Boolean, false, "rProject lies in the archive"}, nullptr,
         [](const cAddressbook& b) { return Variant(b.InsArcPrj); },
         [](cAddressbook& b, const Variant& v) { b.InsArcPrj = v.boolean(); }},
        {{"Flags", DispKind::Property, {}, T::Long, false, "AddrFiltr: which persons Navigate lists"}, nullptr,
         [](const cAddressbook& b) { return Long(b.Flags); },
         [](cAddressbook& b, const Variant& v) { b.Flags = Long(v); }},
        {{"Flags2", DispKind::Property, {}, T::Long, false, "Filtr2: which kinds of object Navigate lists"}, nullptr,
         [](const cAddressbook& b) { return Long(b.Flags2); },
         [](cAddressbook& b, const Variant& v) { b.Flags2 = Long(v); }},
        {{"AppPath", DispKind::Property, {}, T::String, false, "the folder of the book"}, nullptr,
         [](const cAddressbook& b) { return Variant(b.AppPath); },
         [](cAddressbook& b, const Variant& v) { b.AppPath = v.text(); }},
        {{"tagOffset", DispKind::Property, {}, T::Long, false, "sub-items ahead of the office objects' columns"},
         nullptr, [](const cAddressbook& b) { return Long(b.tagOffset); },
         [](cAddressbook& b, const Variant& v) { b.tagOffset = Long(v); }},
    };
    return members;
}

// The member of `cls` named `name`; 438 when there is none, or when a
// property is asked for and it is a method.
const DispMember& MemberOf(const DispClass& cls, std::string_view name, bool property) {
    const DispMember* m = cls.FindMember(name);
    if (!m || (property && m->kind != DispKind::Property))
        Raise(438, "Object doesn't support this property or method");
    return *m;
}

// The type library's name, which a class name may carry before a dot.
constexpr std::string_view kLibraryPrefix = "Zelvolib.";

}  // namespace

// Member and argument names compare as the engine compares table and field
// names: one comparer for every name the library takes from a person.
bool SameDispName(std::string_view a, std::string_view b) { return SameName(a, b); }

const char* DispTypeName(DispType type) {
    switch (type) {
        case DispType::Long: return "Long";
        case DispType::Integer: return "Integer";
        case DispType::Boolean: return "Boolean";
        case DispType::String: return "String";
        case DispType::Variant: return "Variant";
        case DispType::Object: return "Object";
    }
    return "?";
}

Variant CoerceTo(const Variant& value, DispType type) {
    switch (type) {
        case DispType::Long:
            return Variant(ToWhole(value, std::numeric_limits<std::int32_t>::min(),
                                   std::numeric_limits<std::int32_t>::max()));
        case DispType::Integer:
            return Variant(ToWhole(value, std::numeric_limits<std::int16_t>::min(),
                                   std::numeric_limits<std::int16_t>::max()));
        case DispType::Boolean:
            switch (value.kind()) {
                case Variant::Kind::Null: Raise(94, "Invalid use of Null");
                case Variant::Kind::Boolean: return value;
                case Variant::Kind::Integer: return Variant(value.integer() != 0);
                case Variant::Kind::Double: return Variant(value.real() != 0);
                case Variant::Kind::Text: {
                    std::string t = Trim(value.text());
                    if (SameName(t, "True")) return Variant(true);
                    if (SameName(t, "False")) return Variant(false);
                    if (auto n = ParseNumber(t)) return Variant(*n != 0);
                    Raise(13, "Type mismatch");
                }
                case Variant::Kind::Bytes: Raise(13, "Type mismatch");
            }
            break;
        case DispType::String:
            if (value.IsNull()) Raise(94, "Invalid use of Null");
            return Variant(value.AsText());
        case DispType::Variant: return value;
        case DispType::Object: Raise(424, "Object required");
    }
    Raise(13, "Type mismatch");
}

DispClass::DispClass(std::string name, std::vector<DispMember> members, std::vector<Binding> bindings,
                     Factory factory)
    : name_(std::move(name)), members_(std::move(members)), bindings_(std::move(bindings)),
      factory_(std::move(factory)) {}

const DispMember* DispClass::FindMember(std::string_view name) const {
    for (const DispMember& m : members_)
        if (SameName(m.name, name)) return &m;
    return nullptr;
}

std::shared_ptr<DispatchObject> DispClass::Create() const {
    if (!factory_) Raise(429, "ActiveX component can't create object");
    return factory_(*this);
}

const DispClass::Binding& DispClass::BindingOf(const DispMember& member) const {
    return bindings_[static_cast<size_t>(&member - members_.data())];
}

DispResult DispatchObject::Invoke(std::string_view name, std::vector<DispArg>& args) {
    const DispClass& cls = Class();
    const DispMember& member = MemberOf(cls, name, false);
    if (member.kind == DispKind::Property) {
        if (args.empty()) return GetProperty(name);
        if (args.size() == 1 && args[0].value) {
            SetProperty(name, *args[0].value);
            return Variant();
        }
        Raise(450, "Wrong number of arguments or invalid property assignment");
    }
    const auto& params = member.params;
    if (args.size() > params.size()) Raise(450, "Wrong number of arguments or invalid property assignment");

    std::vector<Variant> values(params.size());
    std::vector<DispObject> objects(params.size());
    for (size_t i = 0; i < params.size(); ++i) {
        const DispParam& p = params[i];
        const DispArg* a = i < args.size() ? &args[i] : nullptr;
        bool given = a && (a->value || a->HasObject());
        if (!given) {
            if (!p.optional) Raise(449, "Argument not optional: " + p.name);
            values[i] = p.defaultValue ? *p.defaultValue : ZeroOf(p.type);
            continue;
        }
        if (p.type == DispType::Object) {
            if (!a->HasObject()) Raise(424, "Object required: " + p.name);
            objects[i] = a->object;
        } else {
            if (!a->value) Raise(13, "Type mismatch: " + p.name);
            values[i] = CoerceTo(*a->value, p.type);
        }
    }

    DispResult result = cls.BindingOf(member).call(*this, values, objects);

    for (size_t i = 0; i < params.size() && i < args.size(); ++i) {
        if (params[i].byRef && params[i].type != DispType::Object && args[i].value) args[i].value = values[i];
        // An object given back through a by-reference parameter (a picture
        // a lookup found) reaches the caller's slot as a value would.
        if (params[i].byRef && params[i].type == DispType::Object &&
            std::holds_alternative<std::shared_ptr<DispatchObject>>(objects[i]))
            args[i].object = objects[i];
    }
    return result;
}

DispResult DispatchObject::GetProperty(std::string_view name) const {
    const DispClass& cls = Class();
    return cls.BindingOf(MemberOf(cls, name, true)).get(*this);
}

void DispatchObject::SetProperty(std::string_view name, const Variant& value) {
    const DispClass& cls = Class();
    const DispMember& member = MemberOf(cls, name, true);
    const DispClass::Binding& binding = cls.BindingOf(member);
    if (member.readOnly || !binding.set) Raise(383, "Property is read-only");
    binding.set(*this, CoerceTo(value, *member.result));
}

const DispClass* FindPublicClass(std::string_view name) {
    if (name.size() > kLibraryPrefix.size() && SameName(name.substr(0, kLibraryPrefix.size()), kLibraryPrefix))
        name.remove_prefix(kLibraryPrefix.size());
    for (const DispClass* cls : PublicClasses())
        if (SameName(cls->Name(), name)) return cls;
    return nullptr;
}

std::shared_ptr<DispatchObject> CreateObject(std::string_view className) {
    const DispClass* cls = FindPublicClass(className);
    if (!cls) Raise(429, "ActiveX component can't create object");
    return cls->Create();
}

const DispClass& cAddressbookClass() {
    static const DispClass cls = MakeDispClass<cAddressbook>("cAddressbook", Members());
    return cls;
}

std::span<const DispMember> cAddressbookMembers() { return cAddressbookClass().Members(); }

const DispMember* FindcAddressbookMember(std::string_view name) { return cAddressbookClass().FindMember(name); }

Variant Invoke(cAddressbook& book, std::string_view name, std::vector<DispArg>& args) {
    DispatchHandle<cAddressbook> handle(cAddressbookClass(), book);
    return handle.Invoke(name, args).ValueOrNull();
}

Variant GetProperty(const cAddressbook& book, std::string_view name) {
    DispatchHandle<cAddressbook> handle(cAddressbookClass(), const_cast<cAddressbook&>(book));
    return handle.GetProperty(name).ValueOrNull();
}

void SetProperty(cAddressbook& book, std::string_view name, const Variant& value) {
    DispatchHandle<cAddressbook> handle(cAddressbookClass(), book);
    handle.SetProperty(name, value);
}

}  // namespace zelvo
