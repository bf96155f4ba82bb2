#include "stream/stream_controls.h"

#include "controls/note_values.h"

#include <initializer_list>
#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

namespace zephyra {

namespace {

constexpr float kDisabledAlpha = 0.3f;

/// What values need of whoever holds them.
enum class Form { linear, curved, named, switched };

struct Holder {
    bool ofStream;
    std::optional<Form> form; ///< none: no control
};

template <typename Held>
constexpr Form formOf() {
    if (std::is_base_of_v<CurvedKnob, Held>) return Form::curved;
    if (std::is_base_of_v<MokKnobEnum, Held>) return Form::named;
    return std::is_base_of_v<MOK_KNOB, Held> ? Form::linear : Form::switched;
}

constexpr bool fits(const Holder& holder, Form form, bool kept) {
    return (!holder.form || *holder.form == form) && (holder.ofStream || !kept);
}

// clang-format off
#define CONTROL(id, name, values, saved, moved, held, handler, parameter) \
    static_assert(fits(held, values, saved), name ": what holds it has no such values, or is no stream's and cannot be KEPT");
#define RANGE(minimum, maximum, value, unit) Form::linear
#define CURVE(minimum, maximum, value, unit, stepness) Form::curved
#define COUNT(minimum, maximum, value) Form::linear
#define SWITCH(value) Form::switched
#define CHOICE(last, value) Form::named
#define KEPT(channel) true
#define ELSEWHERE(channel) false
#define NOT_KEPT false
#define KNOB(type, member) Holder{true, formOf<type>()}
#define TOGGLE(member) Holder{true, Form::switched}
#define BUTTON(member) Holder{true, Form::switched}
#define OWN_KNOB(type, member) Holder{false, formOf<type>()}
#define NO_CONTROL Holder{false, std::nullopt}
#include "stream/control_table.inl"

template <typename Wanted, typename Held>
Wanted* as(Held& held) {
    if constexpr (std::is_base_of_v<Wanted, Held>) return &held;
    else return nullptr;
}

/// The control of id, if it is what is wanted.
template <typename Wanted>
Wanted* controlAs(StreamControls& controls, ControlId wanted) {
    switch (wanted) {
#define CONTROL(id, name, values, saved, moved, held, handler, parameter) \
    case ControlId::id: return held;
#define KNOB(type, member) as<Wanted>(controls.member)
#define TOGGLE(member) as<Wanted>(controls.member)
#define BUTTON(member) as<Wanted>(controls.member)
#define OWN_KNOB(type, member) nullptr
#define NO_CONTROL nullptr
#include "stream/control_table.inl"
    }
    return nullptr;
}
// clang-format on

void setUpToggle(Toggle& toggle, const ControlRange& range) {
    toggle.isOnByDefault = range.defaultValue != 0.0f;
    toggle.setOn(toggle.isOnByDefault);
}

void nameNotes(MokKnobEnum& knob) {
    std::vector<std::string> names;
    for (const NoteValue& note : kNoteValues) names.emplace_back(note.name);
    knob.setNames(std::move(names));
}

} // namespace

void showActive(Button& button, bool active) {
    button.tag = active ? 1 : 0;
    button.tintColor = active ? std::optional(kActiveRed) : std::nullopt;
    button.setNeedsDisplay();
}

void showArmed(Button& button, bool armed) {
    button.backgroundColor = armed ? std::optional(kArmedRed) : std::nullopt;
    button.setNeedsDisplay();
}

void setUpKnob(MOK_KNOB& knob, const ControlRange& range, const std::string& suffix) {
    knob.channel = controlChannel(range, suffix);
    if (auto* const curved = dynamic_cast<CurvedKnob*>(&knob))
        curved->setStepness(range.stepness); // before the default, which is bent by it
    if (auto* const named = dynamic_cast<MokKnobEnum*>(&knob)) nameNotes(*named);
    knob.setRange(range.minimum, range.maximum);
    knob.setDefaultValue(range.defaultValue);
    knob.setDisplayedValue(range.defaultValue);
    knob._postfix = range.unit;
    if (range.kind == ControlKind::whole) knob._precision = 0;
}

StreamControls::StreamControls(const std::string& suffix) {
    for (const ControlRange& range : controlRanges()) {
        if (Control* const any = control(range.id)) any->channel = controlChannel(range, suffix);
        if (MOK_KNOB* const turned = knob(range.id)) setUpKnob(*turned, range, suffix);
        if (Toggle* const flipped = toggle(range.id)) setUpToggle(*flipped, range);
    }
    setUpButtons(suffix);
    _playToggle.title = kStoppedIcon;
    for (Control* const later : std::initializer_list<Control*>{
             &syncImg, &sampler_mesure, &sampler_quarter, &delay_subdivisionLeft,
             &delay_subdivisionRight, &scrubMessage}) // while something is synced, or recorded
        later->hidden = true;
    for (Button* const button : {&scrubPlay, &scrubRewind}) { // until there is a take
        button->userInteractionEnabled = false;
        button->alpha = kDisabledAlpha;
    }
}

void StreamControls::setUpButtons(const std::string& suffix) {
    _playToggle.channel = "PlayToggle" + suffix; // not kept
    _rewind.channel = "Rewind" + suffix;
    liveClear.channel = "LiveClear" + suffix;
    _keyboardButton.channel = "Keyboard" + suffix;
    scrubRec.channel = "ScrubRec" + suffix;
    scrubPlay.channel = "ScrubPlay" + suffix;
    scrubRewind.channel = "ScrubRewind" + suffix;
}

Control* StreamControls::control(ControlId id) {
    return controlAs<Control>(*this, id);
}

MOK_KNOB* StreamControls::knob(ControlId id) {
    return controlAs<MOK_KNOB>(*this, id);
}

Toggle* StreamControls::toggle(ControlId id) {
    return controlAs<Toggle>(*this, id);
}

Button* StreamControls::button(ControlId id) {
    return controlAs<Button>(*this, id);
}

} // namespace zephyra
