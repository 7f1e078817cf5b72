// What the tests of the address book window share: the sample persons book
// with the shell's current folder cleared and the archive side present
// (the folder of the archived project "Old"), and the rows of a list as
// one text.
#pragma once

#include <filesystem>
#include <string>

#include "personslist/persons_book.h"
#include "platform/ui/listview.h"

namespace zelvo::testing {

// The rows' texts in list order, joined by `separator`.
inline std::string RowTexts(const ui::ListView& lv, const char* separator = ",") {
    std::string s;
    for (int i = 1; i <= lv.ListItems().Count(); ++i) s += (i > 1 ? separator : "") + lv.ListItems().Item(i).Text();
    return s;
}

class PersonsWindowTest : public PersonsBookTest {
protected:
    void SetUp() override {
        PersonsBookTest::SetUp();
        ShellPaths().SetCurrentFolder({});
        std::filesystem::create_directories(ShellPaths().GetArchiveFolder() + "Old");
    }
    void TearDown() override {
        ShellPaths().SetCurrentFolder({});
        PersonsBookTest::TearDown();
    }
};

}  // namespace zelvo::testing
