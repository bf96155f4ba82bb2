#include "screens/strip/strip_area.h"

#include "screens/draw/brush.h"

#include <utility>

namespace zephyra {

StripArea::StripArea(ScreenContext& context) : spectrum_(context), scope_(context) {
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

/// Each moves in every third frame, and not in the same: twenty pictures of a trace a second are
/// enough to the eye, and nearly all of it changes each time.
void StripArea::frame(const FrameTime& time) {
    turn_ = (turn_ + 1) % kTurns;
    spectrumsTime_ += time.elapsed;
    scopesTime_ += time.elapsed;
    if (turn_ == 0)
        scope_.frame({.now = time.now, .elapsed = std::exchange(scopesTime_, 0.0)});
    else if (turn_ == 1)
        spectrum_.frame({.now = time.now, .elapsed = std::exchange(spectrumsTime_, 0.0)});
}

void StripArea::blit(WindowBlitter& blitter) {
    scope_.blit(blitter);
    spectrum_.blit(blitter);
}

} // namespace zephyra
