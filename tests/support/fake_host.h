// FakeHost and FakeController: an audio unit between a fake view controller and a host that tells
// what it is told to, renders cycles and keeps what came of them.
#pragma once

#include "audiounit/my_audio_unit.h"
#include "modulation/lfo_widgets_mapping.h"
#include "modulation/modulation.h"
#include "platform/audio_unit/audio_unit_host.h"
#include "stream/stream_controller.h"
#include "tests/support/test_sounds.h"

#include <sstream>

namespace zephyra {

/// A view controller that writes down what an audio unit asks of it.
struct FakeController final : AudioUnitController, Modulation {
    explicit FakeController(Instance& instance) : stream(instance), mapping(instance) {}

    MOK_SCRUB_GRANULATOR stream;
    MOK_KNOB dryWet;
    LFO_WIDGETS_MAPPING mapping;
    MyAudioUnit* unit = nullptr;
    bool wasRequested = false;
    PropertyDictionary state;
    std::ostringstream calls;

    std::string takeCalls() { return std::exchange(calls, std::ostringstream()).str(); }

    static std::vector<std::shared_ptr<AUParameter>> parameters() {
        std::vector<std::shared_ptr<AUParameter>> list;
        for (const ParameterRow& row : parameterTable())
            list.push_back(std::make_shared<AUParameter>(
                AUParameter::Facts{.identifier = parameterIdentifier(row, "_0"),
                                   .displayName = controlRange(row.id).name,
                                   .address = static_cast<AUParameterAddress>(row.id),
                                   .unit = row.unit}));
        return list;
    }

    MOK_SCRUB_GRANULATOR* granulatorStream() override { return &stream; }
    Modulation* controlManager() override { return this; }
    MOK_KNOB* inputDryWetKnob() override { return &dryWet; }
    void connectViewWithAU() override { calls << "connect "; }
    void refreshParameters() override { calls << "refresh "; }
    void removeTargets() override { calls << "remove "; }
    void audioUnitLeaves() override {}
    bool LoadSampleDelegate(const std::string& name) override {
        calls << "load:" << name << ' ';
        return true;
    }
    bool sampleWasRequested() const override { return wasRequested; }
    void standBehindInput() override { calls << "stand "; }
    PropertyDictionary getState() override { return state; }
    void restoreState(PropertyDictionary restored) override { state = std::move(restored); }
    void parameterMoved(AUParameterAddress address, AUValue value) override {
        calls << address << '=' << value << ' ';
    }
    void midiNoteOn(int note, int velocity) ZEPHYRA_NONBLOCKING override {
        unit->noticeNoteOn(note, velocity);
    }
    void playNote(int note, int velocity) override {
        calls << "note" << note << '/' << velocity << ' ';
    }
    LFO_WIDGETS_MAPPING* getLfoWidgetsMapping() override { return &mapping; }
    void syncStateDidChangedWithBPM(double bpm) override { calls << "tempo" << bpm << ' '; }
};

/// Its input is one channel of its own memory, for both sides.
struct FakeHost : AUHostMusicalContextBlock, AUHostTransportStateBlock, AURenderPullInputBlock {
    explicit FakeHost(FourCharCode type = component_type::effect) {
        unit = MyAudioUnit::initWithComponentDescription_options_error({.componentType = type},
                                                                       instance, status);
        controller.unit = unit.get();
        unit->setController_andParameters(&controller, FakeController::parameters());
        unit->musicalContextBlock = this;
        unit->transportStateBlock = this;
    }

    /// Allocates and does everything that was posted.
    void ready() {
        unit->allocateRenderResourcesAndReturnError();
        instance.runLoop.runPosted();
        controller.takeCalls();
    }
    OSStatus cycle(std::uint32_t frames, const AURenderEvent* events = nullptr) {
        AudioBufferList list = out.from(0);
        if (!outputs) list.mBuffers[0].mData = list.mBuffers[1].mData = nullptr;
        status = unit->internalRenderBlock()(frames, list, events, this);
        for (std::uint32_t c = 0; status == 0 && c < 2; ++c)
            rendered[c].assign(list.floats(c), list.floats(c) + frames);
        return status;
    }
    /// What MAIN hears after a cycle.
    std::string after(const AURenderEvent* events = nullptr) {
        cycle(64, events);
        unit->takeNotices();
        return controller.takeCalls();
    }

    bool musicalContext(AUMusicalContext& asked) ZEPHYRA_NONBLOCKING override {
        asked = context;
        return true;
    }
    bool transportState(AUTransportState& state) ZEPHYRA_NONBLOCKING override {
        state.flags = moving ? transport_flag::moving : transport_flag::cycling;
        return true;
    }
    OSStatus pullInput(std::uint32_t, std::int64_t,
                       AudioBufferList& list) ZEPHYRA_NONBLOCKING override {
        list.mBuffers[0].mData = list.mBuffers[1].mData = inputs ? input.data() : nullptr;
        return pullStatus;
    }

    Instance instance;
    FakeController controller{instance};
    std::unique_ptr<MyAudioUnit> unit;
    OSStatus status = 0, pullStatus = 0;
    AUMusicalContext context;
    bool moving = false, inputs = true;
    bool outputs = true; ///< whether the host brings memory for them
    std::vector<float> input = std::vector<float>(4096, 0.5f);
    StereoBlock out{4096};
    std::vector<float> rendered[2];
};

} // namespace zephyra
