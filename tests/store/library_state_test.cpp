// Where the book is: the library-wide AppPath decides, and an empty one
// means the folder of the running program.
#include "store/library_state.h"

#include <gtest/gtest.h>

#include "store_test_util.h"

namespace zelvo::testing {
namespace {

using LibraryStateTest = StoreTest;

TEST_F(LibraryStateTest, BookLivesInTheDataFolderOfAppPath) {
    EXPECT_EQ(DatabasePath(), app() + "/AddressBookW.mdb");
    EXPECT_EQ(OldDatabasePath(), app() + "/AddressBook.mdb");
    AppPath = app() + "/";
    EXPECT_EQ(DatabasePath(), app() + "/AddressBookW.mdb");
    // Each call follows the AppPath of the moment, as each automation entry
    // overwrites it.
    AppPath = "/elsewhere";
    EXPECT_EQ(DatabasePath(), "/elsewhere/AddressBookW.mdb");
    AppPath.clear();
    EXPECT_EQ(DatabasePath(), program() + "/AddressBookW.mdb");
    EXPECT_EQ(OldDatabasePath(), program() + "/AddressBook.mdb");
}

}  // namespace
}  // namespace zelvo::testing
