// SectionSwitch: a switch on the signal line, a pill that turns a section on, or a chip that syncs
// it.
#pragma once

#include "screens/draw/screen_control.h"
#include "screens/model/path/path_model.h"

#include <functional>

namespace zephyra {

enum class SwitchShape { pill, syncChip };

/// Its hit area is larger than what is drawn. Message thread.
class SectionSwitch final : public ScreenControl {
public:
    /// flip is called by a press.
    SectionSwitch(ScreenContext& context, ControlId id, SwitchShape shape,
                  std::function<void(ControlId)> flip);

    ControlId id() const { return id_; }
    /// drawn: in the path's area; text: of the chip, in pixels.
    void place(const Box& drawn, double text);
    void show(const PathModel& model);

    void paint(juce::Graphics& graphics) override;
    void mouseUp(const juce::MouseEvent& event) override;
    std::unique_ptr<juce::AccessibilityHandler> createAccessibilityHandler() override;

private:
    bool takeKey(const juce::KeyPress& key) override;
    void paintChip(juce::Graphics& graphics, juce::Rectangle<float> box) const;

    const ControlId id_;
    const SwitchShape shape_;
    const std::function<void(ControlId)> flip_;
    juce::Rectangle<float> drawn_; // in this component
    double text_ = 11.0;
    bool isOn_ = false;
};

} // namespace zephyra
