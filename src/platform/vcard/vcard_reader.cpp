#include "platform/vcard/vcard_reader.h"

#include <algorithm>

#include "platform/vcard/vcard_ascii.h"
#include "platform/vcard/vcard_charset.h"
#include "platform/vcard/vcard_codec.h"
#include "platform/vcard/vcard_lines.h"
#include "platform/vcard/vcard_property.h"

namespace zelvo::vcard {

std::string FormatDiagnostic(const Diagnostic& d) {
    std::string s = d.file;
    if (d.line > 0) s += ":" + std::to_string(d.line);
    s += ": ";
    if (d.card > 0) s += "card " + std::to_string(d.card) + ": ";
    s += d.severity == Severity::Error ? "error: " : "warning: ";
    s += d.reason;
    return s;
}

bool ReadResult::HasErrors() const {
    return std::any_of(diagnostics.begin(), diagnostics.end(),
                       [](const Diagnostic& d) { return d.severity == Severity::Error; });
}

namespace {

enum class Known { Other, Begin, End, Version, FN, N, Title, Org, Tel, Email, Url, Adr, Photo };

Known Classify(std::string_view name) {
    switch (name.size()) {
        case 1: if (IEquals(name, "N")) return Known::N; break;
        case 2: if (IEquals(name, "FN")) return Known::FN; break;
        case 3:
            if (IEquals(name, "TEL")) return Known::Tel;
            if (IEquals(name, "ORG")) return Known::Org;
            if (IEquals(name, "ADR")) return Known::Adr;
            if (IEquals(name, "URL")) return Known::Url;
            if (IEquals(name, "END")) return Known::End;
            break;
        case 5:
            if (IEquals(name, "EMAIL")) return Known::Email;
            if (IEquals(name, "TITLE")) return Known::Title;
            if (IEquals(name, "BEGIN")) return Known::Begin;
            if (IEquals(name, "PHOTO")) return Known::Photo;
            break;
        case 7: if (IEquals(name, "VERSION")) return Known::Version; break;
        default: break;
    }
    return Known::Other;
}

// A line that holds nothing but base64: 2.1 writers put photo data on lines
// of their own, some without the leading blank of a fold.
bool IsBareBase64Line(std::string_view line) {
    if (Trim(line).empty()) return false;
    for (char c : line) {
        bool ok = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '+' ||
                  c == '/' || c == '=' || c == ' ' || c == '\t';
        if (!ok) return false;
    }
    return true;
}

// Text from the file, cut to `max` bytes, as it may appear in a report:
// control characters and bytes of broken UTF-8 become '?', so a report is
// always printable UTF-8 whatever the file held.
std::string Shown(std::string_view s, std::size_t max) {
    bool cut = s.size() > max;
    if (cut) {
        s = s.substr(0, max);
        while (!s.empty() && (static_cast<unsigned char>(s.back()) & 0xC0) == 0x80) s.remove_suffix(1);
        if (!s.empty() && static_cast<unsigned char>(s.back()) >= 0xC0) s.remove_suffix(1);
    }
    bool utf8 = IsValidUtf8(s);
    std::string out;
    for (char c : s) {
        unsigned char u = static_cast<unsigned char>(c);
        out.push_back(u < 0x20 || u == 0x7F || (u >= 0x80 && !utf8) ? '?' : c);
    }
    if (cut) out += "…";
    return out;
}

// True when `line` starts like a content line: a name of letters, digits,
// '-' and '.', then parameters or the value after ':'.
bool LooksLikeProperty(std::string_view line) {
    std::size_t i = 0;
    while (i < line.size() && ((line[i] >= 'A' && line[i] <= 'Z') || (line[i] >= 'a' && line[i] <= 'z') ||
                               (line[i] >= '0' && line[i] <= '9') || line[i] == '-' || line[i] == '.')) {
        ++i;
    }
    if (i == 0 || i == line.size()) return false;
    if (line[i] == ':') return true;
    return line[i] == ';' && line.find(':', i) != std::string_view::npos;
}

bool IsEndVCard(std::string_view line) {
    line = Trim(line);
    return IEquals(line, "END:VCARD");
}

// Splits a structured value (N, ADR, ORG) at the semicolons that are not
// escaped and resolves the escapes of each part. Parts beyond `max` are
// joined to the last one with a blank, so no text is lost.
void SplitStructured(std::string_view text, std::size_t max, std::vector<std::string>& parts) {
    parts.clear();
    std::size_t start = 0;
    for (std::size_t i = 0; i <= text.size(); ++i) {
        if (i < text.size() && text[i] == '\\') {
            ++i;
            continue;
        }
        if (i == text.size() || text[i] == ';') {
            std::string_view piece = text.substr(start, i - start);
            if (parts.size() < max) {
                parts.emplace_back();
                AppendUnescaped(piece, parts.back());
            } else if (!piece.empty()) {
                parts.back().push_back(' ');
                AppendUnescaped(piece, parts.back());
            }
            start = i + 1;
        }
    }
}

// The legacy code page of 8-bit text without a charset; see
// ReadOptions::fallbackCharset.
const char* GuessLegacyCharset(std::string_view bytes) {
    std::size_t high = 0, inRuns = 0, run = 0;
    auto endRun = [&] {
        if (run >= 3) inRuns += run;
        run = 0;
    };
    for (unsigned char c : bytes) {
        if (c >= 0x80) {
            ++high;
            ++run;
        } else {
            endRun();
        }
    }
    endRun();
    return high > 0 && inRuns * 2 >= high ? "windows-1251" : "windows-1252";
}

class Reader {
public:
    Reader(std::string_view fileName, const ReadOptions& options, ReadResult& result)
        : file_(fileName), options_(options), result_(result) {}

