// The main window's ways around a level: scroll bars, wheel, keys, middle
// drag, the View menu, the overview and specials panels, Go to Cell.
#include "ui/frmMain.h"

#include "app/SharedObjects.h"
#include "app/settings.h"
#include "configuration/clsConfiguration.h"
#include "data/levelNavigation.h"
#include "data/openLevel.h"
#include "io/FileError.h"
#include "native/marvek.h"
#include "ui/OverviewPanel.h"
#include "ui/PanelDock.h"
#include "ui/PictureBox.h"
#include "ui/SpecialsListPanel.h"
#include "ui/ViewMenu.h"
#include "ui/frmGoToCell.h"

#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QScrollBar>
#include <QStatusBar>
#include <QTimer>

#include <cmath>
#include <functional>

namespace marvek {
namespace {

// Names of the panels in the settings.
const QString overviewName = "overview";
const QString specialsName = "specials";
const QString historyName = "history";
constexpr int highlightMilliseconds = 1500;

// Tells when a widget's size changes.
class ResizeWatcher : public QObject {
public:
    ResizeWatcher(QWidget& watched, std::function<void()> resized)
        : QObject(&watched), resized_(std::move(resized)) {
        watched.installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() == QEvent::Resize) {
            resized_();
        }
        return false;
    }

private:
    std::function<void()> resized_;
};

QScrollBar* levelScrollBar(Qt::Orientation orientation, const char* name, QWidget* parent) {
    auto* bar = new QScrollBar(orientation, parent);
    bar->setObjectName(name);
    bar->setFocusPolicy(Qt::NoFocus);
    return bar;
}

} // namespace

void frmMain::buildPanels() {
    QWidget* central = centralWidget();
    new ResizeWatcher(*central, [this] { centralResized(); });
    scrlLevelX_ = levelScrollBar(Qt::Horizontal, "scrlLevelX", central);
    scrlLevelY_ = levelScrollBar(Qt::Vertical, "scrlLevelY", central);
    connect(scrlLevelX_, &QScrollBar::valueChanged, this, &frmMain::scrollBarMoved);
    connect(scrlLevelY_, &QScrollBar::valueChanged, this, &frmMain::scrollBarMoved);
    connect(picLevel_, &PictureBox::wheelScrolled, this, &frmMain::scrollByWheel);

    overviewDock_ = new PanelDock("Overview", "dockOverview", this);
    overview_ = new OverviewPanel(overviewDock_);
    overviewDock_->setWidget(overview_);
    specialsDock_ = new PanelDock("Specials List", "dockSpecials", this);
    specialsList_ = new SpecialsListPanel(specialsDock_);
    specialsDock_->setWidget(specialsList_);
    addDockWidget(Qt::BottomDockWidgetArea, overviewDock_);
    addDockWidget(Qt::BottomDockWidgetArea, specialsDock_);
    splitDockWidget(overviewDock_, specialsDock_, Qt::Horizontal);
    specialsDock_->hide();
    buildHistoryDock();
    for (PanelDock* dock : {overviewDock_, specialsDock_, historyDock_}) {
        dock->setFocusPolicy(Qt::NoFocus);
        connect(dock, &PanelDock::closedByUser, this, [this] {
            // The room may stay the same (a panel beside another), so the
            // status bar and the check marks are brought up to date here.
            renderLevel();
            viewMenu_->sync();
            savePanels();
        });
    }
    connect(overview_, &OverviewPanel::cellChosen, this, &frmMain::centreView);
    connect(specialsList_, &SpecialsListPanel::cellChosen, this, &frmMain::chooseListedCell);

    lblViewRange_ = new QLabel(this);
    lblViewRange_->setObjectName("lblViewRange");
    statusBar()->addPermanentWidget(lblViewRange_);
    highlightTimer_ = new QTimer(this);
    highlightTimer_->setSingleShot(true);
    connect(highlightTimer_, &QTimer::timeout, this, [this] {
        highlightedCell_.reset();
        renderLevel();
    });
    goToCell_ = new frmGoToCell(this);
}

void frmMain::centralResized() {
    // A resize of the window lays out in resizeEvent; what is left here is
    // a panel shown, hidden or dragged larger, which the window never sees.
    if (size() != sizeLaidOut_) {
        sizeLaidOut_ = size();
        return;
    }
    layOutAndRedraw();
}

