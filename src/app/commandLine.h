#pragma once

#include <QString>
#include <QStringList>

#include <filesystem>
#include <optional>
#include <vector>

namespace marvek {

// What the editor was asked for on its command line:
//   marvek [LEVEL...] [--config NAME] [--data DIR]
struct CommandLine {
    std::optional<std::filesystem::path> level;
    // The levels after the first, each for a tab of its own.
    std::vector<std::filesystem::path> moreLevels;
    std::optional<QString> configuration;
    std::optional<std::filesystem::path> dataFolder;
};

// The command line asked for no editor: help, the version or a mistake.
struct CommandLineExit {
    int status = 0;
    QString text;
    bool toStandardError = false;
};

inline constexpr int exitBadArguments = 2;

inline const QString commandLineUsage =
    "Usage: marvek [LEVEL...] [--config NAME] [--data DIR] [--help] [--version]";

// arguments include the program's name first, as QCoreApplication gives them.
// Either what to open, or what to print and the status to end with.
struct ParsedCommandLine {
    std::optional<CommandLine> run;
    CommandLineExit exit;
};
ParsedCommandLine parseCommandLine(const QStringList& arguments, const QString& version);

} // namespace marvek
