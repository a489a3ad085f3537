#pragma once

#include "data/levelNavigation.h"

#include <QWidget>

#include <vector>

class QLabel;
class QLineEdit;
class QSortFilterProxyModel;
class QStandardItemModel;
class QTableView;

namespace marvek {

class clsLevel;
class clsSpecialSet;

// Every special placed on the level, one row each (ID, name, tag, cell),
// sortable and filtered by name or tag, with how many of its kind the level
// holds.
// Choosing a row asks for the view to go to its cell.
class SpecialsListPanel : public QWidget {
    Q_OBJECT

public:
    explicit SpecialsListPanel(QWidget* parent = nullptr);

    // Fills the list anew when the level's specials differ from the listed
    // ones (or the set changed); cheap when nothing changed.
    void showLevel(const clsLevel& level, const clsSpecialSet& specialSet);
    void forgetLevel();
    // Rows shown now, after the filter.
    int visibleRows() const;
    QSize sizeHint() const override;

signals:
    void cellChosen(int x, int y);

private:
    void fill(const clsSpecialSet& specialSet);
    void applyFilter(const QString& text);
    void rowChosen();

    QLineEdit* txtFilter_;
    QTableView* lstSpecials_;
    QLabel* lblCounts_;
    QStandardItemModel* model_;
    QSortFilterProxyModel* filter_;
    std::vector<PlacedSpecial> listed_;
    const clsSpecialSet* listedSet_ = nullptr;
};

} // namespace marvek
