// MyAudioUnit: what a host loads: buses, parameters, and the render block that it calls.
#pragma once

#include "audiounit/audio_struct.h"
#include "audiounit/audio_unit_controller.h"
#include "audiounit/audio_unit_presets.h"
#include "audiounit/dry_wet_mix.h"
#include "audiounit/parameter_table.h"
#include "audiounit/render_notices.h"
#include "platform/audio_unit/audio_unit_bus.h"
#include "platform/audio_unit/audio_unit_host.h"
#include "platform/audio_unit/audio_unit_parameters.h"
#include "platform/audio_unit/audio_unit_status.h"
#include "platform/instance.h"
#include "platform/threads/dirty_mask.h"
#include "platform/threads/relaxed.h"

#include <atomic>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace zephyra {

class MyAudioUnit;

/// The render block: one call per cycle. Copies refer to the same audio unit.
class AUInternalRenderBlock {
public:
    explicit AUInternalRenderBlock(MyAudioUnit& unit) : unit_(&unit) {}
    /// frameCount frames into the first two buffers of outputData, whose pointers may be null: then
    /// they are set. events and pullInput may be null. Answers a code of audio_unit_status, or the
    /// status of a failed pull. RENDER.
    OSStatus operator()(std::uint32_t frameCount, AudioBufferList& outputData,
                        const AURenderEvent* events,
                        AURenderPullInputBlock* pullInput) const ZEPHYRA_NONBLOCKING;

private:
    MyAudioUnit* unit_;
};

/// Order of calls: init, setController_andParameters, set blocks, formats and
/// maximumFramesToRender, allocate, render, deallocate, and again. MAIN unless said otherwise;
/// hosts' threads enter through RunLoop::Scope. Destroyed OFF.
class MyAudioUnit {
public:
    static constexpr std::uint32_t kStartFramesToRender = 512;
    static constexpr std::uint32_t kMostFramesToRender = 4096;
    static constexpr std::uint32_t kMostInputChannels = 8;
    /// Magnitude above which an input sample counts as a fault of the host, and as silence.
    static constexpr float kMostInput = 1e6f;

    /// Null, and error set, for a type that is none of component_type.
    static std::unique_ptr<MyAudioUnit>
    initWithComponentDescription_options_error(const AudioComponentDescription& description,
                                               Instance& instance, OSStatus& error);
    ~MyAudioUnit();
    MyAudioUnit(const MyAudioUnit&) = delete;
    MyAudioUnit& operator=(const MyAudioUnit&) = delete;

    const AudioComponentDescription& componentDescription() const { return description_; }
    bool isInstrument() const { return isInstrument_; }
    AUAudioUnitBusArray& inputBusses() { return inputBusses_; } ///< empty for an instrument
    AUAudioUnitBusArray& outputBusses() { return outputBusses_; }
    /// Null before setController_andParameters.
    const std::shared_ptr<AUParameterTree>& parameterTree() const { return parameterTree_; }

    std::uint32_t maximumFramesToRender() const { return maximumFrames_; }
    /// 1 to kMostFramesToRender, and only while render resources are not allocated; else a code and
    /// nothing changed.
    OSStatus setMaximumFramesToRender(std::uint32_t frames);

    /// The host's; each may be null. They count from the next allocation on.
    AUHostMusicalContextBlock* musicalContextBlock = nullptr;
    AUHostTransportStateBlock* transportStateBlock = nullptr;

    /// Connects to the view controller, with the 24 parameters in address order; null does nothing.
    /// The adaptation to the component's type follows on the main queue. OFF.
    void setController_andParameters(AudioUnitController* controller,
                                     std::vector<std::shared_ptr<AUParameter>> parameters);
    /// Lets go of the controller and tells it. OFF.
    void removeController();
    void createParametersTree(std::vector<std::shared_ptr<AUParameter>> parameters);

