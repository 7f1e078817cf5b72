#include "platform/dao/jet_file/jet_file_reader.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <set>

#include "platform/core/error.h"
#include "platform/dao/dao_error.h"
#include "platform/dao/field_props.h"

#if ZELVO_HAVE_LIBMDB
#include <mdbtools.h>
#endif

namespace zelvo::dao::jetfile {

namespace {

constexpr const char* kSource = "DAO.DBEngine";

Error NotReadable(const std::string& name, const std::string& why) {
    return Error(kUnrecognizedFormat, "Unrecognized database format '" + name + "': " + why + ".", kSource);
}

}  // namespace

JetFormat SniffJetFormat(std::string_view b) {
    // The first page starts with 00 01 00 00 and the engine's name; the byte
    // at 0x14 tells the version of the format.
    if (b.size() < 0x15 || b.substr(0, 4) != std::string_view("\x00\x01\x00\x00", 4)) return JetFormat::NotJet;
    std::string_view engine = b.substr(4, 15);
    if (engine == "Standard ACE DB") return JetFormat::Later;
    if (engine != "Standard Jet DB") return JetFormat::NotJet;
    switch (static_cast<unsigned char>(b[0x14])) {
        case 0: return JetFormat::Jet3;
        case 1: return JetFormat::Jet4;
        default: return JetFormat::Later;
    }
}

JetFormat JetFileFormat(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    char head[0x20] = {};
    in.read(head, sizeof head);
    return SniffJetFormat(std::string_view(head, static_cast<size_t>(in.gcount())));
}

std::string JetFileVersion(const std::string& path) {
    switch (JetFileFormat(path)) {
        case JetFormat::Jet3: return "3.0";
        case JetFormat::Jet4: return "4.0";
        default: return {};
    }
}

// Read whole first: see the header.
JetFileReader JetFileReader::Open(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) throw DaoError(kFileNotFound, path);
    std::string bytes((std::istreambuf_iterator<char>(in)), {});
    if (in.bad()) throw NotReadable(path, "the file cannot be read");
    return FromBytes(std::move(bytes), path);
}

#if ZELVO_HAVE_LIBMDB

bool CanReadJetFiles() { return true; }

namespace {

// libmdb reads the properties of every catalog entry as it reads the
// catalog, and on some damage (a property record of length 0) it loops for
// ever, allocating as it goes or not. That cannot be stopped from outside
// once it runs, so the catalog of a file is first read in a child process
// that is watched: it is ended when it takes more than 256 MB or 5 seconds,
// and the file is then refused. A catalog the child reads is read again
// here, the same way, with the same result.
bool CatalogReadsInAWatchedChild(std::string& bytes) {
    pid_t child = fork();
    if (child < 0) return true;  // no child to spare: read it here as before
    if (child == 0) {
        MdbHandle* mdb = mdb_open_buffer(bytes.data(), bytes.size(), MDB_NOFLAGS);
        _exit(mdb && mdb_read_catalog(mdb, MDB_TABLE) ? 0 : 1);
    }
    constexpr long kMaxResidentKb = 256 * 1024;
    constexpr int kMaxPolls = 25000;  // of 0.2 ms
    const std::string statm = "/proc/" + std::to_string(child) + "/statm";
    const long pageKb = sysconf(_SC_PAGESIZE) / 1024;
    int status = 0;
    for (int poll = 0;; ++poll) {
        pid_t done = waitpid(child, &status, WNOHANG);
        if (done == child) return WIFEXITED(status) && WEXITSTATUS(status) == 0;
        if (done < 0) return true;
        long size = 0, resident = 0;
        std::ifstream(statm) >> size >> resident;
        if (resident * pageKb > kMaxResidentKb || poll >= kMaxPolls) {
            kill(child, SIGKILL);
            waitpid(child, &status, 0);
            return false;
        }
        usleep(200);
    }
}

// Large enough for the longest memo (65,535 characters, in UTF-8); libmdb
// cuts a value at the size of its buffer.
constexpr size_t kBindSize = 256 * 1024;

constexpr unsigned kMaxColumns = 255;

int DaoType(const MdbColumn& c) {
    switch (c.col_type) {
        case MDB_BOOL: return dbBoolean;
        case MDB_BYTE: return dbByte;
        case MDB_INT: return dbInteger;
        case MDB_LONGINT: return dbLong;
        case MDB_MONEY: return dbCurrency;
        case MDB_FLOAT: return dbSingle;
        case MDB_DOUBLE: return dbDouble;
        case MDB_DATETIME: return dbDate;
        case MDB_TEXT: return dbText;
        case MDB_MEMO: return dbMemo;
        case MDB_OLE: case MDB_BINARY: return dbLongBinary;
        case MDB_REPID: return dbText;
        case MDB_NUMERIC: return dbDouble;
        default: return 0;
    }
}

// libmdb's own mdb_ole_read_full follows the chain of value pages for as
// long as it goes; on a damaged file the chain can run in a circle and the
// value grow until memory is gone. No value is longer than the file, so the
// chain is followed here and cut off there.
Bytes ReadOleValue(MdbHandle* mdb, MdbColumn& col, size_t fileSize, const std::string& file, const std::string& table) {
    char head[MDB_MEMO_OVERHEAD];
    std::memcpy(head, col.bind_ptr, sizeof head);
    const auto* chunk = static_cast<const std::uint8_t*>(col.bind_ptr);
    Bytes value;
    for (size_t len = mdb_ole_read(mdb, &col, head, kBindSize); len > 0;
         len = mdb_ole_read_next(mdb, &col, head)) {
        if (len > kBindSize || value.size() + len > fileSize)
            throw NotReadable(file, "an OLE value of '" + table + "' runs past the end of the file");
        value.insert(value.end(), chunk, chunk + len);
    }
    return value;
}

}  // namespace

