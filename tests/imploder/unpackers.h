#pragma once

// Our unpacker and the independent one, behind the same small interface.

#include "native/marvek.h"

#include <ancient/ancient.hpp>

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace marvek::testing {

struct Unpacked {
    int32_t status = IMP_OK;
    std::vector<std::uint8_t> data;
};

inline Unpacked unpackWithOurs(const std::vector<std::uint8_t>& file) {
    uint8_t* output = nullptr;
    size_t length = 0;
    Unpacked result;
    result.status = impExplode(file.data(), file.size(), &output, &length);
    const std::unique_ptr<uint8_t, void (*)(void*)> owner(output, freeMemory);
    if (output != nullptr) {
        result.data.assign(output, output + length);
    }
    return result;
}

inline std::optional<std::vector<std::uint8_t>>
unpackWithAncient(const std::vector<std::uint8_t>& file) {
    try {
        ancient::Decompressor decompressor(file, true, true);
        return decompressor.decompress(true);
    } catch (const ancient::Error&) {
        return std::nullopt;
    }
}

} // namespace marvek::testing
