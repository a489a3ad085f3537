#include "io/FileError.h"
#include "io/packedFile.h"
#include "native/marvek.h"
#include "support/tool.h"
#include "support/world.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <tuple>
#include <utility>

namespace marvek::test {
namespace {

using Bytes = std::vector<std::uint8_t>;

std::string idAt(const Bytes& bytes, std::size_t offset) {
    return {bytes.begin() + static_cast<std::ptrdiff_t>(offset),
            bytes.begin() + static_cast<std::ptrdiff_t>(offset + 4)};
}

std::uint32_t longAt(const Bytes& bytes, std::size_t offset) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        value = value << 8 | bytes[offset + i];
    }
    return value;
}

struct Loaded {
    bool loads = false;
    clsLevel level;
    clsPalette palette;
};

Loaded load(const Bytes& bytes) {
    Loaded result;
    auto stream = streamOver(bytes);
    result.loads = result.level.loadFromBits(stream, result.palette);
    return result;
}

TEST(LevelFile, StandardLevelHasTheFixedLayout) {
    const auto bytes = levelBytes(sampleLevel(), gamePalette());
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
    // Short tables are still written whole.
    clsLevel level = sampleLevel();
    level.setDefaultSpecials({});
    const auto shortTables = levelBytes(level, clsPalette{});
    ASSERT_EQ(shortTables.size(), 53588u);
    EXPECT_EQ(idAt(shortTables, 440), "PALB");
    EXPECT_EQ(idAt(shortTables, 3180), "BODY");
}

TEST(LevelFile, SavedLevelLoadsAgainUnchanged) {
    TempDir folder;
    clsLevel level = sampleLevel();
    level.fileName = (folder / "L1MA1").string();
    level.modified = true;
    level.saveToFile((folder / "ignored").string(), gamePalette());
    EXPECT_FALSE(level.modified);
    EXPECT_FALSE(std::filesystem::exists(folder / "ignored"));
    ASSERT_TRUE(isFileIMP(folder / "L1MA1"));

    undoInit();
    undoAdd(level.cells().data(), level.cellBytes());
    const std::int32_t undoSteps = undoCount();
    clsLevel loaded;
    loaded.modified = true;
    clsPalette palette;
    auto stream = getFileBits(folder / "L1MA1");
    ASSERT_EQ(stream.Size(), 53588);
    ASSERT_TRUE(loaded.loadFromBits(stream, palette));
    // Every field the file holds, and the palette, came back.
    EXPECT_TRUE(levelBytes(loaded, palette) == levelBytes(level, gamePalette()));
    EXPECT_EQ(loaded.remY(), 123456);
    EXPECT_EQ(palette.Entry(31), gamePalette().Entry(31));
    EXPECT_FALSE(loaded.modified);
    EXPECT_EQ(undoCount(), undoSteps) << "reading a level leaves the open level's history alone";

    level.fileName = (folder / "missing" / "L1MA1").string();
    level.modified = true;
    EXPECT_THROW(level.saveToFile(level.fileName, gamePalette()), FileError);
    EXPECT_TRUE(level.modified) << "a failed save keeps the level modified";
}

// The file's fixed length only fits 25,200 cells: any other count would be
// written into a file that no reader opens, so nothing is written at all.
TEST(LevelFile, OnlyTheFormatsCellCountIsSaved) {
    TempDir folder;
    clsLevel small = sampleLevel(20, 10);
    small.fileName = (folder / "small").string();
    small.modified = true;
    try {
        small.saveToFile(small.fileName, gamePalette());
        ADD_FAILURE() << "a 20 x 10 level was saved";
    } catch (const std::length_error& error) {
        EXPECT_THAT(error.what(), ::testing::HasSubstr("20 x 10 = 200 cells"));
        EXPECT_THAT(error.what(), ::testing::HasSubstr("25,200"));
    }
    EXPECT_FALSE(std::filesystem::exists(small.fileName));
    EXPECT_TRUE(small.modified);

    // Another shape of the same area is fine.
    clsLevel tall = sampleLevel(84, 300);
    EXPECT_EQ(tall.whyNotSavable(), "");
    tall.fileName = (folder / "tall").string();
    tall.saveToFile(tall.fileName, gamePalette());
    auto stream = getFileBits(tall.fileName);
    clsLevel loaded;
    clsPalette palette;
    EXPECT_TRUE(loaded.loadFromBits(stream, palette));
    EXPECT_EQ(loaded.width, 84);
}

