#pragma once

#include "data/CellBlock.h"

#include <cstdint>

class QAction;

namespace marvek {

// Puts the cells on the system clipboard twice: in the editor's own MIME
// type, whole, and as text, the grid of tile numbers.
void putCellsOnClipboard(const CellBlock& block);

// What the clipboard holds: the editor's cells, or else a text grid of
// tile numbers of a set of tileCount tiles, read as tiles alone
// (carriesSpecials false). Throws
// CellClipboardError when it holds neither, saying why.
struct ClipboardCells {
    CellBlock block;
    bool carriesSpecials = false;
};
ClipboardCells cellsFromClipboard(std::int32_t tileCount);

// Keeps the action enabled only while the clipboard holds cells to paste,
// following every change of the clipboard, this program's or another's.
void enableWhileClipboardHoldsCells(QAction& action);

} // namespace marvek
