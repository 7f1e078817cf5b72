// The language lookup behind every text of the library.
//
// No text is final in the code: each caption, prompt and message stands
// there in English and is fetched through LngText with a section (the place,
// e.g. "frmMain.ReadData") and a key (the control or a short code). The
// language resources component answers with the text of the person's
// language, or with the default when it has none. Line breaks stand in a
// text as " vbcrlf " and "%1"/"%2" as placeholders; callers replace them.
//
// To be found by the catalogue generator (scripts/lang-catalogue.py), a call
// is written with three string literals: LngText("Section", "Key", "Default").
#pragma once

#include <string>

namespace zelvo {

// The text of Section/Key in the person's language; `Default` when there is
// none.
std::string LngText(const std::string& Section, const std::string& Key, const std::string& Default);

// The path of the help file in the person's language, "" when there is none.
std::string LngHelpFile();

}  // namespace zelvo
