#pragma once

#include <QMenu>

#include <cstddef>
#include <functional>

namespace marvek {

class RecentLevels;

// File > Recent Levels: one entry per level, latest first, numbered for the
// keyboard; disabled while the list is empty.
class RecentLevelsMenu : public QMenu {
    Q_OBJECT

public:
    // Told the index of the entry the user chose.
    using Chosen = std::function<void(std::size_t index)>;

    RecentLevelsMenu(Chosen chosen, QWidget* parent);

    void showLevels(const RecentLevels& levels);

private:
    Chosen chosen_;
};

} // namespace marvek
