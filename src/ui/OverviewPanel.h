#pragma once

#include "data/levelOverview.h"

#include <QImage>
#include <QRectF>
#include <QWidget>

#include <optional>

namespace marvek {

struct OpenedLevel;

// The whole level drawn small, with the rectangle that the level view shows.
// A press on the picture, or a drag begun there, asks for the view to be
// centred there. It redraws only the cells it is told changed, and nothing
// while hidden: it catches up when shown.
class OverviewPanel : public QWidget {
    Q_OBJECT

public:
    explicit OverviewPanel(QWidget* parent = nullptr);

    // A level opened or its graphics changed: colours and cells anew. The
    // level must live until the next showLevel or forgetLevel.
    void showLevel(const OpenedLevel& opened);
    // The level's cells in range changed.
    void cellsChanged(const CellRange& range);
    void forgetLevel();
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
    void mouseReleaseEvent(QMouseEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    // The largest whole cell size that lets the level fit the panel.
    std::int32_t fittingCellPixels(std::int32_t levelWidth, std::int32_t levelHeight) const;
    void catchUp();
    void redrawAll();
    QRectF pictureRect() const;
    void choose(QPointF at);

    OverviewColours colours_;
    clsLevelOverview overview_;
    const clsLevel* level_ = nullptr;
    QImage image_;
    CellRange view_;
    // What happened while hidden.
    OwedCells owed_;
    // A press on the picture began a drag.
    bool dragging_ = false;
};

} // namespace marvek
