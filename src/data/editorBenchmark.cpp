#include "data/editorBenchmark.h"

#include <chrono>

namespace marvek {

std::int64_t countRepetitions(const std::function<void()>& step, const TickClock& clock) {
    const std::int64_t start = clock();
    std::int64_t count = 0;
    do {
        step();
        ++count;
    } while (clock() - start < benchmarkMilliseconds);
    return count;
}

std::string runBenchmark(const std::vector<BenchmarkTest>& tests, const TickClock& clock) {
    std::string text = "Results...\r\n\r\n";
    for (const BenchmarkTest& test : tests) {
        const std::int64_t framesPerSecond = countRepetitions(test.step, clock) / 2;
        text += test.name + "\t" + std::to_string(framesPerSecond) + " FPS\r\n";
    }
    return text;
}

std::int64_t steadyTicks() {
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

} // namespace marvek
