#include "platform/shell/file_system.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <vector>

#include "platform/core/error.h"

namespace fs = std::filesystem;

namespace zelvo::shell {

namespace {

// The attributes other than read-only live in this extended attribute, as a
// decimal number, so that they travel with the file through renames.
constexpr const char* kAttributeName = "user.zelvo.attributes";

[[noreturn]] void Throw(int number, const std::string& path) {
    const char* text = "Path/File access error";
    switch (number) {
        case 53: text = "File not found"; break;
        case 58: text = "File already exists"; break;
        case 61: text = "Disk full"; break;
        case 70: text = "Permission denied"; break;
        case 76: text = "Path not found"; break;
        default: break;
    }
    throw Error(number, std::string(text) + ": '" + path + "'", "FileSystem");
}

[[noreturn]] void ThrowErrno(int err, const std::string& path) {
    switch (err) {
        case ENOENT: Throw(53, path);
        case EEXIST: Throw(58, path);
        case ENOSPC: case EDQUOT: Throw(61, path);
        case EACCES: case EPERM: case EROFS: Throw(70, path);
        case ENOTDIR: Throw(76, path);
        default: Throw(75, path);
    }
}

// Flushes a file or folder to the disk; failures are not fatal here.
void Sync(const std::string& path, bool folder) {
    int fd = ::open(path.c_str(), (folder ? O_RDONLY | O_DIRECTORY : O_RDONLY) | O_CLOEXEC);
    if (fd < 0) return;
    ::fsync(fd);
    ::close(fd);
}

std::string FolderOf(const std::string& path) {
    fs::path p(path);
    return p.has_parent_path() ? p.parent_path().string() : std::string(".");
}

int ReadStoredAttributes(const std::string& path) {
    char buf[16];
    ssize_t n = ::getxattr(path.c_str(), kAttributeName, buf, sizeof buf - 1);
    if (n <= 0) return 0;
    buf[n] = '\0';
    return std::atoi(buf) & ~kReadOnly;
}

void CopyAttributes(const std::string& from, const std::string& to) {
    int stored = ReadStoredAttributes(from);
    if (stored != 0) {
        std::string v = std::to_string(stored);
        ::setxattr(to.c_str(), kAttributeName, v.data(), v.size(), 0);
    }
}

}  // namespace

bool FileExists(const std::string& path) {
    std::error_code ec;
    return fs::is_regular_file(path, ec);
}

bool FolderExists(const std::string& path) {
    std::error_code ec;
    return fs::is_directory(path, ec);
}

void CopyFile(const std::string& from, const std::string& to, bool overwrite) {
    if (!FileExists(from)) Throw(53, from);
    if (!overwrite && fs::exists(to)) Throw(58, to);
    int in = ::open(from.c_str(), O_RDONLY | O_CLOEXEC);
    if (in < 0) ThrowErrno(errno, from);
    std::string tmpl = FolderOf(to) + "/.zelvo-copy-XXXXXX";
    std::vector<char> name(tmpl.begin(), tmpl.end());
    name.push_back('\0');
    int out = ::mkstemp(name.data());
    if (out < 0) {
        int err = errno;
        ::close(in);
        ThrowErrno(err, to);
    }
    std::string tmp(name.data());
    auto fail = [&](int err, const std::string& which) {
        ::close(in);
        ::close(out);
        ::unlink(tmp.c_str());
        ThrowErrno(err, which);
    };
    // The kernel copies without the data passing through this process where
    // it can; what it cannot copy goes through a buffer.
    for (;;) {
        ssize_t n = ::copy_file_range(in, nullptr, out, nullptr, 1 << 30, 0);
        if (n > 0) continue;
        if (n == 0) break;
        if (errno == EINTR) continue;
        if (errno != EXDEV && errno != ENOSYS && errno != EOPNOTSUPP && errno != EINVAL) fail(errno, to);
        break;
    }
    std::vector<char> buf(1 << 20);
    for (;;) {
        ssize_t n = ::read(in, buf.data(), buf.size());
        if (n < 0) {
            if (errno == EINTR) continue;
            fail(errno, from);
        }
        if (n == 0) break;
        for (ssize_t done = 0; done < n;) {
            ssize_t w = ::write(out, buf.data() + done, static_cast<size_t>(n - done));
            if (w < 0) {
                if (errno == EINTR) continue;
                fail(errno, to);
            }
            done += w;
        }
    }
    struct stat st{};
    if (::fstat(in, &st) == 0) ::fchmod(out, st.st_mode & 07777);
    // Not flushed to the disk: a copy is as durable as any file written;
    // the one step that must survive a crash, a book taking its place, is
    // ReplaceFile, which flushes.
    ::close(in);
    ::close(out);
    CopyAttributes(from, tmp);
    if (::rename(tmp.c_str(), to.c_str()) != 0) {
        int err = errno;
        ::unlink(tmp.c_str());
        ThrowErrno(err, to);
    }
}

void DeleteFile(const std::string& path) {
    if (!FileExists(path)) Throw(53, path);
    if (::unlink(path.c_str()) != 0) ThrowErrno(errno, path);
}

void MoveFile(const std::string& from, const std::string& to) {
    if (!FileExists(from)) Throw(53, from);
    std::error_code ec;
    if (fs::exists(to, ec)) Throw(58, to);
    if (::rename(from.c_str(), to.c_str()) != 0) ThrowErrno(errno, to);
}

void ReplaceFile(const std::string& from, const std::string& to) {
    if (!FileExists(from)) Throw(53, from);
    Sync(from, false);
    if (::rename(from.c_str(), to.c_str()) != 0) ThrowErrno(errno, to);
    Sync(FolderOf(to), true);
}

int GetAttributes(const std::string& path) {
    struct stat st{};
    if (::stat(path.c_str(), &st) != 0) ThrowErrno(errno, path);
    int attributes = ReadStoredAttributes(path);
    if ((st.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0) attributes |= kReadOnly;
    return attributes;
}

void SetAttributes(const std::string& path, int attributes) {
    struct stat st{};
    if (::stat(path.c_str(), &st) != 0) ThrowErrno(errno, path);
    mode_t mode = st.st_mode & 07777;
    mode_t wanted = (attributes & kReadOnly) ? (mode & ~(S_IWUSR | S_IWGRP | S_IWOTH)) : (mode | S_IWUSR);
    if (wanted != mode && ::chmod(path.c_str(), wanted) != 0) ThrowErrno(errno, path);
    int stored = attributes & ~kReadOnly;
    if (stored == ReadStoredAttributes(path)) return;
    int rc = stored == 0 ? ::removexattr(path.c_str(), kAttributeName)
                         : [&] {
                               std::string v = std::to_string(stored);
                               return ::setxattr(path.c_str(), kAttributeName, v.data(), v.size(), 0);
                           }();
    // A file system without extended attributes keeps no hidden flag: the
    // file works the same, only the flag does not read back.
    if (rc != 0 && errno != ENOTSUP && errno != ENODATA) ThrowErrno(errno, path);
}

void CreateFolder(const std::string& path) {
    std::error_code ec;
    fs::create_directories(path, ec);
    if (ec) ThrowErrno(ec.value(), path);
}

}  // namespace zelvo::shell
