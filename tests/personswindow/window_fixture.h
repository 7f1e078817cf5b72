// What the tests of the address book window share: the sample persons book
// with the shell's current folder cleared and the archive side present
// (the folder of the archived project "Old").
#pragma once

#include <filesystem>
#include <string>

#include "personslist/persons_book.h"

namespace zelvo::testing {

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
