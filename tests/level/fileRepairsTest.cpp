#include "data/fileRepairs.h"
#include "support/world.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace marvek::test {
namespace {

using Bytes = std::vector<std::uint8_t>;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

std::vector<std::string> repairsOf(const Bytes& bytes) {
    clsLevel level;
    clsPalette palette;
    std::vector<LevelChunk> chunks;
    auto stream = streamOver(bytes);
    EXPECT_TRUE(level.loadFromBits(stream, palette, &chunks));
    return levelRepairs(chunks, static_cast<std::int32_t>(bytes.size()), level.width, level.height);
}

TEST(FileRepairs, AChunkPastTheEndOfTheFileIsNamed) {
    const Bytes whole = levelBytes(sampleLevel(), gamePalette());
    EXPECT_THAT(repairsOf(whole), IsEmpty());

    // A length the reader uses, reaching past the end; a fixed chunk cut off.
    EXPECT_THAT(repairsOf(ChunkBuilder()
                              .longChunk("XBLK", 2)
                              .longChunk("YBLK", 1)
                              .chunk("BODY", {0, 1, 0, 2})
                              .chunk("IFFC", 100, {0x14, 0x00})
                              .bytes()),
                ElementsAre(HasSubstr("the IFFC chunk says 100 bytes but the file ends 2 bytes")));
    EXPECT_THAT(repairsOf(ChunkBuilder().longChunk("XBLK", 1).chunk("CCCL", 64, {1, 2}).bytes()),
                ElementsAre(HasSubstr("CCCL")));
}

TEST(FileRepairs, VariantsReadAsNormalStaySilent) {
    // A PALA of any stated length is its three blocks; lengths the reader
    // does not use may say anything while the data is there.
    EXPECT_THAT(repairsOf(ChunkBuilder()
                              .chunk("PALA", 4, Bytes(192))
                              .longChunk("XBLK", 1)
                              .longChunk("YBLK", 1)
                              .chunk("BODY", 0, {0, 1})
                              .bytes()),
                IsEmpty());
}

TEST(FileRepairs, AHalfTileThatRoundsAwayIsNoRepair) {
    EXPECT_EQ(tileSetRepair(160 * 2 + 80, 5), std::nullopt) << "2.5 tiles round to 2";
    EXPECT_NE(tileSetRepair(160 * 3 + 80, 5), std::nullopt) << "3.5 tiles round to 4";
}

} // namespace
} // namespace marvek::test
