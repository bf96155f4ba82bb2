// main_stretch: how long MAIN is away at a stretch while an instance does what takes long.
//
// A stretch is one turn of the run loop, or one hold of it by a window or a host's thread. What a
// host sends waits for the stretch that it meets, so each row shows the longest of its operation.
// The machine's other work adds to it: run it on an idle one.

#include "bench/bench_system.h"
#include "tests/support/temporary_folder.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <thread>

namespace zephyra {
namespace {

constexpr double kMostMilliseconds = 2.0;

double now() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

double milliseconds(const std::function<void()>& work) {
    const double began = now();
    work();
    return 1000.0 * (now() - began);
}

class Stretches {
public:
    explicit Stretches(BenchSystem& system) : system_(system) {}

    /// What a window does: it is MAIN for as long as that takes.
    void row(const std::string& what, const std::function<void()>& act) {
        outside(what, [&] {
            longest_ = milliseconds([&] {
                const RunLoop::Scope main(system_.instance.runLoop);
                act();
            });
        });
    }

    /// What a host does on a thread of its own: only the turns of the run loop count, and what the
    /// call itself holds it for.
    void hostRow(const std::string& what, const std::function<void()>& act) {
        outside(what, [&] {
            std::atomic<bool> ended = false;
            std::thread host([&] {
                act();
                ended = true;
            });
            while (!ended) takeHold();
            host.join();
        });
    }

    bool allMet() const { return allMet_; }

private:
    void outside(const std::string& what, const std::function<void()>& act) {
        longest_ = 0.0;
        act();
        turns();
        allMet_ = allMet_ && longest_ <= kMostMilliseconds;
        std::printf("%-58s %8.2f ms   must %3.1f   %s\n", what.c_str(), longest_, kMostMilliseconds,
                    longest_ <= kMostMilliseconds ? "met" : "MISSED");
    }
    /// How long the run loop lets somebody wait.
    void takeHold() {
        longest_ = std::max(
            longest_, milliseconds([&] { const RunLoop::Scope main(system_.instance.runLoop); }));
        std::this_thread::sleep_for(std::chrono::microseconds(100));
    }
    /// Until background work is done, and a little longer.
    void turns() {
        for (int rest = 0; rest < 200; ++rest) {
            const double turn =
                milliseconds([&] { system_.instance.runLoop.tryAdvanceByWall(now()); });
            longest_ = std::max(longest_, turn);
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
            if (isBusy()) rest = 0;
        }
    }
    bool isBusy() const {
        return system_.view.sampleLoader.isLoading() || system_.view.liveExport.isSaving();
    }

