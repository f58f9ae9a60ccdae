#include "TDocumentFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "TZENTAException.h"

namespace NVURZENTA20 {

namespace {

[[noreturn]] void Refuse(const std::string& path, const std::string& reason) {
    throw TZENTAException(TZENTAStatusCode::kInvalidDocument, path + ": " + reason);
}

class TDescriptor {
public:
    explicit TDescriptor(int fd) : fFd(fd) {}
    ~TDescriptor() {
        if (fFd >= 0) ::close(fFd);
    }
    int Get() const { return fFd; }

private:
    int fFd;
    TDescriptor(const TDescriptor&) = delete;
    TDescriptor& operator=(const TDescriptor&) = delete;
};

}  // namespace

const TDocumentLimits& DefaultDocumentLimits() {
    static const TDocumentLimits limits;
    return limits;
}

bool ReadDocumentFile(const std::string& path, std::size_t maxBytes, std::string& text) {
    // O_NONBLOCK: opening a FIFO without a writer must not wait for one.
    // The type is checked on the open descriptor, so that what is checked
    // is what is read.
    TDescriptor fd(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (fd.Get() < 0) {
        if (errno == ENOENT || errno == ENOTDIR) return false;
        Refuse(path, std::string("the file cannot be opened: ") + std::strerror(errno));
    }
    struct stat info;
    if (::fstat(fd.Get(), &info) != 0) Refuse(path, std::string("the file cannot be read: ") + std::strerror(errno));
    if (!S_ISREG(info.st_mode)) Refuse(path, "not a regular file; documents must be regular files");
    if (static_cast<unsigned long long>(info.st_size) > maxBytes) {
        Refuse(path, "the file has " + std::to_string(static_cast<unsigned long long>(info.st_size)) +
                         " bytes; documents may have at most " + std::to_string(maxBytes));
    }
    text.clear();
    text.reserve(static_cast<std::size_t>(info.st_size));
    char buffer[65536];
    for (;;) {
        const ssize_t got = ::read(fd.Get(), buffer, sizeof(buffer));
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) Refuse(path, std::string("the file cannot be read: ") + std::strerror(errno));
        if (got == 0) break;
        // A file that grows while it is read is held to the same limit.
        if (text.size() + static_cast<std::size_t>(got) > maxBytes) {
            Refuse(path, "the file grew beyond " + std::to_string(maxBytes) + " bytes while it was read");
        }
        text.append(buffer, static_cast<std::size_t>(got));
    }
    return true;
}

}  // namespace NVURZENTA20
