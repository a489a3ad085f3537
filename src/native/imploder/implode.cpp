// The packer's entry point: arguments, the choice of plan, library memory.

#include "native/imploder/implodeSearch.h"
#include "native/imploder/implodeWriter.h"
#include "native/marvek.h"

#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>

namespace marvek::imploder {
namespace {

// Positions are kept in 32 bits, and the header stores the length in 32 bits.
constexpr std::size_t kLongestInput = std::numeric_limits<std::uint32_t>::max() / 2;

std::vector<std::uint8_t> implode(std::span<const std::uint8_t> data, std::int32_t mode) {
    const PackPlan plan = mode == IMP_MODE_BEST ? smallestPlan(data)
                                                : classicPlan(data, static_cast<std::size_t>(mode));
    return writePackedFile(data, plan.parse, plan.table);
}

} // namespace
} // namespace marvek::imploder

extern "C" int32_t impImplode(const uint8_t* data, size_t length, int32_t mode, uint8_t** packed,
                              size_t* packedLength) {
    if (packed == nullptr || packedLength == nullptr) {
        return IMP_ERROR_ARGUMENT;
    }
    *packed = nullptr;
    *packedLength = 0;
    const bool knownMode =
        mode == IMP_MODE_BEST ||
        (mode >= 0 && static_cast<std::size_t>(mode) < marvek::imploder::kClassicModeCount);
    if (data == nullptr || length == 0 || length > marvek::imploder::kLongestInput || !knownMode) {
        return IMP_ERROR_ARGUMENT;
    }
    try {
        const std::vector<std::uint8_t> file = marvek::imploder::implode({data, length}, mode);
        auto* memory = static_cast<uint8_t*>(std::malloc(file.size()));
        if (memory == nullptr) {
            return IMP_ERROR_NO_MEMORY;
        }
        std::memcpy(memory, file.data(), file.size());
        *packed = memory;
        *packedLength = file.size();
        return IMP_OK;
    } catch (const std::bad_alloc&) {
        return IMP_ERROR_NO_MEMORY;
    }
}
