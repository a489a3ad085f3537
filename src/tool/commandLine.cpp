#include "tool/commandLine.h"

#include <CLI/CLI.hpp>

#include <algorithm>

namespace marvek::tool {
namespace {

// A command's help starts with the usage line the errors show too.
class HelpFormatter : public CLI::Formatter {
public:
    explicit HelpFormatter(std::string usage) : usage_(std::move(usage)) {}

    std::string make_help(const CLI::App* app, std::string, CLI::AppFormatMode) const override {
        return "usage: marvek-tool " + usage_ + "\n\n" + app->get_description() + "\n" +
               make_positionals(app) + make_groups(app, CLI::AppFormatMode::Normal);
    }

    // The usage line already says what each value is.
    std::string make_option_opts(const CLI::Option* option) const override {
        return option->get_required() && !option->get_positional() ? " (required)" : "";
    }

private:
    std::string usage_;
};

std::string toolUsage(bool withSummaries) {
    std::string text = "usage: marvek-tool COMMAND [ARGS]\n"
                       "       marvek-tool COMMAND --help\n"
                       "       marvek-tool --version\n"
                       "commands:\n";
    for (const Command& command : commands()) {
        text += std::string("  ") + command.usage + "\n";
        if (withSummaries) {
            text += std::string("      ") + command.summary + "\n";
        }
    }
    return text;
}

ParsedToolCommandLine ending(int status, std::string text, bool toStandardError) {
    return {nullptr, {status, std::move(text), toStandardError}};
}

// CLI11 checks the values it took before it looks for help, so a call for
// help among mistaken arguments is found first.
bool asksForHelp(const std::vector<std::string>& arguments) {
    const auto end = std::find(arguments.begin(), arguments.end(), "--");
    return std::any_of(arguments.begin(), end, [](const std::string& argument) {
        return argument == "--help" || argument == "-h";
    });
}

ParsedToolCommandLine parseCommand(const Command& command, std::vector<std::string> arguments) {
    CLI::App parser(command.summary, std::string("marvek-tool ") + command.name);
    parser.formatter(std::make_shared<HelpFormatter>(command.usage));
    parser.set_help_flag("-h,--help", "Shows this help.");
    std::unique_ptr<ToolCommand> tool = command.make();
    tool->addArguments(parser);
    if (asksForHelp(arguments)) {
        return ending(0, parser.help(), false);
    }
    // CLI11 takes the arguments last first.
    std::reverse(arguments.begin(), arguments.end());
    try {
        parser.parse(arguments);
    } catch (const CLI::CallForHelp&) {
        return ending(0, parser.help(), false);
    } catch (const CLI::ParseError& error) {
        return ending(exitBadArguments,
                      std::string("marvek-tool ") + command.name + ": " + error.what() +
                          "\nusage: marvek-tool " + command.usage + "\n",
                      true);
    }
    return {std::move(tool), {}};
}

} // namespace

ParsedToolCommandLine parseToolCommandLine(const std::vector<std::string>& arguments,
                                           const std::string& version) {
    if (arguments.empty()) {
        return ending(exitBadArguments, toolUsage(false), true);
    }
    const std::string& name = arguments.front();
    if (name == "--help" || name == "-h" || name == "help") {
        return ending(0, toolUsage(true), false);
    }
    if (name == "--version") {
        return ending(0, "marvek-tool " + version + "\n", false);
    }
    const auto all = commands();
    const auto command = std::find_if(
        all.begin(), all.end(), [&](const Command& candidate) { return name == candidate.name; });
    if (command == all.end()) {
        return ending(exitBadArguments,
                      "marvek-tool: unknown command '" + name + "'\n" + toolUsage(false), true);
    }
    return parseCommand(*command, {arguments.begin() + 1, arguments.end()});
}

} // namespace marvek::tool
