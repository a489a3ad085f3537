// The main window's Edit menu and editing tools: their entries, the tool
// bar, and the History dock.
#include "ui/frmMain.h"

#include "ui/EditCommands.h"
#include "ui/HistoryPanel.h"
#include "ui/LevelDocument.h"
#include "ui/LevelView.h"
#include "ui/PaletteStrip.h"
#include "ui/PanelDock.h"
#include "ui/ToolBox.h"
#include "ui/frmReplaceTile.h"
#include "ui/systemClipboard.h"

#include <QAction>
#include <QActionGroup>
#include <QLabel>
#include <QMenu>
#include <QStatusBar>
#include <QTabBar>
#include <QToolBar>

namespace marvek {
namespace {

struct ToolEntry {
    frmMain::Tool tool;
    const char* name;
    const char* caption;
    const char* key;
};

constexpr ToolEntry toolEntries[] = {
    {frmMain::Tool::brush, "itmToolBrush", "&Brush", "P"},
    {frmMain::Tool::bucketFill, "itmToolBucketFill", "Bucket &Fill", "F"},
    {frmMain::Tool::select, "itmToolSelect", "&Select", "R"},
};

} // namespace

void frmMain::buildEditing(QMenu& edit) {
    auto* replaceTile = new frmReplaceTile(this);
    edits_ = new EditCommands(
        shared_, editing_, {*replaceTile, dialogs_.editPalette, dialogs_.status},
        [this] { return currentView(); }, *this);
    connect(edits_, &EditCommands::statusMessage, this,
            [this](const QString& text) { statusBar()->showMessage(text); });
    connect(edits_, &EditCommands::brushPasted, this, [this](std::int32_t mode) {
        tabMode_->setCurrentIndex(mode - 1);
        chooseTool(Tool::brush);
        palette_->redraw();
    });

    edit.addSeparator();
    itmEditCut_ = addCommand(edit, "itmEditCut", "Cu&t", QKeySequence::Cut);
    connect(itmEditCut_, &QAction::triggered, edits_, &EditCommands::cut);
    itmEditCopy_ = addCommand(edit, "itmEditCopy", "&Copy", QKeySequence::Copy);
    connect(itmEditCopy_, &QAction::triggered, edits_, &EditCommands::copy);
    QAction* paste = addCommand(edit, "itmEditPaste", "&Paste", QKeySequence::Paste);
    connect(paste, &QAction::triggered, edits_, &EditCommands::paste);
    enableWhileClipboardHoldsCells(*paste);
    itmEditDelete_ = addCommand(edit, "itmEditDelete", "&Delete", QKeySequence(Qt::Key_Delete));
    connect(itmEditDelete_, &QAction::triggered, edits_, &EditCommands::deleteSelection);
    edit.addSeparator();
    connect(addCommand(edit, "itmEditSelectAll", "Select &All", QKeySequence("Ctrl+A")),
            &QAction::triggered, edits_, &EditCommands::selectAll);
    itmEditSelectNone_ =
        addCommand(edit, "itmEditSelectNone", "Select &None", QKeySequence("Ctrl+Shift+A"));
    connect(itmEditSelectNone_, &QAction::triggered, edits_, &EditCommands::selectNone);
    connect(addCommand(edit, "itmEditReplaceTile", "Replace T&ile...", QKeySequence("Ctrl+H")),
            &QAction::triggered, edits_, &EditCommands::replaceTile);
    buildToolActions(edit);

    lblTool_ = new QLabel(this);
    lblTool_->setObjectName("lblTool");
    statusBar()->addPermanentWidget(lblTool_);
    chooseTool(Tool::brush);
}

void frmMain::buildToolActions(QMenu& edit) {
    QMenu* tools = edit.addMenu("T&ools");
    tools->setObjectName("mnuEditTools");
    auto* toolBar = addToolBar("Tools");
    toolBar->setObjectName("tbrTools");
    toolBar->setMovable(false);
    toolBar->setFocusPolicy(Qt::NoFocus);
    toolBar->setToolButtonStyle(Qt::ToolButtonTextOnly);
    auto* group = new QActionGroup(this);
    for (std::size_t i = 0; i < std::size(toolEntries); ++i) {
        const ToolEntry& entry = toolEntries[i];
        QAction* action = addCommand(*tools, entry.name, entry.caption, QKeySequence(entry.key));
        action->setCheckable(true);
        action->setToolTip(QString(entry.caption).remove('&') + " (" + entry.key + ")");
        group->addAction(action);
        toolBar->addAction(action);
        toolActions_[i] = action;
        const Tool tool = entry.tool;
        connect(action, &QAction::triggered, this, [this, tool] { chooseTool(tool); });
    }
}

void frmMain::buildHistoryDock() {
    historyDock_ = new PanelDock("History", "dockHistory", this);
    historyPanel_ = new HistoryPanel(historyDock_);
    historyDock_->setWidget(historyPanel_);
    addDockWidget(Qt::RightDockWidgetArea, historyDock_);
    historyDock_->hide();
    connect(historyPanel_, &HistoryPanel::entryChosen, this,
            [this](int index) { edits_->goToHistoryEntry(index); });
}

void frmMain::editUndo() {
    edits_->undo();
}

void frmMain::editRedo() {
    edits_->redo();
}

void frmMain::chooseTool(Tool tool) {
    // The tool let go of ends its drag; a modifier's gesture goes on.
    if (LevelView* view = currentView()) {
        view->cancelDragOf(tools_->chosen());
    }
    editing_.tool = tool;
    toolActions_[static_cast<std::size_t>(tool)]->setChecked(true);
    lblTool_->setText("Tool: " + tools_->chosen().name());
    if (LevelView* view = currentView()) {
        view->scheduleRedraw();
    }
}

void frmMain::escapeToBrush() {
    if (LevelDocument* document = currentDocument()) {
        document->setSelection(std::nullopt);
    }
    chooseTool(Tool::brush);
    updateSelectionCommands();
}

std::optional<clsRectangle> frmMain::cellSelection() const {
    return edits_->selection();
}

void frmMain::updateSelectionCommands() {
    const bool selected = edits_ != nullptr && edits_->selection().has_value();
    for (QAction* action : {itmEditCut_, itmEditCopy_, itmEditDelete_, itmEditSelectNone_}) {
        if (action != nullptr) {
            action->setEnabled(selected);
        }
    }
}

} // namespace marvek
