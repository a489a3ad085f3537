#pragma once

#include "data/TileGrid.h"
#include "data/clsRenderOptions.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace marvek {

class clsBackBuffer;
class clsBitStream;
class clsCamera;
class clsPalette;
class clsRectangle;
class clsSpecial;
class clsSpecialSet;
class clsTileSet;

// One map cell as the undo store sees it: four bytes, the last one spare.
struct Cell {
    std::int16_t tile = 0;
    std::uint8_t special = 0;
    std::uint8_t spare = 0;

    bool operator==(const Cell&) const = default;
};
static_assert(sizeof(Cell) == 4, "the undo store snapshots cells as 4-byte records");

// One chunk as the level reader took it: its ID, the length its header
// states, where the header starts and how many bytes after the header the
// reader consumed (which is what counts, whatever the stated length).
struct LevelChunk {
    std::string id;
    std::uint32_t statedLength = 0;
    std::int32_t offset = 0;
    std::int32_t bytesRead = 0;
};

// A level in memory: the map's cells and the chunks of its file that the
// editor keeps. Reading and writing live in clsLevelFile.cpp; editing and
// rendering live in clsLevelEdit.cpp and clsLevelRender.cpp.
class clsLevel {
public:
    // A larger map when BODY is reached is refused rather than allocated.
    static constexpr std::int64_t maximumCells = 1'048'576;
    static constexpr std::size_t ccclSize = 64;
    // Entries of the default-special table written to a file.
    static constexpr std::size_t fileDefaultSpecials = 1024;
    // The largest tile number a file's 10-bit field keeps.
    static constexpr std::int32_t largestFileTile = 1023;

    std::int32_t width = 0;
    std::int32_t height = 0;
    std::string fileName;
    bool modified = false;
    // Pixels between cell origins when drawing: 16, or 17 with the grid shown.
    std::int32_t tileSpacing = 16;

    static constexpr std::size_t maximumChunks = 4096;
    // Reads the chunks of an unpacked level; a PALA chunk replaces palette.
    // False for a WGMP value other than the data length, for a size that
    // makes no sense when BODY is reached, for a stream without data, and
    // for more than maximumChunks chunks (a file of zeros is a chunk every
    // eight bytes; a level has about twenty).
    // With chunksRead, every chunk taken is appended there, the one that made
    // the level fail included.
    bool loadFromBits(clsBitStream& stream, clsPalette& palette,
                      std::vector<LevelChunk>* chunksRead = nullptr);
    // Writes the level's seventeen chunks, unpacked, at the stream's cursor.
    // A short default-special table or palette is padded so that every chunk
    // holds what its length says. Throws std::length_error for a map of more
    // than maximumCells cells.
    void writeTo(clsBitStream& stream, const clsPalette& palette) const;
    // Why the level cannot go into a level file (its cell count is not the
    // one the format's fixed length holds); empty when it can.
    std::string whyNotSavable() const;
    // Packs the chunks into fileName; name is not used (the caller sets
    // fileName first). Throws FileError naming the file when it cannot be
    // written, and std::length_error with whyNotSavable before writing
    // anything; the old file is then unchanged and modified stays as it was.
    void saveToFile(const std::string& name, const clsPalette& palette);

    // Cells row by row from the top; contiguous, for the undo store.
    std::span<Cell> cells() noexcept { return cells_; }
    std::span<const Cell> cells() const noexcept { return cells_; }
    std::size_t cellBytes() const noexcept { return cells_.size() * sizeof(Cell); }
    // Width and height of at least 1 and no more than maximumCells cells.
    bool hasSensibleSize() const noexcept;
    // True for a cell of the map that the grid holds.
    bool contains(std::int32_t x, std::int32_t y) const noexcept;
    // Throws std::out_of_range outside the map.
    Cell& cellAt(std::int32_t x, std::int32_t y);
    const Cell& cellAt(std::int32_t x, std::int32_t y) const;
    // A grid of width x height empty cells; throws std::length_error unless
    // the size is sensible.
    void resizeCells();

    std::span<const std::uint8_t> defaultSpecials() const noexcept { return defaultSpecials_; }
    void setDefaultSpecials(std::vector<std::uint8_t> specials) {
        defaultSpecials_ = std::move(specials);
    }
    std::span<const std::uint8_t, ccclSize> ccclData() const noexcept { return ccclData_; }
    void setCcclData(std::span<const std::uint8_t, ccclSize> data);
    std::int32_t remX() const noexcept { return remX_; }
    std::int32_t remY() const noexcept { return remY_; }
    void setRemX(std::int32_t x) noexcept { remX_ = x; }
    void setRemY(std::int32_t y) noexcept { remY_ = y; }

