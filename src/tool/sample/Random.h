#pragma once

#include <cstdint>

namespace marvek::sample {

// xorshift32: the same numbers on every platform and every run, which keeps
// the sample data byte-for-byte reproducible.
class Random {
public:
    explicit Random(std::uint32_t seed) : state_(seed == 0 ? 0x9E3779B9u : seed) {}

    std::uint32_t next() noexcept {
        state_ ^= state_ << 13;
        state_ ^= state_ >> 17;
        state_ ^= state_ << 5;
        return state_;
    }
    // A whole number from low to high, both included.
    std::int32_t between(std::int32_t low, std::int32_t high) noexcept {
        const auto span = static_cast<std::uint32_t>(high - low) + 1u;
        return low + static_cast<std::int32_t>(next() % span);
    }
    // True about once in `odds` calls.
    bool oneIn(std::uint32_t odds) noexcept { return next() % odds == 0; }

private:
    std::uint32_t state_;
};

} // namespace marvek::sample
