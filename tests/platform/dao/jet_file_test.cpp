// Genuine Jet files converted by the engine's compaction: every table, row
// and value as MDB Tools' own programs read them, and bad files refused with
// a clear error and nothing left behind.
#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>

#include "platform/core/error.h"
#include "platform/dao/dao_error.h"
#include "platform/dao/dbengine.h"
#include "platform/dao/jet_file/jet_file_reader.h"
#include "support/shared_data.h"
#include "support/temp_dir.h"

namespace zelvo::testing {
namespace {

using namespace zelvo::dao;
using jetfile::JetFormat;


// The comparisons need MDB Tools' own programs as well.
#define NEEDS_GENUINE_JET()                                                          \
    do {                                                                            \
        ZELVO_NEEDS_GENUINE_JET();                                                  \
        if (std::system("mdb-export --version >/dev/null 2>&1") != 0)                \
            GTEST_SKIP() << "mdb-export (Debian: mdbtools) is not installed";       \
    } while (0)

std::string Output(const std::string& command) {
    FILE* p = popen(command.c_str(), "r");
    std::string out;
    if (!p) return out;
    char buf[65536];
    size_t n;
    while ((n = fread(buf, 1, sizeof buf, p)) > 0) out.append(buf, n);
    pclose(p);
    return out;
}

std::string Quoted(const std::string& s) { return "'" + s + "'"; }

std::string ReadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

// mdb-export's CSV: fields quoted with '"' (doubled inside) when they are
// texts, line breaks kept inside quotes.
std::vector<std::vector<std::string>> ParseCsv(const std::string& text) {
    std::vector<std::vector<std::string>> rows(1);
    std::string field;
    bool quoted = false;
    for (size_t i = 0; i < text.size(); ++i) {
        char ch = text[i];
        if (quoted) {
            if (ch == '"' && i + 1 < text.size() && text[i + 1] == '"') field += '"', ++i;
            else if (ch == '"') quoted = false;
            else field += ch;
        } else if (ch == '"') {
            quoted = true;
        } else if (ch == ',') {
            rows.back().push_back(field), field.clear();
        } else if (ch == '\n') {
            rows.back().push_back(field), field.clear();
            rows.emplace_back();
        } else {
            field += ch;
        }
    }
    if (rows.back().empty()) rows.pop_back();
    return rows;
}

// A date as Jet keeps it (days from 30 Dec 1899; the fraction, taken without
// its sign, is the time of day) written as "%Y-%m-%d %H:%M:%S".
std::string DateText(double serial) {
    using namespace std::chrono;
    long day = static_cast<long>(std::trunc(serial));
    long seconds = std::lround(std::fabs(serial - static_cast<double>(day)) * 86400.0);
    year_month_day ymd{sys_days{1899y / December / 30} + days{day}};
    char buf[64];
    std::snprintf(buf, sizeof buf, "%04d-%02u-%02u %02ld:%02ld:%02ld", static_cast<int>(ymd.year()),
                  static_cast<unsigned>(ymd.month()), static_cast<unsigned>(ymd.day()), seconds / 3600,
                  seconds / 60 % 60, seconds % 60);
    return buf;
}

// One field as mdb-export writes it, or "" when its text of the value is not
// to be trusted (a date it cannot place). Numbers that it prints in full are
// compared as numbers.
bool SameAsExport(const Field& f, const Variant& v, const std::string& exported, std::string& ours) {
    if (v.IsNull()) return (ours = "Null", exported.empty());
    switch (f.Type()) {
        case dbDate:
            ours = DateText(v.AsDouble());
            return exported.find("-00 ") != std::string::npos || ours == exported;
        case dbSingle: case dbDouble: case dbCurrency: {
            ours = v.AsText();
            double x = std::strtod(exported.c_str(), nullptr), y = v.AsDouble();
            return std::fabs(x - y) <= 1e-6 * std::max(1.0, std::fabs(x));
        }
        case dbBoolean: return (ours = v.AsInteger() ? "1" : "0") == exported;
        case dbLongBinary: {
            ours.clear();
            static const char* hex = "0123456789ABCDEF";
            for (std::uint8_t b : v.bytes()) ours += hex[b >> 4], ours += hex[b & 15];
            return ours == exported;
        }
        default: return (ours = v.AsText()) == exported;
    }
}

long CountOf(const std::string& book, const std::string& table) {
    Database db = Engine().OpenDatabase(book);
    return static_cast<long>(db.OpenRecordset("Select Count(*) As N From [" + table + "]")("N").AsInteger());
}

class JetFileTest : public ::testing::Test {
protected:
    std::string Convert(const std::string& source) {
        std::string book = dir_.File("book.mdb");
        std::filesystem::remove(book);
        Engine().CompactDatabase(source, book);
        return book;
    }
    TempDir dir_;
};

TEST(JetFormatTest, FirstPageTellsTheFormat) {
    auto head = [](const char* engine, char version) {
        std::string b(0x20, '\0');
        b[1] = 1;
        b.replace(4, 15, engine);
        b[0x14] = version;
        return b;
    };
    EXPECT_EQ(jetfile::SniffJetFormat(head("Standard Jet DB", 0)), JetFormat::Jet3);
    EXPECT_EQ(jetfile::SniffJetFormat(head("Standard Jet DB", 1)), JetFormat::Jet4);
    EXPECT_EQ(jetfile::SniffJetFormat(head("Standard Jet DB", 2)), JetFormat::Later);
    EXPECT_EQ(jetfile::SniffJetFormat(head("Standard ACE DB", 2)), JetFormat::Later);
    EXPECT_EQ(jetfile::SniffJetFormat(head("Standard Jet DX", 0)), JetFormat::NotJet);
    EXPECT_EQ(jetfile::SniffJetFormat(head("Standard Jet DB", 0).substr(0, 0x14)), JetFormat::NotJet);
    EXPECT_EQ(jetfile::SniffJetFormat("SQLite format 3"), JetFormat::NotJet);
}

// Finds the current row of `rs` among mdb-export's `rows` (keyed by their
// first field) and takes it out. Returns "" when found, else what differed.
std::string TakeMatchingRow(Recordset& rs, std::multimap<std::string, std::vector<std::string>>& rows,
                            const std::vector<std::string>& header) {
    std::string key, mismatch = "no row with that first field";
    if (!rs.Value(0).IsNull()) SameAsExport(rs.Fields().Item(0), rs.Value(0), "", key);
    auto [lo, hi] = rows.equal_range(key);
    for (auto it = lo; it != hi; ++it) {
        bool all = true;
        for (size_t i = 0; i < header.size() && all; ++i) {
            std::string ours;
            all = SameAsExport(rs.Fields().Item(static_cast<int>(i)), rs.Value(static_cast<int>(i)), it->second[i], ours);
            if (!all) mismatch = header[i] + ": ours '" + ours + "', mdb-export '" + it->second[i] + "'";
        }
        if (all) {
            rows.erase(it);
            return "";
        }
    }
    return mismatch;
}

TEST_F(JetFileTest, GenuineFilesConvertEveryTableRowAndValueAsMdbToolsReadsThem) {
    NEEDS_GENUINE_JET();
    for (const char* file : {"nwind.mdb", "DateTestDatabase.mdb"}) {
        SCOPED_TRACE(file);
        const std::string source = SharedJetFile(file);
        Database db = Engine().OpenDatabase(Convert(source));
        std::vector<std::string> tables;
        std::istringstream list(Output("mdb-tables -1 " + Quoted(source)));
        for (std::string line; std::getline(list, line);)
            if (!line.empty()) tables.push_back(line);
        ASSERT_FALSE(tables.empty());
        EXPECT_EQ(db.TableDefs().Count(), static_cast<int>(tables.size()));
        for (const std::string& table : tables) {
            SCOPED_TRACE(table);
            long count = std::stol(Output("mdb-count " + Quoted(source) + " " + Quoted(table)));
            auto csv = ParseCsv(Output("mdb-export -b hex -D '%Y-%m-%d %H:%M:%S' -T '%Y-%m-%d %H:%M:%S' " +
                                       Quoted(source) + " " + Quoted(table)));
            ASSERT_EQ(static_cast<long>(csv.size()) - 1, count);
            // Matched by the whole row: the book may hand rows out in another
            // order than the file holds them.
            std::multimap<std::string, std::vector<std::string>> exported;
            for (size_t r = 1; r < csv.size(); ++r) exported.emplace(csv[r].empty() ? "" : csv[r][0], csv[r]);
            Recordset rs = db.OpenRecordset("Select * From [" + table + "]", dbOpenSnapshot);
            ASSERT_EQ(rs.Fields().Count(), static_cast<int>(csv[0].size()));
            long rows = 0;
            for (; rs.AbsolutePosition() != -1 && !rs.IsEOF(); rs.MoveNext(), ++rows) {
                std::string mismatch = TakeMatchingRow(rs, exported, csv[0]);
                ASSERT_EQ(mismatch, "") << "row " << rows + 1;
            }
            EXPECT_EQ(rows, count);
            EXPECT_TRUE(exported.empty());
        }
        db.Close();
    }
}

TEST_F(JetFileTest, TypesDatesAndMemosComeOverExactly) {
    NEEDS_GENUINE_JET();
    {
        Database db = Engine().OpenDatabase(Convert(SharedJetFile("nwind.mdb")));
        auto types = [&](const std::string& table) {
            std::string out;
            Fields fs = db.TableDefs()(table).Fields();
            for (int i = 0; i < fs.Count(); ++i) {
                Field f = fs.Item(i);
                out += f.Name() + ":" + std::to_string(f.Type()) + (f.Type() == dbText ? "(" + std::to_string(f.Size()) + ")" : "") +
                       ((f.Attributes() & dbAutoIncrField) ? "+" : "") + " ";
            }
            return out;
        };
        EXPECT_EQ(types("Order Details"), "OrderID:4 ProductID:4 UnitPrice:5 Quantity:3 Discount:6 ");
        EXPECT_EQ(types("Products").substr(0, 40), "ProductID:4+ ProductName:10(40) Supplier");
        EXPECT_NE(types("Products").find("Discontinued:1 "), std::string::npos);
        EXPECT_NE(types("Categories").find("Description:12 Picture:11 "), std::string::npos);
        EXPECT_NE(types("Employees").find("BirthDate:8 "), std::string::npos);
        EXPECT_EQ(db.TableDefs()("Umsätze").Name(), "Umsätze");

        // A memo with its line break; a Null; a counter that goes on.
        Recordset rs = db.OpenRecordset("Select Address, Region From Employees Where EmployeeID = 1");
        EXPECT_EQ(rs("Address").AsText(), "507 - 20th Ave. E.\r\nApt. 2A");
        rs = db.OpenRecordset("Select Region From Employees Where EmployeeID = 2");
        EXPECT_EQ(rs("Region").AsText(), "WA");
        rs = db.OpenRecordset("Select Region From Suppliers Where SupplierID = 1");
        EXPECT_TRUE(rs("Region").IsNull());
        rs = db.OpenRecordset("Shippers", dbOpenTable);
        rs.AddNew();
        EXPECT_EQ(rs("ShipperID").AsInteger(), 4);
        rs.SetValue("CompanyName", "Fourth");
        rs.Update();
        db.Close();
    }
    // Dates far from today keep the day Jet stored, which MDB Tools' own
    // text of them cannot show.
    Database db = Engine().OpenDatabase(Convert(SharedJetFile("DateTestDatabase.mdb")));
    Recordset rs = db.OpenRecordset("Select IDCol, DateTimeCol, DateCol, TimeCol, LongTextCol From DateTest Order By IDCol");
    std::string seen;
    for (; !rs.IsEOF(); rs.MoveNext())
        seen += std::to_string(rs("IDCol").AsInteger()) + " " + DateText(rs("DateTimeCol").AsDouble()).substr(0, 10) +
                " " + DateText(rs("DateCol").AsDouble()).substr(0, 10) + " " +
                DateText(rs("TimeCol").AsDouble()).substr(0, 10) + " " + rs("LongTextCol").AsText() + "\n";
    EXPECT_EQ(seen,
              "1 2021-12-02 2021-12-02 2021-12-02 Hello\n"
              "2 9999-01-01 9999-01-01 9999-01-01 Year 9999\n"
              "3 1898-01-01 1899-01-01 1900-01-01 Pre-1900 years\n"
              "4 0632-01-01 0633-01-01 0634-01-01 Pre-1000 years\n"
              "5 2021-12-02 2021-12-02 2021-12-02 Escaped new line \\r\\n in field\n"
              "6 2021-12-02 2021-12-02 2021-12-02 New line\r\nin field\n");
}

// A bad source: a clear 3343 that says why, the source as it was, and no
// book at the destination.
void ExpectRefused(const std::string& source, const std::string& destination, const std::string& why) {
    std::string before = ReadFile(source);
    try {
        Engine().CompactDatabase(source, destination);
        ADD_FAILURE() << "converted";
    } catch (const Error& e) {
        EXPECT_EQ(e.number(), kUnrecognizedFormat) << e.description();
        EXPECT_NE(e.description().find(why), std::string::npos) << e.description();
    }
    EXPECT_FALSE(std::filesystem::exists(destination));
    EXPECT_FALSE(std::filesystem::exists(destination + "-wal"));
    EXPECT_EQ(ReadFile(source), before);
}

// The engine does not open a Jet file as a book; a copy keeps the file's
// Jet version unless the compaction asks for "4.0".
TEST_F(JetFileTest, CopyKeepsTheFilesVersionUnlessAskedFor40) {
    ZELVO_NEEDS_GENUINE_JET();
    for (auto [file, version] : {std::pair{"nwind.mdb", "3.0"}, std::pair{"DateTestDatabase.mdb", "4.0"}}) {
        SCOPED_TRACE(file);
        const std::string source = SharedJetFile(file);
        EXPECT_EQ(jetfile::JetFileVersion(source), version);
        try {
            Engine().OpenDatabase(source, false, true);
            ADD_FAILURE() << "a Jet file opened as a book";
        } catch (const Error& e) {
            EXPECT_EQ(e.number(), kUnrecognizedFormat);
        }
        const std::string book = Convert(source);
        EXPECT_EQ(Engine().OpenDatabase(book).Version(), version);
        const std::string as40 = dir_.File("as40.mdb");
        Engine().CompactDatabase(source, as40, {}, dbVersion40);
        EXPECT_EQ(Engine().OpenDatabase(as40).Version(), "4.0");
        std::filesystem::remove(as40);
    }
}

TEST_F(JetFileTest, LaterAccessFormatIsRefusedWithAClearError) {
    std::string later = dir_.File("later.accdb");
    std::string b(8192, '\0');
    b[1] = 1;
    b.replace(4, 15, "Standard ACE DB");
    b[0x14] = 3;
    std::ofstream(later, std::ios::binary) << b;
    ExpectRefused(later, dir_.File("book.mdb"), "Access 2007 or later");
}

TEST_F(JetFileTest, ValueThatDoesNotFitIsRefusedNamingTableAndRow) {
    NEEDS_GENUINE_JET();
    // DateTest.ShortTextCol declared Text(2) instead of Text(255): its texts
    // no longer fit. The size is a UCS-2 byte count in the column's entry of
    // the table's definition page.
    std::string bytes = ReadFile(SharedJetFile("DateTestDatabase.mdb"));
    const size_t sizeAt = 18 * 4096 + 188 + 23;
    ASSERT_EQ(bytes.substr(sizeAt - 23, 1), "\x0a");
    ASSERT_EQ(bytes.substr(sizeAt, 2), "\xfe\x01");
    bytes.replace(sizeAt, 2, std::string("\x04\x00", 2));
    const std::string source = dir_.File("narrow.mdb"), destination = dir_.File("book.mdb");
    std::ofstream(source, std::ios::binary) << bytes;
    try {
        Engine().CompactDatabase(source, destination);
        ADD_FAILURE() << "converted";
    } catch (const Error& e) {
        EXPECT_NE(e.description().find("table 'DateTest', row 1: "), std::string::npos) << e.description();
        EXPECT_NE(e.description().find(source), std::string::npos) << e.description();
    }
    EXPECT_FALSE(std::filesystem::exists(destination));
}

// A catalog whose property record has length 0 sends libmdb round in a
// circle, allocating as it goes; found by the fuzzer as these edits (page,
// offset, length, bytes) of the Jet 3 file. Refused within bounded memory.
TEST_F(JetFileTest, ACatalogThatSendsTheReaderRoundInACircleIsRefused) {
    NEEDS_GENUINE_JET();
    const unsigned char edits[] = {
        0x02, 0x00, 0x10, 0x97, 0x53, 0x74, 0x61, 0x6e, 0x64, 0x61, 0x72, 0x64, 0x20, 0x41, 0x43, 0x45, 0x20, 0x44,
        0x42, 0x26, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8,
        0xd8, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8,
        0xd8, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8,
        0xd8, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8, 0xd8,
        0xd8, 0xd8, 0xd8, 0xd8, 0x04, 0xff, 0xff, 0x02, 0x00, 0x02, 0x10, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x04,
        0x00, 0x02, 0x10, 0x00, 0xff, 0xff, 0x00};
    std::string bytes = ReadFile(SharedJetFile("DateTestDatabase.mdb"));
    const size_t page = 4096, pages = bytes.size() / page;
    for (size_t i = 0; i + 5 <= sizeof edits;) {
        size_t p = (edits[i] | edits[i + 1] << 8) % pages, off = (edits[i + 2] | edits[i + 3] << 8) % page;
        size_t len = edits[i + 4];
        i += 5;
        for (size_t k = 0; k < len && i < sizeof edits && off + k < page; ++k, ++i)
            bytes[p * page + off + k] = static_cast<char>(edits[i]);
    }
    const std::string damaged = dir_.File("circle.mdb");
    std::ofstream(damaged, std::ios::binary) << bytes;
    ExpectRefused(damaged, dir_.File("book.mdb"), "its catalog of tables is damaged");
}

TEST_F(JetFileTest, TruncatedOrDamagedFilesAreRefusedOrReadWhole) {
    NEEDS_GENUINE_JET();
    const std::string whole = ReadFile(SharedJetFile("nwind.mdb"));
    const std::string destination = dir_.File("book.mdb");
    std::string cut = dir_.File("cut.mdb");
    // Cut inside the data: refused. Cut off only at pages that hold nothing
    // read (free pages at the end): converted, and then whole.
    const std::string full = dir_.File("full.mdb");
    Engine().CompactDatabase(SharedJetFile("nwind.mdb"), full);
    const long orders = CountOf(full, "Orders"), umsaetze = CountOf(full, "Umsätze");
    for (size_t size : {size_t{100}, size_t{2048 * 3}, whole.size() / 2, whole.size() / 2 + 1000}) {
        SCOPED_TRACE(size);
        std::ofstream(cut, std::ios::binary | std::ios::trunc) << whole.substr(0, size);
        ExpectRefused(cut, destination, "Unrecognized database format");
    }
    for (size_t pages = 1; pages <= 64; pages *= 2) {
        SCOPED_TRACE(pages);
        std::ofstream(cut, std::ios::binary | std::ios::trunc) << whole.substr(0, whole.size() - pages * 2048);
        std::filesystem::remove(destination);
        try {
            Engine().CompactDatabase(cut, destination);
            EXPECT_EQ(CountOf(destination, "Orders"), orders);
            EXPECT_EQ(CountOf(destination, "Umsätze"), umsaetze);
        } catch (const Error& e) {
            EXPECT_EQ(e.number(), kUnrecognizedFormat);
            EXPECT_FALSE(std::filesystem::exists(destination)) << e.description();
        }
    }
    // Pages overwritten with noise: refused, or converted when the noise
    // fell where nothing is read; never a crash or a half-written book.
    std::string damaged = dir_.File("damaged.mdb");
    std::uint32_t seed = 1;
    for (int round = 0; round < 12; ++round) {
        SCOPED_TRACE(round);
        std::string bytes = whole;
        for (int k = 0; k < 200; ++k) {
            seed = seed * 1664525u + 1013904223u;
            size_t at = 4096 + seed % (bytes.size() - 4096);
            bytes[at] = static_cast<char>(seed >> 24);
        }
        std::ofstream(damaged, std::ios::binary | std::ios::trunc) << bytes;
        std::filesystem::remove(destination);
        try {
            Engine().CompactDatabase(damaged, destination);
            EXPECT_GE(Engine().OpenDatabase(destination).TableDefs().Count(), 0);
        } catch (const Error& e) {
            EXPECT_FALSE(std::filesystem::exists(destination)) << e.description();
        }
        EXPECT_EQ(ReadFile(damaged), bytes);
    }
}

}  // namespace
}  // namespace zelvo::testing
