#include "screens/draw/switch_access.h"

#include <utility>

namespace zephyra {

namespace {

class SwitchAccess final : public juce::AccessibilityHandler {
public:
    SwitchAccess(juce::Component& control, std::function<bool()> isOn,
                 const std::function<void()>& flip)
        : AccessibilityHandler(control, juce::AccessibilityRole::toggleButton,
                               juce::AccessibilityActions()
                                   .addAction(juce::AccessibilityActionType::toggle, flip)
                                   .addAction(juce::AccessibilityActionType::press, flip)),
          isOn_(std::move(isOn)) {}

    juce::AccessibleState getCurrentState() const override {
        const auto state = AccessibilityHandler::getCurrentState().withCheckable();
        return isOn_() ? state.withChecked() : state;
    }

private:
    const std::function<bool()> isOn_;
};

} // namespace

std::unique_ptr<juce::AccessibilityHandler> switchAccess(juce::Component& control,
                                                         std::function<bool()> isOn,
                                                         const std::function<void()>& flip) {
    return std::make_unique<SwitchAccess>(control, std::move(isOn), flip);
}

} // namespace zephyra