TEST(LevelFile, OnlyLowBitsOfTileAndSpecialAreStored) {
    clsLevel level = sampleLevel();
    level.cellAt(0, 0) = Cell{1025, 65, 0};
    const auto bytes = levelBytes(level, gamePalette());
    EXPECT_EQ(bytes[3188], 0x04);
    EXPECT_EQ(bytes[3189], 0x01);
    const Loaded loaded = load(bytes);
    ASSERT_TRUE(loaded.loads);
    EXPECT_EQ(loaded.level.cellAt(0, 0).tile, 1);
    EXPECT_EQ(loaded.level.cellAt(0, 0).special, 1);
}

TEST(LevelFile, UnknownChunksAreSkippedAndThePaletteIsThreeBlocksWhateverItsLength) {
    const Loaded plain = load(ChunkBuilder()
                                  .longChunk("XBLK", 2)
                                  .chunk("ABCD", {1, 2, 3, 4, 5})
                                  .longChunk("YBLK", 1)
                                  .chunk("body", {0xFF, 0xFF, 0xFF, 0xFF})
                                  .longChunk("REMX", 9)
                                  .chunk("BODY", {0x14, 0x03, 0x00, 0x02})
                                  .bytes());
    ASSERT_TRUE(plain.loads);
    EXPECT_EQ(std::tuple(plain.level.width, plain.level.height, plain.level.remX()),
              std::tuple(2, 1, 9));
    const Cell first = plain.level.cellAt(0, 0), second = plain.level.cellAt(1, 0);
    EXPECT_EQ(std::tuple(first.special, first.tile, second.special, second.tile),
              std::tuple(5, 3, 0, 2));
    EXPECT_EQ(plain.palette.Count(), 0) << "no PALA, palette untouched";

    Bytes pala(192);
    pala[64] = 0x00; // entry 0: red 0, green 15, blue 15
    pala[65] = 0xFF;
    const Loaded coloured =
        load(ChunkBuilder().chunk("PALA", 4, pala).longChunk("REMY", 77).bytes());
    ASSERT_TRUE(coloured.loads);
    EXPECT_EQ(
        std::tuple(coloured.palette.Count(), coloured.palette.Entry(0), coloured.level.remY()),
        std::tuple(32, 0x00FFFF00u, 77));
}

TEST(LevelFile, RefusesMapsOfNoSensibleSizeAtBody) {
    struct Case {
        std::uint32_t width, height;
        bool loads;
    };
    for (const Case c :
         {Case{0, 84, false}, Case{300, 0, false}, Case{0xFFFFFFFF, 84, false},
          Case{1048577, 1, false}, Case{65536, 65536, false}, Case{1048576, 1, true}}) {
        EXPECT_EQ(load(ChunkBuilder()
                           .longChunk("XBLK", c.width)
                           .longChunk("YBLK", c.height)
                           .chunk("BODY", {0, 0})
                           .bytes())
                      .loads,
                  c.loads)
            << c.width << " x " << c.height;
    }
}

