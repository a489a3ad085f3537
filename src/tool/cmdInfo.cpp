// marvek-tool info LEVEL: what a level file holds.
#include "data/clsLevel.h"
#include "graphics/clsPalette.h"
#include "io/FileError.h"
#include "io/packedFile.h"
#include "io/pathProblem.h"
#include "tool/commands.h"

#include <CLI/CLI.hpp>

#include <array>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <system_error>
#include <vector>

namespace marvek::tool {
namespace {

namespace fs = std::filesystem;

// The reader's own account: the stated length, and what it really took
// where that differs.
void printChunks(const std::vector<LevelChunk>& chunks) {
    std::printf("chunks:\n");
    for (const auto& chunk : chunks) {
        std::string id;
        for (const char c : chunk.id) {
            id += (c >= 0x20 && c < 0x7F) ? c : '?';
        }
        std::printf("  %s %6u bytes at %d", id.c_str(), chunk.statedLength, chunk.offset);
        if (static_cast<std::uint32_t>(chunk.bytesRead) != chunk.statedLength) {
            std::printf(" (read as %d)", chunk.bytesRead);
        }
        std::printf("\n");
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

// Why the reader refused the level, from the chunk it stopped at.
std::string refusal(const std::vector<LevelChunk>& chunks, const clsLevel& level,
                    std::size_t length) {
    if (!chunks.empty() && chunks.back().id == "WGMP") {
        return "not a level that loads: WGMP does not state the data's length of " +
               std::to_string(length) + " bytes";
    }
    if (!chunks.empty() && chunks.back().id == "BODY") {
        return "not a level that loads: the map size is " + std::to_string(level.width) + " x " +
               std::to_string(level.height) + " when BODY is reached";
    }
    return "not a level that loads";
}

void checkIsFile(const fs::path& path) {
    if (const auto broken = brokenPathReason(path)) {
        throw FileError(path, *broken);
    }
    std::error_code error;
    if (fs::is_directory(path, error)) {
        throw FileError(path, "is a folder, not a file");
    }
    if (!fs::exists(path, error)) {
        throw FileError(path, "the file does not exist");
    }
    if (fs::file_size(path, error) == 0 && !error) {
        throw FileError(path, "the file is empty");
    }
}

int describe(const std::string& path) {
    checkIsFile(path);
    std::string unpackFailure;
    clsBitStream stream = getFileBits(path, &unpackFailure);
    if (!unpackFailure.empty()) {
        return fail(path, "does not unpack: " + unpackFailure);
    }
    const std::size_t length = stream.bufferGet()->data().size();
    clsLevel level;
    clsPalette palette;
    std::vector<LevelChunk> chunks;
    if (!level.loadFromBits(stream, palette, &chunks)) {
        return fail(path, refusal(chunks, level, length));
    }
    // A file of other chunks (a tile set, a picture) reads without error.
    if (!level.hasSensibleSize()) {
        return fail(path, "the file holds no map, so it is no level");
    }
    std::printf("file: %s\n", path.c_str());
    std::printf("packed: %s\n", isFileIMP(path) ? "yes" : "no");
    std::printf("unpacked length: %zu\n", length);
    std::printf("size: %d x %d\n", level.width, level.height);
    printChunks(chunks);
    printSpecialCounts(level);
    printDefaultSpecials(level);
    return 0;
}

class Info : public ToolCommand {
public:
    void addArguments(CLI::App& parser) override {
        parser.add_option("LEVEL", path_, "The level file, packed or not.")->required();
    }

    int run() override {
        try {
            return describe(path_);
        } catch (const FileError& error) {
            std::fprintf(stderr, "marvek-tool: %s\n", error.what());
            return 1;
        } catch (const std::exception& error) {
            return fail(path_, error.what());
        }
    }

private:
    std::string path_;
};

} // namespace

std::unique_ptr<ToolCommand> makeInfo() {
    return std::make_unique<Info>();
}

} // namespace marvek::tool
