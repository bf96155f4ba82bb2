// SpanImage: a trace over a picture, of which only the columns that changed are painted again.
#pragma once

#include "screens/draw/opaque_target.h"
#include "screens/model/stage/dirty_boxes.h"

#include <juce_graphics/juce_graphics.h>

#include <vector>

namespace zephyra {

/// Opaque, in physical pixels. The trace is painted from its numbers into the window itself, since
/// a picture of it would have to be written and copied each time. Message thread.
class SpanImage {
public:
    /// What stands in a column: the trace from top to bottom, and what is filled from fill down.
    /// Rows, whose fractions count; what is outside the picture is left out.
    struct Span {
        float top, bottom, fill;
        bool operator==(const Span&) const = default;
    };

    void setSize(int width, int height);
    int width() const { return ground_.getWidth(); }
    int height() const { return ground_.getHeight(); }

    /// What stands behind the trace; to be drawn into before begin().
    juce::Image& ground() noexcept { return ground_; }
    /// The ground is drawn: there is no trace yet. trace: opaque.
    void begin(juce::Colour trace, juce::Colour fill);
    void show(int x, const Span& span);
    void clear();
    /// What differs from what was painted before it was asked last.
    const std::vector<Box>& takeChanges();
    /// What graphics asks for; the upper left comes to the component's.
    void paint(juce::Graphics& graphics);
    /// All of part, which lies within.
    void paint(const PixelRows& rows, const Box& part) const;

private:
    static constexpr int kBlock = 32; // columns whose changes are gathered together

    struct Rows {
        int first, last; ///< last is the one behind
    };
    Span nothing() const;
    Rows touched(const Span& span) const;
    int row(float y) const;
    void setRows(std::size_t x, const Span& span);
    void paintEnds(const PixelRows& rows, const Box& part) const;

    juce::Image ground_, filled_;
    juce::Image picture_; // where it cannot be painted into the window itself
    juce::PixelARGB trace_, fill_;
    std::vector<Span> spans_;
    std::vector<int> first_, last_, filledFrom_; // rows of whole pixels, of each column
    std::vector<Rows> changed_;                  // of each block
    DirtyBoxes dirty_;
};

} // namespace zephyra