struct JetFileReader::State {
    std::string name;
    std::string bytes;  // libmdb reads from this copy of the file
    MdbHandle* mdb = nullptr;
    JetFormat format = JetFormat::NotJet;
    std::vector<JetTable> tables;
    std::vector<MdbTableDef*> defs;

    ~State() {
        for (MdbTableDef* t : defs) mdb_free_tabledef(t);
        if (mdb) mdb_close(mdb);
    }
};

JetFileReader::JetFileReader(std::unique_ptr<State> state) : s_(std::move(state)) {}
JetFileReader::JetFileReader(JetFileReader&&) noexcept = default;
JetFileReader& JetFileReader::operator=(JetFileReader&&) noexcept = default;
JetFileReader::~JetFileReader() = default;

JetFileReader JetFileReader::FromBytes(std::string bytes, const std::string& name) {
    auto s = std::make_unique<State>();
    s->name = name;
    s->bytes = std::move(bytes);
    s->format = SniffJetFormat(s->bytes);
    if (s->format == JetFormat::NotJet) throw NotReadable(name, "not a Jet database");
    if (s->format == JetFormat::Later)
        throw NotReadable(name, "a database of Access 2007 or later, which cannot be converted; "
                                "save it in the Access 2000 format first");
    // libmdb reads whole pages: a file that is no whole number of them is
    // cut off, and its last tables would read short.
    const size_t page = s->format == JetFormat::Jet3 ? 2048 : 4096;
    if (s->bytes.size() < 2 * page || s->bytes.size() % page != 0)
        throw NotReadable(name, "the file is truncated");
    s->mdb = mdb_open_buffer(s->bytes.data(), s->bytes.size(), MDB_NOFLAGS);
    if (!s->mdb) throw NotReadable(name, "libmdb cannot open it");
    mdb_set_bind_size(s->mdb, kBindSize);
    mdb_set_boolean_fmt_numbers(s->mdb);
    if (!CatalogReadsInAWatchedChild(s->bytes) || !mdb_read_catalog(s->mdb, MDB_TABLE))
        throw NotReadable(name, "its catalog of tables is damaged");
    // Each table's definition starts on a page of its own. A damaged catalog
    // can name thousands of tables, or one page many times, and libmdb keeps
    // a large buffer for every definition it reads: such a catalog is
    // refused before any is read.
    const size_t pages = s->bytes.size() / page;
    std::set<unsigned long> tablePages;
    for (unsigned i = 0; i < s->mdb->num_catalog; ++i) {
        auto* entry = static_cast<MdbCatalogEntry*>(g_ptr_array_index(s->mdb->catalog, i));
        if (entry->object_type != MDB_TABLE) continue;
        if (entry->table_pg >= pages || !tablePages.insert(entry->table_pg).second)
            throw NotReadable(name, "its catalog of tables is damaged");
    }
    for (unsigned i = 0; i < s->mdb->num_catalog; ++i) {
        auto* entry = static_cast<MdbCatalogEntry*>(g_ptr_array_index(s->mdb->catalog, i));
        if (entry->object_type != MDB_TABLE || mdb_is_system_table(entry)) continue;
        MdbTableDef* def = mdb_read_table(entry);
        if (!def) throw NotReadable(name, std::string("the table '") + entry->object_name + "' is damaged");
        s->defs.push_back(def);
        // A Jet table holds at most 255 columns; a damaged count would have
        // the row reader bind a buffer for each of millions of them.
        if (def->num_cols > kMaxColumns || !mdb_read_columns(def))
            throw NotReadable(name, std::string("the table '") + def->name + "' is damaged");
        JetTable t;
        t.name = def->name;
        t.rowCount = def->num_rows;
        for (unsigned c = 0; c < def->num_cols; ++c) {
            const auto* col = static_cast<const MdbColumn*>(g_ptr_array_index(def->columns, c));
            JetColumn jc;
            jc.name = col->name;
            jc.type = DaoType(*col);
            if (jc.type == 0)
                throw NotReadable(name, "the column '" + jc.name + "' of '" + t.name + "' has a type (" +
                                            std::to_string(col->col_type) + ") that cannot be converted");
            if (col->col_type == MDB_TEXT) {
                // Jet 4 keeps the size of a text in bytes of UCS-2.
                jc.size = s->format == JetFormat::Jet4 ? col->col_size / 2 : col->col_size;
                if (jc.size <= 0 || jc.size > 255) jc.size = 255;
            } else if (col->col_type == MDB_REPID) {
                jc.size = 38;
            }
            jc.counter = col->col_type == MDB_LONGINT && col->is_long_auto;
            t.columns.push_back(std::move(jc));
        }
        s->tables.push_back(std::move(t));
    }
    return JetFileReader(std::move(s));
}

