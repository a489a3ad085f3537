#include "maps/layerData.h"

#include "data/clsLevel.h"

#include <zlib.h>
#include <zstd.h>

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstring>
#include <memory>
#include <stdexcept>

namespace marvek {
namespace {

// No level has more cells, so no layer data unpacks to more bytes.
constexpr std::size_t largestLayerBytes = 4 * static_cast<std::size_t>(clsLevel::maximumCells);
constexpr std::string_view base64Digits =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr int zlibWindow = 15;
constexpr int gzipWrapper = 16;
constexpr int detectWrapper = 32;

std::string base64(std::span<const std::uint8_t> bytes) {
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        const std::size_t left = bytes.size() - i;
        std::uint32_t group = std::uint32_t{bytes[i]} << 16;
        group |= left > 1 ? std::uint32_t{bytes[i + 1]} << 8 : 0;
        group |= left > 2 ? std::uint32_t{bytes[i + 2]} : 0;
        for (std::size_t digit = 0; digit < 4; ++digit) {
            text += digit <= left ? base64Digits[(group >> (18 - 6 * digit)) & 63] : '=';
        }
    }
    return text;
}

std::vector<std::uint8_t> unbase64(std::string_view text) {
    std::array<int, 256> values{};
    values.fill(-1);
    for (std::size_t i = 0; i < base64Digits.size(); ++i) {
        values[static_cast<unsigned char>(base64Digits[i])] = static_cast<int>(i);
    }
    std::vector<std::uint8_t> bytes;
    bytes.reserve(text.size() / 4 * 3);
    std::uint32_t group = 0;
    int bits = 0;
    bool padded = false;
    for (const char c : text) {
        if (c == ' ' || c == '\n' || c == '\r' || c == '\t') {
            continue;
        }
        if (c == '=') {
            padded = true;
            continue;
        }
        const int value = values[static_cast<unsigned char>(c)];
        if (value < 0 || padded) {
            throw std::runtime_error("the layer's base64 data holds a stray '" + std::string(1, c) +
                                     "'");
        }
        group = group << 6 | static_cast<std::uint32_t>(value);
        bits += 6;
        if (bits >= 8) {
            bits -= 8;
            bytes.push_back(static_cast<std::uint8_t>(group >> bits));
        }
    }
    return bytes;
}

std::vector<std::uint8_t> deflated(std::span<const std::uint8_t> bytes, int windowBits) {
    z_stream stream{};
    if (deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, windowBits, 8,
                     Z_DEFAULT_STRATEGY) != Z_OK) {
        throw std::runtime_error("zlib cannot start compressing");
    }
    std::vector<std::uint8_t> packed(deflateBound(&stream, static_cast<uLong>(bytes.size())));
    stream.next_in = const_cast<Bytef*>(bytes.data()); // zlib does not write through it
    stream.avail_in = static_cast<uInt>(bytes.size());
    stream.next_out = packed.data();
    stream.avail_out = static_cast<uInt>(packed.size());
    const int status = deflate(&stream, Z_FINISH);
    packed.resize(stream.total_out);
    deflateEnd(&stream);
    if (status != Z_STREAM_END) {
        throw std::runtime_error("zlib cannot compress the layer");
    }
    return packed;
}

std::vector<std::uint8_t> inflated(std::span<const std::uint8_t> bytes) {
    z_stream stream{};
    if (inflateInit2(&stream, zlibWindow + detectWrapper) != Z_OK) {
        throw std::runtime_error("zlib cannot start unpacking");
    }
    const std::unique_ptr<z_stream, int (*)(z_stream*)> owner(&stream, inflateEnd);
    std::vector<std::uint8_t> out;
    std::array<std::uint8_t, 65536> block{};
    stream.next_in = const_cast<Bytef*>(bytes.data()); // zlib does not write through it
    stream.avail_in = static_cast<uInt>(bytes.size());
    int status = Z_OK;
    while (status != Z_STREAM_END) {
        stream.next_out = block.data();
        stream.avail_out = static_cast<uInt>(block.size());
        status = inflate(&stream, Z_NO_FLUSH);
        if (status != Z_OK && status != Z_STREAM_END) {
            throw std::runtime_error("the layer's compressed data is damaged");
        }
        out.insert(out.end(), block.begin(), block.end() - stream.avail_out);
        if (out.size() > largestLayerBytes) {
            throw std::runtime_error("the layer's data unpacks to more cells than a level holds");
        }
        if (status == Z_OK && stream.avail_in == 0 && stream.avail_out != 0) {
            throw std::runtime_error("the layer's compressed data ends early");
        }
    }
    return out;
}

