#pragma once

#include <QString>

#include <filesystem>
#include <optional>

namespace marvek {

struct SharedObjects;

// The windows start-up needs, behind an interface because they live in the
// layer above.
class StartupWindows {
public:
    virtual ~StartupWindows() = default;

    // Shows the options dialog modally; false when the user cancelled it.
    virtual bool showOptions() = 0;
    // Makes the editor's windows, the main window last.
    virtual void loadWindows() = 0;
    // The main window opens the default level; false, its message shown,
    // when it does not load (start-up then shows the options again).
    virtual bool initialLoad() = 0;
    // Closes and drops every window.
    virtual void unloadWindows() = 0;

protected:
    StartupWindows() = default;
    StartupWindows(const StartupWindows&) = default;
    StartupWindows& operator=(const StartupWindows&) = default;
};

inline constexpr int exitCancelled = 0;
inline constexpr int exitFailed = 1;

inline const QString firstRunMessage =
    "This appears to be the first time you are running Marvek, or your Marvek configuration "
    "file no longer exists. Please make sure the Thornwick CD32 data path is set up correctly in "
    "the options dialog.";
inline const QString dataPathMessage =
    "Your current Thornwick CD32 data path does not appear to exist or is not valid. Please "
    "adjust it in the options dialog.";

// Start-up up to the main window's first load. nullopt when the editor is
// running; otherwise the program has ended (exitProgram) with that status.
std::optional<int> startProgram(SharedObjects& shared, StartupWindows& windows);

// Drops the windows and the editor font; returns the status to end with.
int exitProgram(SharedObjects& shared, StartupWindows& windows, int status);

// The editor font named by the settings, in the application folder's fonts/.
std::filesystem::path editorFontPath(const SharedObjects& shared);

} // namespace marvek
