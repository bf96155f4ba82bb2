// The view controller between host and controls: parameters that follow the controls, controls that
// follow the parameters.
#include "controls/state_keys.h"
#include "main_view/audio_unit_view_controller.h"

#include <algorithm>
#include <chrono>
#include <string>

namespace zephyra {

namespace {

using enum AUParameterAutomationEventType;

/// How long ago the scan of live input that nobody placed reads.
constexpr double kBehindInput = 0.2; // seconds

AUHostTime currentHostTime() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<AUHostTime>(std::chrono::nanoseconds(now).count());
}

const ParameterRow& rowOf(ControlId id) {
    return parameterTable()[static_cast<std::size_t>(id)];
}

/// The handlers of one row. In this order a control that sends every event at once makes a whole
/// gesture.
struct Handler {
    const char* ending;
    ControlEvents events;
    AUParameterAutomationEventType type;
};
constexpr Handler kHandlers[] = {
    {"_down", control_event::touchDown, touch},
    {"", control_event::valueChanged, value},
    // A cancelled touch ends as well: a host must not wait for its release for ever.
    {"_up", control_event::touchUpInside | control_event::touchCancel, release},
};

constexpr ControlId kButtons[] = {ControlId::playStop, ControlId::freeze, ControlId::live};
constexpr const char* kButtonDown = "buttonDown:";
constexpr const char* kButtonUp = "buttonUp:";

} // namespace

AUParameter& AudioUnitViewController::parameterOf(ControlId id) const {
    return *parameters._paramChildrens[static_cast<std::size_t>(id)];
}

AUValue AudioUnitViewController::controlValue(ControlId id) const {
    if (id == ControlId::dryWet) return _inputDryWetKnob.value();
    AUValue linear = _GRANULATOR_STREAM.linear(id);
    if (id == ControlId::scrubbingWave && changes_ && changes_->placesScan)
        linear = _GRANULATOR_STREAM.engine().nextScanPosition(); // which RENDER has yet to take
    return id == ControlId::scrubbingWave ? std::clamp(linear, 0.0f, 1.0f) : linear;
}

void AudioUnitViewController::connectViewWithAU() {
    if (!audioUnit_) return;
    if (observer_ == 0)
        observer_ = audioUnit_->parameterTree()->tokenByAddingParameterAutomationObserver(
            [unit = audioUnit_](const AUParameterAutomationEvent& event) {
                unit->markParameter(event.address);
            });
    for (const ParameterRow& row : parameterTable()) addControlTargets(row);
    for (const ControlId id : kButtons) addButtonTargets(id);
}

void AudioUnitViewController::removeTargets() {
    inGesture_.reset();
    for (const ParameterRow& row : parameterTable()) removeControlTargets(row);
    for (const ControlId id : kButtons)
        control(id)->removeTarget(this, {}, control_event::all); // it has no others here
}

void AudioUnitViewController::addControlTargets(const ParameterRow& row) {
    Control* control = boundControl(row, _GRANULATOR_STREAM.controls, _inputDryWetKnob);
    if (!control) return;
    for (const Handler& handler : kHandlers)
        control->addTarget(this, std::string(row.handler) + handler.ending, handler.events,
                           [this, &row, type = handler.type](Control&) { tellHost(row, type); });
}

/// Behind the stream's own, which have done by then what the button says.
void AudioUnitViewController::addButtonTargets(ControlId id) {
    using namespace control_event;
    Control& button = *control(id);
    button.addTarget(this, kButtonDown, touchDown,
                     [this, id](Control&) { tellHost(rowOf(id), touch); });
    button.addTarget(this, kButtonUp, touchUpInside | touchUpOutside | touchCancel,
                     [this, id](Control&) { buttonWasLeft(id); });
}

/// A press is a whole gesture, also on a screen that sends nothing but its end.
void AudioUnitViewController::buttonWasLeft(ControlId id) {
    const Button& button = *_GRANULATOR_STREAM.controls.button(id);
    if (button.isTriggered()) return;
    if (button.isPressed()) tellButton(id); // a start shows itself later
    if (inGesture_.test(static_cast<std::size_t>(id))) tellHost(rowOf(id), release);
}