void frmMain::buildViewMenu() {
    viewMenu_ = new ViewMenu(*menuBar(), this);
    const auto flagOn = [this](std::int32_t flag) {
        return [this, flag] { return (renderFlags_ & flag) != 0; };
    };
    const auto flagToggle = [this](std::int32_t flag) {
        return [this, flag] { toggleRenderFlag(flag); };
    };
    viewMenu_->addToggle(
        "itmViewZoom", "&Zoom", "Z", [this] { toggleZoom(); }, [this] { return zoomed_; });
    viewMenu_->addToggle(
        "itmViewGrid", "&Grid", "G", [this] { toggleGrid(); }, flagOn(renderFlags::clear));
    viewMenu_->addToggle("itmViewOutlines", "&Outlines", "B", flagToggle(renderFlags::outlines),
                         flagOn(renderFlags::outlines));
    viewMenu_->addToggle("itmViewOversize", "O&versize Marks", "O",
                         flagToggle(renderFlags::oversizeMarks),
                         flagOn(renderFlags::oversizeMarks));
    viewMenu_->addToggle("itmViewUndefined", "&Undefined IDs", "U",
                         flagToggle(renderFlags::undefinedIds), flagOn(renderFlags::undefinedIds));
    viewMenu_->addToggle(
        "itmViewSpecialsInTilesMode", "Specials in &Tiles Mode", "K",
        [this] { toggleSpecialsInTilesMode(); }, [this] { return specialsInTilesMode_; });
    viewMenu_->menu().addSeparator();
    viewMenu_->addToggle(
        "itmViewOverview", "Overvie&w", "M", [this] { togglePanel(*overviewDock_); },
        [this] { return !overviewDock_->isHidden(); });
    viewMenu_->addToggle(
        "itmViewSpecialsList", "&Specials List", QString(), [this] { togglePanel(*specialsDock_); },
        [this] { return !specialsDock_->isHidden(); });
    viewMenu_->addToggle(
        "itmViewHistory", "&History", QString(), [this] { togglePanel(*historyDock_); },
        [this] { return !historyDock_->isHidden(); });
}

void frmMain::toggleSpecialsInTilesMode() {
    specialsInTilesMode_ = !specialsInTilesMode_;
    applyModeFlags();
    renderLevel();
    shared_.settings.WriteSetting(settingKey::specialsInTilesMode, specialsInTilesMode_ ? 1 : 0,
                                  false);
    try {
        shared_.settings.SaveConfiguration(shared_.settingsFile(), "\r\n", true);
    } catch (const FileError& error) {
        statusBar()->showMessage(QString::fromStdString(error.what()));
    }
}

void frmMain::togglePanel(PanelDock& dock) {
    dock.setVisible(dock.isHidden());
    renderLevel();
    // After the redraw, so that a failure to write stays in the status bar.
    savePanels();
}

void frmMain::restorePanels() {
    const QStringList open =
        hasSetting(shared_.settings, settingKey::openPanels)
            ? QString::fromStdString(settingText(shared_.settings, settingKey::openPanels, {}))
                  .split(',', Qt::SkipEmptyParts)
            : QStringList{overviewName};
    overviewDock_->setVisible(open.contains(overviewName));
    specialsDock_->setVisible(open.contains(specialsName));
    historyDock_->setVisible(open.contains(historyName));
    // The overview needs little more than its picture; the list's columns
    // want the rest.
    resizeDocks({overviewDock_, specialsDock_},
                {overview_->sizeHint().width(), specialsList_->sizeHint().width()}, Qt::Horizontal);
    viewMenu_->sync();
}

void frmMain::savePanels() {
    QStringList open;
    if (!overviewDock_->isHidden()) {
        open << overviewName;
    }
    if (!specialsDock_->isHidden()) {
        open << specialsName;
    }
    if (!historyDock_->isHidden()) {
        open << historyName;
    }
    shared_.settings.WriteSetting(settingKey::openPanels, open.join(',').toStdString(), false);
    try {
        shared_.settings.SaveConfiguration(shared_.settingsFile(), "\r\n", true);
    } catch (const FileError& error) {
        // The panels still open as chosen until the program ends.
        statusBar()->showMessage(QString::fromStdString(error.what()));
    }
}

bool frmMain::navigateByKey(const QKeyEvent& event) {
    const bool ctrl = (event.modifiers() & Qt::ControlModifier) != 0;
    ViewStep step{};
    switch (event.key()) {
    case Qt::Key_Left:
        step = ViewStep::left;
        break;
    case Qt::Key_Right:
        step = ViewStep::right;
        break;
    case Qt::Key_Up:
        step = ViewStep::up;
        break;
    case Qt::Key_Down:
        step = ViewStep::down;
        break;
    case Qt::Key_PageUp:
        step = ViewStep::pageUp;
        break;
    case Qt::Key_PageDown:
        step = ViewStep::pageDown;
        break;
    case Qt::Key_Home:
        step = ctrl ? ViewStep::topLeft : ViewStep::leftEdge;
        break;
    case Qt::Key_End:
        step = ctrl ? ViewStep::bottomRight : ViewStep::rightEdge;
        break;
    default:
        return false;
    }
    stepView(step);
    return true;
}

