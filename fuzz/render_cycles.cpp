#include "fuzz/render_cycles.h"

#include "fuzz/byte_reader.h"
#include "hosting/hosted_instance.h"
#include "tests/support/heard_instance.h"
#include "tests/support/test_sounds.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <deque>
#include <limits>
#include <utility>

namespace zephyra {
namespace {

constexpr int kMostSteps = 300;
constexpr std::uint32_t kMostFrames = 1 << 15; // of one input, so that it stays quick
constexpr std::uint32_t kBuffer = 4096;        // frames that a host has memory for
constexpr float kUntouched = 0x1.5p-30f;       // what stands where nothing may be written
constexpr double kMostSeconds = 60.0;          // that pass in one input
constexpr std::size_t kMostEvents = 64;        // of one cycle
constexpr OSStatus kPullFails = -50;

/// The bits of a cycle's second byte.
enum : unsigned {
    noLeft = 1,
    noRight = 2,
    oneBuffer = 4,
    noPull = 8,
    pullFails = 16,
    hostsMemory = 32,
    pullsNothing = 64,
    threeBuffers = 128,
};

class Play : AUHostMusicalContextBlock, AUHostTransportStateBlock, AURenderPullInputBlock {
public:
    explicit Play(std::span<const std::byte> bytes)
        : bytes_(bytes), system_(kComponents[bytes_.below(3)], [this](Instance& fresh) {
              log_.hear(fresh);
              fresh.folders.resources = "/nonexistent";
              fresh.runLoop.setClock(RunLoop::Clock::sample);
          }) {
        system_.connect();
        system_.stream().setSeed(1);
        unit_->musicalContextBlock = this;
        unit_->transportStateBlock = this;
        unit_->allocateRenderResourcesAndReturnError();
    }

    std::string run() {
        for (int step = 0; step < kMostSteps && !bytes_.empty() && wrong_.empty(); ++step) act();
        if (unit_->lostNotices() > 0) wrong_ += "a notice is lost ";
        return wrong_;
    }

private:
    using Step = void (Play::*)();
    static constexpr FourCharCode kComponents[] = {
        component_type::effect, component_type::musicEffect, component_type::instrument};

    void act() {
        static constexpr Step kSteps[] = {&Play::cycle,    &Play::parameterEvent, &Play::midiEvent,
                                          &Play::music,    &Play::transport,      &Play::passTime,
                                          &Play::button,   &Play::control,        &Play::allocate,
                                          &Play::fromHost, &Play::scan,           &Play::state,
                                          &Play::sound};
        (this->*kSteps[bytes_.below(std::size(kSteps))])();
    }

    // --- What comes with a cycle ---

    AURenderEvent* newEvent() {
        if (events_.size() == kMostEvents) return nullptr;
        AURenderEvent& event = events_.emplace_back();
        if (events_.size() > 1) events_[events_.size() - 2].next = &event;
        event.eventSampleTime = bytes_.take<std::int16_t>();
        return &event;
    }
    void parameterEvent() {
        const auto type = static_cast<AURenderEventType>(bytes_.byte());
        const std::uint64_t address = bytes_.byte();
        const float value = bytes_.take<float>();
        AURenderEvent* const event = newEvent();
        if (!event) return;
        event->eventType = type;
        event->parameter = {address == 255 ? ~std::uint64_t{0} : address, value, bytes_.byte()};
    }
    void midiEvent() {
        AUMIDIEvent message{bytes_.byte(), 0, {}};
        for (std::uint8_t& part : message.data) part = bytes_.byte();
        AURenderEvent* const event = newEvent();
        if (!event) return;
        event->eventType = AURenderEventType::MIDI;
        event->MIDI = message;
    }
    void music() {
        double* const fields[] = {&context_.currentTempo, &context_.timeSignatureNumerator,
                                  &context_.currentBeatPosition};
        *fields[bytes_.below(3)] = bytes_.take<double>();
    }
    void transport() { flags_ = bytes_.byte(); }

    bool musicalContext(AUMusicalContext& asked) ZEPHYRA_NONBLOCKING override {
        asked = context_;
        return (flags_ & 64) == 0;
    }
    bool transportState(AUTransportState& state) ZEPHYRA_NONBLOCKING override {
        state.flags = flags_;
        return (flags_ & 128) == 0;
    }
    OSStatus pullInput(std::uint32_t frames, std::int64_t,
                       AudioBufferList& list) ZEPHYRA_NONBLOCKING override {
        for (std::uint32_t c = 0; c < list.mNumberBuffers; ++c) {
            if (cycle_ & pullsNothing)
                list.mBuffers[c].mData = nullptr;
            else if (cycle_ & hostsMemory)
                list.mBuffers[c].mData = input_.data();
            else
                std::copy_n(input_.data(), frames, list.floats(c));
        }
        return cycle_ & pullFails ? kPullFails : audio_unit_status::noError;
    }

