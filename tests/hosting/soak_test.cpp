// An hour of use on the sample clock, with everything that moves by itself: time stays exact, and
// nothing piles up.

#include "tests/support/hosted_unit.h"

#include <unistd.h>

namespace zephyra {
namespace {

constexpr double kRate = 8000.0;
constexpr std::uint32_t kFrames = 4096;
constexpr double kSeconds = kIsWatched ? 900 : 3600;
constexpr int kBlocks = static_cast<int>(kSeconds * kRate / kFrames) + 1;
constexpr float kLoudest = 100.0f; // times full scale; what was heard is heard again

/// Bytes of this program that are in memory.
double residentBytes() {
    double all = 0, resident = 0;
    std::ifstream("/proc/self/statm") >> all >> resident;
    return resident * static_cast<double>(sysconf(_SC_PAGESIZE));
}

void use(HostedUnit& hosted, std::mt19937& random) {
    MOK_SCRUB_GRANULATOR& stream = hosted.stream;
    const auto id = static_cast<ControlId>(random() % kControlCount);
    const ControlRange& range = controlRange(id);
    const bool isSwitch = range.kind == ControlKind::switching;
    const float share = static_cast<float>(isSwitch ? random() % 2 * 100 : random() % 101) / 100.0f;
    const float value = range.minimum + share * (range.maximum - range.minimum);
    if (id < ControlId::normalize && random() % 2)
        hosted.queue(id, value);
    else
        stream.setLinear(id, value);
    const std::function<void()> acts[] = {
        [&] { hosted.view.restoreState(hosted.view.getState()); },
        [&] { stream.loadSound(noiseSample(20000 + random() % 20000, 8000)); },
        [&] { stream.ui_liveClear(); },
        [&] { hosted.host.setTempo(60.0 + static_cast<double>(random() % 100)); },
        [&] { hosted.host.setTransport(random() % 2 == 0); },
        [&] { stream.pickEnvelope(random() % 12); },
        [&] { stream.ui_playStop(); }};
    if (const auto act = random() % 40; act < std::size(acts)) acts[act]();
}

/// An LFO on each of the host's knobs and on the scan, a take, and learned controllers.
void modulate(HostedUnit& hosted) {
    AudioUnitViewController& view = hosted.view;
    std::vector<Control*> moved = {&view._inputDryWetKnob, &hosted.stream.scrubArea};
    for (std::size_t address = 0; address < kParameterCount; ++address)
        if (auto* const knob = hosted.stream.controls.knob(static_cast<ControlId>(address)))
            moved.push_back(knob);
    ASSERT_GE(moved.size(), 19u);
    double hz = 0.1;
    for (Control* const control : moved) {
        ASSERT_TRUE(view.assignments.assign(*control, AssignmentType::lfo));
        LfoWidgetWrapper* const lfo =
            view.assignments.getLfoWidgetsMapping()->getWrapperID(control);
        lfo->setHz(hz *= 1.3);
        lfo->setLfoShapeFromWrapper(static_cast<std::int64_t>(hz * 100) % 7);
    }
    ASSERT_TRUE(hosted.stream.scrubRecorder.setTake(std::array{0.2f, 0.9f, 0.4f, 0.6f}));
    hosted.stream.scrubRecorder.____playScrubRec();
    int number = 20;
    for (MOK_KNOB* const knob :
         {&hosted.stream.controls.sampler_mesure, &hosted.stream.controls.sampler_quarter})
        view.midiManager.bind(
            {.trigger = {.number = number++}, .control = knob, .takeover = MidiTakeover::jump});
}

TEST(Soak, AnHourOfUseKeepsTimeMemoryAndLevel) {
    HostedUnit hosted(component_type::effect);
    hosted.ready(kFrames);
    ASSERT_EQ(hosted.host.start({kRate, kFrames}), 0);
    hosted.report(120);
    modulate(hosted);
    const double begin = hosted.instance.runLoop.now();
    std::mt19937 random(3);
    [[maybe_unused]] double warm = 0; // bytes, once everything has begun
    for (int block = 1; block <= kBlocks; ++block) {
        if (block == kBlocks / 4) warm = residentBytes();
        use(hosted, random);
        const auto value = static_cast<std::uint8_t>(block % 128);
        hosted.midi({0xB0, 20, value, 0xB0, 21, value, 0x90, value, 9});
        hosted.heard.clear();
        hosted.render(kFrames);
        for (const float sample : hosted.heard) ASSERT_LT(std::fabs(sample), kLoudest) << block;
        ASSERT_LE(hosted.stream.waitingObjects(), 4u);
        ASSERT_NEAR(hosted.instance.runLoop.now() - begin, block * double{kFrames} / kRate, 1e-6);
    }
    EXPECT_GT(hosted.stream.engine().startedGrains(), 2.5 * kSeconds);
    EXPECT_EQ(hosted.view.assignments.getLfoWidgetsMapping()->count(), 19u);
    EXPECT_EQ(std::tuple(hosted.unit->lostNotices(), hosted.inlet.replaced()), std::tuple(0u, 0u));
    if (!kIsWatched) {
        EXPECT_LT(residentBytes() - warm, 8.0 * 1024 * 1024);
    }
}

} // namespace
} // namespace zephyra