JetFormat JetFileReader::Format() const { return s_->format; }
const std::vector<JetTable>& JetFileReader::Tables() const { return s_->tables; }

void JetFileReader::ReadRows(size_t table, const std::function<void(const std::vector<Variant>&)>& row) {
    MdbTableDef* def = s_->defs.at(table);
    const JetTable& t = s_->tables.at(table);
    const size_t n = def->num_cols;
    std::vector<std::string> bound(n, std::string(kBindSize + 1, '\0'));
    std::vector<int> lengths(n, 0);
    for (size_t c = 0; c < n; ++c) mdb_bind_column(def, static_cast<int>(c + 1), bound[c].data(), &lengths[c]);
    mdb_rewind_table(def);
    std::vector<Variant> values(n);
    std::uint32_t read = 0;
    unsigned char* page = s_->mdb->pg_buf;
    while (mdb_fetch_row(def)) {
        ++read;
        for (size_t c = 0; c < n; ++c) {
            auto* col = static_cast<MdbColumn*>(g_ptr_array_index(def->columns, c));
            const int at = col->cur_value_start;
            const int len = col->cur_value_len;
            // A fixed value is read from the row itself, not from libmdb's
            // text of it, so that nothing is lost to formatting: a date far
            // from today, a Currency's fourth decimal.
            auto fits = [&](int size) { return len >= size && at >= 0 && at + size <= MDB_PGSIZE; };
            Variant& v = values[c];
            v = Variant();
            switch (col->col_type) {
                case MDB_BOOL:
                    v = Variant(lengths[c] > 0 && bound[c][0] == '1');
                    break;
                case MDB_BYTE:
                    if (fits(1)) v = Variant(std::int64_t{page[at]});
                    break;
                case MDB_INT:
                    if (fits(2)) v = Variant(std::int64_t{static_cast<std::int16_t>(mdb_get_int16(page, at))});
                    break;
                case MDB_LONGINT:
                    if (fits(4)) v = Variant(std::int64_t{static_cast<std::int32_t>(mdb_get_int32(page, at))});
                    break;
                case MDB_MONEY:
                    if (fits(8)) {
                        std::int64_t units = 0;
                        std::memcpy(&units, page + at, 8);
                        v = Variant(static_cast<double>(units) / 10000.0);
                    }
                    break;
                case MDB_FLOAT:
                    if (fits(4)) v = Variant(static_cast<double>(mdb_get_single(page, at)));
                    break;
                case MDB_DOUBLE: case MDB_DATETIME:
                    if (fits(8)) v = Variant(mdb_get_double(page, at));
                    break;
                case MDB_NUMERIC:
                    if (len > 0 && lengths[c] > 0) v = Variant(std::strtod(bound[c].c_str(), nullptr));
                    break;
                case MDB_OLE: case MDB_BINARY: {
                    if (len <= 0) break;
                    if (col->col_type == MDB_BINARY) {
                        if (at >= 0 && at + len <= MDB_PGSIZE) v = Variant(Bytes(page + at, page + at + len));
                        break;
                    }
                    v = Variant(ReadOleValue(s_->mdb, *col, s_->bytes.size(), s_->name, t.name));
                    break;
                }
                default:  // Text, Memo, Replication ID
                    if (len > 0 && lengths[c] > 0)
                        v = Variant(std::string(bound[c].data(), static_cast<size_t>(lengths[c])));
                    break;
            }
        }
        row(values);
    }
    if (read < t.rowCount)
        throw NotReadable(s_->name, "only " + std::to_string(read) + " of the " + std::to_string(t.rowCount) +
                                        " rows of '" + t.name + "' can be read: the file is damaged");
}

