#pragma once

#include <QString>

#include <filesystem>
#include <memory>
#include <optional>

class QLockFile;

namespace marvek {

// Marks a level file as held by this editor, so that a second editor on the
// same file knows and can stay off it: a lock file beside the level that
// lives as long as this object. A lock whose process has died is taken over.
class LevelLock {
public:
    // The editor that holds a level this one could not lock.
    struct Holder {
        qint64 process = 0;
        QString host;
    };

    // Tries to lock the level; see held() and holder() for the outcome.
    explicit LevelLock(const std::filesystem::path& level);
    ~LevelLock();
    LevelLock(const LevelLock&) = delete;
    LevelLock& operator=(const LevelLock&) = delete;

    // Beside the level, hidden: ".NAME.lock".
    static std::filesystem::path lockPath(const std::filesystem::path& level);

    const std::filesystem::path& level() const noexcept { return level_; }
    // True when this editor holds the level and may write it and its
    // recovery copy.
    bool held() const noexcept;
    // Who holds the level when another editor does; none when this one
    // holds it or the lock could not be made for another reason (a folder
    // it cannot write in, where saving fails anyway).
    const std::optional<Holder>& holder() const noexcept { return holder_; }
    // This level's file, whatever the spelling of the path.
    bool isFor(const std::filesystem::path& level) const;

private:
    std::filesystem::path level_;
    std::unique_ptr<QLockFile> lock_;
    std::optional<Holder> holder_;
};

} // namespace marvek
