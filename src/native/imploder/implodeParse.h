#pragma once

// Parsing: deciding which stretches of the data become matches. Everything
// between two matches is a literal run; the run after the last match is the
// file's first run, which may have any length.

#include "native/imploder/implodeCosts.h"
#include "native/imploder/implodeMatches.h"

#include <cstdint>
#include <vector>

namespace marvek::imploder {

struct ParsedMatch {
    std::uint32_t position = 0;
    std::uint32_t length = 0;
    std::uint32_t distance = 0;
    std::uint32_t selector = 0; // 3 for lengths 1 ... 4 means the length byte
};

using Parse = std::vector<ParsedMatch>;

// The longest usable match at each position, as the classic packer did.
Parse greedyParse(const MatchCandidates& candidates, const DistanceTable& table);

// The parse of fewest bits for this table among the candidates' matches.
Parse optimalParse(const MatchCandidates& candidates, const DistanceTable& table);

// The exact number of bits the stream of this parse takes (literals, codes and
// length bytes), so that parses can be compared without writing them.
std::uint64_t streamBits(const Parse& parse, std::size_t dataLength, const DistanceTable& table);

// Bits of one match's codes, run-length code included.
std::uint32_t matchBits(const ParsedMatch& match, std::uint32_t run, const DistanceTable& table);

} // namespace marvek::imploder