    // ---- editing (clsLevelEdit.cpp); every change sets modified ----
    //
    // Rectangles are in cells and cover left to left + width and top to
    // top + height. A row whose y lies outside the map is skipped; a row's
    // walk stops at its first column outside the map, so a rectangle that
    // starts left of the map changes nothing.

    // The pattern repeated from the rectangle's top-left cell. With
    // autoPlaceSpecials each cell also takes its tile's default special.
    void fillTileRectangle(const TileGrid& pattern, const clsRectangle& rectangle,
                           bool autoPlaceSpecials);
    // The low 8 bits of the special's Id in every cell of the rectangle.
    void fillSpecialRectangle(const clsSpecial& special, const clsRectangle& rectangle);
    // Both throw std::out_of_range outside the map.
    void setSpecial(std::int32_t x, std::int32_t y, std::uint8_t id);
    std::uint8_t getSpecial(std::int32_t x, std::int32_t y) const;
    // 0 for a tile beyond the default-special table.
    std::uint8_t getDefaultSpecial(std::int32_t tile) const noexcept;
    // The rectangle's tiles, (width + 1) x (height + 1); cells outside the
    // map read as 0.
    TileGrid getTiles(const clsRectangle& rectangle) const;
    // Stamps the select map with its top-left at the cell under the view
    // position (pixelX, pixelY); cells outside the map are skipped one by one.
    void placeSelectMap(const TileGrid& selectMap, std::int32_t pixelX, std::int32_t pixelY,
                        const clsCamera& camera, bool autoPlaceSpecials);

    // The native store keeps whole-grid snapshots of one grid at a time:
    // whoever makes another level the edited one empties it first
    // (undoInit). Adding one empties the redo side. The editor keeps each
    // level's steps in its own UndoHistory instead.
    void addUndo() const;
    // Each swaps the newest snapshot of its side with the grid; false, grid
    // unchanged, when that side is empty. modified is left as it is.
    bool restoreUndo();
    bool restoreRedo();
    static bool canUndo() noexcept;
    static bool canRedo() noexcept;

    // ---- drawing (clsLevelRender.cpp) ----
    //
    // The view draws the cells under the camera at tileSpacing pixels apart.

    // flags: the renderFlags bits. Only visible cells are visited, plus the
    // margin that the set's largest special needs to reach into the view.
    void renderTo(clsBackBuffer& backBuffer, const clsCamera& camera, const clsTileSet& tileSet,
                  const clsSpecialSet& specialSet, std::int32_t flags,
                  const clsRenderOptions& options) const;
    // A box over the rectangle's cells in the rectangle's colour.
    void renderTileRect(clsBackBuffer& backBuffer, const clsCamera& camera,
                        const clsRectangle& rectangle, bool alphaBlending) const;
    // The select map as a preview at the screen cell under (pixelX, pixelY),
    // framed in dark red; drawn whether or not it lies over the map.
    void renderSelectMap(clsBackBuffer& backBuffer, const clsCamera& camera,
                         const clsTileSet& tileSet, const TileGrid& selectMap, std::int32_t pixelX,
                         std::int32_t pixelY) const;
    // The special that a click would place, snapped to the cell under the
    // pointer, with its oversize mark and outline.
    void renderSelectedSpecial(clsBackBuffer& backBuffer, const clsCamera& camera,
                               const clsSpecial& special, std::int32_t pixelX, std::int32_t pixelY,
                               const clsRenderOptions& options) const;
    // The whole map at 16 pixels a cell (whatever tileSpacing is) with the
    // specials whose tag is chosen and whose noExport is 0; with renderAll,
    // every special the set defines. Never oversize marks, outlines or
    // undefined IDs.
    void renderExportTo(clsBackBuffer& backBuffer, const clsTileSet& tileSet,
                        const clsSpecialSet& specialSet, const TagChoice& tagChoice, bool renderAll,
                        const clsRenderOptions& options) const;

private:
    // The cells in row-major order really are width x height.
    bool gridIsConsistent() const noexcept;
    void putTile(std::int32_t x, std::int32_t y, std::int32_t tile, bool autoPlaceSpecials);

    std::vector<Cell> cells_;
    std::vector<std::uint8_t> defaultSpecials_;
    std::array<std::uint8_t, ccclSize> ccclData_{};
    std::int32_t remX_ = 0;
    std::int32_t remY_ = 0;
};

} // namespace marvek
