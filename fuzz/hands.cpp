#include "fuzz/system_attacks.h"

#include "fuzz/played_system.h"
#include "tests/support/test_sounds.h"

namespace zephyra {
namespace {

constexpr int kMostSteps = 400;
constexpr std::uint32_t kMostFrames = 1 << 15; // of one input, so that it stays quick
constexpr double kMostSeconds = 120.0;         // that pass in one input
constexpr double kRate = 8000.0;
constexpr std::uint32_t kBlock = 256;
constexpr TouchId kFingers = 6; // identities, which come again and again
constexpr double kWidth = 420.0, kHeight = 100.0;

class Hands : PlayedSystem {
public:
    explicit Hands(std::span<const std::byte> program)
        : PlayedSystem(component_type::musicEffect, ByteReader(program)) {
        host.start({kRate, kBlock});
        keyboard_.setSize(kWidth, kHeight);
        view.surfaces._keyboardTiny.setSize(kWidth, kHeight);
        view.surfaces._pad.setSize(kWidth, kHeight);
        stream_.loadSound(noiseSample(3000, 8000));
        host.reportContext(true);
        host.reportTransport(true);
    }

    std::string run() {
        for (int step = 0; step < kMostSteps && !bytes.empty() && wrong.empty(); ++step) {
            act();
            check();
        }
        if (wrong.empty()) letGoOfEverything();
        return wrong;
    }

private:
    using Step = void (Hands::*)();
    enum Touching { begins, moves, ends, cancels };

    void act() {
        static constexpr Step kSteps[] = {
            &Hands::scrub,    &Hands::keyboard, &Hands::tinyKeyboard, &Hands::pad,   &Hands::knob,
            &Hands::button,   &Hands::assign,   &Hands::render,       &Hands::wait,  &Hands::state,
            &Hands::recorder, &Hands::tempo,    &Hands::fromHost,     &Hands::midi,  &Hands::learn,
            &Hands::panel,    &Hands::lay,      &Hands::tilt,         &Hands::sound, &Hands::take,
            &Hands::latched,  &Hands::takeAway, &Hands::wait};
        (this->*kSteps[bytes.below(std::size(kSteps))])();
    }

    // --- Numbers ---

    void oneOf(std::initializer_list<std::function<void()>> acts) {
        acts.begin()[bytes.below(acts.size())]();
    }

    /// 0..1 in steps of 1/200, some beyond, and what no screen should send.
    double fraction() {
        using Limits = std::numeric_limits<double>;
        constexpr double kOdd[] = {
            Limits::quiet_NaN(), Limits::infinity(), -Limits::infinity(), 1e300, -1e300, -0.5};
        const std::uint8_t byte = bytes.byte();
        return byte < 250 ? byte / 200.0 : kOdd[byte - 250];
    }
    Point point(double width, double height) {
        const double x = fraction();
        return {x * width, fraction() * height};
    }
    double time() {
        const std::uint8_t byte = bytes.byte();
        if (byte >= 254) return std::numeric_limits<double>::quiet_NaN();
        return time_ += (byte - 20) / 100.0; // now and then backwards
    }
    Control& listed() {
        const auto& all = view.assignable.all();
        return *all[bytes.below(all.size())].control;
    }

    // --- Hands ---

    template <typename Surface>
    void touch(Surface& surface, double width, double height) {
        const auto kind = static_cast<Touching>(bytes.below(4));
        const TouchId finger = bytes.below(kFingers);
        const double now = time();
        if (kind == ends) return surface.touchesEnded(finger, now);
        if (kind == cancels) return surface.touchesCancelled(finger, now);
        const Point at = point(width, height);
        if (kind == begins)
            surface.touchesBegan(finger, at, now);
        else
            surface.touchesMoved(finger, at, now);
    }
    void scrub() { touch(stream_.scrubArea, 1.0, 1.0); }
    void keyboard() { touch(keyboard_, 2.0 * kWidth, kHeight); }
    void tinyKeyboard() { touch(view.surfaces._keyboardTiny, kWidth, kHeight); }
    void pad() { touch(view.surfaces._pad, kWidth, kHeight); }
    void knob() {
        auto* const knob = dynamic_cast<MOK_KNOB*>(&listed());
        const auto kind = static_cast<Touching>(bytes.below(4));
        const Point at = point(200.0, 200.0);
        if (!knob) return;
        knob->setKnobInteractionStyle(bytes.byte() % 4);
        if (kind == begins) knob->beginTracking(at);
        if (kind == moves) knob->continueTracking(at);
        if (kind == ends) knob->endTracking(at);
        if (kind == cancels) knob->cancelTracking();
    }
    void button() {
        Control& control = listed();
        if (auto* const toggle = dynamic_cast<Toggle*>(&control)) return toggle->touch();
        if (auto* const knob = dynamic_cast<MOK_KNOB*>(&control))
            return bytes.byte() % 2 ? knob->genRandomic(stream_.instance().random)
                                    : knob->resetsDefault();
        control.sendActionsForControlEvents(control_event::touchUpInside);
    }
    void recorder() {
        StreamControls& c = stream_.controls;
        Button* const buttons[] = {&c.scrubRec, &c.scrubPlay,   &c.scrubRewind,
                                   &c._rewind,  &c._playToggle, &c._keyboardButton};
        buttons[bytes.below(std::size(buttons))]->sendActionsForControlEvents(
            control_event::touchUpInside);
        if (bytes.byte() % 8 == 0) stream_.controls.syncSampler.touch();
    }
    void latched() { stream_.scrubArea.longPressFirstFingerGesture(); }
    void take() {
        std::vector<float> points(bytes.take<std::uint16_t>() % 2000);
        for (float& point : points) point = static_cast<float>(bytes.byte()) / 250.0f;
        stream_.scrubRecorder.setTake(points);
    }

