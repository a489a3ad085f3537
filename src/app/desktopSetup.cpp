#include "app/desktopSetup.h"

#include "app/SharedObjects.h"
#include "app/commandLine.h"
#include "app/qtPaths.h"
#include "io/FileError.h"

#include <QStandardPaths>

#include <system_error>

namespace marvek {
namespace {

namespace fs = std::filesystem;

fs::path madeAbsolute(const fs::path& path) {
    std::error_code error;
    const fs::path made = fs::absolute(path, error);
    return error ? path : made.lexically_normal();
}

} // namespace

UserFolders standardUserFolders() {
    // The generic locations with our own folder name, so that the folders
    // do not depend on the application's display name.
    return {
        toPath(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)) / "marvek",
        toPath(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)) / "marvek"};
}

QString useProgramFolders(SharedObjects& shared, const ProgramFolders& folders) {
    shared.settingsLocation = folders.settingsFile;
    shared.sampleData = folders.shippedSampleData;
    if (folders.portable) {
        return {};
    }
    std::error_code error;
    fs::create_directories(folders.settingsFile.parent_path(), error);
    if (error) {
        return toQString(folders.settingsFile.parent_path()) +
               ": the folder for the settings could not be made: " +
               QString::fromStdString(error.message());
    }
    // Only a first run copies: a user who removed the copy later meant it.
    const bool firstRun = !fs::exists(folders.settingsFile, error);
    try {
        if (firstRun) {
            shared.sampleData = provideSampleData(folders);
        } else if (folders.userSampleData && fs::is_directory(*folders.userSampleData, error)) {
            shared.sampleData = folders.userSampleData;
        }
    } catch (const FileError& failure) {
        return QString::fromStdString(failure.what());
    }
    return {};
}

void useCommandLine(SharedObjects& shared, const CommandLine& commandLine) {
    if (commandLine.level) {
        const fs::path level = madeAbsolute(*commandLine.level);
        shared.startupLevel = level;
        if (commandLine.configuration) {
            shared.startupConfiguration = commandLine.configuration->toStdString();
        }
        shared.runDataFolder = level.parent_path();
        for (const fs::path& more : commandLine.moreLevels) {
            shared.moreStartupLevels.push_back(madeAbsolute(more));
        }
    }
    if (commandLine.dataFolder) {
        shared.runDataFolder = madeAbsolute(*commandLine.dataFolder);
    }
}

} // namespace marvek
