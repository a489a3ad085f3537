// The main window: its controls, menus, tabs and keys.
#include "ui/frmMain.h"

#include "app/SharedObjects.h"
#include "app/autosave.h"
#include "app/clsMessageBox.h"
#include "app/qtPaths.h"
#include "data/cellRange.h"
#include "data/openLevel.h"
#include "ui/EditCommands.h"
#include "ui/LevelDocument.h"
#include "ui/LevelView.h"
#include "ui/PaletteStrip.h"
#include "ui/PictureBox.h"
#include "ui/TiledMapCommands.h"
#include "ui/ToolBox.h"
#include "ui/ViewMenu.h"
#include "ui/windowPlacement.h"

#include <QBoxLayout>
#include <QCloseEvent>
#include <QFileInfo>
#include <QKeyEvent>
#include <QMenuBar>
#include <QMouseEvent>
#include <QScrollBar>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTabBar>

namespace marvek {
namespace {

constexpr int margin = 4;

const QString closingQuestion = "The level has been modified since you last saved it. Do you "
                                "want to save it before quitting?";

// Closes a tab on a middle click.
class MiddleClickClose : public QObject {
public:
    MiddleClickClose(QTabBar& bar, std::function<void(int)> close)
        : QObject(&bar), bar_(bar), close_(std::move(close)) {
        bar.installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() != QEvent::MouseButtonRelease) {
            return false;
        }
        const auto* mouse = static_cast<QMouseEvent*>(event);
        const int index = bar_.tabAt(mouse->position().toPoint());
        if (mouse->button() != Qt::MiddleButton || index < 0) {
            return false;
        }
        close_(index);
        return true;
    }

private:
    QTabBar& bar_;
    std::function<void(int)> close_;
};

} // namespace

frmMain::frmMain(SharedObjects& shared, MainDialogs dialogs, QWidget* parent)
    : QMainWindow(parent), shared_(shared), dialogs_(dialogs),
      makeTimer_([] { return std::make_unique<QtSingleShotTimer>(); }) {
    setObjectName("frmMain");
    setWindowTitle(QString(applicationTitle) + "[*]");
    buildWindow();
    buildMenus();
    buildDesktopSupport();
    statusBar()->setObjectName("statusBar");
    fitToScreen(*this, QSize(1280, 800));
    updateCommands();
}

