#pragma once

#include "app/modMain.h"

#include <memory>

namespace marvek {

struct SharedObjects;
class frmAbout;
class frmEditPalette;
class frmGraphics;
class frmExportLevel;
class frmMain;
class frmOpenLevel;
class frmOptions;
class frmStatus;
class ModalFocusReturn;

// Every window of the editor, made and dropped as start-up says.
class EditorWindows final : public StartupWindows {
public:
    explicit EditorWindows(SharedObjects& shared);
    ~EditorWindows() override;
    EditorWindows(const EditorWindows&) = delete;
    EditorWindows& operator=(const EditorWindows&) = delete;

    bool showOptions() override;
    void loadWindows() override;
    bool initialLoad() override;
    void unloadWindows() override;

    // Null before loadWindows and after unloadWindows.
    frmMain* mainWindow() const noexcept { return main_.get(); }
    frmOptions& options() const noexcept { return *options_; }
    frmStatus* status() const noexcept { return status_.get(); }
    frmOpenLevel* openLevel() const noexcept { return openLevel_.get(); }

private:
    SharedObjects& shared_;
    std::unique_ptr<ModalFocusReturn> focusReturn_;
    std::unique_ptr<frmOptions> options_;
    std::unique_ptr<frmStatus> status_;
    std::unique_ptr<frmOpenLevel> openLevel_;
    std::unique_ptr<frmExportLevel> exportLevel_;
    std::unique_ptr<frmAbout> about_;
    std::unique_ptr<frmGraphics> graphics_;
    std::unique_ptr<frmEditPalette> editPalette_;
    std::unique_ptr<frmMain> main_;
};

} // namespace marvek
