// What fingers of a touch screen tell KnobCell.

#include "screens/model/touch/touch_router.h"
#include "screens/path/knob_cell.h"

namespace zephyra {

namespace {

juce::Point<float> placeOf(const TouchEvent& event) {
    return juce::Point(event.at.x, event.at.y).toFloat();
}

} // namespace

bool KnobCell::touchBegan(const TouchEvent& event) {
    ++fingers_;
    const bool taken = press(event.id, placeOf(event));
    if (taken) tell(sentence());
    return taken;
}

void KnobCell::touchMoved(const TouchEvent& event) {
    drag(event.id, placeOf(event), Fineness::coarse);
}

void KnobCell::touchEnded(const TouchEvent& event, int taps) {
    const bool types = release(event.id, placeOf(event));
    tell({});
    if (taps == 2) hand_.reset(cell().id);
    if (!types || taps != 1) return;
    // The field would have the second tap.
    juce::Timer::callAfterDelay(static_cast<int>(TouchRouter::kTapSeconds * 1000.0),
                                [safe = SafePointer<KnobCell>(this), finger = fingers_] {
                                    if (safe && safe->fingers_ == finger) safe->openField();
                                });
}

void KnobCell::touchCancelled(const TouchEvent& event) {
    cancel(event.id);
    tell({});
}

void KnobCell::touchRested(const TouchEvent& event) {
    if (holdsGrip(event.id)) return;
    cancel(event.id);
    openMenu();
}

} // namespace zephyra
