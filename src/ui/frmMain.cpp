// The main window: its controls, menus, keys and window events.
#include "ui/frmMain.h"

#include "app/SharedObjects.h"
#include "app/clsMessageBox.h"
#include "app/qtPaths.h"
#include "data/cellRange.h"
#include "data/openLevel.h"
#include "ui/EditCommands.h"
#include "ui/LevelDocument.h"
#include "ui/LevelFileCommands.h"
#include "ui/LevelTabs.h"
#include "ui/LevelView.h"
#include "ui/PaletteStrip.h"
#include "ui/PictureBox.h"
#include "ui/RecentLevelsMenu.h"
#include "ui/TiledMapCommands.h"
#include "ui/ToolBox.h"
#include "ui/ViewMenu.h"
#include "ui/windowPlacement.h"

#include <QBoxLayout>
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QKeyEvent>
#include <QMenuBar>
#include <QMimeData>
#include <QScrollBar>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTabBar>

namespace marvek {
namespace {

constexpr int margin = 4;

// The one local file a drag carries, when it carries exactly one.
std::optional<std::filesystem::path> droppedFile(const QMimeData* data) {
    if (data == nullptr || !data->hasUrls() || data->urls().size() != 1 ||
        !data->urls().constFirst().isLocalFile()) {
        return std::nullopt;
    }
    return toPath(data->urls().constFirst().toLocalFile());
}

} // namespace

frmMain::frmMain(SharedObjects& shared, MainDialogs dialogs, QWidget* parent)
    : QMainWindow(parent), shared_(shared), dialogs_(dialogs),
      tools_(std::make_unique<ToolBox>(editing_)) {
    setObjectName("frmMain");
    setWindowTitle(QString(applicationTitle) + "[*]");
    setAcceptDrops(true);
    buildWindow();
    buildMenus();
    connectTabs();
    statusBar()->setObjectName("statusBar");
    fitToScreen(*this, QSize(1280, 800));
    updateCommands();
}

frmMain::~frmMain() {
    // The views refer to the editing state and the tools.
    files_.reset();
    tabs_.reset();
}

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
    tabs_ = std::make_unique<LevelTabs>(ViewServices{shared_, editing_, *tools_}, *central);
    palette_ = new PaletteStrip(editing_, shared_.editorFont, central);
    palette_->setObjectName("paletteStrip");

    // The mode tabs and the level tabs share the top row; the palette strip
    // stands beside the view, as tall as its picture.
    auto* top = new QHBoxLayout;
    top->setSpacing(4 * margin);
    top->addWidget(tabMode_);
    top->addWidget(&tabs_->bar(), 1, Qt::AlignBottom);
    auto* strip = new QVBoxLayout;
    strip->setSpacing(0);
    strip->addWidget(palette_, 1);
    strip->addSpacing(QScrollBar(Qt::Horizontal).sizeHint().height());
    auto* row = new QHBoxLayout;
    row->setSpacing(margin);
    row->addWidget(&tabs_->views(), 1);
    row->addLayout(strip);
    auto* column = new QVBoxLayout(central);
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(0);
    column->addLayout(top);
    column->addLayout(row, 1);
    setFocusPolicy(Qt::StrongFocus);

    connect(tabMode_, &QTabBar::currentChanged, this, &frmMain::selectMode);
    connect(palette_, &PaletteStrip::brushChosen, this, [this] {
        if (LevelView* view = currentView()) {
            view->scheduleRedraw();
        }
    });
    buildPanels();
    // The least of the level view a small window keeps (5 x 3 cells at
    // 200 %): the panels beside it give way first.
    tabs_->views().setMinimumSize(
        160 + 2 * PictureBox::border + QScrollBar(Qt::Vertical).sizeHint().width(),
        96 + 2 * PictureBox::border + QScrollBar(Qt::Horizontal).sizeHint().height());
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
    buildFileMenu();
    QMenu* edit = menuBar()->addMenu("&Edit");
    edit->setObjectName("mnuEdit");
    itmEditUndo_ = addCommand(*edit, "itmEditUndo", "&Undo", QKeySequence("Ctrl+Z"));
    connect(itmEditUndo_, &QAction::triggered, this, &frmMain::editUndo);
    itmEditRedo_ = addCommand(*edit, "itmEditRedo", "&Redo");
    itmEditRedo_->setShortcuts({QKeySequence("Ctrl+Y"), QKeySequence("Ctrl+Shift+Z")});
    connect(itmEditRedo_, &QAction::triggered, this, &frmMain::editRedo);
    edit->addSeparator();
    connect(addCommand(*edit, "itmEditPalette", "Pa&lette..."), &QAction::triggered, this,
            [this] { edits_->editPalette(); });
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
    buildTabKeys();
}

