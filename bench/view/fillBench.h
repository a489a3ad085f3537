#pragma once

#include <filesystem>

namespace marvek {

// The editor's main window on L1MA1 with every panel open: the median
// processor time in microseconds from a Specials-mode bucket fill's click over the sky to
// the view and the panels drawn again.
double skyFillMicros(const std::filesystem::path& applicationFolder,
                     const std::filesystem::path& sampleData);

} // namespace marvek
