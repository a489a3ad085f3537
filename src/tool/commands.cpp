#include "tool/commands.h"

#include <array>

namespace marvek::tool {

std::span<const Command> commands() {
    static const std::array<Command, 0> table{};
    return table;
}

} // namespace marvek::tool
