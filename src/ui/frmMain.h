#pragma once

#include "app/autosave.h"
#include "data/CellBlock.h"
#include "data/TileGrid.h"
#include "data/UndoHistory.h"
#include "data/cellRange.h"
#include "data/clsRenderOptions.h"
#include "data/editorBenchmark.h"
#include "data/specialChanges.h"
#include "graphics/clsBackBuffer.h"
#include "graphics/clsCamera.h"
#include "graphics/clsRectangle.h"

#include <QMainWindow>
#include <QPoint>
#include <QPointF>
#include <QSize>

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

class QAction;
class QLabel;
class QScrollBar;
class QTabBar;
class QTimer;

namespace marvek {

struct OpenedLevel;
class clsLevel;
struct SharedObjects;
class clsSpecial;
class frmAbout;
class frmExportLevel;
class frmOpenLevel;
class frmGraphics;
class frmEditPalette;
class frmOptions;
class frmStatus;
class PictureBox;
class LevelTool;
class BrushTool;
class BucketFillTool;
class SelectTool;
class HistoryPanel;
class frmReplaceTile;
struct ToolContext;
class OverviewPanel;
class PanelDock;
class SpecialsListPanel;
class ViewMenu;
class frmGoToCell;
enum class ViewStep;
class RecentLevelsMenu;
class Autosave;
class LevelLock;
class SingleShotTimer;
class TiledMapCommands;

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

// The editor's main window: the level view, the palette strip beside it, the
// mode tabs and the menus. It owns the open level and the editing state.
class frmMain : public QMainWindow {
    Q_OBJECT
    // Tiled maps in and out replace the open level's palette and cells.
    friend class TiledMapCommands;

public:
    // Editing modes, the tabs' order.
    static constexpr std::int32_t tilesMode = 1;
    static constexpr std::int32_t specialsMode = 2;

    frmMain(SharedObjects& shared, MainDialogs dialogs, QWidget* parent = nullptr);
    ~frmMain() override;

    // Opens the default level of the settings; false, after telling the
    // user, when it does not load.
    bool initialLoad();
    // Opens a level with a level configuration, and offers the level's
    // unsaved work when a crash or a kill left some. On failure the open
    // level, its edits and its history stay as they were, and failure (when
    // given) says which file and why.
    bool useConfig(const std::filesystem::path& levelFile, const QString& configuration,
                   bool loadUnknown, QString* failure = nullptr);

    // The open level, null before the first successful load.
    const OpenedLevel* openedLevel() const noexcept { return opened_.get(); }
    // Keeps unsaved work after an unexpected error: the text to show, naming
    // the file written, or an empty text when nothing needed keeping.
    QString keepUnsavedWork();
    // Another editor holds the open level: it is shown and edited, but
    // neither saved nor kept in a recovery copy.
    bool isReadOnly() const noexcept;
    // The closing question, asked only when the level has unsaved changes;
    // true when the window may close (saved, or the changes let go).
    bool mayClose();

    // Editing state, read by tests and the status line.
    std::int32_t mode() const noexcept { return mode_; }
    std::int32_t renderFlags() const noexcept { return renderFlags_; }
    bool zoomed() const noexcept { return zoomed_; }
    std::int32_t dragState() const noexcept { return dragState_; }
    bool tileModifierHeld() const noexcept { return tileModifierHeld_; }
    bool specialModifierHeld() const noexcept { return specialModifierHeld_; }
    const clsBackBuffer& levelBuffer() const noexcept { return levelBuffer_; }
    const clsBackBuffer& paletteBuffer() const noexcept { return paletteBuffer_; }
    const clsCamera& levelCamera() const noexcept { return levelCamera_; }
    const clsCamera& paletteCamera() const noexcept { return paletteCamera_; }
    float moveSensitivity() const noexcept { return moveSensitivity_; }
    const UndoHistory& history() const noexcept { return history_; }
    const TileGrid& brush() const noexcept { return brush_; }
    const clsSpecial* selectedSpecial() const noexcept { return selectedSpecial_; }
    const clsRectangle& selection() const noexcept { return selection_; }
    bool selectionVisible() const noexcept { return selectionVisible_; }
    const clsRectangle& paletteSelection() const noexcept { return paletteSelection_; }
    // False once the brush no longer comes from the tile palette.
    bool paletteSelectionVisible() const noexcept { return paletteSelectionVisible_; }

