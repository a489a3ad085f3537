#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <span>
#include <vector>

namespace marvek::tool {

inline constexpr std::int32_t classicModes = 12;

// Keeps a result alive so that the compiler cannot drop the work behind it.
inline volatile std::uint64_t keptValue = 0;
template <typename T> void keep(const T& value) {
    keptValue = static_cast<std::uint64_t>(value);
}

// The median of several timed runs of step, in microseconds: at least three
// runs, more while they stay within the time budget.
template <typename Step> double medianMicros(Step&& step, int maximumRuns = 15) {
    using Clock = std::chrono::steady_clock;
    constexpr auto budget = std::chrono::milliseconds(250);
    constexpr int minimumRuns = 3;
    step(); // caches and first-touch allocation are not what is measured
    std::vector<double> runs;
    const auto started = Clock::now();
    while (static_cast<int>(runs.size()) < maximumRuns &&
           (static_cast<int>(runs.size()) < minimumRuns || Clock::now() - started < budget)) {
        const auto begin = Clock::now();
        step();
        runs.push_back(std::chrono::duration<double, std::micro>(Clock::now() - begin).count());
    }
    std::nth_element(runs.begin(), runs.begin() + static_cast<std::ptrdiff_t>(runs.size() / 2),
                     runs.end());
    return runs[runs.size() / 2];
}

struct PackResult {
    std::vector<std::uint8_t> bytes;
    double micros = 0;
};

// The packed file of data in a mode (IMP_MODE_BEST or a classic mode).
// Throws std::runtime_error when the packer fails.
std::vector<std::uint8_t> packOnce(std::span<const std::uint8_t> data, std::int32_t mode);

// packOnce and the median time it takes.
PackResult timePack(std::span<const std::uint8_t> data, std::int32_t mode);

} // namespace marvek::tool
