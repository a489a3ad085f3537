#pragma once

#include "native/marvek.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <span>
#include <string>

namespace marvek::test {

// The error the call fails with, if it fails with one of that type.
template <typename Error, typename Call> std::optional<Error> failureOf(Call&& call) {
    try {
        call();
    } catch (const Error& error) {
        return error;
    }
    return std::nullopt;
}

// The text of the error the call must fail with.
template <typename Error, typename Call> std::string whatOf(Call&& call) {
    const auto error = failureOf<Error>(call);
    EXPECT_TRUE(error) << "no error";
    return error ? error->what() : "";
}

struct Pixel {
    std::int32_t x, y;
    std::uint32_t colour;
};

// Each pixel of the surface has its colour.
inline void expectPixels(std::int32_t surface, std::span<const Pixel> pixels) {
    for (const auto& [x, y, colour] : pixels) {
        EXPECT_EQ(surfaceGetPixel(surface, x, y), colour) << "pixel " << x << "," << y;
    }
}
inline void expectPixels(std::int32_t surface, std::initializer_list<Pixel> pixels) {
    expectPixels(surface, std::span(pixels.begin(), pixels.size()));
}

} // namespace marvek::test