    // --- What is moved by what ---

    void assign() {
        Control& control = listed();
        const auto type = static_cast<AssignmentType>(bytes.below(8));
        const double hz = 24.0 * fraction();
        const std::int64_t shape = bytes.byte() % 8;
        const auto gravity = static_cast<float>(fraction());
        view.assignments.assign(control, type);
        auto* const lfo = view.assignments.getLfoWidgetsMapping()->getWrapperID(&control);
        if (!lfo) return;
        lfo->setHz(hz);
        lfo->setLfoShapeFromWrapper(shape);
        lfo->setGravity(gravity);
    }
    void takeAway() {
        if (bytes.byte() % 4 == 0) return view.assignments.removeAllAssignations();
        view.assignments.assign(listed(), AssignmentType::none);
    }
    void panel() {
        ControlManager& manager = view.assignments;
        const auto number = [this] { return static_cast<float>(fraction()); };
        oneOf({[&] { manager.selectRow(bytes.byte()); },
               [&] { manager.performMapping(bytes.byte() - 2); },
               [&] {
                   const float least = number();
                   manager.setMinMax(least, number());
               },
               [&] { manager.setGravity(number()); },
               [&] { manager.setVelocityOrRate(10.0 * fraction()); },
               [&] { manager.setLfoShape(bytes.take<std::int64_t>()); },
               [&] { manager.toggleLFO_HZ_TO_LINK(bytes.byte() % 2); },
               [&] {
                   const int sub = bytes.take<int>();
                   manager.setClockSubdivision(sub, bytes.take<double>());
               },
               [&] { manager.resetPhaseAllAtValue(bytes.take<double>()); },
               [&] { manager.clearAssignements(); }});
    }
    void learn() {
        MidiManager& manager = view.midiManager;
        oneOf({[&] { manager.learn(listed()); }, [&] { manager.learnsChannel = bytes.byte() % 2; },
               [&] { manager.unbind(std::size_t{bytes.byte()}); }, [&] { manager.unbindAll(); },
               [&] { bind(); }, [&] { manager.conflicts(); }});
    }
    void bind() {
        MidiBinding binding{.control = &listed()};
        binding.trigger.source = static_cast<MidiSource>(bytes.below(6));
        binding.trigger.number = bytes.byte() % 8;
        binding.min = static_cast<float>(fraction());
        binding.max = static_cast<float>(fraction());
        binding.curve = bytes.take<float>();
        binding.takeover = static_cast<MidiTakeover>(bytes.below(3));
        binding.relative = bytes.byte() % 4 == 0;
        view.midiManager.bind(binding);
    }
    void midi() {
        std::array<std::uint8_t, 8> message;
        for (std::uint8_t& byte : message) byte = bytes.byte();
        othersPlay_ = true;
        host.queueMidi(message.data(), static_cast<std::uint16_t>(message.size()));
    }
    void tilt() {
        const auto x = static_cast<float>(4.0 * fraction() - 2.0);
        instance.accelerometer.set(x, static_cast<float>(fraction()));
    }

    // --- Around it ---

