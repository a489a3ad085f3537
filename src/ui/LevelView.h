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
class SelectTool;
class PictureBox;
struct ToolContext;
enum class ViewStep;

// What every level view shares: the program's objects, the editing state
// and the tools.
struct ViewServices {
    SharedObjects& shared;
    EditingState& editing;
    std::function<LevelTool&()> activeTool;
};

// One document's view: the picture of the level with its scroll bars, its
// own camera, zoom, grid and view toggles. It turns pointer events into
// cells for the current tool and redraws once per event-loop turn after
// whatever its document says changed. Only a shown view keeps a back buffer.
class LevelView : public QWidget {
    Q_OBJECT

public:
    // Zoom steps in percent; 200 is the zoom the Z key toggles with 100.
    static constexpr int zoomSteps[] = {25, 50, 100, 200, 300, 400};
    static constexpr int usualZoom = 200;

    // What the left or right button is doing, if anything.
    enum class Gesture { none = 0, scrolling = 1, toolDrag = 3, copying = 4, filling = 6 };

    LevelView(LevelDocument& document, ViewServices services, QWidget* parent = nullptr);
    ~LevelView() override;

    LevelDocument& document() const noexcept { return document_; }
    const clsCamera& camera() const noexcept { return camera_; }
    std::int32_t renderFlags() const noexcept { return renderFlags_; }
    int zoom() const noexcept { return zoom_; }
    Gesture gesture() const noexcept { return gesture_; }
    bool modifiersHeld() const noexcept { return modifiersHeld_; }
    // The Shift-copy or Ctrl-fill rectangle while it is dragged.
    const clsRectangle& gestureArea() const noexcept { return gestureArea_; }
    bool gestureAreaVisible() const noexcept { return gestureAreaVisible_; }
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
    // Shift or Ctrl held on its own, or let go.
    void holdModifiers();
    void releaseModifiers();
    void cancelGesture();
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
    LevelTool& activeTool() const;

    // Pointer gestures (LevelViewMouse.cpp); positions are picture pixels.
    void pressed(int button, int shift, float x, float y);
    void moved(int buttons, int shift, float x, float y);
    void released(int button, int shift, float x, float y);
    void left();
    void wheel(int dx, int dy, int shift, float x, float y);
    ToolContext toolContext(int shift, float x, float y);
    QPoint cellAt(float x, float y) const;
    void pickSpecial(float x, float y);
    void scrollDrag();
    void startArea(std::uint32_t colour);
    void dragArea(float x, float y);
    void copyArea();
    void fillArea();
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

    Gesture gesture_ = Gesture::none;
    bool modifiersHeld_ = false;
    clsRectangle gestureArea_;
    bool gestureAreaVisible_ = false;
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
