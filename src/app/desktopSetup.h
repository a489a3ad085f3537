#pragma once

#include "io/programFolders.h"

#include <QString>

namespace marvek {

struct CommandLine;
struct SharedObjects;

// The user's configuration and data folders for Marvek, as the desktop
// names them (~/.config/marvek, ~/.local/share/marvek).
UserFolders standardUserFolders();

// Points the shared objects at this copy's settings file and sample data;
// an installed copy's first run copies the sample data for the user. The
// text of a problem to tell the user, or an empty one.
QString useProgramFolders(SharedObjects& shared, const ProgramFolders& folders);

// The level and data folder named on the command line, for this run only.
void useCommandLine(SharedObjects& shared, const CommandLine& commandLine);

} // namespace marvek
