#pragma once

// Game files packed as "IMP!" / "ATN!" on disk.

#include "io/clsBitStream.h"
#include "io/clsDataBuffer.h"
#include "io/readFile.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace marvek {

// An unpacked file, or why there is none.
struct ExplodeResult {
    std::shared_ptr<clsDataBuffer> buffer; // null when nothing was unpacked
    std::string failure;                   // the reason when buffer is null
};

// True when the file starts with "ATN!" or "IMP!". Throws FileError when it
// cannot be read.
bool isFileIMP(const std::filesystem::path& path);

// A packed file's bytes up to the end of its trailer (fewer when the file is
// shorter), read only after its header shows the magic and lengths of at most
// maximumBytes; bytes after the trailer are not read. Throws FileError naming
// the file and why.
std::vector<std::uint8_t> readPackedBytes(const std::filesystem::path& path,
                                          std::uintmax_t maximumBytes = maximumReadBytes);

// Unpacks a packed file. A stored unpacked length of 0..3 or above
// maximumBytes, or data that does not unpack, gives no buffer and the reason.
// Throws FileError when the file cannot be read.
ExplodeResult explodeFile(const std::filesystem::path& path,
                          std::uintmax_t maximumBytes = maximumReadBytes);

// A game file (a level, tile set or sprite sheet) ready for reading, unpacked
// when packed; one larger than maximumGameFileBytes, on disk or unpacked, is
// refused before it is read. When a packed file does
// not unpack the stream is empty and unpackFailure (if given) says why.
// Throws FileError when the file cannot be read.
clsBitStream getFileBits(const std::filesystem::path& path, std::string* unpackFailure = nullptr);

// Packs the buffer's Size data bytes as small as the packer can and replaces
// the file with them. A packed file already there keeps its magic. The packed
// bytes are unpacked again and compared with the buffer before anything is
// written. Returns true; on any failure throws FileError naming the file and
// the file stays as it was.
bool implodeToFile(const clsDataBuffer& buffer, const std::filesystem::path& path);

// The magic saving over the file keeps: "ATN!" for a file packed so, else
// "IMP!". Throws FileError when the file cannot be read.
std::string packedMagicOf(const std::filesystem::path& path);

// implodeToFile with the magic given ("IMP!" or "ATN!"), whatever the file
// held before. Throws FileError.
void implodeToFileWithMagic(const clsDataBuffer& buffer, const std::filesystem::path& path,
                            std::string_view magic);

// implodeToFile for any bytes (at least one) and a packing mode: 0..11 for a
// classic mode, IMP_MODE_BEST for the smallest file. Throws FileError.
void implodeBytesToFile(std::span<const std::uint8_t> data, const std::filesystem::path& path,
                        std::int32_t mode);

} // namespace marvek
