#include "native/imploder/implodeSearch.h"

#include <algorithm>
#include <numeric>
#include <optional>

namespace marvek::imploder {
namespace {

// Enough sources to find the long repeats of level and bitplane data;
// more buys little and costs time.
constexpr std::uint32_t kClassicSearchDepth = 64;
constexpr std::uint32_t kBestSearchDepth = 128;
// Classic tables parsed optimally after the greedy ranking, and rounds of
// fitting tables to a parse.
constexpr std::size_t kOptimalStarts = 2;
constexpr std::size_t kFittingRounds = 2;

std::size_t effectiveMode(std::size_t dataLength, std::size_t mode) {
    for (std::size_t smaller = 0; smaller < mode; ++smaller) {
        if (kClassicWindows[smaller] >= dataLength) {
            return smaller;
        }
    }
    return mode;
}

std::uint32_t longestClassicReach() {
    std::uint32_t longest = 0;
    for (std::size_t mode = 0; mode < kClassicModeCount; ++mode) {
        longest = std::max(longest, DistanceTable::classic(mode).longestReach());
    }
    return longest;
}

struct Scored {
    PackPlan plan;
    std::uint64_t bits = 0;
};

void keepSmaller(std::optional<Scored>& best, Scored&& next) {
    if (!best || next.bits < best->bits) {
        best = std::move(next);
    }
}

DistanceTable fittedTable(const PackPlan& plan) {
    return DistanceTable(fittedExtraBits(plan.parse, plan.table));
}

Scored scoredOptimal(const MatchCandidates& candidates, const DistanceTable& table) {
    Parse parse = optimalParse(candidates, table);
    const std::uint64_t bits = streamBits(parse, candidates.size(), table);
    return {{table, std::move(parse)}, bits};
}

std::vector<std::size_t> modesRankedByGreedy(const MatchCandidates& candidates) {
    std::array<std::uint64_t, kClassicModeCount> bits{};
    for (std::size_t mode = 0; mode < kClassicModeCount; ++mode) {
        const DistanceTable table = DistanceTable::classic(mode);
        bits[mode] = streamBits(greedyParse(candidates, table), candidates.size(), table);
    }
    std::vector<std::size_t> modes(kClassicModeCount);
    std::iota(modes.begin(), modes.end(), 0);
    std::stable_sort(modes.begin(), modes.end(),
                     [&](std::size_t a, std::size_t b) { return bits[a] < bits[b]; });
    return modes;
}

// Distances used with one selector, counted by distance.
class DistanceHistogram {
public:
    void add(std::uint32_t distance) {
        if (distance >= counts_.size()) {
            counts_.resize(distance + 1, 0);
        }
        ++counts_[distance];
    }

    bool empty() const { return counts_.empty(); }
    std::uint32_t longest() const { return static_cast<std::uint32_t>(counts_.size() - 1); }

    // Turns the counts into "how many are at most d".
    void accumulate() { std::partial_sum(counts_.begin(), counts_.end(), counts_.begin()); }

    std::uint64_t atMost(std::uint64_t distance) const {
        return counts_[static_cast<std::size_t>(std::min<std::uint64_t>(distance, longest()))];
    }

private:
    std::vector<std::uint64_t> counts_;
};

struct SelectorBits {
    std::uint8_t near = 0;
    std::uint8_t middle = 0;
    std::uint8_t far = 0;
};

// Bounds that keep the bases within 16 bits, as the format stores them.
constexpr unsigned kMostNearBits = 15;
constexpr unsigned kMostFarBits = 17;

SelectorBits fitSelector(const DistanceHistogram& histogram) {
    const std::uint64_t total = histogram.atMost(histogram.longest());
    SelectorBits best;
    std::uint64_t bestBits = UINT64_MAX;
    for (unsigned a = 1; a <= kMostNearBits; ++a) {
        for (unsigned b = 1; b <= kMostNearBits; ++b) {
            const std::uint64_t middleEnd = (1u << a) + (1u << b);
            if (middleEnd > 0xFFFF) {
                continue;
            }
            const std::uint64_t nearCount = histogram.atMost(1u << a);
            const std::uint64_t middleCount = histogram.atMost(middleEnd) - nearCount;
            const std::uint64_t farCount = total - nearCount - middleCount;
            for (unsigned c = 1; c <= kMostFarBits; ++c) {
                if (middleEnd + (1u << c) < histogram.longest()) {
                    continue;
                }
                const std::uint64_t bits =
                    (1 + a) * nearCount + (2 + b) * middleCount + (2 + c) * farCount;
                if (bits < bestBits) {
                    bestBits = bits;
                    best = {static_cast<std::uint8_t>(a), static_cast<std::uint8_t>(b),
                            static_cast<std::uint8_t>(c)};
                }
                break; // a larger c only costs more
            }
        }
    }
    return best;
}

} // namespace

DistanceExtraBits fittedExtraBits(const Parse& parse, const DistanceTable& current) {
    std::array<DistanceHistogram, kSelectorCount> histograms;
    for (const ParsedMatch& match : parse) {
        histograms[match.selector].add(match.distance);
    }
    DistanceExtraBits extraBits = current.extraBits();
    for (std::size_t s = 0; s < kSelectorCount; ++s) {
        if (histograms[s].empty()) {
            continue;
        }
        histograms[s].accumulate();
        const SelectorBits fitted = fitSelector(histograms[s]);
        extraBits[s] = fitted.near;
        extraBits[4 + s] = fitted.middle;
        extraBits[8 + s] = fitted.far;
    }
    return extraBits;
}

PackPlan classicPlan(std::span<const std::uint8_t> data, std::size_t mode) {
    const std::size_t used = effectiveMode(data.size(), mode);
    const MatchCandidates candidates(data, {kClassicWindows[used], kClassicSearchDepth});
    const DistanceTable table = DistanceTable::classic(used);
    return {table, greedyParse(candidates, table)};
}

PackPlan smallestPlan(std::span<const std::uint8_t> data) {
    const MatchCandidates candidates(data, {longestClassicReach(), kBestSearchDepth});
    const std::vector<std::size_t> ranked = modesRankedByGreedy(candidates);
    // Every start gets fitted tables: the best classic start is not always
    // the one whose fitted tables do best.
    std::optional<Scored> best;
    for (std::size_t i = 0; i < kOptimalStarts; ++i) {
        Scored start = scoredOptimal(candidates, DistanceTable::classic(ranked[i]));
        Scored fitted = scoredOptimal(candidates, fittedTable(start.plan));
        keepSmaller(best, std::move(start));
        keepSmaller(best, std::move(fitted));
    }
    for (std::size_t round = 1; round < kFittingRounds; ++round) {
        Scored next = scoredOptimal(candidates, fittedTable(best->plan));
        if (next.bits >= best->bits) {
            break;
        }
        best = std::move(next);
    }
    return std::move(best->plan);
}

} // namespace marvek::imploder
