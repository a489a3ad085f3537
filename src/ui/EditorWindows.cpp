#include "ui/EditorWindows.h"

#include "ui/ModalFocusReturn.h"
#include "ui/frmAbout.h"
#include "ui/frmEditPalette.h"
#include "ui/frmExportLevel.h"
#include "ui/frmGraphics.h"
#include "ui/frmMain.h"
#include "ui/frmOpenLevel.h"
#include "ui/frmOptions.h"
#include "ui/frmStatus.h"

#include <QApplication>
#include <QIcon>

namespace marvek {
namespace {

// The package's icon, built into the program; every window shows it.
QIcon programIcon() {
    QIcon icon;
    icon.addFile(":/icons/marvek-48.png", QSize(48, 48));
    icon.addFile(":/icons/marvek-256.png", QSize(256, 256));
    return icon;
}

} // namespace

EditorWindows::EditorWindows(SharedObjects& shared)
    : shared_(shared), focusReturn_(std::make_unique<ModalFocusReturn>(
                           [this]() -> QWidget* { return main_.get(); })),
      options_(std::make_unique<frmOptions>(shared)) {}

EditorWindows::~EditorWindows() {
    unloadWindows();
}

bool EditorWindows::showOptions() {
    return options_->showModal();
}

void EditorWindows::loadWindows() {
    QApplication::setWindowIcon(programIcon());
    status_ = std::make_unique<frmStatus>();
    openLevel_ = std::make_unique<frmOpenLevel>(shared_);
    exportLevel_ = std::make_unique<frmExportLevel>();
    about_ = std::make_unique<frmAbout>();
    graphics_ = std::make_unique<frmGraphics>(shared_);
    editPalette_ = std::make_unique<frmEditPalette>(shared_);
    main_ = std::make_unique<frmMain>(shared_,
                                      MainDialogs{*status_, *openLevel_, *options_, *exportLevel_,
                                                  *about_, *graphics_, *editPalette_});
}

bool EditorWindows::initialLoad() {
    main_->show();
    // Keys reach the editor at once, also on a display without a window
    // manager to give it the focus.
    main_->activateWindow();
    return main_->initialLoad();
}

void EditorWindows::unloadWindows() {
    // The main window goes first: it refers to the others.
    main_.reset();
    editPalette_.reset();
    graphics_.reset();
    about_.reset();
    exportLevel_.reset();
    openLevel_.reset();
    status_.reset();
}

} // namespace marvek
