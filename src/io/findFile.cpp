#include "io/findFile.h"

#include "io/caseInsensitivePath.h"

namespace marvek {

std::filesystem::path findFile(const std::filesystem::path& folder,
                               const std::filesystem::path& relative) {
    return findIgnoringCase(folder, relative).value_or(folder / relative);
}

} // namespace marvek
