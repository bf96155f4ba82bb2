// What mouse, wheel, fingers and keys tell StageArea, as its hands understand it.

#include "screens/draw/brush.h"
#include "screens/stage/seconds_value.h"
#include "screens/stage/stage_area.h"

#include <algorithm>

namespace zephyra {

namespace {

constexpr double kNotch = 50.0 / 256.0; // that the wheel reports for one
constexpr double kPanNotch = 0.1;       // of what is shown

TouchId idOf(const juce::MouseEvent& event) {
    return static_cast<TouchId>(event.source.getIndex()) + 1;
}

double secondsOf(const juce::MouseEvent& event) {
    return static_cast<double>(event.eventTime.toMilliseconds()) / 1000.0;
}

} // namespace

double StageArea::placeX(const juce::MouseEvent& event) const {
    return double{event.position.x} / std::max(1, scene_.width());
}

double StageArea::placeY(const juce::MouseEvent& event) const {
    return double{event.position.y} / std::max(1, scene_.height());
}

void StageArea::mouseDown(const juce::MouseEvent& event) {
    if (event.mods.isPopupMenu()) return;
    hands_.pressed(idOf(event), placeX(event), placeY(event), secondsOf(event),
                   event.mods.isShiftDown());
}

void StageArea::mouseDrag(const juce::MouseEvent& event) {
    hands_.dragged(idOf(event), placeX(event), placeY(event), secondsOf(event));
}

void StageArea::mouseUp(const juce::MouseEvent& event) {
    hands_.released(idOf(event), secondsOf(event));
}

void StageArea::mouseDoubleClick(const juce::MouseEvent&) {
    hands_.resetZoom();
}

void StageArea::mouseWheelMove(const juce::MouseEvent& event,
                               const juce::MouseWheelDetails& wheel) {
    const double notches = double{wheel.deltaY} / kNotch;
    if (event.mods.isShiftDown())
        hands_.pan(-notches * kPanNotch);
    else
        hands_.wheel(placeX(event), notches, scene_.contents.seconds);
}

bool StageArea::touchBegan(const TouchEvent& event) {
    fingers_.setStage(scene_.width(), scene_.height(), scene_.contents.seconds);
    fingers_.began(event.id, event.at, event.time);
    return true;
}

void StageArea::touchMoved(const TouchEvent& event) {
    fingers_.moved(event.id, event.at, event.time);
}

void StageArea::touchEnded(const TouchEvent& event, int) {
    fingers_.ended(event.id, event.time);
}

void StageArea::touchCancelled(const TouchEvent& event) {
    fingers_.cancelled(event.id, event.time);
}

bool StageArea::takeKey(const juce::KeyPress& key) {
    const double steps = key.getModifiers().isShiftDown() ? StageHands::kFineShare : 1.0;
    const int code = key.getKeyCode();
    const StageContents& of = scene_.contents;
    const double scan = std::clamp(scene_.view.placeOf(of.scan), 0.0, 1.0);
    if (code == juce::KeyPress::rightKey)
        hands_.moveScan(steps);
    else if (code == juce::KeyPress::leftKey)
        hands_.moveScan(-steps);
    else if (code == juce::KeyPress::pageUpKey)
        hands_.moveScan(10.0);
    else if (code == juce::KeyPress::pageDownKey)
        hands_.moveScan(-10.0);
    else if (code == juce::KeyPress::homeKey)
        hands_.putScan(of.regionStart);
    else if (code == juce::KeyPress::endKey)
        hands_.putScan(of.regionEnd);
    else if (code == juce::KeyPress::upKey || key.getTextCharacter() == '+')
        hands_.wheel(scan, 1.0, of.seconds);
    else if (code == juce::KeyPress::downKey || key.getTextCharacter() == '-')
        hands_.wheel(scan, -1.0, of.seconds);
    else if (key.getTextCharacter() == '0')
        hands_.resetZoom();
    else
        return false;
    return true;
}

std::unique_ptr<juce::AccessibilityHandler> StageArea::createAccessibilityHandler() {
    return SecondsValue::handlerOf(
        *this, scene_, [this] { return scene_.contents.scan; },
        [this](double at) { hands_.putScan(at); });
}

} // namespace zephyra