    /// Of a program that plays by itself: the input is for LIVE alone, which begins switched off,
    /// and is never passed on, whatever Dry/Wet says; the demonstration sample is loaded as for an
    /// instrument. Before a controller comes.
    void takeInputForLiveAlone() { passesInput_ = false; }
    /// Whether the host's transport moved when it was last told of. Any thread.
    bool hostMoves() const ZEPHYRA_NONBLOCKING { return record_.lastWasPlaying; }

    /// Sets LFO processing on or off in the table of the control manager.
    void setLfoToggleState(bool on);

    /// value in percent, 0..100: over the first half the wet gain rises to 1, over the second the
    /// dry gain falls to 0. One that is not finite is ignored.
    void setDryWet(float value);

    // Presets, see audio_unit_presets.h.

    void makeFactoryPresets() { presets_.makeFactoryPresets(); }
    const std::vector<AUAudioUnitPreset>& factoryPresets() { return presets_.factoryPresets(); }
    std::optional<AUAudioUnitPreset> currentPreset() { return presets_.currentPreset(); }
    /// A preset of the factory replaces the controller's state on the main queue.
    void setCurrentPreset(const std::optional<AUAudioUnitPreset>& preset) {
        presets_.setCurrentPreset(preset, controller_);
    }

    /// The controller's state, see AudioUnitController::getState; empty without a controller.
    PropertyDictionary getFullState() const;
    PropertyDictionary getFullStateForDocument() const { return getFullState(); }
    /// Hands state to the controller, which applies it on the main queue.
    void setFullState(PropertyDictionary state);
    void setFullStateForDocument(PropertyDictionary state) { setFullState(std::move(state)); }
    /// What a host reads, which is not what it writes: the platform's own answer, parameters only.
    /// Plug-ins keep getFullState in their sessions.
    PropertyDictionary fullState() const {
        return defaultFullState(description_, parameterTree_.get());
    }
    PropertyDictionary fullStateForDocument() const { return fullState(); }

    /// Buffers, host blocks, rates. A code of audio_unit_status when the buses do not go together
    /// or memory is short. OFF.
    OSStatus allocateRenderResourcesAndReturnError();
    /// OFF.
    void deallocateRenderResources();
    bool renderResourcesAllocated() const { return allocated_; }
    /// Dry/Wet fades in, and position and tempo of the host are news again; its transport, too,
    /// while hostMoves: a stream that follows it is to stand by then. MAIN and OFF.
    void startAnew(bool hostMoves);

    AUInternalRenderBlock internalRenderBlock() { return AUInternalRenderBlock(*this); }

    /// Whether a cycle of silent input without events would be silent, and leave nothing behind
    /// that is heard later: a host may then call a cycle of 0 frames, which tells of the music, and
    /// pass(). RENDER.
    bool rests() const ZEPHYRA_NONBLOCKING;
    /// Passes over frames of a unit that rests. RENDER.
    void pass(std::uint32_t frames) ZEPHYRA_NONBLOCKING;

    /// Leaves a note for MAIN. RENDER.
    void noticeNoteOn(int note, int velocity) ZEPHYRA_NONBLOCKING;
    /// What a control of the controller's stands at, as set after the state of that number. MAIN.
    void keepParameter(AUParameterAddress address, AUValue value, StateOrder::Number number) {
        storeParameter(record_, address, value, number);
    }
    /// The same unless somebody has set the parameter since state was asked for: false, then. MAIN.
    bool keepParameterUnlessSince(AUParameterAddress address, AUValue value,
                                  StateOrder::Number number, StateOrder::Number state) {
        return storeParameterUnlessSince(record_, address, value, number, state);
    }
    /// What somebody has set it to since that state was asked for; nothing otherwise. MAIN.
    std::optional<AUValue> setSince(AUParameterAddress address, StateOrder::Number state) const {
        if (!isParameterSince(record_, address, state)) return std::nullopt;
        return loadParameter(record_, address);
    }
    /// Tells MAIN that a parameter has a new value. Any thread.
    void markParameter(AUParameterAddress address) ZEPHYRA_NONBLOCKING { marks_.mark(address); }

