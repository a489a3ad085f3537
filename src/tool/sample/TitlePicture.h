#pragma once

#include "tool/sample/Canvas.h"
#include "tool/sample/Theme.h"

namespace marvek::sample {

inline constexpr std::int32_t titleWidth = 320;
inline constexpr std::int32_t titleHeight = 256;

// The "MPIC" title screen: a landscape of the world's tiles with the name.
Canvas drawTitlePicture(const WorldTheme& theme);

// Pictures of the image specials (bitmaps/), drawn with the ink roles.
Canvas drawSignpost();
Canvas drawExitDoor();

} // namespace marvek::sample
