// The card's phones, e-mail addresses and web pages.
//
// Three small lists with the same rules:
//  * positions run from 1; a position outside 1..Count throws zelvo::Error 9;
//  * kind 2 is work, kind 1 is home (any other value is kept as given);
//  * `Add(i, …)` never overwrites: the export fills each batch of resources
//    from position 1 again (home e-mails, then the job's, then the
//    employee's), so an item given a position that is already taken — or
//    one past a gap — goes to the end of the list. Nothing is lost and the
//    order of the calls is the order on the card.
#pragma once

#include <string>
#include <vector>

namespace zelvo::vcard {

// Resource kinds as the book counts them.
constexpr long kKindHome = 1;
constexpr long kKindWork = 2;

// What a phone line is for; written as the TYPE of TEL.
enum PhoneType : long {
    kPhoneVoice = 1,  // the export's value
    kPhoneFax = 2,
    kPhoneCell = 3,
    kPhonePager = 4,
};

struct VCardPhone {
    std::string number;
    long kind = kKindHome;
    long type = kPhoneVoice;
    friend bool operator==(const VCardPhone&, const VCardPhone&) = default;
};

class VCardPhones {
public:
    long Count() const { return static_cast<long>(items_.size()); }
    long PhoneKind(long i) const;
    const std::string& Number(long i) const;
    long PhoneType(long i) const;
    // Adds a number. `type` is a PhoneType (the export passes 1, voice).
    void Add(long i, std::string text, long kind, long type);

    const std::vector<VCardPhone>& items() const { return items_; }
    friend bool operator==(const VCardPhones&, const VCardPhones&) = default;

private:
    std::vector<VCardPhone> items_;
};

struct VCardEmail {
    std::string address;
    long kind = kKindHome;
    bool preferred = false;
    friend bool operator==(const VCardEmail&, const VCardEmail&) = default;
};

class VCardEmails {
public:
    long Count() const { return static_cast<long>(items_.size()); }
    const std::string& Item(long i) const;
    long EmailKind(long i) const;
    bool Preferred(long i) const;
    // Adds an address. The export passes kind 1 and preferred 0.
    void Add(long i, std::string text, long kind, long preferred);

    const std::vector<VCardEmail>& items() const { return items_; }
    friend bool operator==(const VCardEmails&, const VCardEmails&) = default;

private:
    std::vector<VCardEmail> items_;
};

struct VCardUrl {
    std::string url;
    long kind = kKindHome;
    friend bool operator==(const VCardUrl&, const VCardUrl&) = default;
};

class VCardUrls {
public:
    long Count() const { return static_cast<long>(items_.size()); }
    long UrlKind(long i) const;
    const std::string& Url(long i) const;
    void Add(long i, std::string text, long kind);

    const std::vector<VCardUrl>& items() const { return items_; }
    friend bool operator==(const VCardUrls&, const VCardUrls&) = default;

private:
    std::vector<VCardUrl> items_;
};

}  // namespace zelvo::vcard
