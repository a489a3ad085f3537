// The level's chunked file: reading with loadFromBits, writing with writeTo
// and saveToFile.
#include "data/clsLevel.h"

#include "graphics/clsPalette.h"
#include "io/clsBitStream.h"
#include "io/packedFile.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string>
#include <string_view>

namespace marvek {
namespace {

// Deliberately the length of a standard 300 x 84 level, whatever the size:
// a level of any other cell count would be refused when loaded, so it is
// never saved.
constexpr std::int32_t standardFileLength = 53588;
constexpr std::int64_t standardCellCount = 300 * 84;
constexpr std::string_view iffText = "SDIFF:L1BM-IFF";
constexpr std::int32_t textBlockSize = 64;
constexpr std::int32_t paletteBlockSize = 64;
constexpr std::int32_t commentSize = 28;
constexpr std::int32_t paletteChunkSize = 192;
constexpr int specialBits = 6;
constexpr int tileBits = 10;
constexpr std::uint32_t tileMask = (1u << tileBits) - 1;
constexpr std::uint32_t specialMask = (1u << specialBits) - 1;

class LevelReader {
public:
    LevelReader(clsLevel& level, clsBitStream& stream, clsPalette& palette)
        : level_(level), stream_(stream), palette_(palette) {}

    // False when the level must be refused. The chunk's ID and stated
    // length go to chunk.
    bool readChunk(LevelChunk& chunk) {
        chunk.id = stream_.getString(4);
        chunk.statedLength = static_cast<std::uint32_t>(stream_.getLong());
        const auto& id = chunk.id;
        const auto length = chunk.statedLength;
        if (id == "WGMP") {
            return stream_.getLong() == stream_.Size();
        }
        if (id == "BODY") {
            return readBody();
        }
        if (id == "XBLK") {
            level_.width = stream_.getLong();
        } else if (id == "YBLK") {
            level_.height = stream_.getLong();
        } else if (id == "REMX") {
            level_.setRemX(stream_.getLong());
        } else if (id == "REMY") {
            level_.setRemY(stream_.getLong());
        } else if (id == "PALA") {
            readPalette();
        } else if (id == "CCCL") {
            readCccl();
        } else if (id == "IFFC") {
            readDefaultSpecials(length);
        } else {
            skip(length);
        }
        return true;
    }

private:
    std::int64_t remainingBytes() const {
        return std::max<std::int64_t>(0, stream_.Size() - stream_.byteOffset());
    }

    // Same as skipBytes on a stream that does not grow, without a step per byte.
    void skip(std::int64_t length) {
        stream_.seekTo(
            static_cast<std::int32_t>(stream_.byteOffset() + std::min(length, remainingBytes())));
    }

    // The palette sits between two blocks, whatever the chunk's length says.
    void readPalette() {
        skip(textBlockSize);
        palette_ = clsPalette{};
        palette_.loadFrom(stream_, clsPalette::gamePlanes);
        skip(paletteBlockSize);
    }

    void readCccl() {
        std::array<std::uint8_t, clsLevel::ccclSize> data{};
        stream_.getData(data);
        level_.setCcclData(data);
    }

    void readDefaultSpecials(std::uint32_t length) {
        // Entries past the end of the data would all read as zero; leaving
        // them out keeps a hostile length from claiming gigabytes.
        const auto available = (remainingBytes() + 1) / 2;
        const auto count = std::min<std::int64_t>(length / 2, available);
        std::vector<std::uint8_t> specials(static_cast<std::size_t>(count));
        const auto take = [&](std::size_t i, std::uint32_t special, std::uint32_t) {
            specials[i] = static_cast<std::uint8_t>(special);
        };
        const Repeat rest = readCellWords(specials.size(), take);
        for (std::size_t i = rest.from; i < specials.size(); ++i) {
            take(i, rest.special, rest.tile);
        }
        level_.setDefaultSpecials(std::move(specials));
    }

