// AlertLine: an alert of the core as a line with its buttons, and a text field where it asks.
#pragma once

#include "hosting/window_model.h"

#include <juce_gui_basics/juce_gui_basics.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace zephyra {

/// Shows nothing until show. JUCE's message thread.
class AlertLine final : public juce::Component {
public:
    using Pressed = std::function<void(const ShownAlert&, std::size_t button, const std::string&)>;
    explicit AlertLine(Pressed pressed);

    void show(const std::optional<ShownAlert>& alert);
    /// 0 while it shows nothing.
    int wantedHeight() const;

    void resized() override;
    void paint(juce::Graphics& graphics) override;

private:
    Pressed pressed_;
    std::optional<ShownAlert> alert_;
    juce::Label text_;
    juce::TextEditor field_;
    std::vector<std::unique_ptr<juce::TextButton>> buttons_;
};

} // namespace zephyra
