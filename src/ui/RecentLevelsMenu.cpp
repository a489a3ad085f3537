#include "ui/RecentLevelsMenu.h"

#include "app/qtPaths.h"
#include "app/recentLevels.h"

#include <utility>

namespace marvek {

RecentLevelsMenu::RecentLevelsMenu(Chosen chosen, QWidget* parent)
    : QMenu("&Recent Levels", parent), chosen_(std::move(chosen)) {
    setObjectName("mnuFileRecent");
    setToolTipsVisible(true);
}

void RecentLevelsMenu::showLevels(const RecentLevels& levels) {
    clear();
    const auto& entries = levels.levels();
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const RecentLevel& entry = entries[i];
        // Ten entries: 1 to 9, then 0, as menus number them.
        const QString number = QString::number((i + 1) % 10);
        const QString name = toQString(entry.file.filename()).replace('&', "&&");
        QAction* action =
            addAction("&" + number + " " + name + " (" + toQString(entry.configuration) + ")");
        action->setObjectName("itmFileRecent" + QString::number(i + 1));
        action->setToolTip(toQString(entry.file));
        connect(action, &QAction::triggered, this, [this, i] { chosen_(i); });
    }
    setEnabled(!entries.empty());
}

} // namespace marvek