    void Run(std::string_view bytes);

private:
    void Report(Severity s, int card, long line, std::string reason);
    void Warn(long line, std::string reason) { Report(Severity::Warning, cardNo_, line, std::move(reason)); }

    // Reads the lines that continue `line` (quoted-printable soft breaks,
    // bare base64 lines, a backslash at the line end) into joined_ and
    // parses it again.
    void Extend(LineSource& src, std::string_view line, Property& p);

    void StartCard(long line);
    void FinishCard(bool closed, long line);
    void TakeProperty(Known kind, const Property& p, long line);

    // The value as UTF-8 with escapes still in: transfer encoding undone and
    // charset converted. False when the value cannot be decoded at all.
    bool DecodeText(const Property& p, long line, std::string_view& text);
    void TakePhoto(const Property& p, long line);
    bool Usable(const VCardContent& c) const;

    std::string_view file_;
    const ReadOptions& options_;
    ReadResult& result_;
    std::size_t dropped_ = 0;  // reports left out beyond the cap

    bool fromUtf16_ = false;
    bool inCard_ = false;
    int nested_ = 0;
    int cardNo_ = 0;
    ReadCard card_;
    bool haveFn_ = false, haveN_ = false, haveTitle_ = false, haveOrg_ = false, havePhoto_ = false;
    bool warnedFallback_ = false;
    bool warnedNested_ = false;
    bool warnedOutside_ = false;

