// How each control of MOK_SCRUB_GRANULATOR reaches the engine.

#include "effects/ring_modulator.h"
#include "effects/stereo_echo.h"
#include "stream/stream_controller.h"

namespace zephyra {

namespace {

using enum ControlId;

// Echo times are samples at this rate whatever the real one: saved sounds depend on it.
constexpr double kEchoRate = 44100.0; // Hz

/// The controls whose value goes into one setter as it is.
struct PlainControl {
    ControlId id;
    void (mokGranulatorSF::*set)(const float&) noexcept;
};
constexpr PlainControl kPlainControls[] = {
    {amplitude, &mokGranulatorSF::setLevel},       {pan, &mokGranulatorSF::setPan},
    {width, &mokGranulatorSF::setWidth},           {density, &mokGranulatorSF::setDensity},
    {rndDensity, &mokGranulatorSF::setRndDensity}, {length, &mokGranulatorSF::setLength},
    {rndLength, &mokGranulatorSF::setRndLength},   {pitch, &mokGranulatorSF::setPitch},
    {rndPitch, &mokGranulatorSF::setRndPitch},     {scanning, &mokGranulatorSF::setSpeed},
    {jittering, &mokGranulatorSF::setJittering},
};

} // namespace

bool MOK_SCRUB_GRANULATOR::setControl(ControlId id, float displayed) {
    const ControlRange& range = controlRange(id);
    if (!acceptsValue(range, displayed)) return false;
    if (range.kind == ControlKind::switching) displayed = displayed != 0.0f ? 1.0f : 0.0f;
    if (!applyControl(id, displayed)) return false;
    controls_[static_cast<std::size_t>(id)] = displayed;
    return true;
}

float MOK_SCRUB_GRANULATOR::control(ControlId id) const noexcept {
    return controls_[static_cast<std::size_t>(id)];
}

bool MOK_SCRUB_GRANULATOR::pickEnvelope(std::size_t menuIndex) {
    return setControl(envelope, static_cast<float>(menuIndex));
}

bool MOK_SCRUB_GRANULATOR::applyControl(ControlId id, float value) {
    for (const PlainControl& plain : kPlainControls) {
        if (plain.id != id) continue;
        (engine_.*plain.set)(value);
        return true;
    }
    switch (id) {
    case scrubbingWave:
        engine_.setScanPhase(double{value});
        return true;
    case echoSwitch:
        engine_.echoOn = value != 0.0f;
        return true;
    case ringModulationSwitch:
        engine_.ringOn = value != 0.0f;
        return true;
    case normalize:
        return applyNormalize(value);
    case envelope:
        return swapEnvelope(static_cast<std::size_t>(value));
    default:
        return applyToEffects(id, value);
    }
}

bool MOK_SCRUB_GRANULATOR::applyToEffects(ControlId id, float value) {
    namespace echo = delay_stereo_forward;
    CommonState* const echoModule = engine_.echoModule();
    const auto setDelay = [&](float& milliseconds, echo::Parameter parameter) {
        milliseconds = value * 1000.0f;
        echo::setparameter(echoModule, parameter, double{milliseconds} * kEchoRate * 0.001);
    };
    const auto setGain = [&](float& gain, echo::Parameter parameter) {
        gain = value;
        echo::setparameter(echoModule, parameter, double{gain});
    };
    switch (id) {
    case leftDelay:
        setDelay(engine_.echoTimeL, echo::kTimeL);
        return true;
    case rightDelay:
        setDelay(engine_.echoTimeR, echo::kTimeR);
        return true;
    case leftGain:
        setGain(engine_.echoGainL, echo::kFeedbackL);
        return true;
    case rightGain:
        setGain(engine_.echoGainR, echo::kFeedbackR);
        return true;
    case ringModulationFrequency:
        RM::setparameter(engine_.ringModulatorModule(), RM::kFreq, double{value});
        return true;
    case ringModulationAmount:
        RM::setparameter(engine_.ringModulatorModule(), RM::kDryWet, double{value});
        return true;
    default:
        return false; // a control of the table that a stream does not have
    }
}

void MOK_SCRUB_GRANULATOR::applyEffectControls() {
    for (const ControlId id : {leftDelay, rightDelay, leftGain, rightGain, ringModulationFrequency,
                               ringModulationAmount})
        applyToEffects(id, control(id));
}

} // namespace zephyra