    // The editing tools; the Brush is the tool at start.
    enum class Tool { brush, bucketFill, select };
    Tool tool() const noexcept { return tool_; }
    void chooseTool(Tool tool);
    // Back to the Brush, the selection dropped.
    void escapeToBrush();
    // The Select tool's rectangle of cells, normalised; none when nothing
    // is selected.
    std::optional<clsRectangle> cellSelection() const;
    // The cells a brush made by Paste stamps, specials and all; null for a
    // brush of palette tiles.
    const CellBlock* brushCells() const noexcept { return brushCells_ ? &*brushCells_ : nullptr; }
    // Cells pasted in Specials mode, whose specials alone the brush puts
    // down; null once a special is chosen.
    const CellBlock* specialsBrush() const noexcept {
        return specialsBrush_ ? &*specialsBrush_ : nullptr;
    }
    // The clipboard and selection commands of the Edit menu.
    void editCut();
    void editCopy();
    void editPaste();
    void editDelete();
    void editSelectAll();
    void editSelectNone();
    void editReplaceTile();
    // The level as it was at a History entry: 0 before every kept step, n
    // after the n-th.
    void goToHistoryEntry(int index);
    HistoryPanel& historyPanel() const noexcept { return *historyPanel_; }

    // Every change to the level goes through here: an undo step called
    // stepName, the change, the level marked modified, the view redrawn.
    void editLevel(const std::string& stepName, const std::function<void(clsLevel&)>& change);

    // The file commands, as the menu runs them. Each returns true when it
    // went through (false: cancelled or failed, and the user was told).
    bool fileOpen();
    // A level file from outside (dropped on the window): opened as File >
    // Open would open it, after its dialog.
    bool openLevelFile(const std::filesystem::path& file);
    // File > Recent Levels: opens the entry with its configuration, or drops
    // it from the list, telling the user, when the file is gone.
    bool openRecentLevel(std::size_t index);
    // The recovery copy's timer; tests give a scripted one.
    void setAutosaveTimer(std::unique_ptr<SingleShotTimer> timer);
    bool fileSave();
    bool fileSaveAs();
    void editUndo();
    void editRedo();
    void toolsOptions();
    void toolsGraphics();
    // Edits the level's palette; a change is saved with the level and the
    // graphics are read again with it.
    void editPalette();
    // The level as a picture; true when one was written.
    bool fileExportBitmap();
    void toolsBenchmark();
    void aboutFAQ();
    void helpAbout();
    // Finding one's way (frmMainNavigation.cpp).
    void editGoToCell();
    // Puts cell (x, y) in the middle of the level view, as far as it goes.
    void centreView(int x, int y);
    ViewMenu& viewMenu() noexcept { return *viewMenu_; }
    // The benchmark's clock in milliseconds; tests give it a scripted one.
    void setTickClock(TickClock clock) { tickClock_ = std::move(clock); }

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void buildWindow();
    void buildMenus();
    QAction* addCommand(QMenu& menu, const char* name, const QString& caption,
                        const QKeySequence& shortcut = {});
    void layOut();
    void layOutAndRedraw();
    // The tools, their tool bar and menu, the clipboard commands and the
    // History dock (frmMainEditing.cpp).
    void buildEditing(QMenu& edit);
    void buildToolActions(QMenu& edit);
    void buildHistoryDock();
    LevelTool& activeTool() const;
    ToolContext toolContext(int shift, float x, float y);
    void renderToolMarks();
    void updateSelectionCommands();
    // Cut or Delete of the selection: its specials alone in Specials mode.
    void clearSelection(const std::string& command);
    // Paste in Specials mode: a brush of the pasted cells' specials.
    void pasteSpecials(CellBlock block);
    // The selection's cells on the clipboard; false when nothing is selected.
    bool copySelectionToClipboard();

