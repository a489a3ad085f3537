#pragma once

#include <QMenu>

#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>

namespace marvek {

struct RecentLevel;
struct SharedObjects;

// File > Recent Levels: one entry per level, latest first, numbered for the
// keyboard; disabled while the list is empty. The list lives in the
// settings, written as soon as it changes.
class RecentLevelsMenu : public QMenu {
    Q_OBJECT

public:
    // Told the index of the entry the user chose.
    using Chosen = std::function<void(std::size_t index)>;

    RecentLevelsMenu(SharedObjects& shared, Chosen chosen, QWidget* parent);

    // The entry at index, if there is one.
    std::optional<RecentLevel> entry(std::size_t index) const;
    // The level goes first in the list.
    void remember(const std::filesystem::path& file, const QString& configuration);
    void forget(const std::filesystem::path& file);

signals:
    // The list could not be written to the settings file.
    void notice(const QString& text);

private:
    void save();
    void showLevels();

    SharedObjects& shared_;
    Chosen chosen_;
};

} // namespace marvek
