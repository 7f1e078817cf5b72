#include "platform/dao/file_holder.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace zelvo::dao {

FileHolder::~FileHolder() { Release(); }

FileHolder::FileHolder(FileHolder&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}

FileHolder& FileHolder::operator=(FileHolder&& other) noexcept {
    if (this != &other) {
        Release();
        fd_ = std::exchange(other.fd_, -1);
    }
    return *this;
}

FileHolder::Result FileHolder::Claim(const std::string& path, Mode mode) {
    Release();
    int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) return errno == ENOENT ? Result::NotFound : Result::Failed;
    int op = (mode == Mode::Shared ? LOCK_SH : LOCK_EX) | LOCK_NB;
    while (::flock(fd, op) != 0) {
        if (errno == EINTR) continue;
        int err = errno;
        ::close(fd);
        return err == EWOULDBLOCK ? Result::Busy : Result::Failed;
    }
    fd_ = fd;
    return Result::Held;
}

void FileHolder::Release() {
    if (fd_ >= 0) {
        ::close(fd_);  // closing the descriptor drops its lock
        fd_ = -1;
    }
}

}  // namespace zelvo::dao
