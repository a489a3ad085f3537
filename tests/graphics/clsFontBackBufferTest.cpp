#include "graphics/clsBackBuffer.h"
#include "graphics/clsFont.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

namespace marvek {
namespace {

namespace fs = std::filesystem;

class FakeTarget : public clsPresentTarget {
public:
    void present(const std::uint32_t* pixels, std::int32_t width, std::int32_t height) override {
        ++calls;
        this->width = width;
        this->height = height;
        shown.assign(pixels, pixels + static_cast<std::size_t>(width) * height);
    }
    std::uint32_t at(std::int32_t x, std::int32_t y) const {
        return shown.at(static_cast<std::size_t>(y) * width + x);
    }

    int calls = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::vector<std::uint32_t> shown;
};

// Three columns, two rows, every pixel different.
void paintPattern(const clsBackBuffer& buffer) {
    for (std::int32_t y = 0; y < 2; ++y) {
        for (std::int32_t x = 0; x < 3; ++x) {
            surfaceSetPixel(buffer.surface(), x, y, createBGRA(10 * x + 1, 20 * y + 2, 3, 0));
        }
    }
}

TEST(clsBackBuffer, PresentAtZoomOneShowsTheSurfaceTopDown) {
    clsBackBuffer buffer;
    ASSERT_TRUE(buffer.Create(3, 2, 1));
    paintPattern(buffer);
    FakeTarget target;
    buffer.Present(target);
    ASSERT_EQ(target.calls, 1);
    EXPECT_EQ(target.width, 3);
    EXPECT_EQ(target.height, 2);
    EXPECT_EQ(target.at(0, 0), createBGRA(1, 2, 3, 0));
    EXPECT_EQ(target.at(2, 1), createBGRA(21, 22, 3, 0));
    EXPECT_EQ(buffer.pixels().size(), 6u);
}

TEST(clsBackBuffer, PresentAtZoomTwoDoublesEveryPixel) {
    clsBackBuffer buffer;
    ASSERT_TRUE(buffer.Create(3, 2, 2));
    EXPECT_EQ(buffer.bitmapWidth(), 6);
    EXPECT_EQ(buffer.bitmapHeight(), 4);
    paintPattern(buffer);
    FakeTarget target;
    buffer.Present(target);
    ASSERT_EQ(target.shown.size(), 24u);
    for (std::int32_t y = 0; y < 4; ++y) {
        for (std::int32_t x = 0; x < 6; ++x) {
            EXPECT_EQ(target.at(x, y), createBGRA(10 * (x / 2) + 1, 20 * (y / 2) + 2, 3, 0))
                << x << "," << y;
        }
    }
}

TEST(clsBackBuffer, OtherZoomsShowNothing) {
    clsBackBuffer buffer;
    ASSERT_TRUE(buffer.Create(3, 2, 3));
    FakeTarget target;
    buffer.Present(target);
    EXPECT_EQ(target.calls, 0);
}

TEST(clsBackBuffer, ClearBlanksTheNextFrame) {
    clsBackBuffer buffer;
    ASSERT_TRUE(buffer.Create(3, 2, 1));
    paintPattern(buffer);
    buffer.Clear();
    FakeTarget target;
    buffer.Present(target);
    EXPECT_EQ(target.shown, std::vector<std::uint32_t>(6, 0));
}

TEST(clsBackBuffer, ResizeKeepsTheZoomAndFailureLeavesItEmpty) {
    clsBackBuffer buffer;
    ASSERT_TRUE(buffer.Create(3, 2, 2));
    ASSERT_TRUE(buffer.Resize(5, 4));
    EXPECT_EQ(buffer.width(), 5);
    EXPECT_EQ(buffer.bitmapHeight(), 8);
    EXPECT_EQ(surfaceGetWidth(buffer.surface()), 5);

    EXPECT_FALSE(buffer.Resize(0, 4));
    EXPECT_FALSE(buffer.isUsable());
    EXPECT_EQ(buffer.surface(), 0);
    FakeTarget target;
    buffer.Present(target);
    buffer.Clear();
    EXPECT_EQ(target.calls, 0);
    EXPECT_TRUE(buffer.Resize(2, 2));
    EXPECT_EQ(buffer.bitmapWidth(), 4);
}

TEST(clsBackBuffer, OwnsItsSurface) {
    std::int32_t surface = 0;
    {
        clsBackBuffer buffer;
        ASSERT_TRUE(buffer.Create(2, 2, 1));
        surface = buffer.surface();
        clsBackBuffer moved = std::move(buffer);
        EXPECT_EQ(moved.surface(), surface);
        EXPECT_EQ(surfaceGetWidth(surface), 2);
    }
    EXPECT_EQ(surfaceGetWidth(surface), 0);
}

class FontFolder : public ::testing::Test {
protected:
    void TearDown() override {
        std::error_code ignored;
        fs::remove_all(folder_, ignored);
    }

