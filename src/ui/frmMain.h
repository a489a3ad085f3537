#pragma once

#include "data/TileGrid.h"
#include "data/editorBenchmark.h"
#include "ui/EditingState.h"

#include <QMainWindow>
#include <QSize>

#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

class QAction;
class QLabel;
class QMenu;
class QTabBar;

namespace marvek {

struct OpenedLevel;
struct SharedObjects;
class clsBackBuffer;
class clsCamera;
class clsSpecial;
class clsRectangle;
class frmAbout;
class frmExportLevel;
class frmOpenLevel;
class frmGraphics;
class frmEditPalette;
class frmOptions;
class frmStatus;
class ToolBox;
class EditCommands;
class HistoryPanel;
class OverviewPanel;
class PanelDock;
class SpecialsListPanel;
class ViewMenu;
class frmGoToCell;
class UndoHistory;
class LevelDocument;
class LevelFileCommands;
class LevelTabs;
class LevelView;
class PaletteStrip;
class TiledMapCommands;
class clsLevel;
struct CellRange;

// The dialogs the main window opens; they live as long as it does.
struct MainDialogs {
    frmStatus& status;
    frmOpenLevel& openLevel;
    frmOptions& options;
    frmExportLevel& exportLevel;
    frmAbout& about;
    frmGraphics& graphics;
    frmEditPalette& editPalette;
};

// The editor's main window: the menus, the panels, the status bar and the
// place of the level tabs, with the palette strip and the mode tabs beside
// them. The open levels live in their tabs; the File menu's commands on
// them in their own class.
class frmMain : public QMainWindow {
    Q_OBJECT

public:
    static constexpr std::int32_t tilesMode = editingMode::tiles;
    static constexpr std::int32_t specialsMode = editingMode::specials;
    using Tool = EditTool;

    frmMain(SharedObjects& shared, MainDialogs dialogs, QWidget* parent = nullptr);
    ~frmMain() override;

    // Opens the start-up levels (the command line's, else the settings'
    // default); false, after telling the user, when none loads.
    bool initialLoad();
    // Opens a level with a level configuration in the current tab (a first
    // tab when there is none), and offers the level's unsaved work when a
    // crash or a kill left some. On failure the open level, its edits and
    // its history stay as they were, and failure (when given) says why.
    bool useConfig(const std::filesystem::path& levelFile, const QString& configuration,
                   bool loadUnknown, QString* failure = nullptr);

    LevelTabs& tabs() const noexcept { return *tabs_; }
    LevelFileCommands& files() const noexcept { return *files_; }
    // The document and view in front (null before the first load).
    LevelDocument* currentDocument() const;
    LevelView* currentView() const;
    // The level in front, null before the first successful load.
    const OpenedLevel* openedLevel() const;

    // Editing state, read by tests and the status line.
    std::int32_t mode() const noexcept { return editing_.mode; }
    std::int32_t renderFlags() const;
    int zoom() const;
    bool zoomed() const { return zoom() == 200; }
    std::int32_t dragState() const;
    bool tileModifierHeld() const;
    bool specialModifierHeld() const { return tileModifierHeld(); }
    const clsBackBuffer& levelBuffer() const;
    const clsBackBuffer& paletteBuffer() const;
    const clsCamera& levelCamera() const;
    const clsCamera& paletteCamera() const;
    float moveSensitivity() const noexcept { return editing_.moveSensitivity; }
    const UndoHistory& history() const;
    const TileGrid& brush() const noexcept { return editing_.brush; }
    const clsSpecial* selectedSpecial() const;
    const clsRectangle& selection() const;
    bool selectionVisible() const;
    const clsRectangle& paletteSelection() const noexcept { return editing_.paletteSelection; }
    bool paletteSelectionVisible() const noexcept { return editing_.paletteSelectionVisible; }