    CharsetDecoder charsets_;
    std::string joined_;
    std::string raw_;   // value after the transfer encoding
    std::string text_;  // value after the charset
    std::string scratch_;
    std::vector<std::string> parts_;
};

void Reader::Report(Severity s, int card, long line, std::string reason) {
    if (result_.diagnostics.size() >= options_.maxDiagnostics) {
        ++dropped_;
        return;
    }
    result_.diagnostics.push_back({std::string(file_), card, line, s, std::move(reason)});
}

void Reader::Run(std::string_view bytes) {
    if (bytes.size() > kMaxVCardFileBytes) {
        Report(Severity::Error, 0, 0, "file is larger than 256 MB; not read");
        return;
    }
    std::string decoded;
    if (bytes.size() >= 3 && bytes.substr(0, 3) == "\xEF\xBB\xBF") {
        bytes.remove_prefix(3);
    } else if (DecodeUtf16File(bytes, decoded)) {
        bytes = decoded;
        fromUtf16_ = true;
    }

    LineSource src(bytes);
    std::string_view line;
    long lineNo = 0;
    Property p;
    long firstText = 0;  // where a file that is no vCard shows it
    while (src.Next(line, lineNo)) {
        if (firstText == 0) firstText = lineNo;
        if (!ParseProperty(line, p)) {
            if (inCard_ && nested_ == 0) {
                Warn(lineNo, "line is not a property (no name, or no ':' outside quotes); ignored");
            } else if (!inCard_ && !warnedOutside_) {
                warnedOutside_ = true;
                Report(Severity::Warning, 0, lineNo, "text outside a card; ignored");
            }
            continue;
        }
        Extend(src, line, p);

        Known kind = Classify(p.name);
        if ((kind == Known::Begin || kind == Known::End) && p.hasGroup) {
            // Taken as the card's bounds all the same: the group is a slip.
            Report(Severity::Warning, inCard_ ? cardNo_ : 0, lineNo,
                   std::string(kind == Known::Begin ? "BEGIN" : "END") + " carries a group prefix; read as if it had none");
        }
        if (kind == Known::Begin) {
            std::string_view what = Trim(p.value);
            if (IEquals(what, "VCARD")) {
                if (!inCard_) StartCard(lineNo);
                else {
                    ++nested_;
                    if (!warnedNested_) {
                        warnedNested_ = true;
                        Warn(lineNo, "a card inside the card is skipped");
                    }
                }
            }
            // BEGIN:VADDRESSBOOK and others wrap cards or are parts of one.
            continue;
        }
        if (kind == Known::End) {
            if (IEquals(Trim(p.value), "VCARD")) {
                if (nested_ > 0) --nested_;
                else if (inCard_) FinishCard(true, lineNo);
                else Report(Severity::Warning, 0, lineNo, "END:VCARD without BEGIN:VCARD; ignored");
            }
            continue;
        }
        if (!inCard_) {
            if (!warnedOutside_) {
                warnedOutside_ = true;
                Report(Severity::Warning, 0, lineNo, "text outside a card; ignored");
            }
            continue;
        }
        if (nested_ > 0 || kind == Known::Other) continue;
        TakeProperty(kind, p, lineNo);
    }
    if (inCard_) FinishCard(false, src.lastLine());

    result_.isVCard = result_.cardsSeen > 0;
    if (!result_.isVCard) {
        if (firstText == 0) {
            Report(Severity::Error, 0, 0, "file is empty; no card in it");
        } else {
            Report(Severity::Error, 0, firstText, "not a vCard file: no BEGIN:VCARD line");
        }
    }
    if (dropped_ > 0) {
        result_.diagnostics.push_back({std::string(file_), 0, 0, Severity::Warning,
                                       std::to_string(dropped_) + " further problems not listed"});
    }
}

void Reader::Extend(LineSource& src, std::string_view line, Property& p) {
    bool extended = false;
    if (p.transfer == Transfer::None) {
        // Some 2.1 writers end a line with a backslash for a line break in
        // the value and go on in the next line: "\" + line end becomes "\n".
        auto oddBackslashes = [](std::string_view v) {
            std::size_t n = 0;
            while (n < v.size() && v[v.size() - 1 - n] == '\\') ++n;
            return n % 2 == 1;
        };
        if (!oddBackslashes(p.value)) return;
        joined_.assign(line);
        std::string_view next;
        // A next line that is a property of its own ends the value: in
        // Shift_JIS text a trailing 0x5C is half of a character.
        while (oddBackslashes(joined_) && src.PeekPhysical(next) && !next.empty() && !LooksLikeProperty(next)) {
            joined_.push_back('n');
            joined_.append(next);
            src.SkipPhysical();
            extended = true;
        }
    } else if (p.transfer == Transfer::QuotedPrintable) {
        // "=" at the end of a line is a soft break: the value goes on in the
        // next line, which has no fold blank. A card's END is never part of it.
        if (p.value.empty() || p.value.back() != '=') return;
        joined_.assign(line);
        while (!joined_.empty() && joined_.back() == '=') {
            std::string_view next;
            if (!src.PeekPhysical(next) || IsEndVCard(next)) break;
            joined_.pop_back();
            joined_.append(next);
            src.SkipPhysical();
            extended = true;
        }
    } else {
        std::string_view next;
        if (!src.PeekPhysical(next) || !IsBareBase64Line(next)) return;
        joined_.assign(line);
        while (src.PeekPhysical(next) && IsBareBase64Line(next)) {
            joined_.append(next);
            src.SkipPhysical();
            extended = true;
        }
    }
    if (extended) ParseProperty(joined_, p);
}

void Reader::StartCard(long line) {
    inCard_ = true;
    nested_ = 0;
    cardNo_ = ++result_.cardsSeen;
    card_ = ReadCard{};
    card_.number = cardNo_;
    card_.line = line;
    haveFn_ = haveN_ = haveTitle_ = haveOrg_ = havePhoto_ = false;
    warnedFallback_ = warnedNested_ = false;
}

bool Reader::Usable(const VCardContent& c) const {
    return !c.FullName.empty() || !c.FirstName.empty() || !c.MiddleName.empty() || !c.SurName.empty() ||
           !c.Title.empty() || c.Organization.Count() > 0 || c.Phones.Count() > 0 || c.Emails.Count() > 0 ||
           c.Urls.Count() > 0 || c.Addresses.Count() > 0 || !c.Photo.Data().empty();
}

void Reader::FinishCard(bool closed, long line) {
    inCard_ = false;
    if (!closed) Warn(line, "card is not closed by END:VCARD (the file ends); read as far as it goes");
    const std::string& v = card_.version;
    if (v.empty()) {
        Warn(card_.line, "card has no VERSION line; read all the same");
    } else if (v != "2.1" && v != "3.0" && v != "4.0") {
        Warn(card_.line, "VERSION '" + Shown(v, 20) + "' is none of 2.1, 3.0, 4.0; read all the same");
    }
    if (!Usable(card_.content)) {
        Report(Severity::Error, cardNo_, card_.line,
               "card holds no name, organization, title, phone, e-mail, web page, address or photo; card dropped");
    } else {
        result_.cards.push_back(std::move(card_));
    }
    cardNo_ = 0;
}

bool Reader::DecodeText(const Property& p, long line, std::string_view& text) {
    std::string_view raw = p.value;
    if (p.transfer == Transfer::QuotedPrintable) {
        raw_.clear();
        if (!DecodeQuotedPrintable(raw, raw_)) {
            Warn(line, std::string(p.name) + ": quoted-printable text holds a stray '='; kept as it stands");
        }
        raw = raw_;
    } else if (p.transfer == Transfer::Base64) {
        raw_.clear();
        if (!DecodeBase64(raw, raw_)) {
            Warn(line, std::string(p.name) + ": base64 text cannot be decoded; property dropped");
            return false;
        }
        raw = raw_;
    } else if (fromUtf16_) {
        text = raw;  // the whole file is UTF-8 by now; a CHARSET would be stale
        return true;
    }

    if (!p.charset.empty() && !IsUtf8Charset(p.charset)) {
        text_.clear();
        if (charsets_.AppendUtf8(p.charset, raw, text_)) {
            text = text_;
            return true;
        }
        Warn(line, std::string(p.name) + ": unknown CHARSET '" + Shown(p.charset, 40) +
                       "'; read as UTF-8 or a Windows code page");
    }
    if (IsValidUtf8(raw)) {
        text = raw;
        return true;
    }
    text_.clear();
    std::string_view fallback = options_.fallbackCharset;
    if (fallback.empty()) fallback = GuessLegacyCharset(raw);
    if (!charsets_.AppendUtf8(fallback, raw, text_)) {
        Warn(line, std::string(p.name) + ": text is not UTF-8 and the fallback charset is unknown; property dropped");
        return false;
    }
    if (!warnedFallback_) {
        warnedFallback_ = true;
        Warn(line, std::string(p.name) + ": text is not UTF-8 and names no charset; read as " +
                       std::string(fallback));
    }
    text = text_;
    return true;
}

void Reader::TakeProperty(Known kind, const Property& p, long line) {
    if (kind == Known::Version) {
        card_.version = std::string(Trim(p.value));
        return;
    }
    if (kind == Known::Photo) {
        TakePhoto(p, line);
        return;
    }
    // The first FN, N, TITLE and ORG count; repeats (other languages, older
    // values) are passed over before any decoding.
    if ((kind == Known::FN && haveFn_) || (kind == Known::N && haveN_) || (kind == Known::Title && haveTitle_) ||
        (kind == Known::Org && haveOrg_)) {
        return;
    }
    std::string_view text;
    if (!DecodeText(p, line, text)) return;
    VCardContent& c = card_.content;

    auto single = [&](std::string& into) {
        into.clear();
        AppendUnescaped(text, into);
    };
    auto singleTrimmed = [&]() {
        scratch_.clear();
        AppendUnescaped(Trim(text), scratch_);
        return std::string_view(scratch_);
    };
    const long resourceKind = p.HasType("WORK") ? kKindWork : kKindHome;

    switch (kind) {
        case Known::FN:
            single(c.FullName);
            haveFn_ = true;
            break;
        case Known::Title:
            single(c.Title);
            haveTitle_ = true;
            break;
        case Known::N:
            SplitStructured(text, 5, parts_);
            parts_.resize(5);
            c.FirstName = std::move(parts_[0]);   // family name
            c.MiddleName = std::move(parts_[1]);  // given name
            c.SurName = std::move(parts_[2]);     // additional names
            haveN_ = true;
            break;
        case Known::Org:
            SplitStructured(text, 64, parts_);
            for (auto& level : parts_) c.Organization.Add(std::move(level));
            haveOrg_ = true;
            break;
        case Known::Tel: {
            std::string_view number = singleTrimmed();
            if (IStartsWith(number, "tel:")) number.remove_prefix(4);
            if (number.empty()) break;
            long type = kPhoneVoice;
            if (p.HasType("CELL")) type = kPhoneCell;
            else if (p.HasType("FAX")) type = kPhoneFax;
            else if (p.HasType("PAGER")) type = kPhonePager;
            c.Phones.Add(c.Phones.Count() + 1, std::string(number), resourceKind, type);
            break;
        }
        case Known::Email: {
            std::string_view address = singleTrimmed();
            if (IStartsWith(address, "mailto:")) address.remove_prefix(7);
            if (address.empty()) break;
            bool pref = p.HasType("PREF") || !p.Param("PREF").empty();
            c.Emails.Add(c.Emails.Count() + 1, std::string(address), resourceKind, pref ? 1 : 0);
            break;
        }
        case Known::Url: {
            std::string_view url = singleTrimmed();
            if (url.empty()) break;
            // A web address holds no line break; one here is damage.
            std::string clean;
            for (char ch : url) {
                if (ch != '\n') clean.push_back(ch);
            }
            c.Urls.Add(c.Urls.Count() + 1, std::move(clean), resourceKind);
            break;
        }
        case Known::Adr: {
            SplitStructured(text, 7, parts_);
            parts_.resize(7);
            VCardAddressRecord r{std::move(parts_[0]), std::move(parts_[1]), std::move(parts_[2]),
                                 std::move(parts_[3]), std::move(parts_[4]), std::move(parts_[5]),
                                 std::move(parts_[6]), kKindHome};
            // HOME wins over WORK: an address marked both is the person's.
            if (p.HasType("WORK") && !p.HasType("HOME")) r.Kind = kKindWork;
            bool pref = p.HasType("PREF") || !p.Param("PREF").empty();
            c.Addresses.Add(std::move(r), pref ? 1 : 0);
            break;
        }
        default:
            break;
    }
}

void Reader::TakePhoto(const Property& p, long line) {
    if (havePhoto_) return;  // the first picture with bytes is the card's
    std::string_view value = Trim(p.value);
    std::string declared;
    raw_.clear();

    if (p.transfer == Transfer::Base64) {
        if (!DecodeBase64(value, raw_)) {
            Warn(line, "PHOTO: base64 data cannot be decoded; photo dropped");
            return;
        }
        declared = NormalizeImageType(p.FirstPlainType());
        if (declared.empty()) declared = NormalizeImageType(p.Param("MEDIATYPE"));
    } else if (IStartsWith(value, "data:")) {
        // data:[<media type>][;base64],<data>. Some writers escape its comma
        // as if the URI were text.
        scratch_.clear();
        AppendUnescaped(value, scratch_);
        value = scratch_;
        std::size_t comma = value.find(',');
        if (comma == std::string_view::npos) {
            Warn(line, "PHOTO: data URI without ','; photo dropped");
            return;
        }
        std::string_view head = value.substr(5, comma - 5);
        std::string_view payload = value.substr(comma + 1);
        std::size_t semi = head.find(';');
        declared = NormalizeImageType(head.substr(0, semi));
        bool base64 = false;
        while (semi != std::string_view::npos) {
            std::size_t next = head.find(';', semi + 1);
            std::string_view attr =
                head.substr(semi + 1, next == std::string_view::npos ? next : next - semi - 1);
            if (IEquals(attr, "base64")) base64 = true;
            semi = next;
        }
        if (base64) {
            if (!DecodeBase64(payload, raw_)) {
                Warn(line, "PHOTO: base64 data in the data URI cannot be decoded; photo dropped");
                return;
            }
        } else {
            // Percent-encoded bytes.
            for (std::size_t i = 0; i < payload.size(); ++i) {
                auto hex = [](char h) -> int {
                    if (h >= '0' && h <= '9') return h - '0';
                    if (h >= 'a' && h <= 'f') return h - 'a' + 10;
                    if (h >= 'A' && h <= 'F') return h - 'A' + 10;
                    return -1;
                };
                if (payload[i] == '%' && i + 2 < payload.size() && hex(payload[i + 1]) >= 0 &&
                    hex(payload[i + 2]) >= 0) {
                    raw_.push_back(static_cast<char>(hex(payload[i + 1]) * 16 + hex(payload[i + 2])));
                    i += 2;
                } else {
                    raw_.push_back(payload[i]);
                }
            }
        }
    } else if (value.empty()) {
        return;  // an empty PHOTO says nothing
    } else if (!p.valueIsUri && value.find(':') == std::string_view::npos && IsBareBase64Line(value)) {
        // Base64 without ENCODING, as some phones write it.
        if (!DecodeBase64(value, raw_)) {
            Warn(line, "PHOTO: data without ENCODING is no base64 either; photo dropped");
            return;
        }
        declared = NormalizeImageType(p.FirstPlainType());
    } else {
        Warn(line, "PHOTO is a link (" + Shown(value, 60) + "); not fetched");
        return;
    }
    if (raw_.empty()) return;

    std::string sniffed = SniffImageType(raw_);
    if (sniffed.empty()) {
        Warn(line, "PHOTO: bytes are no image format this reader knows; kept as they are");
    }
    card_.content.Photo.SetImageType(sniffed.empty() ? declared : sniffed);
    card_.content.Photo.SetData(raw_);
    havePhoto_ = true;
}

}  // namespace

ReadResult ReadVCards(std::string_view bytes, std::string_view fileName, const ReadOptions& options) {
    ReadResult result;
    Reader reader(fileName, options, result);
    reader.Run(bytes);
    return result;
}

}  // namespace zelvo::vcard
