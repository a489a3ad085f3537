#include "io/packedFile.h"

#include "io/FileError.h"
#include "io/atomicWrite.h"
#include "io/pathProblem.h"
#include "native/imploder/format.h"
#include "native/marvek.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <span>
#include <vector>

namespace marvek {
namespace {

using Magic = std::array<std::uint8_t, 4>;

// The smallest unpacked length worth unpacking; shorter data is no game file.
constexpr std::uint32_t kShortestUnpacked = 4;

struct LibraryMemory {
    std::uint8_t* bytes = nullptr;
    std::size_t length = 0;

    LibraryMemory() = default;
    LibraryMemory(const LibraryMemory&) = delete;
    LibraryMemory& operator=(const LibraryMemory&) = delete;
    ~LibraryMemory() { freeMemory(bytes); }

    std::span<std::uint8_t> span() const { return {bytes, length}; }
};

Magic readMagic(const std::filesystem::path& path) {
    const std::vector<std::uint8_t> start = readFileStart(path, Magic{}.size());
    Magic magic{};
    if (start.size() == magic.size()) {
        std::copy(start.begin(), start.end(), magic.begin());
    }
    return magic;
}

bool isPackedMagic(const Magic& magic) {
    return magic == imploder::kMagicAtn || magic == imploder::kMagicImp;
}

// A packed file's bytes up to the end of its trailer, or why they were not
// read: the header is judged first, so that a file that is not packed or
// claims more than the limit costs twelve bytes of reading.
struct PackedRead {
    std::vector<std::uint8_t> bytes;
    std::string refusal;
};

PackedRead readPacked(const std::filesystem::path& path, std::uintmax_t maximumBytes) {
    std::vector<std::uint8_t> header = readFileStart(path, imploder::kHeaderLength);
    if (header.size() < imploder::kHeaderLength) {
        return {std::move(header), {}};
    }
    Magic magic{};
    std::copy_n(header.begin(), magic.size(), magic.begin());
    if (!isPackedMagic(magic)) {
        return {{}, impStatusText(IMP_ERROR_MAGIC)};
    }
    const std::uint32_t unpacked =
        imploder::readBigEndian32(&header[imploder::kUnpackedLengthOffset]);
    if (unpacked > maximumBytes) {
        return {{},
                "the unpacked length is too large (" + std::to_string(unpacked) +
                    " bytes; at most " + std::to_string(maximumBytes) + ")"};
    }
    const std::size_t length =
        imploder::packedFileLength(imploder::readBigEndian32(&header[imploder::kStreamEndOffset]));
    if (length > maximumBytes) {
        return {{},
                "the packed file's stream end lies too far (" + std::to_string(length) + " bytes)"};
    }
    // Readers tolerate bytes after the trailer; they are not even read.
    return {readFileStart(path, length), {}};
}

std::shared_ptr<clsDataBuffer> bufferOf(std::span<const std::uint8_t> bytes) {
    auto buffer = std::make_shared<clsDataBuffer>();
    buffer->Create(static_cast<std::int32_t>(bytes.size()));
    std::copy(bytes.begin(), bytes.end(), buffer->data().begin());
    return buffer;
}

// Keeps the magic of the file being replaced; the checksum covers the magic.
void applyMagic(std::span<std::uint8_t> packed, const Magic& magic) {
    std::copy(magic.begin(), magic.end(), packed.begin());
    const std::size_t end = imploder::readBigEndian32(packed.data() + imploder::kStreamEndOffset);
    imploder::writeBigEndian32(packed.data() + end + imploder::kTrailerChecksum,
                               imploder::checksum(packed, end));
}

Magic magicToKeep(const std::filesystem::path& path) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) {
        return imploder::kMagicImp;
    }
    const Magic existing = readMagic(path);
    return existing == imploder::kMagicAtn ? existing : imploder::kMagicImp;
}

// The packer's output must be exactly one file long before its trailer is
// touched.
void checkPackedLength(std::span<const std::uint8_t> packed, const std::filesystem::path& path) {
    const bool fits = packed.size() >= imploder::kHeaderLength &&
                      packed.size() == imploder::packedFileLength(imploder::readBigEndian32(
                                           packed.data() + imploder::kStreamEndOffset));
    if (!fits) {
        throw FileError(path, "the packed data has the wrong length");
    }
}

