#include "ui/RecentLevelsMenu.h"

#include "app/SharedObjects.h"
#include "app/qtPaths.h"
#include "app/recentLevels.h"

#include <exception>
#include <system_error>
#include <utility>

namespace marvek {

namespace fs = std::filesystem;

RecentLevelsMenu::RecentLevelsMenu(SharedObjects& shared, Chosen chosen, QWidget* parent)
    : QMenu("&Recent Levels", parent), shared_(shared), chosen_(std::move(chosen)) {
    setObjectName("mnuFileRecent");
    setToolTipsVisible(true);
    showLevels();
}

std::optional<RecentLevel> RecentLevelsMenu::entry(std::size_t index) const {
    const RecentLevels recent = RecentLevels::readFrom(shared_.settings);
    if (index >= recent.levels().size()) {
        return std::nullopt;
    }
    return recent.levels()[index];
}

void RecentLevelsMenu::remember(const fs::path& file, const QString& configuration) {
    std::error_code error;
    const fs::path absolute = fs::absolute(file, error);
    RecentLevels recent = RecentLevels::readFrom(shared_.settings);
    recent.add({error ? file : absolute, configuration.toStdString()});
    recent.writeTo(shared_.settings);
    save();
}

void RecentLevelsMenu::forget(const fs::path& file) {
    RecentLevels recent = RecentLevels::readFrom(shared_.settings);
    recent.remove(file);
    recent.writeTo(shared_.settings);
    save();
}

void RecentLevelsMenu::save() {
    showLevels();
    try {
        shared_.settings.SaveConfiguration(shared_.settingsFile(), "\r\n", true);
    } catch (const std::exception& error) {
        emit notice("The recent levels could not be kept: " + QString::fromStdString(error.what()));
    }
}

void RecentLevelsMenu::showLevels() {
    clear();
    const RecentLevels recent = RecentLevels::readFrom(shared_.settings);
    const auto& entries = recent.levels();
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