std::vector<std::uint8_t> zstdPacked(std::span<const std::uint8_t> bytes) {
    std::vector<std::uint8_t> packed(ZSTD_compressBound(bytes.size()));
    const std::size_t size = ZSTD_compress(packed.data(), packed.size(), bytes.data(), bytes.size(),
                                           ZSTD_CLEVEL_DEFAULT);
    if (ZSTD_isError(size) != 0) {
        throw std::runtime_error(std::string("zstd cannot compress the layer: ") +
                                 ZSTD_getErrorName(size));
    }
    packed.resize(size);
    return packed;
}

std::vector<std::uint8_t> zstdUnpacked(std::span<const std::uint8_t> bytes) {
    const std::unique_ptr<ZSTD_DStream, std::size_t (*)(ZSTD_DStream*)> stream(ZSTD_createDStream(),
                                                                               ZSTD_freeDStream);
    if (!stream) {
        throw std::runtime_error("zstd cannot start unpacking");
    }
    std::vector<std::uint8_t> out;
    std::array<std::uint8_t, 65536> block{};
    ZSTD_inBuffer in{bytes.data(), bytes.size(), 0};
    std::size_t status = 1;
    while (in.pos < in.size || status != 0) {
        ZSTD_outBuffer chunk{block.data(), block.size(), 0};
        status = ZSTD_decompressStream(stream.get(), &chunk, &in);
        if (ZSTD_isError(status) != 0) {
            throw std::runtime_error(std::string("the layer's zstd data is damaged: ") +
                                     ZSTD_getErrorName(status));
        }
        out.insert(out.end(), block.begin(),
                   block.begin() + static_cast<std::ptrdiff_t>(chunk.pos));
        if (out.size() > largestLayerBytes) {
            throw std::runtime_error("the layer's data unpacks to more cells than a level holds");
        }
        if (status != 0 && in.pos == in.size && chunk.pos < chunk.size) {
            throw std::runtime_error("the layer's zstd data ends early");
        }
    }
    return out;
}

std::vector<std::uint8_t> littleEndian(std::span<const std::uint32_t> gids) {
    std::vector<std::uint8_t> bytes;
    bytes.reserve(gids.size() * 4);
    for (const std::uint32_t gid : gids) {
        for (int shift = 0; shift < 32; shift += 8) {
            bytes.push_back(static_cast<std::uint8_t>(gid >> shift));
        }
    }
    return bytes;
}

std::vector<std::uint32_t> gidsOf(std::span<const std::uint8_t> bytes) {
    if (bytes.size() % 4 != 0) {
        throw std::runtime_error("the layer's data is " + std::to_string(bytes.size()) +
                                 " bytes long, not a whole number of cells");
    }
    std::vector<std::uint32_t> gids(bytes.size() / 4);
    for (std::size_t i = 0; i < gids.size(); ++i) {
        gids[i] = std::uint32_t{bytes[4 * i]} | std::uint32_t{bytes[4 * i + 1]} << 8 |
                  std::uint32_t{bytes[4 * i + 2]} << 16 | std::uint32_t{bytes[4 * i + 3]} << 24;
    }
    return gids;
}