    // --- The cycle ---

    void cycle() {
        const std::uint32_t frames = bytes_.take<std::uint16_t>() % (kBuffer + 100);
        cycle_ = bytes_.byte();
        fillInput(bytes_.byte());
        if (rendered_ + frames > kMostFrames) return;
        rendered_ += frames;
        for (auto& channel : output_) channel.fill(kUntouched);
        AudioBuffer buffers[3];
        for (std::size_t c = 0; c < 3; ++c) buffers[c].mData = output_[c].data();
        if (cycle_ & noLeft) buffers[0].mData = nullptr;
        if (cycle_ & noRight) buffers[1].mData = nullptr;
        AudioBufferList list{.mNumberBuffers = cycle_ & oneBuffer      ? 1u
                                               : cycle_ & threeBuffers ? 3u
                                                                       : 2u,
                             .mBuffers = buffers};
        const AURenderEvent* const events = events_.empty() ? nullptr : &events_.front();
        AURenderPullInputBlock* const pull = cycle_ & noPull ? nullptr : this;
        const OSStatus expected = expectedStatus(frames);
        const OSStatus status = unit_->internalRenderBlock()(frames, list, events, pull);
        events_.clear();
        if (status != expected) wrong_ += "status " + std::to_string(status) + " ";
        check(list, status == audio_unit_status::noError && !(cycle_ & oneBuffer) ? frames : 0);
    }

    void fillInput(std::uint8_t kind) {
        using Limits = std::numeric_limits<float>;
        constexpr float kKinds[] = {0.0f,
                                    0.5f,
                                    -1e6f,
                                    1e30f,
                                    Limits::quiet_NaN(),
                                    Limits::infinity(),
                                    -Limits::infinity(),
                                    1e-40f,
                                    -Limits::max()};
        if (kind == last_) return;
        last_ = kind;
        input_.fill(kKinds[kind % std::size(kKinds)]);
        if (kind >= 128) // one such frame in a quiet sound
            for (std::size_t i = 0; i < input_.size(); ++i)
                if (i % 97 != 5) input_[i] = static_cast<float>(i % 32) / 64.0f - 0.25f;
    }

    OSStatus expectedStatus(std::uint32_t frames) const {
        using namespace audio_unit_status;
        if (!unit_->renderResourcesAllocated()) return uninitialized;
        if (frames > unit_->maximumFramesToRender()) return tooManyFrames;
        if (cycle_ & oneBuffer || unit_->isInstrument() || frames == 0) return noError;
        if (cycle_ & noPull) return noConnection;
        return cycle_ & pullFails ? kPullFails : noError;
    }

    void check(const AudioBufferList& list, std::uint32_t frames) {
        for (std::uint32_t c = 0; c < list.mNumberBuffers; ++c) {
            const float* const samples = list.floats(c);
            const std::uint32_t written = c < 2 ? frames : 0;
            if (written > 0 && !samples) wrong_ += "no output memory ";
            for (std::uint32_t i = 0; samples && i < written; ++i)
                if (!std::isfinite(samples[i])) return addNotFinite(c, i);
        }
        for (std::size_t c = 0; c < output_.size(); ++c) {
            const auto& channel = output_[c];
            const bool given = c < 2 && c < list.mNumberBuffers &&
                               list.floats(static_cast<std::uint32_t>(c)) == channel.data();
            if (std::any_of(channel.begin() + (given ? frames : 0), channel.end(),
                            [](float sample) { return sample != kUntouched; }))
                wrong_ += "written beyond the frames ";
        }
    }
    void addNotFinite(std::uint32_t channel, std::uint32_t frame) {
        wrong_ += "channel " + std::to_string(channel) + " is not finite at frame " +
                  std::to_string(frame) + " ";
    }

    // --- Around it ---

    void passTime() {
        const double seconds = bytes_.take<std::uint16_t>() / 1000.0;
        if ((seconds_ += seconds) > kMostSeconds) return;
        instance_.runLoop.waitForWork();
        instance_.runLoop.advance(instance_.runLoop.now() + seconds);
        while (instance_.alerts.answer(0)) {
        }
    }

