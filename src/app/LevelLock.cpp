#include "app/LevelLock.h"

#include "app/qtPaths.h"

#include <QLockFile>

#include <string>
#include <system_error>

namespace marvek {

namespace fs = std::filesystem;

LevelLock::LevelLock(const fs::path& level)
    : level_(level), lock_(std::make_unique<QLockFile>(toQString(lockPath(level)))) {
    // An editing session may last hours: only a dead holder makes a lock stale.
    lock_->setStaleLockTime(0);
    if (lock_->tryLock(0) || lock_->error() != QLockFile::LockFailedError) {
        return;
    }
    Holder holder;
    QString program;
    // A lock file too new to read yet still names no one, but is held.
    lock_->getLockInfo(&holder.process, &holder.host, &program);
    holder_ = holder;
}

LevelLock::~LevelLock() = default;

fs::path LevelLock::lockPath(const fs::path& level) {
    // Appended, not "." + name: GCC 12 warns falsely about the latter.
    std::string name = ".";
    name += level.filename().string();
    name += ".lock";
    return level.parent_path() / name;
}

bool LevelLock::held() const noexcept {
    return lock_->isLocked();
}

bool LevelLock::isFor(const fs::path& level) const {
    std::error_code error;
    return fs::equivalent(level_, level, error) ||
           level_.lexically_normal() == level.lexically_normal();
}

} // namespace marvek
