#include "modulation/scrub_widgets.h"

#include "controls/knob.h"
#include "controls/mok_keyboard.h"
#include "controls/pad.h"
#include "modulation/lfo.h"
#include "modulation/scrub_widget_wrapper.h"

#include <cmath>

namespace zephyra {

namespace {

std::shared_ptr<ScrubWidgetWrapper> makeWrapper(Control* control, bool secondFinger) {
    if (auto* const knob = dynamic_cast<MOK_KNOB*>(control))
        return std::make_shared<ScrubKnobWidgetWrapper>(*knob, secondFinger);
    if (auto* const pad = dynamic_cast<MOK_PAD*>(control))
        return std::make_shared<ScrubPadWidgetWrapper>(*pad, secondFinger);
    if (auto* const keyboard = dynamic_cast<MOK_Keyboard*>(control))
        return std::make_shared<ScrubKeyboardWidgetWrapper>(*keyboard, secondFinger);
    return nullptr;
}

} // namespace

ScrubWidgets::ScrubWidgets(RunLoop& runLoop) : runLoop_(runLoop) {}

ScrubWidgets::~ScrubWidgets() {
    runLoop_.cancel(timer_);
}

void ScrubWidgets::addWidget_forSecondFinger(Control* control, bool secondFinger) {
    if (auto wrapper = makeWrapper(control, secondFinger)) wrappers_.add(std::move(wrapper));
}

void ScrubWidgets::removeWidget(const Control* control) {
    wrappers_.remove(control);
}

void ScrubWidgets::removeAllWidgets() {
    wrappers_.clear();
}

WidgetWrapper* ScrubWidgets::getWrapperID(const Control* control) {
    return wrappers_.find(control);
}

PropertyDictionary ScrubWidgets::getWrapperInfo(const Control* control) const {
    const ScrubWidgetWrapper* const wrapper = wrappers_.find(control);
    return wrapper ? wrapper->state() : PropertyDictionary{};
}

StateFindings ScrubWidgets::setWrapperInfo_fromDictionary(Control* control,
                                                          const PropertyDictionary& state) {
    StateFindings findings;
    if (!wrappers_.find(control)) addWidget_forSecondFinger(control, false);
    if (ScrubWidgetWrapper* const wrapper = wrappers_.find(control)) {
        PropertyReader reader(state, findings, control->channel);
        wrapper->applyState(reader);
    }
    return findings;
}

bool ScrubWidgets::followsSecondFinger(const Control* control) const {
    const ScrubWidgetWrapper* const wrapper = wrappers_.find(control);
    return wrapper && wrapper->followsSecondFinger();
}

void ScrubWidgets::touchBegan(Finger finger, Point at, double /*time*/) {
    height(finger) = at.y; // one that is not finite waits for the first movement
    forEachOf(finger, [](ScrubWidgetWrapper& wrapper) { wrapper.begin(); });
}

void ScrubWidgets::touchMoved(Finger finger, Point at, double /*time*/) {
    std::optional<double>& last = height(finger);
    if (!last || !std::isfinite(at.y)) return;
    const double up = std::isfinite(*last) ? *last - at.y : 0.0;
    last = at.y;
    bool following = false;
    forEachOf(finger, [&](ScrubWidgetWrapper& wrapper) {
        wrapper.moveBy(up);
        following |= wrapper.isFollowing();
    });
    if (following && timer_ == 0) timer_ = runLoop_.addTimer(kLfoTick, [this] { tick(); });
}

void ScrubWidgets::touchEnded(Finger finger, double /*time*/) {
    if (!std::exchange(height(finger), std::nullopt)) return;
    forEachOf(finger, [](ScrubWidgetWrapper& wrapper) { wrapper.end(); });
}

template <typename Visit>
void ScrubWidgets::forEachOf(Finger finger, const Visit& visit) {
    wrappers_.forEach([&](ScrubWidgetWrapper& wrapper) {
        if (wrapper.followsSecondFinger() == (finger == Finger::second)) visit(wrapper);
    });
}

void ScrubWidgets::tick() {
    bool following = false;
    wrappers_.forEach([&](ScrubWidgetWrapper& wrapper) { following |= wrapper.follow(kLfoTick); });
    if (!following) runLoop_.cancel(std::exchange(timer_, 0));
}

} // namespace zephyra
