#pragma once

#include <filesystem>
#include <optional>

namespace marvek {

// The per-user folders an installed copy keeps its settings and data in.
struct UserFolders {
    std::filesystem::path configFolder; // e.g. ~/.config/marvek
    std::filesystem::path dataFolder;   // e.g. ~/.local/share/marvek
};

// Where one copy of the program finds its resources and keeps its settings.
struct ProgramFolders {
    // A build tree or an unpacked archive: everything beside the executable.
    bool portable = true;
    // Holds config/, fonts/, pal/, bitmaps/ and faq/.
    std::filesystem::path resourceFolder;
    std::filesystem::path settingsFile;
    // The sample data that ships with the program, when there is some; an
    // installed copy's is read-only.
    std::optional<std::filesystem::path> shippedSampleData;
    // Where an installed copy keeps the user's own copy of the sample data.
    std::optional<std::filesystem::path> userSampleData;
};

// The folder beside the executable when it holds the resources, else the
// installed ../share/marvek when that does.
std::filesystem::path findResourceFolder(const std::filesystem::path& executableFolder);

// True when a file can be made in the folder.
bool isWritableFolder(const std::filesystem::path& folder);

// Portable when marvek.cfg lies beside the executable, or the folder is
// writable and holds the resources itself; otherwise the resources are the
// installed ones in ../share/marvek and the settings and data the user's.
ProgramFolders locateProgramFolders(const std::filesystem::path& executableFolder,
                                    const UserFolders& user, bool executableFolderWritable);

// Copies the shipped sample data to the user's folder when the user has no
// copy yet, so that the sample levels can be saved. Returns the folder to
// offer, or nothing when there is none. Throws FileError naming the folder.
std::optional<std::filesystem::path> provideSampleData(const ProgramFolders& folders);

} // namespace marvek
