#include "personslist/persons_query.h"

#include "persons_book.h"
#include "platform/core/error.h"

namespace zelvo::testing {
namespace {

using PersonsQueryTest = PersonsBookTest;

TEST_F(PersonsQueryTest, ProjectQueryTextsAreBuiltAsTheListsExpect) {
    EXPECT_EQ(GetPrjPersonsQuery("A\\B", false, CurPrj),
              "SELECT PersonalData.[Personal ID] as [Personal ID],PersonalData.[FirstName],PersonalData.MiddleName,"
              "PersonalData.Surname,PersonalData.FullName,Projects.Project,Projects.InsArcPrj,Projects.[Owner ID] "
              ",Projects.[OwnerType]  From Projects,PersonalData WHERE (( (Projects.Project)=\"A\\B\") AND "
              "((Projects.InsArcPrj)=False) AND ((Projects.[Owner ID])=[PersonalData].[Personal ID]) and "
              "(Projects.[OwnerType]= 0) );");
    std::string below = GetPrjPersonsQuery("A", true, InsCurPrj);
    EXPECT_NE(below.find("WHERE (( Instr(1,[Projects].[Project] & \"\\\",\"A\\\",1)=1) AND ((Projects.InsArcPrj)=True)"),
              std::string::npos)
        << below;
    // A quote in a path is doubled, so the path stays one text.
    EXPECT_NE(GetPrjPersonsQuery("Say \"hi\"", false, CurPrj).find("(Projects.Project)=\"Say \"\"hi\"\"\")"),
              std::string::npos);
}

TEST_F(PersonsQueryTest, AllPersonsGivesOneRowAPersonOnTheGivenSide) {
    // Person 1 is in two live projects and is listed once; 3 is in none.
    EXPECT_EQ(Ids(GetAllPersonsQuery(false)).size(), 2u);
    EXPECT_EQ(IdSet(GetAllPersonsQuery(false)), (std::set{1, 2}));
    EXPECT_EQ(IdSet(GetAllPersonsQuery(true)), (std::set{4}));
}

TEST_F(PersonsQueryTest, NoPrjIsThePersonsOfNoProjectOnEitherSide) {
    EXPECT_EQ(IdSet(GetNoPrjPersonsQuery()), (std::set{3}));
    db_.Execute("Insert Into Projects ([Owner ID], OwnerType, Project, InsArcPrj) Values (3, 1, \"A\", False)");
    // A membership of an organization with the same number is not the person's.
    EXPECT_EQ(IdSet(GetNoPrjPersonsQuery()), (std::set{3}));
}

TEST_F(PersonsQueryTest, ProjectMembersLeaveOutSiblingsThatBeginAlike) {
    EXPECT_EQ(Ids(GetPrjPersonsQuery("A", false, CurPrj)), (std::vector{1}));
    EXPECT_EQ(Ids(GetPrjPersonsQuery("AB", false, CurPrj)), (std::vector{2}));
    EXPECT_EQ(Ids(GetPrjPersonsQuery("a\\b", false, CurPrj)), (std::vector{1}));
    // Below "A": "A" and "A\B" (one row a membership), never "AB".
    EXPECT_EQ(Ids(GetPrjPersonsQuery("A", false, InsCurPrj)), (std::vector{1, 1}));
    EXPECT_EQ(Ids(GetPrjPersonsQuery("a", false, InsCurPrj)), (std::vector{1, 1}));
    EXPECT_EQ(Ids(GetPrjPersonsQuery("A\\B", false, InsCurPrj)), (std::vector{1}));
    EXPECT_TRUE(Ids(GetPrjPersonsQuery("A\\", false, InsCurPrj)).empty());
    // Sides.
    EXPECT_TRUE(Ids(GetPrjPersonsQuery("Old", false, CurPrj)).empty());
    EXPECT_EQ(Ids(GetPrjPersonsQuery("Old", true, CurPrj)), (std::vector{4}));
    EXPECT_EQ(Ids(GetPrjPersonsQuery("old", true, InsCurPrj)), (std::vector{4}));
}

TEST_F(PersonsQueryTest, ColumnListFollowsTheTableAsItIsNow) {
    EXPECT_EQ(TableColumnList("PersonalData", DatabasePath()),
              "[PersonalData].[FirstName], [PersonalData].[MiddleName], [PersonalData].[SurName], "
              "[PersonalData].[FullName], [PersonalData].[Comments], [PersonalData].[Personal ID] ");
    // Read once before the change, so that a list kept from then would show.
    EXPECT_EQ(TableColumnList("Resources", DatabasePath()),
              "[Resources].[ResourceString], [Resources].[ResourceType], [Resources].[ResourceSubType], "
              "[Resources].[Resource ID] ");
    db_.Execute("Alter Table Resources Add Column Note Text(20)");
    EXPECT_EQ(TableColumnList("Resources", DatabasePath()),
              "[Resources].[ResourceString], [Resources].[ResourceType], [Resources].[ResourceSubType], "
              "[Resources].[Resource ID], [Resources].[Note] ");
    // The query made from it still reads, with the new column.
    auto rs = db_.OpenRecordset(GetOwnerResourcesQuery(2, oPersonal_ID, RsEmail));
    EXPECT_EQ(ValueConv::ToText(rs("ResourceString")), "smith@example.com");
    EXPECT_TRUE(rs("Note").IsNull());

    try {
        TableColumnList("Nope", DatabasePath());
        FAIL() << "no error for a missing table";
    } catch (const Error& e) {
        EXPECT_EQ(e.number(), 3265);
    }
}

TEST_F(PersonsQueryTest, OwnerResourcesAreOfOneOwnerAndOneKind) {
    std::vector<std::string> mails;
    for (auto rs = db_.OpenRecordset(GetOwnerResourcesQuery(1, oPersonal_ID, RsEmail)); !rs.IsEOF(); rs.MoveNext())
        mails.push_back(ValueConv::ToText(rs("ResourceString")));
    EXPECT_EQ(mails, (std::vector<std::string>{"ivan@example.org", "ivanov@work.example"}));
    // The phone of person 1 is of another kind; organization 1 owns nothing.
    EXPECT_EQ(db_.OpenRecordset(GetOwnerResourcesQuery(1, oPersonal_ID, rsPhone)).RecordCount(), 1);
    EXPECT_EQ(db_.OpenRecordset(GetOwnerResourcesQuery(1, oOrganization_ID, RsEmail)).AbsolutePosition(), -1);
}

}  // namespace
}  // namespace zelvo::testing