    void loadOptions();
    bool openWithConfig(const std::filesystem::path& levelFile, const QString& configuration,
                        bool loadUnknown, QString* failure);
    // After the file dialog of Open: the configuration, then the level.
    bool openChosenLevel(const std::filesystem::path& file);

    // The desktop around the editor (frmMainDesktop.cpp): recent levels,
    // dropped files, the recovery copy.
    void buildDesktopSupport();
    void rememberRecent(const std::filesystem::path& file, const QString& configuration);
    void showRecentLevels();
    void saveRecentLevels();
    void offerRecovery();
    // The lock a level about to open needs, in fresh (left empty when the
    // lock held now is that level's); false when another editor holds it and
    // the user chose not to open it read-only.
    bool lockLevel(const std::filesystem::path& levelFile, std::unique_ptr<LevelLock>& fresh,
                   QString* failure);
    // Says why a read-only level is not saved; false when it is not one.
    bool refuseReadOnlySave();
    void keepRecoveryCopy();
    // The work was saved or dropped: its recovery copy goes.
    void dropRecoveryCopy();
    // A level just opened: fresh editing state, views sized and drawn.
    void showNewLevel();
    // Names each file the readers repaired and what they repaired, once.
    void warnOfRepairs();
    // Undo or redo, whichever side is given.
    void takeBack(std::string (UndoHistory::*side)(clsLevel&));
    // A step of tiles whose specials auto-place chooses.
    bool autoPlacing(const std::string& stepName) const;
    // The newest step named by what auto-place did to specials.
    void nameStepBySpecials();
    void resetEditState();
    void createBuffers();
    void updatePaletteScroll();
    void applyModeFlags();
    void renderLevel();
    void renderPalette();
    void showPaletteScroll();
    clsRenderOptions renderOptions() const;
    std::int32_t zoomFactor() const noexcept { return zoomed_ ? 2 : 1; }

    void selectMode(int tabIndex);
    void toggleRenderFlag(std::int32_t flag);
    void toggleSpecialsInTilesMode();
    void toggleGrid();
    void toggleZoom();
    void wheelOverPalette(int delta);
    // What letting go of Shift or Ctrl does; menu commands start with it.
    void releaseModifiers();
    bool saveIfModified(const QString& question, bool* cancelled);
    void updateCommands();

    // Mouse editing (frmMainMouse.cpp): positions are picture pixels.
    void levelPressed(int button, int shift, float x, float y);
    void levelMoved(int buttons, int shift, float x, float y);
    void levelReleased(int button, int shift, float x, float y);
    void levelLeft();
    void palettePressed(int button, int shift, float x, float y);
    void paletteMoved(int buttons, int shift, float x, float y);
    void paletteReleased(int button, int shift, float x, float y);
    void scrollDrag();
    void dragSelection(float x, float y);
    void startSelection(std::uint32_t colour);
    void copySelection();
    void fillSelection();
    // A Shift copy or Ctrl fill drag is on.
    bool selectionDragOn() const noexcept;
    // A drag that the active tool began is on.
    bool toolDragOn() const noexcept;
    // The level cell under a view position.
    QPoint levelCellAt(float x, float y) const;
    QPoint paletteCellAt(float x, float y) const;
    void showCellStatus();

    // Navigation (frmMainNavigation.cpp).
    void buildPanels();
    // The room beside the panels changed: lay the level view out again.
    void centralResized();
    void buildViewMenu();
    void togglePanel(PanelDock& dock);
    void restorePanels();
    void savePanels();
    bool navigateByKey(const QKeyEvent& event);
    void stepView(ViewStep step);
    void scrollByWheel(int dx, int dy, int shift);
    void scrollBarMoved();
    void startPan(float x, float y);
    void panTo(float x, float y);
    void chooseListedCell(int x, int y);
    // A level opened or its graphics changed: the panels start anew.
    void showLevelInPanels();
    // After each drawing of the level: the scroll bars, the overview, the
    // specials list and the check marks follow.
    void refreshNavigation();
    // Marks drawn over the level view before it is shown.
    void drawNavigationMarks();

