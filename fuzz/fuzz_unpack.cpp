// impExplode on arbitrary bytes: it must refuse or decode without touching
// memory outside its buffers, and whatever it accepts ancient must decode to
// the same bytes.
#include "native/marvek.h"

#include <ancient/ancient.hpp>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    uint8_t* output = nullptr;
    size_t length = 0;
    const int32_t status = impExplode(data, size, &output, &length);
    const std::unique_ptr<uint8_t, void (*)(void*)> owner(output, freeMemory);
    if (status != IMP_OK) {
        return 0;
    }
    try {
        const std::vector<uint8_t> file(data, data + size);
        ancient::Decompressor decompressor(file, true, true);
        const std::vector<uint8_t> theirs = decompressor.decompress(true);
        if (theirs.size() != length || std::memcmp(theirs.data(), output, length) != 0) {
            std::abort();
        }
    } catch (const ancient::Error&) {
        std::abort();
    }
    return 0;
}
