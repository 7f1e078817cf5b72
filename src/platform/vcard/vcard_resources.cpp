#include "platform/vcard/vcard_resources.h"

#include "platform/vcard/vcard_index.h"

namespace zelvo::vcard {

long VCardPhones::PhoneKind(long i) const {
    return items_[CheckedIndex(i, items_.size(), "VCardPhones.PhoneKind")].kind;
}
const std::string& VCardPhones::Number(long i) const {
    return items_[CheckedIndex(i, items_.size(), "VCardPhones.Number")].number;
}
long VCardPhones::PhoneType(long i) const {
    return items_[CheckedIndex(i, items_.size(), "VCardPhones.PhoneType")].type;
}
void VCardPhones::Add(long i, std::string text, long kind, long type) {
    CheckAddPosition(i, "VCardPhones.Add");
    items_.push_back({std::move(text), kind, type});
}

const std::string& VCardEmails::Item(long i) const {
    return items_[CheckedIndex(i, items_.size(), "VCardEmails.Item")].address;
}
long VCardEmails::EmailKind(long i) const {
    return items_[CheckedIndex(i, items_.size(), "VCardEmails.EmailKind")].kind;
}
bool VCardEmails::Preferred(long i) const {
    return items_[CheckedIndex(i, items_.size(), "VCardEmails.Preferred")].preferred;
}
void VCardEmails::Add(long i, std::string text, long kind, long preferred) {
    CheckAddPosition(i, "VCardEmails.Add");
    items_.push_back({std::move(text), kind, preferred != 0});
}

long VCardUrls::UrlKind(long i) const {
    return items_[CheckedIndex(i, items_.size(), "VCardUrls.UrlKind")].kind;
}
const std::string& VCardUrls::Url(long i) const {
    return items_[CheckedIndex(i, items_.size(), "VCardUrls.Url")].url;
}
void VCardUrls::Add(long i, std::string text, long kind) {
    CheckAddPosition(i, "VCardUrls.Add");
    items_.push_back({std::move(text), kind});
}

}  // namespace zelvo::vcard