bool isBlank(char c) {
    return c == ' ' || c == '\n' || c == '\r' || c == '\t';
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

const char* skipBlanks(const char* at, const char* end) {
    while (at != end && isBlank(*at)) {
        ++at;
    }
    return at;
}

// Where a layer's data says why it is refused: the careful reading, which
// also settles whatever the quick one leaves to it.
std::vector<std::uint32_t> uncsv(std::string_view text) {
    std::vector<std::uint32_t> gids;
    gids.reserve(text.size() / 2);
    std::size_t at = 0;
    const auto skipAllBlanks = [&] {
        while (at < text.size() && isBlank(text[at])) {
            ++at;
        }
    };
    skipAllBlanks();
    while (at < text.size()) {
        const std::size_t start = at;
        std::uint64_t gid = 0;
        while (at < text.size() && isDigit(text[at]) && gid <= UINT32_MAX) {
            gid = gid * 10 + static_cast<std::uint64_t>(text[at] - '0');
            ++at;
        }
        if (at == start || gid > UINT32_MAX) {
            throw std::runtime_error(
                "the layer's CSV data holds \"" + std::string(text.substr(start, 12)) +
                "\" where a tile number belongs (cell " + std::to_string(gids.size()) + ")");
        }
        gids.push_back(static_cast<std::uint32_t>(gid));
        skipAllBlanks();
        if (at < text.size() && text[at] == ',') {
            ++at;
            skipAllBlanks();
        }
    }
    return gids;
}

// Byte lanes of a little-endian word, each checked without branching.
constexpr std::uint64_t fromZero = 0x5050505050505050u; // sets a lane's top bit from '0' up
constexpr std::uint64_t pastNine = 0x4646464646464646u; // sets it from ':' up

// True when the lanes in mask (their top bits) hold digits.
bool digitsIn(std::uint64_t word, std::uint64_t mask) {
    // Carries run only towards later lanes, so a lane never spoils one
    // before it; lanes past 0x7F are no digits.
    return (word & mask) == 0 && ((word + fromZero) & mask) == mask &&
           ((word + pastNine) & mask) == 0;
}

// Four single-digit numbers ("d,d,d,d,") in a word, or false.
bool fourSingleDigits(std::uint64_t word, std::uint32_t* out) {
    constexpr std::uint64_t commas = 0x2C002C002C002C00u;
    constexpr std::uint64_t commaLanes = 0xFF00FF00FF00FF00u;
    constexpr std::uint64_t digitLanes = 0x0080008000800080u;
    constexpr std::uint64_t nibbles = 0x000F000F000F000Fu;
    if ((word & commaLanes) != commas || !digitsIn(word, digitLanes)) {
        return false;
    }
    // The four 16-bit lanes spread to two words of two 32-bit ones.
    const std::uint64_t digits = word & nibbles;
    const std::array<std::uint64_t, 2> spread{(digits & 0xFFFFu) | (digits & 0xFFFF0000u) << 16,
                                              (digits >> 32 & 0xFFFFu) | (digits >> 48) << 32};
    std::memcpy(out, spread.data(), sizeof spread);
    return true;
}

// Two two-digit numbers ("dd,dd,") at the start of a word, or false.
bool twoDoubleDigits(std::uint64_t word, std::uint32_t* out) {
    constexpr std::uint64_t commas = 0x00002C00002C0000u;
    constexpr std::uint64_t commaLanes = 0x0000FF0000FF0000u;
    constexpr std::uint64_t digitLanes = 0x0000008080008080u;
    constexpr unsigned tens = 10;
    if ((word & commaLanes) != commas || !digitsIn(word, digitLanes)) {
        return false;
    }
    const auto digit = [word](int lane) {
        return static_cast<std::uint32_t>(word >> (8 * lane)) & 0xFu;
    };
    out[0] = digit(0) * tens + digit(1);
    out[1] = digit(3) * tens + digit(4);
    return true;
}

std::uint64_t wordAt(const char* at) {
    std::uint64_t word = 0;
    std::memcpy(&word, at, sizeof word);
    return word;
}

// Most cells of a level's layers have numbers of one or two digits ("0,"
// for a cell without a special): eight bytes at a time, four such numbers
// ("d,d,d,d,") or two ("dd,dd,") are read at once, and a long run of single
// digits sixteen bytes at a time, each run while out is below outLimit
// (which leaves room for eight). Returns where the runs end.
const char* shortNumberRun(const char* at, const char* end, std::uint32_t*& out,
                           const std::uint32_t* outLimit) {
    if constexpr (std::endian::native != std::endian::little) {
        return at;
    }
    constexpr std::ptrdiff_t wordSize = sizeof(std::uint64_t);
    while (end - at >= wordSize && out < outLimit) {
        if (end - at >= 2 * wordSize && fourSingleDigits(wordAt(at), out) &&
            fourSingleDigits(wordAt(at + wordSize), out + 4)) {
            out += 8;
            at += 2 * wordSize;
            // A Specials layer's long runs of "0,".
            while (end - at >= 2 * wordSize && out < outLimit &&
                   fourSingleDigits(wordAt(at), out) &&
                   fourSingleDigits(wordAt(at + wordSize), out + 4)) {
                out += 8;
                at += 2 * wordSize;
            }
        } else if (fourSingleDigits(wordAt(at), out)) {
            out += 4;
            at += wordSize;
        } else if (twoDoubleDigits(wordAt(at), out)) {
            out += 2;
            at += 6;
            while (end - at >= wordSize && out < outLimit && twoDoubleDigits(wordAt(at), out)) {
                out += 2;
                at += 6;
            }
        } else {
            return at;
        }
        at = skipBlanks(at, end);
    }
    return at;
}

} // namespace