void AudioUnitViewController::removeControlTargets(const ParameterRow& row) {
    Control* control = boundControl(row, _GRANULATOR_STREAM.controls, _inputDryWetKnob);
    if (!control) return;
    for (const Handler& handler : kHandlers)
        control->removeTarget(this, std::string(row.handler) + handler.ending, handler.events);
}

void AudioUnitViewController::tellHost(const ParameterRow& row,
                                       AUParameterAutomationEventType type) {
    if (movingFromHost_) return;
    const AUValue moved = controlValue(row.id);
    if (type == touch) inGesture_.set(static_cast<std::size_t>(row.id));
    if (!keepValue(row, moved)) return;
    if (type == value && moved != known(row.id)) touchForHand(row.id);
    known(row.id) = moved;
    parameterOf(row.id).tellObservers(moved, observer_, currentHostTime(), type);
    if (type == release) inGesture_.reset(static_cast<std::size_t>(row.id));
}

/// Before the first value of one that changes with others, by an undo: from what the host knows.
void AudioUnitViewController::touchForHand(ControlId id) {
    const auto at = static_cast<std::size_t>(id);
    if (!changes_ || changes_->touched.test(at) || inGesture_.test(at)) return;
    if (id == ControlId::scrubbingWave && !changes_->placesScan) return;
    changes_->touched.set(at);
    parameterOf(id).tellObservers(known(id), observer_, currentHostTime(), touch);
}

void AudioUnitViewController::releaseForHand() {
    for (const ParameterRow& row : parameterTable())
        if (changes_ && changes_->touched.test(static_cast<std::size_t>(row.id)))
            parameterOf(row.id).tellObservers(controlValue(row.id), observer_, currentHostTime(),
                                              release);
    changes_.reset();
}

/// False when it is older than what stands there: the state, or the message, that says so is.
bool AudioUnitViewController::keepValue(const ParameterRow& row, AUValue value) {
    if (!audioUnit_) return true;
    const auto address = static_cast<AUParameterAddress>(row.id);
    if (restoring_ != 0) return audioUnit_->keepParameterUnlessSince(address, value, 0, restoring_);
    const StateOrder& states = instance_.states;
    if (const auto sent = states.delivered()) {
        if (audioUnit_->keepParameterUnlessSince(address, value, *sent, *sent + 1)) return true;
        audioUnit_->markParameter(address); // for the control, which has followed the older one
        return false;
    }
    // What moves by itself, or follows from something older, is not newer than a state to come.
    audioUnit_->keepParameter(address, value, inGesture_.test(address) ? states.now() : 0);
    return true;
}

void AudioUnitViewController::moveWhatWasSetSince(StateOrder::Number asked) {
    for (const ParameterRow& row : parameterTable()) {
        const auto address = static_cast<AUParameterAddress>(row.id);
        if (const auto newer = audioUnit_ ? audioUnit_->setSince(address, asked) : std::nullopt)
            parameterMoved(address, *newer);
    }
}

/// Does not touch a value that the control has yet to follow.
void AudioUnitViewController::refreshParameter(const ParameterRow& row) {
    const AUValue held = parameterOf(row.id).value();
    if (held == known(row.id) && held != controlValue(row.id)) tellHost(row, value);
}

void AudioUnitViewController::refreshParameters() {
    if (standsBehindInput_) standBehindInput(); // the session's rate may be another one now
    for (const ParameterRow& row : parameterTable()) refreshParameter(row);
    _GRANULATOR_STREAM.applyEffectControls();
    if (audioUnit_) audioUnit_->setDryWet(_inputDryWetKnob.value());
    connectViewWithAU();
}

