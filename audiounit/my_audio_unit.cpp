// MyAudioUnit's life: buses, allocation, the stream's rate.

#include "audiounit/my_audio_unit.h"

#include "stream/stream_controller.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <utility>

namespace zephyra {

namespace {

constexpr std::uint32_t kOutputs = 2;      ///< channels that are rendered
constexpr std::uint32_t kDryFrames = 4096; ///< of lastInputBuffer
constexpr AVAudioFormat kStandard = {};    ///< 44100 Hz, 2 channels
constexpr std::uint32_t kBytes = sizeof(float);

bool isKnown(FourCharCode type) {
    return type == component_type::effect || type == component_type::musicEffect ||
           type == component_type::instrument;
}

StreamDescription dryFormat() {
    return {.sampleRate = 44100.0,
            .formatCode = fourCC("lpcm"),
            .formatFlags =
                linear_flags::isFloat | linear_flags::isPacked | linear_flags::isNonInterleaved,
            .bytesPerPacket = kBytes,
            .framesPerPacket = 1,
            .bytesPerFrame = kBytes,
            .channelsPerFrame = kOutputs,
            .bitsPerChannel = 8 * kBytes};
}

} // namespace

std::unique_ptr<MyAudioUnit> MyAudioUnit::initWithComponentDescription_options_error(
    const AudioComponentDescription& description, Instance& instance, OSStatus& error) {
    error = audio_unit_status::invalidValue;
    if (!isKnown(description.componentType)) return nullptr;
    try {
        std::unique_ptr<MyAudioUnit> unit(new MyAudioUnit(description, instance));
        error = audio_unit_status::noError;
        return unit;
    } catch (const std::bad_alloc&) {
        error = audio_unit_status::failedInitialization;
        return nullptr;
    }
}

MyAudioUnit::MyAudioUnit(const AudioComponentDescription& description, Instance& instance)
    : description_(description), instance_(instance),
      isInstrument_(description.componentType == component_type::instrument),
      inputBus_(kStandard, kMostInputChannels),
      outputBus_(kStandard, isInstrument_ ? kOutputs : kMostInputChannels),
      inputBusses_{AUAudioUnitBusType::input, {}}, outputBusses_{AUAudioUnitBusType::output,
                                                                 {&outputBus_}},
      presets_(instance.folders, instance.log), alive_(std::make_shared<bool>(true)),
      notices_(std::make_unique<RenderNotices>()) {
    if (!isInstrument_) inputBusses_.busses.push_back(&inputBus_);
}

MyAudioUnit::~MyAudioUnit() {
    const RunLoop::Scope main(instance_.runLoop); // a driver may be about to poll the notices
    deallocateRenderResources();
    removeController();
    letGoOfTree();
}

OSStatus MyAudioUnit::setMaximumFramesToRender(std::uint32_t frames) {
    if (allocated_) return audio_unit_status::initialized;
    if (frames == 0 || frames > kMostFramesToRender) return audio_unit_status::invalidValue;
    maximumFrames_ = frames;
    return audio_unit_status::noError;
}

OSStatus MyAudioUnit::allocateRenderResourcesAndReturnError() {
    if (allocated_) return audio_unit_status::initialized;
    if (!isInstrument_ && outputBus_.format().channelCount != inputBus_.format().channelCount)
        return audio_unit_status::failedInitialization;
    if (!allocateBuffers()) {
        deallocateLocalResources();
        return audio_unit_status::failedInitialization;
    }
    capturedContext_ = musicalContextBlock;
    capturedTransport_ = transportStateBlock;
    record_.CURRENT_SAMPLING_RATE = outputBus_.format().sampleRate;
    record_.CURRENT_BUFFER_FRAME =
        std::round(instance_.session.IOBufferDuration * instance_.session.sampleRate);
    prepareStream();
    allocated_ = true;
    postToMain(&MyAudioUnit::askForParameters);
    return audio_unit_status::noError;
}

void MyAudioUnit::deallocateRenderResources() {
    if (!allocated_) return;
    allocated_ = false;
    if (controller_) controller_->removeTargets();
    deallocateLocalResources();
}

bool MyAudioUnit::allocateBuffers() {
    const std::uint32_t bytes = maximumFrames_ * kBytes;
    if (isInstrument_) {
        ownOutput_ = AllocateAudioBufferList(kOutputs, bytes);
        return ownOutput_ && allocateLocalResources();
    }
    // A mono input still becomes two channels of sound.
    pullBuffer_ =
        AllocateAudioBufferList(std::max(inputBus_.format().channelCount, kOutputs), bytes);
    return pullBuffer_ && allocateLocalResources();
}

bool MyAudioUnit::allocateLocalResources() {
    record_._inputDryWet = 0.0f;
    record_._inputDryWetInv = 0.0f;
    record_.m_a = 0.9992f;
    record_.m_b = 0.0008f;
    record_.m_z_dry_wet = 0.0f;
    record_.m_z_dry_wet_inv = 0.0f;
    record_.lastInputBuffer = AEAudioBufferListCreate(dryFormat(), kDryFrames);
    return record_.lastInputBuffer != nullptr;
}

void MyAudioUnit::deallocateLocalResources() {
    DestroyAudioBufferList(std::exchange(pullBuffer_, nullptr));
    DestroyAudioBufferList(std::exchange(ownOutput_, nullptr));
    AEAudioBufferListFree(std::exchange(record_.lastInputBuffer, nullptr));
}

void MyAudioUnit::prepareStream() {
    if (!_GRANULATOR_STREAM || !(record_.CURRENT_SAMPLING_RATE > 0.0)) return;
    if (!isInstrument_)
        _GRANULATOR_STREAM->waveForm().data().numberOfInputChannels =
            std::int64_t{inputBus_.format().channelCount};
    _GRANULATOR_STREAM->prepare(record_.CURRENT_SAMPLING_RATE);
    _GRANULATOR_STREAM->setBufferSize(record_.CURRENT_BUFFER_FRAME);
}

void MyAudioUnit::setDryWet(float value) {
    if (!std::isfinite(value)) return;
    const float half = passesInput_ ? std::clamp(value, 0.0f, 100.0f) / 50.0f : 2.0f;
    record_._inputDryWet = std::min(half, 1.0f);
    record_._inputDryWetInv = std::min(2.0f - half, 1.0f);
}

} // namespace zephyra
