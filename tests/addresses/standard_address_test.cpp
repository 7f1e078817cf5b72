// Walks up the tree of places and the texts made from them.
#include "addresses/standard_address.h"
#include "addresses/txt_address_fields.h"

#include "personslist/persons_book.h"
#include "platform/core/error.h"
#include "zelvo/address_by_owner.h"
#include "zelvo/enums.h"

namespace zelvo::testing {
namespace {

class AddressTest : public PersonsBookTest {
protected:
    // Adds a node and gives its [Address ID]. parent 0 makes a root; a Null
    // text or postcode is written as Null.
    int Node(int parent, int level, const char* text, const char* postIndex = nullptr) {
        auto q = [](const char* s) { return s ? "\"" + std::string(s) + "\"" : std::string("Null"); };
        db_.Execute("Insert Into PostAddresses ([aParent ID], aType, Address, PostIndex) Values (" +
                    std::to_string(parent) + ", " + std::to_string(level) + ", " + q(text) + ", " + q(postIndex) + ")");
        return ValueConv::ToLong(db_.OpenRecordset("Select Max([Address ID]) As m From PostAddresses")("m"));
    }
    void Bind(int node, int owner, int ownerType) {
        db_.Execute("Insert Into AddressesOwners ([Address ID], [Owner ID], OwnerType) Values (" + std::to_string(node) +
                    ", " + std::to_string(owner) + ", " + std::to_string(ownerType) + ")");
    }
    static std::string Show(const AddressFields& f) {
        return f.PostIndex + "|" + f.Country + "|" + f.Region + "|" + f.City + "|" + f.Street;
    }
    StandardAddress& Walker() {
        walker_.SetRecordset(db_.OpenRecordset("PostAddresses"));
        return walker_;
    }

