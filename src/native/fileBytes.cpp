#include "native/fileBytes.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace marvek {

namespace {

// Closes the descriptor when the read is over, whichever way it ends.
class Descriptor {
public:
    explicit Descriptor(int descriptor) noexcept : descriptor_(descriptor) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (descriptor_ >= 0) {
            ::close(descriptor_);
        }
    }
    int get() const noexcept { return descriptor_; }

private:
    int descriptor_;
};

bool readAll(int descriptor, std::vector<std::uint8_t>& bytes) noexcept {
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t got = ::read(descriptor, bytes.data() + done, bytes.size() - done);
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got <= 0) {
            return false;
        }
        done += static_cast<std::size_t>(got);
    }
    return true;
}

} // namespace

std::optional<std::vector<std::uint8_t>> readFileBytes(const char* path,
                                                       std::size_t maxBytes) noexcept {
    if (path == nullptr) {
        return std::nullopt;
    }
    // Opened without waiting, so that a named pipe is refused rather than
    // waited on; only a regular file is read.
    const Descriptor file(::open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    struct stat status {};
    if (file.get() < 0 || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode) ||
        status.st_size < 0 || static_cast<std::uint64_t>(status.st_size) > maxBytes) {
        return std::nullopt;
    }
    try {
        std::vector<std::uint8_t> bytes(static_cast<std::size_t>(status.st_size));
        if (!readAll(file.get(), bytes)) {
            return std::nullopt;
        }
        return bytes;
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

} // namespace marvek
