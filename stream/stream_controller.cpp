#include "stream/stream_controller.h"

#include "effects/ring_modulator.h"
#include "effects/stereo_echo.h"
#include "engine/envelope_menu.h"

#include <cmath>
#include <new>
#include <utility>

namespace zephyra {

namespace {

constexpr float kEngineRate = 44100.0f; // Hz, until prepare()

using Handler = void (MOK_SCRUB_GRANULATOR::*)(Control*);

/// One control's way to its handler.
struct Wire {
    const char* message;
    Handler handler; ///< null for none
    ControlEvents events;
    bool atOnce; ///< what the control shows is what sounds
};

// clang-format off
constexpr Wire kWires[] = {
#define CONTROL(id, name, values, saved, moved, held, handler, parameter) handler,
#define HANDS_OVER(handler) {#handler ":", &MOK_SCRUB_GRANULATOR::handler, control_event::valueChanged, true}
#define RUNS(handler) {#handler ":", &MOK_SCRUB_GRANULATOR::handler, control_event::valueChanged, false}
#define PRESSED(handler, message) {message, &MOK_SCRUB_GRANULATOR::handler, control_event::touchUpInside, false}
#define NO_HANDLER {}
#include "stream/control_table.inl"
};
// clang-format on

} // namespace

MOK_SCRUB_GRANULATOR::MOK_SCRUB_GRANULATOR(Instance& instance, std::string suffix)
    : controls(suffix), scrubArea(*this, instance.runLoop, suffix),
      scrubRecorder(*this, instance.runLoop), instance_(instance), suffix_(std::move(suffix)),
      window_(makeEnvelope(kDefaultEnvelope, instance.random)),
      waveForm_(instance.notifications, instance.session, instance.log, retirement_),
      engine_(waveForm_.mSample(), window_.get(), mokGranulatorSF::kVoices, kEngineRate,
              instance.clock.seconds(), &instance.log),
      fade_(instance.runLoop), envelope_(kDefaultEnvelope), seed_(engine_.currentRandomSeed()),
      normalizer_(instance, waveForm_, [this] { return normalizePeak(); }) {
    if (!window_) throw std::bad_alloc();
    waveForm_.setReplacedHandler([this] { handToEngine(waveForm_.mSample()); });
    addTargets();
}

MOK_SCRUB_GRANULATOR::~MOK_SCRUB_GRANULATOR() {
    instance_.runLoop.cancel(pendingStop_);
}

void MOK_SCRUB_GRANULATOR::addTargets() {
    for (const ControlRange& range : controlRanges()) {
        if (MOK_KNOB* const knob = controls.knob(range.id))
            knob->observeInteractionStyle(instance_.notifications);
        const Wire& wire = kWires[static_cast<std::size_t>(range.id)];
        Control* const control = controls.control(range.id);
        if (!control || !wire.handler) continue;
        addTarget(*control, wire.message, wire.events, wire.handler);
        if (wire.atOnce) (this->*wire.handler)(control);
    }
    addButtonTargets();
}

/// Those of the buttons that the table does not hold, because they have no value.
void MOK_SCRUB_GRANULATOR::addButtonTargets() {
    using Self = MOK_SCRUB_GRANULATOR;
    using control_event::touchUpInside;
    StreamControls& c = controls;
    addTarget(c._rewind, "ui_rewind:", touchUpInside, &Self::ui_rewind);
    addTarget(c.liveClear, "ui_liveClear:", touchUpInside, &Self::ui_liveClear);
    scrubRecorder.addTargets();
    c._keyboardButton.addTarget(this, "ui_setPitchToKeyboard:", touchUpInside,
                                [this](Control& sender) {
                                    sender.tag = sender.tag == 1 ? 0 : 1;
                                    sender.setNeedsDisplay();
                                    ui_setPitchToKeyboard(&sender);
                                });
}

void MOK_SCRUB_GRANULATOR::addTarget(Control& control, const char* message, ControlEvents events,
                                     Handler handler) {
    control.addTarget(this, message, events,
                      [this, handler](Control& sender) { (this->*handler)(&sender); });
}

void MOK_SCRUB_GRANULATOR::onMain(RunLoop::Task task) {
    instance_.runLoop.post([life = std::weak_ptr<void>(life_), task = std::move(task)] {
        if (!life.expired()) task();
    });
}

void MOK_SCRUB_GRANULATOR::prepare(double sampleRate) {
    const auto engineRate = static_cast<float>(sampleRate);
    if (!isModuleSampleRate(sampleRate) || !std::isfinite(engineRate)) return;
    engine_.setSampleRate(engineRate);
    CommonState* const echo = engine_.echoModule();
    CommonState* const ring = engine_.ringModulatorModule();
    delay_stereo_forward::setSampleRate(echo, sampleRate);
    RM::setSampleRate(ring, sampleRate);
    delay_stereo_forward::reset(echo);
    RM::reset(ring);
    applyEffectControls();
    waveForm_.followSession();
}

void MOK_SCRUB_GRANULATOR::applyEffectControls() {
    setEchoDelayLeft();
    setEchoDelayRight();
    setEchoGainLeft();
    setEchoGainRight();
    setRmFrequency();
    setRmAmount();
    ui_setSpeed();
}

} // namespace zephyra