    void button() {
        StreamControls& c = view_->_GRANULATOR_STREAM.controls;
        Button* const buttons[] = {&c._playToggle, &c._rewind,   &c._freeze,
                                   &c._enableLIVE, &c.liveClear, &c._keyboardButton};
        buttons[bytes_.below(std::size(buttons))]->sendActionsForControlEvents(
            control_event::touchUpInside);
    }

    void control() {
        const auto id = static_cast<ControlId>(bytes_.below(kControlCount));
        const float value = bytes_.take<float>();
        if (MOK_KNOB* const own = view_->ownKnob(id)) {
            own->setValue(value);
            own->sendEventValueChanged();
        } else if (bytes_.byte() % 2) {
            view_->_GRANULATOR_STREAM.setDisplayed(id, value);
        } else {
            view_->_GRANULATOR_STREAM.setLinear(id, value);
        }
    }

    void allocate() {
        constexpr double kRates[] = {44100.0, 8000.0,   192000.0, 1.0,
                                     1e-300,  768000.0, 1e300,    48000.5};
        unit_->deallocateRenderResources();
        const double rate = kRates[bytes_.below(std::size(kRates))];
        unit_->setMaximumFramesToRender(bytes_.take<std::uint16_t>());
        const std::uint32_t channels = bytes_.byte() % 10;
        for (const AUAudioUnitBusArray* side : {&unit_->inputBusses(), &unit_->outputBusses()})
            for (AUAudioUnitBus* bus : side->busses) bus->setFormat({rate, channels});
        instance_.session.sampleRate = rate;
        if (bytes_.byte() % 4) unit_->allocateRenderResourcesAndReturnError();
    }

    void fromHost() {
        using enum AUParameterAutomationEventType;
        constexpr AUParameterAutomationEventType kTypes[] = {value, touch, release};
        AUParameter* const parameter =
            unit_->parameterTree()->parameterWithAddress(bytes_.byte() % (kParameterCount + 1));
        const auto type = kTypes[bytes_.below(std::size(kTypes))];
        const float moved = bytes_.take<float>();
        if (parameter) parameter->setValue_originator_atHostTime_eventType(moved, 0, 0, type);
    }

    void scan() {
        MOK_SCRUB_GRANULATOR& stream = view_->_GRANULATOR_STREAM;
        const float start = bytes_.take<float>();
        stream.setRegion(start, bytes_.take<float>());
        stream.setScrubNormalizedValue(start);
        stream.setTimePointer(bytes_.take<double>());
        stream.pickEnvelope(bytes_.byte());
    }

    void state() {
        PropertyDictionary state = view_->getState();
        if (!kept_.empty())
            view_->restoreState(std::exchange(kept_, std::move(state)));
        else
            kept_ = std::move(state);
    }

    /// A rate and a level that no file has are refused, and so is what is not finite.
    void sound() {
        MOK_SCRUB_GRANULATOR& stream = view_->_GRANULATOR_STREAM;
        auto sound = std::make_shared<mokSample>();
        const std::uint64_t frames = bytes_.take<std::uint16_t>() % 5000;
        const float rate = bytes_.take<float>(), level = bytes_.take<float>();
        if (!sound->allocate(frames, rate)) return;
        for (std::uint64_t i = 0; i < sound->size; ++i) sound->getPtr()[i] = i % 3 ? level : -level;
        sound->writeGuardPoint();
        if (bytes_.byte() % 2)
            stream.loadSound(std::move(sound));
        else
            stream.setCaptured({sound->getPtr(), sound->size}, double{rate});
    }

    ByteReader bytes_;
    HeardLog log_;
    HostedInstance system_;
    Instance& instance_ = system_.instance;
    MyAudioUnit* const unit_ = system_.unit.get();
    AudioUnitViewController* const view_ = &system_.view;
    std::deque<AURenderEvent> events_; // whose addresses stay
    AUMusicalContext context_;
    unsigned flags_ = 0, cycle_ = 0;
    int last_ = -1; // kind of input
    std::array<float, kBuffer + 100> input_{};
    std::array<std::array<float, kBuffer + 100>, 3> output_{};
    PropertyDictionary kept_;
    std::uint32_t rendered_ = 0;
    double seconds_ = 0.0;
    std::string wrong_;
};

} // namespace

std::string playRenderCycles(std::span<const std::byte> bytes) {
    return std::make_unique<Play>(bytes)->run();
}

} // namespace zephyra