    Tool tool() const noexcept { return editing_.tool; }
    void chooseTool(Tool tool);
    // Back to the Brush, the selection dropped.
    void escapeToBrush();
    // The level's selected cells, normalised; none when nothing is selected.
    std::optional<clsRectangle> cellSelection() const;
    const CellBlock* brushCells() const noexcept {
        return editing_.brushCells ? &*editing_.brushCells : nullptr;
    }
    // Cells pasted in Specials mode, whose specials alone the brush puts
    // down; null once a special is chosen.
    const CellBlock* specialsBrush() const noexcept {
        return editing_.specialsBrush ? &*editing_.specialsBrush : nullptr;
    }
    const EditingState& editing() const noexcept { return editing_; }
    // Another editor holds the level in front: it is shown and edited, but
    // neither saved nor kept in a recovery copy.
    bool isReadOnly() const;
    // A named step over the whole level in front, for scripts and tests.
    void editLevel(const std::string& stepName, const std::function<void(clsLevel&)>& change);
    // The Edit menu's commands; undo and redo are called from here too.
    EditCommands& editCommands() const noexcept { return *edits_; }
    void editUndo();
    void editRedo();
    HistoryPanel& historyPanel() const noexcept { return *historyPanel_; }

    void toolsOptions();
    void toolsGraphics();
    // The level as a picture; true when one was written.
    bool fileExportBitmap();
    void toolsBenchmark();
    void aboutFAQ();
    void helpAbout();
    void editGoToCell();
    // Puts cell (x, y) in the middle of the level view, as far as it goes.
    void centreView(int x, int y);
    ViewMenu& viewMenu() noexcept { return *viewMenu_; }
    // The benchmark's clock in milliseconds; tests give it a scripted one.
    void setTickClock(TickClock clock) { tickClock_ = std::move(clock); }

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void buildWindow();
    void buildMenus();
    void buildFileMenu();
    void buildTabKeys();
    QAction* addCommand(QMenu& menu, const char* name, const QString& caption,
                        const QKeySequence& shortcut = {});
    // The Edit menu's entries, the tools with their tool bar and menu, and
    // the History dock (frmMainEditing.cpp).
    void buildEditing(QMenu& edit);
    void buildToolActions(QMenu& edit);
    void buildHistoryDock();
    void updateSelectionCommands();
    void toggleSpecialsInTilesMode();

    void loadOptions();
    // The window follows the level in front: its panels, commands and title.
    void connectTabs();
    void documentShown();
    // A level just opened: fresh editing state, views and panels follow.
    void showNewLevel();
    void selectMode(int tabIndex);
    // What letting go of Shift or Ctrl does; menu commands start with it.
    void releaseModifiers();
    void updateCommands();
    void showZoom();

    // Navigation (frmMainNavigation.cpp).
    void buildPanels();
    void buildViewMenu();
    void togglePanel(PanelDock& dock);
    void restorePanels();
    void savePanels();
    bool navigateByKey(const QKeyEvent& event);
    void chooseListedCell(int x, int y);
    // The level in front changed: the panels start anew.
    void showLevelInPanels();
    // The view in front moved or its level changed: the panels, the scroll
    // range label and the check marks follow.
    void refreshNavigation();
    void refreshPanels(const CellRange& range);

    SharedObjects& shared_;
    MainDialogs dialogs_;
    EditingState editing_;

    QTabBar* tabMode_ = nullptr;
    PaletteStrip* palette_ = nullptr;
    std::unique_ptr<LevelTabs> tabs_;
    std::unique_ptr<LevelFileCommands> files_;
    QAction* itmEditUndo_ = nullptr;
    QAction* itmEditRedo_ = nullptr;
    QAction* itmEditCut_ = nullptr;
    QAction* itmEditCopy_ = nullptr;
    QAction* itmEditDelete_ = nullptr;
    QAction* itmEditSelectNone_ = nullptr;
    QAction* itmFileReload_ = nullptr;
    QLabel* lblTool_ = nullptr;
    QLabel* lblZoom_ = nullptr;
    HistoryPanel* historyPanel_ = nullptr;
    std::unique_ptr<ToolBox> tools_;
    EditCommands* edits_ = nullptr;
    // Brush, Bucket Fill, Select: checked as the tool is chosen.
    std::array<QAction*, 3> toolActions_{};
    PanelDock* overviewDock_ = nullptr;
    PanelDock* specialsDock_ = nullptr;
    PanelDock* historyDock_ = nullptr;
    OverviewPanel* overview_ = nullptr;
    SpecialsListPanel* specialsList_ = nullptr;
    ViewMenu* viewMenu_ = nullptr;
    frmGoToCell* goToCell_ = nullptr;
    QLabel* lblViewRange_ = nullptr;
    std::unique_ptr<TiledMapCommands> tiledMaps_;
    TickClock tickClock_ = steadyTicks;
};

} // namespace marvek
