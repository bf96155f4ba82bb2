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

/// One control's way to its handler, under the handler's message name.
struct Wire {
    Control& control;
    const char* message;
    Handler handler;
};

} // namespace

MOK_SCRUB_GRANULATOR::MOK_SCRUB_GRANULATOR(Instance& instance, std::string suffix)
    : controls(suffix), scrubArea(*this, instance.runLoop, suffix),
      scrubRecorder(*this, instance.runLoop), instance_(instance), suffix_(std::move(suffix)),
      window_(makeEnvelope(kDefaultEnvelope, instance.random)),
      waveForm_(instance.notifications, instance.session, instance.log, retirement_),
      engine_(waveForm_.mSample(), window_.get(), mokGranulatorSF::kVoices, kEngineRate,
              instance.clock.seconds(), &instance.log),
      fade_(instance.runLoop), envelope_(kDefaultEnvelope), seed_(engine_.currentRandomSeed()) {
    if (!window_) throw std::bad_alloc();
    waveForm_.setReplacedHandler([this] { handToEngine(waveForm_.mSample()); });
    addTargets();
}

MOK_SCRUB_GRANULATOR::~MOK_SCRUB_GRANULATOR() {
    instance_.runLoop.cancel(pendingStop_);
    instance_.runLoop.cancel(normalizing_);
}

void MOK_SCRUB_GRANULATOR::addTargets() {
    using Self = MOK_SCRUB_GRANULATOR;
    StreamControls& c = controls;
    const Wire values[] = {
        {c._volume, "ui_setAmplitude:", &Self::ui_setAmplitude},
        {c._width, "ui_setWidth:", &Self::ui_setWidth},
        {c._pan, "ui_setPan:", &Self::ui_setPan},
        {c._density, "ui_setDensity:", &Self::ui_setDensity},
        {c._length, "ui_setLength:", &Self::ui_setLength},
        {c._jitter, "ui_setJittering:", &Self::ui_setJittering},
        {c._pitch, "ui_setPitch:", &Self::ui_setPitch},
        {c._rnd_density, "ui_setRndDensity:", &Self::ui_setRndDensity},
        {c._rnd_len, "ui_setRndLength:", &Self::ui_setRndLength},
        {c._rnd_pitch, "ui_setRndPitch:", &Self::ui_setRndPitch},
        {c._scanning, "ui_setSpeed:", &Self::ui_setSpeed},
        {c.sampler_mesure, "ui_setSpeed:", &Self::ui_setSpeed},
        {c.sampler_quarter, "ui_setSpeed:", &Self::ui_setSpeed},
        {c._echoDelayLeft, "setEchoDelayLeft:", &Self::setEchoDelayLeft},
        {c._echoDelayRight, "setEchoDelayRight:", &Self::setEchoDelayRight},
        {c.delay_subdivisionLeft, "setEchoDelayLeft:", &Self::setEchoDelayLeft},
        {c.delay_subdivisionRight, "setEchoDelayRight:", &Self::setEchoDelayRight},
        {c._echoGainLeft, "setEchoGainLeft:", &Self::setEchoGainLeft},
        {c._echoGainRight, "setEchoGainRight:", &Self::setEchoGainRight},
        {c._rmFrequency, "setRmFrequency:", &Self::setRmFrequency},
        {c._rmAmount, "setRmAmount:", &Self::setRmAmount},
        {c._echoSwitch, "enableEcho:", &Self::enableEcho},
        {c._rmSwitch, "enableRM:", &Self::enableRM},
    };
    for (const auto& [control, message, handler] : values) {
        addTarget(control, message, control_event::valueChanged, handler);
        (this->*handler)(&control); // what the control shows is what sounds
    }
    addSwitchTargets();
    for (const ControlRange& range : controlRanges())
        if (MOK_KNOB* const knob = c.knob(range.id))
            knob->observeInteractionStyle(instance_.notifications);
}

/// Those whose handlers do more than hand a value over: they run when somebody moves the control.
void MOK_SCRUB_GRANULATOR::addSwitchTargets() {
    using Self = MOK_SCRUB_GRANULATOR;
    using namespace control_event;
    StreamControls& c = controls;
    addTarget(c.syncDelay, "enableDelaySync:", valueChanged, &Self::enableDelaySync);
    addTarget(c.syncSampler, "enableSamplerSync:", valueChanged, &Self::enableSamplerSync);
    addTarget(c._normalizeGain, "ui_normalizeBuffer:", valueChanged, &Self::ui_normalizeBuffer);
    addTarget(c._playToggle, "ui_playStop:", touchUpInside, &Self::ui_playStop);
    addTarget(c._rewind, "ui_rewind:", touchUpInside, &Self::ui_rewind);
    addTarget(c._freeze, "ui_freeze:", touchUpInside, &Self::ui_freeze);
    addTarget(c._enableLIVE, "ui_enableLiveInput", touchUpInside, &Self::ui_enableLiveInput);
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
