#pragma once

#include "data/TileGrid.h"
#include "data/UndoHistory.h"
#include "data/clsRenderOptions.h"
#include "data/editorBenchmark.h"
#include "graphics/clsBackBuffer.h"
#include "graphics/clsCamera.h"
#include "graphics/clsRectangle.h"

#include <QMainWindow>
#include <QPoint>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

class QAction;
class QScrollBar;
class QTabBar;

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
class RecentLevelsMenu;
class Autosave;
class SingleShotTimer;

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
    void keepRecoveryCopy();
    // The work was saved or dropped: its recovery copy goes.
    void dropRecoveryCopy();
    // A level just opened: fresh editing state, views sized and drawn.
    void showNewLevel();
    // Undo or redo, whichever side is given.
    void takeBack(std::string (UndoHistory::*side)(clsLevel&));
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
    void paintBrush(float x, float y);
    void placeSpecial(float x, float y);
    // The level cell under a view position.
    QPoint levelCellAt(float x, float y) const;
    QPoint paletteCellAt(float x, float y) const;
    void showCellStatus();

    SharedObjects& shared_;
    MainDialogs dialogs_;

    PictureBox* picLevel_ = nullptr;
    PictureBox* picPalette_ = nullptr;
    QScrollBar* scrlPalette_ = nullptr;
    QTabBar* tabMode_ = nullptr;
    QAction* itmEditUndo_ = nullptr;
    QAction* itmEditRedo_ = nullptr;

    RecentLevelsMenu* mnuFileRecent_ = nullptr;
    std::unique_ptr<Autosave> autosave_;

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
    float moveSensitivity_ = 1.0F;
    bool tileModifierHeld_ = false;
    bool specialModifierHeld_ = false;
    float mouseX_ = 0.0F;
    float mouseY_ = 0.0F;
    bool pointerOverLevel_ = false;
    // Where the screen cursor stays during a scroll drag.
    QPoint dragStart_;
    TickClock tickClock_ = steadyTicks;

    bool alphaBlending_ = true;
    bool autoPlaceSpecials_ = true;
};

} // namespace marvek
