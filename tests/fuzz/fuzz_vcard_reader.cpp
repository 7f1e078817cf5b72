// Feeds arbitrary bytes to the vCard reader. Beyond not crashing, every card
// it reads must come back unchanged from the writer's text: a card the
// reader accepts is one the book can export again.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "platform/vcard/vcard_reader.h"
#include "platform/vcard/vcard_writer.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace zelvo::vcard;
    std::string_view bytes(reinterpret_cast<const char*>(data), size);
    ReadResult r = ReadVCards(bytes, "fuzz.vcf");
    if (!r.isVCard && !r.cards.empty()) std::abort();
    for (const auto& card : r.cards) {
        ReadResult back = ReadVCards(WriteVCard(card.content), "rewritten.vcf");
        if (back.cards.size() != 1 || !(back.cards[0].content == card.content)) std::abort();
    }
    return 0;
}
