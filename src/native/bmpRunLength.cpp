#include "native/bmpRunLength.h"

namespace marvek {
namespace {

constexpr std::uint8_t endOfLine = 0;
constexpr std::uint8_t endOfBitmap = 1;
constexpr std::uint8_t delta = 2;

// Puts pixels at a cursor that walks the rows bottom-up, dropping those
// outside the picture.
class PixelCursor {
public:
    explicit PixelCursor(const RunLengthImage& image)
        : image_(image),
          rowBytes_((static_cast<std::size_t>(image.width) * image.bitsPerPixel + 31) / 32 * 4),
          rows_(rowBytes_ * static_cast<std::size_t>(image.height), 0) {}

    void put(std::uint8_t index) {
        if (x_ < image_.width && y_ < image_.height) {
            const auto row = static_cast<std::size_t>(y_) * rowBytes_;
            if (image_.bitsPerPixel == 8) {
                rows_[row + static_cast<std::size_t>(x_)] = index;
            } else {
                auto& byte = rows_[row + static_cast<std::size_t>(x_ / 2)];
                byte = static_cast<std::uint8_t>(x_ % 2 == 0 ? (byte & 0x0F) | index << 4
                                                             : (byte & 0xF0) | (index & 0x0F));
            }
        }
        ++x_;
    }
    void nextLine() {
        x_ = 0;
        ++y_;
    }
    void move(std::uint8_t dx, std::uint8_t dy) {
        x_ += dx;
        y_ += dy;
    }
    // Every row written, the last perhaps without its end-of-line mark.
    bool isComplete() const noexcept {
        return y_ >= image_.height || (y_ == image_.height - 1 && x_ >= image_.width);
    }
    std::vector<std::uint8_t> take() { return std::move(rows_); }

private:
    RunLengthImage image_;
    std::size_t rowBytes_;
    std::vector<std::uint8_t> rows_;
    std::int64_t x_ = 0;
    std::int64_t y_ = 0;
};

// Pixel i of a run or literal stretch: a whole byte for RLE8; for RLE4 the
// high nibble, then the low one, of byte i / 2.
std::uint8_t pixelOf(std::span<const std::uint8_t> bytes, std::size_t i, int bitsPerPixel) {
    if (bitsPerPixel == 8) {
        return bytes[i];
    }
    const std::uint8_t byte = bytes[i / 2];
    return static_cast<std::uint8_t>(i % 2 == 0 ? byte >> 4 : byte & 0x0F);
}

RunLengthResult refused(std::string why) {
    return {{}, std::move(why)};
}

} // namespace

RunLengthResult decodeRunLength(std::span<const std::uint8_t> data, const RunLengthImage& image) {
    PixelCursor cursor(image);
    const int bits = image.bitsPerPixel;
    std::size_t at = 0;
    while (at + 2 <= data.size()) {
        const std::uint8_t count = data[at];
        const std::uint8_t value = data[at + 1];
        at += 2;
        if (count > 0) {
            const std::uint8_t run[] = {value, value};
            for (std::size_t i = 0; i < count; ++i) {
                cursor.put(pixelOf(run, i % 2, bits));
            }
        } else if (value == endOfLine) {
            cursor.nextLine();
        } else if (value == endOfBitmap) {
            return {cursor.take(), {}};
        } else if (value == delta) {
            if (at + 2 > data.size()) {
                break;
            }
            cursor.move(data[at], data[at + 1]);
            at += 2;
        } else {
            // A literal stretch of `value` pixels, padded to a 16-bit word.
            const std::size_t bytes = bits == 8 ? value : (value + 1u) / 2;
            if (at + bytes > data.size()) {
                break;
            }
            for (std::size_t i = 0; i < value; ++i) {
                cursor.put(pixelOf(data.subspan(at, bytes), i, bits));
            }
            at += bytes + bytes % 2;
        }
    }
    // Some writers leave out the end-of-bitmap mark after the last row.
    if (cursor.isComplete()) {
        return {cursor.take(), {}};
    }
    return refused("the compressed pixel data is cut short");
}

} // namespace marvek
