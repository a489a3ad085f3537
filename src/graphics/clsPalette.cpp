#include "graphics/clsPalette.h"

#include "io/atomicWrite.h"
#include "io/clsBitStream.h"
#include "native/marvek.h"

#include <algorithm>
#include <stdexcept>

namespace marvek {
namespace {

constexpr int componentBits = 4;
constexpr std::uint32_t componentScale = 17; // 4 bits to 8: 15 * 17 = 255
constexpr std::size_t rawWordBytes = 4;

std::uint32_t windowsColour(std::uint32_t red, std::uint32_t green, std::uint32_t blue) {
    return red | (green << 8) | (blue << 16);
}

// c / 17 to the nearest whole number; no 8-bit value lies halfway.
std::int32_t toFourBits(std::uint8_t component) {
    return static_cast<std::int32_t>((component + componentScale / 2) / componentScale);
}

std::uint32_t readWord(const std::vector<std::uint8_t>& bytes, std::size_t offset) {
    std::uint32_t word = 0;
    for (std::size_t i = 0; i < rawWordBytes; ++i) {
        const auto at = offset + i;
        const std::uint32_t byte = at < bytes.size() ? bytes[at] : 0;
        word |= byte << (8 * i);
    }
    return word;
}

} // namespace

std::uint32_t clsPalette::Entry(std::int32_t index) const {
    if (index < 0) {
        throw std::out_of_range("palette entry " + std::to_string(index));
    }
    return entries_.at(static_cast<std::size_t>(index));
}

void clsPalette::setEntry(std::int32_t index, std::uint32_t colour) {
    if (index < 0) {
        throw std::out_of_range("palette entry " + std::to_string(index));
    }
    entries_.at(static_cast<std::size_t>(index)) = colour;
}

void clsPalette::addEntry(std::uint32_t colour) {
    entries_.resize(entries_.size() + 1);
    entries_[static_cast<std::size_t>(count_)] = colour;
    ++count_;
}

bool clsPalette::loadFrom(clsBitStream& stream, int planes) {
    if (planes != gamePlanes) {
        return true;
    }
    std::vector<std::uint32_t> read(gameEntries);
    for (auto& entry : read) {
        stream.getBits(componentBits);
        const auto red = static_cast<std::uint32_t>(stream.getBits(componentBits));
        const auto green = static_cast<std::uint32_t>(stream.getBits(componentBits));
        const auto blue = static_cast<std::uint32_t>(stream.getBits(componentBits));
        entry = windowsColour(red * componentScale, green * componentScale, blue * componentScale);
    }
    entries_ = std::move(read);
    count_ = gameEntries;
    return true;
}

void clsPalette::writeTo(clsBitStream& stream) const {
    for (const auto entry : entries_) {
        stream.putBits(0, componentBits);
        stream.putBits(toFourBits(getRed(entry)), componentBits);
        stream.putBits(toFourBits(getGreen(entry)), componentBits);
        stream.putBits(toFourBits(getBlue(entry)), componentBits);
    }
}

bool clsPalette::loadRawFrom(const std::filesystem::path& path) {
    if (!std::filesystem::exists(path)) {
        return false;
    }
    const auto bytes = readWholeFile(path);
    // The count is the length over 3 (not 4), rounded: the format as the
    // game's tools read it, kept on purpose. No length lies halfway.
    const auto count = static_cast<std::int32_t>((bytes.size() + 1) / 3);
    std::vector<std::uint32_t> read(static_cast<std::size_t>(count) + 1);
    for (std::size_t i = 0; i < read.size(); ++i) {
        read[i] = readWord(bytes, i * rawWordBytes);
    }
    entries_ = std::move(read);
    count_ = count;
    return true;
}

bool clsPalette::writeRawTo(const std::filesystem::path& path) const {
    std::vector<std::uint8_t> bytes;
    if (std::filesystem::exists(path)) {
        bytes = readWholeFile(path);
    }
    bytes.resize(std::max(bytes.size(), entries_.size() * rawWordBytes));
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        for (std::size_t b = 0; b < rawWordBytes; ++b) {
            bytes[i * rawWordBytes + b] = static_cast<std::uint8_t>(entries_[i] >> (8 * b));
        }
    }
    writeFileAtomically(path, bytes);
    return true;
}

} // namespace marvek