std::optional<CsvPrefix> readCsvPrefix(std::string_view text) {
    // Each number takes a byte and a separator but the last. The gids go
    // through a block on the stack into the vector, whose memory is then
    // written once rather than zeroed first.
    std::vector<std::uint32_t> gids;
    gids.reserve(text.size() / 2 + 1);
    std::array<std::uint32_t, 512> block{};
    std::uint32_t* out = block.data();
    const std::uint32_t* const outLimit = block.data() + block.size() - 8;
    const char* at = skipBlanks(text.data(), text.data() + text.size());
    const char* const end = text.data() + text.size();
    while (at != end) {
        if (out >= outLimit) {
            gids.insert(gids.end(), block.data(), out);
            out = block.data();
        }
        at = shortNumberRun(at, end, out, outLimit);
        if (at == end || !isDigit(*at)) {
            if (at != end && *at == ',') {
                return std::nullopt; // an empty field
            }
            break;
        }
        std::uint64_t gid = 0;
        while (at != end && isDigit(*at)) {
            gid = gid * 10 + static_cast<std::uint64_t>(*at++ - '0');
            if (gid > UINT32_MAX) {
                return std::nullopt;
            }
        }
        *out++ = static_cast<std::uint32_t>(gid);
        at = skipBlanks(at, end);
        if (at != end && *at == ',') {
            at = skipBlanks(at + 1, end);
        }
    }
    gids.insert(gids.end(), block.data(), out);
    return CsvPrefix{std::move(gids), static_cast<std::size_t>(at - text.data())};
}

LayerFormat layerFormatNamed(std::string_view name) {
    constexpr std::array<std::pair<std::string_view, LayerFormat>, 6> names{{
        {"csv", LayerFormat::csv},
        {"base64", LayerFormat::base64},
        {"zlib", LayerFormat::zlib},
        {"gzip", LayerFormat::gzip},
        {"zstd", LayerFormat::zstd},
        {"xml", LayerFormat::xml},
    }};
    for (const auto& [known, format] : names) {
        if (known == name) {
            return format;
        }
    }
    throw std::invalid_argument("no layer format is called \"" + std::string(name) +
                                "\" (csv, base64, zlib, gzip, zstd or xml)");
}

LayerEncoding layerEncoding(LayerFormat format) {
    switch (format) {
    case LayerFormat::csv:
        return {"csv", ""};
    case LayerFormat::base64:
        return {"base64", ""};
    case LayerFormat::zlib:
        return {"base64", "zlib"};
    case LayerFormat::gzip:
        return {"base64", "gzip"};
    case LayerFormat::zstd:
        return {"base64", "zstd"};
    case LayerFormat::xml:
        return {"", ""};
    }
    throw std::invalid_argument("unknown layer format");
}

