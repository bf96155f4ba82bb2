#include "hosting/offline_host.h"

#include <algorithm>
#include <chrono>
#include <cmath>

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
    dropEvents();
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

void OfflineHost::dropEvents() {
    events_.clear();
    midi_.clear();
}

/// Everything that was asked for is done, however long the machine takes: that makes a render
/// repeatable.
void OfflineHost::settle() {
    instance_.runLoop.runPosted(); // may begin background work
    instance_.runLoop.waitForWork();
    instance_.runLoop.runPosted();
}

void OfflineHost::setTempo(double beatsPerMinute) {
    keepBeats();
    context_.currentTempo = beatsPerMinute;
    context_.timeSignatureDenominator = denominator;
}

void OfflineHost::setMeter(double numerator, double denominator) {
    context_.timeSignatureNumerator = numerator;
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
    queueEvent(AURenderEventType::parameter, offset).parameter = {address, value, 0};
}

void OfflineHost::queueRamp(AUParameterAddress address, AUValue end, std::uint32_t frames,
                            std::uint32_t offset) {
    queueEvent(AURenderEventType::parameterRamp, offset).parameter = {address, end, frames};
}

void OfflineHost::queueMidi(const std::uint8_t* bytes, std::uint16_t length, std::uint32_t offset) {
    if (!bytes || length == 0) return;
    AUMIDIEvent message{};
    message.length = std::min<std::uint16_t>(length, sizeof message.data);
    std::copy_n(bytes, message.length, message.data);
    queueEvent(AURenderEventType::MIDI, offset).MIDI = message;

    const auto place =
        std::upper_bound(midi_.begin(), midi_.end(), offset,
                         [](std::uint32_t at, const MidiBytes& m) { return at < m.offset; });
    midi_.insert(place, {offset, {bytes, bytes + length}});
}

/// Behind those of its offset.
AURenderEvent& OfflineHost::queueEvent(AURenderEventType type, std::uint32_t offset) {
    AURenderEvent event;
    event.eventSampleTime = AUEventSampleTime{offset};
    event.eventType = type;
    const auto place = std::upper_bound(events_.begin(), events_.end(), event,
                                        [](const AURenderEvent& a, const AURenderEvent& b) {
                                            return a.eventSampleTime < b.eventSampleTime;
                                        });
    return *events_.insert(place, event);
}

const AURenderEvent* OfflineHost::linkEvents() {
    const AURenderEvent* next = nullptr;
    for (auto event = events_.rbegin(); event != events_.rend(); ++event) {
        event->eventSampleTime += static_cast<AUEventSampleTime>(rendered_);
        event->next = next;
        next = &*event;
    }
    return next;
}

OSStatus OfflineHost::render(const Block& block) {
    if (!running_) return audio_unit_status::uninitialized;
    std::uint32_t done = 0;
    do {
        const auto at = [done](auto* channel) { return channel ? channel + done : nullptr; };
        const Block piece{.frames = std::min(setup_.blockFrames, block.frames - done),
                          .inputLeft = at(block.inputLeft),
                          .inputRight = at(block.inputRight),
                          .left = at(block.left),
                          .right = at(block.right)};
        if (const OSStatus status = renderPiece(piece); status != noError) return status;
        done += piece.frames;
    } while (done < block.frames);
    return noError;
}

OSStatus OfflineHost::renderPiece(const Block& piece) {
    settle();
    const OSStatus status = callUnit(piece);
    dropEvents();
    if (status == noError) goOn(piece.frames);
    return status;
}

OSStatus OfflineHost::callUnit(const Block& piece) {
    const auto bytes = piece.frames * static_cast<std::uint32_t>(sizeof(float));
    AudioBuffer channels[] = {{.mDataByteSize = bytes, .mData = piece.left},
                              {.mDataByteSize = bytes, .mData = piece.right}};
    AudioBufferList output{.mNumberBuffers = 2, .mBuffers = channels};
    input_[0] = piece.inputLeft;
    input_[1] = piece.inputRight;
    const AURenderEvent* const events = linkEvents();
    pushMidi();
    const AUInternalRenderBlock renderBlock = unit_.internalRenderBlock();
    const double before = machineSeconds();
    const OSStatus status = renderBlock(piece.frames, output, events, this);
    renderSeconds_ += machineSeconds() - before;
    return status;
}

void OfflineHost::pushMidi() ZEPHYRA_NONBLOCKING {
    if (!inlet_) return;
    for (const MidiBytes& event : midi_) inlet_->push(event.bytes.data(), event.bytes.size());
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
    if (!reportsContext_ || !std::isfinite(context_.currentTempo)) return false;
    context = context_;
    context.currentBeatPosition = beats_;
    return true;
}

bool OfflineHost::transportState(AUTransportState& state) ZEPHYRA_NONBLOCKING {
    state.flags = (moving_ ? transport_flag::moving : 0u) |
                  (moving_ != wasMoving_ ? transport_flag::changed : 0u);
    return reportsTransport_;
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
