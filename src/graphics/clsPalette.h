#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

namespace marvek {

class clsBitStream;

// An ordered list of Windows colour values (0x00BBGGRR). Colour index i of a
// planar image is drawn with entry i.
class clsPalette {
public:
    static constexpr int gamePlanes = 5;
    static constexpr int gameEntries = 32;

    std::int32_t Count() const noexcept { return count_; }
    // Throws std::out_of_range outside the array (which may hold one slot
    // more than Count after a raw load).
    std::uint32_t Entry(std::int32_t index) const;
    void addEntry(std::uint32_t colour);
    // Throws std::out_of_range outside the array, as Entry does.
    void setEntry(std::int32_t index, std::uint32_t colour);

    // Game format, 32 words of 4 ignored bits and 4 bits each of red, green
    // and blue. Anything but 5 planes reads nothing and leaves the palette.
    bool loadFrom(clsBitStream& stream, int planes);
    // Every entry in the game format, whatever Count is.
    void writeTo(clsBitStream& stream) const;

    // Raw form: little-endian 0x00BBGGRR words. False, palette unchanged,
    // when the file does not exist; throws FileError when it cannot be read.
    bool loadRawFrom(const std::filesystem::path& path);
    // Writes the whole array over the start of the file; a longer old file
    // keeps its tail. Throws FileError.
    bool writeRawTo(const std::filesystem::path& path) const;

private:
    std::vector<std::uint32_t> entries_;
    std::int32_t count_ = 0;
};

} // namespace marvek
