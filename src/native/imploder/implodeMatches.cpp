#include "native/imploder/implodeMatches.h"

#include "native/imploder/format.h"

#include <algorithm>
#include <array>

namespace marvek::imploder {
namespace {

constexpr std::uint32_t kNone = UINT32_MAX;
constexpr unsigned kTripleHashBits = 16;

std::uint32_t tripleHash(const std::uint8_t* bytes) {
    const std::uint32_t key =
        (std::uint32_t{bytes[0]} << 16) | (std::uint32_t{bytes[1]} << 8) | std::uint32_t{bytes[2]};
    return (key * 2654435761u) >> (32 - kTripleHashBits);
}

// Walks the data from its end to its start, so that every position's sources
// (all further on) are already indexed when it is searched. Positions sharing
// their first three bytes form a binary tree ordered by the bytes that follow,
// the nearest position at the root: a walk down the tree meets ever longer
// matches at ever larger distances, exactly the candidates worth keeping.
class BackwardMatchFinder {
public:
    BackwardMatchFinder(std::span<const std::uint8_t> data, const MatchSearch& search)
        : data_(data), search_(search), padded_(data.size() + kLongestMatch + 1, 0),
          children_(2 * data.size(), kNone) {
        // Comparisons may run past the end; the padding keeps them inside
        // memory, and reported lengths are cut back to the real data.
        std::copy(data.begin(), data.end(), padded_.begin());
        byteHeads_.fill(kNone);
        pairHeads_.assign(std::size_t{1} << 16, kNone);
        tripleHeads_.assign(std::size_t{1} << kTripleHashBits, kNone);
    }

    // The candidates of position i; indexes i as well.
    void find(std::uint32_t i, std::vector<MatchCandidate>& out) {
        found_.clear();
        const std::size_t n = data_.size();
        const std::uint32_t sameByte = byteHeads_[data_[i]];
        consider(i, sameByte);
        byteHeads_[data_[i]] = i;
        if (i + 1 < n) {
            const std::uint32_t key = (std::uint32_t{data_[i]} << 8) | data_[i + 1];
            if (pairHeads_[key] != sameByte) {
                consider(i, pairHeads_[key]);
            }
            pairHeads_[key] = i;
        }
        if (i + 2 < n) {
            const std::uint32_t hash = tripleHash(&data_[i]);
            const std::uint32_t root = tripleHeads_[hash];
            tripleHeads_[hash] = i;
            descend(i, root);
        }
        keepImprovingByDistance(out);
    }

private:
    struct Found {
        std::uint32_t length = 0;
        std::uint32_t distance = 0;
    };

    std::uint32_t realLength(std::uint32_t length, std::uint32_t source) const {
        return static_cast<std::uint32_t>(std::min<std::size_t>(length, data_.size() - source));
    }

    void consider(std::uint32_t i, std::uint32_t source) {
        if (source == kNone || source - i > search_.maximumDistance) {
            return;
        }
        std::uint32_t length = 0;
        while (length < kLongestMatch && padded_[i + length] == padded_[source + length]) {
            ++length;
        }
        found_.push_back({realLength(length, source), source - i});
    }

    // Inserts i as the new root of its tree, splitting the old tree into the
    // positions whose bytes sort below i's and those that sort above.
    void descend(std::uint32_t i, std::uint32_t source) {
        std::uint32_t* below = &children_[2 * std::size_t{i}];
        std::uint32_t* above = below + 1;
        std::uint32_t belowLength = 0;
        std::uint32_t aboveLength = 0;
        std::uint32_t best = 0;
        const std::uint8_t* current = &padded_[i];
        for (std::uint32_t depth = 0;; ++depth) {
            if (source == kNone || source - i > search_.maximumDistance ||
                depth == search_.searchDepth) {
                *below = kNone;
                *above = kNone;
                return;
            }
            const std::uint8_t* candidate = &padded_[source];
            std::uint32_t length = std::min(belowLength, aboveLength);
            while (length < kLongestMatch && candidate[length] == current[length]) {
                ++length;
            }
            std::uint32_t* pair = &children_[2 * std::size_t{source}];
            if (length > best) {
                best = length;
                found_.push_back({realLength(length, source), source - i});
                if (length == kLongestMatch) {
                    // Equal as far as we look: source takes i's place.
                    *below = pair[0];
                    *above = pair[1];
                    return;
                }
            }
            if (candidate[length] < current[length]) {
                *below = source;
                below = pair + 1;
                source = *below;
                belowLength = length;
            } else {
                *above = source;
                above = pair;
                source = *above;
                aboveLength = length;
            }
        }
    }

    void keepImprovingByDistance(std::vector<MatchCandidate>& out) {
        std::sort(found_.begin(), found_.end(), [](const Found& a, const Found& b) {
            return a.distance != b.distance ? a.distance < b.distance : a.length > b.length;
        });
        std::uint32_t longest = 0;
        for (const Found& f : found_) {
            if (f.length > longest) {
                longest = f.length;
                out.emplace_back(f.length, f.distance);
            }
        }
    }

    std::span<const std::uint8_t> data_;
    MatchSearch search_;
    std::vector<std::uint8_t> padded_;
    std::array<std::uint32_t, 256> byteHeads_{};
    std::vector<std::uint32_t> pairHeads_;
    std::vector<std::uint32_t> tripleHeads_;
    std::vector<std::uint32_t> children_;
    std::vector<Found> found_;
};

} // namespace

MatchCandidates::MatchCandidates(std::span<const std::uint8_t> data, const MatchSearch& search) {
    bounds_.reserve(data.size() + 1);
    bounds_.push_back(0);
    BackwardMatchFinder finder(data, search);
    std::vector<MatchCandidate> position;
    for (std::size_t i = data.size(); i-- > 0;) {
        position.clear();
        finder.find(static_cast<std::uint32_t>(i), position);
        entries_.insert(entries_.end(), position.begin(), position.end());
        bounds_.push_back(static_cast<std::uint32_t>(entries_.size()));
    }
}

} // namespace marvek::imploder