    /// Takes what RENDER left: parameters, tempo, then notices in order. The run loop calls it as a
    /// source of its own.
    void takeNotices();
    /// Notices that found the ring full. Any thread.
    std::uint64_t lostNotices() const { return notices_->lost(); }

    const audio_struct& record() const { return record_; }

private:
    friend class AUInternalRenderBlock;

    MyAudioUnit(const AudioComponentDescription& description, Instance& instance);
    void postToMain(void (MyAudioUnit::*task)());
    void adaptToComponentType();
    void beginWithSample();
    void askForParameters();
    void prepareStream();
    void letGoOfTree();
    bool allocateBuffers();
    bool allocateLocalResources();
    void deallocateLocalResources();
    void takeParameters();
    void takeTempo();
    void act(const RenderNotice& notice);

    OSStatus render(std::uint32_t frames, AudioBufferList& output, const AURenderEvent* events,
                    AURenderPullInputBlock* pullInput) ZEPHYRA_NONBLOCKING;
    OSStatus pull(std::uint32_t frames, AURenderPullInputBlock* pullInput) ZEPHYRA_NONBLOCKING;
    bool followMusicalContext(bool jumped) ZEPHYRA_NONBLOCKING;
    bool followBars(const AUMusicalContext& context) ZEPHYRA_NONBLOCKING;
    bool followBarsOf(double quarters, double beat, double position) ZEPHYRA_NONBLOCKING;
    void followRewinds(double position) ZEPHYRA_NONBLOCKING;
    void followHost() ZEPHYRA_NONBLOCKING;
    void jumpTo(double position) ZEPHYRA_NONBLOCKING;
    void followTransport(bool moves, bool beginsBar) ZEPHYRA_NONBLOCKING;
    void applyEvents(const AURenderEvent* events) ZEPHYRA_NONBLOCKING;
    void applyParameter(const AUParameterEvent& event) ZEPHYRA_NONBLOCKING;
    void applyMidi(const AUMIDIEvent& event) ZEPHYRA_NONBLOCKING;
    void renderInstrument(std::uint32_t frames, AudioBufferList& output) ZEPHYRA_NONBLOCKING;
    void renderEffect(std::uint32_t frames, AudioBufferList& output) ZEPHYRA_NONBLOCKING;
    DryWetGains dryWetGains() const ZEPHYRA_NONBLOCKING;
    void notice(RenderNoticeKind kind) ZEPHYRA_NONBLOCKING;

    AudioComponentDescription description_;
    Instance& instance_;
    bool isInstrument_;
    bool passesInput_ = true; // Dry/Wet mixes it in
    AUAudioUnitBus inputBus_, outputBus_;
    AUAudioUnitBusArray inputBusses_, outputBusses_;
    std::uint32_t maximumFrames_ = kStartFramesToRender;
    bool allocated_ = false;

    audio_struct record_;
    AudioUnitPresets presets_;
    std::shared_ptr<AUParameterTree> parameterTree_;
    AudioUnitController* controller_ = nullptr;
    MOK_SCRUB_GRANULATOR* _GRANULATOR_STREAM = nullptr;
    Modulation* controlManager_ = nullptr;
    RunLoop::Token source_ = 0;
    std::shared_ptr<bool> alive_; // posted tasks look at it

    AudioBufferList* pullBuffer_ = nullptr; // an effect's input, which its sound is made in
    AudioBufferList* ownOutput_ = nullptr;  // an instrument's, for a host that brings no memory
    AUHostMusicalContextBlock* capturedContext_ = nullptr;
    AUHostTransportStateBlock* capturedTransport_ = nullptr;
    // Of a meter that is not in quarters; NaN: none yet.
    double lastBar_ = std::numeric_limits<double>::quiet_NaN();

    // From RENDER to MAIN.
    std::unique_ptr<RenderNotices> notices_;
    DirtyMask marks_;
    std::atomic<double> tempo_{std::numeric_limits<double>::quiet_NaN()}; // NaN: none to take
};

} // namespace zephyra
