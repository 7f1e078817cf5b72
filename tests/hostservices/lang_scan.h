// Finds the texts of the library in its sources: every call
// LngText("Section", "Key", "Default") written with three string literals,
// and writes them as the English catalogue that translators start from.
#pragma once

#include <string>
#include <vector>

namespace zelvo::testing {

struct SourceText {
    std::string section, key, text;
    std::string where;  // "file:line"
};

// The calls in one file's text. `file` only names them.
std::vector<SourceText> ScanSource(const std::string& source, const std::string& file);

// The calls in every .h and .cpp file under `folder`, in path order.
std::vector<SourceText> ScanFolder(const std::string& folder);

// The catalogue of `texts`: sections in name order, keys in the order of
// their first call. A (section, key) given two different defaults is listed
// in `conflicts` ("section/key: where1 vs where2") and written with the first.
std::string CatalogueText(const std::vector<SourceText>& texts, std::vector<std::string>* conflicts = nullptr);

}  // namespace zelvo::testing
