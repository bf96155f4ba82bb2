// controller_cost: what a view controller with its audio unit takes to be built, in time and
// memory.
//
// Without the demonstration sample. Time is the median of fresh builds; memory is what the heap
// holds more once the first of them stands, its audio unit allocated and its main queue empty.

#include "hosting/hosted_instance.h"
#include "tests/support/heard_instance.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <malloc.h>
#include <memory>

namespace zephyra {
namespace {

constexpr double kMostMilliseconds = 30.0, kMostMebibytes = 12.0;

struct System : HeardLog, HostedInstance {
    System()
        : HostedInstance(component_type::musicEffect, [this](Instance& fresh) {
              hear(fresh);
              fresh.folders.resources = "/nonexistent";
          }) {
        connect();
        unit->allocateRenderResourcesAndReturnError();
        instance.runLoop.runPosted();
    }
};

/// Bytes that the heap holds, large blocks included.
double heapBytes() {
    const struct mallinfo2 heap = mallinfo2();
    return static_cast<double>(heap.uordblks + heap.hblkhd);
}

double now() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

void row(const char* what, double measured, const char* unit, double must) {
    std::printf("%-34s %7.2f %s   must %5.1f   %s\n", what, measured, unit, must,
                measured <= must ? "met" : "MISSED");
}

} // namespace
} // namespace zephyra

int main() {
    using namespace zephyra;
    const double before = heapBytes();
    auto first = std::make_unique<System>();
    const double held = heapBytes() - before;
    first.reset();

    std::array<double, 21> times;
    for (double& time : times) {
        const double began = now();
        const System system;
        time = now() - began;
    }
    std::nth_element(times.begin(), times.begin() + times.size() / 2, times.end());
    row("to build view controller and unit", 1000.0 * times[times.size() / 2], "ms ",
        kMostMilliseconds);
    row("heap they hold", held / (1024.0 * 1024.0), "MiB", kMostMebibytes);
}
