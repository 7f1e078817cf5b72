#include "projects/membership.h"

#include <filesystem>

#include "platform/shell/project_paths.h"
#include "projects/org_deletion.h"
#include "projects_book.h"
#include "support/error_number.h"
#include "zelvo/dispatch.h"

namespace zelvo::testing {
namespace {

class MembershipTest : public ProjectsBookTest {
protected:
    void SetUp() override {
        ProjectsBookTest::SetUp();
        Add(1, 0, "A");
        Add(1, 0, "A\\B", true);
        Add(2, 1, "A");
        Add(3, 2, "Q");
    }
    bool ArchiveFolderExists(const std::string& rel) {
        return std::filesystem::is_directory(dir_.path() / ".archive" / rel);
    }
    std::vector<std::string> Messages() {
        std::vector<std::string> shown;
        for (const auto& s : host_.Log()) shown.push_back(std::to_string(s.buttons) + " " + s.prompt);
        return shown;
    }
};

TEST_F(MembershipTest, MoveRewritesTheRowOfTheCurrentProjectOnEitherSideAndKeepsTheSide) {
    book_.rProject = "a\\b";  // case ignored; the row lies in the archive
    std::string to = "C";
    book_.MovePerson(1, to, nullptr);
    EXPECT_EQ(Rows(), (std::vector<std::string>{"1:0:A:L", "1:0:C:A", "2:1:A:L", "3:2:Q:L"}));
    EXPECT_TRUE(Messages().empty());
}

TEST_F(MembershipTest, MoveOfAnObjectThatIsNotThereShowsTheMessageAndChangesNothing) {
    auto before = Rows();
    book_.rProject = "Q";
    std::int32_t type = 1;
    std::string to = "C";
    book_.MoveABObject(2, type, to, nullptr);
    EXPECT_EQ(Rows(), before);
    EXPECT_EQ(Messages(), (std::vector<std::string>{"16 The object №2 not found in the project\nQ"}));
}

TEST_F(MembershipTest, MoveTwoMovesBetweenSidesAddsFromNoProjectAndNamesTheCurrentProjectWhenMissing) {
    std::int32_t type = 2;
    std::string from = "Q", to = "Done";
    bool fromArc = false, toArc = true;
    book_.MoveABObject2(3, type, from, fromArc, to, toArc, nullptr);
    std::string none = " ";
    book_.MoveABObject2(9, type, none, fromArc, to, fromArc, nullptr);
    EXPECT_EQ(Rows(), (std::vector<std::string>{"1:0:A:L", "1:0:A\\B:A", "2:1:A:L", "3:2:Done:A", "9:2:Done:L"}));

    book_.rProject = "Here";
    std::string missing = "Q";
    book_.MoveABObject2(3, type, missing, fromArc, to, toArc, nullptr);
    EXPECT_EQ(Messages(), (std::vector<std::string>{"16 The object N3 not found in the project\nHere"}));
}

TEST_F(MembershipTest, DeleteTakesOneRowOfOneSideAway) {
    std::string a = "A", ab = "A\\B";
    bool live = false;
    EXPECT_FALSE(book_.DeleteObjfromPrj(nullptr, ab, live, 1, 0));  // it is in the archive
    EXPECT_FALSE(book_.DeleteObjfromPrj(nullptr, a, live, 1, 1));   // another object
    EXPECT_TRUE(book_.DeleteObjfromPrj(nullptr, a, live, 1, 0));
    EXPECT_EQ(Rows(), (std::vector<std::string>{"1:0:A\\B:A", "2:1:A:L", "3:2:Q:L"}));
}

TEST_F(MembershipTest, DeleteFromNoProjectDeletesOnlyOrganizations) {
    std::string none;
    bool live = false;
    auto before = Rows();
    EXPECT_FALSE(book_.DeleteObjfromPrj(nullptr, none, live, 3, 2));
    EXPECT_EQ(Rows(), before);

    // The real deletion: no organization 2 in this book, so nothing goes.
    EXPECT_FALSE(book_.DeleteObjfromPrj(nullptr, none, live, 2, 1));
    std::vector<std::int32_t> deleted;
    OrgDeleter previous = SetOrgDeleter([&](std::int32_t id) {
        deleted.push_back(id);
        return true;
    });
    EXPECT_TRUE(book_.DeleteObjfromPrj(nullptr, none, live, 2, 1));
    SetOrgDeleter(previous);
    EXPECT_EQ(deleted, (std::vector<std::int32_t>{2}));
}

TEST_F(MembershipTest, SingleProjectGoesToTheArchiveAndItsFolderIsMadeThere) {
    std::string a = "A";
    bool live = false;
    book_.PrjArcPrjSingleProject(2, 1, nullptr, a, live);
    EXPECT_EQ(Rows(), (std::vector<std::string>{"1:0:A:L", "1:0:A\\B:A", "2:1:A:A", "3:2:Q:L"}));
    EXPECT_TRUE(ArchiveFolderExists("A"));

    std::string nothing = "Nothing";
    book_.PrjArcPrjSingleProject(2, 1, nullptr, nothing, live);  // no row: nothing, no message
    EXPECT_TRUE(Messages().empty());
}

TEST_F(MembershipTest, AllRowsOfAnObjectEndOnTheFarSideAndTheFlagComesBackFlipped) {
    bool side = false;
    book_.PrjArcPrj(1, nullptr, nullptr, side);
    EXPECT_TRUE(side);
    EXPECT_EQ(Rows(), (std::vector<std::string>{"1:0:A:A", "1:0:A\\B:A", "2:1:A:L", "3:2:Q:L"}));
    EXPECT_TRUE(ArchiveFolderExists("A"));
    EXPECT_TRUE(ArchiveFolderExists("A/B"));

    // And back, through the late-bound door with the flag written back.
    ui::DataControl data;
    std::vector<DispArg> args = {Variant(std::int64_t{1}), Variant(std::int64_t{0}), &data, &data, Variant(true)};
    Invoke(book_, "PrjArcPrj2", args);
    EXPECT_EQ(args[4].value->boolean(), false);
    EXPECT_EQ(Rows(), (std::vector<std::string>{"1:0:A:L", "1:0:A\\B:L", "2:1:A:L", "3:2:Q:L"}));
    EXPECT_TRUE(std::filesystem::is_directory(dir_.path() / "A" / "B"));
}

// A host whose archive keeps its projects under another path.
class PrefixedArchive : public shell::ProjectPaths {
public:
    std::string OtherSide(const std::string& Project, bool InsArcPrj) const override {
        return InsArcPrj ? Project.substr(4) : "Old\\" + Project;
    }
};

TEST_F(MembershipTest, AHostsOwnOtherSideRenamesEveryRowThatCrosses) {
    PrefixedArchive prefixed;
    shell::ProjectPaths* previous = shell::SetProjectPaths(&prefixed);
    bool side = false;
    Add(1, 0, "Z");
    book_.PrjArcPrj(1, nullptr, nullptr, side);
    std::string q = "Q";
    bool live = false;
    book_.PrjArcPrjSingleProject(3, 2, nullptr, q, live);
    shell::SetProjectPaths(previous);
    EXPECT_EQ(Rows(), (std::vector<std::string>{"1:0:Old\\A:A", "1:0:Old\\A\\B:A", "1:0:Old\\Z:A", "2:1:A:L",
                                                "3:2:Old\\Q:A"}));
    EXPECT_TRUE(ArchiveFolderExists("Old/Z"));
}

TEST_F(MembershipTest, APathTooLongForTheColumnLeavesTheRowAsItWas) {
    auto before = Rows();
    book_.rProject = "Q";
    std::int32_t type = 2;
    std::string tooLong(256, 'x');
    book_.MoveABObject(3, type, tooLong, nullptr);
    std::string from;
    bool live = false;
    book_.MoveABObject2(3, type, from, live, tooLong, live, nullptr);
    EXPECT_EQ(Rows(), before);
}

TEST_F(MembershipTest, AMissingBookChangesNothingAndShowsNothing) {
    book_.AppPath = (dir_.path() / "none").string();
    book_.rProject = "A";
    std::string to = "C", a = "A";
    bool live = false;
    book_.MovePerson(1, to, nullptr);
    EXPECT_FALSE(book_.DeleteObjfromPrj(nullptr, a, live, 1, 0));
    book_.PrjArcPrj(1, nullptr, nullptr, live);
    EXPECT_TRUE(Messages().empty());
}

TEST(NotFoundMessage, FillsThePlacesAndBreaksTheLineInAnyCase) {
    EXPECT_EQ(FillNotFoundMessage("N%1 in VBCRLF %2 vbCrLf x", 7, "P vbcrlf Q"), "N7 in\nP vbcrlf Q\nx");
}

}  // namespace
}  // namespace zelvo::testing
