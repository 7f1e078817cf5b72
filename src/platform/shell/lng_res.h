// The language resources component: texts of one language, by module,
// section and key, read from a catalogue file.
//
// Catalogues are UTF-8 files named <language>.lng in the language folder:
//
//   ; comment
//   [Section]
//   Key=Text
//
// Within a section a key appears once; a text runs to the end of its line
// (leading and trailing blanks are dropped). Names of sections and keys
// ignore case.
//
// The language is ZELVO_LANG when it is set, else the person's locale
// (LC_ALL, LC_MESSAGES, LANG; "de_DE.UTF-8" gives "de"), else English. The
// language folder is ZELVO_LANG_DIR when it is set, else "lang" beside the
// program. A catalogue that is missing or unreadable answers every question
// with the default.
#pragma once

#include <map>
#include <memory>
#include <string>

namespace zelvo::shell {

class LngRes {
public:
    // Reads the catalogue of the chosen language (once per process for each
    // folder and language; later calls share it).
    LngRes();

    // The text of `section`/`key`; `def` when the catalogue has none. The
    // module name is accepted for the shell's call and not used: one library
    // has one catalogue.
    std::string GetMUIString(const std::string& module, const std::string& section, const std::string& key,
                             const std::string& def) const;

    // The help file `name` ("zelvo.chm") in the chosen language: the HTML page
    // <language folder>/<language>/<stem>.html, else the English one; "" when
    // neither exists.
    std::string GetHelpFile(const std::string& name) const;

    // The language chosen, e.g. "en", and the folder of the catalogues.
    const std::string& Language() const;
    const std::string& Folder() const;

    struct Catalogue;

private:
    std::shared_ptr<const Catalogue> catalogue_;
};

// Reads a catalogue file into section -> key -> text, names in lower case.
// Throws `Error` 53 when the file cannot be read; a line that is neither a
// section, a key=text pair, a comment nor blank is 75 with its line number.
std::map<std::string, std::map<std::string, std::string>> ReadCatalogue(const std::string& path);

// Drops what the process remembers of catalogues, so that a changed
// ZELVO_LANG or file is read again (for tests).
void ForgetCatalogues();

}  // namespace zelvo::shell
