// marvek-tool sample-data DIR and draw-resources DIR: the project's own data.
#include "tool/commands.h"
#include "tool/sample/SampleData.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <exception>
#include <filesystem>
#include <string>

namespace marvek::tool {
namespace {

class FolderWriter : public ToolCommand {
public:
    using Write = void (*)(const std::filesystem::path&);
    explicit FolderWriter(Write write) : write_(write) {}

    void addArguments(CLI::App& parser) override {
        parser.add_option("DIR", folder_, "The folder to write; made when missing.")
            ->required()
            ->check(CLI::Validator(
                [](const std::string& name) {
                    return name.empty() ? std::string("the folder's name is empty") : "";
                },
                "", "not empty"));
    }

    int run() override {
        return reportFailure([this] { write_(folder_); });
    }

private:
    Write write_;
    std::string folder_;
};

} // namespace

std::unique_ptr<ToolCommand> makeSampleData() {
    return std::make_unique<FolderWriter>(sample::writeSampleData);
}

std::unique_ptr<ToolCommand> makeDrawResources() {
    return std::make_unique<FolderWriter>(sample::writeResources);
}

} // namespace marvek::tool
