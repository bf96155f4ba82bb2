// OpaqueTarget: the rows that a component paints into, for what covers all that was there.
#pragma once

#include "screens/draw/pixel_rows.h"

#include <juce_graphics/juce_graphics.h>

#include <optional>

namespace zephyra {

/// JUCE builds a table of edges for every picture and blends each of its pixels, though they only
/// replace what is there. Where it renders by software, clips by rectangles and has pixels of four
/// bytes, as in a window, rows can be written as they are. Places are the component's. Lives within
/// a paint(). Message thread.
class OpaqueTarget {
public:
    explicit OpaqueTarget(juce::Graphics& graphics);

    /// Not where JUCE must draw by itself.
    explicit operator bool() const noexcept { return bitmap_.has_value(); }
    /// What is to be painted.
    const juce::RectangleList<int>& clip() const noexcept { return clip_; }
    PixelRows rows() const noexcept { return PixelRows(*bitmap_, origin_); }

private:
    std::optional<juce::Image::BitmapData> bitmap_;
    juce::RectangleList<int> clip_;
    juce::Point<int> origin_;
};

/// Copies of picture what graphics is to paint; its upper left comes to the component's. picture:
/// opaqueImage's.
void copyOpaque(juce::Graphics& graphics, const juce::Image& picture);

/// A picture with pixels of four bytes; what it holds is not known, and whoever writes it keeps
/// alpha at 255.
juce::Image opaqueImage(int width, int height);

} // namespace zephyra
