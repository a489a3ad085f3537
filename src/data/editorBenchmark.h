#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace marvek {

// One of the editor's timed tests: its name in the result and the step it
// repeats.
struct BenchmarkTest {
    std::string name;
    std::function<void()> step;
};

// Milliseconds since any fixed moment, like the system tick count.
using TickClock = std::function<std::int64_t()>;

// Each test runs until this much time has passed since it began.
inline constexpr std::int64_t benchmarkMilliseconds = 2001;

// Repeats step, reading the clock after each, until benchmarkMilliseconds
// have passed since the first; at least once. Returns the count.
std::int64_t countRepetitions(const std::function<void()>& step, const TickClock& clock);

// Runs the tests in order: "Results..." and two line breaks, then for each
// test its name, a tab, the count halved (frames a second over the two
// seconds), " FPS" and a line break. Line breaks are CR LF.
std::string runBenchmark(const std::vector<BenchmarkTest>& tests, const TickClock& clock);

// The steady clock in milliseconds.
std::int64_t steadyTicks();

} // namespace marvek