#else  // built without libmdb

bool CanReadJetFiles() { return false; }

struct JetFileReader::State {};
JetFileReader::JetFileReader(std::unique_ptr<State> state) : s_(std::move(state)) {}
JetFileReader::JetFileReader(JetFileReader&&) noexcept = default;
JetFileReader& JetFileReader::operator=(JetFileReader&&) noexcept = default;
JetFileReader::~JetFileReader() = default;

JetFileReader JetFileReader::FromBytes(std::string bytes, const std::string& name) {
    if (SniffJetFormat(bytes) == JetFormat::NotJet) throw NotReadable(name, "not a Jet database");
    throw NotReadable(name, "this build cannot read Jet files: it was made without MDB Tools' libmdb "
                            "(Debian: mdbtools-dev)");
}

JetFormat JetFileReader::Format() const { return JetFormat::NotJet; }
const std::vector<JetTable>& JetFileReader::Tables() const {
    static const std::vector<JetTable> none;
    return none;
}
// libmdb's own mdb_ole_read_full follows the chain of value pages for as
// long as it goes; on a damaged file the chain can run in a circle and the
// value grow until memory is gone. No value is longer than the file, so the
// chain is followed here and cut off there.
Bytes JetFileReader::ReadOleValue(MdbColumn& col, const std::string& table) {
    char head[MDB_MEMO_OVERHEAD];
    std::memcpy(head, col.bind_ptr, sizeof head);
    const auto* chunk = static_cast<const std::uint8_t*>(col.bind_ptr);
    Bytes value;
    for (size_t len = mdb_ole_read(s_->mdb, &col, head, kBindSize); len > 0;
         len = mdb_ole_read_next(s_->mdb, &col, head)) {
        if (len > kBindSize || value.size() + len > s_->bytes.size())
            throw NotReadable(s_->name, "an OLE value of '" + table + "' runs past the end of the file");
        value.insert(value.end(), chunk, chunk + len);
    }
    return value;
}

void JetFileReader::ReadRows(size_t, const std::function<void(const std::vector<Variant>&)>&) {}

#endif

}  // namespace zelvo::dao::jetfile
