#include "native/handles.h"
#include "native/marvek.h"
#include "support/bitmapFiles.h"
#include "support/expect.h"

#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <numeric>
#include <vector>

namespace marvek::test {
namespace {

TEST(SurfaceTest, NewSurfacesAreBlackRefuseSillySizesAndIgnorePixelsOutside) {
    const UniqueSurface surface(surfaceCreate(3, 2));
    ASSERT_TRUE(surface);
    EXPECT_EQ(surfaceGetWidth(surface.get()), 3);
    EXPECT_EQ(surfaceGetHeight(surface.get()), 2);
    EXPECT_EQ(surfaceGetPixel(surface.get(), 2, 1), 0u);
    for (const auto& [w, h] : {std::pair{0, 5}, {5, 0}, {-1, 5}, {INT_MAX, INT_MAX}, {65536, 1}}) {
        EXPECT_EQ(surfaceCreate(w, h), 0) << w << " x " << h;
    }
    // Pixel access ignores positions outside.
    surfaceSetPixel(surface.get(), 1, 1, 0x11223344);
    surfaceSetPixel(surface.get(), 3, 0, 0xFFFFFFFF);
    surfaceSetPixel(surface.get(), -1, 0, 0xFFFFFFFF);
    surfaceSetPixel(surface.get(), 0, INT_MIN, 0xFFFFFFFF);
    EXPECT_EQ(surfaceGetPixel(surface.get(), 1, 1), 0x11223344u);
    EXPECT_EQ(surfaceGetDataPtr(surface.get())[4], 0x11223344u);
    EXPECT_EQ(surfaceGetPixel(surface.get(), 0, 2), 0u);
    surfaceFill(surface.get(), 0xCAFEBABE);
    EXPECT_EQ(surfaceGetPixel(surface.get(), 0, 0), 0xCAFEBABEu);
    surfaceClear(surface.get());
    EXPECT_EQ(surfaceGetPixel(surface.get(), 1, 1), 0u);
}

TEST(SurfaceTest, StaleHandlesNeverReachANewerSurfaceAndOwnersReleaseOnce) {
    const std::int32_t first = surfaceCreate(4, 4);
    surfaceDestroy(first);
    const UniqueSurface second(surfaceCreate(4, 4)); // likely reuses the slot
    surfaceFill(second.get(), 0x12345678);
    EXPECT_NE(first, second.get());
    EXPECT_EQ(surfaceGetWidth(first), 0);
    EXPECT_EQ(surfaceGetDataPtr(first), nullptr);
    surfaceFill(first, 0);
    surfaceDestroy(first);
    surfaceDestroy(0);
    EXPECT_EQ(surfaceGetPixel(second.get(), 0, 0), 0x12345678u);
    // Owners release once and move.
    UniqueSurface owner(surfaceCreate(1, 1));
    const std::int32_t handle = owner.get();
    UniqueSurface moved = std::move(owner);
    EXPECT_FALSE(owner);
    EXPECT_EQ(moved.get(), handle);
    moved.reset();
    EXPECT_EQ(surfaceGetWidth(handle), 0);
}

TEST(CopyToBitmapTest, DoublesAsFarAsItFits) {
    const UniqueSurface surface(surfaceCreate(2, 2)); // pixels 1, 2, 3, 4
    std::iota(surfaceGetDataPtr(surface.get()), surfaceGetDataPtr(surface.get()) + 4, 1u);
    constexpr std::uint32_t untouched = 0xEEEEEEEE;
    std::vector<std::uint32_t> narrow(3 * 3, untouched);
    surfaceCopyToBitmapDouble(surface.get(), narrow.data(), 3, 3);
    EXPECT_EQ(narrow, (std::vector<std::uint32_t>{1, 1, 2, //
                                                  1, 1, 2, //
                                                  3, 3, 4}));
    std::vector<std::uint32_t> wide(5 * 5, untouched);
    surfaceCopyToBitmapDouble(surface.get(), wide.data(), 5, 5);
    EXPECT_EQ(std::vector<std::uint32_t>(wide.begin() + 15, wide.end()),
              (std::vector<std::uint32_t>{3, 3, 4, 4, untouched, untouched, untouched, untouched,
                                          untouched, untouched}));
    surfaceCopyToBitmapDouble(surface.get(), wide.data(), -5, 5);
    surfaceCopyToBitmapDouble(surface.get(), nullptr, 5, 5);
}

TEST(UndoStore, UndoAndRedoWalkABoundedHistory) {
    undoDestroy();
    undoInit();
    undoSetMax(3);
    std::array<std::int32_t, 2> cells{};
    const auto edit = [&cells](std::int32_t value) {
        undoAdd(cells.data(), sizeof cells);
        cells = {value, -value};
    };
    const auto counts = [] { return std::pair(undoCount(), redoCount()); };
    edit(1);
    edit(2);
    undoDoUndo(cells.data());
    EXPECT_EQ(cells[0], 1);
    undoDoUndo(cells.data());
    undoDoUndo(cells.data()); // nothing left to undo
    EXPECT_EQ(cells[0], 0);
    EXPECT_EQ(counts(), std::pair(0, 2));
    undoDoRedo(cells.data());
    undoDoRedo(cells.data());
    EXPECT_EQ(cells, (std::array<std::int32_t, 2>{2, -2}));
    EXPECT_EQ(counts(), std::pair(2, 0));
    undoAdd(nullptr, 8);
    undoDoUndo(nullptr);
    EXPECT_EQ(counts(), std::pair(2, 0));
    // The oldest snapshot gives way; adding forgets what could be redone.
    for (std::int32_t value = 3; value <= 5; ++value) {
        edit(value);
    }
    EXPECT_EQ(undoCount(), 3);
    for (int i = 0; i < 5; ++i) {
        undoDoUndo(cells.data());
    }
    EXPECT_EQ(cells[0], 2) << "the states before edits 3, 4 and 5 were kept";
    undoDoRedo(cells.data());
    edit(9);
    EXPECT_EQ(redoCount(), 0);
    undoSetMax(1);
    EXPECT_EQ(undoCount(), 1);
    undoDoUndo(cells.data());
    EXPECT_EQ(cells[0], 3);
    // A new store starts empty but keeps the maximum.
    undoDestroy();
    undoInit();
    EXPECT_EQ(undoCount(), 0);
    edit(1);
    edit(2);
    EXPECT_EQ(undoCount(), 1);
    undoDestroy();
}

// 5 x 3: an odd width exercises row padding for every depth.
const std::vector<std::uint32_t> samplePixels = {
    0x102030, 0xFF0000, 0x00FF00, 0x0000FF, 0xFFFFFF, //
    0x000000, 0x808080, 0x123456, 0x654321, 0xABCDEF, //
    0x010203, 0xFEDCBA, 0x00FFFF, 0xFF00FF, 0x7F7F7F,
};

std::string fileOf(const std::vector<std::uint8_t>& bytes) {
    static const TempDir folder;
    writeBytes(folder / "file.bmp", bytes);
    return (folder / "file.bmp").string();
}

UniqueSurface load(const std::vector<std::uint8_t>& bytes) {
    return UniqueSurface(surfaceLoadFromBitmap(fileOf(bytes).c_str()));
}

UniqueFont loadFont(std::int32_t width, std::int32_t height) {
    const std::vector<std::uint32_t> pixels(static_cast<std::size_t>(width * height), 0xFFFFFF);
    return UniqueFont(
        fontLoadFromBitmap(fileOf(encodeBitmap(width, height, 24, false, pixels)).c_str()));
}

TEST(BitmapLoad, LoadsEveryDepthOpaqueAndTopRowFirst) {
    for (const std::uint16_t bits : {8, 24, 32}) {
        for (const bool topDown : {false, true}) {
            SCOPED_TRACE(std::to_string(bits) + (topDown ? " bits top-down" : " bits"));
            const UniqueSurface surface = load(encodeBitmap(5, 3, bits, topDown, samplePixels));
            ASSERT_TRUE(surface);
            ASSERT_EQ(surfaceGetWidth(surface.get()), 5);
            ASSERT_EQ(surfaceGetHeight(surface.get()), 3);
            const std::uint32_t* data = surfaceGetDataPtr(surface.get());
            EXPECT_EQ(std::vector<std::uint32_t>(data, data + 15), samplePixels);
        }
    }
    // A palette index beyond a short table reads black.
    auto bytes = encodeBitmap(5, 3, 8, true, samplePixels);
    bytes[14 + 40 + 15 * 4] = 200; // the table has 15 entries
    const UniqueSurface surface = load(bytes);
    ASSERT_TRUE(surface);
    EXPECT_EQ(surfaceGetPixel(surface.get(), 0, 0), 0u);
    EXPECT_EQ(surfaceGetPixel(surface.get(), 1, 0), 0xFF0000u);
}

TEST(BitmapLoad, TakesRunLengthDataAndALastRowWithoutPadding) {
    // 2 x 2, bottom row first: a run of two 1s, end of line, 0 then 1 as
    // runs of one, end of bitmap.
    auto file = bitmapFile(2, 2, 8, {0xFF0000, 0x00FF00}, {2, 1, 0, 0, 1, 0, 1, 1, 0, 1});
    file[30] = 1;
    const UniqueSurface surface = load(file);
    ASSERT_TRUE(surface);
    expectPixels(surface.get(), {{0, 0, 0xFF0000}, {1, 0, 0x00FF00}, {0, 1, 0x00FF00}});
    file.resize(file.size() - 2);
    EXPECT_TRUE(load(file)) << "no end-of-bitmap mark after a whole last row";
    file.resize(file.size() - 2);
    EXPECT_FALSE(load(file)) << "the last row unfinished";

    // Rows of 8 and 16 bytes hold 5 and 15; the last row's padding may go.
    for (const auto& [bits, padding] : {std::pair(8, 3), std::pair(24, 1)}) {
        const auto whole =
            encodeBitmap(5, 3, static_cast<std::uint16_t>(bits), false, samplePixels);
        const UniqueSurface unpadded = load({whole.begin(), whole.end() - padding});
        ASSERT_TRUE(unpadded) << bits;
        EXPECT_EQ(surfaceGetPixel(unpadded.get(), 4, 0), samplePixels[4]) << bits;
    }
}

TEST(BitmapLoad, RefusesTruncationsAndHostileHeaders) {
    for (const std::uint16_t bits : {8, 24, 32}) {
        const auto whole = encodeBitmap(5, 3, bits, false, samplePixels);
        const std::size_t padding = bits == 8 ? 3 : (bits == 24 ? 1 : 0);
        for (std::size_t length = 0; length < whole.size() - padding; ++length) {
            EXPECT_FALSE(load({whole.begin(), whole.begin() + static_cast<long>(length)}))
                << bits << " bits cut to " << length;
        }
    }
    const auto refused = [](const char* name, std::size_t offset, std::uint32_t value, int bytes) {
        auto file = encodeBitmap(5, 3, 24, false, samplePixels);
        for (int i = 0; i < bytes; ++i) {
            file[offset + static_cast<std::size_t>(i)] =
                static_cast<std::uint8_t>(value >> (8 * i));
        }
        EXPECT_FALSE(load(file)) << name;
    };
    refused("magic", 0, 'X', 1);
    refused("zero width", 18, 0, 4);
    refused("negative width", 18, 0xFFFFFFFBu, 4);
    refused("zero height", 22, 0, 4);
    refused("most negative height", 22, 0x80000000u, 4);
    refused("width beyond the data", 18, 30000, 4);
    refused("huge width", 18, 0x7FFFFFFF, 4);
    refused("16 bits", 28, 16, 2);
    refused("run-length compressed", 30, 1, 4);
    refused("pixel offset past the end", 10, 0xFFFFFFF0u, 4);
    refused("old core header", 14, 12, 4);
    EXPECT_FALSE(load(std::vector<std::uint8_t>(200, 0x42))) << "garbage";
    EXPECT_EQ(surfaceLoadFromBitmap("/nonexistent/marvek/none.bmp"), 0);
    EXPECT_EQ(surfaceLoadFromBitmap(nullptr), 0);
}

TEST(FontLoad, CellsAreASixteenthOfAGridImageAndDestroyingFreesThem) {
    UniqueFont font = loadFont(128, 256);
    ASSERT_TRUE(font);
    EXPECT_EQ(fontGetCharWidth(font.get()), 8);
    EXPECT_EQ(fontGetCharHeight(font.get()), 16);
    EXPECT_EQ(surfaceGetWidth(fontGetSurface(font.get())), 128);
    EXPECT_FALSE(loadFont(100, 256));
    EXPECT_FALSE(loadFont(128, 8));
    EXPECT_EQ(fontLoadFromBitmap("/nonexistent/font.bmp"), 0);
    // Destroying the font frees its surface; stale handles are harmless.
    const std::int32_t handle = font.get();
    const std::int32_t glyphs = fontGetSurface(handle);
    font.reset();
    EXPECT_EQ(std::pair(surfaceGetWidth(glyphs), fontGetSurface(handle)), std::pair(0, 0));
    fontDestroy(handle);
}

} // namespace
} // namespace marvek::test
