#include "tool/benchTiming.h"

#include "native/handles.h"
#include "native/marvek.h"

#include <stdexcept>
#include <string>

namespace marvek::tool {

std::vector<std::uint8_t> packOnce(std::span<const std::uint8_t> data, std::int32_t mode) {
    std::uint8_t* packed = nullptr;
    std::size_t length = 0;
    const std::int32_t status = impImplode(data.data(), data.size(), mode, &packed, &length);
    const NativeMemory owner(packed);
    if (status != IMP_OK) {
        throw std::runtime_error(std::string("the packer failed: ") + impStatusText(status));
    }
    return {packed, packed + length};
}

PackResult timePack(std::span<const std::uint8_t> data, std::int32_t mode) {
    PackResult result;
    result.micros = medianMicros([&] { result.bytes = packOnce(data, mode); }, 3);
    return result;
}

} // namespace marvek::tool