    void render() {
        std::array<float, kBlock> input, left, right;
        input.fill(0.25f);
        const std::uint32_t frames = bytes.byte() + 1u;
        if ((frames_ += frames) > kMostFrames) return;
        pass([&] { host.render({frames, input.data(), input.data(), left.data(), right.data()}); });
        for (std::uint32_t i = 0; i < frames; ++i)
            if (!std::isfinite(left[i]) || !std::isfinite(right[i]))
                wrong = "a rendered sample is not finite";
        instance.alerts.answer(frames % 2);
    }
    void wait() {
        const double seconds = bytes.byte() / 50.0;
        if ((seconds_ += seconds) > kMostSeconds) return;
        pass([&] { instance.runLoop.advance(instance.runLoop.now() + seconds); });
    }
    /// Whatever waits is done, and the engine knows.
    void settle() {
        float left = 0.0f, right = 0.0f;
        host.render({.frames = 1, .left = &left, .right = &right});
    }
    /// While a finger holds the scan, time alone does not move it.
    template <typename Pass>
    void pass(const Pass& time) {
        settle();
        const bool held = stream_.scrubArea.isHeld();
        const float before = stream_.getTimePhasor();
        time();
        if (held && stream_.scrubArea.isHeld() && stream_.getTimePhasor() != before)
            wrong = "the scan moves under a finger from " + std::to_string(before) + " to " +
                    std::to_string(stream_.getTimePhasor());
    }
    void state() {
        PropertyDictionary state = view.getState();
        if (const auto written = writePropertyList(state); !written) wrong = written.message();
        if (!kept_.empty()) view.restoreState(kept_);
        if (bytes.byte() % 2) kept_ = std::move(state);
    }
    void tempo() {
        MOK_TAP& tap = view.assignments.tempo;
        oneOf({[&] { tap.TapTimeSync(time()); }, [&] { tap.TapTimeSync(); },
               [&] { tap.tempoDrag(1000.0 * fraction() - 500.0); },
               [&] { tap.longPressEvent_plus(bytes.byte() % 2); },
               [&] { tap.longPressEvent_minus(bytes.byte() % 2); },
               [&] { view.assignments.syncStateDidChangedWithBPM(bytes.take<double>()); },
               [&] { stream_.syncStateDidChangedWithBPM(bytes.take<double>()); },
               [&] { tap.beginTempoDrag(); }});
    }
    void fromHost() {
        oneOf({[&] { stream_.syncStateTempoForte(); }, [&] { stream_.shouldPlay(); },
               [&] { stream_.shouldStop(); }, [&] { stream_.shouldRewindFromHost(); },
               [&] { host.setTempo(bytes.take<double>()); },
               [&] { host.setTransport(bytes.byte() % 2); }});
    }
    void lay() {
        oneOf({[&] { keyboard_.setLocked(bytes.byte() % 2); },
               [&] { keyboard_.setKeyboardSplit(bytes.byte() % 4 - 1); },
               [&] { keyboard_.allNoteOff(); },
               [&] { view.surfaces._keyboardTiny.setOctave(bytes.byte() - 100); },
               [&] { view.surfaces._pad.setOctNum(static_cast<float>(12.0 * fraction())); },
               [&] {
                   const double width = kWidth * fraction();
                   keyboard_.setSize(width, kHeight * fraction());
               }});
    }
    void sound() {
        if (bytes.byte() % 2) {
            stream_.loadSound(noiseSample(1 + bytes.byte() * 10, 8000));
            return;
        }
        const auto start = static_cast<float>(fraction());
        const auto end = static_cast<float>(fraction());
        settle(); // a state that waits brings its own region
        if (!stream_.setRegion(start, end) || !stream_.scrubArea.isHeld()) return;
        settle();
        const auto finger = static_cast<float>(stream_.scrubArea.animation.position());
        const auto [low, high] = std::minmax(start, end);
        const float moved = stream_.getTimePhasor() - std::clamp(finger, low, high);
        if (stream_.scrubArea.isHeld() && std::abs(moved) > 1e-4f)
            wrong = "another region moves the scan from under a finger";
    }

    // --- What must hold ---

    void check() {
        if (wrong.empty()) wrong = firstFault(view);
        othersPlay_ |= stream_.controls._keyboardButton.tag == 1 ||
                       view.assignments.typeOf(keyboard_) != AssignmentType::none;
        const bool isFree = keyboard_.numberOfTouches() == 0 && !keyboard_.isLocked();
        for (const float amplitude : keyboard_.keyDown) {
            if (!(amplitude >= 0.0f && amplitude <= 1.0f)) wrong = "an amplitude does not exist";
            if (isFree && !othersPlay_ && amplitude != 0.0f)
                wrong = "a key stays down without a finger";
        }
        if (view.surfaces._keyboardTiny.numberOfTouches() == 0)
            for (const float amplitude : view.surfaces._keyboardTiny.keyDown)
                if (amplitude != 0.0f) wrong = "a small key stays down";
    }
    /// Fingers, locks, whatever moves keys, and what MIDI shows: nothing is left to hold a key.
    void letGoOfEverything() {
        view.assignments.removeAllAssignations();
        keyboard_.setLocked(false);
        for (TouchId finger = 0; finger < kFingers; ++finger) {
            keyboard_.touchesEnded(finger, time_);
            stream_.scrubArea.touchesCancelled(finger, time_);
        }
        if (stream_.scrubArea.isHeld()) stream_.scrubArea.longPressFirstFingerGesture();
        for (int note = 0; note < 128; ++note) view.surfaces.showNoteOff(note);
        for (const auto& amplitude : keyboard_.keyDown)
            if (amplitude != 0.0f) wrong = "a key stays down";
        if (stream_.scrubArea.isHeld()) wrong = "the scan stays held";
    }

    MOK_SCRUB_GRANULATOR& stream_ = view._GRANULATOR_STREAM;
    MOK_Keyboard& keyboard_ = view.surfaces._keyboard;
    PropertyDictionary kept_;
    bool othersPlay_ = false; // keys go down without a finger
    std::uint32_t frames_ = 0;
    double seconds_ = 0.0, time_ = 0.0;
};

} // namespace

std::string playHands(std::span<const std::byte> bytes) {
    return std::make_unique<Hands>(bytes)->run();
}

} // namespace zephyra
