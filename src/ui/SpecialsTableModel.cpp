#include "ui/SpecialsTableModel.h"

#include "app/qtPaths.h"
#include "data/clsLevel.h"
#include "specials/clsSpecialSet.h"

#include <algorithm>
#include <numeric>

namespace marvek {
namespace {

// Past this many rows in and out, one reset costs the view less than a
// signal for each stretch of them.
constexpr std::size_t mostRowRuns = 64;

bool cellOrder(const PlacedSpecial& a, const PlacedSpecial& b) {
    return a.y != b.y ? a.y < b.y : a.x < b.x;
}

bool inRange(const PlacedSpecial& special, const CellRange& range) {
    return range.contains(special.x, special.y);
}

// Stretches of consecutive values in a sorted list: (first, length).
std::vector<std::pair<int, int>> consecutiveRuns(const std::vector<int>& positions) {
    std::vector<std::pair<int, int>> runs;
    for (const int position : positions) {
        if (!runs.empty() && runs.back().first + runs.back().second == position) {
            ++runs.back().second;
        } else {
            runs.emplace_back(position, 1);
        }
    }
    return runs;
}

} // namespace

SpecialsTableModel::SpecialsTableModel(QObject* parent) : QAbstractTableModel(parent) {
    passes_.fill(true);
}

void SpecialsTableModel::showLevel(const clsLevel& level, const clsSpecialSet& specialSet) {
    for (std::size_t id = 0; id < names_.size(); ++id) {
        const clsSpecial* special = specialSet.getSpecialLUT(static_cast<std::int32_t>(id));
        names_[id] = special != nullptr ? Names{toQString(special->Name), toQString(special->Tag)}
                                        : Names{"undefined", QString()};
    }
    rank();
    setFilter(filter_);
    beginResetModel();
    all_ = placedSpecials(level);
    counts_ = specialCounts(all_);
    rebuildShown();
    endResetModel();
}

void SpecialsTableModel::clear() {
    beginResetModel();
    all_.clear();
    shown_.clear();
    counts_.fill(0);
    endResetModel();
}

void SpecialsTableModel::rank() {
    std::array<std::uint8_t, 256> ids{};
    std::iota(ids.begin(), ids.end(), std::uint8_t{0});
    const auto rankBy = [&](std::array<std::int32_t, 256>& rank, QString Names::*field) {
        std::ranges::stable_sort(ids, [&](std::uint8_t a, std::uint8_t b) {
            return (names_[a].*field).compare(names_[b].*field, Qt::CaseInsensitive) < 0;
        });
        for (std::size_t i = 0; i < ids.size(); ++i) {
            rank[ids[i]] = static_cast<std::int32_t>(i);
        }
    };
    rankBy(nameRank_, &Names::name);
    rankBy(tagRank_, &Names::tag);
}

void SpecialsTableModel::setFilter(const QString& text) {
    filter_ = text;
    for (std::size_t id = 0; id < names_.size(); ++id) {
        passes_[id] = text.isEmpty() || names_[id].name.contains(text, Qt::CaseInsensitive) ||
                      names_[id].tag.contains(text, Qt::CaseInsensitive);
    }
    beginResetModel();
    rebuildShown();
    endResetModel();
}

void SpecialsTableModel::rebuildShown() {
    shown_.clear();
    std::ranges::copy_if(all_, std::back_inserter(shown_),
                         [this](const PlacedSpecial& special) { return shows(special); });
    std::ranges::sort(
        shown_, [this](const PlacedSpecial& a, const PlacedSpecial& b) { return before(a, b); });
}

std::uint64_t SpecialsTableModel::rowKey(const PlacedSpecial& special) const {
    // Bits enough for any level: a million cells, so a million of one kind.
    constexpr std::uint64_t cellBits = 20;
    constexpr std::uint64_t largest = (std::uint64_t{1} << (cellBits + 1)) - 1;
    std::uint64_t primary = 0;
    switch (sortColumn_) {
    case idColumn:
        primary = special.id;
        break;
    case nameColumn:
        primary = std::uint64_t(nameRank_[special.id]);
        break;
    case tagColumn:
        primary = std::uint64_t(tagRank_[special.id]);
        break;
    case countColumn:
        primary = std::uint64_t(counts_[special.id]);
        break;
    default:
        break;
    }
    std::uint64_t cell = (std::uint64_t(special.y) << cellBits) | std::uint64_t(special.x);
    const bool descending = sortOrder_ == Qt::DescendingOrder;
    if (descending) {
        primary = largest - primary;
        // Cells break ties in their own order, unless they are the column.
        if (sortColumn_ == cellColumn) {
            cell = ~cell & ((std::uint64_t{1} << (2 * cellBits)) - 1);
        }
    }
    return (primary << (2 * cellBits)) | cell;
}

bool SpecialsTableModel::before(const PlacedSpecial& a, const PlacedSpecial& b) const {
    return rowKey(a) < rowKey(b);
}

void SpecialsTableModel::sortRows(std::vector<PlacedSpecial>& rows) const {
    std::vector<std::pair<std::uint64_t, PlacedSpecial>> keyed;
    keyed.reserve(rows.size());
    for (const PlacedSpecial& special : rows) {
        keyed.emplace_back(rowKey(special), special);
    }
    std::ranges::sort(keyed, {}, &std::pair<std::uint64_t, PlacedSpecial>::first);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        rows[i] = keyed[i].second;
    }
}