TEST(LevelFile, TruncatedFilesLoadWhatIsThere) {
    const auto whole = levelBytes(sampleLevel(), gamePalette());
    // The last cell holds tile 519: cut off its low byte and 512 is left.
    for (const auto& [length, lastTile] :
         std::vector<std::pair<std::size_t, std::int16_t>>{{3189, 0}, {3300, 0}, {53587, 512}}) {
        Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
        // The WGMP value has to agree with the shorter data.
        const auto size = ChunkBuilder::bigEndian(static_cast<std::uint32_t>(length));
        std::copy(size.begin(), size.end(), cut.begin() + 8);
        const Loaded loaded = load(cut);
        ASSERT_TRUE(loaded.loads) << length;
        EXPECT_EQ(loaded.level.cells().size(), 25200u);
        EXPECT_EQ(loaded.level.cells().back().tile, lastTile) << "cells past the end read as zero";
    }
}

TEST(LevelFile, HugeStatedLengthsDoNotRunAway) {
    const Loaded loaded = load(ChunkBuilder()
                                   .longChunk("XBLK", 4)
                                   .chunk("IFFC", 0xFFFFFFFF, {0x14, 0x00, 0x08, 0x00})
                                   .bytes());
    ASSERT_TRUE(loaded.loads);
    ASSERT_GE(loaded.level.defaultSpecials().size(), 2u);
    EXPECT_EQ(loaded.level.defaultSpecials()[0], 5);
    EXPECT_EQ(loaded.level.defaultSpecials()[1], 2);
    EXPECT_TRUE(load(ChunkBuilder().chunk("VERS", 0xFFFFFFF0, {1, 2, 3}).bytes()).loads);
}

TEST(LevelFile, EmptyChunksAreBoundedAndTheReasonKept) {
    // Zeros are an empty chunk every eight bytes; a level has about twenty.
    const Bytes zeros(1 << 20, 0);
    auto stream = streamOver(zeros);
    clsLevel level;
    clsPalette palette;
    std::vector<LevelChunk> chunks;
    EXPECT_FALSE(level.loadFromBits(stream, palette, &chunks));
    EXPECT_LE(chunks.size(), clsLevel::maximumChunks);
}

// A body cut short reads on into the buffer's spare byte, as bit-by-bit
// reading does: one word across it, then the same bits of it in every cell.
TEST(LevelFile, CellsPastTheEndOfTheDataReadTheSpareByte) {
    const Bytes bytes = ChunkBuilder()
                            .longChunk("XBLK", 1000)
                            .longChunk("YBLK", 1000)
                            .chunk("BODY", 2000000, {0x14, 0x03, 0xA9})
                            .bytes();
    auto stream = streamOver(bytes, 0xB7);
    clsLevel level;
    clsPalette palette;
    ASSERT_TRUE(level.loadFromBits(stream, palette));
    const auto cells = level.cells();
    ASSERT_EQ(cells.size(), 1000000U);
    const auto expectCell = [&](std::size_t i, int special, int tile) {
        EXPECT_EQ(cells[i].special, special) << i;
        EXPECT_EQ(cells[i].tile, tile) << i;
    };
    expectCell(0, 0x14 >> 2, 0x003);
    expectCell(1, 0xA9 >> 2, (0xA9 & 3) << 8 | 0xB7);
    for (const std::size_t i : {std::size_t{2}, std::size_t{3}, cells.size() - 1}) {
        expectCell(i, 0xB7 >> 2, (0xB7 & 3) << 8);
    }
}

TEST(LevelFile, EmptyOrMismatchedStreamsFail) {
    clsLevel level;
    clsPalette palette;
    clsBitStream noStorage;
    EXPECT_FALSE(level.loadFromBits(noStorage, palette));
    EXPECT_FALSE(load({}).loads);
    auto stream = streamOver(
        ChunkBuilder().longChunk("XBLK", 3).longChunk("WGMP", 53588).longChunk("YBLK", 4).bytes());
    EXPECT_FALSE(level.loadFromBits(stream, palette));
    EXPECT_EQ(level.width, 3) << "fields read before the failing chunk stay";
    EXPECT_EQ(level.height, 0);
}

using ::testing::HasSubstr;

