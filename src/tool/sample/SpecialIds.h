#pragma once

#include <cstdint>

namespace marvek::sample {

// Special IDs the sample levels use. config/common.cfg defines the shared
// ones and config/worldN.cfg the rest; the two must agree with this list.
namespace special {
// common.cfg
inline constexpr std::uint8_t playerStart = 1;
inline constexpr std::uint8_t levelExit = 2;
inline constexpr std::uint8_t checkpoint = 3;
inline constexpr std::uint8_t extraLife = 4;
inline constexpr std::uint8_t secretArea = 5;
inline constexpr std::uint8_t cameraStop = 6;
// worldN.cfg: the same meaning in every world, drawn in the world's style.
inline constexpr std::uint8_t coin = 10;
inline constexpr std::uint8_t gem = 11;
inline constexpr std::uint8_t spikes = 12;
inline constexpr std::uint8_t liquid = 13;
inline constexpr std::uint8_t walker = 14; // small enemy on the ground
inline constexpr std::uint8_t guard = 15;  // second ground enemy
inline constexpr std::uint8_t flyer = 16;
inline constexpr std::uint8_t spikeBall = 17;
inline constexpr std::uint8_t lift = 18;
inline constexpr std::uint8_t spring = 19;
inline constexpr std::uint8_t key = 20;
inline constexpr std::uint8_t patrolLimit = 21;
inline constexpr std::uint8_t signpost = 22;
inline constexpr std::uint8_t bonusBlock = 23;
inline constexpr std::uint8_t boss = 24; // only world 3 defines it
} // namespace special

} // namespace marvek::sample
