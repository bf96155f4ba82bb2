#include "main_view/host_link.h"

#include "controls/state_keys.h"
#include "main_view/audio_unit_view_controller.h"

#include <algorithm>
#include <chrono>
#include <string>
#include <utility>

namespace zephyra {

namespace {

using enum AUParameterAutomationEventType;

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

AUParameter& HostLink::parameterOf(ControlId id) const {
    return *view_.parameters._paramChildrens[static_cast<std::size_t>(id)];
}

AUValue HostLink::controlValue(ControlId id) const {
    if (id == ControlId::dryWet) return view_._inputDryWetKnob.value();
    const AUValue linear = view_._GRANULATOR_STREAM.linear(id);
    return id == ControlId::scrubbingWave ? std::clamp(linear, 0.0f, 1.0f) : linear;
}

Control* HostLink::boundTo(const ParameterRow& row) const {
    return boundControl(row, view_._GRANULATOR_STREAM.controls, view_._inputDryWetKnob);
}

std::uint32_t HostLink::moves(ControlId id) const {
    const auto at = static_cast<std::size_t>(id);
    return at < kParameterCount ? moves_[at] : 0;
}

void HostLink::adopt() {
    std::ranges::transform(view_.parameters._paramChildrens, known_.begin(),
                           [](const auto& parameter) { return parameter->value(); });
}

void HostLink::connect() {
    MyAudioUnit* const unit = view_.audioUnit();
    if (!unit) return;
    if (observer_ == 0)
        observer_ = unit->parameterTree()->tokenByAddingParameterAutomationObserver(
            [unit](const AUParameterAutomationEvent& event) {
                unit->markParameter(event.address);
            });
    for (const ParameterRow& row : parameterTable()) addTargets(row);
    for (const ControlId id : kButtons) addButtonTargets(id);
}

void HostLink::letGo() {
    inGesture_.reset();
    for (const ParameterRow& row : parameterTable())
        if (Control* const control = boundTo(row))
            control->removeTarget(this, {}, control_event::all);
    for (const ControlId id : kButtons)
        view_.control(id)->removeTarget(this, {}, control_event::all);
}

void HostLink::disconnect() {
    letGo();
    view_.audioUnit()->parameterTree()->removeParameterObserver(std::exchange(observer_, 0));
}

void HostLink::addTargets(const ParameterRow& row) {
    Control* const control = boundTo(row);
    if (!control) return;
    for (const Handler& handler : kHandlers)
        control->addTarget(this, std::string(row.handler) + handler.ending, handler.events,
                           [this, &row, type = handler.type](Control&) { tell(row, type); });
}

/// Behind the stream's own, which have done by then what the button says.
void HostLink::addButtonTargets(ControlId id) {
    using namespace control_event;
    Control& button = *view_.control(id);
    button.addTarget(this, kButtonDown, touchDown,
                     [this, id](Control&) { tell(rowOf(id), touch); });
    button.addTarget(this, kButtonUp, touchUpInside | touchUpOutside | touchCancel,
                     [this, id](Control&) { buttonWasLeft(id); });
}

/// A press is a whole gesture, also on a screen that sends nothing but its end.
void HostLink::buttonWasLeft(ControlId id) {
    const Button& button = *view_._GRANULATOR_STREAM.controls.button(id);
    if (button.isTriggered()) return;
    if (button.isPressed()) tellButton(id); // a start shows itself later
    if (inGesture_.test(static_cast<std::size_t>(id))) tell(rowOf(id), release);
}

void HostLink::tell(const ParameterRow& row, AUParameterAutomationEventType type) {
    if (isMoving_) return;
    const AUValue moved = controlValue(row.id);
    if (type == touch) inGesture_.set(static_cast<std::size_t>(row.id));
    if (!keepValue(row, moved)) return;
    if (type == value && moved != known(row.id)) touchForHand(row.id);
    known(row.id) = moved;
    parameterOf(row.id).tellObservers(moved, observer_, currentHostTime(), type);
    if (type == release) inGesture_.reset(static_cast<std::size_t>(row.id));
}

/// Before the first value of one that changes with others, by an undo: from what the host knows.
void HostLink::touchForHand(ControlId id) {
    const auto at = static_cast<std::size_t>(id);
    if (!gestures_ || gestures_->touched.test(at) || inGesture_.test(at)) return;
    if (id == ControlId::scrubbingWave && gestures_->scan == Scan::movesOn) return;
    gestures_->touched.set(at);
    parameterOf(id).tellObservers(known(id), observer_, currentHostTime(), touch);
}

void HostLink::endGestures() {
    for (const ParameterRow& row : parameterTable())
        if (gestures_ && gestures_->touched.test(static_cast<std::size_t>(row.id)))
            parameterOf(row.id).tellObservers(controlValue(row.id), observer_, currentHostTime(),
                                              release);
    gestures_.reset();
}

/// False when it is older than what stands there: the state, or the message, that says so is.
bool HostLink::keepValue(const ParameterRow& row, AUValue value) {
    MyAudioUnit* const unit = view_.audioUnit();
    if (!unit) return true;
    const auto address = static_cast<AUParameterAddress>(row.id);
    if (restoring_ != 0) return unit->keepParameterUnlessSince(address, value, 0, restoring_);
    const StateOrder& states = view_.instance().states;
    if (const auto sent = states.delivered()) {
        if (unit->keepParameterUnlessSince(address, value, *sent, *sent + 1)) return true;
        unit->markParameter(address); // for the control, which has followed the older one
        return false;
    }
    // What moves by itself, or follows from something older, is not newer than a state to come.
    unit->keepParameter(address, value, inGesture_.test(address) ? states.now() : 0);
    return true;
}

void HostLink::endState() {
    const StateOrder::Number asked = std::exchange(restoring_, 0);
    const MyAudioUnit* const unit = view_.audioUnit();
    for (const ParameterRow& row : parameterTable()) {
        const auto address = static_cast<AUParameterAddress>(row.id);
        if (const auto newer = unit ? unit->setSince(address, asked) : std::nullopt)
            hostMoved(address, *newer);
    }
}

/// Does not touch a value that the control has yet to follow.
void HostLink::refresh(ControlId id) {
    const AUValue held = parameterOf(id).value();
    if (held == known(id) && held != controlValue(id)) tell(rowOf(id), value);
}

void HostLink::refresh() {
    for (const ParameterRow& row : parameterTable()) refresh(row.id);
}

void HostLink::hostMoved(AUParameterAddress address, AUValue moved) {
    if (address >= kParameterCount) return;
    const auto id = static_cast<ControlId>(address);
    known(id) = moved;
    ++moves_[address];
    if (id == ControlId::scrubbingWave)
        view_.edits.watch().movedByOthers(ofStream(state_key::kScanPosition));
    isMoving_ = true;
    if (MOK_KNOB* const own = view_.ownKnob(id)) {
        own->setValue(moved);
        own->sendEventValueChanged();
    } else {
        view_._GRANULATOR_STREAM.setLinear(id, moved);
    }
    isMoving_ = false;
    // Not before what the button queued is done: only then is its state the real one.
    if (rowOf(id).binding == ParameterBinding::none)
        view_.instance().runLoop.post([this, alive = std::weak_ptr(alive_)] {
            if (!alive.expired()) tellButtons();
        });
}

/// Says nothing that the host knows: it may have sent a newer value meanwhile.
void HostLink::tellButton(ControlId id) {
    if (controlValue(id) == known(id)) return;
    const Button& button = *view_._GRANULATOR_STREAM.controls.button(id);
    const bool begins = button.isPressed() && !inGesture_.test(static_cast<std::size_t>(id));
    if (begins && button.hasTarget(this, kButtonUp)) tell(rowOf(id), touch);
    tell(rowOf(id), value);
}

void HostLink::tellButtons() {
    for (const ControlId id : kButtons) tellButton(id);
}

void HostLink::scanMoved(ControlEvents event) {
    for (const Handler& handler : kHandlers)
        if (handler.events & event) tell(rowOf(ControlId::scrubbingWave), handler.type);
}

} // namespace zephyra
