#pragma once

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>
#include <vector>

namespace marvek::testing {

inline void putLittle(std::vector<std::uint8_t>& out, std::uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) {
        out.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
    }
}

// Encodes 0x00RRGGBB pixels given top row first as an uncompressed BMP.
// 8-bit files get a colour table of the distinct colours.
inline std::vector<std::uint8_t> encodeBitmap(std::int32_t width, std::int32_t height,
                                              std::uint16_t bits, bool topDown,
                                              const std::vector<std::uint32_t>& pixels) {
    std::vector<std::uint32_t> palette;
    if (bits == 8) {
        palette = pixels;
        std::sort(palette.begin(), palette.end());
        palette.erase(std::unique(palette.begin(), palette.end()), palette.end());
    }
    const std::uint32_t rowBytes = (static_cast<std::uint32_t>(width) * bits + 31) / 32 * 4;
    const std::uint32_t offset = 14 + 40 + static_cast<std::uint32_t>(palette.size()) * 4;
    const std::uint32_t size = offset + rowBytes * static_cast<std::uint32_t>(height);
    std::vector<std::uint8_t> out;
    out.push_back('B');
    out.push_back('M');
    putLittle(out, size, 4);
    putLittle(out, 0, 4);
    putLittle(out, offset, 4);
    putLittle(out, 40, 4);
    putLittle(out, static_cast<std::uint32_t>(width), 4);
    putLittle(out, static_cast<std::uint32_t>(topDown ? -height : height), 4);
    putLittle(out, 1, 2);
    putLittle(out, bits, 2);
    putLittle(out, 0, 4);
    putLittle(out, rowBytes * static_cast<std::uint32_t>(height), 4);
    putLittle(out, 2835, 4);
    putLittle(out, 2835, 4);
    putLittle(out, static_cast<std::uint32_t>(palette.size()), 4);
    putLittle(out, 0, 4);
    for (const std::uint32_t colour : palette) {
        putLittle(out, colour, 4);
    }
    for (std::int32_t fileRow = 0; fileRow < height; ++fileRow) {
        const std::int32_t y = topDown ? fileRow : height - 1 - fileRow;
        const std::size_t rowStart = out.size();
        for (std::int32_t x = 0; x < width; ++x) {
            const std::uint32_t pixel = pixels[static_cast<std::size_t>(y * width + x)];
            if (bits == 8) {
                const auto index = std::lower_bound(palette.begin(), palette.end(), pixel);
                out.push_back(static_cast<std::uint8_t>(index - palette.begin()));
            } else {
                putLittle(out, bits == 32 ? pixel | 0xAB000000u : pixel, bits / 8);
            }
        }
        out.resize(rowStart + rowBytes, 0);
    }
    return out;
}

// A file in the temporary folder that is removed again.
class TempFile {
public:
    explicit TempFile(const std::vector<std::uint8_t>& bytes) {
        static std::atomic<int> counter{0};
        path_ = std::filesystem::temp_directory_path() /
                ("marvek-native-" + std::to_string(::getpid()) + "-" + std::to_string(counter++) +
                 ".bmp");
        std::ofstream stream(path_, std::ios::binary);
        stream.write(reinterpret_cast<const char*>(bytes.data()),
                     static_cast<std::streamsize>(bytes.size()));
    }
    TempFile(const TempFile&) = delete;
    TempFile& operator=(const TempFile&) = delete;
    ~TempFile() {
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
    }

    std::string path() const { return path_.string(); }

private:
    std::filesystem::path path_;
};

} // namespace marvek::testing
