#include "io/programFolders.h"

#include "io/FileError.h"

#include <unistd.h>

#include <system_error>

namespace marvek {
namespace {

namespace fs = std::filesystem;

constexpr const char* settingsName = "marvek.cfg";

bool holdsResources(const fs::path& folder) {
    std::error_code error;
    return fs::is_directory(folder / "config", error);
}

bool holdsFiles(const fs::path& folder) {
    std::error_code error;
    return fs::is_directory(folder, error) && !fs::is_empty(folder, error);
}

fs::path withoutTrailingSeparator(fs::path folder) {
    folder = folder.lexically_normal();
    return folder.has_filename() ? folder : folder.parent_path();
}

fs::path installedResources(const fs::path& program) {
    return program.parent_path() / "share" / "marvek";
}

} // namespace

fs::path findResourceFolder(const fs::path& executableFolder) {
    const fs::path program = withoutTrailingSeparator(executableFolder);
    const fs::path installed = installedResources(program);
    return holdsResources(program) || !holdsResources(installed) ? program : installed;
}

bool isWritableFolder(const fs::path& folder) {
    return ::access(folder.c_str(), W_OK | X_OK) == 0;
}

ProgramFolders locateProgramFolders(const fs::path& executableFolder, const UserFolders& user,
                                    bool executableFolderWritable) {
    const fs::path program = withoutTrailingSeparator(executableFolder);
    std::error_code error;
    const bool settingsBeside = fs::exists(program / settingsName, error);
    ProgramFolders folders;
    folders.resourceFolder = findResourceFolder(program);
    // The super-user can write /usr/bin, which does not make it a portable copy.
    const bool resourcesBeside = folders.resourceFolder == program;
    folders.portable = settingsBeside || (executableFolderWritable && resourcesBeside);
    if (folders.portable) {
        folders.settingsFile = program / settingsName;
        const fs::path beside = program.parent_path() / "sample-data";
        if (holdsFiles(beside)) {
            folders.shippedSampleData = beside;
        }
        return folders;
    }
    folders.settingsFile = user.configFolder / settingsName;
    const fs::path shipped = folders.resourceFolder / "sample-data";
    if (holdsFiles(shipped)) {
        folders.shippedSampleData = shipped;
    }
    folders.userSampleData = user.dataFolder / "sample-data";
    return folders;
}

std::optional<fs::path> provideSampleData(const ProgramFolders& folders) {
    if (!folders.userSampleData) {
        return folders.shippedSampleData;
    }
    const fs::path& copy = *folders.userSampleData;
    if (holdsFiles(copy)) {
        return copy;
    }
    if (!folders.shippedSampleData) {
        return std::nullopt;
    }
    // Copied aside and renamed into place, so that a copy cut short is never
    // taken for a complete one.
    const fs::path partial = copy.string() + ".partial";
    std::error_code error;
    fs::remove_all(partial, error);
    fs::create_directories(partial, error);
    if (!error) {
        fs::copy(*folders.shippedSampleData, partial, fs::copy_options::recursive, error);
    }
    if (!error) {
        // The shipped files are read-only; the user's copy is there to be saved.
        for (const auto& entry : fs::recursive_directory_iterator(partial, error)) {
            fs::permissions(entry.path(), fs::perms::owner_write, fs::perm_options::add, error);
        }
    }
    if (!error) {
        fs::remove(copy, error); // an empty folder left in the way
        fs::rename(partial, copy, error);
    }
    if (error) {
        std::error_code ignored;
        fs::remove_all(partial, ignored);
        throw FileError(copy, "the sample data could not be copied here: " + error.message());
    }
    return copy;
}

} // namespace marvek
