// Feeds arbitrary bytes to the vCard reader. Beyond not crashing: every
// text it hands out (fields and reports) is valid UTF-8, whatever the bytes
// were, and every card it reads comes back unchanged from the writer's text:
// a card the reader accepts is one the book can export again.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "platform/vcard/vcard_codec.h"
#include "platform/vcard/vcard_reader.h"
#include "platform/vcard/vcard_writer.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace zelvo::vcard;
    std::string_view bytes(reinterpret_cast<const char*>(data), size);
    ReadResult r = ReadVCards(bytes, "fuzz.vcf");
    if (!r.isVCard && !r.cards.empty()) std::abort();
    for (const auto& d : r.diagnostics) {
        if (!IsValidUtf8(d.reason)) std::abort();
    }
    for (const auto& card : r.cards) {
        const auto& c = card.content;
        for (const std::string* s : {&c.FullName, &c.FirstName, &c.MiddleName, &c.SurName, &c.Title}) {
            if (!IsValidUtf8(*s)) std::abort();
        }
        for (const auto& level : c.Organization.items()) {
            if (!IsValidUtf8(level)) std::abort();
        }
        for (const auto& a : c.Addresses.items()) {
            if (!IsValidUtf8(a.record.Street) || !IsValidUtf8(a.record.City)) std::abort();
        }
        ReadResult back = ReadVCards(WriteVCard(card.content), "rewritten.vcf");
        if (back.cards.size() != 1 || !(back.cards[0].content == card.content)) std::abort();
    }
    return 0;
}
