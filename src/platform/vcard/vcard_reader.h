// The vCard reader: the bytes of a .vcf file → the cards it holds.
//
// It reads what phones, mail programs and web services write: versions 2.1,
// 3.0 and 4.0; folded lines; quoted-printable with soft breaks; CHARSET
// parameters in any charset ICU knows; UTF-8 and UTF-16 files (by their byte
// order mark or, without one, by their zero bytes); CR, LF and CRLF line ends
// mixed at will; several cards per file, also inside a VADDRESSBOOK wrapper.
//
// Damage stays local. A property that cannot be read is dropped and
// reported; a card that cannot be read is dropped and reported; the rest of
// the file is still read. Every report names the file, the card's number in
// the file (from 1, counting every BEGIN:VCARD, read or not) and the line.
//
// Work is one pass over the bytes without regular expressions; a property's
// value is copied only when the book keeps it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/vcard/vcard_content.h"

namespace zelvo::vcard {

struct ReadOptions {
    // Charset for 8-bit text that has no CHARSET (or an unknown one) and is
    // not valid UTF-8. Empty: guess between the two Windows code pages such
    // files come in, windows-1251 when most of the 8-bit bytes stand in
    // runs of three or more (words of a non-Latin script), windows-1252 when
    // they stand alone among ASCII letters (accents and umlauts).
    std::string fallbackCharset;
    // Reports kept per file; a last one says how many more were left out.
    std::size_t maxDiagnostics = 1000;
};

// Files larger than this are refused as a whole (they would not fit the
// 32-bit offsets of the charset converters, and no address book is this big).
constexpr std::size_t kMaxVCardFileBytes = std::size_t{256} << 20;

enum class Severity {
    Warning,  // a property or a line was dropped, or text was guessed at
    Error,    // a card or the whole file was dropped
};

struct Diagnostic {
    std::string file;
    int card = 0;   // 0: not inside a card
    long line = 0;  // from 1; 0 when the fault concerns the whole file
    Severity severity = Severity::Warning;
    std::string reason;
};

// "FILE:LINE: card N: REASON" (the parts that are 0 left out).
std::string FormatDiagnostic(const Diagnostic& d);

struct ReadCard {
    VCardContent content;
    int number = 0;      // the card's number in the file, from 1
    long line = 0;       // the line of its BEGIN:VCARD
    std::string version; // as the card gave it: "2.1", "3.0", "4.0", or ""
};

struct ReadResult {
    std::vector<ReadCard> cards;  // the cards that could be read, in file order
    std::vector<Diagnostic> diagnostics;
    bool isVCard = false;  // at least one BEGIN:VCARD was found
    int cardsSeen = 0;     // every BEGIN:VCARD at the top level

    bool HasErrors() const;
};

// Reads every card of `bytes`. `fileName` only labels the reports.
ReadResult ReadVCards(std::string_view bytes, std::string_view fileName, const ReadOptions& options = {});

}  // namespace zelvo::vcard
