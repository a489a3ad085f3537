#pragma once

#include "data/cellRange.h"

#include <QPoint>
#include <QWidget>

#include <functional>
#include <optional>

class QLabel;
class QLineEdit;

namespace marvek {

class clsLevel;
class clsSpecialSet;
class SpecialsTable;
class SpecialsTableModel;

// Every special placed on the level, one row each (ID, name, tag, cell),
// sortable and filtered by name or tag, with how many of its kind the level
// holds. Choosing a row asks for the view to go to its cell.
// It follows the level by what changed, and while hidden it only notes that
// and catches up when shown.
class SpecialsListPanel : public QWidget {
    Q_OBJECT

public:
    explicit SpecialsListPanel(QWidget* parent = nullptr);

    // A level opened or its graphics changed: every row anew. Both must live
    // until the next showLevel or forgetLevel.
    void showLevel(const clsLevel& level, const clsSpecialSet& specialSet);
    // The level's cells in range changed: only their rows follow. The row
    // the user chose stays chosen (the same cell), and the list stays put.
    void cellsChanged(const CellRange& range);
    void forgetLevel();
    // Rows shown now, after the filter.
    int visibleRows() const;
    QSize sizeHint() const override;

signals:
    void cellChosen(int x, int y);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void catchUp();
    void rebuild();
    // Runs change with the chosen row, and the row at the top of the list,
    // kept where they were.
    void keepPlace(const std::function<void()>& change);
    void restoreChoice();
    void applyFilter(const QString& text);
    void rowChosen();
    void showCounts();
    void sizeColumns();

    QLineEdit* txtFilter_;
    SpecialsTable* lstSpecials_;
    QLabel* lblCounts_;
    SpecialsTableModel* model_;
    const clsLevel* level_ = nullptr;
    const clsSpecialSet* specialSet_ = nullptr;
    // What happened while hidden.
    OwedCells owed_;
    // The cell of the row the user chose last.
    std::optional<QPoint> chosen_;
    // Rows selected by the list itself are no choice of the user's.
    bool updating_ = false;
};

} // namespace marvek
