#include "data/levelRecovery.h"

#include "data/clsLevel.h"
#include "data/openLevel.h"
#include "io/FileError.h"
#include "io/clsBitStream.h"
#include "io/packedFile.h"

#include <system_error>
#include <utility>

namespace marvek {

namespace fs = std::filesystem;

fs::path recoveryPath(const fs::path& levelFile) {
    return fs::path(levelFile.string() + ".recovered");
}

fs::path recoveryPath(const clsLevel& level) {
    return recoveryPath(fs::path(level.fileName));
}

fs::path writeRecoveryCopy(const clsLevel& level, const clsPalette& palette) {
    const fs::path path = recoveryPath(level);
    if (level.fileName.empty()) {
        throw FileError(path, "the level has no file name to keep its work beside");
    }
    clsBitStream stream;
    stream.Create();
    stream.autoExpand = true;
    level.writeTo(stream, palette);
    implodeToFile(*stream.bufferGet(), path);
    return path;
}

bool hasNewerRecoveryCopy(const fs::path& levelFile) {
    std::error_code error;
    const fs::path copy = recoveryPath(levelFile);
    if (!fs::is_regular_file(copy, error)) {
        return false;
    }
    const auto copyTime = fs::last_write_time(copy, error);
    if (error) {
        return false;
    }
    const auto levelTime = fs::last_write_time(levelFile, error);
    return error || copyTime > levelTime;
}

bool removeRecoveryCopy(const clsLevel& level) {
    return level.fileName.empty() || removeRecoveryCopy(fs::path(level.fileName));
}

bool removeRecoveryCopy(const fs::path& levelFile) {
    std::error_code error;
    fs::remove(recoveryPath(levelFile), error);
    return !error;
}

void restoreRecoveryCopy(OpenedLevel& opened, const fs::path& applicationFolder) {
    const fs::path path = recoveryPath(opened.level);
    std::error_code error;
    if (!fs::is_regular_file(path, error)) {
        throw FileError(path, "the recovery file does not exist");
    }
    std::string unpackFailure;
    clsBitStream stream = getFileBits(path, &unpackFailure);
    if (!unpackFailure.empty()) {
        throw FileError(path, "the recovery file does not unpack: " + unpackFailure);
    }
    clsPalette palette = opened.palette;
    clsLevel level;
    if (!level.loadFromBits(stream, palette) || !level.hasSensibleSize()) {
        throw FileError(path, "the recovery file holds no level");
    }
    level.fileName = opened.level.fileName;
    level.tileSpacing = opened.level.tileSpacing;
    level.modified = true;

    clsPalette previous = std::move(opened.palette);
    opened.palette = std::move(palette);
    try {
        reloadGraphics(opened, applicationFolder);
    } catch (...) {
        opened.palette = std::move(previous);
        throw;
    }
    opened.level = std::move(level);
}

} // namespace marvek
