#pragma once

#include "native/marvek.h"

#include <cstdint>
#include <memory>
#include <utility>

namespace marvek {

// Move-only owner of a native handle; releases it with Destroy when it goes.
template <void (*Destroy)(std::int32_t)> class UniqueHandle {
public:
    UniqueHandle() noexcept = default;
    explicit UniqueHandle(std::int32_t handle) noexcept : handle_(handle) {}
    UniqueHandle(UniqueHandle&& other) noexcept : handle_(other.release()) {}
    UniqueHandle& operator=(UniqueHandle&& other) noexcept {
        reset(other.release());
        return *this;
    }
    UniqueHandle(const UniqueHandle&) = delete;
    UniqueHandle& operator=(const UniqueHandle&) = delete;
    ~UniqueHandle() { reset(); }

    std::int32_t get() const noexcept { return handle_; }
    explicit operator bool() const noexcept { return handle_ != 0; }

    std::int32_t release() noexcept { return std::exchange(handle_, 0); }
    void reset(std::int32_t handle = 0) noexcept {
        const std::int32_t old = std::exchange(handle_, handle);
        if (old != 0 && old != handle) {
            Destroy(old);
        }
    }

private:
    std::int32_t handle_ = 0;
};

using UniqueSurface = UniqueHandle<surfaceDestroy>;
using UniqueFont = UniqueHandle<fontDestroy>;

struct NativeMemoryDeleter {
    void operator()(void* memory) const noexcept { freeMemory(memory); }
};

// Memory the library handed out (impExplode, impImplode).
using NativeMemory = std::unique_ptr<std::uint8_t[], NativeMemoryDeleter>;

} // namespace marvek
