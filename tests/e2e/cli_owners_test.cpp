// zelvo photo and zelvo call --class, run as programs over a small book.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "support/cli_runner.h"
#include "support/temp_dir.h"

namespace zelvo::testing {
namespace {

using Bytes = std::vector<unsigned char>;

Bytes Read(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(in), {});
}

class CliOwnersTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(Z({"correct-db"}).status, 0);
        for (const char* sql :
             {"Insert Into PersonalData (FirstName, FullName) Values (\"Anna\", \"Anna A\")",
              "Insert Into Resources (ResourceString, ResourceType) Values (\"anna@example.org\", 2)",
              "Insert Into ResourcesOwners ([Resource ID], [Owner ID], OwnerType) Values (1, 1, 0)",
              "Insert Into PostAddresses ([aParent ID], aType, Address, PostIndex) Values (0, 0, \"Russia\", \"101\")",
              "Insert Into PostAddresses ([aParent ID], aType, Address) Values (1, 2, \"t. Moscow\")",
              "Insert Into PostAddresses ([aParent ID], aType, Address) Values (2, 3, \"st. Tverskaya\")",
              "Insert Into AddressesOwners ([Address ID], [Owner ID], OwnerType) Values (3, 1, 0)"})
            ASSERT_EQ(Z({"sql", sql}).status, 0) << sql;
    }
    Outcome Z(std::vector<std::string> args) {
        args.insert(args.begin(), {"--app-path", dir_.File("app")});
        return RunZelvo(args, dir_.File("stderr.txt"));
    }
    static std::string Seed(const char* name) {
        return std::string(ZELVO_PICTURE_SEEDS) + "/" + name;
    }
    TempDir dir_;
};

TEST_F(CliOwnersTest, PhotoRoundTripsByteForByteAndFitsAsPng) {
    const std::string jpeg = Seed("tiny_ours.jpg");
    Outcome r = Z({"photo", "add", "--person", "1", jpeg});
    ASSERT_EQ(r.status, 0) << r.err;
    ASSERT_EQ(Z({"photo", "get", "--email", "anna@example.org", dir_.File("back.jpg")}).status, 0);
    EXPECT_EQ(Read(dir_.File("back.jpg")), Read(jpeg));
    ASSERT_EQ(Z({"photo", "get", "--person", "1", dir_.File("by-id.jpg")}).status, 0);
    EXPECT_EQ(Read(dir_.File("by-id.jpg")), Read(jpeg));

    r = Z({"photo", "get", "--person", "1", dir_.File("thumb.png"), "--fit", "30x40"});
    ASSERT_EQ(r.status, 0) << r.err;
    Bytes png = Read(dir_.File("thumb.png"));
    ASSERT_GT(png.size(), 24u);
    EXPECT_EQ(png[1], 'P');
    EXPECT_EQ(png[19], 30);  // IHDR width
    EXPECT_EQ(png[23], 40);  // IHDR height

    EXPECT_EQ(Z({"photo", "rm", "--person", "1"}).status, 0);
    r = Z({"photo", "get", "--person", "1", dir_.File("none")});
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.err.find("no photo of person 1"), std::string::npos) << r.err;
}

TEST_F(CliOwnersTest, PhotoThatIsNoPictureIsRefusedWithExitOne) {
    std::ofstream(dir_.File("text.jpg")) << "just text";
    Outcome r = Z({"photo", "add", "--person", "1", dir_.File("text.jpg")});
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.err.find("Invalid image"), std::string::npos) << r.err;
    EXPECT_NE(r.err.find("nothing was stored"), std::string::npos) << r.err;
    EXPECT_EQ(Z({"photo", "get", "--person", "1", dir_.File("x")}).status, 1);
    EXPECT_EQ(Z({"photo", "add", "--person", "9", Seed("tiny_ours.jpg")}).status, 1);  // no such person
    EXPECT_EQ(Z({"photo", "add", "--person", "x", Seed("tiny_ours.jpg")}).status, 2);
    EXPECT_EQ(Z({"photo", "get", "--person", "1", "--email", "a@b", "out"}).status, 2);
}

TEST_F(CliOwnersTest, CallRunsSeveralMembersOfOneObjectAndPrintsObjects) {
    Outcome r = Z({"call", "--class", "AddressByOwner", "InitDB", "--then", "SelectOwner", "1", "0", "--then",
                   "AddressFields"});
    ASSERT_EQ(r.status, 0) << r.err;
    const std::string fields =
        "{\"PostIndex\": \"101\", \"Street\": \"st. Tverskaya\", \"City\": \"t. Moscow\", \"Country\": \"Russia\", "
        "\"Region\": \"\"}";
    EXPECT_NE(r.out.find("\"result\": " + fields), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("\"results\": [null, true, " + fields + "]"), std::string::npos) << r.out;

    ASSERT_EQ(Z({"photo", "add", "--person", "1", Seed("tiny_rgba.png")}).status, 0);
    r = Z({"call", "--class", "dbPhoto", "GetPhotoByEmail", "anna@example.org", "--save-picture", dir_.File("p.png")});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_NE(r.out.find("\"iPic\": {\"width\": "), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("\"sha256\": \""), std::string::npos) << r.out;
    EXPECT_EQ(Read(dir_.File("p.png")).at(1), 'P');

    r = Z({"call", "--class", "AddressFields", "--set", "City=Roma", "City"});
    EXPECT_NE(r.out.find("\"result\": \"Roma\""), std::string::npos) << r.out;
    EXPECT_EQ(Z({"call", "--class", "NoSuchClass", "X"}).status, 2);
    EXPECT_EQ(Z({"call", "--class", "dbPhoto", "Navigate"}).status, 2);
    r = Z({"call", "--class", "AddressByOwner", "SelectOwner", "1", "0"});  // InitDB first
    EXPECT_EQ(r.status, 1);

    r = Z({"call", "--members"});
    for (const char* name : {"Class cAddressbook", "Class dbPhoto", "Class AddressByOwner", "Class AddressFields",
                             "AddressFields As AddressFields (property, read-only)"})
        EXPECT_NE(r.out.find(name), std::string::npos) << name;
}

}  // namespace
}  // namespace zelvo::testing