    bool readBody() {
        if (!level_.hasSensibleSize()) {
            return false;
        }
        level_.resizeCells();
        const auto cells = level_.cells();
        const Repeat rest = readCellWords(
            cells.size(), [&](std::size_t i, std::uint32_t special, std::uint32_t tile) {
                cells[i].special = static_cast<std::uint8_t>(special);
                cells[i].tile = static_cast<std::int16_t>(tile);
            });
        const Cell repeated{static_cast<std::int16_t>(rest.tile),
                            static_cast<std::uint8_t>(rest.special), 0};
        if (rest.from < cells.size() && (repeated.tile != 0 || repeated.special != 0)) {
            std::fill(cells.begin() + static_cast<std::ptrdiff_t>(rest.from), cells.end(),
                      repeated);
        }
        return true;
    }

    // The words from `from` on, which all read the same.
    struct Repeat {
        std::size_t from;
        std::uint32_t special;
        std::uint32_t tile;
    };

    // Reads count words of a special and a tile each, handing each to take
    // until the rest are known to repeat. The words that lie wholly in the
    // data are decoded straight from a copy of their bytes; a level is mostly
    // such words, and taking them bit by bit made reading one cost
    // milliseconds. The rest go through getBits, which says what a short file
    // reads as: once it is stuck at the spare byte every word is the same, and
    // a short file may claim a million cells.
    template <typename Take> Repeat readCellWords(std::size_t count, Take take) {
        std::size_t done = 0;
        if (stream_.bitOffset() == 0) {
            const auto whole =
                static_cast<std::size_t>(std::min<std::int64_t>(count, remainingBytes() / 2));
            std::vector<std::uint8_t> bytes(whole * 2);
            stream_.getData(bytes);
            for (; done < whole; ++done) {
                const std::uint32_t word = bytes[2 * done] << 8 | bytes[2 * done + 1];
                take(done, word >> tileBits, word & tileMask);
            }
        }
        for (; done < count; ++done) {
            const bool wasStuck = stuckAtEnd();
            const auto special = static_cast<std::uint32_t>(stream_.getBits(specialBits));
            const auto tile = static_cast<std::uint32_t>(stream_.getBits(tileBits));
            take(done, special, tile);
            if (wasStuck && stuckAtEnd() && !stream_.autoExpand) {
                return {done + 1, special, tile};
            }
        }
        return {count, 0, 0};
    }

    // At the spare byte's first bit, where a stream without autoExpand stays.
    bool stuckAtEnd() const {
        return stream_.byteOffset() == stream_.Size() && stream_.bitOffset() == 0;
    }

    clsLevel& level_;
    clsBitStream& stream_;
    clsPalette& palette_;
};

class LevelWriter {
public:
    explicit LevelWriter(clsBitStream& stream) : stream_(stream) {}

    void header(std::string_view id, std::int32_t length) {
        stream_.putString(id);
        stream_.putLong(length);
    }
    void longChunk(std::string_view id, std::int32_t value) {
        header(id, 4);
        stream_.putLong(value);
    }
    void zeroChunk(std::string_view id, std::int32_t length) {
        header(id, length);
        stream_.putZeroBytes(length);
    }
    void iffTextBlock() {
        stream_.putString(iffText);
        stream_.putZeroBytes(textBlockSize - static_cast<std::int32_t>(iffText.size()));
    }

    // Exactly one block, so that the chunk keeps its stated length whatever
    // the palette's entry count.
    void paletteBlock(const clsPalette& palette) {
        clsBitStream scratch;
        scratch.Create();
        scratch.autoExpand = true;
        palette.writeTo(scratch);
        const auto written = scratch.bufferGet()->data();
        const auto used = std::min<std::size_t>(written.size(), paletteBlockSize);
        stream_.putData(written.first(used));
        stream_.putZeroBytes(paletteBlockSize - static_cast<std::int32_t>(used));
    }

