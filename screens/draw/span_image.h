// SpanImage: a picture of a trace, of which only the columns that changed are drawn again.
#pragma once

#include "screens/draw/opaque_target.h"
#include "screens/model/stage/dirty_boxes.h"

#include <juce_graphics/juce_graphics.h>

#include <vector>

namespace zephyra {

/// Opaque, in physical pixels. Message thread.
class SpanImage {
public:
    /// What stands in a column: the trace from top to bottom, and what is filled from fill down.
    /// Rows, whose fractions count; what is outside the picture is left out.
    struct Span {
        float top, bottom, fill;
        bool operator==(const Span&) const = default;
    };

    void setSize(int width, int height);
    int width() const { return image_.getWidth(); }
    int height() const { return image_.getHeight(); }

    /// What stands behind the trace; to be drawn into before begin().
    juce::Image& ground() noexcept { return ground_; }
    /// The ground is drawn: there is no trace yet. trace: opaque.
    void begin(juce::Colour trace, juce::Colour fill);
    void show(int x, const Span& span);
    void clear();
    /// Draws what was shown since the last time; where it differs.
    const std::vector<Box>& draw();

    const juce::Image& image() const noexcept { return image_; }

private:
    static constexpr int kBlock = 32; // columns that are drawn together, row by row

    struct Rows {
        int first, last; ///< last is the one behind
    };
    Span nothing() const;
    Rows touched(const Span& span) const;
    Rows whole(const Span& span) const;
    int row(float y) const;
    void drawBlock(int left, int right, const Rows& rows);
    void drawEnds(int left, int right, const Rows& rows);

    juce::Image ground_, filled_, image_;
    juce::PixelARGB trace_, fill_;
    std::vector<Span> spans_;
    std::vector<Rows> changed_; // of each block
    DirtyBoxes dirty_;
};

} // namespace zephyra
