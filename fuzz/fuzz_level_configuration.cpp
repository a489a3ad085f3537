// readLevelConfiguration on arbitrary files: a file either gives its tile
// set and sprite set or fails with an error naming it.
#include "common/scratch.h"
#include "configuration/ConfigurationError.h"
#include "data/levelConfiguration.h"
#include "io/FileError.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const marvek::fuzz::ScratchFolder scratch;
    const auto path = scratch.write("world.cfg", data, size);
    try {
        marvek::readLevelConfiguration(path);
    } catch (const marvek::FileError& error) {
        if (error.path() != path) {
            std::abort();
        }
    } catch (const marvek::ConfigurationError&) {
    }
    return 0;
}
