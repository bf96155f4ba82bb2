// SectionSwitch: a switch on the signal line, a pill that turns a section on, or a chip that syncs
// it.
#pragma once

#include "screens/model/path/path_model.h"
#include "screens/model/screen_context.h"

#include <juce_gui_basics/juce_gui_basics.h>

#include <functional>

namespace zephyra {

enum class SwitchShape { pill, syncChip };

/// Its hit area is larger than what is drawn. Message thread.
class SectionSwitch final : public juce::Component, public juce::SettableTooltipClient {
public:
    /// flip is called by a press.
    SectionSwitch(ScreenContext& context, ControlId id, SwitchShape shape,
                  std::function<void(ControlId)> flip);

    ControlId id() const { return id_; }
    /// drawn: in the path's area; text: of the chip, in pixels.
    void place(const Box& drawn, double text);
    void show(const PathModel& model);

    void paint(juce::Graphics& graphics) override;
    void mouseEnter(const juce::MouseEvent& event) override;
    void mouseExit(const juce::MouseEvent& event) override;
    void mouseUp(const juce::MouseEvent& event) override;
    bool keyPressed(const juce::KeyPress& key) override;
    void focusGained(FocusChangeType cause) override;
    void focusLost(FocusChangeType cause) override;
    std::unique_ptr<juce::AccessibilityHandler> createAccessibilityHandler() override;
    bool isOn() const { return isOn_; }
    /// See PathCellView.
    void showFocus(bool on);

private:
    void tell(const juce::String& sentence);
    void paintPill(juce::Graphics& graphics, juce::Rectangle<float> box) const;
    void paintChip(juce::Graphics& graphics, juce::Rectangle<float> box) const;

    ScreenContext& context_;
    const ControlId id_;
    const SwitchShape shape_;
    const std::function<void(ControlId)> flip_;
    juce::Rectangle<float> drawn_; // in this component
    double text_ = 11.0;
    bool isOn_ = false, isHovered_ = false, showsFocus_ = false;
};

} // namespace zephyra
