// DAO's `DBEngine`: opens, creates and compacts books.
#pragma once

#include <string>

#include "platform/dao/database.h"

namespace zelvo::dao {

// Options of CreateDatabase and CompactDatabase: the Jet format a book
// stands for, which its Database.Version reports.
inline constexpr int dbVersion30 = 32;
inline constexpr int dbVersion40 = 64;

class DBEngine {
public:
    // Opens a book, shared and read-write unless told otherwise.
    //   3024 no such file; 3343 not a book of ours (another program's
    //   database, a text, an empty file); 3045 the file is held exclusively
    //   elsewhere; 3356 held exclusively by a Database of this process.
    // `connect` is accepted for the book's code ("Access") and not used.
    Database OpenDatabase(const std::string& path, bool exclusive = false, bool readOnly = false,
                          const std::string& connect = {}) const;

    // Makes a new, empty book. 3204 when the file exists; 3044 when the
    // folder does not. Its Version is "4.0" unless `options` asks for
    // dbVersion30 alone.
    Database CreateDatabase(const std::string& path, const std::string& locale = {}, int options = 0) const;

    // Writes a compacted copy of `source` to `destination`, which must not
    // exist (3204). Fails without touching the source while anyone holds it
    // (3045), when it is missing (3024) or not ours (3343). The copy's
    // counters go on from the highest number left, as after a compaction of
    // the original engine. A genuine Jet 3 or Jet 4 file as the source is
    // converted into a book (see jet_file/jet_import.h); a later Access
    // format or a damaged Jet file fails with 3343 and a description.
    // The copy's Version is "4.0" with dbVersion40 in `options`, "3.0" with
    // dbVersion30, and otherwise the source's: a Jet 3 file or a book that
    // stands for one gives a "3.0" copy. `locale` is accepted and not used.
    void CompactDatabase(const std::string& source, const std::string& destination, const std::string& locale = {},
                         int options = 0) const;

    // How long a write waits for another holder's lock before it fails
    // (3218/3260), in milliseconds. Default 2000.
    static void SetLockTimeout(int milliseconds);
};

// The engine of the process, made on first use.
DBEngine& Engine();

// The files SQLite keeps beside a book while it is open or after a crash,
// as suffixes of the book's path. They belong to the book: whoever removes
// or replaces the book removes them too, or they would be read into the
// next file of that name.
inline constexpr const char* kSideFileSuffixes[] = {"-wal", "-shm", "-journal"};

}  // namespace zelvo::dao
