// SpanImage: a picture that traces are drawn into column by column, far cheaper than as paths.
#pragma once

#include "controls/control.h"

#include <juce_graphics/juce_graphics.h>

namespace zephyra {

/// Opaque, in physical pixels. Message thread.
class SpanImage {
public:
    void setSize(int width, int height);
    int width() const { return image_.getWidth(); }
    int height() const { return image_.getHeight(); }

    /// What stands behind all traces; to be drawn into, and kept until the size changes.
    juce::Image& ground() noexcept { return ground_; }
    const juce::Image& image() const noexcept { return image_; }

    /// Fills columns of the picture while it lives; begins with the ground.
    class Pen {
    public:
        explicit Pen(SpanImage& picture);
        /// colour, by its alpha, in column x from y top to y bottom, whose fractions count; what is
        /// outside is left out.
        void fill(int x, float top, float bottom, juce::Colour colour);

    private:
        juce::Image::BitmapData pixels_;
    };

private:
    juce::Image ground_, image_;
};

} // namespace zephyra