void verifyUnpacksTo(std::span<const std::uint8_t> packed, std::span<const std::uint8_t> original,
                     const std::filesystem::path& path) {
    LibraryMemory unpacked;
    const int32_t status =
        impExplode(packed.data(), packed.size(), &unpacked.bytes, &unpacked.length);
    if (status != IMP_OK) {
        throw FileError(path,
                        std::string("the packed data does not unpack: ") + impStatusText(status));
    }
    if (!std::ranges::equal(unpacked.span(), original)) {
        throw FileError(path, "the packed data does not unpack to the original");
    }
}

} // namespace

bool isFileIMP(const std::filesystem::path& path) {
    return isPackedMagic(readMagic(path));
}

std::vector<std::uint8_t> readPackedBytes(const std::filesystem::path& path,
                                          std::uintmax_t maximumBytes) {
    PackedRead read = readPacked(path, maximumBytes);
    if (!read.refusal.empty()) {
        throw FileError(path, read.refusal);
    }
    return std::move(read.bytes);
}

ExplodeResult explodeFile(const std::filesystem::path& path, std::uintmax_t maximumBytes) {
    const PackedRead read = readPacked(path, maximumBytes);
    if (!read.refusal.empty()) {
        return {nullptr, read.refusal};
    }
    const std::vector<std::uint8_t>& file = read.bytes;
    if (file.size() < imploder::kHeaderLength) {
        return {nullptr, impStatusText(IMP_ERROR_TOO_SHORT)};
    }
    const std::uint32_t stored = imploder::readBigEndian32(&file[imploder::kUnpackedLengthOffset]);
    if (stored < kShortestUnpacked) {
        return {nullptr, "the unpacked length is only " + std::to_string(stored) + " bytes"};
    }
    if (stored > static_cast<std::uint32_t>(clsDataBuffer::maximumSize)) {
        return {nullptr, "the unpacked length is too large"};
    }
    LibraryMemory unpacked;
    const int32_t status = impExplode(file.data(), file.size(), &unpacked.bytes, &unpacked.length);
    if (status != IMP_OK) {
        return {nullptr, impStatusText(status)};
    }
    return {bufferOf(unpacked.span()), {}};
}

clsBitStream getFileBits(const std::filesystem::path& path, std::string* unpackFailure) {
    clsBitStream stream;
    if (!isFileIMP(path)) {
        stream.loadFromFile(path, maximumGameFileBytes);
        return stream;
    }
    ExplodeResult result = explodeFile(path, maximumGameFileBytes);
    if (result.buffer) {
        stream.loadFromBuffer(std::move(result.buffer));
        return stream;
    }
    // Size 0 rather than no storage: readers simply find no data.
    stream.Create();
    if (unpackFailure != nullptr) {
        *unpackFailure = std::move(result.failure);
    }
    return stream;
}

bool implodeToFile(const clsDataBuffer& buffer, const std::filesystem::path& path) {
    implodeBytesToFile(buffer.data(), path, IMP_MODE_BEST);
    return true;
}

namespace {

void packToFile(std::span<const std::uint8_t> data, const std::filesystem::path& path,
                std::int32_t mode, const Magic& magic) {
    if (data.empty()) {
        throw FileError(path, "there is no data to pack");
    }
    LibraryMemory packed;
    const int32_t status =
        impImplode(data.data(), data.size(), mode, &packed.bytes, &packed.length);
    if (status != IMP_OK) {
        throw FileError(path, std::string("cannot pack the data: ") + impStatusText(status));
    }
    checkPackedLength(packed.span(), path);
    applyMagic(packed.span(), magic);
    verifyUnpacksTo(packed.span(), data, path);
    writeFileAtomically(path, packed.span());
}

} // namespace

void implodeBytesToFile(std::span<const std::uint8_t> data, const std::filesystem::path& path,
                        std::int32_t mode) {
    packToFile(data, path, mode, magicToKeep(path));
}

std::string packedMagicOf(const std::filesystem::path& path) {
    const Magic magic = magicToKeep(path);
    return {magic.begin(), magic.end()};
}

void implodeToFileWithMagic(const clsDataBuffer& buffer, const std::filesystem::path& path,
                            std::string_view magic) {
    if (magic != "IMP!" && magic != "ATN!") {
        throw FileError(path, "a packed file begins with IMP! or ATN!, not " + std::string(magic));
    }
    Magic chosen{};
    std::copy(magic.begin(), magic.end(), chosen.begin());
    packToFile(buffer.data(), path, IMP_MODE_BEST, chosen);
}

} // namespace marvek
