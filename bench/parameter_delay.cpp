// parameter_delay: how long a parameter that a host sends takes to be heard, while an instance
// loads sounds and presets and a window turns its knobs.
//
// A thread renders blocks of 64 frames as a device would ask for them, and sends another value of
// the density in every seventh. The delay is that from the cycle that brought the value to the one
// that begins with it in the engine. The machine's other work adds to it: run it on an idle one.

#include "bench/bench_system.h"
#include "platform/threads/wall_clock_driver.h"
#include "tests/support/stream_probe.h"
#include "tests/support/temporary_folder.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <thread>
#include <vector>

namespace zephyra {
namespace {

using Steady = std::chrono::steady_clock;
constexpr double kRate = 48000.0, kMostMilliseconds = 5.0;
constexpr std::uint32_t kFrames = 64;
constexpr double kBlockMilliseconds = 1000.0 * kFrames / kRate;
constexpr int kCycles = 15000, kEvery = 7; // 20 seconds

/// The host's thread: milliseconds of each value's way.
std::vector<double> play(BenchSystem& system) {
    std::vector<double> delays;
    StereoBlock output(kFrames);
    const auto density = [&] { return StreamProbe::fields(system.stream().engine()).density; };
    float before = 0.0f;
    bool waits = false;
    Steady::time_point sentAt;
    auto next = Steady::now();
    for (int cycle = 0; cycle < kCycles; ++cycle) {
        AURenderEvent event;
        const auto now = Steady::now();
        if (waits && density() != before) {
            delays.push_back(std::chrono::duration<double, std::milli>(now - sentAt).count());
            waits = false;
        }
        const bool sends = !waits && cycle % kEvery == 0;
        if (sends) {
            before = density();
            sentAt = now;
            waits = true;
            event.parameter = {static_cast<AUParameterAddress>(ControlId::density),
                               100.0f + static_cast<float>(cycle % 200), 0};
        }
        AudioBufferList list = output.from(0);
        system.unit->internalRenderBlock()(kFrames, list, sends ? &event : nullptr, nullptr);
        next += std::chrono::duration_cast<Steady::duration>(
            std::chrono::duration<double, std::milli>(kBlockMilliseconds));
        std::this_thread::sleep_until(next);
    }
    return delays;
}

/// What goes on meanwhile, in the window and in the host's main thread.
void work(BenchSystem& system, const std::filesystem::path& folder,
          const std::atomic<bool>& ended) {
    auto& view = system.view;
    const PropertyDictionary state = system.unit->getFullState();
    for (int step = 0; !ended; ++step) {
        if (step % 20 == 7) system.unit->setFullState(state);
        if (step % 20 == 13) static_cast<void>(system.unit->getFullState());
        const RunLoop::Scope main(system.instance.runLoop);
        if (step % 20 == 3) view.loadSample(folder / (step % 40 < 20 ? "600.wav" : "20.wav"));
        view._GRANULATOR_STREAM.setLinear(ControlId::normalize, step % 2 ? 0.5f : 0.7f);
        view._GRANULATOR_STREAM.setLinear(ControlId::pitch, static_cast<float>(step % 12));
        std::this_thread::sleep_for(std::chrono::milliseconds(step % 3)); // a window draws
    }
}

} // namespace
} // namespace zephyra

int main() {
    using namespace zephyra;
    const TemporaryFolder folder;
    benchSound(folder.path(), 600);
    benchSound(folder.path(), 20);
    BenchSystem system(component_type::instrument, folder.path());
    std::atomic<bool> ended = false;
    std::vector<double> delays;
    {
        const WallClockDriver driver(system.instance.runLoop, system.instance.log);
        std::thread host([&] {
            delays = play(system);
            ended = true;
        });
        work(system, folder.path(), ended);
        host.join();
    }
    if (delays.empty()) return 1;
    std::ranges::sort(delays);
    const double must = kMostMilliseconds + kBlockMilliseconds;
    const auto share = [&delays](double part) {
        return delays[static_cast<std::size_t>(part * static_cast<double>(delays.size() - 1))];
    };
    std::printf("%zu values: half within %.2f ms, 99 of 100 within %.2f ms, all within %.2f ms; "
                "must %.2f ms   %s\n",
                delays.size(), share(0.5), share(0.99), share(1.0), must,
                share(1.0) <= must ? "met" : "MISSED");
}
