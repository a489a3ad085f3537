#include "tool/commands.h"

#include <algorithm>
#include <array>

namespace marvek::tool {

int runInfo(const Arguments& arguments, const char* usage);
int runPack(const Arguments& arguments, const char* usage);
int runUnpack(const Arguments& arguments, const char* usage);
int runSampleData(const Arguments& arguments, const char* usage);
int runDrawResources(const Arguments& arguments, const char* usage);
int runExport(const Arguments& arguments, const char* usage);
int runBench(const Arguments& arguments, const char* usage);
int runGraphics(const Arguments& arguments, const char* usage);
int runOverview(const Arguments& arguments, const char* usage);
int runTmx(const Arguments& arguments, const char* usage);

std::span<const Command> commands() {
    static const std::array<Command, 10> table{{
        {"info", "info LEVEL", runInfo},
        {"pack", "pack IN OUT [--mode 0-11]", runPack},
        {"unpack", "unpack IN OUT", runUnpack},
        {"sample-data", "sample-data DIR", runSampleData},
        {"draw-resources", "draw-resources DIR", runDrawResources},
        {"export",
         "export LEVEL OUT --data DIR --config NAME [--tags a,b,...] [--all-specials] [--app DIR]",
         runExport},
        {"overview", "overview LEVEL OUT.png --data DIR --config NAME [--cell 1-16] [--app DIR]",
         runOverview},
        {"bench", "bench [--data DIR] [--app DIR]", runBench},
        {"graphics",
         "graphics export|import IN OUT --width W --height H --planes P [--offset N] [--count N] "
         "[--across N] [--palette NAME|FILE] [--shift-colours] [--app DIR]",
         runGraphics},
        {"tmx",
         "tmx export LEVEL OUT.tmx|.tmj --data DIR --config NAME [--format "
         "csv|base64|zlib|gzip|zstd|xml] [--app DIR] | tmx import MAP OUT [--base LEVEL]",
         runTmx},
    }};
    return table;
}

bool SplitArguments::hasSwitch(std::string_view name) const {
    return std::find(switches.begin(), switches.end(), name) != switches.end();
}

std::optional<SplitArguments> splitArguments(const Arguments& arguments,
                                             std::initializer_list<std::string_view> switches) {
    SplitArguments split;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        if (std::find(switches.begin(), switches.end(), argument) != switches.end()) {
            split.switches.push_back(argument);
        } else if (argument.starts_with("--")) {
            if (i + 1 == arguments.size()) {
                return std::nullopt;
            }
            split.options.emplace_back(argument, arguments[i + 1]);
            ++i;
        } else {
            split.positional.push_back(argument);
        }
    }
    return split;
}

} // namespace marvek::tool