    StandardAddress walker_;
};

TEST_F(AddressTest, SixLevelsSortIntoFiveFieldsAndTheNearestPostcodeWins) {
    int country = Node(0, 0, "Russia", "100000");
    int region = Node(country, 1, "Moscow Obl.");
    int city = Node(region, 2, "t. Moscow");
    int street = Node(city, 3, "st. Tverskaya", "125009");
    int house = Node(street, 4, "h. 1");
    int apartment = Node(house, 5, "ap. 5");
    int otherCity = Node(country, 2, "t. Tula");

    StandardAddress& w = Walker();
    EXPECT_EQ(Show(w.AddressFields(apartment)), "125009|Russia|Moscow Obl.|t. Moscow|st. Tverskaya, h. 1, ap. 5");
    EXPECT_EQ(w.Chain().size(), 6u);
    EXPECT_EQ(w.Chain().front().Address_ID, apartment);
    EXPECT_EQ(w.GetFullAddress(apartment), "125009, Russia, Moscow Obl., t. Moscow, st. Tverskaya, h. 1, ap. 5");
    EXPECT_EQ(Show(w.AddressFields(otherCity)), "100000|Russia||t. Tula|");
    EXPECT_EQ(w.GetFullAddress(otherCity), "100000, Russia, t. Tula");
}

TEST_F(AddressTest, SkippedRepeatedAndOddLevels) {
    // A street straight under a root street, a room, and a level 7 (country).
    int outer = Node(0, 3, "Street A");
    int inner = Node(outer, 3, "Street B");
    int room = Node(inner, 5, "ap. 3");
    int odd = Node(0, 7, "Somewhere");
    int cityOnly = Node(0, 2, "t. Alone");

    StandardAddress& w = Walker();
    EXPECT_EQ(Show(w.AddressFields(room)), "||||Street A, Street B, ap. 3");
    EXPECT_EQ(w.GetFullAddress(outer), "Street A");
    EXPECT_EQ(Show(w.AddressFields(odd)), "|Somewhere|||");
    EXPECT_EQ(w.GetFullAddress(cityOnly), "t. Alone");
}

TEST_F(AddressTest, NullTextsPassAndMissingNodesEndTheWalkQuietly) {
    int country = Node(0, 0, "Norway");
    int blank = Node(country, 2, nullptr);
    int street = Node(blank, 3, "Storgata", nullptr);
    int orphan = Node(999, 3, "Lost lane");

    StandardAddress& w = Walker();
    EXPECT_EQ(Show(w.AddressFields(street)), "|Norway|||Storgata");
    EXPECT_EQ(Show(w.AddressFields(orphan)), "||||Lost lane");
    EXPECT_EQ(Show(w.AddressFields(12345)), "||||");
    EXPECT_EQ(w.GetFullAddress(0), "");
    EXPECT_TRUE(w.Chain().empty());
}

TEST_F(AddressTest, ACycleInTheParentsEndsAtTheFirstNodeSeenTwice) {
    int a = Node(0, 2, "t. Loop");
    int b = Node(a, 3, "st. Round");
    db_.Execute("Update PostAddresses Set [aParent ID]=" + std::to_string(b) + " Where [Address ID]=" + std::to_string(a));
    int self = Node(0, 3, "st. Self");
    db_.Execute("Update PostAddresses Set [aParent ID]=" + std::to_string(self) + " Where [Address ID]=" + std::to_string(self));

    StandardAddress& w = Walker();
    EXPECT_EQ(Show(w.AddressFields(b)), "|||t. Loop|st. Round");
    EXPECT_EQ(w.Chain().size(), 2u);
    EXPECT_EQ(w.GetFullAddress(self), "st. Self");
}

TEST_F(AddressTest, WalkerWithoutRecordSetOpensTheBookItself) {
    int city = Node(0, 2, "t. Self-made");
    StandardAddress w;
    EXPECT_EQ(w.GetFullAddress(city), "");  // nothing to walk yet
    w.InitDBSelf();
    EXPECT_EQ(w.GetFullAddress(city), "t. Self-made");
}

TEST_F(AddressTest, OwnerWithTwoBindingsGivesTheSecondAfterMoveNext) {
    int country = Node(0, 0, "France");
    int paris = Node(country, 2, "t. Paris", "75001");
    int lyon = Node(country, 2, "t. Lyon", "69001");
    Bind(paris, 2, oPersonal_ID);
    Bind(lyon, 2, oPersonal_ID);
    Bind(lyon, 2, oOrganization_ID);

    AddressByOwner owner;
    EXPECT_THROW(owner.SelectOwner(2, oPersonal_ID), Error);
    owner.InitDB();
    ASSERT_TRUE(owner.SelectOwner(2, oPersonal_ID));
    EXPECT_EQ(owner.Address_ID(), paris);
    EXPECT_EQ(Show(owner.AddressFields()), "75001|France||t. Paris|");
    owner.rsAddresses().MoveNext();
    EXPECT_EQ(Show(owner.AddressFields()), "69001|France||t. Lyon|");

    EXPECT_FALSE(owner.SelectOwner(3, oPersonal_ID));
    EXPECT_EQ(owner.Address_ID(), 0);
    EXPECT_EQ(Show(owner.AddressFields()), "||||");
}

TEST_F(AddressTest, TextBoxesTakeTheFieldsStreetFirstAndZeroEmptiesThem) {
    int country = Node(0, 0, "Italy");
    int city = Node(country, 2, "t. Roma", "00100");
    int street = Node(city, 3, "Via Appia");
    ui::TextBox post, countryBox, region, cityBox, streetBox;
    std::vector<std::string> order;
    for (auto [box, name] : {std::pair{&post, "post"}, {&countryBox, "country"}, {&region, "region"},
                             {&cityBox, "city"}, {&streetBox, "street"}})
        box->OnChange = [&order, name = std::string(name)] { order.push_back(name); };
    region.SetText("stale");
    order.clear();

    clsTxtAddressFields boxes;
    boxes.TxtPostIndex = &post, boxes.TxtCountry = &countryBox, boxes.TxtRegion = &region;
    boxes.TxtCity = &cityBox, boxes.TxtStreet = &streetBox;
    boxes.SetRecordset(db_.OpenRecordset("PostAddresses"));
    boxes.ChangeTxtAddr(street);
    EXPECT_EQ(order, (std::vector<std::string>{"street", "city", "country", "post", "region"}));
    EXPECT_EQ(post.Text() + "|" + countryBox.Text() + "|" + region.Text() + "|" + cityBox.Text() + "|" + streetBox.Text(),
              "00100|Italy||t. Roma|Via Appia");
    boxes.ChangeTxtAddr(0);
    EXPECT_EQ(post.Text() + countryBox.Text() + region.Text() + cityBox.Text() + streetBox.Text(), "");
    boxes.ChangeTxtAddr(street);
    boxes.ClearTxtFields();
    EXPECT_EQ(streetBox.Text(), "");
}

}  // namespace
}  // namespace zelvo::testing
