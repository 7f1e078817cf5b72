#include "platform/vcard/vcard_writer.h"

#include "platform/vcard/vcard_ascii.h"
#include "platform/vcard/vcard_codec.h"

namespace zelvo::vcard {

namespace {

constexpr std::size_t kFoldOctets = 75;

// Appends one content line, folded: the first line holds up to 75 octets,
// each continuation a blank and up to 74 more. A cut never falls inside a
// UTF-8 sequence.
void AppendFolded(std::string_view line, std::string& out) {
    std::size_t limit = kFoldOctets;
    while (line.size() > limit) {
        std::size_t cut = limit;
        while (cut > 0 && (static_cast<unsigned char>(line[cut]) & 0xC0) == 0x80) --cut;
        out.append(line.substr(0, cut));
        out += "\r\n ";
        line.remove_prefix(cut);
        limit = kFoldOctets - 1;
    }
    out.append(line);
    out += "\r\n";
}

class LineBuilder {
public:
    explicit LineBuilder(std::string& out) : out_(out) {}
    LineBuilder& Start(std::string_view nameAndParams) {
        line_.assign(nameAndParams);
        line_.push_back(':');
        return *this;
    }
    LineBuilder& Text(std::string_view text) {
        AppendEscaped(text, line_);
        return *this;
    }
    LineBuilder& Raw(std::string_view text) {
        line_.append(text);
        return *this;
    }
    LineBuilder& Sep() {
        line_.push_back(';');
        return *this;
    }
    void End() { AppendFolded(line_, out_); }

private:
    std::string& out_;
    std::string line_;
};

const char* KindWord(long kind) { return kind == kKindWork ? "WORK" : "HOME"; }

const char* PhoneWord(long type) {
    switch (type) {
        case kPhoneFax: return "FAX";
        case kPhoneCell: return "CELL";
        case kPhonePager: return "PAGER";
        default: return "VOICE";
    }
}

// The TYPE word for an image: the content's own, else what the bytes are.
std::string PhotoType(const VCardPhoto& photo) {
    std::string t = NormalizeImageType(photo.ImageType());
    return t.empty() ? SniffImageType(photo.Data()) : t;
}

}  // namespace

std::string WriteVCard(const VCardContent& c) {
    std::string out;
    out.reserve(512 + c.Photo.Data().size() * 4 / 3 * 77 / 75);
    LineBuilder b(out);
    out += "BEGIN:VCARD\r\nVERSION:3.0\r\n";
    b.Start("N").Text(c.FirstName).Sep().Text(c.MiddleName).Sep().Text(c.SurName).Sep().Sep().End();
    b.Start("FN").Text(c.FullName).End();
    if (c.Organization.Count() > 0) {
        b.Start("ORG");
        for (long i = 1; i <= c.Organization.Count(); ++i) {
            if (i > 1) b.Sep();
            b.Text(c.Organization.Item(i));
        }
        b.End();
    }
    if (!c.Title.empty()) b.Start("TITLE").Text(c.Title).End();

    std::string params;
    for (const auto& phone : c.Phones.items()) {
        if (phone.number.empty()) continue;
        params = "TEL;TYPE=";
        params += KindWord(phone.kind);
        params += ',';
        params += PhoneWord(phone.type);
        b.Start(params).Text(phone.number).End();
    }
    for (const auto& email : c.Emails.items()) {
        if (email.address.empty()) continue;
        params = "EMAIL;TYPE=INTERNET,";
        params += KindWord(email.kind);
        if (email.preferred) params += ",PREF";
        b.Start(params).Text(email.address).End();
    }
    for (const auto& url : c.Urls.items()) {
        if (url.url.empty()) continue;
        params = "URL;TYPE=";
        params += KindWord(url.kind);
        // A URL is not text: its commas and semicolons stay as they are.
        // Line breaks cannot be part of one and would end the line. A
        // backslash is doubled, since readers (ours too) take "\:" in a URL
        // for ":" — some writers escape every colon of a URL.
        std::string clean;
        for (char ch : url.url) {
            if (ch == '\\') clean += "\\\\";
            else if (ch != '\r' && ch != '\n') clean.push_back(ch);
        }
        b.Start(params).Raw(clean).End();
    }
    for (const auto& entry : c.Addresses.items()) {
        const auto& r = entry.record;
        params = "ADR;TYPE=";
        params += KindWord(r.Kind);
        if (entry.preferred) params += ",PREF";
        b.Start(params)
            .Text(r.PostOfficeBox).Sep().Text(r.Extended).Sep().Text(r.Street).Sep()
            .Text(r.City).Sep().Text(r.Region).Sep().Text(r.PostIndex).Sep().Text(r.Country)
            .End();
    }
    if (!c.Photo.Data().empty()) {
        params = "PHOTO;ENCODING=b";
        std::string type = PhotoType(c.Photo);
        if (!type.empty()) params += ";TYPE=" + type;
        std::string data;
        EncodeBase64(c.Photo.Data(), data);
        b.Start(params).Raw(data).End();
    }
    out += "END:VCARD\r\n";
    return out;
}

}  // namespace zelvo::vcard
