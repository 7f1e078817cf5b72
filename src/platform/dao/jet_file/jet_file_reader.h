// Reads a genuine Jet database file — the format of the books that earlier
// installations kept — through MDB Tools' libmdb. It serves the conversion
// of such a file into a book and nothing else: it reads, it never writes.
//
// What a Jet column becomes (the DAO type code the book uses for it):
//   Text(n)     dbText, n characters     Memo          dbMemo
//   Byte        dbByte                   Integer       dbInteger
//   Long        dbLong                   Counter       dbLong, auto-increment
//   Currency    dbCurrency (a double)    Single        dbSingle
//   Double      dbDouble                 Date/Time     dbDate: Jet's day number,
//   Yes/No      dbBoolean                              a double, kept exactly
//   OLE object  dbLongBinary             Binary(n)     dbLongBinary
//   Replication ID  dbText(38), "{…}"    Decimal       dbDouble
// Null stays Null. A text or memo of no characters reads as Null: libmdb
// does not tell the two apart.
//
// The whole file is read into memory when the reader is made, so a source
// that changes or vanishes while a conversion runs cannot tear it.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/core/variant.h"

namespace zelvo::dao::jetfile {

// The format named by a file's first page.
enum class JetFormat {
    NotJet,  // no Jet signature
    Jet3,    // Access 97 and earlier: version "3.0"
    Jet4,    // Access 2000 to 2003: version "4.0"
    Later,   // Access 2007 and later (ACE): not read
};
JetFormat SniffJetFormat(std::string_view firstBytes);
// The format of the file at `path`; NotJet when it cannot be read.
JetFormat JetFileFormat(const std::string& path);

// "3.0" or "4.0" for a Jet 3 or Jet 4 file; "" for anything else or a file
// that cannot be read.
std::string JetFileVersion(const std::string& path);

// True when this build can read Jet files (libmdb was found at build time).
bool CanReadJetFiles();

struct JetColumn {
    std::string name;
    int type = 0;          // a DAO type code, as in the table above
    int size = 0;          // characters for dbText, else 0
    bool counter = false;  // an auto-increment Long
};

struct JetTable {
    std::string name;
    std::vector<JetColumn> columns;
    std::uint32_t rowCount = 0;  // as the table's definition records it
};

class JetFileReader {
public:
    // Reads the file `path`; `bytes` is a whole file's content already read
    // (the fuzzer's way in). Both throw Error 3343 with a description when
    // the content is no Jet 3 or Jet 4 file that libmdb can read — a later
    // Access format included — and 3024 when the file is missing.
    static JetFileReader Open(const std::string& path);
    static JetFileReader FromBytes(std::string bytes, const std::string& name = "(memory)");

    JetFileReader(JetFileReader&&) noexcept;
    JetFileReader& operator=(JetFileReader&&) noexcept;
    ~JetFileReader();

    JetFormat Format() const;
    // The user tables with their columns, in the file's order; system
    // tables (MSys…) are left out.
    const std::vector<JetTable>& Tables() const;

    // Calls `row` for each row of Tables()[table], its values in column
    // order. Throws Error 3343 naming the table when fewer rows can be read
    // than the table records (a damaged or truncated file).
    void ReadRows(size_t table, const std::function<void(const std::vector<Variant>&)>& row);

private:
    struct State;
    explicit JetFileReader(std::unique_ptr<State> state);
    std::unique_ptr<State> s_;
};

}  // namespace zelvo::dao::jetfile
