#include "ui/SpecialsListPanel.h"

#include "ui/SpecialsTableModel.h"

#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>

namespace marvek {

// The table, able to lay out its rows at once, so that a scroll position set
// right after a change holds.
class SpecialsTable : public QTableView {
public:
    using QTableView::QTableView;
    void layOutNow() { executeDelayedItemsLayout(); }
};

SpecialsListPanel::SpecialsListPanel(QWidget* parent)
    : QWidget(parent), txtFilter_(new QLineEdit(this)), lstSpecials_(new SpecialsTable(this)),
      lblCounts_(new QLabel(this)), model_(new SpecialsTableModel(this)) {
    setObjectName("specialsList");
    txtFilter_->setObjectName("txtSpecialsFilter");
    txtFilter_->setPlaceholderText("Filter by name or tag");
    txtFilter_->setClearButtonEnabled(true);
    lstSpecials_->setObjectName("lstSpecials");
    lblCounts_->setObjectName("lblSpecialCounts");

    lstSpecials_->setModel(model_);
    lstSpecials_->setSortingEnabled(true);
    lstSpecials_->sortByColumn(SpecialsTableModel::cellColumn, Qt::AscendingOrder);
    lstSpecials_->setSelectionBehavior(QAbstractItemView::SelectRows);
    lstSpecials_->setSelectionMode(QAbstractItemView::SingleSelection);
    lstSpecials_->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    lstSpecials_->verticalHeader()->hide();
    // Rows of one height: the view never asks every row for its size.
    lstSpecials_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    lstSpecials_->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 4);
    sizeColumns();

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

void SpecialsListPanel::sizeColumns() {
    QHeaderView& header = *lstSpecials_->horizontalHeader();
    const QFontMetrics metrics = header.fontMetrics();
    // Room for the widest usual value or the title, and the sort arrow.
    const auto fit = [&](int column, const QString& widest) {
        const QString title =
            model_->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
        header.resizeSection(
            column, std::max(metrics.horizontalAdvance(widest), metrics.horizontalAdvance(title)) +
                        metrics.horizontalAdvance("MM") + 8);
    };
    fit(SpecialsTableModel::idColumn, "000");
    fit(SpecialsTableModel::nameColumn, "Mmmmmmmmmmmmmmm");
    fit(SpecialsTableModel::tagColumn, "Mmmmmmmmm");
    fit(SpecialsTableModel::cellColumn, "0000, 0000");
    fit(SpecialsTableModel::countColumn, "00000");
    header.setStretchLastSection(false);
    header.setSectionResizeMode(SpecialsTableModel::nameColumn, QHeaderView::Stretch);
    header.setMinimumSectionSize(metrics.horizontalAdvance("000") + 8);
}

QSize SpecialsListPanel::sizeHint() const {
    int columns = 0;
    for (int column = 0; column < SpecialsTableModel::columnTotal; ++column) {
        columns += lstSpecials_->horizontalHeader()->sectionSize(column);
    }
    // About a dozen rows under the filter.
    const int rows = lstSpecials_->verticalHeader()->defaultSectionSize() * 12;
    return {columns + lstSpecials_->verticalScrollBar()->sizeHint().width() + 12,
            rows + txtFilter_->sizeHint().height() + lblCounts_->sizeHint().height() + 40};
}

void SpecialsListPanel::showLevel(const clsLevel& level, const clsSpecialSet& specialSet) {
    level_ = &level;
    specialSet_ = &specialSet;
    owed_.oweAll();
    catchUp();
}

void SpecialsListPanel::cellsChanged(const CellRange& range) {
    if (level_ == nullptr) {
        return;
    }
    owed_.owe(range);
    catchUp();
}

void SpecialsListPanel::forgetLevel() {
    level_ = nullptr;
    specialSet_ = nullptr;
    owed_.settle();
    chosen_.reset();
    model_->clear();
    lblCounts_->clear();
}

void SpecialsListPanel::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    catchUp();
}

void SpecialsListPanel::catchUp() {
    if (!isVisible() || level_ == nullptr) {
        return;
    }
    const OwedCells::Debt owed = owed_.take();
    if (owed.all) {
        rebuild();
    } else if (owed.range) {
        keepPlace([&] { model_->cellsChanged(*level_, *owed.range); });
    }
    showCounts();
}

void SpecialsListPanel::rebuild() {
    keepPlace([this] { model_->showLevel(*level_, *specialSet_); });
}

void SpecialsListPanel::keepPlace(const std::function<void()>& change) {
    const QModelIndex top = lstSpecials_->indexAt(QPoint(0, 0));
    std::optional<QPoint> topCell;
    int topOffset = 0;
    if (top.isValid()) {
        topCell = QPoint(top.data(SpecialsTableModel::cellXRole).toInt(),
                         top.data(SpecialsTableModel::cellYRole).toInt());
        topOffset = lstSpecials_->rowViewportPosition(top.row());
    }
    updating_ = true;
    change();
    lstSpecials_->layOutNow();
    restoreChoice();
    const int topRow = topCell ? model_->rowOf(topCell->x(), topCell->y()) : -1;
    if (topRow >= 0) {
        lstSpecials_->verticalScrollBar()->setValue(
            lstSpecials_->verticalHeader()->sectionPosition(topRow) - topOffset);
    }
    updating_ = false;
}

void SpecialsListPanel::restoreChoice() {
    QItemSelectionModel& selection = *lstSpecials_->selectionModel();
    const int row = chosen_ ? model_->rowOf(chosen_->x(), chosen_->y()) : -1;
    if (row < 0) {
        selection.clear();
        return;
    }
    if (selection.currentIndex().row() != row || !selection.isRowSelected(row)) {
        selection.setCurrentIndex(model_->index(row, 0),
                                  QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    }
}

int SpecialsListPanel::visibleRows() const {
    return model_->rowCount();
}

void SpecialsListPanel::showCounts() {
    if (model_->filtered()) {
        lblCounts_->setText(
            QString("%1 of %2 specials shown").arg(model_->rowCount()).arg(model_->placedCount()));
    } else {
        lblCounts_->setText(
            QString("%1 specials of %2 kinds").arg(model_->placedCount()).arg(model_->kindCount()));
    }
}

void SpecialsListPanel::applyFilter(const QString& text) {
    // Rows that come and go as the user types are not a choice: the view
    // stays where it is, and the next row chosen moves it.
    chosen_.reset();
    updating_ = true;
    model_->setFilter(text);
    lstSpecials_->selectionModel()->clear();
    updating_ = false;
    showCounts();
}

void SpecialsListPanel::rowChosen() {
    const QModelIndex current = lstSpecials_->currentIndex();
    if (updating_ || !current.isValid()) {
        return;
    }
    const QPoint cell(current.data(SpecialsTableModel::cellXRole).toInt(),
                      current.data(SpecialsTableModel::cellYRole).toInt());
    chosen_ = cell;
    emit cellChosen(cell.x(), cell.y());
}

} // namespace marvek
