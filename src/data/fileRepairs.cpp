#include "data/fileRepairs.h"

#include "data/clsTileSet.h"

#include <array>
#include <string_view>

namespace marvek {
namespace {

constexpr std::int64_t chunkHeaderBytes = 8;

struct FixedChunk {
    std::string_view id;
    std::int64_t bytes;
};

// Chunks whose readers take a fixed number of bytes whatever their stated
// length (a PALA of any stated length is read as its three blocks).
constexpr std::array<FixedChunk, 7> fixedChunks{{
    {"WGMP", 4},
    {"XBLK", 4},
    {"YBLK", 4},
    {"REMX", 4},
    {"REMY", 4},
    {"PALA", 192},
    {"CCCL", 64},
}};

std::int64_t bytesTaken(const LevelChunk& chunk) {
    for (const FixedChunk& fixed : fixedChunks) {
        if (chunk.id == fixed.id) {
            return fixed.bytes;
        }
    }
    return chunk.statedLength;
}

std::string bodyRepair(std::int64_t available, std::int32_t width, std::int32_t height) {
    const std::int64_t cells = std::int64_t{width} * height;
    return "the BODY chunk holds " + std::to_string(available / 2) + " of the " +
           std::to_string(cells) + " cells of the " + std::to_string(width) + " x " +
           std::to_string(height) + " map; the missing cells were filled in";
}

} // namespace

std::vector<std::string> levelRepairs(std::span<const LevelChunk> chunks, std::int32_t fileSize,
                                      std::int32_t width, std::int32_t height) {
    std::vector<std::string> repairs;
    for (const LevelChunk& chunk : chunks) {
        const std::int64_t start = chunk.offset + chunkHeaderBytes;
        if (start > fileSize) {
            continue; // a header cut off at the end carries no data to repair
        }
        const std::int64_t available = fileSize - start;
        if (chunk.id == "BODY") {
            if (available < std::int64_t{width} * height * 2) {
                repairs.push_back(bodyRepair(available, width, height));
            }
        } else if (bytesTaken(chunk) > available) {
            repairs.push_back("the " + chunk.id + " chunk says " +
                              std::to_string(bytesTaken(chunk)) + " bytes but the file ends " +
                              std::to_string(available) + " bytes into it; the chunk was cut " +
                              "short there");
        }
    }
    return repairs;
}

std::optional<std::string> tileSetRepair(std::int32_t fileSize, int planes) {
    const std::int32_t count = tileCountOf(fileSize, planes);
    const std::int64_t tileBytes =
        std::int64_t{planes} * clsTileSet::tileSize * clsTileSet::tileSize / 8;
    const std::int64_t needed = count * tileBytes;
    if (count == 0 || needed <= fileSize) {
        return std::nullopt;
    }
    return "the tile set's last tile (" + std::to_string(count - 1) + ") lacks " +
           std::to_string(needed - fileSize) + " of its " + std::to_string(tileBytes) +
           " bytes, which were read as zeros";
}

std::optional<std::string> pictureRepair(std::int32_t fileSize, std::int32_t width,
                                         std::int32_t height, int planes) {
    const std::int64_t needed = (std::int64_t{width} * height * planes + 7) / 8;
    if (needed <= fileSize) {
        return std::nullopt;
    }
    return "the file holds " + std::to_string(fileSize) + " of the " + std::to_string(needed) +
           " bytes of its " + std::to_string(width) + " x " + std::to_string(height) + ", " +
           std::to_string(planes) + "-plane picture; the rest was read as zeros";
}

} // namespace marvek