TEST(InfoTool, DescribesASavedLevelAndFailsClearlyOnBadInput) {
    TempDir folder;
    clsLevel level = sampleLevel();
    level.fileName = (folder / "L1MA1").string();
    level.saveToFile(level.fileName, gamePalette());

    const auto run = runTool("info " + shellQuoted(level.fileName));
    ASSERT_EQ(run.exitCode, 0) << run.errors;
    // Cells with i % 97 == 0 hold 5, the other multiples of 211 hold 63.
    for (const char* line :
         {"packed: yes", "size: 300 x 84", "WGMP      4 bytes at 0\n", "PALA    192 bytes at 240\n",
          "BODY  50400 bytes at 3180\n", "special 0: 24822\n", "special 5: 260\n",
          "special 63: 118\n", "tile 12 -> special 5\n", "tile 1023 -> special 63\n"}) {
        EXPECT_THAT(run.output, HasSubstr(line));
    }
    EXPECT_LT(run.output.find("PALD"), run.output.find("COLS"));
    // A chunk that claims more bytes than the file has.
    writeBytes(folder / "broken",
               ChunkBuilder().longChunk("XBLK", 300).chunk("BODY", 1000, {1, 2}).bytes());
    writeBytes(folder / "packed", {'I', 'M', 'P', '!', 0, 0, 1, 0, 9, 9, 9});
    for (const auto& [name, reason] : {std::pair{"nothing", "does not exist"},
                                       {"broken", "300 x 0 when BODY"},
                                       {"packed", ""}}) {
        const auto failed = runTool("info " + shellQuoted(folder / name));
        EXPECT_EQ(failed.exitCode, 1) << name;
        EXPECT_THAT(failed.errors, HasSubstr((folder / name).string()));
        EXPECT_THAT(failed.errors, HasSubstr(reason));
    }
    EXPECT_EQ(runTool("info a b").exitCode, 2);
    const auto usage = runTool("info");
    EXPECT_EQ(usage.exitCode, 2);
    EXPECT_THAT(usage.errors, HasSubstr("usage"));
}

// Layouts the reader accepts but a walk by stated lengths would not: info
// shows what the reader took.
TEST(InfoTool, ShowsTheChunksAsTheReaderReadsThem) {
    TempDir folder;
    const Bytes standard = levelBytes(sampleLevel(), gamePalette());
    const auto setLong = [](Bytes& bytes, std::size_t at, std::uint32_t value) {
        const auto word = ChunkBuilder::bigEndian(value);
        std::copy(word.begin(), word.end(), bytes.begin() + static_cast<std::ptrdiff_t>(at));
    };
    constexpr std::size_t pala = 240;
    constexpr std::size_t cccl = 1052;
    constexpr std::size_t iffc = 1124;
    Bytes longPalette = standard;
    setLong(longPalette, pala + 4, 200);
    Bytes emptyCccl = standard;
    setLong(emptyCccl, cccl + 4, 0);
    Bytes cutShort(standard.begin(), standard.begin() + iffc + 8 + 100);
    setLong(cutShort, 8, static_cast<std::uint32_t>(cutShort.size()));

    for (const auto& [name, bytes, shown] :
         {std::tuple{"pala", longPalette,
                     std::vector<std::string>{"PALA    200 bytes at 240 (read as 192)\n",
                                              "PALB    192 bytes at 440\n", "BODY  50400"}},
          {"cccl",
           emptyCccl,
           {"CCCL      0 bytes at 1052 (read as 64)\n", "IFFC   2048 bytes at 1124\n",
            "BODY  50400"}},
          {"cut",
           cutShort,
           {"size: 300 x 84\n", "IFFC   2048 bytes at 1124 (read as 100)\nspecials"}}}) {
        writeBytes(folder / name, bytes);
        const auto run = runTool("info " + shellQuoted(folder / name));
        ASSERT_EQ(run.exitCode, 0) << name << ": " << run.errors;
        for (const auto& line : shown) {
            EXPECT_THAT(run.output, HasSubstr(line)) << name;
        }
    }
}

} // namespace
} // namespace marvek::test
