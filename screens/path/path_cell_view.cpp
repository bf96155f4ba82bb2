#include "screens/path/path_cell_view.h"

#include "screens/draw/brush.h"

namespace zephyra {

PathCellView::PathCellView(ScreenContext& context, const PathCell& cell)
    : ScreenControl(context, cell.name), cell_(cell) {
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

void PathCellView::reachChanged() {
    CellReach reach = reach_;
    reach.isHovered = isHovered();
    reach.showsFocus = showsFocus();
    setReach(reach);
}

Box PathCellView::boxInWindow() const {
    const juce::Component* const window =
        getParentComponent() ? getParentComponent()->getParentComponent() : nullptr;
    const auto box = window ? window->getLocalArea(this, getLocalBounds()) : getBounds();
    return {box.getX(), box.getY(), box.getWidth(), box.getHeight()};
}

} // namespace zephyra
