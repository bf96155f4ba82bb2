#include "screens/path/path_cell_view.h"

#include "screens/draw/brush.h"

namespace zephyra {

PathCellView::PathCellView(ScreenContext& context, const PathCell& cell)
    : context_(context), cell_(cell) {
    setOpaque(true);
    setWantsKeyboardFocus(true);
}

void PathCellView::setPlace(const CellPlace& place) {
    place_ = place;
    setBounds(brush::rectangle(place.cell));
    repaint();
}

void PathCellView::useShortName(bool on) {
    isShort_ = on;
}

void PathCellView::setReach(const CellReach& reach) {
    if (reach_ == reach) return;
    reach_ = reach;
    repaint();
}

void PathCellView::setHelp(const std::string& sentence) {
    help_ = sentence;
    setHelpText(brush::text(sentence));
    setTooltip(brush::text(sentence));
}

void PathCellView::tell(const std::string& sentence) {
    if (context_.help) context_.help(sentence);
}

void PathCellView::mouseEnter(const juce::MouseEvent&) {
    CellReach reach = reach_;
    reach.isHovered = true;
    setReach(reach);
    tell(sentence());
}

void PathCellView::mouseExit(const juce::MouseEvent&) {
    CellReach reach = reach_;
    reach.isHovered = false;
    setReach(reach);
    tell({});
}

// A press focuses as well, so that keys go on where the hand was, but frames nothing.
void PathCellView::focusGained(FocusChangeType cause) {
    showFocus(cause == focusChangedByTabKey); // a window that is activated also focuses
    if (reach_.showsFocus) tell(sentence());
}

void PathCellView::showFocus(bool on) {
    CellReach reach = reach_;
    reach.showsFocus = on;
    setReach(reach);
}

void PathCellView::focusLost(FocusChangeType) {
    if (reach_.showsFocus && !reach_.isHovered) tell({});
    showFocus(false);
}

Box PathCellView::boxInWindow() const {
    const juce::Component* const window =
        getParentComponent() ? getParentComponent()->getParentComponent() : nullptr;
    const auto box = window ? window->getLocalArea(this, getLocalBounds()) : getBounds();
    return {box.getX(), box.getY(), box.getWidth(), box.getHeight()};
}

} // namespace zephyra
