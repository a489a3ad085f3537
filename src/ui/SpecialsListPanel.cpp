#include "ui/SpecialsListPanel.h"

#include "app/qtPaths.h"
#include "data/clsLevel.h"
#include "specials/clsSpecialSet.h"

#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QSortFilterProxyModel>
#include <QStandardItemModel>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>

namespace marvek {
namespace {

enum Column { idColumn, nameColumn, tagColumn, cellColumn, countColumn, columnCount };
// Where a row keeps its cell, so sorting by the cell text does not matter.
constexpr int cellXRole = Qt::UserRole + 1;
constexpr int cellYRole = Qt::UserRole + 2;
// Name and tag side by side, which is what the filter looks through.
constexpr int filterRole = Qt::UserRole + 3;
// What a column sorts by: numbers as numbers, cells row by row.
constexpr int sortRole = Qt::UserRole + 4;

QStandardItem* numberItem(int value) {
    auto* item = new QStandardItem; // NOLINT: the model owns its items
    item->setData(value, Qt::DisplayRole);
    item->setEditable(false);
    return item;
}

QStandardItem* textItem(const QString& text) {
    auto* item = new QStandardItem(text); // NOLINT: the model owns its items
    item->setEditable(false);
    return item;
}

} // namespace

SpecialsListPanel::SpecialsListPanel(QWidget* parent)
    : QWidget(parent), txtFilter_(new QLineEdit(this)), lstSpecials_(new QTableView(this)),
      lblCounts_(new QLabel(this)), model_(new QStandardItemModel(0, columnCount, this)),
      filter_(new QSortFilterProxyModel(this)) {
    setObjectName("specialsList");
    txtFilter_->setObjectName("txtSpecialsFilter");
    txtFilter_->setPlaceholderText("Filter by name or tag");
    txtFilter_->setClearButtonEnabled(true);
    lstSpecials_->setObjectName("lstSpecials");
    lblCounts_->setObjectName("lblSpecialCounts");

    model_->setHorizontalHeaderLabels({"ID", "Name", "Tag", "Cell", "Count"});
    model_->horizontalHeaderItem(countColumn)
        ->setToolTip("How many specials of this ID the level holds");
    filter_->setSourceModel(model_);
    filter_->setFilterRole(filterRole);
    filter_->setFilterKeyColumn(nameColumn);
    filter_->setFilterCaseSensitivity(Qt::CaseInsensitive);
    filter_->setSortRole(sortRole);
    lstSpecials_->setModel(filter_);
    lstSpecials_->setSortingEnabled(true);
    lstSpecials_->sortByColumn(cellColumn, Qt::AscendingOrder);
    lstSpecials_->setSelectionBehavior(QAbstractItemView::SelectRows);
    lstSpecials_->setSelectionMode(QAbstractItemView::SingleSelection);
    lstSpecials_->verticalHeader()->hide();
    lstSpecials_->horizontalHeader()->setStretchLastSection(true);
    lstSpecials_->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 4);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(2, 2, 2, 2);
    layout->addWidget(txtFilter_);
    layout->addWidget(lstSpecials_, 1);
    layout->addWidget(lblCounts_);

    connect(txtFilter_, &QLineEdit::textChanged, this, &SpecialsListPanel::applyFilter);
    connect(lstSpecials_->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &SpecialsListPanel::rowChosen);
    connect(lstSpecials_, &QTableView::clicked, this, &SpecialsListPanel::rowChosen);
}

QSize SpecialsListPanel::sizeHint() const {
    return {460, 180};
}

void SpecialsListPanel::showLevel(const clsLevel& level, const clsSpecialSet& specialSet) {
    std::vector<PlacedSpecial> placed = placedSpecials(level);
    if (placed == listed_ && &specialSet == listedSet_ &&
        model_->rowCount() == int(placed.size())) {
        return;
    }
    listed_ = std::move(placed);
    listedSet_ = &specialSet;
    fill(specialSet);
}

void SpecialsListPanel::forgetLevel() {
    listed_.clear();
    listedSet_ = nullptr;
    model_->removeRows(0, model_->rowCount());
    lblCounts_->clear();
}

int SpecialsListPanel::visibleRows() const {
    return filter_->rowCount();
}

void SpecialsListPanel::fill(const clsSpecialSet& specialSet) {
    const QSignalBlocker quiet(lstSpecials_->selectionModel());
    model_->removeRows(0, model_->rowCount());
    model_->setRowCount(static_cast<int>(listed_.size()));
    const auto nameOf = [&specialSet](std::uint8_t id) {
        const clsSpecial* special = specialSet.getSpecialLUT(id);
        return special != nullptr ? std::pair(toQString(special->Name), toQString(special->Tag))
                                  : std::pair(QString("undefined"), QString());
    };
    const auto counts = specialCounts(listed_);
    int row = 0;
    for (const PlacedSpecial& placed : listed_) {
        const auto [name, tag] = nameOf(placed.id);
        QStandardItem* id = numberItem(placed.id);
        id->setData(placed.id, sortRole);
        QStandardItem* nameItem = textItem(name);
        nameItem->setData(name + "\n" + tag, filterRole);
        nameItem->setData(name.toLower(), sortRole);
        QStandardItem* tagItem = textItem(tag);
        tagItem->setData(tag.toLower(), sortRole);
        QStandardItem* cell = textItem(QString("%1, %2").arg(placed.x).arg(placed.y));
        cell->setData(qlonglong(placed.y) * 65536 + placed.x, sortRole);
        QStandardItem* count = numberItem(counts[placed.id]);
        count->setData(counts[placed.id], sortRole);
        for (QStandardItem* item : {id, nameItem, tagItem, cell, count}) {
            item->setData(placed.x, cellXRole);
            item->setData(placed.y, cellYRole);
        }
        model_->setItem(row, idColumn, id);
        model_->setItem(row, nameColumn, nameItem);
        model_->setItem(row, tagColumn, tagItem);
        model_->setItem(row, cellColumn, cell);
        model_->setItem(row, countColumn, count);
        ++row;
    }
    lstSpecials_->resizeColumnsToContents();

    const auto kinds = std::ranges::count_if(counts, [](std::int32_t n) { return n != 0; });
    lblCounts_->setText(QString("%1 specials of %2 kinds").arg(listed_.size()).arg(kinds));
}

void SpecialsListPanel::applyFilter(const QString& text) {
    // Rows that come and go as the user types are not a choice: the view
    // stays where it is, and the next row chosen moves it.
    const QSignalBlocker quiet(lstSpecials_->selectionModel());
    filter_->setFilterFixedString(text);
    lstSpecials_->selectionModel()->clear();
}

void SpecialsListPanel::rowChosen() {
    const QModelIndex current = lstSpecials_->currentIndex();
    if (!current.isValid()) {
        return;
    }
    emit cellChosen(current.data(cellXRole).toInt(), current.data(cellYRole).toInt());
}

} // namespace marvek
