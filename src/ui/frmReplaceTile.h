#pragma once

#include <QDialog>

#include <cstdint>

class QCheckBox;
class QSpinBox;

namespace marvek {

// Asks which tile number to replace with which, and whether only in the
// selection.
class frmReplaceTile : public QDialog {
    Q_OBJECT

public:
    explicit frmReplaceTile(QWidget* parent = nullptr);

    // Shows the dialog modally with these starting values; true for OK.
    bool showModal(std::int32_t from, std::int32_t to, std::int32_t largestTile,
                   bool haveSelection);

    std::int32_t from() const;
    std::int32_t to() const;
    bool selectionOnly() const;

private:
    QSpinBox* udFrom_ = nullptr;
    QSpinBox* udTo_ = nullptr;
    QCheckBox* chkSelectionOnly_ = nullptr;
};

} // namespace marvek
