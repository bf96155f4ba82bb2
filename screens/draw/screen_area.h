// ScreenArea: a part of the window with a rectangle of its own.
#pragma once

#include "screens/model/screen_context.h"

namespace zephyra {

class WindowBlitter;

/// A component's other base: it stands in the window's coordinates minus its own place, and draws
/// what its models tell. Message thread.
class ScreenArea {
public:
    virtual ~ScreenArea() = default;

    /// The window was laid out anew: the bounds are set, cached pictures are to be made again.
    virtual void layOut(const ScreenLayout& layout) = 0;
    /// A frame: the parts were read just before. Repaints what changed, and nothing else.
    virtual void frame(const FrameTime& time) = 0;
    /// All areas had the frame and stand where they will be painted: what moves over much of the
    /// window is drawn at once, or repainted where the blitter takes it not.
    virtual void blit(WindowBlitter& /*blitter*/) {}
};

} // namespace zephyra
