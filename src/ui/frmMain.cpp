// The main window: its controls, menus, layout and keys.
#include "ui/frmMain.h"

#include "app/LevelLock.h"
#include "app/SharedObjects.h"
#include "app/autosave.h"
#include "app/clsMessageBox.h"
#include "data/openLevel.h"
#include "ui/BrushTool.h"
#include "ui/BucketFillTool.h"
#include "ui/HistoryPanel.h"
#include "ui/PictureBox.h"
#include "ui/SelectTool.h"
#include "ui/TiledMapCommands.h"
#include "ui/ViewMenu.h"
#include "ui/frmReplaceTile.h"
#include "ui/windowPlacement.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QMenuBar>
#include <QScrollBar>
#include <QStatusBar>
#include <QTabBar>

#include <algorithm>
#include <cmath>

namespace marvek {
namespace {

// The tile palette shows 20 tiles of 16 pixels a row, inside the border.
constexpr int paletteWidth = 20 * 16 + 2 * PictureBox::border;
constexpr int margin = 4;
// Room right of the level view for the gap, the palette's scroll bar and
// the window's edge.
constexpr int rightOfLevel = 16;
constexpr double wheelStep = 7.5;
// The least of the level view a small window keeps (5 x 3 cells at 200 %):
// the panels beside it give way first.
constexpr QSize minimumLevelView(160 + 2 * PictureBox::border, 96 + 2 * PictureBox::border);

const QString closingQuestion = "The level has been modified since you last saved it. Do you "
                                "want to save it before quitting?";

} // namespace

frmMain::frmMain(SharedObjects& shared, MainDialogs dialogs, QWidget* parent)
    : QMainWindow(parent), shared_(shared), dialogs_(dialogs) {
    setObjectName("frmMain");
    setWindowTitle(QString(applicationTitle) + "[*]");
    buildWindow();
    buildMenus();
    buildDesktopSupport();
    statusBar()->setObjectName("statusBar");
    fitToScreen(*this, QSize(1280, 800));
    updateCommands();
}

frmMain::~frmMain() = default;

void frmMain::buildWindow() {
    auto* central = new QWidget(this);
    central->setObjectName("central");
    setCentralWidget(central);
    tabMode_ = new QTabBar(central);
    tabMode_->setObjectName("tabMode");
    tabMode_->addTab("Tiles");
    tabMode_->addTab("Specials");
    tabMode_->setFocusPolicy(Qt::NoFocus);
    tabMode_->setDrawBase(false);
    picLevel_ = new PictureBox(central);
    picLevel_->setObjectName("picLevel");
    // The view takes the keys, so that arrows reach the window before any
    // panel's list or text field.
    picLevel_->setFocusPolicy(Qt::StrongFocus);
    picPalette_ = new PictureBox(central);
    picPalette_->setObjectName("picPalette");
    picPalette_->resize(paletteWidth, picPalette_->height());
    scrlPalette_ = new QScrollBar(Qt::Vertical, central);
    scrlPalette_->setObjectName("scrlPalette");
    scrlPalette_->setFocusPolicy(Qt::NoFocus);
    scrlPalette_->setSingleStep(16);
    scrlPalette_->setPageStep(160);
    setFocusPolicy(Qt::StrongFocus);

    connect(tabMode_, &QTabBar::currentChanged, this, &frmMain::selectMode);
    connect(scrlPalette_, &QScrollBar::valueChanged, this, &frmMain::showPaletteScroll);
    connect(picPalette_, &PictureBox::wheelTurned, this, &frmMain::wheelOverPalette);
    connect(picLevel_, &PictureBox::pointerPressed, this, &frmMain::levelPressed);
    connect(picLevel_, &PictureBox::pointerMoved, this, &frmMain::levelMoved);
    connect(picLevel_, &PictureBox::pointerReleased, this, &frmMain::levelReleased);
    connect(picLevel_, &PictureBox::pointerLeft, this, &frmMain::levelLeft);
    connect(picPalette_, &PictureBox::pointerPressed, this, &frmMain::palettePressed);
    connect(picPalette_, &PictureBox::pointerMoved, this, &frmMain::paletteMoved);
    connect(picPalette_, &PictureBox::pointerReleased, this, &frmMain::paletteReleased);
    buildPanels();
    central->setMinimumSize(minimumLevelView.width() + margin + scrlLevelY_->sizeHint().width() +
                                paletteWidth + scrlPalette_->sizeHint().width() + rightOfLevel,
                            minimumLevelView.height() + 2 * margin + tabMode_->sizeHint().height() +
                                scrlLevelX_->sizeHint().height());
}

QAction* frmMain::addCommand(QMenu& menu, const char* name, const QString& caption,
                             const QKeySequence& shortcut) {
    QAction* action = menu.addAction(caption);
    action->setObjectName(name);
    if (!shortcut.isEmpty()) {
        action->setShortcut(shortcut);
    }
    return action;
}

void frmMain::buildMenus() {
    QMenu* file = menuBar()->addMenu("&File");
    file->setObjectName("mnuFile");
    connect(addCommand(*file, "itmFileOpen", "&Open...", QKeySequence::Open), &QAction::triggered,
            this, [this] { fileOpen(); });
    connect(addCommand(*file, "itmFileSave", "&Save", QKeySequence::Save), &QAction::triggered,
            this, [this] { fileSave(); });
    connect(addCommand(*file, "itmFileSaveAs", "Save &As...", QKeySequence("Ctrl+Shift+S")),
            &QAction::triggered, this, [this] { fileSaveAs(); });
    connect(addCommand(*file, "itmFileExportBitmap", "&Export Bitmap..."), &QAction::triggered,
            this, [this] { fileExportBitmap(); });
    tiledMaps_ = std::make_unique<TiledMapCommands>(*this, shared_);
    QMenu* exports = file->addMenu("Expor&t");
    exports->setObjectName("mnuFileExport");
    connect(addCommand(*exports, "itmFileExportTiledMap", "&Tiled Map..."), &QAction::triggered,
            this, [this] { tiledMaps_->exportMap(); });
    QMenu* imports = file->addMenu("&Import");
    imports->setObjectName("mnuFileImport");
    connect(addCommand(*imports, "itmFileImportTiledMap", "&Tiled Map..."), &QAction::triggered,
            this, [this] { tiledMaps_->importMap(); });
    file->addSeparator();
    connect(addCommand(*file, "itmFileExit", "E&xit", QKeySequence("Ctrl+Q")), &QAction::triggered,
            this, [this] {
                releaseModifiers();
                close();
            });

    QMenu* edit = menuBar()->addMenu("&Edit");
    edit->setObjectName("mnuEdit");
    itmEditUndo_ = addCommand(*edit, "itmEditUndo", "&Undo", QKeySequence("Ctrl+Z"));
    connect(itmEditUndo_, &QAction::triggered, this, &frmMain::editUndo);
    itmEditRedo_ = addCommand(*edit, "itmEditRedo", "&Redo");
    itmEditRedo_->setShortcuts({QKeySequence("Ctrl+Y"), QKeySequence("Ctrl+Shift+Z")});
    connect(itmEditRedo_, &QAction::triggered, this, &frmMain::editRedo);
    edit->addSeparator();
    connect(addCommand(*edit, "itmEditPalette", "Pa&lette..."), &QAction::triggered, this,
            &frmMain::editPalette);
    connect(addCommand(*edit, "itmEditGoToCell", "&Go to Cell...", QKeySequence("Ctrl+G")),
            &QAction::triggered, this, &frmMain::editGoToCell);
    buildViewMenu();
    buildEditing(*edit);

    QMenu* tools = menuBar()->addMenu("&Tools");
    tools->setObjectName("mnuTools");
    connect(addCommand(*tools, "itmToolsGraphics", "&Graphics Browser..."), &QAction::triggered,
            this, &frmMain::toolsGraphics);
    connect(addCommand(*tools, "itmToolsOptions", "&Options..."), &QAction::triggered, this,
            &frmMain::toolsOptions);
    connect(addCommand(*tools, "itmToolsBenchmark", "&Benchmark"), &QAction::triggered, this,
            &frmMain::toolsBenchmark);

    QMenu* help = menuBar()->addMenu("&Help");
    help->setObjectName("mnuHelp");
    connect(addCommand(*help, "itmAboutFAQ", "&Help Topics", QKeySequence::HelpContents),
            &QAction::triggered, this, &frmMain::aboutFAQ);
    connect(addCommand(*help, "itmHelpAbout", "&About Marvek..."), &QAction::triggered, this,
            &frmMain::helpAbout);
}

void frmMain::resizeEvent(QResizeEvent* event) {
    QMainWindow::resizeEvent(event);
    if (isMinimized() || width() <= 0 || height() <= 0) {
        return;
    }
    layOutAndRedraw();
}

void frmMain::layOutAndRedraw() {
    layOut();
    if (opened_) {
        createBuffers();
        renderLevel();
        renderPalette();
    }
}

void frmMain::layOut() {
    const QWidget* central = centralWidget();
    const int tabHeight = tabMode_->sizeHint().height();
    tabMode_->setGeometry(margin, margin, tabMode_->sizeHint().width(), tabHeight);
    const int top = margin + tabHeight;
    const int scrollWidth = scrlPalette_->sizeHint().width();
    const int barHeight = scrlLevelX_->sizeHint().height();
    const int barWidth = scrlLevelY_->sizeHint().width();
    const int levelHeight = std::max(central->height() - top - margin - barHeight, 1);
    const int levelWidth = std::max(
        central->width() - margin - (paletteWidth + scrollWidth + rightOfLevel) - barWidth, 1);
    picLevel_->setGeometry(margin, top, levelWidth, levelHeight);
    scrlLevelX_->setGeometry(margin, top + levelHeight, levelWidth, barHeight);
    scrlLevelY_->setGeometry(margin + levelWidth, top, barWidth, levelHeight);
    picPalette_->setGeometry(margin + levelWidth + barWidth + margin, top, paletteWidth,
                             levelHeight);
    scrlPalette_->setGeometry(picPalette_->x() + paletteWidth, top + 1, scrollWidth,
                              std::max(picPalette_->height() - 2, 1));
}

void frmMain::keyPressEvent(QKeyEvent* event) {
    if ((event->key() == Qt::Key_Shift || event->key() == Qt::Key_Control)) {
        if (dragState_ == 0) {
            tileModifierHeld_ = true;
            specialModifierHeld_ = true;
            renderLevel();
        }
        return;
    }
    if (event->key() == Qt::Key_Escape) {
        escapeToBrush();
        return;
    }
    if (navigateByKey(*event)) {
        return;
    }
    const QString typed = event->text().toUpper();
    // B, O, U, G, Z, M: the View menu's toggles, which the menu runs too.
    if (viewMenu_->runKey(typed)) {
        return;
    }
    if (typed == "P") {
        chooseTool(Tool::brush);
    } else if (typed == "F") {
        chooseTool(Tool::bucketFill);
    } else if (typed == "R") {
        chooseTool(Tool::select);
    } else if (typed == "T") {
        tabMode_->setCurrentIndex(0);
    } else if (typed == "S") {
        tabMode_->setCurrentIndex(1);
    } else {
        QMainWindow::keyPressEvent(event);
    }
}

void frmMain::keyReleaseEvent(QKeyEvent* event) {
    if ((event->key() == Qt::Key_Shift || event->key() == Qt::Key_Control) &&
        !event->isAutoRepeat()) {
        // A copy or fill drag ends with its button, whichever is let go first.
        if (!selectionDragOn()) {
            releaseModifiers();
        }
        return;
    }
    QMainWindow::keyReleaseEvent(event);
}

void frmMain::releaseModifiers() {
    tileModifierHeld_ = false;
    specialModifierHeld_ = false;
    selectionVisible_ = false;
    dragState_ = 0;
    renderLevel();
}

void frmMain::toggleRenderFlag(std::int32_t flag) {
    renderFlags_ ^= flag;
    renderLevel();
}

void frmMain::toggleGrid() {
    renderFlags_ ^= renderFlags::clear;
    if (opened_) {
        const std::int32_t before = opened_->level.tileSpacing;
        opened_->level.tileSpacing = (renderFlags_ & renderFlags::clear) != 0 ? 17 : 16;
        levelCamera_.changePitch(before, opened_->level.tileSpacing);
        createBuffers();
    }
    renderLevel();
}

void frmMain::toggleZoom() {
    zoomed_ = !zoomed_;
    if (opened_) {
        createBuffers();
    }
    renderLevel();
}

void frmMain::selectMode(int tabIndex) {
    mode_ = tabIndex + 1;
    dragState_ = 0;
    if (mode_ == tilesMode) {
        tileModifierHeld_ = false;
    } else {
        specialModifierHeld_ = false;
    }
    applyModeFlags();
    renderLevel();
    updatePaletteScroll();
}

void frmMain::wheelOverPalette(int delta) {
    if (delta == 0) {
        return;
    }
    const double wanted = std::nearbyint(scrlPalette_->value() - delta / wheelStep);
    scrlPalette_->setValue(static_cast<int>(
        std::clamp<double>(wanted, scrlPalette_->minimum(), scrlPalette_->maximum())));
}

bool frmMain::mayClose() {
    bool cancelled = false;
    if (!saveIfModified(closingQuestion, &cancelled) || cancelled) {
        return false;
    }
    // Still modified: the user chose to close without saving.
    if (opened_ && opened_->level.modified) {
        dropRecoveryCopy();
    }
    return true;
}

void frmMain::closeEvent(QCloseEvent* event) {
    if (!mayClose()) {
        event->ignore();
        return;
    }
    event->accept();
}

} // namespace marvek