    BenchSystem& system_;
    double longest_ = 0.0;
    bool allMet_ = true;
};

void renderInput(BenchSystem& system) {
    StereoBlock output(512);
    struct Input : AURenderPullInputBlock {
        OSStatus pullInput(std::uint32_t frames, std::int64_t,
                           AudioBufferList& list) ZEPHYRA_NONBLOCKING override {
            for (std::uint32_t c = 0; c < list.mNumberBuffers; ++c)
                for (std::uint32_t n = 0; n < frames; ++n)
                    list.floats(c)[n] =
                        static_cast<float>((seed = seed * 1664525u + 1u) >> 9) * 0x1p-24f;
            return 0;
        }
        std::uint32_t seed = 1;
    } input;
    for (int block = 0; block < 1000; ++block) {
        AudioBufferList list = output.from(0);
        system.unit->internalRenderBlock()(512, list, nullptr, &input);
    }
}

void measureSounds(BenchSystem& system, Stretches& stretches, const std::filesystem::path& folder) {
    auto& view = system.view;
    for (const int seconds : {10, 60, 600, 3600}) {
        const auto path = benchSound(folder, seconds);
        const std::string length = std::to_string(seconds) + " s";
        stretches.row("to load " + length, [&] { view.loadSample(path); });
        stretches.row("to turn Normalize with " + length,
                      [&] { view._GRANULATOR_STREAM.setLinear(ControlId::normalize, 0.5f); });
        stretches.row("to load " + length + " once more, normalized",
                      [&] { view.loadSample(path); });
    }
    stretches.row("to load 10 s in its place", [&] { view.loadSample(folder / "10.wav"); });
}

void measureLive(BenchSystem& system, Stretches& stretches) {
    auto& view = system.view;
    auto& stream = system.stream();
    stretches.row("to switch LIVE on", [&] { stream.setLinear(ControlId::live, 1.0f); });
    renderInput(system);
    stretches.row("to hold what LIVE heard", [&] { stream.setLinear(ControlId::freeze, 1.0f); });
    stretches.row("to follow the input again", [&] { stream.setLinear(ControlId::freeze, 0.0f); });
    PropertyDictionary state;
    stretches.hostRow("to save a session while LIVE is on",
                      [&] { state = system.unit->getFullState(); });
    stretches.row("to export what LIVE heard", [&] { view.liveExport.save(); });
    stretches.row("to clear it", [&] { stream.ui_liveClear(); });
    renderInput(system);
    stretches.row("to switch LIVE off", [&] { stream.setLinear(ControlId::live, 0.0f); });
    stretches.hostRow("to save a session with what LIVE heard",
                      [&] { state = system.unit->getFullState(); });
    stretches.hostRow("to restore it", [&] { system.unit->setFullState(state); });
    view.presets.addBank();
    stretches.row("to save a preset of what LIVE heard", [&] { view.presets.saveSnap(); });
}

void measureStates(BenchSystem& system, Stretches& stretches, const std::filesystem::path& folder) {
    auto& view = system.view;
    stretches.row("to load 60 s", [&] { view.loadSample(folder / "60.wav"); });
    for (const auto& each : view.assignable.all())
        view.assignments.assign(*each.control, AssignmentType::lfo);
    PropertyDictionary state;
    stretches.hostRow("to save a session with 60 s and all LFOs",
                      [&] { state = system.unit->getFullState(); });
    stretches.hostRow("to restore it", [&] { system.unit->setFullState(state); });
    std::filesystem::remove(folder / "60.wav");
    stretches.hostRow("to restore it without the file", [&] {
        view.sampleLoader.cancel();
        system.unit->setFullState(state);
    });
    stretches.row("to save a preset of a sound without its file", [&] { view.presets.saveSnap(); });
    stretches.row("to step to the next preset", [&] { view.presets.nextSnap(); });
    stretches.row("to choose another envelope", [&] { system.stream().pickEnvelope(3); });
    stretches.hostRow("to list factory presets",
                      [&] { static_cast<void>(system.unit->factoryPresets()); });
    stretches.hostRow("to take 8,000 MIDI messages", [&] {
        for (int n = 0; n < 8000; ++n) {
            const std::uint8_t bytes[] = {0xB0, static_cast<std::uint8_t>(33 + n % 87),
                                          static_cast<std::uint8_t>(n / 87)};
            system.inlet.push(bytes, sizeof bytes);
        }
    });
}

void measureLibrary(BenchSystem& system, Stretches& stretches,
                    const std::filesystem::path& folder) {
    auto& view = system.view;
    for (int n = 0; n < 5000; ++n) writeText(folder / ("Sample " + std::to_string(n) + ".wav"), "");
    stretches.row("to list 5,000 samples", [&] { view.samples.viewDidLoad(); });
    const auto& controls = view.assignable.all();
    for (std::size_t n = 0; n < 512; ++n)
        view.midiManager.bind({.trigger = {.number = static_cast<int>(n % 120),
                                           .channel = static_cast<int>(1 + n / 120)},
                               .control = controls[n % controls.size()].control});
    PropertyDictionary state;
    stretches.hostRow("to save a session with 512 learned controllers",
                      [&] { state = system.unit->getFullState(); });
    stretches.hostRow("to restore it", [&] { system.unit->setFullState(state); });
    stretches.hostRow("to build another instance",
                      [&] { const BenchSystem another(component_type::musicEffect, folder); });
    stretches.row("to choose a bank", [&] { view.presets.selectBankFromIndex(1); });
}

} // namespace
} // namespace zephyra

int main() {
    using namespace zephyra;
    const TemporaryFolder folder;
    BenchSystem system(component_type::musicEffect, folder.path());
    Stretches stretches(system);
    measureSounds(system, stretches, folder.path());
    measureLive(system, stretches);
    measureStates(system, stretches, folder.path());
    measureLibrary(system, stretches, folder.path());
    return stretches.allMet() ? 0 : 1;
}
