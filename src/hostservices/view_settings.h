// The views a person chose for the library's lists, kept between runs in
// Custom.ini of the settings folder (section "ZELVO", key "View" and the
// list's number, the value the list's View in decimal).
//
// The file is UTF-16 with a byte-order mark, as the settings of the shell
// family are; a file without the mark is read as UTF-8 (plain ASCII among
// it) and rewritten as UTF-16, its entries whole, at the first write. Neither call
// fails: a missing or unreadable file gives the default, a file that cannot
// be written loses the setting without a word.
#pragma once

#include <cstdint>
#include <string>

namespace zelvo {

// The view saved for list `ListNumber` in the settings of the application
// folder `AppPath`, else `Default`. A value that is not a number reads as
// 0, as the shell's settings always have.
std::int32_t ReadViewSetting(const std::string& AppPath, std::int32_t ListNumber, std::int32_t Default);
void WriteViewSetting(const std::string& AppPath, std::int32_t ListNumber, std::int32_t View);

}  // namespace zelvo