namespace {

// Most of a level's gids are single digits ("0" for no special).
char* writeNumber(char* at, std::uint32_t value) {
    constexpr std::uint32_t digits = 10;
    if (value < digits) {
        *at = static_cast<char>('0' + value);
        return at + 1;
    }
    return std::to_chars(at, at + 10, value).ptr;
}

// Eight single-digit gids as "d,d,d,d,d,d,d,d," in one store: a level's
// Specials layer is mostly long runs of "0,". False, writing nothing, for
// a larger gid among them.
bool writeEightDigits(const std::uint32_t* gids, char* at) {
    constexpr std::size_t count = 8;
    constexpr std::uint64_t zeros = 0x2C302C302C302C30u; // "0,0,0,0,"
    std::array<std::uint64_t, 2> words{zeros, zeros};
    for (std::size_t i = 0; i < count; ++i) {
        if (gids[i] >= 10) {
            return false;
        }
        words[i / 4] += std::uint64_t{gids[i]} << (16 * (i % 4));
    }
    std::memcpy(at, words.data(), sizeof words);
    return true;
}

} // namespace

void appendNumberList(std::string& out, std::span<const std::uint32_t> gids,
                      std::int32_t rowLength) {
    // Numbers go through a block on the stack, which the string takes whole:
    // no per-character growth checks, and no zero-filled room to write over.
    constexpr std::size_t longestEntry = 16; // a run of eight; or ten digits, comma, line end
    std::array<char, 4096> block{};
    char* at = block.data();
    char* const full = block.data() + block.size() - longestEntry;
    const auto row = static_cast<std::size_t>(std::max(rowLength, 0));
    constexpr std::size_t run = 8;
    const bool runs = std::endian::native == std::endian::little;
    std::size_t column = 0;
    for (std::size_t i = 0; i < gids.size();) {
        // A run neither ends a row nor the list, so each number in it is
        // followed by its comma alone.
        if (runs && i + run < gids.size() && (row == 0 || column + run < row) &&
            writeEightDigits(&gids[i], at)) {
            at += 2 * run;
            i += run;
            column += run;
        } else {
            at = writeNumber(at, gids[i]);
            if (++i < gids.size()) {
                *at++ = ',';
            }
            if (++column == row) {
                *at++ = '\n';
                column = 0;
            }
        }
        if (at >= full) {
            out.append(block.data(), at);
            at = block.data();
        }
    }
    out.append(block.data(), at);
}

void appendLayerText(std::string& out, std::span<const std::uint32_t> gids, LayerFormat format,
                     std::int32_t width) {
    switch (format) {
    case LayerFormat::csv:
    case LayerFormat::xml:
        out += '\n';
        appendNumberList(out, gids, width);
        return;
    case LayerFormat::base64:
        out += base64(littleEndian(gids));
        return;
    case LayerFormat::zlib:
        out += base64(deflated(littleEndian(gids), zlibWindow));
        return;
    case LayerFormat::gzip:
        out += base64(deflated(littleEndian(gids), zlibWindow + gzipWrapper));
        return;
    case LayerFormat::zstd:
        out += base64(zstdPacked(littleEndian(gids)));
        return;
    }
    throw std::invalid_argument("unknown layer format");
}

std::vector<std::uint32_t> decodeLayer(std::string_view text, std::string_view encoding,
                                       std::string_view compression) {
    if (encoding == "csv") {
        if (!compression.empty()) {
            throw std::runtime_error("CSV layer data cannot be compressed");
        }
        if (auto read = readCsvPrefix(text); read && read->length == text.size()) {
            return std::move(read->gids);
        }
        return uncsv(text);
    }
    if (encoding != "base64") {
        throw std::runtime_error("the layer's data encoding \"" + std::string(encoding) +
                                 "\" is not csv or base64");
    }
    const std::vector<std::uint8_t> bytes = unbase64(text);
    if (compression.empty()) {
        return gidsOf(bytes);
    }
    if (compression == "zlib" || compression == "gzip") {
        return gidsOf(inflated(bytes));
    }
    if (compression == "zstd") {
        return gidsOf(zstdUnpacked(bytes));
    }
    throw std::runtime_error("the layer's compression \"" + std::string(compression) +
                             "\" is not zlib, gzip or zstd");
}

} // namespace marvek
