#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace marvek {

// How a tile layer's cells are written in a map file: Tiled's own choices.
enum class LayerFormat { csv, base64, zlib, gzip, zstd, xml };

// "csv", "base64", "zlib", "gzip", "zstd", "xml"; throws std::invalid_argument
// for any other name.
LayerFormat layerFormatNamed(std::string_view name);

// The attributes that say how a layer's data is written: encoding "csv" or
// "base64", compression "", "zlib", "gzip" or "zstd". Tiled's XML tiles
// have neither.
struct LayerEncoding {
    std::string_view encoding;
    std::string_view compression;
};
LayerEncoding layerEncoding(LayerFormat format);

// Appends the gids as a CSV or base64 layer's text, rows of width cells in
// CSV; an XML layer's tiles are written by the map writer itself.
void appendLayerText(std::string& out, std::span<const std::uint32_t> gids, LayerFormat format,
                     std::int32_t width);

// Appends the gids as numbers separated by commas, with a line end after
// each row of rowLength cells (none when rowLength is 0 or less).
void appendNumberList(std::string& out, std::span<const std::uint32_t> gids,
                      std::int32_t rowLength);

// CSV layer data read from the start of text up to the first byte that is
// no digit, comma or blank: the gids, and how many bytes that is.
struct CsvPrefix {
    std::vector<std::uint32_t> gids;
    std::size_t length = 0;
};
// None when that much of the text would be refused as CSV data (an empty
// field, a number past 32 bits), which decodeLayer then says why.
std::optional<CsvPrefix> readCsvPrefix(std::string_view text);

// The gids of layer data given as text with Tiled's encoding ("csv",
// "base64") and compression ("", "zlib", "gzip", "zstd"). Throws
// std::runtime_error saying what is wrong with the data.
std::vector<std::uint32_t> decodeLayer(std::string_view text, std::string_view encoding,
                                       std::string_view compression);

} // namespace marvek
