// ScreenArea: a part of the window with a rectangle of its own.
#pragma once

#include "screens/model/screen_context.h"

#include <juce_gui_basics/juce_gui_basics.h>

namespace zephyra {

/// Stands in the window's coordinates minus its own place; draws what its models tell. Message
/// thread.
class ScreenArea : public juce::Component {
public:
    explicit ScreenArea(ScreenContext& context) : context_(context) {}

    /// The window was laid out anew: the bounds are set, cached pictures are to be made again.
    virtual void layOut(const ScreenLayout& layout) = 0;
    /// A frame: the parts were read just before. Repaints what changed, and nothing else.
    virtual void frame(const FrameTime& time) = 0;

protected:
    ScreenContext& context() noexcept { return context_; }
    ScreenSource& source() noexcept { return context_.source; }

private:
    ScreenContext& context_;
};

} // namespace zephyra
