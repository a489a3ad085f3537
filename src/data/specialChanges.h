#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace marvek {

class clsLevel;

// What a step did to the specials already on the level: those it cleared
// and those it swapped for another. Specials put on empty cells count as
// neither: nothing the user placed was lost.
struct SpecialChanges {
    std::int64_t removed = 0;
    std::int64_t replaced = 0;

    bool any() const noexcept { return removed != 0 || replaced != 0; }
};

// The specials of a level before a step, to tell afterwards what the step
// did to them ("Bucket Fill, 19 specials removed").
class SpecialsWatch {
public:
    SpecialsWatch(const clsLevel& before, std::string step);

    SpecialChanges changes(const clsLevel& now) const;
    // The step's name, followed by what it did to specials when it did any.
    std::string stepName(const clsLevel& now) const;

private:
    std::vector<std::uint8_t> before_;
    std::string step_;
};

// "Fill, 1 special removed", "Fill, 3 specials replaced",
// "Fill, 2 specials removed, 1 replaced"; the step alone when none.
std::string nameWithChanges(const std::string& step, SpecialChanges changes);

} // namespace marvek
