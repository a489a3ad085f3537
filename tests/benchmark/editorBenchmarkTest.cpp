#include "data/editorBenchmark.h"

#include <gtest/gtest.h>

namespace marvek::test {
namespace {

// A clock that moves on by a fixed step at every reading.
TickClock steppingClock(std::int64_t step) {
    return [now = std::int64_t{1000}, step]() mutable { return now += step; };
}

TEST(EditorBenchmark, RunsEachTestForTwoSecondsAndReportsHalfTheCount) {
    int first = 0;
    int second = 0;
    // 300 ms a reading: the seventh step is the first at 2001 ms or more.
    const std::string text = runBenchmark(
        {{"Render tiles", [&] { ++first; }}, {"Present backbuffer", [&] { ++second; }}},
        steppingClock(300));
    EXPECT_EQ(first, 7);
    EXPECT_EQ(second, 7);
    EXPECT_EQ(text, "Results...\r\n\r\nRender tiles\t3 FPS\r\nPresent backbuffer\t3 FPS\r\n");

    // Exactly 2001 ms ends the test; 2000 does not.
    EXPECT_EQ(countRepetitions([] {}, steppingClock(2001)), 1);
    EXPECT_EQ(countRepetitions([] {}, steppingClock(1000)), 3);
}

TEST(EditorBenchmark, ASlowMachineStillRunsEachTestOnceAndReportsZero) {
    int steps = 0;
    EXPECT_EQ(runBenchmark({{"Render specials", [&] { ++steps; }}}, steppingClock(60'000)),
              "Results...\r\n\r\nRender specials\t0 FPS\r\n");
    EXPECT_EQ(steps, 1);
    EXPECT_EQ(runBenchmark({}, steppingClock(1)), "Results...\r\n\r\n");
}

} // namespace
} // namespace marvek::test
