#include "levelTestSupport.h"

#include "io/FileError.h"
#include "io/packedFile.h"
#include "native/marvek.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>

namespace marvek::test {
namespace {

std::string idAt(const std::vector<std::uint8_t>& bytes, std::size_t offset) {
    return {bytes.begin() + static_cast<std::ptrdiff_t>(offset),
            bytes.begin() + static_cast<std::ptrdiff_t>(offset + 4)};
}

std::uint32_t longAt(const std::vector<std::uint8_t>& bytes, std::size_t offset) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        value = value << 8 | bytes[offset + i];
    }
    return value;
}

void expectSameLevel(const clsLevel& expected, const clsLevel& actual) {
    EXPECT_EQ(expected.width, actual.width);
    EXPECT_EQ(expected.height, actual.height);
    ASSERT_EQ(expected.cells().size(), actual.cells().size());
    EXPECT_TRUE(std::ranges::equal(expected.cells(), actual.cells(), [](Cell a, Cell b) {
        return a.tile == b.tile && a.special == b.special;
    }));
    EXPECT_TRUE(std::ranges::equal(expected.defaultSpecials(), actual.defaultSpecials()));
    EXPECT_TRUE(std::ranges::equal(expected.ccclData(), actual.ccclData()));
    EXPECT_EQ(expected.remX(), actual.remX());
    EXPECT_EQ(expected.remY(), actual.remY());
}

void expectSamePalette(const clsPalette& expected, const clsPalette& actual) {
    ASSERT_EQ(expected.Count(), actual.Count());
    for (std::int32_t i = 0; i < expected.Count(); ++i) {
        EXPECT_EQ(expected.Entry(i), actual.Entry(i)) << "entry " << i;
    }
}

TEST(LevelFile, StandardLevelHasTheFixedLayout) {
    const auto bytes = unpackedBytes(sampleLevel(), gamePalette());
    ASSERT_EQ(bytes.size(), 53588u);

    const std::vector<std::pair<std::size_t, std::string>> chunks = {
        {0, "WGMP"},    {12, "XBLK"},   {24, "YBLK"},  {36, "VERS"},   {72, "COM1"},
        {108, "COM2"},  {144, "REMX"},  {156, "REMY"}, {168, "IFFP"},  {240, "PALA"},
        {440, "PALB"},  {640, "PALC"},  {840, "PALD"}, {1040, "COLS"}, {1052, "CCCL"},
        {1124, "IFFC"}, {3180, "BODY"},
    };
    for (const auto& [offset, id] : chunks) {
        EXPECT_EQ(idAt(bytes, offset), id) << "at " << offset;
    }
    EXPECT_EQ(longAt(bytes, 8), 53588u);
    EXPECT_EQ(longAt(bytes, 20), 300u);
    EXPECT_EQ(longAt(bytes, 32), 84u);
    EXPECT_EQ(longAt(bytes, 244), 192u);
    EXPECT_EQ(idAt(bytes, 248), "SDIF");
    EXPECT_EQ(longAt(bytes, 1128), 2048u);
    EXPECT_EQ(longAt(bytes, 3184), 50400u);
    // Tile 12 brings special 5: 000101 then ten zero bits.
    EXPECT_EQ(bytes[1132 + 2 * 12], 0x14);
    EXPECT_EQ(bytes[1132 + 2 * 12 + 1], 0x00);
}

TEST(LevelFile, SavedLevelLoadsAgainUnchanged) {
    TempDir folder;
    clsLevel level = sampleLevel();
    const clsPalette palette = gamePalette();
    level.fileName = (folder / "L1MA1").string();
    level.modified = true;
    level.saveToFile((folder / "ignored").string(), palette);

    EXPECT_FALSE(level.modified);
    EXPECT_FALSE(std::filesystem::exists(folder / "ignored"));
    ASSERT_TRUE(isFileIMP(folder / "L1MA1"));

    undoInit();
    undoAdd(level.cells().data(), level.cellBytes());
    clsLevel loaded;
    loaded.modified = true;
    clsPalette loadedPalette;
    auto stream = getFileBits(folder / "L1MA1");
    ASSERT_EQ(stream.Size(), 53588);
    ASSERT_TRUE(loaded.loadFromBits(stream, loadedPalette));
    expectSameLevel(level, loaded);
    expectSamePalette(palette, loadedPalette);
    EXPECT_FALSE(loaded.modified);
    EXPECT_EQ(undoCount(), 0);
}

