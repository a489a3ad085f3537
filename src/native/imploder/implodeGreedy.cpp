// The classic packer's parse, and the bit count every parse is judged by.

#include "native/imploder/implodeParse.h"

#include <optional>

namespace marvek::imploder {
namespace {

// A short match sent with the length byte only pays off against literals,
// or when the run must end before it grows past what any match can carry.
constexpr std::uint32_t kForcedBreakMargin = kLongestMatch + 1;

bool fits(std::uint32_t distance, std::uint32_t run, std::size_t selector,
          const DistanceTable& table) {
    return distance <= table.reach(selector) && run <= maximumRunBeforeMatch(selector);
}

std::optional<ParsedMatch> longestUsable(std::span<const MatchCandidate> frontier,
                                         std::uint32_t run, const DistanceTable& table) {
    const bool mustBreak = run + kForcedBreakMargin >= maximumRunBeforeMatch(kByteFormSelector);
    for (auto c = frontier.rbegin(); c != frontier.rend(); ++c) {
        const std::uint32_t length = c->length();
        const std::uint32_t distance = c->distance();
        if (length >= kMinimumMatchLength) {
            const ParsedMatch natural{0, length, distance,
                                      static_cast<std::uint32_t>(matchSelector(length))};
            if (fits(distance, run, natural.selector, table)) {
                return natural;
            }
        }
        if (length < 5 && fits(distance, run, kByteFormSelector, table)) {
            const ParsedMatch byteForm{0, length, distance, kByteFormSelector};
            if (mustBreak || matchBits(byteForm, run, table) < kLiteralBits * length) {
                return byteForm;
            }
        }
    }
    return std::nullopt;
}

} // namespace

std::uint32_t matchBits(const ParsedMatch& match, std::uint32_t run, const DistanceTable& table) {
    const std::uint32_t lengthBits = match.selector == kByteFormSelector && match.length < 5
                                         ? kByteFormBits
                                         : naturalLengthBits(match.length);
    return lengthBits + runBits(run, match.selector) +
           table.distanceBits(match.distance, match.selector);
}

Parse greedyParse(const MatchCandidates& candidates, const DistanceTable& table) {
    Parse parse;
    const std::size_t n = candidates.size();
    std::uint32_t run = 0;
    for (std::size_t p = 0; p < n;) {
        if (auto match = longestUsable(candidates.at(p), run, table)) {
            match->position = static_cast<std::uint32_t>(p);
            parse.push_back(*match);
            p += match->length;
            run = 0;
        } else {
            ++p;
            ++run;
        }
    }
    return parse;
}

std::uint64_t streamBits(const Parse& parse, std::size_t dataLength, const DistanceTable& table) {
    std::uint64_t bits = 0;
    std::size_t runStart = 0;
    for (const ParsedMatch& match : parse) {
        const auto run = static_cast<std::uint32_t>(match.position - runStart);
        bits += std::uint64_t{kLiteralBits} * run + matchBits(match, run, table);
        runStart = match.position + match.length;
    }
    return bits + std::uint64_t{kLiteralBits} * (dataLength - runStart);
}

} // namespace marvek::imploder
