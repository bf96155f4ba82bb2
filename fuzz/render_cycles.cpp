#include "fuzz/system_attacks.h"

#include "fuzz/played_system.h"
#include "tests/support/test_sounds.h"

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

class Play : PlayedSystem,
             AUHostMusicalContextBlock,
             AUHostTransportStateBlock,
             AURenderPullInputBlock {
public:
    explicit Play(ByteReader program) : PlayedSystem{kComponents[program.below(3)], program} {
        instance.runLoop.setClock(RunLoop::Clock::sample);
        unit->musicalContextBlock = this;
        unit->transportStateBlock = this;
        unit->allocateRenderResourcesAndReturnError();
    }

    std::string run() {
        for (int step = 0; step < kMostSteps && !bytes.empty() && wrong.empty(); ++step) act();
        if (unit->lostNotices() > 0) wrong += "a notice is lost ";
        return wrong;
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
        (this->*kSteps[bytes.below(std::size(kSteps))])();
    }

    // --- What comes with a cycle ---

    AURenderEvent* newEvent() {
        if (events_.size() == kMostEvents) return nullptr;
        AURenderEvent& event = events_.emplace_back();
        if (events_.size() > 1) events_[events_.size() - 2].next = &event;
        event.eventSampleTime = bytes.take<std::int16_t>();
        return &event;
    }
    void parameterEvent() {
        const auto type = static_cast<AURenderEventType>(bytes.byte());
        const std::uint64_t address = bytes.byte();
        const float value = bytes.take<float>();
        AURenderEvent* const event = newEvent();
        if (!event) return;
        event->eventType = type;
        event->parameter = {address == 255 ? ~std::uint64_t{0} : address, value, bytes.byte()};
    }
    void midiEvent() {
        AUMIDIEvent message{bytes.byte(), 0, {}};
        for (std::uint8_t& part : message.data) part = bytes.byte();
        AURenderEvent* const event = newEvent();
        if (!event) return;
        event->eventType = AURenderEventType::MIDI;
        event->MIDI = message;
    }
    void music() {
        double* const fields[] = {&context_.currentTempo, &context_.timeSignatureNumerator,
                                  &context_.currentBeatPosition};
        *fields[bytes.below(3)] = bytes.take<double>();
    }
    void transport() { flags_ = bytes.byte(); }

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
        const std::uint32_t frames = bytes.take<std::uint16_t>() % (kBuffer + 100);
        cycle_ = bytes.byte();
        fillInput(bytes.byte());
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
        const OSStatus status = unit->internalRenderBlock()(frames, list, events, pull);
        events_.clear();
        if (status != expected) wrong += "status " + std::to_string(status) + " ";
        check(list, status == audio_unit_status::noError && !(cycle_ & oneBuffer) ? frames : 0);
    }

    void fillInput(std::uint8_t kind) {
        constexpr float kMost = std::numeric_limits<float>::max();
        constexpr float kKinds[] = {0.0f,     0.5f,      -1e6f,  1e30f, NAN,
                                    INFINITY, -INFINITY, 1e-40f, -kMost};
        if (kind == last_) return;
        last_ = kind;
        input_.fill(kKinds[kind % std::size(kKinds)]);
        if (kind >= 128) // one such frame in a quiet sound
            for (std::size_t i = 0; i < input_.size(); ++i)
                if (i % 97 != 5) input_[i] = static_cast<float>(i % 32) / 64.0f - 0.25f;
    }

    OSStatus expectedStatus(std::uint32_t frames) const {
        using namespace audio_unit_status;
        if (!unit->renderResourcesAllocated()) return uninitialized;
        if (frames > unit->maximumFramesToRender()) return tooManyFrames;
        if (cycle_ & oneBuffer || unit->isInstrument() || frames == 0) return noError;
        if (cycle_ & noPull) return noConnection;
        return cycle_ & pullFails ? kPullFails : noError;
    }

    void check(const AudioBufferList& list, std::uint32_t frames) {
        for (std::uint32_t c = 0; c < list.mNumberBuffers; ++c) {
            const float* const samples = list.floats(c);
            const std::uint32_t written = c < 2 ? frames : 0;
            if (written > 0 && !samples) wrong += "no output memory ";
            for (std::uint32_t i = 0; samples && i < written; ++i)
                if (!std::isfinite(samples[i])) wrong = "a sample is not finite ";
        }
        for (std::size_t c = 0; c < output_.size(); ++c) {
            const auto& channel = output_[c];
            const bool given = c < 2 && c < list.mNumberBuffers &&
                               list.floats(static_cast<std::uint32_t>(c)) == channel.data();
            if (std::any_of(channel.begin() + (given ? frames : 0), channel.end(),
                            [](float sample) { return sample != kUntouched; }))
                wrong += "written beyond the frames ";
        }
    }

    // --- Around it ---

    void passTime() {
        const double seconds = bytes.take<std::uint16_t>() / 1000.0;
        if ((seconds_ += seconds) > kMostSeconds) return;
        instance.runLoop.waitForWork();
        instance.runLoop.advance(instance.runLoop.now() + seconds);
        while (instance.alerts.answer(0)) {
        }
    }

    void button() {
        StreamControls& c = stream().controls;
        Button* const buttons[] = {&c._playToggle, &c._rewind,   &c._freeze,
                                   &c._enableLIVE, &c.liveClear, &c._keyboardButton};
        buttons[bytes.below(std::size(buttons))]->sendActionsForControlEvents(
            control_event::touchUpInside);
    }

    void control() {
        const auto id = static_cast<ControlId>(bytes.below(kControlCount));
        const float value = bytes.take<float>();
        if (MOK_KNOB* const own = view.ownKnob(id)) {
            own->setValue(value);
            own->sendEventValueChanged();
        } else if (bytes.byte() % 2) {
            stream().setDisplayed(id, value);
        } else {
            stream().setLinear(id, value);
        }
    }

    void allocate() {
        constexpr double kRates[] = {44100.0, 8000.0,   192000.0, 1.0,
                                     1e-300,  768000.0, 1e300,    48000.5};
        unit->deallocateRenderResources();
        const double rate = kRates[bytes.below(std::size(kRates))];
        unit->setMaximumFramesToRender(bytes.take<std::uint16_t>());
        const std::uint32_t channels = bytes.byte() % 10;
        for (const AUAudioUnitBusArray* side : {&unit->inputBusses(), &unit->outputBusses()})
            for (AUAudioUnitBus* bus : side->busses) bus->setFormat({rate, channels});
        instance.session.sampleRate = rate;
        if (bytes.byte() % 4) unit->allocateRenderResourcesAndReturnError();
    }

    void fromHost() {
        using enum AUParameterAutomationEventType;
        constexpr AUParameterAutomationEventType kTypes[] = {value, touch, release};
        AUParameter* const parameter =
            unit->parameterTree()->parameterWithAddress(bytes.byte() % (kParameterCount + 1));
        const auto type = kTypes[bytes.below(std::size(kTypes))];
        const float moved = bytes.take<float>();
        if (parameter) parameter->setValue_originator_atHostTime_eventType(moved, 0, 0, type);
    }

    void scan() {
        MOK_SCRUB_GRANULATOR& granulator = stream();
        const float start = bytes.take<float>();
        granulator.setRegion(start, bytes.take<float>());
        granulator.setScrubNormalizedValue(start);
        granulator.setTimePointer(bytes.take<double>());
        granulator.pickEnvelope(bytes.byte());
    }

    void state() {
        PropertyDictionary state = view.getState();
        if (!kept_.empty())
            view.restoreState(std::exchange(kept_, std::move(state)));
        else
            kept_ = std::move(state);
    }

    /// A rate and a level that no file has are refused, and so is what is not finite.
    void sound() {
        MOK_SCRUB_GRANULATOR& granulator = stream();
        auto sound = std::make_shared<mokSample>();
        const std::uint64_t frames = bytes.take<std::uint16_t>() % 5000;
        const float rate = bytes.take<float>(), level = bytes.take<float>();
        if (!sound->allocate(frames, rate)) return;
        for (std::uint64_t i = 0; i < sound->size; ++i) sound->getPtr()[i] = i % 3 ? level : -level;
        sound->writeGuardPoint();
        if (bytes.byte() % 2)
            granulator.loadSound(std::move(sound));
        else
            granulator.setCaptured({sound->getPtr(), sound->size}, double{rate});
    }

    std::deque<AURenderEvent> events_; // whose addresses stay
    AUMusicalContext context_;
    unsigned flags_ = 0, cycle_ = 0;
    int last_ = -1; // kind of input
    std::array<float, kBuffer + 100> input_{};
    std::array<std::array<float, kBuffer + 100>, 3> output_{};
    PropertyDictionary kept_;
    std::uint32_t rendered_ = 0;
    double seconds_ = 0.0;
};

} // namespace

std::string playRenderCycles(std::span<const std::byte> bytes) {
    return std::make_unique<Play>(ByteReader(bytes))->run();
}

} // namespace zephyra