    // count words of a special and a tile each, built in memory and written
    // in one step rather than bit by bit.
    template <typename CellAt> void cellWords(std::size_t count, CellAt cellAt) {
        std::vector<std::uint8_t> bytes(count * 2);
        for (std::size_t i = 0; i < count; ++i) {
            const Cell cell = cellAt(i);
            const std::uint32_t word = (std::uint32_t{cell.special} & specialMask) << tileBits |
                                       (static_cast<std::uint32_t>(cell.tile) & tileMask);
            bytes[2 * i] = static_cast<std::uint8_t>(word >> 8);
            bytes[2 * i + 1] = static_cast<std::uint8_t>(word);
        }
        stream_.putData(bytes);
    }

private:
    clsBitStream& stream_;
};

std::size_t cellCountToWrite(const clsLevel& level) {
    if (level.width < 1 || level.height < 1) {
        return 0;
    }
    if (!level.hasSensibleSize()) {
        throw std::length_error("a level of " + std::to_string(level.width) + " x " +
                                std::to_string(level.height) + " cells cannot be written");
    }
    return static_cast<std::size_t>(level.width) * static_cast<std::size_t>(level.height);
}

} // namespace

bool clsLevel::loadFromBits(clsBitStream& stream, clsPalette& palette,
                            std::vector<LevelChunk>* chunksRead) {
    // An empty stream is what a file that did not unpack leaves behind.
    if (!stream.bufferGet()->hasStorage() || stream.Size() == 0) {
        return false;
    }
    constexpr std::int32_t headerSize = 8;
    LevelReader reader(*this, stream, palette);
    std::size_t chunkCount = 0;
    do {
        if (++chunkCount > maximumChunks) {
            return false;
        }
        LevelChunk chunk;
        chunk.offset = stream.byteOffset();
        const bool accepted = reader.readChunk(chunk);
        if (chunksRead != nullptr) {
            chunk.bytesRead = std::max(0, stream.byteOffset() - chunk.offset - headerSize);
            chunksRead->push_back(std::move(chunk));
        }
        if (!accepted) {
            return false;
        }
    } while (!stream.endOfStream());
    modified = false;
    return true;
}

void clsLevel::writeTo(clsBitStream& stream, const clsPalette& palette) const {
    const auto cellCount = cellCountToWrite(*this);
    LevelWriter writer(stream);
    writer.longChunk("WGMP", standardFileLength);
    writer.longChunk("XBLK", width);
    writer.longChunk("YBLK", height);
    writer.zeroChunk("VERS", commentSize);
    writer.zeroChunk("COM1", commentSize);
    writer.zeroChunk("COM2", commentSize);
    writer.longChunk("REMX", remX_);
    writer.longChunk("REMY", remY_);
    writer.header("IFFP", textBlockSize);
    writer.iffTextBlock();
    writer.header("PALA", paletteChunkSize);
    writer.iffTextBlock();
    writer.paletteBlock(palette);
    stream.putZeroBytes(paletteBlockSize);
    writer.zeroChunk("PALB", paletteChunkSize);
    writer.zeroChunk("PALC", paletteChunkSize);
    writer.zeroChunk("PALD", paletteChunkSize);
    writer.longChunk("COLS", 0);
    writer.header("CCCL", static_cast<std::int32_t>(ccclSize));
    stream.putData(ccclData_);

    // Short tables are padded so that the chunk holds what its length says.
    const auto entries = std::max(defaultSpecials_.size(), fileDefaultSpecials);
    writer.header("IFFC", static_cast<std::int32_t>(entries * 2));
    writer.cellWords(entries, [this](std::size_t i) {
        return Cell{0, i < defaultSpecials_.size() ? defaultSpecials_[i] : std::uint8_t{0}, 0};
    });

    writer.header("BODY", static_cast<std::int32_t>(cellCount * 2));
    writer.cellWords(cellCount,
                     [this](std::size_t i) { return i < cells_.size() ? cells_[i] : Cell{}; });
}

std::string clsLevel::whyNotSavable() const {
    const std::int64_t count = std::int64_t{width} * height;
    if (count == standardCellCount) {
        return {};
    }
    return "The level has " + std::to_string(width) + " x " + std::to_string(height) + " = " +
           std::to_string(count) +
           " cells, but a level file holds exactly 25,200 cells (300 x 84): saved, it "
           "could not be opened again.";
}

void clsLevel::saveToFile(const std::string& /*name*/, const clsPalette& palette) {
    if (const std::string reason = whyNotSavable(); !reason.empty()) {
        throw std::length_error(reason);
    }
    clsBitStream stream;
    stream.Create();
    stream.autoExpand = true;
    writeTo(stream, palette);
    implodeToFile(*stream.bufferGet(), fileName);
    modified = false;
}

} // namespace marvek
