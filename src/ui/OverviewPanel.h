#pragma once

#include "data/levelOverview.h"

#include <QImage>
#include <QRectF>
#include <QWidget>

#include <vector>

namespace marvek {

struct OpenedLevel;

// The whole level drawn small, with the rectangle that the level view shows.
// A press or drag in it asks for the view to be centred there.
class OverviewPanel : public QWidget {
    Q_OBJECT

public:
    explicit OverviewPanel(QWidget* parent = nullptr);

    // A level opened or its graphics changed: colours and cells anew.
    void showLevel(const OpenedLevel& opened);
    // Redraws the cells that changed since the last call.
    void levelChanged(const clsLevel& level);
    // The view's cells, for the rectangle.
    void setView(const CellRange& view);

    const clsLevelOverview& overview() const noexcept { return overview_; }
    // Where a cell's top-left lies in the panel.
    QPointF cellPosition(std::int32_t x, std::int32_t y) const;
    QSize sizeHint() const override;

signals:
    void cellChosen(int x, int y);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

private:
    // The largest whole cell size that lets the level fit the panel.
    std::int32_t fittingCellPixels(std::int32_t levelWidth, std::int32_t levelHeight) const;
    void redrawAll(const clsLevel& level);
    QRectF pictureRect() const;
    void choose(QPointF at);

    OverviewColours colours_;
    clsLevelOverview overview_;
    std::vector<Cell> drawnCells_;
    QImage image_;
    CellRange view_;
    bool hasLevel_ = false;
};

} // namespace marvek