void AudioUnitViewController::parameterMoved(AUParameterAddress address, AUValue moved) {
    if (address >= kParameterCount) return;
    const auto id = static_cast<ControlId>(address);
    known(id) = moved;
    ++hostMoves_[address];
    if (id == ControlId::scrubbingWave)
        edits.watch().movedByOthers(ofStream(state_key::kScanPosition));
    movingFromHost_ = true;
    if (MOK_KNOB* const own = ownKnob(id)) {
        own->setValue(moved);
        own->sendEventValueChanged();
    } else {
        _GRANULATOR_STREAM.setLinear(id, moved);
    }
    movingFromHost_ = false;
    // Not before what the button queued is done: only then is its state the real one.
    if (rowOf(id).binding == ParameterBinding::none)
        postIfAlive(&AudioUnitViewController::tellButtons);
}

/// Says nothing that the host knows: it may have sent a newer value meanwhile.
void AudioUnitViewController::tellButton(ControlId id) {
    if (controlValue(id) == known(id)) return;
    const Button& button = *_GRANULATOR_STREAM.controls.button(id);
    const bool begins = button.isPressed() && !inGesture_.test(static_cast<std::size_t>(id));
    if (begins && button.hasTarget(this, kButtonUp)) tellHost(rowOf(id), touch);
    tellHost(rowOf(id), value);
}

void AudioUnitViewController::tellButtons() {
    for (const ControlId id : kButtons) tellButton(id);
}

void AudioUnitViewController::AUv3_Parameter_playToggle_from_DSP() {
    tellButton(ControlId::playStop);
}

void AudioUnitViewController::AUv3_Parameter_freezeToggle_from_DSP() {
    tellButton(ControlId::freeze);
}

void AudioUnitViewController::AUv3_Parameter_LiveToggle_from_DSP() {
    tellButton(ControlId::live);
    if (_GRANULATOR_STREAM.isLive())
        standBehindInput();
    else
        postIfAlive(&AudioUnitViewController::leaveInput); // once it is known what plays instead
}

/// A hand on the sound is a gesture that hosts record, as on any other control.
void AudioUnitViewController::AUv3_Parameter_scrub_from_DSP(ControlEvents event) {
    edits.watch().movedByHand(ofStream(state_key::kScanPosition));
    for (const Handler& handler : kHandlers)
        if (handler.events & event) tellHost(rowOf(ControlId::scrubbingWave), handler.type);
}

bool AudioUnitViewController::scanWasChosen() const {
    return scanSpeedWasSet_ || scanChoices_ != _GRANULATOR_STREAM.scanChoices();
}

void AudioUnitViewController::standBehindInput() {
    if (!_GRANULATOR_STREAM.isLive() || scanWasChosen()) return;
    // The newest frame stands five below the size, where the engine's reading wraps.
    constexpr auto kSize = static_cast<double>(WaveForm::kLiveFrames);
    constexpr double kNewest = kSize - 5.0;
    const double behind = std::min(kBehindInput * instance_.session.sampleRate, kNewest);
    if (controlValue(ControlId::scanning) != 0.0f)
        _GRANULATOR_STREAM.setLinear(ControlId::scanning, 0.0f);
    _GRANULATOR_STREAM.setScrubNormalizedValue(static_cast<float>((kNewest - behind) / kSize));
    refreshParameter(rowOf(ControlId::scrubbingWave));
    standsBehindInput_ = true;
    forgetScanChoices();
}

/// A file scans from its start, and at its own speed unless one was set, as one does that was
/// loaded first. A captured sound goes on standing where it stood.
void AudioUnitViewController::leaveInput() {
    if (!standsBehindInput_ || _GRANULATOR_STREAM.waveForm().isLiveCurrent() ||
        scanChoices_ != _GRANULATOR_STREAM.scanChoices())
        return;
    if (!scanSpeedWasSet_)
        _GRANULATOR_STREAM.setDisplayed(ControlId::scanning,
                                        controlRange(ControlId::scanning).defaultValue);
    _GRANULATOR_STREAM.setTimePointer(0.0);
    refreshParameter(rowOf(ControlId::scrubbingWave));
    standsBehindInput_ = false;
    forgetScanChoices();
}

void AudioUnitViewController::forgetScanChoices() {
    scanSpeedWasSet_ = false;
    scanChoices_ = _GRANULATOR_STREAM.scanChoices();
}

} // namespace zephyra
