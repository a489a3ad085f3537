#include "data/specialChanges.h"

#include "data/clsLevel.h"

#include <algorithm>
#include <utility>

namespace marvek {
namespace {

std::string counted(std::int64_t count, const char* what) {
    return std::to_string(count) + (count == 1 ? " special " : " specials ") + what;
}

} // namespace

SpecialsWatch::SpecialsWatch(const clsLevel& before, std::string step) : step_(std::move(step)) {
    const auto cells = before.cells();
    before_.resize(cells.size());
    std::ranges::transform(cells, before_.begin(), [](const Cell& cell) { return cell.special; });
}

SpecialChanges SpecialsWatch::changes(const clsLevel& now) const {
    SpecialChanges found;
    const auto cells = now.cells();
    // A step that resized the grid is not one of cells painted over.
    if (cells.size() != before_.size()) {
        return found;
    }
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const std::uint8_t was = before_[i];
        const std::uint8_t is = cells[i].special;
        if (was == 0 || was == is) {
            continue;
        }
        ++(is == 0 ? found.removed : found.replaced);
    }
    return found;
}

std::string SpecialsWatch::stepName(const clsLevel& now) const {
    return nameWithChanges(step_, changes(now));
}

std::string nameWithChanges(const std::string& step, SpecialChanges changes) {
    if (changes.removed != 0 && changes.replaced != 0) {
        return step + ", " + counted(changes.removed, "removed") + ", " +
               std::to_string(changes.replaced) + " replaced";
    }
    if (changes.removed != 0) {
        return step + ", " + counted(changes.removed, "removed");
    }
    if (changes.replaced != 0) {
        return step + ", " + counted(changes.replaced, "replaced");
    }
    return step;
}

} // namespace marvek
