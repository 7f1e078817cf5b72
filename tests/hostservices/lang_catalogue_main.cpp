// Writes the English catalogue made from the sources:
//   zelvo_lang_catalogue SOURCE_FOLDER OUTPUT_FILE
#include <fstream>
#include <iostream>

#include "lang_scan.h"

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: zelvo_lang_catalogue SOURCE_FOLDER OUTPUT_FILE\n";
        return 2;
    }
    std::vector<std::string> conflicts;
    std::string text = zelvo::testing::CatalogueText(zelvo::testing::ScanFolder(argv[1]), &conflicts);
    for (const auto& c : conflicts) std::cerr << "two defaults for " << c << "\n";
    std::ofstream out(argv[2], std::ios::binary);
    out << text;
    if (!out) {
        std::cerr << "cannot write " << argv[2] << "\n";
        return 1;
    }
    return conflicts.empty() ? 0 : 1;
}
