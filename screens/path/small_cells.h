// VoicesCell and KeepCell: the two cells of the path that are no knobs.
#pragma once

#include "screens/path/path_cell_view.h"

#include <functional>

namespace zephyra {

/// A dot for each voice, in its grain's colour; framed in red while grains are dropped. Message
/// thread.
class VoicesCell final : public PathCellView {
public:
    VoicesCell(ScreenContext& context, const PathCell& cell);
    void show(const PathModel& model) override;
    void paint(juce::Graphics& graphics) override;
    std::unique_ptr<juce::AccessibilityHandler> createAccessibilityHandler() override;

private:
    VoicesFace face_;
};

/// A press keeps what LIVE heard. Message thread.
class KeepCell final : public PathCellView {
public:
    KeepCell(ScreenContext& context, const PathCell& cell, std::function<void()> keep);
    void show(const PathModel& model) override;
    void paint(juce::Graphics& graphics) override;
    void mouseDown(const juce::MouseEvent& event) override;
    void mouseUp(const juce::MouseEvent& event) override;
    std::unique_ptr<juce::AccessibilityHandler> createAccessibilityHandler() override;

private:
    bool takeKey(const juce::KeyPress& key) override;
    void press();

    const std::function<void()> keep_;
    KeepFace face_;
};

} // namespace zephyra
