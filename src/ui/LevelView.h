#pragma once

#include "data/clsRenderOptions.h"
#include "data/levelOverview.h"
#include "graphics/clsBackBuffer.h"
#include "graphics/clsCamera.h"
#include "graphics/clsRectangle.h"

#include <QPoint>
#include <QPointF>
#include <QWidget>

#include <cstdint>
#include <functional>
#include <optional>

class QScrollBar;

namespace marvek {

struct SharedObjects;
struct EditingState;
class LevelDocument;
class LevelTool;
class ToolBox;
class PictureBox;
struct ToolContext;
enum class ViewStep;

// What every level view shares: the program's objects, the editing state
// and the tools.
struct ViewServices {
    SharedObjects& shared;
    EditingState& editing;
    ToolBox& tools;
};

// One document's view: the picture of the level with its scroll bars, its
// own camera, zoom, grid and view toggles. It turns the left button's events
// into cells for the tool that takes them, scrolls and pans with the other
// buttons, and redraws once per event-loop turn after whatever its document
// says changed. Only a shown view keeps a back buffer.
class LevelView : public QWidget {
    Q_OBJECT

public:
    // Zoom steps in percent; 200 is the zoom the Z key toggles with 100.
    static constexpr int zoomSteps[] = {25, 50, 100, 200, 300, 400};
    static constexpr int usualZoom = 200;

    LevelView(LevelDocument& document, ViewServices services, QWidget* parent = nullptr);
    ~LevelView() override;

    LevelDocument& document() const noexcept { return document_; }
    const clsCamera& camera() const noexcept { return camera_; }
    std::int32_t renderFlags() const noexcept { return renderFlags_; }
    int zoom() const noexcept { return zoom_; }
    // A drag of the left or the right button is on: the left one's is its
    // tool's, the right one's scrolls.
    bool dragging() const noexcept { return scrolling_ || dragTool_ != nullptr; }
    bool scrolling() const noexcept { return scrolling_; }
    const LevelTool* dragTool() const noexcept { return dragTool_; }
    bool modifiersHeld() const noexcept { return modifiersHeld_; }
    // The rectangle a Shift-copy or Ctrl-fill outlines while it is dragged.
    const clsRectangle* draggedArea() const;
    // The picture as shown now, drawn first when a redraw is pending.
    const clsBackBuffer& backBuffer();
    PictureBox& picture() const noexcept { return *picLevel_; }
    CellRange shownCells() const;
    // The cell the pointer is over or was last over.
    QPoint pointerCell() const;
    bool pointerOver() const noexcept { return pointerOver_; }

    // The view toggles.
    void toggleRenderFlag(std::int32_t flag);
    void toggleGrid();
    // Z: 100 % and 200 %, the view's centre kept.
    void toggleZoom();
    // To the next step up or down, the view's centre kept.
    void zoomBy(int steps);
    // To percent, the level pixel under at (view pixels) kept under it.
    void zoomTo(int percent, QPointF at);
    void zoomToCentre(int percent);
    // The mode changed: the specials show or go.
    void followMode();
    void stepView(ViewStep step);
    void centreOn(int x, int y);
    // Outlines the cell for a moment.
    void highlight(QPoint cell);
    // Shift or Ctrl held on its own; let go of (a drag that the key began
    // goes on to its button's release).
    void holdModifiers();
    void modifierReleased();
    // As if Shift and Ctrl were let go: every drag ends.
    void releaseModifiers();
    // Ends a drag of that tool, if one is on.
    void cancelDragOf(const LevelTool& tool);
    void scheduleRedraw();
    // The benchmark's steps: the level alone with these flags, and the
    // picture on the screen at once.
    void renderOnly(std::int32_t flags);
    void presentNow();

signals:
    // The camera, zoom or size changed.
    void viewMoved();
    // The cell under the pointer and what it holds, or empty.
    void cellStatus(const QString& text);
    // The brush or the chosen special changed by a gesture here.
    void brushChanged();

protected:
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void connectDocument();
    void layOut();
    void createBuffer();
    void redraw();
    void drawMarks();
    void followCamera();
    void cameraMoved();
    void applyZoom(int percent);
    int bufferZoom() const noexcept;
    // Picture pixels per level pixel.
    double scale() const noexcept;
    clsRenderOptions renderOptions() const;
    void endDrag();

    // Pointer gestures (LevelViewMouse.cpp); positions are picture pixels.
    void pressed(int button, int shift, float x, float y);
    void moved(int buttons, int shift, float x, float y);
    void released(int button, int shift, float x, float y);
    void left();
    void wheel(int dx, int dy, int shift, float x, float y);
    ToolContext toolContext(int shift, float x, float y);
    QPoint cellAt(float x, float y) const;
    void brushChosen();
    void scrollDrag();
    void startPan(float x, float y);
    void panTo(float x, float y);
    void showCellStatus();

    LevelDocument& document_;
    ViewServices services_;
    PictureBox* picLevel_;
    QScrollBar* scrlLevelX_;
    QScrollBar* scrlLevelY_;
    clsBackBuffer buffer_;
    clsCamera camera_;
    std::int32_t renderFlags_ = 12;
    int zoom_ = usualZoom;
    bool redrawPending_ = false;

    // A right-button drag scrolls; a left-button drag is its tool's.
    bool scrolling_ = false;
    LevelTool* dragTool_ = nullptr;
    bool modifiersHeld_ = false;
    float mouseX_ = 0.0F;
    float mouseY_ = 0.0F;
    bool pointerOver_ = false;
    // Where the screen cursor stays during a scroll drag.
    QPoint dragStart_;
    // A middle drag: where it began, and the camera then.
    bool panning_ = false;
    QPointF panStart_;
    QPoint panCamera_;
    std::optional<QPoint> highlighted_;
};

} // namespace marvek
