// The parse of fewest bits, by dynamic programming over positions.
//
// level[q] is the cost of the cheapest stream that covers data[0, q) and ends
// with a match (q = 0: nothing yet), minus 8 bits per byte covered. A match
// at m preceded by the literals data[q, m) then costs
//   level[q] + 8 m + runBits(m - q, s) + its own codes,
// and since runBits is a step function of m - q with three steps per
// selector, the best q for each step is a sliding-window minimum of level.

#include "native/imploder/implodeParse.h"

#include <algorithm>
#include <bit>
#include <limits>

namespace marvek::imploder {
namespace {

constexpr std::int64_t kUnreachable = std::numeric_limits<std::int64_t>::max() / 4;
constexpr std::uint32_t kNoPosition = std::numeric_limits<std::uint32_t>::max();
constexpr std::size_t kRunClassCount = 3;

// Minimum of level[q] over q in [m - longest, m - shortest] as m rises by one.
class SlidingMinimum {
public:
    SlidingMinimum(std::uint32_t shortest, std::uint32_t longest)
        : shortest_(shortest), longest_(longest), ring_(std::bit_ceil(longest - shortest + 1)),
          mask_(ring_.size() - 1) {}

    std::uint32_t shortest() const { return shortest_; }
    std::uint32_t longest() const { return longest_; }

    void advance(std::uint32_t m, const std::vector<std::int64_t>& level) {
        if (m >= shortest_) {
            const std::uint32_t q = m - shortest_;
            const std::int64_t value = level[q];
            if (value < kUnreachable) {
                while (count_ > 0 && ring_[(head_ + count_ - 1) & mask_].level >= value) {
                    --count_;
                }
                ring_[(head_ + count_) & mask_] = {value, q};
                ++count_;
            }
        }
        while (count_ > 0 && ring_[head_].position + longest_ < m) {
            head_ = (head_ + 1) & mask_;
            --count_;
        }
    }

    // The window's cheapest position and its level; none when empty.
    std::uint32_t best() const { return count_ > 0 ? ring_[head_].position : kNoPosition; }
    std::int64_t bestLevel() const { return count_ > 0 ? ring_[head_].level : kUnreachable; }

private:
    struct Entry {
        std::int64_t level;
        std::uint32_t position;
    };

    std::uint32_t shortest_;
    std::uint32_t longest_;
    std::vector<Entry> ring_;
    std::size_t mask_;
    std::size_t head_ = 0;
    std::size_t count_ = 0;
};

// The windows of run lengths that cost the same bits, shared where selectors
// agree on them.
class RunWindows {
public:
    RunWindows() {
        for (std::size_t s = 0; s < kSelectorCount; ++s) {
            add(s, 0, 0, kRunBaseMiddle - 1);
            add(s, 1, kRunBaseMiddle, kRunBaseLong[s] - 1);
            add(s, 2, kRunBaseLong[s], maximumRunBeforeMatch(s));
        }
    }

    void advance(std::uint32_t m, const std::vector<std::int64_t>& level) {
        for (SlidingMinimum& window : windows_) {
            window.advance(m, level);
        }
    }

    struct Choice {
        std::int64_t level = kUnreachable;
        std::uint32_t runStart = kNoPosition;
    };

    // The cheapest run start for a match of selector s, its run code included.
    Choice best(std::size_t s) const {
        Choice choice;
        for (std::size_t k = 0; k < kRunClassCount; ++k) {
            const SlidingMinimum& window = windows_[index_[s][k]];
            const std::int64_t total = window.bestLevel() + runBits(window.shortest(), s);
            if (total < choice.level) {
                choice = {total, window.best()};
            }
        }
        return choice;
    }

private:
    void add(std::size_t s, std::size_t k, std::uint32_t shortest, std::uint32_t longest) {
        const auto same = std::find_if(windows_.begin(), windows_.end(), [&](const auto& w) {
            return w.shortest() == shortest && w.longest() == longest;
        });
        index_[s][k] = static_cast<std::size_t>(same - windows_.begin());
        if (same == windows_.end()) {
            windows_.emplace_back(shortest, longest);
        }
    }

