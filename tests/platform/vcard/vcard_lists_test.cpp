// The sub-objects' rules that the import and export lean on.
#include <gtest/gtest.h>

#include "platform/core/error.h"
#include "platform/vcard/vcard_document.h"

namespace zelvo::vcard {
namespace {

TEST(TextList, ParseCutsAtTheDelimiter) {
    struct Case {
        const char* text;
        const char* delimiter;
        std::vector<std::string> items;
    };
    for (const auto& c : std::vector<Case>{
             {"", ",", {}},
             {"Acme", ",", {"Acme"}},
             {"Acme,", ",", {"Acme", ""}},
             {"Street, 5, flat 7, room 2", ",", {"Street", " 5", " flat 7", " room 2"}},
             {",,", ",", {"", "", ""}},
             {"a<>b", "<>", {"a", "b"}},
             {"a,b", "", {"a,b"}},
         }) {
        VCardTextList list;
        list.Add("left over");
        list.Parse(c.text, c.delimiter);
        EXPECT_EQ(list.items(), c.items) << '"' << c.text << '"';
    }
}

TEST(TextList, PositionsOutsideTheListRaiseError9) {
    VCardTextList list;
    list.Parse("a,b", ",");
    EXPECT_EQ(list.Item(2), "b");
    for (long bad : {0L, 3L, -1L}) {
        try {
            list.Item(bad);
            ADD_FAILURE() << bad;
        } catch (const Error& e) {
            EXPECT_EQ(e.number(), 9);
        }
    }
}

TEST(Resources, EachExportBatchRestartingAtOneAppendsAndLosesNothing) {
    // The export adds the home e-mails at 1..n, then the job's again from 1.
    VCardEmails emails;
    emails.Add(1, "home2@x", 1, 0);
    emails.Add(2, "home1@x", 1, 0);
    emails.Add(1, "job@x", 1, 0);
    emails.Add(1, "employee@x", 1, 0);
    ASSERT_EQ(emails.Count(), 4);
    EXPECT_EQ(emails.Item(1), "home2@x");
    EXPECT_EQ(emails.Item(3), "job@x");
    EXPECT_EQ(emails.Item(4), "employee@x");

    VCardPhones phones;
    phones.Add(1, "1", kKindHome, 1);
    phones.Add(1, "2", kKindWork, 1);
    EXPECT_EQ(phones.PhoneKind(2), kKindWork);
    EXPECT_EQ(phones.Number(2), "2");
    EXPECT_THROW(phones.Add(0, "x", 1, 1), Error);
    EXPECT_THROW(phones.Number(3), Error);
}

TEST(Addresses, TheTagIsTheCallersSlotAndNotPartOfTheCard) {
    VCardAddresses a, b;
    a.Add({"", "", "Street", "City", "Region", "123", "Country", 1}, 0);
    b.Add({"", "", "Street", "City", "Region", "123", "Country", 1}, 0);
    a.SetAddressTag(1, 77);
    EXPECT_EQ(a.AddressTag(1), 77);
    EXPECT_EQ(b.AddressTag(1), 0);
    EXPECT_EQ(a, b);
    EXPECT_EQ(a.PostIndex(1), "123");
    EXPECT_THROW(a.SetAddressTag(2, 1), Error);
}

TEST(Photo, TypesAreNamedAsVCardWritesThem) {
    struct Case {
        const char* in;
        const char* out;
    };
    for (const auto& c : {Case{"jpeg", "JPEG"}, Case{"image/jpeg", "JPEG"}, Case{"JPG", "JPEG"},
                          Case{"image/png", "PNG"}, Case{"tif", "TIFF"}, Case{"x-ms-bmp", "BMP"},
                          Case{"image/webp", "WEBP"}, Case{"", ""}}) {
        EXPECT_EQ(NormalizeImageType(c.in), c.out) << c.in;
    }
    EXPECT_EQ(SniffImageType("\x89PNG\r\n\x1A\n...."), "PNG");
    EXPECT_EQ(SniffImageType("GIF89a"), "GIF");
    EXPECT_EQ(SniffImageType(std::string("MM\0*", 4)), "TIFF");
    EXPECT_EQ(SniffImageType("hello"), "");
}

}  // namespace
}  // namespace zelvo::vcard
