#include "screens/strip/strip_area.h"

#include "screens/draw/brush.h"

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

void StripArea::frame(const FrameTime& time) {
    spectrum_.frame(time);
    scope_.frame(time);
}

} // namespace zephyra