void frmMain::stepView(ViewStep step) {
    if (!opened_) {
        return;
    }
    stepCamera(levelCamera_, step, opened_->level.tileSpacing);
    renderLevel();
}

void frmMain::scrollByWheel(int dx, int dy, int shift) {
    if (!opened_ || (dx == 0 && dy == 0)) {
        return;
    }
    // Shift turns the wheel's turn into a move across.
    if (shift == 1 && dx == 0) {
        std::swap(dx, dy);
    }
    const std::int32_t pitch = opened_->level.tileSpacing;
    levelCamera_.moveRelative(-wheelPixels(dx, pitch), -wheelPixels(dy, pitch));
    renderLevel();
}

void frmMain::scrollBarMoved() {
    if (!opened_) {
        return;
    }
    levelCamera_.Move(scrlLevelX_->value(), scrlLevelY_->value());
    renderLevel();
}

void frmMain::startPan(float x, float y) {
    panning_ = true;
    panStart_ = QPointF(x, y);
    panCamera_ = QPoint(levelCamera_.x, levelCamera_.y);
    picLevel_->setCursor(Qt::ClosedHandCursor);
}

void frmMain::panTo(float x, float y) {
    // The level follows the pointer, in level pixels.
    const double z = zoomFactor();
    levelCamera_.Move(
        panCamera_.x() - static_cast<std::int32_t>(std::nearbyint((x - panStart_.x()) / z)),
        panCamera_.y() - static_cast<std::int32_t>(std::nearbyint((y - panStart_.y()) / z)));
    renderLevel();
}

void frmMain::centreView(int x, int y) {
    if (!opened_) {
        return;
    }
    centreCamera(levelCamera_, x, y, opened_->level.tileSpacing);
    renderLevel();
}

void frmMain::chooseListedCell(int x, int y) {
    highlightedCell_ = QPoint(x, y);
    highlightTimer_->start(highlightMilliseconds);
    centreView(x, y);
}

void frmMain::editGoToCell() {
    releaseModifiers();
    if (!opened_) {
        return;
    }
    const clsLevel& level = opened_->level;
    const CellRange shown =
        visibleCells(levelCamera_, level.tileSpacing, level.width, level.height);
    const QPoint middle((shown.left + shown.right) / 2, (shown.top + shown.bottom) / 2);
    if (const auto cell = goToCell_->ask(level.width, level.height, middle)) {
        centreView(cell->x(), cell->y());
    }
    picLevel_->setFocus();
}

void frmMain::showLevelInPanels() {
    if (!opened_) {
        return;
    }
    overview_->showLevel(*opened_);
    specialsList_->showLevel(opened_->level, opened_->specialSet);
    panelWatch_.reset(opened_->level);
    highlightedCell_.reset();
    picLevel_->setFocus();
}

void frmMain::drawNavigationMarks() {
    if (highlightedCell_) {
        drawCellFrame(levelBuffer_, levelCamera_, opened_->level.tileSpacing, highlightedCell_->x(),
                      highlightedCell_->y(), createBGRA(255, 255, 0, 0));
    }
}

void frmMain::refreshNavigation() {
    const clsLevel& level = opened_->level;
    const auto follow = [](QScrollBar& bar, std::int32_t position, std::int32_t view,
                           std::int32_t total, std::int32_t step) {
        const QSignalBlocker quiet(&bar);
        bar.setRange(0, std::max(total - view, 0));
        bar.setPageStep(std::max(view, 1));
        bar.setSingleStep(step);
        bar.setValue(position);
    };
    follow(*scrlLevelX_, levelCamera_.x, levelCamera_.viewWidth, levelCamera_.levelWidth,
           level.tileSpacing);
    follow(*scrlLevelY_, levelCamera_.y, levelCamera_.viewHeight, levelCamera_.levelHeight,
           level.tileSpacing);

    const CellRange shown =
        visibleCells(levelCamera_, level.tileSpacing, level.width, level.height);
    overview_->setView(shown);
    // Edits do not yet say which cells they changed, so it is worked out
    // here once for both panels.
    if (const auto changed = panelWatch_.takeChanges(level)) {
        overview_->cellsChanged(*changed);
        specialsList_->cellsChanged(*changed);
    }
    // The view may have moved under a still pointer, or the cell changed.
    showCellStatus();
    lblViewRange_->setVisible(!overviewDock_->isHidden());
    lblViewRange_->setText(QString("View (%1, %2) - (%3, %4)")
                               .arg(shown.left)
                               .arg(shown.top)
                               .arg(shown.right)
                               .arg(shown.bottom));
    viewMenu_->sync();
}

} // namespace marvek
