#include "screens/stage/region_handle.h"

#include "screens/draw/brush.h"
#include "screens/model/help_texts.h"
#include "screens/stage/ruler.h"
#include "screens/stage/seconds_value.h"

#include <algorithm>

namespace zephyra {

RegionHandle::RegionHandle(RegionEdge edge, ScreenContext& context, StageHands& hands,
                           const StageScene& scene)
    : ScreenControl(context, edge == RegionEdge::start ? "Region start" : "Region end"),
      edge_(edge), hands_(hands), scene_(scene) {
    setHelp(helpText(isStart() ? HelpId::regionStart : HelpId::regionEnd));
    setWantsKeyboardFocus(true);
    setMouseCursor(juce::MouseCursor::LeftRightResizeCursor);
}

double RegionHandle::position() const {
    return isStart() ? scene_.contents.regionStart : scene_.contents.regionEnd;
}

double RegionHandle::gripWidth() const {
    return isHovered() || hands_.isHeld(edge_) ? Ruler::kHoveredGrip : Ruler::kGrip;
}

void RegionHandle::follow() {
    const Box grip = Ruler::grip(scene_, isStart(), Ruler::kGrip);
    const int wide = scene_.px(Ruler::kHit);
    setBounds(grip.centreX() - wide / 2, grip.y, wide, grip.height);
}

void RegionHandle::paint(juce::Graphics& graphics) {
    const Box stage = Ruler::grip(scene_, isStart(), gripWidth());
    const auto grip =
        brush::floats(stage).translated(static_cast<float>(-getX()), static_cast<float>(-getY()));
    const auto corner = static_cast<float>(scene_.units(3));
    const bool isLit = isHovered() || hands_.isHeld(edge_) || showsFocus();
    if (showsFocus()) {
        graphics.setColour(brush::colour(palette::kBright));
        const auto line = static_cast<float>(scene_.units(2));
        graphics.drawRoundedRectangle(grip.expanded(line * 1.5f, 0.0f).reduced(0.0f, line / 2.0f),
                                      corner + line, line);
    }
    graphics.setColour(brush::colour(isLit ? palette::kBright : palette::kArc));
    graphics.fillRoundedRectangle(
        grip.reduced(0.0f, showsFocus() ? static_cast<float>(scene_.units(3)) : 0.0f), corner);
    graphics.setColour(brush::colour(palette::kInk));
    const auto line = static_cast<float>(std::max(1, scene_.px(1)));
    const auto apart = static_cast<float>(scene_.units(1.5)),
               half = static_cast<float>(scene_.units(4));
    for (const float side : {-apart, apart})
        graphics.fillRect(grip.getCentreX() + side - line / 2.0f, grip.getCentreY() - half, line,
                          2.0f * half);
}

double RegionHandle::placeOf(const juce::MouseEvent& event) const {
    return (double{event.position.x} + getX()) / std::max(1, scene_.width());
}

void RegionHandle::mouseDown(const juce::MouseEvent& event) {
    if (event.mods.isLeftButtonDown()) hands_.handlePressed(edge_, placeOf(event));
    repaint();
}

void RegionHandle::mouseDrag(const juce::MouseEvent& event) {
    hands_.handleDragged(edge_, placeOf(event));
}

void RegionHandle::mouseUp(const juce::MouseEvent&) {
    hands_.handleReleased(edge_);
    repaint();
}

bool RegionHandle::touchBegan(const TouchEvent& event) {
    if (hands_.isHeld(edge_)) return false;
    touchedAt_ = getX(); // the handle moves, while a finger's places go on from here
    hands_.handlePressed(edge_, placeOf(event));
    repaint();
    return true;
}

void RegionHandle::touchMoved(const TouchEvent& event) {
    hands_.handleDragged(edge_, placeOf(event));
}

void RegionHandle::touchEnded(const TouchEvent& event, int) {
    touchCancelled(event);
}

/// Where it was dragged to, it stays.
void RegionHandle::touchCancelled(const TouchEvent&) {
    hands_.handleReleased(edge_);
    repaint();
}

double RegionHandle::placeOf(const TouchEvent& event) const {
    return (event.at.x + touchedAt_) / std::max(1, scene_.width());
}

bool RegionHandle::takeKey(const juce::KeyPress& key) {
    const double steps = key.getModifiers().isShiftDown() ? StageHands::kFineShare : 1.0;
    const int code = key.getKeyCode();
    if (code == juce::KeyPress::rightKey || code == juce::KeyPress::upKey)
        hands_.nudge(edge_, steps);
    else if (code == juce::KeyPress::leftKey || code == juce::KeyPress::downKey)
        hands_.nudge(edge_, -steps);
    else if (code == juce::KeyPress::pageUpKey)
        hands_.nudge(edge_, 10.0);
    else if (code == juce::KeyPress::pageDownKey)
        hands_.nudge(edge_, -10.0);
    else if (code == juce::KeyPress::homeKey)
        moveTo(0.0);
    else if (code == juce::KeyPress::endKey)
        moveTo(1.0);
    else
        return false;
    return true;
}

std::unique_ptr<juce::AccessibilityHandler> RegionHandle::createAccessibilityHandler() {
    return SecondsValue::handlerOf(
        *this, scene_, [this] { return position(); }, [this](double at) { moveTo(at); });
}

} // namespace zephyra
