// SecondsValue: a place in the sound, for those who hear the window.
#pragma once

#include "screens/draw/brush.h"
#include "screens/model/stage/ruler_scale.h"
#include "screens/model/stage/stage_hands.h"
#include "screens/stage/stage_scene.h"

#include <juce_gui_basics/juce_gui_basics.h>

#include <algorithm>
#include <functional>
#include <utility>

namespace zephyra {

/// read answers with a fraction of the sound, write takes one; the scene outlives it. Message
/// thread.
class SecondsValue final : public juce::AccessibilityValueInterface {
public:
    SecondsValue(const StageScene& scene, std::function<double()> read,
                 std::function<void(double)> write)
        : scene_(scene), read_(std::move(read)), write_(std::move(write)) {}

    bool isReadOnly() const override { return false; }
    double getCurrentValue() const override { return read_() * scene_.contents.seconds; }
    juce::String getCurrentValueAsString() const override {
        return brush::text(timeText(getCurrentValue()));
    }
    void setValue(double seconds) override {
        if (scene_.contents.seconds > 0.0) write_(seconds / scene_.contents.seconds);
    }
    void setValueAsString(const juce::String& text) override { setValue(text.getDoubleValue()); }
    AccessibleValueRange getRange() const override {
        const double all = std::max(1e-3, scene_.contents.seconds);
        return {{0.0, all}, all * StageHands::kArrowStep};
    }

    /// A handler that reads component as a slider of this value.
    static std::unique_ptr<juce::AccessibilityHandler>
    handlerOf(juce::Component& component, const StageScene& scene, std::function<double()> read,
              std::function<void(double)> write) {
        return std::make_unique<juce::AccessibilityHandler>(
            component, juce::AccessibilityRole::slider, juce::AccessibilityActions(),
            juce::AccessibilityHandler::Interfaces{
                std::make_unique<SecondsValue>(scene, std::move(read), std::move(write))});
    }

private:
    const StageScene& scene_;
    std::function<double()> read_;
    std::function<void(double)> write_;
};

} // namespace zephyra
