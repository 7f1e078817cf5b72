// Feeds damaged Jet files to the Jet file reader: it must throw a
// zelvo::Error or read every table, never crash, and every text it hands
// out must fit the column it came from.
//
// A whole random file rarely gets past the first page, so an input that is
// not itself a Jet file is taken as edits to a genuine one: each edit is a
// page number (2 bytes), an offset in the page (2 bytes), a length (1 byte)
// and that many bytes written there. Without the genuine file the input is
// read as a file of its own.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

#include "platform/core/error.h"
#include "platform/dao/field_props.h"
#include "platform/dao/jet_file/jet_file_reader.h"

namespace {

using namespace zelvo::dao;

const std::string& BaseFile() {
    static const std::string bytes = [] {
        std::ifstream in(std::string(ZELVO_SHARED_DATA) + "/jet/DateTestDatabase.mdb", std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), {});
    }();
    return bytes;
}

std::string Apply(const std::uint8_t* data, std::size_t size) {
    std::string file = BaseFile();
    const std::size_t page = 4096, pages = file.size() / page;
    for (std::size_t i = 0; i + 5 <= size;) {
        std::size_t p = (data[i] | data[i + 1] << 8) % pages;
        std::size_t off = (data[i + 2] | data[i + 3] << 8) % page;
        std::size_t len = data[i + 4];
        i += 5;
        for (std::size_t k = 0; k < len && i < size && off + k < page; ++k, ++i) file[p * page + off + k] = static_cast<char>(data[i]);
    }
    return file;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string input(reinterpret_cast<const char*>(data), size);
    std::string file = jetfile::SniffJetFormat(input) == jetfile::JetFormat::NotJet && !BaseFile().empty()
                           ? Apply(data, size)
                           : input;
    try {
        jetfile::JetFileReader reader = jetfile::JetFileReader::FromBytes(std::move(file), "fuzz.mdb");
        for (std::size_t t = 0; t < reader.Tables().size(); ++t) {
            const jetfile::JetTable& table = reader.Tables()[t];
            reader.ReadRows(t, [&](const std::vector<zelvo::Variant>& row) {
                if (row.size() != table.columns.size()) std::abort();
                for (std::size_t c = 0; c < row.size(); ++c) {
                    int type = table.columns[c].type;
                    if (row[c].IsText() && type != dbText && type != dbMemo) std::abort();
                }
            });
        }
    } catch (const zelvo::Error&) {
    }
    return 0;
}
