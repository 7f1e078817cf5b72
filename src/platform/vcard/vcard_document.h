// VCardDocument: one business card in memory, read from and written to a
// .vcf file.
//
// The vCard import and export create one per operation, fill or read its
// fields and never see the file text. The name fields carry the book's
// meanings (see VCardContent): FirstName is the family name, MiddleName the
// given name, SurName the patronymic.
//
// Reading: `LoadFile` reads every card of the file and shows the first one
// that could be read; `CardCount` and `LoadCard(n)` reach the others, for a
// batch import. What could not be read — a property, a card, the file — is
// listed in `Diagnostics()` with the file, the card's number in the file,
// the line and the reason; the rest is loaded all the same.
//
// Writing: `SaveFile` writes the card as vCard 3.0 in UTF-8.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/vcard/vcard_content.h"
#include "platform/vcard/vcard_reader.h"

namespace zelvo::vcard {

class VCardDocument {
public:
    // The name fields and the job title; strings are UTF-8.
    const std::string& FullName() const { return card_.FullName; }
    const std::string& FirstName() const { return card_.FirstName; }
    const std::string& MiddleName() const { return card_.MiddleName; }
    const std::string& SurName() const { return card_.SurName; }
    const std::string& Title() const { return card_.Title; }
    void SetFullName(std::string v) { card_.FullName = std::move(v); }
    void SetFirstName(std::string v) { card_.FirstName = std::move(v); }
    void SetMiddleName(std::string v) { card_.MiddleName = std::move(v); }
    void SetSurName(std::string v) { card_.SurName = std::move(v); }
    void SetTitle(std::string v) { card_.Title = std::move(v); }

    // The sub-objects; always present, empty on a new document.
    VCardPhones& Phones() { return card_.Phones; }
    VCardEmails& Emails() { return card_.Emails; }
    VCardUrls& Urls() { return card_.Urls; }
    VCardAddresses& Addresses() { return card_.Addresses; }
    VCardPhoto& Photo() { return card_.Photo; }
    VCardTextList& Organization() { return card_.Organization; }
    const VCardPhones& Phones() const { return card_.Phones; }
    const VCardEmails& Emails() const { return card_.Emails; }
    const VCardUrls& Urls() const { return card_.Urls; }
    const VCardAddresses& Addresses() const { return card_.Addresses; }
    const VCardPhoto& Photo() const { return card_.Photo; }
    const VCardTextList& Organization() const { return card_.Organization; }

    // Reads the card file at `path`. An empty `path` asks the UiHost's open
    // dialog first and receives the chosen file. Returns true when a card
    // was loaded; false — with the card left empty — when the person gave
    // up, the file could not be opened or no card in it could be read.
    // Never throws for a bad file; the reasons are in Diagnostics().
    bool LoadFile(std::string& path);

    // Reads cards from bytes already in memory, as LoadFile does from a file.
    // `name` labels the diagnostics.
    bool LoadBytes(std::string_view bytes, std::string_view name);

    // How later loads read (the charset for unlabeled 8-bit text, the cap on
    // reports). The defaults suit most files.
    void SetReadOptions(ReadOptions options) { options_ = std::move(options); }

    // The number of cards of the last file that could be read.
    int CardCount() const { return static_cast<int>(cards_.size()); }

    // Shows card `n` (from 1) of the last file. False, leaving the card as
    // it is, outside 1..CardCount.
    bool LoadCard(int n);

    // Where card `n` (from 1..CardCount) stands in the file: its number
    // among all the file's cards, read or not, and the line of its BEGIN.
    // 0 outside 1..CardCount.
    int CardNumber(int n) const;
    long CardLine(int n) const;

    // The problems met by the last LoadFile or LoadBytes, in file order.
    const std::vector<Diagnostic>& Diagnostics() const { return diagnostics_; }

    // Writes the card as vCard 3.0 to `path`. An empty `path` asks the
    // UiHost's save dialog; the chosen file is written and given back in
    // `path`, and when the person gives up `path` stays empty and the result
    // is false. A file that cannot be written throws zelvo::Error 75 with the
    // path and the system's reason; an existing file is then left as it was.
    bool SaveFile(std::string& path);

    // The text SaveFile writes.
    std::string ToText() const;

    // All fields at once.
    const VCardContent& content() const { return card_; }
    void set_content(VCardContent c) { card_ = std::move(c); }

private:
    ReadOptions options_;
    VCardContent card_;
    std::vector<ReadCard> cards_;
    std::vector<Diagnostic> diagnostics_;
};

}  // namespace zelvo::vcard
