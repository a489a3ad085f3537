#include "data/cellClipboard.h"

#include <algorithm>
#include <charconv>
#include <sstream>

namespace marvek {
namespace {

constexpr std::uint8_t magic[] = {'M', 'V', 'K', 'C'};
constexpr std::uint16_t version = 1;
constexpr std::size_t headerSize = sizeof(magic) + 3 * 2;
constexpr std::size_t bytesPerCell = 3;

void putWord(std::vector<std::uint8_t>& out, std::uint16_t word) {
    out.push_back(static_cast<std::uint8_t>(word >> 8));
    out.push_back(static_cast<std::uint8_t>(word & 0xFF));
}

std::uint16_t wordAt(std::span<const std::uint8_t> bytes, std::size_t offset) {
    return static_cast<std::uint16_t>((bytes[offset] << 8) | bytes[offset + 1]);
}

std::string tilesText(std::size_t count) {
    return std::to_string(count) + (count == 1 ? " tile" : " tiles");
}

void checkTile(std::int32_t tile, std::size_t lineNumber, std::int32_t tileCount) {
    const std::string where = "line " + std::to_string(lineNumber) +
                              " of the clipboard's text holds tile " + std::to_string(tile);
    if (tile > clsLevel::largestFileTile) {
        throw CellClipboardError(where + ", above " + std::to_string(clsLevel::largestFileTile) +
                                 ", the largest a level keeps");
    }
    if (tile >= tileCount) {
        throw CellClipboardError(where + ", past the tile set's last tile, " +
                                 std::to_string(tileCount - 1));
    }
}

} // namespace

std::vector<std::uint8_t> encodeCells(const CellBlock& block) {
    if (block.width() > 0xFFFF || block.height() > 0xFFFF) {
        throw CellClipboardError("a block of cells too large for the clipboard");
    }
    std::vector<std::uint8_t> out(std::begin(magic), std::end(magic));
    out.reserve(headerSize + block.cells().size() * bytesPerCell);
    putWord(out, version);
    putWord(out, static_cast<std::uint16_t>(block.width()));
    putWord(out, static_cast<std::uint16_t>(block.height()));
    for (const Cell& cell : block.cells()) {
        putWord(out, static_cast<std::uint16_t>(cell.tile));
        out.push_back(cell.special);
    }
    return out;
}

CellBlock decodeCells(std::span<const std::uint8_t> bytes) {
    if (bytes.size() < headerSize ||
        !std::equal(std::begin(magic), std::end(magic), bytes.begin())) {
        throw CellClipboardError("the clipboard's cells do not start with the editor's mark");
    }
    const std::uint16_t found = wordAt(bytes, 4);
    if (found != version) {
        throw CellClipboardError("the clipboard's cells are of version " + std::to_string(found) +
                                 ", which this editor does not read");
    }
    const std::int32_t width = wordAt(bytes, 6);
    const std::int32_t height = wordAt(bytes, 8);
    if (width == 0 || height == 0) {
        throw CellClipboardError("the clipboard holds an empty block of cells");
    }
    if (std::int64_t{width} * height > TileGrid::maximumEntries) {
        throw CellClipboardError("the clipboard holds " + std::to_string(width) + " x " +
                                 std::to_string(height) + " cells, more than a brush can take");
    }
    const std::size_t expected = headerSize + static_cast<std::size_t>(width) *
                                                  static_cast<std::size_t>(height) * bytesPerCell;
    if (bytes.size() != expected) {
        throw CellClipboardError("the clipboard's cells are damaged: " + std::to_string(width) +
                                 " x " + std::to_string(height) + " cells need " +
                                 std::to_string(expected) + " bytes, there are " +
                                 std::to_string(bytes.size()));
    }
    CellBlock block(width, height);
    std::size_t offset = headerSize;
    for (std::int32_t y = 0; y < height; ++y) {
        for (std::int32_t x = 0; x < width; ++x) {
            Cell& cell = block.at(x, y);
            const std::uint16_t tile = wordAt(bytes, offset);
            if (tile > clsLevel::largestFileTile) {
                throw CellClipboardError("the clipboard's cells hold tile " + std::to_string(tile) +
                                         ", above " + std::to_string(clsLevel::largestFileTile) +
                                         ", the largest a level keeps");
            }
            cell.tile = static_cast<std::int16_t>(tile);
            cell.special = bytes[offset + 2];
            offset += bytesPerCell;
        }
    }
    return block;
}

std::string cellsAsText(const CellBlock& block) {
    std::string text;
    for (std::int32_t y = 0; y < block.height(); ++y) {
        for (std::int32_t x = 0; x < block.width(); ++x) {
            if (x > 0) {
                text += '\t';
            }
            text += std::to_string(block.at(x, y).tile);
        }
        text += '\n';
    }
    return text;
}

CellBlock cellsFromText(const std::string& text, std::int32_t tileCount) {
    std::vector<std::vector<std::int32_t>> rows;
    std::istringstream lines(text);
    std::string line;
    std::size_t lineNumber = 0;
    while (std::getline(lines, line)) {
        ++lineNumber;
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        std::vector<std::int32_t> row;
        const char* at = line.data();
        const char* const end = line.data() + line.size();
        while (true) {
            while (at != end && (*at == ' ' || *at == '\t')) {
                ++at;
            }
            if (at == end) {
                break;
            }
            std::int32_t tile = 0;
            const auto [next, error] = std::from_chars(at, end, tile);
            if (error != std::errc() || tile < 0 ||
                (next != end && *next != ' ' && *next != '\t')) {
                throw CellClipboardError("line " + std::to_string(lineNumber) +
                                         " of the clipboard's text is not a row of tile numbers");
            }
            checkTile(tile, lineNumber, tileCount);
            row.push_back(tile);
            at = next;
        }
        if (row.empty()) {
            continue;
        }
        if (!rows.empty() && row.size() != rows.front().size()) {
            throw CellClipboardError("line " + std::to_string(lineNumber) +
                                     " of the clipboard's text has " + tilesText(row.size()) +
                                     " where the first row has " + tilesText(rows.front().size()));
        }
        rows.push_back(std::move(row));
        if (rows.size() * rows.front().size() >
            static_cast<std::size_t>(TileGrid::maximumEntries)) {
            throw CellClipboardError("the clipboard's text holds too many tiles");
        }
    }
    if (rows.empty()) {
        throw CellClipboardError("the clipboard's text holds no tile numbers");
    }
    CellBlock block(static_cast<std::int32_t>(rows.front().size()),
                    static_cast<std::int32_t>(rows.size()));
    for (std::size_t y = 0; y < rows.size(); ++y) {
        for (std::size_t x = 0; x < rows[y].size(); ++x) {
            block.at(static_cast<std::int32_t>(x), static_cast<std::int32_t>(y)).tile =
                static_cast<std::int16_t>(rows[y][x]);
        }
    }
    return block;
}

} // namespace marvek