TEST(LevelFile, SaveFailureKeepsTheLevelModified) {
    TempDir folder;
    clsLevel level = sampleLevel(20, 10);
    level.fileName = (folder / "missing" / "L1MA1").string();
    level.modified = true;
    EXPECT_THROW(level.saveToFile(level.fileName, gamePalette()), FileError);
    EXPECT_TRUE(level.modified);
}

// The WGMP value is always that of a standard level; this refusal is wanted.
TEST(LevelFile, NonStandardSizeSavesButDoesNotLoad) {
    TempDir folder;
    clsLevel level = sampleLevel(20, 10);
    level.fileName = (folder / "small").string();
    level.saveToFile(level.fileName, gamePalette());
    ASSERT_TRUE(std::filesystem::exists(level.fileName));

    auto stream = getFileBits(level.fileName);
    EXPECT_EQ(stream.Size(), 3188 + 400);
    clsLevel loaded;
    clsPalette palette;
    EXPECT_FALSE(loaded.loadFromBits(stream, palette));
}

TEST(LevelFile, OnlyLowBitsOfTileAndSpecialAreStored) {
    clsLevel level = sampleLevel();
    level.cellAt(0, 0) = Cell{1025, 65, 0};
    const auto bytes = unpackedBytes(level, gamePalette());
    EXPECT_EQ(bytes[3188], 0x04);
    EXPECT_EQ(bytes[3189], 0x01);

    auto stream = streamOver(bytes);
    clsLevel loaded;
    clsPalette palette;
    ASSERT_TRUE(loaded.loadFromBits(stream, palette));
    EXPECT_EQ(loaded.cellAt(0, 0).tile, 1);
    EXPECT_EQ(loaded.cellAt(0, 0).special, 1);
}

TEST(LevelFile, ShortTablesAreStillWrittenWhole) {
    clsLevel level = sampleLevel();
    level.setDefaultSpecials({});
    clsPalette empty;
    const auto bytes = unpackedBytes(level, empty);
    ASSERT_EQ(bytes.size(), 53588u);
    EXPECT_EQ(idAt(bytes, 440), "PALB");
    EXPECT_EQ(idAt(bytes, 3180), "BODY");
}

TEST(LevelFile, ChunksTheReaderDoesNotKnowAreSkipped) {
    ChunkBuilder file;
    file.longChunk("XBLK", 2)
        .chunk("ABCD", {1, 2, 3, 4, 5})
        .longChunk("YBLK", 1)
        .chunk("body", {0xFF, 0xFF, 0xFF, 0xFF})
        .longChunk("REMX", 9)
        .chunk("BODY", {0x14, 0x03, 0x00, 0x02});
    auto stream = streamOver(file.bytes());
    clsLevel level;
    clsPalette palette;
    ASSERT_TRUE(level.loadFromBits(stream, palette));
    EXPECT_EQ(level.width, 2);
    EXPECT_EQ(level.height, 1);
    EXPECT_EQ(level.remX(), 9);
    EXPECT_EQ(level.cellAt(0, 0).special, 5);
    EXPECT_EQ(level.cellAt(0, 0).tile, 3);
    EXPECT_EQ(level.cellAt(1, 0).special, 0);
    EXPECT_EQ(level.cellAt(1, 0).tile, 2);
    EXPECT_EQ(palette.Count(), 0) << "no PALA, palette untouched";
}

