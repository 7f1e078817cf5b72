// zelvo vcard show FILE… [--json]: every card of each file as the vCard
// component reads it, so that a person can see what an import will take.
//
// Problems go to stderr as "FILE:LINE: card N: reason". A file that is no
// vCard or a card that cannot be read makes the exit status 1; the other
// files and cards are still shown.
#include <cstdio>
#include <iostream>
#include <string>
#include <vector>

#include "command.h"
#include "json_writer.h"
#include "platform/vcard/vcard_document.h"

namespace zelvo::cli {

namespace {

using vcard::Diagnostic;
using vcard::Severity;
using vcard::VCardContent;

const char* KindName(long kind) { return kind == vcard::kKindWork ? "work" : "home"; }

const char* PhoneTypeName(long type) {
    switch (type) {
        case vcard::kPhoneFax: return "fax";
        case vcard::kPhoneCell: return "cell";
        case vcard::kPhonePager: return "pager";
        default: return "voice";
    }
}

// Line breaks inside a value would break the layout of the text listing.
std::string OneLine(const std::string& s) {
    std::string out;
    for (char c : s) {
        if (c == '\n') out += "\\n";
        else if (c == '\r') continue;
        else out.push_back(c);
    }
    return out;
}

void PrintText(const VCardContent& c, int number, long line) {
    std::cout << "card " << number << " (line " << line << ")\n";
    auto field = [](const char* label, const std::string& v) {
        if (!v.empty()) std::cout << "  " << label << ": " << OneLine(v) << "\n";
    };
    field("FullName", c.FullName);
    field("FirstName (family name)", c.FirstName);
    field("MiddleName (given name)", c.MiddleName);
    field("SurName (additional names)", c.SurName);
    field("Title", c.Title);
    for (long i = 1; i <= c.Organization.Count(); ++i) {
        std::cout << "  Organization " << i << ": " << OneLine(c.Organization.Item(i)) << "\n";
    }
    for (long i = 1; i <= c.Phones.Count(); ++i) {
        std::cout << "  Phone " << i << " (" << KindName(c.Phones.PhoneKind(i)) << ", "
                  << PhoneTypeName(c.Phones.PhoneType(i)) << "): " << OneLine(c.Phones.Number(i)) << "\n";
    }
    for (long i = 1; i <= c.Emails.Count(); ++i) {
        std::cout << "  Email " << i << " (" << KindName(c.Emails.EmailKind(i)) << "): "
                  << OneLine(c.Emails.Item(i)) << "\n";
    }
    for (long i = 1; i <= c.Urls.Count(); ++i) {
        std::cout << "  Url " << i << " (" << KindName(c.Urls.UrlKind(i)) << "): " << OneLine(c.Urls.Url(i))
                  << "\n";
    }
    for (long i = 1; i <= c.Addresses.Count(); ++i) {
        std::cout << "  Address " << i << " (" << KindName(c.Addresses.AddressKind(i)) << ")\n";
        field("    Extended", c.Addresses.Extended(i));
        field("    Street", c.Addresses.Street(i));
        field("    City", c.Addresses.City(i));
        field("    Region", c.Addresses.Region(i));
        field("    PostIndex", c.Addresses.PostIndex(i));
        field("    Country", c.Addresses.Country(i));
    }
    if (!c.Photo.Data().empty()) {
        std::cout << "  Photo: " << (c.Photo.ImageType().empty() ? "unknown type" : c.Photo.ImageType()) << ", "
                  << c.Photo.Data().size() << " bytes\n";
    }
}

void JsonString(std::string_view s, std::string& out) { out += zelvo::cli::JsonString(s); }

void JsonCard(const VCardContent& c, int number, long line, std::string& out) {
    auto key = [&](const char* k) {
        JsonString(k, out);
        out.push_back(':');
    };
    auto str = [&](const char* k, const std::string& v) {
        key(k);
        JsonString(v, out);
        out.push_back(',');
    };
    out += "{";
    key("number");
    out += std::to_string(number) + ",";
    key("line");
    out += std::to_string(line) + ",";
    str("FullName", c.FullName);
    str("FirstName", c.FirstName);
    str("MiddleName", c.MiddleName);
    str("SurName", c.SurName);
    str("Title", c.Title);
    key("Organization");
    out += "[";
    for (long i = 1; i <= c.Organization.Count(); ++i) {
        if (i > 1) out += ",";
        JsonString(c.Organization.Item(i), out);
    }
    out += "],";
    key("Phones");
    out += "[";
    for (long i = 1; i <= c.Phones.Count(); ++i) {
        if (i > 1) out += ",";
        out += "{";
        str("Number", c.Phones.Number(i));
        key("Kind");
        out += std::to_string(c.Phones.PhoneKind(i)) + ",";
        key("Type");
        JsonString(PhoneTypeName(c.Phones.PhoneType(i)), out);
        out += "}";
    }
    out += "],";
    key("Emails");
    out += "[";
    for (long i = 1; i <= c.Emails.Count(); ++i) {
        if (i > 1) out += ",";
        out += "{";
        str("Item", c.Emails.Item(i));
        key("Kind");
        out += std::to_string(c.Emails.EmailKind(i)) + "}";
    }
    out += "],";
    key("Urls");
    out += "[";
    for (long i = 1; i <= c.Urls.Count(); ++i) {
        if (i > 1) out += ",";
        out += "{";
        str("Url", c.Urls.Url(i));
        key("Kind");
        out += std::to_string(c.Urls.UrlKind(i)) + "}";
    }
    out += "],";
    key("Addresses");
    out += "[";
    for (long i = 1; i <= c.Addresses.Count(); ++i) {
        if (i > 1) out += ",";
        out += "{";
        str("Extended", c.Addresses.Extended(i));
        str("Street", c.Addresses.Street(i));
        str("City", c.Addresses.City(i));
        str("Region", c.Addresses.Region(i));
        str("PostIndex", c.Addresses.PostIndex(i));
        str("Country", c.Addresses.Country(i));
        key("Kind");
        out += std::to_string(c.Addresses.AddressKind(i)) + "}";
    }
    out += "],";
    key("Photo");
    if (c.Photo.Data().empty()) {
        out += "null";
    } else {
        out += "{";
        str("ImageType", c.Photo.ImageType());
        key("Bytes");
        out += std::to_string(c.Photo.Data().size()) + "}";
    }
    out += "}";
}

void JsonDiagnostic(const Diagnostic& d, std::string& out) {
    out += "{\"card\":" + std::to_string(d.card) + ",\"line\":" + std::to_string(d.line) + ",\"severity\":";
    JsonString(d.severity == Severity::Error ? "error" : "warning", out);
    out += ",\"reason\":";
    JsonString(d.reason, out);
    out += "}";
}

int RunShow(const std::vector<std::string>& files, bool json) {
    int status = kExitOk;
    std::string jsonOut = "[";
    bool firstFile = true;
    for (const auto& file : files) {
        vcard::VCardDocument doc;
        std::string path = file;
        doc.LoadFile(path);
        bool failed = false;
        for (const auto& d : doc.Diagnostics()) {
            std::cerr << vcard::FormatDiagnostic(d) << "\n";
            if (d.severity == Severity::Error) failed = true;
        }
        if (failed) status = kExitFailure;

        if (json) {
            if (!firstFile) jsonOut += ",";
            firstFile = false;
            jsonOut += "{\"file\":";
            JsonString(file, jsonOut);
            jsonOut += ",\"cards\":[";
        } else {
            std::cout << file << ": " << doc.CardCount() << (doc.CardCount() == 1 ? " card" : " cards") << "\n";
        }
        // The document shows one card at a time; walk them all. Cards that
        // could not be read leave gaps in the file's numbering.
        for (int n = 1; n <= doc.CardCount(); ++n) {
            doc.LoadCard(n);
            int number = doc.CardNumber(n);
            long line = doc.CardLine(n);
            if (json) {
                if (n > 1) jsonOut += ",";
                JsonCard(doc.content(), number, line, jsonOut);
            } else {
                PrintText(doc.content(), number, line);
            }
        }
        if (json) {
            jsonOut += "],\"problems\":[";
            bool first = true;
            for (const auto& d : doc.Diagnostics()) {
                if (!first) jsonOut += ",";
                first = false;
                JsonDiagnostic(d, jsonOut);
            }
            jsonOut += "]}";
        }
    }
    if (json) std::cout << jsonOut << "]\n";
    return status;
}

int RunVcard(std::span<const std::string> args) {
    if (args.empty()) return UsageError("vcard", "missing subcommand (show)");
    if (args[0] != "show") return UsageError("vcard", "unknown subcommand '" + args[0] + "'");
    bool json = false;
    std::vector<std::string> files;
    for (std::size_t i = 1; i < args.size(); ++i) {
        if (args[i] == "--json") json = true;
        else if (args[i].starts_with("--")) return UsageError("vcard", "unknown option '" + args[i] + "'");
        else files.push_back(args[i]);
    }
    if (files.empty()) return UsageError("vcard", "show needs at least one FILE");
    return RunShow(files, json);
}

}  // namespace

extern const Command kVcardCommand{
    "vcard", "show the cards of vCard files as an import would take them",
    "Usage: zelvo vcard show FILE... [--json]\n"
    "\n"
    "Reads each FILE (vCard 2.1, 3.0 or 4.0; any charset; one or many cards)\n"
    "and prints every card with the fields an import takes: names, title,\n"
    "organization levels, phones, e-mail addresses, web pages, addresses and\n"
    "the photo's type and size. With --json the same as one JSON array with an\n"
    "object per file: {file, cards, problems}.\n"
    "\n"
    "Problems are written to stderr as FILE:LINE: card N: reason. The exit\n"
    "status is 1 when a file is no vCard or a card in it cannot be read (the\n"
    "other files and cards are still shown), 0 otherwise.\n",
    RunVcard};

}  // namespace zelvo::cli
