#pragma once

#include "data/cellRange.h"
#include "data/levelNavigation.h"

#include <QAbstractTableModel>
#include <QString>

#include <array>
#include <cstdint>
#include <vector>

namespace marvek {

class clsLevel;
class clsSpecialSet;

// The specials placed on a level as table rows (ID, name, tag, cell, how
// many of that ID), filtered by name or tag and sorted by any column. The
// rows live in plain vectors, so a whole level fills it at once and an edit
// touches only the rows of the cells it changed.
class SpecialsTableModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { idColumn, nameColumn, tagColumn, cellColumn, countColumn, columnTotal };
    // Where a row keeps its cell, whatever the column.
    static constexpr int cellXRole = Qt::UserRole + 1;
    static constexpr int cellYRole = Qt::UserRole + 2;

    explicit SpecialsTableModel(QObject* parent = nullptr);

    // Every row anew from the level, named by the set.
    void showLevel(const clsLevel& level, const clsSpecialSet& specialSet);
    // The rows of the range's cells follow the level; the others stay.
    void cellsChanged(const clsLevel& level, const CellRange& range);
    void clear();
    // Rows whose name or tag holds text (any case); empty shows every row.
    void setFilter(const QString& text);
    bool filtered() const noexcept { return !filter_.isEmpty(); }

    // The row showing cell (x, y), -1 when none does.
    int rowOf(std::int32_t x, std::int32_t y) const;
    std::size_t placedCount() const noexcept { return all_.size(); }
    int kindCount() const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    void sort(int column, Qt::SortOrder order) override;

private:
    struct Names {
        QString name;
        QString tag;
    };

    // Row order: the sort column's key, then the cell.
    bool before(const PlacedSpecial& a, const PlacedSpecial& b) const;
    std::uint64_t rowKey(const PlacedSpecial& special) const;
    void sortRows(std::vector<PlacedSpecial>& rows) const;
    bool shows(const PlacedSpecial& special) const { return passes_[special.id]; }
    void rank();
    void rebuildShown();
    // Takes the range's old rows out of all_ and puts the level's in; what
    // went and what came are returned in cell order.
    std::pair<std::vector<PlacedSpecial>, std::vector<PlacedSpecial>>
    replaceRange(const clsLevel& level, const CellRange& range);
    // The range's rows out and in: a signal for each stretch of rows, or
    // one reset when there are many.
    void moveRows(const std::vector<PlacedSpecial>& gone, std::vector<PlacedSpecial> come,
                  const CellRange& range);
    void countsChanged();

    std::vector<PlacedSpecial> all_;   // by cell, row by row
    std::vector<PlacedSpecial> shown_; // what passes the filter, in row order
    std::array<std::int32_t, 256> counts_{};
    std::array<Names, 256> names_;
    std::array<std::int32_t, 256> nameRank_{};
    std::array<std::int32_t, 256> tagRank_{};
    std::array<bool, 256> passes_{};
    QString filter_;
    int sortColumn_ = cellColumn;
    Qt::SortOrder sortOrder_ = Qt::AscendingOrder;
};

} // namespace marvek
