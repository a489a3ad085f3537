#pragma once

#include "data/CellBlock.h"

#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace marvek {

// The MIME type under which the editor puts whole cells on the clipboard.
inline constexpr const char* cellsMimeType = "application/x-marvek-cells";

// Clipboard bytes that are not cells of ours, or are damaged.
class CellClipboardError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The block as bytes: "MVKC", a 16-bit version, 16-bit width and height,
// then per cell a 16-bit tile and an 8-bit special, all big-endian, row by
// row.
std::vector<std::uint8_t> encodeCells(const CellBlock& block);
// Reads those bytes back; throws CellClipboardError saying what is wrong.
CellBlock decodeCells(std::span<const std::uint8_t> bytes);

// The tile numbers, a line per row, separated by tabs: for a look in any
// text editor or spreadsheet.
std::string cellsAsText(const CellBlock& block);
// Reads such a grid back as tiles without specials (blanks or tabs between
// numbers, rows of equal length), each a tile of a set of tileCount tiles.
// Throws CellClipboardError naming the line that is not a row of such tile
// numbers.
CellBlock cellsFromText(const std::string& text, std::int32_t tileCount);

} // namespace marvek
