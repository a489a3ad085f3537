// marvek-tool info LEVEL: what a level file holds.
#include "data/clsLevel.h"
#include "graphics/clsPalette.h"
#include "io/FileError.h"
#include "io/packedFile.h"
#include "tool/commands.h"

#include <array>
#include <cstdio>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace marvek::tool {
namespace {

struct ChunkEntry {
    std::string id;
    std::uint32_t length = 0;
    std::size_t offset = 0;
};

std::uint32_t bigEndian32(std::span<const std::uint8_t> bytes, std::size_t at) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        value = value << 8 | bytes[at + i];
    }
    return value;
}

std::string printableId(std::span<const std::uint8_t> bytes, std::size_t at) {
    std::string id;
    for (std::size_t i = 0; i < 4; ++i) {
        const auto c = bytes[at + i];
        id += (c >= 0x20 && c < 0x7F) ? static_cast<char>(c) : '?';
    }
    return id;
}

// The chunks in file order; throws when one runs past the end of the data.
std::vector<ChunkEntry> walkChunks(std::span<const std::uint8_t> bytes) {
    constexpr std::size_t headerSize = 8;
    std::vector<ChunkEntry> chunks;
    std::size_t offset = 0;
    while (offset < bytes.size()) {
        if (bytes.size() - offset < headerSize) {
            throw std::runtime_error("a chunk header at offset " + std::to_string(offset) +
                                     " is cut off");
        }
        ChunkEntry chunk{printableId(bytes, offset), bigEndian32(bytes, offset + 4), offset};
        if (chunk.length > bytes.size() - offset - headerSize) {
            throw std::runtime_error("chunk " + chunk.id + " at offset " + std::to_string(offset) +
                                     " runs past the end of the data");
        }
        offset += headerSize + chunk.length;
        chunks.push_back(std::move(chunk));
    }
    return chunks;
}

void printChunks(const std::vector<ChunkEntry>& chunks) {
    std::printf("chunks:\n");
    for (const auto& chunk : chunks) {
        std::printf("  %s %6u bytes at %zu\n", chunk.id.c_str(), chunk.length, chunk.offset);
    }
}

void printSpecialCounts(const clsLevel& level) {
    std::array<std::size_t, 256> counts{};
    for (const auto& cell : level.cells()) {
        ++counts[cell.special];
    }
    std::printf("specials on the map:\n");
    for (std::size_t id = 0; id < counts.size(); ++id) {
        if (counts[id] != 0) {
            std::printf("  special %zu: %zu\n", id, counts[id]);
        }
    }
}

void printDefaultSpecials(const clsLevel& level) {
    std::printf("default specials:\n");
    const auto table = level.defaultSpecials();
    for (std::size_t tile = 0; tile < table.size(); ++tile) {
        if (table[tile] != 0) {
            std::printf("  tile %zu -> special %u\n", tile, table[tile]);
        }
    }
}

int fail(const std::string& path, const std::string& reason) {
    std::fprintf(stderr, "marvek-tool: %s: %s\n", path.c_str(), reason.c_str());
    return 1;
}

int describe(const std::string& path) {
    std::string unpackFailure;
    clsBitStream stream = getFileBits(path, &unpackFailure);
    if (!unpackFailure.empty()) {
        return fail(path, "does not unpack: " + unpackFailure);
    }
    const auto bytes = stream.bufferGet()->data();
    const auto chunks = walkChunks(bytes);
    clsLevel level;
    clsPalette palette;
    if (!level.loadFromBits(stream, palette)) {
        return fail(path, "not a level that loads (wrong WGMP length or map size)");
    }
    std::printf("file: %s\n", path.c_str());
    std::printf("packed: %s\n", isFileIMP(path) ? "yes" : "no");
    std::printf("unpacked length: %zu\n", bytes.size());
    std::printf("size: %d x %d\n", level.width, level.height);
    printChunks(chunks);
    printSpecialCounts(level);
    printDefaultSpecials(level);
    return 0;
}

} // namespace

int runInfo(const Arguments& arguments, const char* usage) {
    if (arguments.size() != 1) {
        std::fprintf(stderr, "usage: marvek-tool %s\n", usage);
        return 2;
    }
    const std::string& path = arguments.front();
    try {
        return describe(path);
    } catch (const FileError& error) {
        std::fprintf(stderr, "marvek-tool: %s\n", error.what());
        return 1;
    } catch (const std::exception& error) {
        return fail(path, error.what());
    }
}

} // namespace marvek::tool
