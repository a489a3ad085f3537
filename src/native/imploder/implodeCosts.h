#pragma once

// The packer's view of the format: which distance table a file uses and what
// every field costs in bits, so that parses can be compared before any byte
// is written.

#include "native/imploder/format.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace marvek::imploder {

// Lengths 1 ... 4 may also be sent as a length byte, which always means
// selector 3: the way to end a literal run longer than the short selectors
// allow, or to reach further than they do.
inline constexpr std::uint32_t kByteFormSelector = 3;
inline constexpr std::uint32_t kByteFormBits = 5 + 8;
inline constexpr std::uint32_t kLiteralBits = 8;

class DistanceTable {
public:
    explicit constexpr DistanceTable(const DistanceExtraBits& extraBits)
        : extraBits_(extraBits), bases_(basesFromExtraBits(extraBits)) {
        for (std::size_t s = 0; s < kSelectorCount; ++s) {
            reach_[s] = maximumDistance(extraBits, s);
        }
    }

    static constexpr DistanceTable classic(std::size_t mode) {
        return DistanceTable(kClassicExtraBits[mode]);
    }

    constexpr const DistanceExtraBits& extraBits() const { return extraBits_; }
    constexpr const DistanceBases& bases() const { return bases_; }
    constexpr std::uint32_t reach(std::size_t selector) const { return reach_[selector]; }

    std::uint32_t longestReach() const {
        std::uint32_t longest = 0;
        for (const std::uint32_t r : reach_) {
            longest = std::max(longest, r);
        }
        return longest;
    }

    // The caller makes sure 1 <= distance <= reach(selector).
    constexpr std::uint32_t distanceBits(std::uint32_t distance, std::size_t selector) const {
        const std::uint32_t v = distance - 1;
        if (v < bases_[selector]) {
            return 1 + extraBits_[selector];
        }
        if (v < bases_[4 + selector]) {
            return 2 + extraBits_[4 + selector];
        }
        return 2 + extraBits_[8 + selector];
    }

private:
    DistanceExtraBits extraBits_;
    DistanceBases bases_;
    std::array<std::uint32_t, kSelectorCount> reach_{};
};

// Bits of the match-length code when the length takes its own selector.
constexpr std::uint32_t naturalLengthBits(std::uint32_t length) {
    if (length <= 5) {
        return length - 1; // 0, 10, 110, 1110
    }
    return length <= kLongestShortMatch ? 5 + kShortMatchExtraBits : kByteFormBits;
}

// Bits of the run-length code for a run of `run` literals before a match of
// the given selector; the caller keeps run <= maximumRunBeforeMatch(selector).
constexpr std::uint32_t runBits(std::uint32_t run, std::size_t selector) {
    if (run < kRunBaseMiddle) {
        return 1 + kRunBitsShort[selector];
    }
    if (run < kRunBaseLong[selector]) {
        return 2 + kRunBitsMiddle[selector];
    }
    return 2 + kRunBitsLong[selector];
}

} // namespace marvek::imploder
