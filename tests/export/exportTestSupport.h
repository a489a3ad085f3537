#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <vector>

namespace marvek::test {

// A 32-bit bitmap file's pixels, read by hand so that the writer is checked
// against the format rather than against our own reader.
class BitmapPixels {
public:
    explicit BitmapPixels(const std::filesystem::path& path)
        : bytes_(std::filesystem::file_size(path)) {
        // One read: the export's files are tens of megabytes.
        std::ifstream(path, std::ios::binary)
            .read(reinterpret_cast<char*>(bytes_.data()),
                  static_cast<std::streamsize>(bytes_.size()));
    }

    bool isBitmap32() const {
        return bytes_.size() > 54 && bytes_[0] == 'B' && bytes_[1] == 'M' && word(28, 2) == 32;
    }
    std::int32_t width() const { return static_cast<std::int32_t>(word(18, 4)); }
    std::int32_t height() const { return static_cast<std::int32_t>(word(22, 4)); }

    // 0x00BBGGRR, as palettes keep colours; rows are stored bottom-up.
    std::uint32_t colourAt(std::int32_t x, std::int32_t y) const {
        const std::size_t at = word(10, 4) + (static_cast<std::size_t>(height() - 1 - y) *
                                                  static_cast<std::size_t>(width()) +
                                              static_cast<std::size_t>(x)) *
                                                 4;
        return std::uint32_t{bytes_.at(at)} << 16 | std::uint32_t{bytes_.at(at + 1)} << 8 |
               bytes_.at(at + 2);
    }

private:
    std::uint32_t word(std::size_t at, int size) const {
        std::uint32_t value = 0;
        for (int i = size - 1; i >= 0; --i) {
            value = value << 8 | bytes_.at(at + static_cast<std::size_t>(i));
        }
        return value;
    }

    std::vector<std::uint8_t> bytes_;
};

} // namespace marvek::test
