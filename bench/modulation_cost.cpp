// modulation_cost: what a stream that plays itself costs the main thread.
//
// An LFO on each of the host's 18 knobs and on the scan, a take that plays, and 1,000 MIDI messages
// a second on learned controllers, over one simulated minute in blocks of 512 frames at 44100 Hz.
// Only the run loop is timed, and what the render thread spends on handing MIDI over; the same
// minute without any of it is taken off. Processor time of this thread, so the share is of one
// core.

#include "bench/thread_time.h"
#include "hosting/hosted_instance.h"
#include "tests/support/heard_instance.h"
#include "tests/support/test_sounds.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <vector>

namespace zephyra {
namespace {

constexpr double kSeconds = 60.0, kBlock = 512.0 / 44100.0;
constexpr int kMessagesPerSecond = 1000;
constexpr std::uint64_t kSoundFrames = 20 * 44100;
constexpr double kMostPercent = 1.0;

struct System : HeardLog, HostedInstance {
    System()
        : HostedInstance(component_type::instrument, [this](Instance& fresh) {
              hear(fresh);

              fresh.folders.resources = "/nonexistent";
              fresh.runLoop.setClock(RunLoop::Clock::sample);
          }) {
        connect();
        unit->allocateRenderResourcesAndReturnError();
        instance.runLoop.runPosted();
        view._GRANULATOR_STREAM.loadSound(noiseSample(kSoundFrames, 44100)); // for the scan
    }
    std::vector<Control*> knobs() {
        std::vector<Control*> all;
        for (std::size_t address = 0; address < kParameterCount; ++address)
            if (auto* knob = view._GRANULATOR_STREAM.controls.knob(static_cast<ControlId>(address)))
                all.push_back(knob);
        all.push_back(&view._inputDryWetKnob);
        return all;
    }
    void modulate() {
        double hz = 0.3;
        for (Control* control : knobs()) {
            attach(*control, hz += 0.21);
            countMoves(*control);
        }
        attach(view._GRANULATOR_STREAM.scrubArea, hz);
        std::vector<float> take(ScrubRecorder::kPoints);
        for (std::size_t i = 0; i < take.size(); ++i) take[i] = float(i % 100) / 100.0f;
        view._GRANULATOR_STREAM.scrubRecorder.setTake(take);
        view._GRANULATOR_STREAM.scrubRecorder.____playScrubRec();
        int number = 20;
        for (Control* control :
             {static_cast<Control*>(&view._fadeInTime), static_cast<Control*>(&view._fadeOutTime),
              static_cast<Control*>(&view._GRANULATOR_STREAM.controls.sampler_mesure)}) {
            view.midiManager.bind({.trigger = {.number = number++},
                                   .control = control,
                                   .takeover = MidiTakeover::jump});
            countMoves(*control);
        }
    }
    /// Shows that the work is really done.
    void countMoves(Control& control) {
        control.addTarget(this, "countMoves", control_event::valueChanged,
                          [this](Control&) { ++moves; });
    }
    void attach(Control& control, double hz) {
        view.assignments.assign(control, AssignmentType::lfo);
        view.assignments.getLfoWidgetsMapping()->getWrapperID(&control)->setHz(hz);
    }
    /// Nanoseconds of one simulated minute.
    double minute(bool withMidi) {
        const double start = instance.runLoop.now();
        int sent = 0;
        const double before = threadNanoseconds();
        for (double time = 0; time < kSeconds; time += kBlock) {
            for (; withMidi && sent < time * kMessagesPerSecond; ++sent) {
                const auto number = static_cast<std::uint8_t>(20 + sent % 3);
                const std::array<std::uint8_t, 3> bytes = {
                    0xB0, number, static_cast<std::uint8_t>(sent / 3 % 128)};
                inlet.push(bytes.data(), bytes.size());
            }
            instance.runLoop.advance(start + time);
        }
        return threadNanoseconds() - before;
    }

    std::uint64_t moves = 0; // of knobs
};

} // namespace
} // namespace zephyra

int main() {
    using namespace zephyra;
    System plain, modulated;
    modulated.modulate();
    std::array<double, 5> shares;
    for (double& share : shares)
        share = 100.0 * (modulated.minute(true) - plain.minute(false)) / (1e9 * kSeconds);
    std::sort(shares.begin(), shares.end());
    const double share = shares[shares.size() / 2];
    std::printf("19 LFOs, a take, %d messages/s: %.3f %% of a core   must %.1f   %s\n",
                kMessagesPerSecond, share, kMostPercent, share < kMostPercent ? "met" : "MISSED");
    std::printf("moves of knobs a second: %.0f\n",
                static_cast<double>(modulated.moves) / (kSeconds * double{std::size(shares)}));
    std::printf("MIDI messages lost: %llu\n",
                static_cast<unsigned long long>(modulated.inlet.replaced()));
}
