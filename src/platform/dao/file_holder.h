// A claim on a database file that other holders — in this process or in
// another — can see.
//
// Every open `Database` holds the file shared; a compaction must hold it
// alone. The claim is an advisory lock (flock) on a descriptor of its own, so
// two holders in one process see each other just as two processes do, and a
// holder that dies releases its claim with its descriptor. The locks are
// independent of SQLite's own byte-range locks on the same file.
#pragma once

#include <string>

namespace zelvo::dao {

class FileHolder {
public:
    enum class Mode { Shared, Exclusive };
    enum class Result { Held, NotFound, Busy, Failed };

    FileHolder() = default;
    ~FileHolder();
    FileHolder(FileHolder&& other) noexcept;
    FileHolder& operator=(FileHolder&& other) noexcept;
    FileHolder(const FileHolder&) = delete;
    FileHolder& operator=(const FileHolder&) = delete;

    // Claims `path` in `mode` without waiting. Busy: another holder's claim
    // conflicts. NotFound: there is no such file.
    Result Claim(const std::string& path, Mode mode);

    // Gives the claim up (also done by the destructor).
    void Release();

    bool held() const { return fd_ >= 0; }

private:
    int fd_ = -1;
};

}  // namespace zelvo::dao
