// A host's two threads, the user, a tilted device and the driver of the run loop at once; the
// thread sanitizer watches.

#include "engine/envelope_menu.h"
#include "platform/threads/wall_clock_driver.h"
#include "tests/support/hosted_unit.h"

namespace zephyra {
namespace {

using namespace std::chrono_literals;
constexpr std::uint32_t kFrames = 64;
constexpr int kCycles = 10000;
constexpr int kBurst = 3 * MidiInlet::kCapacity; // messages that come at once now and then
constexpr std::uint8_t kFadeController = 119;    // moves the fade-out time, which nobody else does
const char* const kSound = ZEPHYRA_SOURCE_DIR "/fuzz/corpus/sound_file/mono.wav";

/// A linear value of a control, from a number.
float valueOf(ControlId id, unsigned long number) {
    const ControlRange& range = controlRange(id);
    if (id == ControlId::density) return range.maximum; // else seconds pass without a grain
    if (range.kind == ControlKind::switching) return static_cast<float>(number % 2);
    return range.minimum + (range.maximum - range.minimum) * static_cast<float>(number % 101) / 100;
}

struct Threads : AUHostMusicalContextBlock, AUHostTransportStateBlock, AURenderPullInputBlock {
    HostedUnit hosted{component_type::musicEffect};
    TemporaryFolder folder;
    std::vector<float> seen = std::vector<float>(1000); // of the live wave, as a screen does
    const std::shared_ptr<const mokSample> longSound =
        noiseSample(SoundNormalizer::kMostFramesAtOnce + 1, 44100);
    std::mutex rendering; // a host does not render while it allocates
    std::atomic<int> cycle = 0;
    std::array<std::uint8_t, 120> sent{}, arrived{}; // by controller
    MidiInlet inlet{hosted.instance, [this](const MidiMessage& message) {
                        if (message.kind() == MidiKind::controller)
                            arrived[message.bytes[1]] = message.bytes[2];
                        hosted.view.receiveMidi(message);
                    }};