TEST(LevelFile, PaletteChunkIsReadAsThreeBlocksWhateverItsLength) {
    std::vector<std::uint8_t> pala(192);
    pala[64] = 0x00; // entry 0: red 0, green 15, blue 15
    pala[65] = 0xFF;
    ChunkBuilder file;
    file.chunk("PALA", 4, pala).longChunk("REMY", 77);
    auto stream = streamOver(file.bytes());
    clsLevel level;
    clsPalette palette;
    ASSERT_TRUE(level.loadFromBits(stream, palette));
    ASSERT_EQ(palette.Count(), 32);
    EXPECT_EQ(palette.Entry(0), 0x00FFFF00u);
    EXPECT_EQ(level.remY(), 77);
}

TEST(LevelFile, RefusesMapsOfNoSensibleSizeAtBody) {
    struct Case {
        std::uint32_t width, height;
        bool loads;
    };
    for (const Case c :
         {Case{0, 84, false}, Case{300, 0, false}, Case{0xFFFFFFFF, 84, false},
          Case{1048577, 1, false}, Case{65536, 65536, false}, Case{1048576, 1, true}}) {
        ChunkBuilder file;
        file.longChunk("XBLK", c.width).longChunk("YBLK", c.height).chunk("BODY", {0, 0});
        auto stream = streamOver(file.bytes());
        clsLevel level;
        clsPalette palette;
        EXPECT_EQ(level.loadFromBits(stream, palette), c.loads) << c.width << " x " << c.height;
    }
}

TEST(LevelFile, TruncatedFilesLoadWhatIsThere) {
    const auto whole = unpackedBytes(sampleLevel(), gamePalette());
    // The last cell holds tile 519: cut off its low byte and 512 is left.
    const std::vector<std::pair<std::size_t, std::int16_t>> cuts = {
        {3189, 0}, {3300, 0}, {53587, 512}};
    for (const auto& [length, lastTile] : cuts) {
        std::vector<std::uint8_t> cut(whole.begin(),
                                      whole.begin() + static_cast<std::ptrdiff_t>(length));
        // The WGMP value has to agree with the shorter data.
        const auto size = ChunkBuilder::bigEndian(static_cast<std::uint32_t>(length));
        std::copy(size.begin(), size.end(), cut.begin() + 8);
        auto stream = streamOver(cut);
        clsLevel level;
        clsPalette palette;
        ASSERT_TRUE(level.loadFromBits(stream, palette)) << length;
        EXPECT_EQ(level.cells().size(), 25200u);
        EXPECT_EQ(level.cells().back().tile, lastTile) << "cells past the end read as zero";
    }
}

TEST(LevelFile, HugeStatedLengthsDoNotRunAway) {
    ChunkBuilder file;
    file.longChunk("XBLK", 4).chunk("IFFC", 0xFFFFFFFF, {0x14, 0x00, 0x08, 0x00});
    auto stream = streamOver(file.bytes());
    clsLevel level;
    clsPalette palette;
    ASSERT_TRUE(level.loadFromBits(stream, palette));
    ASSERT_GE(level.defaultSpecials().size(), 2u);
    EXPECT_EQ(level.defaultSpecials()[0], 5);
    EXPECT_EQ(level.defaultSpecials()[1], 2);

    ChunkBuilder skipped;
    skipped.chunk("VERS", 0xFFFFFFF0, {1, 2, 3});
    auto skipStream = streamOver(skipped.bytes());
    EXPECT_TRUE(level.loadFromBits(skipStream, palette));
}

TEST(LevelFile, EmptyOrMismatchedStreamsFail) {
    clsLevel level;
    clsPalette palette;
    clsBitStream noStorage;
    EXPECT_FALSE(level.loadFromBits(noStorage, palette));
    auto empty = streamOver({});
    EXPECT_FALSE(level.loadFromBits(empty, palette));

    ChunkBuilder file;
    file.longChunk("XBLK", 3).longChunk("WGMP", 53588).longChunk("YBLK", 4);
    auto stream = streamOver(file.bytes());
    EXPECT_FALSE(level.loadFromBits(stream, palette));
    EXPECT_EQ(level.width, 3) << "fields read before the failing chunk stay";
    EXPECT_EQ(level.height, 0);
}

} // namespace
} // namespace marvek::test
