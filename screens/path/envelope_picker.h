// EnvelopePicker: every shape of a grain, drawn, to choose from.
#pragma once

#include "pictures/envelope_curves.h"
#include "screens/model/screen_layout.h"

#include <juce_gui_basics/juce_gui_basics.h>

#include <functional>
#include <optional>
#include <span>

namespace zephyra {

struct EnvelopePickerCalls {
    std::function<void(std::size_t menuIndex)> pick;
    std::function<void()> closed; ///< may delete the picker
};

/// Stands over the path's knobs while it is open: two rows of tiles. Arrows move, Enter and space
/// choose, Escape and a press elsewhere close. Message thread.
class EnvelopePicker final : public juce::Component {
public:
    /// curves outlives this.
    EnvelopePicker(std::span<const EnvelopeCurve> curves, std::size_t chosen,
                   EnvelopePickerCalls calls);

    /// In the path's area.
    void place(const ScreenLayout& layout);

    void paint(juce::Graphics& graphics) override;
    void mouseMove(const juce::MouseEvent& event) override;
    void mouseExit(const juce::MouseEvent& event) override;
    void mouseUp(const juce::MouseEvent& event) override;
    bool keyPressed(const juce::KeyPress& key) override;
    void focusLost(FocusChangeType cause) override;
    std::unique_ptr<juce::AccessibilityHandler> createAccessibilityHandler() override;

private:
    juce::Rectangle<int> tile(std::size_t index) const;
    std::optional<std::size_t> tileAt(juce::Point<int> at) const;
    void mark(std::size_t index);
    void choose(std::size_t index);
    void close();

    const std::span<const EnvelopeCurve> curves_;
    const std::size_t chosen_;
    const EnvelopePickerCalls calls_;
    std::size_t marked_;
    double unit_ = 1.0, nameText_ = 12.0;
    int columns_ = 6;
    bool isClosed_ = false;
};

} // namespace zephyra
