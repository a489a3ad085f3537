// The level's chunked file: reading with loadFromBits, writing with writeTo
// and saveToFile.
#include "data/clsLevel.h"

#include "graphics/clsPalette.h"
#include "io/clsBitStream.h"
#include "io/packedFile.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string_view>

namespace marvek {
namespace {

// Deliberately the length of a standard 300 x 84 level, whatever the size:
// a level of any other size is saved but then refused when loaded.
constexpr std::int32_t standardFileLength = 53588;
constexpr std::string_view iffText = "SDIFF:L1BM-IFF";
constexpr std::int32_t textBlockSize = 64;
constexpr std::int32_t paletteBlockSize = 64;
constexpr std::int32_t commentSize = 28;
constexpr std::int32_t paletteChunkSize = 192;
constexpr int specialBits = 6;
constexpr int tileBits = 10;

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
        for (auto& special : specials) {
            special = static_cast<std::uint8_t>(stream_.getBits(specialBits));
            stream_.getBits(tileBits);
        }
        level_.setDefaultSpecials(std::move(specials));
    }

    bool readBody() {
        if (!level_.hasSensibleSize()) {
            return false;
        }
        level_.resizeCells();
        for (auto& cell : level_.cells()) {
            cell.special = static_cast<std::uint8_t>(stream_.getBits(specialBits));
            cell.tile = static_cast<std::int16_t>(stream_.getBits(tileBits));
        }
        return true;
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

    void cellWord(std::uint8_t special, std::int16_t tile) {
        stream_.putBits(special, specialBits);
        stream_.putBits(tile, tileBits);
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
    do {
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
    resetUndo();
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
    for (std::size_t i = 0; i < entries; ++i) {
        writer.cellWord(i < defaultSpecials_.size() ? defaultSpecials_[i] : 0, 0);
    }

    writer.header("BODY", static_cast<std::int32_t>(cellCount * 2));
    for (std::size_t i = 0; i < cellCount; ++i) {
        const auto cell = i < cells_.size() ? cells_[i] : Cell{};
        writer.cellWord(cell.special, cell.tile);
    }
}

void clsLevel::saveToFile(const std::string& /*name*/, const clsPalette& palette) {
    clsBitStream stream;
    stream.Create();
    stream.autoExpand = true;
    writeTo(stream, palette);
    implodeToFile(*stream.bufferGet(), fileName);
    modified = false;
}

} // namespace marvek
