#pragma once

#include <QRect>
#include <QSize>

class QWidget;

namespace marvek {

// Room left for a window manager's title bar and borders, which are not
// known before the window is first shown.
inline constexpr QSize windowDecoration{16, 48};

// Where a top-level window of the preferred size opens inside the screen's
// available area: as large as preferred when that fits with its decoration,
// else as large as fits, centred in the area.
QRect fittedWindowGeometry(QSize preferred, QRect available);

// Sizes and places the window so that it fits the available area of the
// screen it opens on, in the screen's own (scaled) pixels.
void fitToScreen(QWidget& window, QSize preferred);

} // namespace marvek
