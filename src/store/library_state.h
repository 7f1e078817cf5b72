// The state the whole library shares, and where the book is.
//
// One thread runs the library, so this is plain global state. Every entry of
// the automation surface copies its object's AppPath into `AppPath` before it
// reaches the data; the paths below are made from it each time they are
// asked for.
#pragma once

#include <string>

#include "platform/dao/dbengine.h"
#include "platform/shell/shell_paths.h"

namespace zelvo {

// The folder the host gave; "" means the folder of the running program.
extern std::string AppPath;

// The book in use: <data folder>/AddressBookW.mdb for the current AppPath.
// Whether the file exists is not tested.
std::string DatabasePath();

// The same folder with "AddressBook.mdb", the book of earlier versions. Only
// CorrectDB looks for it, to bring its data over.
std::string OldDatabasePath();

// The shared helpers of the library-wide state, made on first use.
inline shell::ShellPaths& ShellPaths() { return shell::SharedShellPaths(); }
inline dao::DBEngine& DBEngine() { return dao::Engine(); }

// The name of the book and of the book of earlier versions.
inline constexpr const char* kDatabaseFileName = "AddressBookW.mdb";
inline constexpr const char* kOldDatabaseFileName = "AddressBook.mdb";

}  // namespace zelvo
