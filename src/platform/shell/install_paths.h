// Where the library finds the files it ships with (the language catalogues
// and the help pages), in the build tree and once installed.
#pragma once

#include <string>

namespace zelvo::shell {

// The folder of the catalogues and help pages, with a trailing separator:
// $ZELVO_LANG_DIR when set; else "lang" beside the program when it is there
// (the programs of the build tree); else the installed folder found from the
// library's own file (PREFIX/share/zelvo/lang beside PREFIX/lib), so that a
// host anywhere on the system gets the catalogue of the library it loaded.
std::string LanguageFolder();

// The folder of the file that holds this code: the shared library, or the
// program it is linked into. "" when it cannot be told.
std::string CodeFolder();

}  // namespace zelvo::shell
