#include "organizations/org_codes.h"

#include "zelvo/enums.h"

namespace zelvo {

std::int32_t GetObjTypeByIcon(const Variant& Icon) {
    if (!Icon.IsText()) return oPersonal_ID;
    const std::string& key = Icon.text();
    if (key == kIconOrg || key == kIconSubDiv) return oOrganization_ID;
    if (key == kIconJobTitle) return oJob_ID;
    if (key == kIconEmployee) return oEmployees_ID;
    return oPersonal_ID;
}

std::int32_t OwnerTypeOfOfficeObject(std::int32_t ObjType) {
    switch (ObjType) {
        case Org:
        case SubDiv: return oOrganization_ID;
        case JobTitle: return oJob_ID;
        case employee: return oEmployees_ID;
        default: return -1;
    }
}

std::string IconOfOfficeObject(std::int32_t ObjType) {
    switch (ObjType) {
        case Org: return kIconOrg;
        case SubDiv: return kIconSubDiv;
        case JobTitle: return kIconJobTitle;
        case employee: return kIconEmployee;
        default: return {};
    }
}

std::string IconOfUnit(std::int32_t ParentID) { return ParentID > 0 ? kIconSubDiv : kIconOrg; }

}  // namespace zelvo
