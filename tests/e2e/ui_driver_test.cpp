// zelvo ui, run as a program over a small book: each step of a script, the
// JSON it prints, and the errors of a script that cannot run.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "support/json_check.h"
#include "support/ui_script_fixture.h"

namespace zelvo::testing {
namespace {

class UiDriverTest : public UiScriptTest {
protected:
    void SetUp() override {
        UiScriptTest::SetUp();
        // The folders of the projects, the archived one among them.
        for (const char* folder : {"/A/B", "/AB", "/.archive/Old"}) std::filesystem::create_directories(App() + folder);
    }
};

TEST_F(UiDriverTest, APersonWalksTheFiltersAndTheSidesAndEndsWithOK) {
    Outcome r = Ui(
        "dump\n"
        "click frmPersons.tbPrj:AllPersons\n"
        "dump frmPersons\n"
        "click frmPersons.tbPrj:Projects\n"
        "dump\n"
        "click frmPersons.tbPrj:Projects\n"
        "click frmPersons.tbPrj:CurPrj\n"
        "dump\n"
        "select frmPersons.LvwUser 1\n"
        "click frmPersons.cmdOK\n",
        {"ShowAddressBook", "--set", "rProject=AB"});
    ASSERT_EQ(r.status, 0) << r.err;
    std::vector<std::string> lines = Lines(r.out);
    ASSERT_EQ(lines.size(), 5u) << r.out;
    for (const auto& l : lines) EXPECT_TRUE(JsonCheck::IsValid(l)) << l;

    // Opened on the project given, its path in the text box.
    EXPECT_TRUE(Has(lines[0], "\"form\": \"frmPersons\", \"caption\": \"Address Book\"")) << lines[0];
    EXPECT_TRUE(Has(lines[0], "\"txtPrj\": {\"text\": \"AB\"")) << lines[0];
    EXPECT_TRUE(Has(lines[0], "\"tag\": 2, \"text\": \"Smith\", \"icon\": \"User\"")) << lines[0];
    EXPECT_TRUE(Has(lines[0], "\"CurPrj\": {\"pressed\": true")) << lines[0];
    // All persons of the live side, then of the archive.
    EXPECT_TRUE(Has(lines[1], "\"text\": \"Smith\"") && Has(lines[1], "\"text\": \"Иванов Иван\"")) << lines[1];
    EXPECT_TRUE(Has(lines[1], "\"AllPersons\": {\"pressed\": true")) << lines[1];
    EXPECT_TRUE(Has(lines[2], "\"text\": \"Archive Person\"") && !Has(lines[2], "Smith")) << lines[2];
    EXPECT_TRUE(Has(lines[2], "\"image\": \"Archive\", \"tip\": \"Go to Projects\"")) << lines[2];
    // Back on the live side, the project again.
    EXPECT_TRUE(Has(lines[3], "\"text\": \"Smith\"") && !Has(lines[3], "Иванов")) << lines[3];
    EXPECT_EQ(lines[4], "{\"result\": null, \"byref\": {}}");
}

TEST_F(UiDriverTest, RowsTabsAndTextBoxesTakeWhatAPersonCanDo) {
    Outcome r = Ui("click frmPersons.tbPrj:AllPersons\n"
                   "select frmPersons.LvwUser 2,1\n"
                   "dblclick frmPersons.LvwUser 2\n"
                   "close frmMain\n"
                   "select frmPersons.SSTab1 3\n"
                   "type frmPersons.txtPrj \"typed\\there\"\n"
                   "dump\n"
                   "click frmPersons.cmdOK\n",
                   {"ShowAddressBook"});
    ASSERT_EQ(r.status, 0) << r.err;
    std::vector<std::string> lines = Lines(r.out);
    ASSERT_EQ(lines.size(), 2u) << r.out;
    // The double click leaves its row the one selected.
    EXPECT_TRUE(Has(lines[0], "\"text\": \"Smith\", \"icon\": \"User\", \"smallIcon\": \"User\", \"subItems\": [], "
                              "\"selected\": false")) << lines[0];
    EXPECT_TRUE(Has(lines[0], "\"text\": \"Иванов Иван\", \"icon\": \"User\", \"smallIcon\": \"User\", "
                              "\"subItems\": [], \"selected\": true")) << lines[0];
    EXPECT_TRUE(Has(lines[0], "\"SSTab1\": {\"tab\": 2")) << lines[0];
    // The project's box shows the project; a person cannot type into it.
    EXPECT_TRUE(Has(r.err, "frmPersons.txtPrj is disabled, hidden or read-only; nothing happens")) << r.err;
    EXPECT_FALSE(Has(lines[0], "typed"));
}

TEST_F(UiDriverTest, ThePickerIsAnsweredWithAPathOrCancel) {
    Outcome r = Ui("click frmPersons.tbPrj:Browse\n"
                   "answer cancel\n"
                   "click frmPersons.tbPrj:Browse\n"
                   "answer A\\B\n"
                   "dump\n"
                   "click frmPersons.cmdCancel\n",
                   {"ShowAddressBook"});
    ASSERT_EQ(r.status, 0) << r.err;
    std::vector<std::string> lines = Lines(r.out);
    ASSERT_EQ(lines.size(), 4u) << r.out;
    EXPECT_EQ(lines[0], "{\"picker\": {\"root\": \"" + App() +
                            "/\", \"title\": \"Choosing a component project\", \"path\": \"\"}}");
    EXPECT_TRUE(Has(lines[1], "\"path\": \"\"")) << lines[1];
    EXPECT_TRUE(Has(lines[2], "\"txtPrj\": {\"text\": \"A\\\\B\"")) << lines[2];
    EXPECT_TRUE(Has(lines[2], "\"text\": \"Иванов Иван\"")) << lines[2];
}

TEST_F(UiDriverTest, APersonIsAddedSummarizedAndDeletedThroughTheWindow) {
    Sql("Insert Into Resources (ResourceString, ResourceType) Values (\"ivan.example.org\", 1)");
    Sql("Insert Into ResourcesOwners ([Resource ID], [Owner ID], OwnerType) Values (5, 1, 0)");
    Outcome r = Ui("click frmPersons.tbPrj:AllPersons\n"
                   "select frmPersons.LvwUser 2\n"
                   "dump\n"
                   "click frmPersons.Toolbar1:New\n"
                   "answer cancel\n"
                   "answer 1\n"
                   "close frmMain\n"
                   "click frmPersons.tbPrj:NoPrj\n"
                   "dump\n"
                   "select frmPersons.LvwUser 1,2\n"
                   "click frmPersons.Toolbar1:Del\n"
                   "dump\n"
                   "click frmPersons.cmdOK\n",
                   {"ShowAddressBook"});
    ASSERT_EQ(r.status, 0) << r.err;
    std::vector<std::string> lines = Lines(r.out);
    ASSERT_EQ(lines.size(), 6u) << r.out;
    for (const auto& l : lines) EXPECT_TRUE(JsonCheck::IsValid(l)) << l;
    // The summary of the second row, Иванов Иван.
    EXPECT_TRUE(Has(lines[0], "\"txtName\": {\"text\": \"Иванов Иван\"")) << lines[0];
    EXPECT_TRUE(Has(lines[0], "\"text\": \"ivanov@work.example\", \"icon\": \"Email\"")) << lines[0];
    EXPECT_TRUE(Has(lines[0], "\"text\": \"ivan.example.org\", \"icon\": \"IE\"")) << lines[0];
    EXPECT_TRUE(Has(lines[0], "\"text\": \"A\\\\B\", \"icon\": \"Prj\"")) << lines[0];
    // New under all persons: the picker cancelled, the person is told.
    EXPECT_TRUE(Has(lines[1], "\"picker\"")) << lines[1];
    EXPECT_TRUE(Has(lines[2], "\"msgbox\": {\"prompt\": \"The added person will be unsorted!\", \"style\": 64"))
        << lines[2];
    // Unsorted: the new person stands beside person 3, and both go.
    EXPECT_TRUE(Has(lines[3], "\"tag\": 5,") && Has(lines[3], "\"tag\": 3,")) << lines[3];
    EXPECT_TRUE(Has(lines[4], "\"LvwUser\": {\"rows\": []")) << lines[4];
    EXPECT_EQ(lines[5], "{\"result\": null, \"byref\": {}}");
}

TEST_F(UiDriverTest, ADoubleClickOnAMailAddressOfTheSummaryWritesALetter) {
    Outcome r = Ui("click frmPersons.tbPrj:AllPersons\n"
                   "select frmPersons.LvwUser 2\n"
                   "dblclick frmPersons.lvwEmail 2\n"
                   "close frmPersons\n",
                   {"ShowAddressBook"});
    ASSERT_EQ(r.status, 0) << r.err;
    std::vector<std::string> lines = Lines(r.out);
    ASSERT_EQ(lines.size(), 2u) << r.out;
    EXPECT_TRUE(Has(lines[0], "\"shell\"") && Has(lines[0], "ivanov@work.example")) << lines[0];
}

TEST_F(UiDriverTest, ThePopupMenuSwitchesTheViewForTheNextWindowToo) {
    Outcome r = Ui("click frmPersons.mnPop:ViewPhoto\n"
                   "click frmPersons.cmdCancel\n",
                   {"ShowAddressBook"});
    ASSERT_EQ(r.status, 0) << r.err;
    r = Ui("dump\nclick frmPersons.mnPop:ViewList\nclick frmPersons.cmdCancel\n", {"ShowAddressBook"});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_TRUE(Has(r.out, "\"ViewPhoto\": {\"caption\": \"Photo\", \"checked\": true")) << r.out;
    r = Ui("click frmPersons.mnPop:Nothing\n", {"ShowAddressBook"});
    EXPECT_NE(r.status, 0);
    EXPECT_TRUE(Has(r.err, "frmPersons.mnPop has no item 'Nothing'")) << r.err;
}

TEST_F(UiDriverTest, AnEmptyListGreysTheCommandsThatNeedAPerson) {
    Outcome r = Ui("dump\nclose frmPersons\n", {"ShowAddressBook", "--set", "rProject=Nobody here"});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_TRUE(Has(r.out, "\"LvwUser\": {\"rows\": [], \"enabled\": true")) << r.out;
    EXPECT_TRUE(Has(r.out, "\"Export\": {\"pressed\": false, \"enabled\": false")) << r.out;
    EXPECT_TRUE(Has(r.out, "\"cmdPersProp\": {\"caption\": \"Properties\", \"enabled\": false")) << r.out;
}

TEST_F(UiDriverTest, InASpaceExitEndsTheWindowAndDesktopCallsPrintAsTheyHappen) {
    // A manual of its own, so that Help asks the desktop to show it.
    std::filesystem::create_directories(dir_.File("lang/en"));
    std::ofstream(dir_.File("lang/en/zelvo.html")) << "<html></html>";
    std::ofstream(dir_.File("script.txt")) << "click frmPersons.cmdOK\n"
                                              "click frmPersons.Toolbar1:Help\n"
                                              "dump\n"
                                              "click frmPersons.Toolbar1:Exit\n";
    Outcome r = RunProgram(std::string(ZELVO_BIN_DIR) + "/zelvo",
                           {"ui", "--app-path", App(), "--script", dir_.File("script.txt"), "SpaceNavigate", "--arg",
                            "SpaceID=5", "--arg", "spaceItemNumber=3"},
                           dir_.File("stderr.txt"), "ZELVO_LANG_DIR=" + ShellQuote(dir_.File("lang")));
    ASSERT_EQ(r.status, 0) << r.err;
    std::vector<std::string> lines = Lines(r.out);
    ASSERT_EQ(lines.size(), 3u) << r.out;
    EXPECT_TRUE(Has(r.err, "frmPersons.cmdOK is disabled, hidden or read-only; nothing happens")) << r.err;
    EXPECT_EQ(lines[0], "{\"shell\": {\"action\": \"help\", \"file\": \"" + dir_.File("lang") +
                            "/en/zelvo.html\", \"topic\": \"frmMain.HTM\"}}");
    EXPECT_TRUE(Has(lines[1], "\"Exit\": {\"pressed\": false, \"enabled\": true, \"visible\": true")) << lines[1];
    EXPECT_TRUE(Has(lines[1], "\"cmdCancel\": {\"caption\": \"Cancel\", \"enabled\": true, \"visible\": false"))
        << lines[1];
    EXPECT_EQ(lines[2], "{\"result\": null, \"byref\": {}}");
}

TEST_F(UiDriverTest, AMissingManualGivesTheWarningThatTheAnswerCloses) {
    std::ofstream(dir_.File("script.txt")) << "click frmPersons.Toolbar1:Help\ndump\nanswer 1\nclose frmPersons\n";
    Outcome r = RunProgram(std::string(ZELVO_BIN_DIR) + "/zelvo",
                           {"ui", "--app-path", App(), "--script", dir_.File("script.txt"), "ShowAddressBook"},
                           dir_.File("stderr.txt"), "ZELVO_LANG_DIR=" + ShellQuote(dir_.File("nolang")));
    ASSERT_EQ(r.status, 0) << r.err;
    std::vector<std::string> lines = Lines(r.out);
    ASSERT_EQ(lines.size(), 3u) << r.out;
    EXPECT_EQ(lines[0],
              "{\"msgbox\": {\"prompt\": \"The help file\\nzelvo.html\\nwas not found!\", \"style\": 48, "
              "\"title\": \"Zelvo\"}}");
    EXPECT_TRUE(Has(lines[1], "\"form\": \"frmPersons\""));

    // An answer that is no button of the box is a script error with its line.
    std::ofstream(dir_.File("script.txt")) << "click frmPersons.Toolbar1:Help\nanswer 6\n";
    r = RunProgram(std::string(ZELVO_BIN_DIR) + "/zelvo",
                   {"ui", "--app-path", App(), "--script", dir_.File("script.txt"), "ShowAddressBook"},
                   dir_.File("stderr.txt"), "ZELVO_LANG_DIR=" + ShellQuote(dir_.File("nolang")));
    EXPECT_EQ(r.status, 2);
    EXPECT_TRUE(Has(r.err, "script.txt:2: the message box has the buttons 1 OK, not '6'")) << r.err;

    // No answer left: the box is cancelled (OK for a box with only OK) and
    // the window is closed by its frame.
    std::ofstream(dir_.File("script.txt")) << "click frmPersons.Toolbar1:Help\n";
    r = RunProgram(std::string(ZELVO_BIN_DIR) + "/zelvo",
                   {"ui", "--app-path", App(), "--script", dir_.File("script.txt"), "ShowAddressBook"},
                   dir_.File("stderr.txt"), "ZELVO_LANG_DIR=" + ShellQuote(dir_.File("nolang")));
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_TRUE(Has(r.err, "no answer left for the message box; it is cancelled")) << r.err;
    EXPECT_TRUE(Has(r.err, "the script ended while frmPersons was open; it is closed by its frame")) << r.err;
}

TEST_F(UiDriverTest, NamesOfEveryKindStayWholeInTheJson) {
    Sql("Insert Into PersonalData (FullName) Values (\"Tab\there \"\"quoted\"\" \\back\")");
    // The longest name the book takes (255 characters), each of two bytes.
    std::string longName;
    for (int i = 0; i < 255; ++i) longName += "ж";
    Sql("Insert Into PersonalData (FullName) Values (\"" + longName + "\")");
    Sql("Insert Into PersonalData (FullName) Values (\"שלום עולם 😀\")");
    Outcome r = Ui("dump\nclose frmPersons\n", {"ShowAddressBook"});
    ASSERT_EQ(r.status, 0) << r.err;
    std::vector<std::string> lines = Lines(r.out);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_TRUE(JsonCheck::IsValid(lines[0]));
    EXPECT_TRUE(Has(lines[0], "\"text\": \"Tab\\there \\\"quoted\\\" \\\\back\"")) << lines[0].substr(0, 2000);
    EXPECT_TRUE(Has(lines[0], "\"text\": \"" + longName + "\""));
    EXPECT_TRUE(Has(lines[0], "\"text\": \"שלום עולם 😀\""));
}

TEST_F(UiDriverTest, ScriptsThatCannotRunAreErrorsWithTheirLine) {
    struct Case {
        const char* script;
        const char* error;
    } cases[] = {
        {"dump\nwiggle frmPersons.LvwUser\n", "script.txt:2: unknown step 'wiggle'"},
        {"select frmPersons.LvwUser 0\n", "script.txt:1: select takes FORM.LIST and row numbers from 1"},
        {"type frmPersons.txtPrj \"unclosed\n", "script.txt:1: a text that starts with \" must be one JSON string"},
        {"\n# a comment\nclick frmPersons.NoSuchButton\n", "script.txt:3: frmPersons has no control 'NoSuchButton'"},
        {"click frmPersons.tbPrj:Nope\n", "script.txt:1: frmPersons.tbPrj has no button 'Nope'"},
        {"select frmPersons.LvwUser 9\n", "script.txt:1: frmPersons.LvwUser has 1 rows, not 9"},
        {"dump frmMain\n", "script.txt:1: no window 'frmMain' is open"},
        {"answer 1\n", "script.txt:1: answer, but no dialog is waiting"},
        {"click frmPersons.txtPrj\n", "script.txt:1: cannot click frmPersons.txtPrj"},
    };
    for (const Case& c : cases) {
        Outcome r = Ui(c.script, {"ShowAddressBook"});
        EXPECT_EQ(r.status, 2) << c.script;
        EXPECT_TRUE(Has(r.err, c.error)) << c.script << "\n" << r.err;
    }
    Outcome r = RunProgram(std::string(ZELVO_BIN_DIR) + "/zelvo",
                           {"ui", "--script", dir_.File("no-such-script"), "ShowAddressBook"}, dir_.File("stderr.txt"));
    EXPECT_EQ(r.status, 2);
    EXPECT_TRUE(Has(r.err, "cannot read the script " + dir_.File("no-such-script"))) << r.err;

    // Steps left when the call has returned: the script did not run as written.
    r = Ui("close frmPersons\ndump\n", {"ShowAddressBook"});
    EXPECT_EQ(r.status, 1);
    EXPECT_TRUE(Has(r.err, "script.txt:2: the call returned with 1 step of the script unused")) << r.err;
}

TEST_F(UiDriverTest, AMissingBookOpensAnEmptyWindowAndSaysWhyOnce) {
    std::filesystem::remove(App() + "/AddressBookW.mdb");
    Outcome r = Ui("dump\nclick frmPersons.tbPrj:AllPersons\nclick frmPersons.cmdCancel\n", {"ShowAddressBook"});
    EXPECT_EQ(r.status, 1) << r.err;
    EXPECT_TRUE(Has(r.out, "\"rows\": []")) << r.out;
    EXPECT_TRUE(Has(r.out, "\"simpleText\": \"Could not find file")) << r.out;
    size_t reports = 0;
    for (size_t at = r.err.find("error 3024"); at != std::string::npos; at = r.err.find("error 3024", at + 1)) ++reports;
    EXPECT_EQ(reports, 1u) << r.err;
}

}  // namespace
}  // namespace zelvo::testing
