#pragma once

#include "io/clsDataBuffer.h"
#include "io/readFile.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace marvek {

// A cursor over a clsDataBuffer reading and writing the game's big-endian,
// most-significant-bit-first data. Byte operations act on the whole byte at
// the cursor and leave it at bit 0 of the next byte.
//
// Without autoExpand the cursor never moves past the last index (the spare
// byte): reads past the end keep returning that byte and getBits stops early.
// With autoExpand each step past the end grows the buffer by one zero byte.
// Operations at an index outside the buffer (after seekTo) throw
// std::out_of_range.
class clsBitStream {
public:
    bool autoExpand = false;

    clsBitStream();

    // A fresh buffer of one zero byte (Size 0), cursor at 0.
    void Create();
    // Shares the given buffer with the caller; cursor at 0.
    void loadFromBuffer(std::shared_ptr<clsDataBuffer> buffer);
    // A missing file leaves the stream with a buffer without storage.
    // Throws FileError when the file exists but cannot be read, is no
    // regular file or is larger than maximumBytes.
    void loadFromFile(const std::filesystem::path& path,
                      std::uintmax_t maximumBytes = maximumReadBytes);

    // The buffer itself, shared.
    std::shared_ptr<clsDataBuffer> bufferGet() const { return buffer_; }
    std::int32_t Size() const { return buffer_->Size(); }
    std::int32_t byteOffset() const noexcept { return position_; }
    std::uint8_t bitOffset() const noexcept { return bitPosition_; }
    bool endOfStream() const { return position_ >= Size(); }

    // Moves the cursor to bit 0 of byte p; no range check.
    void seekTo(std::int32_t p) noexcept;
    // Moves n bytes on without writing (with autoExpand the buffer grows).
    void skipBytes(std::int32_t n);

    void putByte(std::uint8_t value);
    std::uint8_t getByte();
    void putInteger(std::int16_t value);
    std::int16_t getInteger();
    void putLong(std::int32_t value);
    std::int32_t getLong();

    // One byte per character (Latin-1); no length and no terminator.
    void putString(std::string_view text);
    // Exactly n characters (Latin-1); n < 1 gives an empty text.
    std::string getString(std::int32_t n);

    void putData(std::span<const std::uint8_t> source);
    // Fills the whole destination; does not stop at the end of the stream.
    void getData(std::span<std::uint8_t> destination);
    // n < 1 writes nothing.
    void putZeroBytes(std::int32_t n);

    // Writes the low count bits of value (count 0..31), most significant
    // first. Set bits are XORed into the buffer and clear bits are skipped, so
    // the target bits are expected to be clear.
    void putBits(std::int32_t value, int count);
    // Reads count bits (0..31) into the low bits of the result, most
    // significant first; at the end of a stream without autoExpand it stops
    // and the remaining low bits stay 0.
    std::int32_t getBits(int count);
    // Sets the current bit for a non-zero value, clears it for zero.
    void putBit(std::int32_t value);
    std::int32_t getBit();

private:
    void resetStream();
    bool nextByte();
    bool nextBit();
    std::uint8_t currentMask() const noexcept;
    // True when count bits from the cursor lie in the buffer (after growing
    // it, for a growing stream), so that they can be handled bytewise.
    bool withinBuffer(int count);
    bool withinData(std::int64_t n) const;
    std::uint8_t* bytesAt(std::int64_t n);
    void xorBitsInPlace(std::uint32_t value, int count);
    std::uint32_t readBitsInPlace(int count);

    std::shared_ptr<clsDataBuffer> buffer_;
    std::int32_t position_ = 0;
    std::uint8_t bitPosition_ = 0;
};

} // namespace marvek
