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
    : instance_(instance), own_(std::make_unique<UnitHost>(unit, instance)), host_(*own_) {}

OfflineHost::OfflineHost(UnitHost& host, Instance& instance) : instance_(instance), host_(host) {}

OfflineHost::~OfflineHost() {
    if (own_) stop();
}

OSStatus OfflineHost::start(const HostSetup& setup) {
    if (const OSStatus status = host_.start(setup); status != noError) return status;
    goOffline();
    return noError;
}

void OfflineHost::goOffline() {
    settle(); // what came before is none of the stretch's
    const RunLoop::Scope main(instance_.runLoop);
    instance_.runLoop.setClock(RunLoop::Clock::sample);
    events_.clear();
    renderSeconds_ = 0.0;
    beginStretch();
}

void OfflineHost::beginStretch() {
    const RunLoop::Scope main(instance_.runLoop);
    instance_.runLoop.beginStretch();
    startedFrame_ = renderedFrames();
}

void OfflineHost::stop() {
    host_.stop();
}

/// Everything that was asked for is done, however long the machine takes: that makes a render
/// repeatable. Who asks for more meanwhile waits for MAIN, and is the next cycle's: somebody who
/// never stops asking would else hold it up for ever.
void OfflineHost::settle() {
    const RunLoop::Scope main(instance_.runLoop);
    instance_.runLoop.finishWork();
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
    if (!host_.isRunning()) return audio_unit_status::uninitialized;
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

OSStatus OfflineHost::tellTime() {
    const RunLoop::Scope main(instance_.runLoop);
    return host_.render({}, nullptr);
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
        entry->event.eventSampleTime = static_cast<AUEventSampleTime>(renderedFrames());
        entry->event.next = std::exchange(next, &entry->event);
    }
    // Between a message's two ways nobody else takes what RENDER left.
    const RunLoop::Scope main(instance_.runLoop);
    if (inlet_)
        for (const EventQueue::Entry& entry : events)
            inlet_->push(entry.bytes.data(), entry.bytes.size());
    const double before = machineSeconds();
    const OSStatus status = host_.handOver(next);
    renderSeconds_ += machineSeconds() - before;
    return status;
}

/// Also at multiples of the block length, whatever is cut before: so a long block is cut like short
/// ones.
std::uint32_t OfflineHost::cycleEnd(std::uint32_t begin, std::uint32_t frames) {
    const std::uint64_t blockFrames = host_.setup().blockFrames;
    const std::uint64_t most = (begin / blockFrames + 1) * blockFrames;
    const std::uint64_t end = std::min<std::uint64_t>(most, events_.nextCut().value_or(most));
    return static_cast<std::uint32_t>(std::min<std::uint64_t>(end, frames));
}

OSStatus OfflineHost::renderCycle(const Block& block, std::uint32_t begin, std::uint32_t end) {
    if (listener_) listener_(end);
    const auto from = [begin](const float* input) { return input ? input + begin : nullptr; };
    // What other threads ask of MAIN is done between two cycles.
    const RunLoop::Scope main(instance_.runLoop);
    const double before = machineSeconds();
    const OSStatus status = host_.render({.frames = end - begin,
                                          .input = {from(block.inputLeft), from(block.inputRight)},
                                          .output = {block.left + begin, block.right + begin}},
                                         nullptr);
    renderSeconds_ += machineSeconds() - before;
    if (status == noError)
        instance_.runLoop.advanceStretch(static_cast<double>(renderedFrames() - startedFrame_) /
                                         host_.setup().sampleRate);
    return status;
}

} // namespace zephyra
