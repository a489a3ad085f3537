#pragma once

#include <cstdint>
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

// A layer's data as text, and the attributes that say how to read it back.
struct EncodedLayer {
    // Empty for CSV and XML; "base64" otherwise.
    std::string encoding;
    // Empty, "zlib", "gzip" or "zstd".
    std::string compression;
    std::string text;
};

// The gids of a CSV or base64 layer; an XML layer's tiles are written by the
// map writer itself.
EncodedLayer encodeLayer(std::span<const std::uint32_t> gids, LayerFormat format,
                         std::int32_t width);

// The gids of layer data given as text with Tiled's encoding ("csv",
// "base64") and compression ("", "zlib", "gzip", "zstd"). Throws
// std::runtime_error saying what is wrong with the data.
std::vector<std::uint32_t> decodeLayer(std::string_view text, std::string_view encoding,
                                       std::string_view compression);

} // namespace marvek
