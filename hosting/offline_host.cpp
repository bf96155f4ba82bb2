#include "hosting/offline_host.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

namespace zephyra {

namespace {

using audio_unit_status::noError;

double machineSeconds() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

} // namespace

OfflineHost::OfflineHost(MyAudioUnit& unit, Instance& instance)
    : unit_(unit), instance_(instance) {}

OfflineHost::~OfflineHost() {
    stop();
}

OSStatus OfflineHost::start(const HostSetup& setup) {
    stop();
    if (const OSStatus status = allocate(setup); status != noError) return status;
    running_ = true;
    setup_ = setup;
    events_.clear();
    rendered_ = keptAt_ = 0;
    keptBeats_ = beats_;
    renderSeconds_ = 0.0;
    settle();
    startedAt_ = instance_.runLoop.now();
    return noError;
}

OSStatus OfflineHost::allocate(const HostSetup& setup) {
    const RunLoop::Scope main(instance_.runLoop);
    if (const OSStatus status = unit_.setMaximumFramesToRender(setup.blockFrames);
        status != noError)
        return status;
    for (const AUAudioUnitBusArray* side : {&unit_.inputBusses(), &unit_.outputBusses()})
        for (AUAudioUnitBus* bus : side->busses)
            if (const OSStatus status =
                    bus->setFormat({setup.sampleRate, bus->format().channelCount});
                status != noError)
                return status;
    instance_.runLoop.setClock(RunLoop::Clock::sample);
    instance_.session = {.sampleRate = setup.sampleRate,
                         .IOBufferDuration = setup.blockFrames / setup.sampleRate};
    unit_.musicalContextBlock = this;
    unit_.transportStateBlock = this;
    const OSStatus status = unit_.allocateRenderResourcesAndReturnError();
    if (status != noError) takeBlocksAway();
    return status;
}

void OfflineHost::takeBlocksAway() {
    unit_.musicalContextBlock = nullptr;
    unit_.transportStateBlock = nullptr;
}

void OfflineHost::stop() {
    if (!running_) return;
    running_ = false;
    const RunLoop::Scope main(instance_.runLoop);
    unit_.deallocateRenderResources();
    takeBlocksAway();
}

/// Everything that was asked for is done, however long the machine takes: that makes a render
/// repeatable.
void OfflineHost::settle() {
    instance_.runLoop.finishWork();
}

void OfflineHost::setTempo(double beatsPerMinute) {
    keepBeats();
    context_.currentTempo = beatsPerMinute;
}

void OfflineHost::setMeter(double numerator, double denominator) {
    context_.timeSignatureNumerator = numerator;
    context_.timeSignatureDenominator = denominator;
}

void OfflineHost::setBeatPosition(double beats) {
    beats_ = beats;
    keepBeats();
}

void OfflineHost::setTransport(bool moving) {
    keepBeats();
    moving_ = moving;
}

void OfflineHost::keepBeats() {
    keptBeats_ = beats_;
    keptAt_ = rendered_;
}

void OfflineHost::queueParameter(AUParameterAddress address, AUValue value, std::uint32_t offset) {
    queueRamp(address, value, 0, offset);
}

void OfflineHost::queueRamp(AUParameterAddress address, AUValue end, std::uint32_t frames,
                            std::uint32_t offset) {
    AURenderEvent event;
    event.eventType = frames == 0 ? AURenderEventType::parameter : AURenderEventType::parameterRamp;
    event.parameter = {address, end, frames};
    events_.add({.frame = offset, .event = event});
}

void OfflineHost::queueMidi(const std::uint8_t* bytes, std::uint16_t length, std::uint32_t offset) {
    if (!bytes || length == 0) return;
    AURenderEvent event;
    event.eventType = AURenderEventType::MIDI;
    event.MIDI = {};
    event.MIDI.length = std::min<std::uint16_t>(length, sizeof event.MIDI.data);
    std::copy_n(bytes, event.MIDI.length, event.MIDI.data);
    events_.add({.frame = offset, .event = event, .bytes = {bytes, bytes + length}});
}

void OfflineHost::queueTask(std::function<void()> task, std::uint32_t offset) {
    events_.add({.frame = offset, .task = std::move(task)});
}

OSStatus OfflineHost::render(const Block& block) {
    if (!running_) return audio_unit_status::uninitialized;
    std::uint32_t done = 0;
    do {
        settle();
        OSStatus status = actUpTo(done);
        const std::uint32_t end = cycleEnd(done, block.frames);
        if (status == noError && end > done) status = renderCycle(block, done, end);
        if (status != noError) return status;
        done = end;
    } while (done < block.frames);
    events_.endBlock(block.frames);
    return noError;
}

/// MAIN runs after each, or the later of two would be taken first where they go different ways.
OSStatus OfflineHost::actUpTo(std::uint32_t frame) {
    for (auto due = events_.takeDue(frame); !due.empty(); due = events_.takeDue(frame)) {
        if (const auto task = std::move(due.front().task)) {
            const RunLoop::Scope main(instance_.runLoop);
            task();
        } else if (const OSStatus status = handOver(due); status != noError) {
            return status;
        }
        settle();
    }
    return noError;
}

OSStatus OfflineHost::handOver(std::span<EventQueue::Entry> events) {
    const AURenderEvent* next = nullptr;
    for (auto entry = events.rbegin(); entry != events.rend(); ++entry) {
        entry->event.eventSampleTime = static_cast<AUEventSampleTime>(rendered_);
        entry->event.next = std::exchange(next, &entry->event);
    }
    if (inlet_)
        for (const EventQueue::Entry& entry : events)
            inlet_->push(entry.bytes.data(), entry.bytes.size());
    AudioBuffer nothing[2] = {};
    handsOver_ = true;
    const OSStatus status = callUnit(0, nothing, next);
    handsOver_ = false;
    return status;
}

/// Also at multiples of the block length, whatever is cut before: so a long block is cut like short
/// ones.
std::uint32_t OfflineHost::cycleEnd(std::uint32_t begin, std::uint32_t frames) {
    const std::uint64_t most = (std::uint64_t{begin} / setup_.blockFrames + 1) * setup_.blockFrames;
    const std::uint64_t end = std::min<std::uint64_t>(most, events_.nextCut().value_or(most));
    return static_cast<std::uint32_t>(std::min<std::uint64_t>(end, frames));
}

OSStatus OfflineHost::renderCycle(const Block& block, std::uint32_t begin, std::uint32_t end) {
    if (listener_) listener_(end);
    const std::uint32_t frames = end - begin;
    const auto bytes = frames * static_cast<std::uint32_t>(sizeof(float));
    AudioBuffer channels[2] = {{.mDataByteSize = bytes, .mData = block.left + begin},
                               {.mDataByteSize = bytes, .mData = block.right + begin}};
    input_[0] = block.inputLeft ? block.inputLeft + begin : nullptr;
    input_[1] = block.inputRight ? block.inputRight + begin : nullptr;
    const OSStatus status = callUnit(frames, channels, nullptr);
    if (status == noError) goOn(frames);
    return status;
}

OSStatus OfflineHost::callUnit(std::uint32_t frames, AudioBuffer (&channels)[2],
                               const AURenderEvent* events) {
    AudioBufferList output{.mNumberBuffers = 2, .mBuffers = channels};
    const AUInternalRenderBlock renderBlock = unit_.internalRenderBlock();
    const double before = machineSeconds();
    const OSStatus status = renderBlock(frames, output, events, this);
    renderSeconds_ += machineSeconds() - before;
    return status;
}

void OfflineHost::goOn(std::uint32_t frames) {
    rendered_ += frames;
    wasMoving_ = moving_;
    if (moving_ && std::isfinite(context_.currentTempo))
        beats_ = keptBeats_ + static_cast<double>(rendered_ - keptAt_) * context_.currentTempo /
                                  (60.0 * setup_.sampleRate);
    instance_.runLoop.advance(startedAt_ + static_cast<double>(rendered_) / setup_.sampleRate);
}

bool OfflineHost::musicalContext(AUMusicalContext& context) ZEPHYRA_NONBLOCKING {
    if (handsOver_ || !reportsContext_ || !std::isfinite(context_.currentTempo)) return false;
    context = context_;
    context.currentBeatPosition = beats_;
    return true;
}

bool OfflineHost::transportState(AUTransportState& state) ZEPHYRA_NONBLOCKING {
    state.flags = (moving_ ? transport_flag::moving : 0u) |
                  (moving_ != wasMoving_ ? transport_flag::changed : 0u);
    return reportsTransport_ && !handsOver_;
}

OSStatus OfflineHost::pullInput(std::uint32_t frames, std::int64_t /*bus*/,
                                AudioBufferList& list) ZEPHYRA_NONBLOCKING {
    for (std::uint32_t c = 0; c < list.mNumberBuffers; ++c) {
        float* const to = list.floats(c);
        const float* const from = c < 2 ? input_[c] : nullptr;
        if (!to) continue; // no memory is silence
        if (from)
            std::copy_n(from, frames, to);
        else
            std::fill_n(to, frames, 0.0f);
    }
    return noError;
}

} // namespace zephyra
