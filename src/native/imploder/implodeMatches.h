#pragma once

// Match finding for the packer. The unpacker rebuilds the data from its end,
// so a match at position p copies from p + distance: sources lie ahead of the
// position, never behind it.

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace marvek::imploder {

// One match ahead of a position: `length` bytes from `distance` bytes further on.
class MatchCandidate {
public:
    MatchCandidate(std::uint32_t length, std::uint32_t distance)
        : packed_((distance << 8) | length) {}

    std::uint32_t length() const { return packed_ & 0xFF; }
    std::uint32_t distance() const { return packed_ >> 8; }

private:
    std::uint32_t packed_; // distances stay below 2^24, lengths below 256
};

struct MatchSearch {
    std::uint32_t maximumDistance = 0;
    // Sources compared per position beyond the nearest byte and pair.
    std::uint32_t searchDepth = 32;
};

// For every position, the matches worth knowing: ordered by distance, each
// longer than the one before, so the cheapest source for any length is the
// first candidate that long.
class MatchCandidates {
public:
    MatchCandidates(std::span<const std::uint8_t> data, const MatchSearch& search);

    std::span<const MatchCandidate> at(std::size_t position) const {
        const std::size_t reversed = bounds_.size() - 1 - position;
        return std::span<const MatchCandidate>(entries_).subspan(
            bounds_[reversed - 1], bounds_[reversed] - bounds_[reversed - 1]);
    }

    std::size_t size() const { return bounds_.size() - 1; }

private:
    // Filled from the last position to the first: entries of position p
    // are entries_[bounds_[n - 1 - p] ... bounds_[n - p]).
    std::vector<MatchCandidate> entries_;
    std::vector<std::uint32_t> bounds_;
};

} // namespace marvek::imploder