    std::vector<SlidingMinimum> windows_;
    std::array<std::array<std::size_t, kRunClassCount>, kSelectorCount> index_{};
};

class OptimalParser {
public:
    OptimalParser(const MatchCandidates& candidates, const DistanceTable& table)
        : candidates_(candidates), table_(table), level_(candidates.size() + 1, kUnreachable),
          steps_(candidates.size() + 1) {
        level_[0] = 0;
    }

    Parse run() {
        const auto n = static_cast<std::uint32_t>(candidates_.size());
        for (std::uint32_t m = 0; m <= n; ++m) {
            windows_.advance(m, level_);
            if (m < n) {
                expand(m);
            }
        }
        return trace();
    }

private:
    // How the cheapest stream ending with a match at position t got there.
    struct Step {
        std::uint32_t runStart = 0;
        std::uint32_t distance = 0;
        std::uint8_t length = 0;
        std::uint8_t selector = 0;
    };

    void expand(std::uint32_t m) {
        const std::span<const MatchCandidate> frontier = candidates_.at(m);
        if (frontier.empty()) {
            return;
        }
        for (std::size_t s = 0; s < kSelectorCount; ++s) {
            choices_[s] = windows_.best(s);
            if (choices_[s].level < kUnreachable) {
                choices_[s].level += std::int64_t{kLiteralBits} * m;
            }
        }
        const std::uint32_t shortLimit = std::min(kLongestShortMatch, frontier.back().length());
        std::size_t source = 0;
        for (std::uint32_t length = 1; length <= shortLimit; ++length) {
            while (frontier[source].length() < length) {
                ++source;
            }
            const std::uint32_t distance = frontier[source].distance();
            if (length >= kMinimumMatchLength) {
                relax(m, {m, length, distance, static_cast<std::uint32_t>(matchSelector(length))});
            }
            if (length < 5) {
                relax(m, {m, length, distance, kByteFormSelector});
            }
        }
        // Longer lengths all cost the same code, so only each source's
        // longest is tried.
        for (const MatchCandidate& c : frontier) {
            if (c.length() > kLongestShortMatch) {
                relax(m, {m, c.length(), c.distance(), kByteFormSelector});
            }
        }
    }

    void relax(std::uint32_t m, const ParsedMatch& match) {
        const RunWindows::Choice& choice = choices_[match.selector];
        if (choice.level >= kUnreachable || match.distance > table_.reach(match.selector)) {
            return;
        }
        const std::uint32_t lengthBits = match.selector == kByteFormSelector && match.length < 5
                                             ? kByteFormBits
                                             : naturalLengthBits(match.length);
        const std::uint32_t end = m + match.length;
        const std::int64_t level = choice.level + lengthBits +
                                   table_.distanceBits(match.distance, match.selector) -
                                   std::int64_t{kLiteralBits} * end;
        if (level < level_[end]) {
            level_[end] = level;
            steps_[end] = {choice.runStart, match.distance, static_cast<std::uint8_t>(match.length),
                           static_cast<std::uint8_t>(match.selector)};
        }
    }

    Parse trace() const {
        const auto last = std::min_element(level_.begin(), level_.end());
        auto end = static_cast<std::uint32_t>(last - level_.begin());
        Parse parse;
        while (end > 0) {
            const Step& step = steps_[end];
            parse.push_back({end - step.length, step.length, step.distance, step.selector});
            end = step.runStart;
        }
        std::reverse(parse.begin(), parse.end());
        return parse;
    }

    const MatchCandidates& candidates_;
    const DistanceTable& table_;
    std::vector<std::int64_t> level_;
    std::vector<Step> steps_;
    RunWindows windows_;
    std::array<RunWindows::Choice, kSelectorCount> choices_{};
};

} // namespace

Parse optimalParse(const MatchCandidates& candidates, const DistanceTable& table) {
    return OptimalParser(candidates, table).run();
}

} // namespace marvek::imploder
