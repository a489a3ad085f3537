#pragma once

#include "graphics/clsBackBuffer.h"

#include <QDialog>

#include <cstdint>
#include <optional>

class QCheckBox;
class QPushButton;
class QSpinBox;

namespace marvek {

class clsTileSet;
class PictureBox;

// Asks which tile number to replace with which, and whether only in the
// selection, showing each tile's picture beside its number.
class frmReplaceTile : public QDialog {
    Q_OBJECT

public:
    // What an empty box holds.
    static constexpr std::int32_t noTile = -1;

    explicit frmReplaceTile(QWidget* parent = nullptr);

    // Shows the dialog modally; a box without a starting tile stays empty
    // until the user fills it, and OK waits for both. True for OK.
    bool showModal(std::optional<std::int32_t> from, std::optional<std::int32_t> to,
                   const clsTileSet& tiles, std::int32_t largestTile, bool haveSelection);

    std::int32_t from() const;
    std::int32_t to() const;
    bool selectionOnly() const;

private:
    QSpinBox* addTileRow(const char* name, const char* pictureName, const QString& caption,
                         PictureBox*& picture);
    void showTile(const QSpinBox& box, clsBackBuffer& buffer, PictureBox& picture);
    void tileChanged();

    QSpinBox* udFrom_ = nullptr;
    QSpinBox* udTo_ = nullptr;
    PictureBox* picFrom_ = nullptr;
    PictureBox* picTo_ = nullptr;
    QCheckBox* chkSelectionOnly_ = nullptr;
    QPushButton* cmdOk_ = nullptr;
    const clsTileSet* tiles_ = nullptr;
    // A box shows its buffer's memory, so each has its own.
    clsBackBuffer fromBuffer_;
    clsBackBuffer toBuffer_;
};

} // namespace marvek