    SharedObjects& shared_;
    MainDialogs dialogs_;

    PictureBox* picLevel_ = nullptr;
    PictureBox* picPalette_ = nullptr;
    QScrollBar* scrlPalette_ = nullptr;
    QTabBar* tabMode_ = nullptr;
    QAction* itmEditUndo_ = nullptr;
    QAction* itmEditRedo_ = nullptr;
    QAction* itmEditCut_ = nullptr;
    QAction* itmEditCopy_ = nullptr;
    QAction* itmEditDelete_ = nullptr;
    QAction* itmEditSelectNone_ = nullptr;
    QLabel* lblTool_ = nullptr;
    HistoryPanel* historyPanel_ = nullptr;
    frmReplaceTile* replaceTile_ = nullptr;
    std::unique_ptr<BrushTool> brushTool_;
    std::unique_ptr<BucketFillTool> bucketFillTool_;
    std::unique_ptr<SelectTool> selectTool_;
    Tool tool_ = Tool::brush;
    // Brush, Bucket Fill, Select: checked as the tool is chosen.
    std::array<QAction*, 3> toolActions_{};
    std::optional<CellBlock> brushCells_;
    // The specials before the newest step, until the step is complete.
    std::optional<SpecialsWatch> stepWatch_;
    // Cells pasted in Specials mode: the brush puts down their specials.
    std::optional<CellBlock> specialsBrush_;
    QScrollBar* scrlLevelX_ = nullptr;
    QScrollBar* scrlLevelY_ = nullptr;
    PanelDock* overviewDock_ = nullptr;
    PanelDock* specialsDock_ = nullptr;
    PanelDock* historyDock_ = nullptr;
    OverviewPanel* overview_ = nullptr;
    SpecialsListPanel* specialsList_ = nullptr;
    ViewMenu* viewMenu_ = nullptr;
    frmGoToCell* goToCell_ = nullptr;
    QLabel* lblViewRange_ = nullptr;
    QTimer* highlightTimer_ = nullptr;
    // The cells the panels last showed.
    CellWatch panelWatch_;

    RecentLevelsMenu* mnuFileRecent_ = nullptr;
    std::unique_ptr<Autosave> autosave_;
    std::unique_ptr<LevelLock> levelLock_;
    RecoveryCopyHealth recoveryHealth_;
    std::unique_ptr<TiledMapCommands> tiledMaps_;

    std::unique_ptr<OpenedLevel> opened_;
    UndoHistory history_;
    clsBackBuffer levelBuffer_;
    clsBackBuffer paletteBuffer_;
    clsCamera levelCamera_;
    clsCamera paletteCamera_;

    std::int32_t mode_ = tilesMode;
    std::int32_t dragState_ = 0;
    std::int32_t renderFlags_ = 12;
    bool zoomed_ = true;
    TileGrid brush_;
    const clsSpecial* selectedSpecial_ = nullptr;
    clsRectangle selection_;
    bool selectionVisible_ = false;
    clsRectangle paletteSelection_;
    bool paletteSelectionVisible_ = true;
    float moveSensitivity_ = 1.0F;
    bool tileModifierHeld_ = false;
    bool specialModifierHeld_ = false;
    float mouseX_ = 0.0F;
    float mouseY_ = 0.0F;
    bool pointerOverLevel_ = false;
    // Where the screen cursor stays during a scroll drag.
    QPoint dragStart_;
    TickClock tickClock_ = steadyTicks;
    // A middle drag: where it began, and the camera then.
    bool panning_ = false;
    QPointF panStart_;
    QPoint panCamera_;
    // The cell a chosen special lies in, outlined for a moment.
    std::optional<QPoint> highlightedCell_;
    // The window's size when the room beside the panels last changed.
    QSize sizeLaidOut_;

    bool alphaBlending_ = true;
    bool autoPlaceSpecials_ = true;
    bool specialsInTilesMode_ = true;
};

} // namespace marvek
