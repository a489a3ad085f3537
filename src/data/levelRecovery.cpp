#include "data/levelRecovery.h"

#include "data/clsLevel.h"
#include "io/FileError.h"
#include "io/clsBitStream.h"
#include "io/packedFile.h"

namespace marvek {

std::filesystem::path recoveryPath(const clsLevel& level) {
    return std::filesystem::path(level.fileName + ".recovered");
}

std::filesystem::path writeRecoveryCopy(const clsLevel& level, const clsPalette& palette) {
    const std::filesystem::path path = recoveryPath(level);
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

} // namespace marvek