void frmMain::buildFileMenu() {
    QMenu* file = menuBar()->addMenu("&File");
    file->setObjectName("mnuFile");
    auto* recent = new RecentLevelsMenu(
        shared_, [this](std::size_t index) { files_->openRecent(index); }, file);
    connect(recent, &RecentLevelsMenu::notice, this,
            [this](const QString& text) { statusBar()->showMessage(text); });
    files_ = std::make_unique<LevelFileCommands>(
        shared_, LevelFileCommands::Dialogs{dialogs_.status, dialogs_.openLevel}, *tabs_, *recent,
        *this);
    connect(addCommand(*file, "itmFileOpen", "&Open...", QKeySequence::Open), &QAction::triggered,
            this, [this] { files_->open(); });
    connect(addCommand(*file, "itmFileOpenInNewTab", "Open in &New Tab...", QKeySequence("Ctrl+T")),
            &QAction::triggered, this, [this] { files_->openInNewTab(); });
    itmFileReload_ = addCommand(*file, "itmFileReload", "Re&load");
    connect(itmFileReload_, &QAction::triggered, this, [this] { files_->reload(); });
    connect(addCommand(*file, "itmFileSave", "&Save", QKeySequence::Save), &QAction::triggered,
            this, [this] { files_->save(); });
    connect(addCommand(*file, "itmFileSaveAs", "Save &As...", QKeySequence("Ctrl+Shift+S")),
            &QAction::triggered, this, [this] { files_->saveAs(); });
    connect(addCommand(*file, "itmFileExportBitmap", "&Export Bitmap..."), &QAction::triggered,
            this, [this] { fileExportBitmap(); });
    tiledMaps_ = std::make_unique<TiledMapCommands>(*tabs_, editing_, shared_, *this);
    QMenu* exports = file->addMenu("Expor&t");
    exports->setObjectName("mnuFileExport");
    connect(addCommand(*exports, "itmFileExportTiledMap", "&Tiled Map..."), &QAction::triggered,
            this, [this] { tiledMaps_->exportMap(); });
    QMenu* imports = file->addMenu("&Import");
    imports->setObjectName("mnuFileImport");
    connect(addCommand(*imports, "itmFileImportTiledMap", "&Tiled Map..."), &QAction::triggered,
            this, [this] { tiledMaps_->importMap(); });
    connect(addCommand(*file, "itmFileCloseTab", "&Close Tab", QKeySequence("Ctrl+W")),
            &QAction::triggered, this, [this] {
                releaseModifiers();
                files_->closeTab(tabs_->currentIndex());
            });
    file->addMenu(recent);
    file->addSeparator();
    connect(addCommand(*file, "itmFileExit", "E&xit", QKeySequence("Ctrl+Q")), &QAction::triggered,
            this, [this] {
                releaseModifiers();
                close();
            });
}

void frmMain::buildTabKeys() {
    const std::pair<const char*, int> keys[] = {{"Ctrl+Tab", 1},
                                                {"Ctrl+PgDown", 1},
                                                {"Ctrl+Shift+Tab", -1},
                                                {"Ctrl+Shift+Backtab", -1},
                                                {"Ctrl+PgUp", -1}};
    for (const auto& [key, by] : keys) {
        auto* action = new QAction(this);
        action->setShortcut(QKeySequence(key));
        addAction(action);
        connect(action, &QAction::triggered, this, [this, by] { tabs_->step(by); });
    }
}

