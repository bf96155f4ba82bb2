// FakeController: a view controller that writes down what an audio unit asks of it.
#pragma once

#include "audiounit/my_audio_unit.h"
#include "modulation/lfo_widgets_mapping.h"
#include "modulation/modulation.h"
#include "stream/stream_controller.h"

#include <sstream>

namespace zephyra {

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

} // namespace zephyra
