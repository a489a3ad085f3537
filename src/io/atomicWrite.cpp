#include "io/atomicWrite.h"

#include "io/FileError.h"
#include "io/pathProblem.h"

#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <optional>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace marvek {
namespace {

namespace fs = std::filesystem;

// As many links as the kernel itself follows before it gives up.
constexpr int mostLinksFollowed = 40;
constexpr int temporaryNameAttempts = 16;

std::string lastErrorText() {
    return std::strerror(errno);
}

fs::path folderOf(const fs::path& path) {
    return path.has_parent_path() ? path.parent_path() : fs::path(".");
}

// The file that a write of path really replaces: a link's final target, so
// that the link itself stays a link.
fs::path followLinks(const fs::path& path) {
    fs::path resolved = path;
    std::error_code error;
    for (int hops = 0; fs::is_symlink(resolved, error); ++hops) {
        if (hops == mostLinksFollowed) {
            throw FileError(path, "too many levels of symbolic links");
        }
        const fs::path target = fs::read_symlink(resolved, error);
        if (error) {
            throw FileError(path, "cannot follow the link: " + error.message());
        }
        resolved = target.is_absolute() ? target : folderOf(resolved) / target;
    }
    return resolved;
}

std::string temporaryPrefix(const fs::path& target) {
    // Appended rather than "." + name: GCC 12 at -O3 warns falsely (-Wrestrict)
    // about a literal added to a temporary string.
    std::string prefix = ".";
    prefix += target.filename().string();
    prefix += ".tmp";
    return prefix;
}

// The process id in a temporary name "PREFIX<pid>-<n>"; earlier versions
// wrote "PREFIX<n>", whose number is then taken for the id.
std::optional<pid_t> writerOf(std::string_view name, std::string_view prefix) {
    if (!name.starts_with(prefix)) {
        return std::nullopt;
    }
    name.remove_prefix(prefix.size());
    pid_t id = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), id);
    if (error != std::errc() || end == name.data() || id <= 0) {
        return std::nullopt;
    }
    const std::string_view rest(end, static_cast<std::size_t>(name.data() + name.size() - end));
    if (!rest.empty() && (rest.front() != '-' || rest.size() == 1 ||
                          rest.substr(1).find_first_not_of("0123456789") != std::string::npos)) {
        return std::nullopt;
    }
    return id;
}

bool isRunning(pid_t process) {
    return process == ::getpid() || ::kill(process, 0) == 0 || errno == EPERM;
}

void removeStaleTemporaryFiles(const fs::path& target) {
    for (const fs::path& stale : staleTemporaryFiles(target)) {
        std::error_code ignored;
        fs::remove(stale, ignored);
    }
}

// A file the user cannot write, or with no write permission for anyone
// (which a superuser would otherwise write anyway).
bool isReadOnly(const fs::path& file, const struct stat& status) {
    constexpr mode_t anyWrite = S_IWUSR | S_IWGRP | S_IWOTH;
    return (status.st_mode & anyWrite) == 0 || ::access(file.c_str(), W_OK) != 0;
}

// Closes the descriptor and removes the temporary file unless it was committed.
class TemporaryFile {
public:
    TemporaryFile(const fs::path& target, const fs::path& reportAs, mode_t mode) {
        // O_EXCL makes the name unique; the number only steps past a file
        // another thread of this process is writing.
        const std::string prefix = temporaryPrefix(target) + std::to_string(::getpid()) + "-";
        for (int attempt = 0; attempt < temporaryNameAttempts && descriptor_ < 0; ++attempt) {
            path_ = folderOf(target) / (prefix + std::to_string(attempt));
            descriptor_ = ::open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
            if (descriptor_ < 0 && errno != EEXIST) {
                break;
            }
        }
        if (descriptor_ < 0) {
            throw FileError(reportAs, "cannot create a temporary file: " + lastErrorText());
        }
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() {
        if (descriptor_ >= 0) {
            ::close(descriptor_);
        }
        if (!committed_) {
            std::error_code ignored;
            fs::remove(path_, ignored);
        }
    }

    int descriptor() const noexcept { return descriptor_; }
    const fs::path& path() const noexcept { return path_; }
    // False with errno set when the data may not have reached the disk.
    bool close() noexcept {
        const int result = ::close(descriptor_);
        descriptor_ = -1;
        return result == 0;
    }
    void commit() noexcept { committed_ = true; }

private:
    fs::path path_;
    int descriptor_ = -1;
    bool committed_ = false;
};

void writeAll(int descriptor, std::span<const std::uint8_t> bytes, const fs::path& reportAs) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            throw FileError(reportAs, "cannot write: " + lastErrorText());
        }
        bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
}

// The new file keeps the old one's permission bits (umask does not apply)
// and, where the user may give them, its owner and group.
void takeOverAttributes(int descriptor, const struct stat& old) {
    ::fchmod(descriptor, old.st_mode & 07777);
    if (old.st_uid != ::geteuid() || old.st_gid != ::getegid()) {
        [[maybe_unused]] const int ignored = ::fchown(descriptor, old.st_uid, old.st_gid);
        ::fchmod(descriptor, old.st_mode & 07777);
    }
}

// After the rename the folder entry must reach the disk too; a file system
// that cannot sync folders says EINVAL and is trusted as it is.
void syncFolder(const fs::path& folder, const fs::path& reportAs) {
    const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) {
        return;
    }
    const bool failed = ::fsync(descriptor) != 0 && errno == EIO;
    ::close(descriptor);
    if (failed) {
        throw FileError(reportAs, "the file was replaced but may not be on disk yet: " +
                                      std::string(std::strerror(EIO)));
    }
}

} // namespace

std::vector<fs::path> staleTemporaryFiles(const fs::path& target) {
    const std::string prefix = temporaryPrefix(target);
    std::vector<fs::path> stale;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(folderOf(target), error)) {
        const auto writer = writerOf(entry.path().filename().string(), prefix);
        if (writer && entry.is_regular_file(error) && !isRunning(*writer)) {
            stale.push_back(entry.path());
        }
    }
    return stale;
}

void writeFileAtomically(const fs::path& path, std::span<const std::uint8_t> bytes) {
    writeFileAtomically(path, bytes, nullptr);
}

void writeFileAtomically(const fs::path& path, std::span<const std::uint8_t> bytes,
                         BeforeReplace beforeReplace) {
    const fs::path target = followLinks(path);
    struct stat old {};
    const bool exists = ::stat(target.c_str(), &old) == 0;
    if (exists && S_ISDIR(old.st_mode)) {
        throw FileError(path, "is a folder, not a file");
    }
    if (exists && isReadOnly(target, old)) {
        throw FileError(path, "the file is read-only");
    }
    removeStaleTemporaryFiles(target);

    constexpr mode_t newFileMode = 0666;
    TemporaryFile temporary(target, path, newFileMode);
    if (exists) {
        takeOverAttributes(temporary.descriptor(), old);
    }
    writeAll(temporary.descriptor(), bytes, path);
    if (::fsync(temporary.descriptor()) != 0 || !temporary.close()) {
        throw FileError(path, "cannot write: " + lastErrorText());
    }
    if (beforeReplace != nullptr) {
        beforeReplace(temporary.path());
    }
    if (::rename(temporary.path().c_str(), target.c_str()) != 0) {
        throw FileError(path, "cannot replace the file: " + lastErrorText());
    }
    temporary.commit();
    syncFolder(folderOf(target), path);
}

} // namespace marvek
