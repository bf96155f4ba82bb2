#include "screens/strip/strip_area.h"

#include "screens/draw/brush.h"

#include <utility>

namespace zephyra {

StripArea::StripArea(ScreenContext& context)
    : ScreenArea(context), spectrum_(context), scope_(context) {
    setFocusContainerType(FocusContainerType::focusContainer);
    addAndMakeVisible(spectrum_);
    addAndMakeVisible(scope_);
}

void StripArea::layOut(const ScreenLayout& layout) {
    const auto both = brush::rectangle(layout.spectrum).getUnion(brush::rectangle(layout.scope));
    setBounds(both);
    const auto inside = [&](Box box) {
        box.x -= both.getX();
        box.y -= both.getY();
        return box;
    };
    spectrum_.layOut(layout, inside(layout.spectrum));
    scope_.layOut(layout, inside(layout.scope));
}

/// Each moves in every second frame: thirty pictures of a trace a second are enough to the eye, and
/// both are painted whole.
void StripArea::frame(const FrameTime& time) {
    isScopesTurn_ = !isScopesTurn_;
    const FrameTime both{.now = time.now,
                         .elapsed = time.elapsed + std::exchange(before_, time.elapsed)};
    if (isScopesTurn_)
        scope_.frame(both);
    else
        spectrum_.frame(both);
}

} // namespace zephyra
