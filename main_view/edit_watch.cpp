#include "main_view/edit_watch.h"

#include "controls/state_keys.h"
#include "main_view/audio_unit_view_controller.h"

namespace zephyra {

namespace {

constexpr const char* kTouched = "editTouched:";
constexpr const char* kChanged = "editChanged:";

template <typename Do>
void forEachControl(AudioUnitViewController& view, Do&& action) {
    for (const ControlRange& range : controlRanges())
        if (Control* const control = view.control(range.id)) action(*control);
}

} // namespace

EditWatch::EditWatch(AudioUnitViewController& view) : view_(view) {
    forEachControl(view_, [this](Control& control) { listen(control); });
}

EditWatch::~EditWatch() {
    forEachControl(
        view_, [this](Control& control) { control.removeTarget(this, {}, control_event::all); });
}

void EditWatch::listen(Control& control) {
    control.addTarget(this, kTouched, control_event::touchDown,
                      [this](Control& touched) { movedByHand(touched.channel); });
    control.addTarget(this, kChanged, control_event::valueChanged,
                      [this](Control& moved) { changed(moved); });
}

void EditWatch::begin() {
    hands_.clear();
    others_.clear();
}

/// By what moves by itself; a hand that holds the control wins.
bool EditWatch::isDriven(const Control& control) const {
    switch (view_.assignments.typeOf(control)) {
    case AssignmentType::midi:
    case AssignmentType::accelX:
    case AssignmentType::accelY:
    case AssignmentType::lfo:
        return true;
    default:
        return false;
    }
}

void EditWatch::changed(Control& control) {
    if (hands_.contains(control.channel)) return;
    if (view_.isMovedFromOutside() || isDriven(control))
        movedByOthers(control.channel);
    else
        movedByHand(control.channel);
}

bool EditWatch::isOthers(const std::string& key) const {
    if (hands_.contains(key)) return false;
    // The scan itself sends no events when it is driven.
    static const std::string scan = ofStream(state_key::kScanPosition);
    return others_.contains(key) || (key == scan && isDriven(view_._GRANULATOR_STREAM.scrubArea));
}

} // namespace zephyra