void SpecialsTableModel::sort(int column, Qt::SortOrder order) {
    if (column < 0 || column >= columnTotal) {
        return;
    }
    emit layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    const QModelIndexList kept = persistentIndexList();
    std::vector<PlacedSpecial> keptRows;
    keptRows.reserve(std::size_t(kept.size()));
    for (const QModelIndex& index : kept) {
        keptRows.push_back(shown_[std::size_t(index.row())]);
    }
    sortColumn_ = column;
    sortOrder_ = order;
    std::ranges::sort(
        shown_, [this](const PlacedSpecial& a, const PlacedSpecial& b) { return before(a, b); });
    QModelIndexList moved;
    for (qsizetype i = 0; i < kept.size(); ++i) {
        moved.append(
            index(rowOf(keptRows[std::size_t(i)].x, keptRows[std::size_t(i)].y), kept[i].column()));
    }
    changePersistentIndexList(kept, moved);
    emit layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

void SpecialsTableModel::cellsChanged(const clsLevel& level, const CellRange& range) {
    const CellRange onLevel{std::max(range.left, 0), std::max(range.top, 0),
                            std::min(range.right, level.width - 1),
                            std::min(range.bottom, level.height - 1)};
    if (onLevel.left > onLevel.right || onLevel.top > onLevel.bottom) {
        return;
    }
    auto [gone, come] = replaceRange(level, onLevel);
    if (gone == come) {
        return;
    }
    for (const PlacedSpecial& special : gone) {
        --counts_[special.id];
    }
    for (const PlacedSpecial& special : come) {
        ++counts_[special.id];
    }
    if (sortColumn_ == countColumn) {
        // Every row of a changed count may move: sorted anew.
        beginResetModel();
        rebuildShown();
        endResetModel();
        return;
    }
    std::erase_if(gone, [this](const PlacedSpecial& special) { return !shows(special); });
    std::erase_if(come, [this](const PlacedSpecial& special) { return !shows(special); });
    moveRows(gone, std::move(come), onLevel);
    countsChanged();
}

std::pair<std::vector<PlacedSpecial>, std::vector<PlacedSpecial>>
SpecialsTableModel::replaceRange(const clsLevel& level, const CellRange& range) {
    // Only rows top to bottom can hold the range's cells.
    const auto first = std::ranges::lower_bound(all_, PlacedSpecial{0, range.top, 0}, cellOrder);
    const auto last = std::ranges::lower_bound(first, all_.end(),
                                               PlacedSpecial{0, range.bottom + 1, 0}, cellOrder);
    std::vector<PlacedSpecial> gone;
    std::vector<PlacedSpecial> kept;
    for (auto it = first; it != last; ++it) {
        (inRange(*it, range) ? gone : kept).push_back(*it);
    }
    std::vector<PlacedSpecial> come;
    for (std::int32_t y = range.top; y <= range.bottom; ++y) {
        for (std::int32_t x = range.left; x <= range.right; ++x) {
            if (const std::uint8_t id = level.cellAt(x, y).special; id != 0) {
                come.push_back({x, y, id});
            }
        }
    }
    if (gone == come) {
        return {std::move(gone), std::move(come)};
    }
    std::vector<PlacedSpecial> middle;
    middle.reserve(kept.size() + come.size());
    std::ranges::merge(kept, come, std::back_inserter(middle), cellOrder);
    const auto at = all_.erase(first, last);
    all_.insert(at, middle.begin(), middle.end());
    return {std::move(gone), std::move(come)};
}

void SpecialsTableModel::moveRows(const std::vector<PlacedSpecial>& gone,
                                  std::vector<PlacedSpecial> come, const CellRange& range) {
    sortRows(come);
    if (gone.size() + come.size() > mostRowRuns) {
        beginResetModel();
        // One pass over the rows: those that stay, merged with the new ones.
        std::vector<PlacedSpecial> merged;
        merged.reserve(shown_.size() + come.size());
        auto next = come.begin();
        for (const PlacedSpecial& row : shown_) {
            if (inRange(row, range)) {
                continue;
            }
            const std::uint64_t key = rowKey(row);
            for (; next != come.end() && rowKey(*next) < key; ++next) {
                merged.push_back(*next);
            }
            merged.push_back(row);
        }
        merged.insert(merged.end(), next, come.end());
        shown_ = std::move(merged);
        endResetModel();
        return;
    }
    const auto order = [this](const PlacedSpecial& a, const PlacedSpecial& b) {
        return before(a, b);
    };
    std::vector<int> gonePositions;
    for (const PlacedSpecial& special : gone) {
        gonePositions.push_back(
            int(std::ranges::lower_bound(shown_, special, order) - shown_.begin()));
    }
    std::ranges::sort(gonePositions);
    const auto goneRuns = consecutiveRuns(gonePositions);
    for (auto run = goneRuns.rbegin(); run != goneRuns.rend(); ++run) {
        beginRemoveRows({}, run->first, run->first + run->second - 1);
        shown_.erase(shown_.begin() + run->first, shown_.begin() + run->first + run->second);
        endRemoveRows();
    }
    for (const PlacedSpecial& special : come) {
        const int row = int(std::ranges::lower_bound(shown_, special, order) - shown_.begin());
        beginInsertRows({}, row, row);
        shown_.insert(shown_.begin() + row, special);
        endInsertRows();
    }
}

void SpecialsTableModel::countsChanged() {
    if (!shown_.empty()) {
        emit dataChanged(index(0, countColumn), index(int(shown_.size()) - 1, countColumn),
                         {Qt::DisplayRole});
    }
}

int SpecialsTableModel::rowOf(std::int32_t x, std::int32_t y) const {
    const auto found = std::ranges::find_if(
        shown_, [x, y](const PlacedSpecial& special) { return special.x == x && special.y == y; });
    return found == shown_.end() ? -1 : int(found - shown_.begin());
}

int SpecialsTableModel::kindCount() const {
    return int(std::ranges::count_if(counts_, [](std::int32_t n) { return n != 0; }));
}

int SpecialsTableModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(shown_.size());
}

int SpecialsTableModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : columnTotal;
}

QVariant SpecialsTableModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= int(shown_.size())) {
        return {};
    }
    const PlacedSpecial& special = shown_[std::size_t(index.row())];
    if (role == cellXRole) {
        return special.x;
    }
    if (role == cellYRole) {
        return special.y;
    }
    if (role != Qt::DisplayRole) {
        return {};
    }
    switch (index.column()) {
    case idColumn:
        return special.id;
    case nameColumn:
        return names_[special.id].name;
    case tagColumn:
        return names_[special.id].tag;
    case cellColumn:
        return QString("%1, %2").arg(special.x).arg(special.y);
    case countColumn:
        return counts_[special.id];
    default:
        return {};
    }
}

QVariant SpecialsTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal) {
        return {};
    }
    static const std::array<QString, columnTotal> titles{"ID", "Name", "Tag", "Cell", "Count"};
    if (role == Qt::DisplayRole && section >= 0 && section < columnTotal) {
        return titles[std::size_t(section)];
    }
    if (role == Qt::ToolTipRole && section == countColumn) {
        return QString("How many specials of this ID the level holds");
    }
    return {};
}

} // namespace marvek
