// EnvelopeTile: the grain's shape as a cell of the path; a press opens the menu of all shapes.
#pragma once

#include "pictures/envelope_curves.h"
#include "screens/path/path_cell_view.h"

#include <functional>
#include <span>

namespace zephyra {

/// A curve in box, its zero at the lower edge or, where it goes below, in the middle; filled down
/// to zero. Message thread.
void drawEnvelope(juce::Graphics& graphics, std::span<const float> gains,
                  juce::Rectangle<float> box, float lineWidth, juce::Colour colour);

/// Message thread.
class EnvelopeTile final : public PathCellView {
public:
    /// curves outlives this; open is called by a press.
    EnvelopeTile(ScreenContext& context, const PathCell& cell,
                 std::span<const EnvelopeCurve> curves, std::function<void()> open);

    void show(const PathModel& model) override;
    void paint(juce::Graphics& graphics) override;
    void mouseUp(const juce::MouseEvent& event) override;
    std::unique_ptr<juce::AccessibilityHandler> createAccessibilityHandler() override;

private:
    bool takeKey(const juce::KeyPress& key) override;
    const std::span<const EnvelopeCurve> curves_;
    const std::function<void()> open_;
    std::size_t shown_ = 0;
};

} // namespace zephyra
