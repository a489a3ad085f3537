#include "io/readFile.h"

#include "io/FileError.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace marvek {
namespace {

namespace fs = std::filesystem;

std::string systemReason(int error) {
    return std::error_code(error, std::generic_category()).message();
}

// A path that leads nowhere is named by what is wrong with it, not the file.
std::string unopenedReason(int error) {
    if (error == ENOENT) {
        return "the file does not exist";
    }
    if (error == ELOOP || error == ENOTDIR || error == ENAMETOOLONG) {
        std::string reason = systemReason(error);
        reason.front() =
            static_cast<char>(std::tolower(static_cast<unsigned char>(reason.front())));
        return reason;
    }
    return "cannot open the file (" + systemReason(error) + ")";
}

std::string kindOf(mode_t mode) {
    if (S_ISFIFO(mode)) {
        return "a named pipe (FIFO)";
    }
    if (S_ISSOCK(mode)) {
        return "a socket";
    }
    if (S_ISCHR(mode) || S_ISBLK(mode)) {
        return "a device";
    }
    return "no regular file";
}

// A descriptor opened without waiting: a named pipe with no writer would
// otherwise block the open itself, before anything could be checked.
class ReadOnlyFile {
public:
    explicit ReadOnlyFile(const fs::path& path)
        : path_(path), descriptor_(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC)) {
        if (descriptor_ < 0) {
            const int error = errno;
            throw FileError(path, unopenedReason(error));
        }
    }
    ReadOnlyFile(const ReadOnlyFile&) = delete;
    ReadOnlyFile& operator=(const ReadOnlyFile&) = delete;
    ~ReadOnlyFile() { ::close(descriptor_); }

    // The size of the regular file; throws for anything else.
    std::uintmax_t regularFileSize() const {
        struct stat status {};
        if (::fstat(descriptor_, &status) != 0) {
            throw FileError(path_, "cannot read the file (" + systemReason(errno) + ")");
        }
        if (S_ISDIR(status.st_mode)) {
            throw FileError(path_, "is a folder, not a file");
        }
        if (!S_ISREG(status.st_mode)) {
            throw FileError(path_, "is not a regular file but " + kindOf(status.st_mode));
        }
        return static_cast<std::uintmax_t>(status.st_size);
    }

    // Up to count bytes from the start; fewer when the file ends first.
    std::vector<std::uint8_t> read(std::size_t count) const {
        std::vector<std::uint8_t> bytes(count);
        std::size_t done = 0;
        while (done < count) {
            const ssize_t got = ::read(descriptor_, bytes.data() + done, count - done);
            if (got < 0 && errno == EINTR) {
                continue;
            }
            if (got < 0) {
                throw FileError(path_, "cannot read the file (" + systemReason(errno) + ")");
            }
            if (got == 0) {
                break;
            }
            done += static_cast<std::size_t>(got);
        }
        bytes.resize(done);
        return bytes;
    }

private:
    fs::path path_;
    int descriptor_;
};

} // namespace

std::vector<std::uint8_t> readWholeFile(const fs::path& path, std::uintmax_t maximumBytes) {
    const ReadOnlyFile file(path);
    const std::uintmax_t size = file.regularFileSize();
    if (size > maximumBytes) {
        throw FileError(path, "the file is too large (" + std::to_string(size) +
                                  " bytes; a file read here has at most " +
                                  std::to_string(maximumBytes) + ")");
    }
    return file.read(static_cast<std::size_t>(size));
}

std::vector<std::uint8_t> readFileStart(const fs::path& path, std::size_t count) {
    const ReadOnlyFile file(path);
    const std::uintmax_t size = file.regularFileSize();
    return file.read(static_cast<std::size_t>(std::min<std::uintmax_t>(size, count)));
}

} // namespace marvek
