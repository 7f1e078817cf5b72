#include "projects/project_sql.h"

#include "projects_book.h"

namespace zelvo::testing {
namespace {

class ProjectConditionTest : public ProjectsBookTest {
protected:
    void SetUp() override {
        ProjectsBookTest::SetUp();
        Add(1, 0, "A");
        Add(2, 1, "A\\B");
        Add(3, 2, "AB");
        Add(4, 4, "a\\c");
        Add(5, 0, "X\\A");
        Add(6, 0, "A", true);
        Add(7, 0, "\\Lead");
    }
    std::vector<std::string> Subtree(const std::string& path, bool archive = false) {
        return Select(ProjectRowsSQL(path, archive, InsCurPrj));
    }
    std::vector<std::string> Exact(const std::string& path, bool archive = false) {
        return Select(ProjectRowsSQL(path, archive, CurPrj));
    }
};

TEST(ProjectSqlText, TheTextsHostsBindTo) {
    EXPECT_EQ(OwnerProjectsSQL(12, 4),
              "Select * from Projects WHERE (((Projects.[Owner ID])=12) and Projects.[OwnerType]=4);");
    EXPECT_EQ(PersonProjectsSQL(7), OwnerProjectsSQL(7, 0));
    EXPECT_EQ(OwnerProjectRowsSQL(3, 1),
              "SELECT Projects.[Owner ID], Projects.OwnerType, Projects.Project, Projects.InsArcPrj From Projects "
              "WHERE (((Projects.[Owner ID])=3) AND ((Projects.OwnerType)=1));");
    EXPECT_EQ(ProjectRowsSQL("A\\B", true, InsCurPrj),
              "Select Projects.[Owner ID] ,Projects.[OwnerType] ,Projects.[Project] ,Projects.[InsArcPrj] From "
              "Projects Where ( (Instr(1,[Projects].[Project] & \"\\\",\"A\\B\\\",1)=1) and "
              "(Projects.InsArcPrj=True)  ) ;");
}

TEST_F(ProjectConditionTest, SubtreeTakesSubprojectsOfEveryKindButNotLookAlikes) {
    EXPECT_EQ(Subtree("A"), (std::vector<std::string>{"1:0:A", "2:1:A\\B", "4:4:a\\c"}));
    EXPECT_EQ(Exact("A"), (std::vector<std::string>{"1:0:A"}));
    EXPECT_EQ(Subtree("a\\B"), (std::vector<std::string>{"2:1:A\\B"}));
}

TEST_F(ProjectConditionTest, TheSideIsPartOfEveryProject) {
    EXPECT_EQ(Subtree("A", true), (std::vector<std::string>{"6:0:A"}));
    EXPECT_EQ(Exact("X\\A", true), (std::vector<std::string>{}));
}

TEST_F(ProjectConditionTest, TheEmptyPathTakesOnlyPathsThatBeginWithABackslash) {
    EXPECT_EQ(Subtree(""), (std::vector<std::string>{"7:0:\\Lead"}));
}

// Paths as people type them and folders name them: each finds its own row
// and nothing else, whether exactly or as a subtree.
TEST_F(ProjectConditionTest, PathsWithSpecialCharactersFindOnlyThemselves) {
    const std::vector<std::string> paths = {
        "Say \"hi\"", "[Draft]", "a*", "a?", "#1", "100%", "O'Brien", "  lead", "Проект\\Этап", "end\"",
        std::string(250, 'x')};
    int owner = 100;
    for (const auto& p : paths) Add(owner++, 0, p);
    owner = 100;
    for (const auto& p : paths) {
        std::vector<std::string> expected = {std::to_string(owner++) + ":0:" + p};
        EXPECT_EQ(Exact(p), expected) << p;
        EXPECT_EQ(Subtree(p), expected) << p;
    }
    EXPECT_EQ(Exact("ПРОЕКТ\\этап").size(), 1u);
    EXPECT_EQ(Exact("a"), (std::vector<std::string>{"1:0:A"}));  // the engine's compare ignores case
    EXPECT_TRUE(Subtree("[Draft").empty());
}

}  // namespace
}  // namespace zelvo::testing
