// marvek-tool sample-data DIR and draw-resources DIR: the project's own data.
#include "tool/commands.h"
#include "tool/sample/SampleData.h"

#include <cstdio>
#include <exception>

namespace marvek::tool {
namespace {

int runWriter(const Arguments& arguments, const char* usage,
              void (*write)(const std::filesystem::path&)) {
    if (arguments.size() != 1 || arguments[0].empty()) {
        std::fprintf(stderr, "usage: marvek-tool %s\n", usage);
        return 2;
    }
    try {
        write(arguments[0]);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "marvek-tool: %s\n", error.what());
        return 1;
    }
}

} // namespace

int runSampleData(const Arguments& arguments, const char* usage) {
    return runWriter(arguments, usage, sample::writeSampleData);
}

int runDrawResources(const Arguments& arguments, const char* usage) {
    return runWriter(arguments, usage, sample::writeResources);
}

} // namespace marvek::tool