    Threads() {
        hosted.instance.folders.shared = folder.path();
        hosted.unit->musicalContextBlock = this;
        hosted.unit->transportStateBlock = this;
        allocate(44100.0);
    }
    void allocate(double rate) {
        const std::lock_guard paused(rendering);
        const RunLoop::Scope main(hosted.instance.runLoop);
        hosted.unit->deallocateRenderResources();
        for (const auto* side : {&hosted.unit->inputBusses(), &hosted.unit->outputBusses()})
            side->busses[0]->setFormat({rate, 2});
        hosted.instance.session.sampleRate = rate;
        EXPECT_EQ(hosted.unit->allocateRenderResourcesAndReturnError(), 0);
    }
    void sendController(std::uint8_t number, std::uint8_t value) {
        const std::array<std::uint8_t, 3> bytes = {0xB0, number, value};
        inlet.push(bytes.data(), bytes.size());
        sent[number] = value;
    }
    void sendMidi(std::uint8_t note) {
        const std::uint8_t bend = cycle < kCycles / 2 ? note : 64; // the wheel rests half the time
        const std::array<std::uint8_t, 9> bytes = {0x90, note, 90, 0x80, note, 0, 0xE0, 0, bend};
        inlet.push(bytes.data(), bytes.size());
        for (int i = 0; i < (cycle % 2000 == 1999 ? kBurst : 3); ++i)
            sendController(static_cast<std::uint8_t>((cycle + i) % 120),
                           static_cast<std::uint8_t>((cycle + i / 120) % 128));
    }
    void renderCycle(std::uint8_t note) {
        AURenderEvent events[4];
        for (int i = 0; i < 3; ++i) events[i].next = &events[i + 1];
        const auto id = static_cast<ControlId>(cycle % int{kParameterCount});
        const float value = valueOf(id, 11ul * cycle / 24);
        events[0].parameter = {static_cast<AUParameterAddress>(id), value, 0};
        events[1].eventType = AURenderEventType::parameterRamp;
        events[1].parameter = {static_cast<AUParameterAddress>(cycle % 5), value, 64};
        events[2].eventType = AURenderEventType::MIDIEventList;
        events[3].eventType = AURenderEventType::MIDI;
        events[3].MIDI = {3, 0, {0x90, note, 100}};
        StereoBlock output(kFrames);
        AudioBufferList list = output.from(0);
        const std::lock_guard now(rendering);
        sendMidi(note);
        EXPECT_EQ(hosted.unit->internalRenderBlock()(kFrames, list, events, this), 0);
        for (const float sample : output.left) EXPECT_TRUE(std::isfinite(sample));
    }
    bool musicalContext(AUMusicalContext& context) ZEPHYRA_NONBLOCKING override {
        context = {cycle % 500 < 250 ? 120.0 : 90.5, 4.0, (cycle % 300) / 10.0 - 1.0};
        return true;
    }
    bool transportState(AUTransportState& state) ZEPHYRA_NONBLOCKING override {
        state.flags = cycle % 200 < 100 ? transport_flag::moving : 0u;
        return true;
    }
    OSStatus pullInput(std::uint32_t frames, std::int64_t,
                       AudioBufferList& list) ZEPHYRA_NONBLOCKING override {
        for (std::uint32_t c = 0; c < 2; ++c) std::fill_n(list.floats(c), frames, 0.25f);
        return 0;
    }
    void host() {
        for (; cycle < kCycles; ++cycle, std::this_thread::sleep_for(200us))
            renderCycle(static_cast<std::uint8_t>(36 + cycle % 48));
    }
    void setParameters() {
        std::mt19937 random(1);
        for (int step = 0; cycle < kCycles; ++step, std::this_thread::sleep_for(500us)) {
            if (step % 500 == 499) hosted.unit->setFullState(hosted.unit->getFullState());
            const auto id = static_cast<ControlId>(random() % kParameterCount);
            hosted.parameter(id).setValue_originator_atHostTime_eventType(
                valueOf(id, random()), 0, 0, AUParameterAutomationEventType(random() % 3));
        }
    }
    /// Nothing but the notes moves the pitch, and nothing but its controller the fade.
    void leaveOnlyTheFadeAssigned() {
        hosted.view.assignments.removeAllAssignations();
        hosted.view.surfaces._keyboard.allNoteOff();
        hosted.view.midiManager.bind({.trigger = {.number = kFadeController},
                                      .control = &hosted.view._fadeOutTime,
                                      .takeover = MidiTakeover::jump});
    }
    void tilt() {
        for (; cycle < kCycles; std::this_thread::sleep_for(300us))
            hosted.instance.accelerometer.set(static_cast<float>(cycle % 200) / 100.0f - 1.0f,
                                              0.0f);
    }
    template <typename Surface>
    void touch(Surface& surface, double width, std::mt19937& random) {
        const TouchId finger = random() % 3;
        const Point at{width * static_cast<double>(random() % 100) / 100.0, 0.5};
        const double now = hosted.instance.runLoop.now();
        if (random() % 2) surface.touchesBegan(finger, at, now);
        surface.touchesMoved(finger, at, now);
        if (random() % 2) surface.touchesEnded(finger, now);
    }
    void play(std::mt19937& random) {
        auto& view = hosted.view;
        const auto& all = view.assignable.all();
        Control& control = *all[random() % all.size()].control;
        const std::function<void()> acts[] = {
            [&] { touch(hosted.stream.scrubArea, 1.0, random); },
            [&] { touch(view.surfaces._keyboard, view.surfaces._keyboard.contentWidth(), random); },
            [&] { view.assignments.assign(control, AssignmentType::lfo); },
            [&] { view.assignments.assign(control, AssignmentType(random() % 7)); },
            [&] { view.midiManager.learn(control); },
            [&] { hosted.stream.scrubRecorder.ui_scrubRec(); },
            [&] { hosted.stream.scrubRecorder.ui_scrubPlay(); }};
        if (&control != &view._fadeOutTime) acts[random() % std::size(acts)]();
    }
    void user(std::mt19937& random) {
        const RunLoop::Scope main(hosted.instance.runLoop);
        play(random);
        auto& stream = hosted.stream;
        const auto id = static_cast<ControlId>(random() % kControlCount);
        stream.setLinear(id, valueOf(id, random()));
        const std::function<void()> acts[] = {
            [&] { hosted.view.loadSample(kSound); },
            [&] { stream.loadSound(longSound); }, // which WORKER scales
            [&] { hosted.view.restoreState(hosted.view.getState()); },
            [&] { hosted.view.liveExport.save(); },
            [&] { stream.ui_liveClear(); },
            [&] { stream.restoreLastSample(); },
            [&] { stream.setRegion(valueOf(ControlId::scrubbingWave, random()), 1.0f); },
            [&] { stream.pickEnvelope(random() % kEnvelopeMenu.size()); },
            [&] { stream.setSeed(static_cast<std::uint32_t>(random())); },
            [&] { stream.waveForm().copyLive(stream.waveForm().getWriteLiveIndex(), seen); }};
        acts[random() % std::size(acts)]();
        if (stream.controls._playToggle.tag == 0 || random() % 16 == 0) stream.ui_playStop();
    }
};

TEST(Threads, OfAHostAndItsUserMeetWithoutARaceAndLoseNoNotice) {
    Threads threads;
    {
        const WallClockDriver driver(threads.hosted.instance.runLoop, threads.hosted.instance.log);
        std::thread host([&] { threads.host(); }), setter([&] { threads.setParameters(); }),
            tilter([&] { threads.tilt(); });
        std::mt19937 random(2);
        for (int step = 0; threads.cycle < kCycles; ++step) {
            threads.user(random);
            std::this_thread::sleep_for(2ms);
            if (step % 100 == 99) threads.allocate(step % 200 == 99 ? 48000.0 : 22050.0);
        }
        host.join();
        setter.join();
        tilter.join();
    }
    const auto& view = threads.hosted.view;
    threads.hosted.instance.runLoop.setClock(RunLoop::Clock::sample);
    threads.hosted.instance.runLoop.finishWork(); // the last state comes back
    threads.leaveOnlyTheFadeAssigned();
    EXPECT_EQ(threads.arrived, threads.sent);
    EXPECT_GT(threads.inlet.replaced(), 0u); // the bursts were too long for the ring
    threads.sendController(kFadeController, 127);
    threads.renderCycle(67);
    threads.hosted.instance.runLoop.runPosted();
    EXPECT_EQ(view._fadeOutTime.value(), view._fadeOutTime.maximumValue());
    EXPECT_EQ(threads.hosted.stream.linear(ControlId::pitch), 7.0f);
    EXPECT_EQ(threads.hosted.unit->lostNotices(), 0u);
    EXPECT_GT(threads.hosted.stream.engine().startedGrains(), 100u);
}

} // namespace
} // namespace zephyra