    // A 24-bit font image of 16 x 16 cells of 2 x 3 pixels with ink in the top
    // left pixel of 'A'.
    fs::path writeFontImage() const {
        constexpr std::int32_t width = 32;
        constexpr std::int32_t height = 48;
        constexpr std::int32_t stride = width * 3;
        std::vector<std::uint8_t> pixels(static_cast<std::size_t>(stride) * height, 0);
        const std::int32_t inkX = ('A' % 16) * 2;
        const std::int32_t inkY = ('A' / 16) * 3;
        const auto bottomUpRow = static_cast<std::size_t>(height - 1 - inkY);
        for (int channel = 0; channel < 3; ++channel) {
            pixels[bottomUpRow * stride + inkX * 3 + channel] = 0xFF;
        }
        std::vector<std::uint8_t> file;
        const auto put = [&file](std::uint32_t value, int bytes) {
            for (int i = 0; i < bytes; ++i) {
                file.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
            }
        };
        file.push_back('B');
        file.push_back('M');
        put(54 + static_cast<std::uint32_t>(pixels.size()), 4);
        put(0, 4);
        put(54, 4);
        put(40, 4);
        put(width, 4);
        put(height, 4);
        put(1, 2);
        put(24, 2);
        put(0, 4);
        put(static_cast<std::uint32_t>(pixels.size()), 4);
        put(2835, 4);
        put(2835, 4);
        put(0, 4);
        put(0, 4);
        file.insert(file.end(), pixels.begin(), pixels.end());

        fs::create_directories(folder_);
        const auto path = folder_ / "editor.bmp";
        std::ofstream(path, std::ios::binary)
            .write(reinterpret_cast<const char*>(file.data()),
                   static_cast<std::streamsize>(file.size()));
        return path;
    }

    fs::path folder_ = fs::temp_directory_path() /
                       ("marvek-font-" + std::to_string(reinterpret_cast<std::uintptr_t>(this)));
};

TEST_F(FontFolder, LoadsTheCellSizeAndDrawsThroughTheLibrary) {
    clsFont font;
    ASSERT_TRUE(font.loadFromFile(writeFontImage()));
    EXPECT_EQ(font.charWidth(), 2);
    EXPECT_EQ(font.charHeight(), 3);
    EXPECT_EQ(surfaceGetWidth(font.getSurface()), 32);

    clsBackBuffer buffer;
    ASSERT_TRUE(buffer.Create(4, 3, 1));
    renderText(buffer.surface(), font.handle(), 2, 0, createBGRA(255, 0, 0, 0), "A");
    FakeTarget target;
    buffer.Present(target);
    EXPECT_EQ(target.at(2, 0), createBGRA(255, 0, 0, 0));
    EXPECT_EQ(target.at(3, 0), 0u);
}

TEST_F(FontFolder, AFailedLoadFreesTheOldFont) {
    clsFont font;
    ASSERT_TRUE(font.loadFromFile(writeFontImage()));
    const auto old = font.handle();
    EXPECT_FALSE(font.loadFromFile(folder_ / "missing.bmp"));
    EXPECT_EQ(font.handle(), 0);
    EXPECT_EQ(font.charWidth(), 0);
    EXPECT_EQ(fontGetCharWidth(old), 0);
    EXPECT_EQ(font.getSurface(), 0);
}

} // namespace
} // namespace marvek