frmMain::~frmMain() {
    // The views refer to their documents.
    while (views_->count() > 0) {
        delete views_->widget(0);
    }
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
    tabLevels_ = new QTabBar(central);
    tabLevels_->setObjectName("tabLevels");
    tabLevels_->setFocusPolicy(Qt::NoFocus);
    tabLevels_->setDocumentMode(true);
    tabLevels_->setExpanding(false);
    views_ = new QStackedWidget(central);
    views_->setObjectName("views");
    palette_ = new PaletteStrip(editing_, shared_.editorFont, central);
    palette_->setObjectName("paletteStrip");

    // The mode tabs and the level tabs share the top row; the palette strip
    // stands beside the view, as tall as its picture.
    auto* top = new QHBoxLayout;
    top->setSpacing(4 * margin);
    top->addWidget(tabMode_);
    top->addWidget(tabLevels_, 1, Qt::AlignBottom);
    auto* strip = new QVBoxLayout;
    strip->setSpacing(0);
    strip->addWidget(palette_, 1);
    strip->addSpacing(QScrollBar(Qt::Horizontal).sizeHint().height());
    auto* row = new QHBoxLayout;
    row->setSpacing(margin);
    row->addWidget(views_, 1);
    row->addLayout(strip);
    auto* column = new QVBoxLayout(central);
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(0);
    column->addLayout(top);
    column->addLayout(row, 1);
    setFocusPolicy(Qt::StrongFocus);

    connect(tabMode_, &QTabBar::currentChanged, this, &frmMain::selectMode);
    connect(tabLevels_, &QTabBar::currentChanged, this, [this](int index) {
        if (index >= 0 && index < views_->count()) {
            views_->setCurrentIndex(index);
            documentShown();
        }
    });
    new MiddleClickClose(*tabLevels_, [this](int index) { closeTab(index); });
    connect(palette_, &PaletteStrip::brushChosen, this, [this] {
        if (LevelView* view = currentView()) {
            view->scheduleRedraw();
        }
    });
    buildPanels();
    // The least of the level view a small window keeps (5 x 3 cells at
    // 200 %): the panels beside it give way first.
    views_->setMinimumSize(
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
    connect(addCommand(*file, "itmFileOpen", "&Open...", QKeySequence::Open), &QAction::triggered,
            this, [this] { fileOpen(); });
    connect(addCommand(*file, "itmFileOpenInNewTab", "Open in &New Tab...", QKeySequence("Ctrl+T")),
            &QAction::triggered, this, [this] { fileOpenInNewTab(); });
    itmFileReload_ = addCommand(*file, "itmFileReload", "Re&load");
    connect(itmFileReload_, &QAction::triggered, this, [this] { fileReload(); });
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
    connect(addCommand(*file, "itmFileCloseTab", "&Close Tab", QKeySequence("Ctrl+W")),
            &QAction::triggered, this, [this] {
                releaseModifiers();
                closeTab(currentTab());
            });
    file->addSeparator();
    connect(addCommand(*file, "itmFileExit", "E&xit", QKeySequence("Ctrl+Q")), &QAction::triggered,
            this, [this] {
                releaseModifiers();
                close();
            });
}

void frmMain::buildTabKeys() {
    const auto step = [this](int by) {
        if (tabCount() > 1) {
            switchToTab((currentTab() + by + tabCount()) % tabCount());
        }
    };
    const std::pair<const char*, int> keys[] = {{"Ctrl+Tab", 1},
                                                {"Ctrl+PgDown", 1},
                                                {"Ctrl+Shift+Tab", -1},
                                                {"Ctrl+Shift+Backtab", -1},
                                                {"Ctrl+PgUp", -1}};
    for (const auto& [key, by] : keys) {
        auto* action = new QAction(this);
        action->setShortcut(QKeySequence(key));
        addAction(action);
        connect(action, &QAction::triggered, this, [step, by] { step(by); });
    }
}

LevelDocument* frmMain::currentDocument() const {
    const int index = currentTab();
    return index >= 0 && std::size_t(index) < documents_.size() ? documents_[index].get() : nullptr;
}

LevelView* frmMain::currentView() const {
    return qobject_cast<LevelView*>(views_->currentWidget());
}

int frmMain::tabCount() const {
    return static_cast<int>(documents_.size());
}

int frmMain::currentTab() const {
    return tabLevels_->currentIndex();
}

void frmMain::switchToTab(int index) {
    releaseModifiers();
    tabLevels_->setCurrentIndex(index);
}

bool frmMain::closeTab(int index) {
    if (index < 0 || index >= tabCount() || tabCount() == 1) {
        return false;
    }
    LevelDocument& document = *documents_[std::size_t(index)];
    bool cancelled = false;
    if (!saveIfModified(document, closingQuestion, &cancelled) || cancelled) {
        return false;
    }
    if (document.modified()) {
        document.dropRecoveryCopy();
    }
    QWidget* view = views_->widget(index);
    views_->removeWidget(view);
    delete view;
    documents_.erase(documents_.begin() + index);
    tabLevels_->removeTab(index);
    documentShown();
    return true;
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
    if (LevelView* view = currentView()) {
        view->releaseModifiers();
    }
}

void frmMain::selectMode(int tabIndex) {
    editing_.mode = tabIndex + 1;
    for (int i = 0; i < views_->count(); ++i) {
        qobject_cast<LevelView*>(views_->widget(i))->followMode();
    }
    palette_->refresh();
}

bool frmMain::mayClose() {
    for (std::size_t i = 0; i < documents_.size(); ++i) {
        LevelDocument& document = *documents_[i];
        if (!document.modified()) {
            continue;
        }
        // The question is about the level the user sees.
        switchToTab(static_cast<int>(i));
        bool cancelled = false;
        if (!saveIfModified(document, closingQuestion, &cancelled) || cancelled) {
            return false;
        }
    }
    // Still modified: the user chose to close without saving.
    for (const auto& document : documents_) {
        if (document->modified()) {
            document->dropRecoveryCopy();
        }
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

QString frmMain::keepUnsavedWork() {
    QStringList kept;
    for (const auto& document : documents_) {
        if (const QString text = document->keepUnsavedWork(); !text.isEmpty()) {
            kept << text;
        }
    }
    return kept.join('\n');
}

} // namespace marvek