LevelDocument* frmMain::currentDocument() const {
    return tabs_->current();
}

LevelView* frmMain::currentView() const {
    return tabs_->currentView();
}

bool frmMain::useConfig(const std::filesystem::path& levelFile, const QString& configuration,
                        bool loadUnknown, QString* failure) {
    return files_->useConfig(levelFile, configuration, loadUnknown, failure);
}

const OpenedLevel* frmMain::openedLevel() const {
    const LevelDocument* document = currentDocument();
    return document != nullptr ? &document->opened() : nullptr;
}

std::int32_t frmMain::renderFlags() const {
    return currentView() != nullptr ? currentView()->renderFlags() : 12;
}

int frmMain::zoom() const {
    return currentView() != nullptr ? currentView()->zoom() : LevelView::usualZoom;
}

std::int32_t frmMain::dragState() const {
    const LevelView* view = currentView();
    if (view == nullptr || !view->dragging()) {
        return 0;
    }
    return view->scrolling() ? 1 : tools_->dragNumber(*view->dragTool());
}

bool frmMain::tileModifierHeld() const {
    return currentView() != nullptr && currentView()->modifiersHeld();
}

const clsBackBuffer& frmMain::levelBuffer() const {
    static const clsBackBuffer none;
    return currentView() != nullptr ? currentView()->backBuffer() : none;
}

bool frmMain::isReadOnly() const {
    return currentDocument() != nullptr && currentDocument()->isReadOnly();
}

void frmMain::editLevel(const std::string& stepName, const std::function<void(clsLevel&)>& change) {
    if (LevelDocument* document = currentDocument()) {
        document->edit(stepName, wholeLevel(document->level()), change,
                       editing_.autoPlacing(stepName));
    }
}

const clsBackBuffer& frmMain::paletteBuffer() const {
    return palette_->backBuffer();
}

const clsCamera& frmMain::levelCamera() const {
    static const clsCamera none;
    return currentView() != nullptr ? currentView()->camera() : none;
}

const clsCamera& frmMain::paletteCamera() const {
    return palette_->camera();
}

const UndoHistory& frmMain::history() const {
    static const UndoHistory none;
    return currentDocument() != nullptr ? currentDocument()->history() : none;
}

const clsSpecial* frmMain::selectedSpecial() const {
    const OpenedLevel* opened = openedLevel();
    return opened != nullptr ? editing_.special(opened->specialSet) : nullptr;
}

const clsRectangle& frmMain::selection() const {
    static const clsRectangle none;
    const clsRectangle* area = currentView() != nullptr ? currentView()->draggedArea() : nullptr;
    return area != nullptr ? *area : none;
}

bool frmMain::selectionVisible() const {
    return currentView() != nullptr && currentView()->draggedArea() != nullptr;
}

void frmMain::keyPressEvent(QKeyEvent* event) {
    LevelView* view = currentView();
    if ((event->key() == Qt::Key_Shift || event->key() == Qt::Key_Control)) {
        if (view != nullptr) {
            view->holdModifiers();
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
    // B, O, U, G, Z, M, K: the View menu's toggles, which the menu runs too.
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
        if (LevelView* view = currentView()) {
            view->modifierReleased();
        }
        return;
    }
    QMainWindow::keyReleaseEvent(event);
}

void frmMain::releaseModifiers() {
    tabs_->releaseModifiers();
}

void frmMain::selectMode(int tabIndex) {
    editing_.mode = tabIndex + 1;
    tabs_->followMode();
    palette_->refresh();
}

void frmMain::closeEvent(QCloseEvent* event) {
    if (!files_->mayClose()) {
        event->ignore();
        return;
    }
    event->accept();
}

void frmMain::dragEnterEvent(QDragEnterEvent* event) {
    if (droppedFile(event->mimeData())) {
        event->acceptProposedAction();
    }
}

void frmMain::dropEvent(QDropEvent* event) {
    const auto file = droppedFile(event->mimeData());
    if (!file) {
        return;
    }
    event->acceptProposedAction();
    files_->openDropped(*file);
}

} // namespace marvek
