#include "tool/commands.h"

#include <array>

namespace marvek::tool {

int runInfo(const Arguments& arguments, const char* usage);
int runPack(const Arguments& arguments, const char* usage);
int runUnpack(const Arguments& arguments, const char* usage);
int runSampleData(const Arguments& arguments, const char* usage);
int runDrawResources(const Arguments& arguments, const char* usage);

std::span<const Command> commands() {
    static const std::array<Command, 5> table{{
        {"info", "info LEVEL", runInfo},
        {"pack", "pack IN OUT [--mode 0-11]", runPack},
        {"unpack", "unpack IN OUT", runUnpack},
        {"sample-data", "sample-data DIR", runSampleData},
        {"draw-resources", "draw-resources DIR", runDrawResources},
    }};
    return table;
}

} // namespace marvek::tool
