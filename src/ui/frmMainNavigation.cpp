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
#include "ui/LevelDocument.h"
#include "ui/LevelTabs.h"
#include "ui/LevelView.h"
#include "ui/OverviewPanel.h"
#include "ui/PaletteStrip.h"
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
#include <QStackedWidget>
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

} // namespace

void frmMain::buildPanels() {
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
            refreshNavigation();
            savePanels();
        });
    }
    connect(overview_, &OverviewPanel::cellChosen, this, &frmMain::centreView);
    connect(specialsList_, &SpecialsListPanel::cellChosen, this, &frmMain::chooseListedCell);

    lblZoom_ = new QLabel(this);
    lblZoom_->setObjectName("lblZoom");
    statusBar()->addPermanentWidget(lblZoom_);
    lblViewRange_ = new QLabel(this);
    lblViewRange_->setObjectName("lblViewRange");
    statusBar()->addPermanentWidget(lblViewRange_);
    goToCell_ = new frmGoToCell(this);
}

void frmMain::buildViewMenu() {
    viewMenu_ = new ViewMenu(*menuBar(), this);
    const auto flagOn = [this](std::int32_t flag) {
        return [this, flag] { return (renderFlags() & flag) != 0; };
    };
    const auto onView = [this](auto action) {
        return [this, action] {
            if (LevelView* view = currentView()) {
                action(*view);
            }
        };
    };
    const auto flagToggle = [onView](std::int32_t flag) {
        return onView([flag](LevelView& view) { view.toggleRenderFlag(flag); });
    };
    viewMenu_->addToggle("itmViewZoom", "&Zoom", "Z",
                         onView([](LevelView& view) { view.toggleZoom(); }),
                         [this] { return zoomed(); });
    viewMenu_->addToggle("itmViewGrid", "&Grid", "G",
                         onView([](LevelView& view) { view.toggleGrid(); }),
                         flagOn(renderFlags::clear));
    viewMenu_->addToggle("itmViewOutlines", "&Outlines", "B", flagToggle(renderFlags::outlines),
                         flagOn(renderFlags::outlines));
    viewMenu_->addToggle("itmViewOversize", "O&versize Marks", "O",
                         flagToggle(renderFlags::oversizeMarks),
                         flagOn(renderFlags::oversizeMarks));
    viewMenu_->addToggle("itmViewUndefined", "&Undefined IDs", "U",
                         flagToggle(renderFlags::undefinedIds), flagOn(renderFlags::undefinedIds));
    viewMenu_->addToggle(
        "itmViewSpecialsInTilesMode", "Specials in &Tiles Mode", "K",
        [this] { toggleSpecialsInTilesMode(); }, [this] { return editing_.specialsInTilesMode; });
    QMenu& menu = viewMenu_->menu();
    menu.addSeparator();
    const auto zoomCommand = [this, &menu, onView](const char* name, const QString& caption,
                                                   QList<QKeySequence> keys, auto action) {
        QAction* command = addCommand(menu, name, caption);
        command->setShortcuts(keys);
        connect(command, &QAction::triggered, this, onView(action));
    };
    zoomCommand("itmViewZoomIn", "Zoom &In", {QKeySequence("Ctrl+="), QKeySequence("Ctrl++")},
                [](LevelView& view) { view.zoomBy(1); });
    zoomCommand("itmViewZoomOut", "Zoo&m Out", {QKeySequence("Ctrl+-")},
                [](LevelView& view) { view.zoomBy(-1); });
    zoomCommand("itmViewZoomReset", "Zoom &200 %", {QKeySequence("Ctrl+0")},
                [](LevelView& view) { view.zoomToCentre(LevelView::usualZoom); });
    menu.addSeparator();
    // Hidden, it leaves the level view the window's whole width.
    viewMenu_->addToggle(
        "itmViewPaletteStrip", "&Palette Strip", QString(),
        [this] { palette_->setVisible(palette_->isHidden()); },
        [this] { return !palette_->isHidden(); });
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
    editing_.specialsInTilesMode = !editing_.specialsInTilesMode;
    tabs_->followMode();
    shared_.settings.WriteSetting(settingKey::specialsInTilesMode,
                                  editing_.specialsInTilesMode ? 1 : 0, false);
    try {
        shared_.settings.SaveConfiguration(shared_.settingsFile(), "\r\n", true);
    } catch (const FileError& error) {
        statusBar()->showMessage(QString::fromStdString(error.what()));
    }
}

void frmMain::togglePanel(PanelDock& dock) {
    dock.setVisible(dock.isHidden());
    refreshNavigation();
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
    if (LevelView* view = currentView()) {
        view->stepView(step);
    }
    return true;
}

void frmMain::centreView(int x, int y) {
    if (LevelView* view = currentView()) {
        view->centreOn(x, y);
    }
}

void frmMain::chooseListedCell(int x, int y) {
    if (LevelView* view = currentView()) {
        view->highlight(QPoint(x, y));
    }
}

void frmMain::editGoToCell() {
    releaseModifiers();
    LevelView* view = currentView();
    if (view == nullptr) {
        return;
    }
    const clsLevel& level = view->document().level();
    const CellRange shown = view->shownCells();
    const QPoint middle((shown.left + shown.right) / 2, (shown.top + shown.bottom) / 2);
    if (const auto cell = goToCell_->ask(level.width, level.height, middle)) {
        view->centreOn(cell->x(), cell->y());
    }
    view->picture().setFocus();
}

void frmMain::showLevelInPanels() {
    const OpenedLevel* opened = openedLevel();
    if (opened == nullptr) {
        return;
    }
    // A hidden panel catches up when it is shown.
    overview_->showLevel(*opened);
    specialsList_->showLevel(opened->level, opened->specialSet);
}

void frmMain::refreshPanels(const CellRange& range) {
    overview_->cellsChanged(range);
    specialsList_->cellsChanged(range);
}

void frmMain::refreshNavigation() {
    LevelView* view = currentView();
    if (view == nullptr) {
        return;
    }
    const CellRange shown = view->shownCells();
    overview_->setView(shown);
    lblViewRange_->setVisible(!overviewDock_->isHidden());
    lblViewRange_->setText(QString("View (%1, %2) - (%3, %4)")
                               .arg(shown.left)
                               .arg(shown.top)
                               .arg(shown.right)
                               .arg(shown.bottom));
    showZoom();
    viewMenu_->sync();
}

} // namespace marvek
