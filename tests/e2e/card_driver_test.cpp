// zelvo ui over the person card: the host's ShowPersProp opens it, a script
// types and picks as a person would, and the book holds what was typed.
#include <gtest/gtest.h>

#include <filesystem>

#include "platform/core/value_conv.h"
#include "support/json_check.h"
#include "support/ui_script_fixture.h"

namespace zelvo::testing {
namespace {

class CardDriverTest : public UiScriptTest {
protected:
    // "FirstName/MiddleName/Surname/FullName" of a person, read from the file.
    std::string Stored(int id) {
        dao::Database db = DBEngine().OpenDatabase(App() + "/AddressBookW.mdb", false, true, "Access");
        auto rs = db.OpenRecordset("Select * From PersonalData Where [Personal ID]=" + std::to_string(id));
        std::string s;
        for (const char* c : {"FirstName", "MiddleName", "Surname", "FullName"})
            s += (s.empty() ? "" : "/") + ValueConv::ToText(rs(c));
        rs.Close();
        db.Close();
        return s;
    }
};

TEST_F(CardDriverTest, ATypedLastNameIsInTheBookBeforeTheCardCloses) {
    // The close box only closes: what is in the book was written by the typing.
    Outcome r = Ui(
        "dump\n"
        "type frmMain.txtFamily Noone\n"
        "dump frmMain\n"
        "close frmMain\n",
        {"ShowPersProp", "--arg", "Personal_ID=3"});
    ASSERT_EQ(r.status, 0) << r.err;
    std::vector<std::string> lines = Lines(r.out);
    ASSERT_EQ(lines.size(), 3u) << r.out;
    for (const auto& l : lines) EXPECT_TRUE(JsonCheck::IsValid(l)) << l;

    EXPECT_TRUE(Has(lines[0], "\"form\": \"frmMain\", \"caption\": \" - the reference data\"")) << lines[0];
    EXPECT_TRUE(Has(lines[0], "\"txtFamily\": {\"text\": \"Nobody\"")) << lines[0];
    EXPECT_TRUE(Has(lines[0], "\"SSTab1\": {\"tab\": 1, \"tabs\": [\"Business\", \"Home\", \"Projects\"]")) << lines[0];
    // The suggestions follow the typing; the display name stays empty.
    EXPECT_TRUE(Has(lines[1], "\"Combo1\": {\"text\": \"\", \"listIndex\": -1, \"list\": [\"Noone No Name\", "
                              "\"No Name Noone\", \"Noone N. N.\", \"N. N. Noone\"]"))
        << lines[1];
    EXPECT_EQ(Stored(3), "Noone/No/Name/");
}

TEST_F(CardDriverTest, TheDisplayNameIsAPickedSuggestionOrWhateverIsTyped) {
    Outcome r = Ui(
        "select frmMain.Combo1 2\n"
        "dump frmMain\n"
        "type frmMain.Combo1 \"Ваня\"\n"
        "dump frmMain\n"
        "click frmMain.cmdCancel\n",
        {"ShowPersProp", "--arg", "Personal_ID=1"});
    ASSERT_EQ(r.status, 0) << r.err;
    std::vector<std::string> lines = Lines(r.out);
    ASSERT_EQ(lines.size(), 3u) << r.out;
    EXPECT_TRUE(Has(lines[0], "\"Combo1\": {\"text\": \"Иван Иванович Иванов\"")) << lines[0];
    // A text that is no suggestion stands last in the list.
    EXPECT_TRUE(Has(lines[1], "\"И. И. Иванов\", \"Ваня\"]")) << lines[1];
    EXPECT_EQ(Stored(1), "Иванов/Иван/Иванович/Ваня");
}

TEST_F(CardDriverTest, ACardInAProjectThatDoesNotHoldThePersonIsEmptyAndSilent) {
    Outcome r = Ui(
        "type frmMain.txtFamily Ghost\n"
        "dump frmMain\n"
        "click frmMain.cmdOK\n",
        {"ShowPersProp", "--arg", "Personal_ID=1", "--set", "rProject=AB"});
    ASSERT_EQ(r.status, 0) << r.err;
    std::vector<std::string> lines = Lines(r.out);
    ASSERT_EQ(lines.size(), 2u) << r.out;
    EXPECT_FALSE(Has(r.out, "msgbox")) << r.out;
    EXPECT_TRUE(Has(lines[0], "\"LvwProjects\": {\"rows\": []")) << lines[0];
    EXPECT_EQ(Stored(1), "Иванов/Иван/Иванович/Иванов Иван");
    EXPECT_EQ(Stored(2), "Smith///Smith");
}

}  // namespace
}  // namespace zelvo::testing
