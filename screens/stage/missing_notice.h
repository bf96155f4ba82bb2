// MissingNotice: says which sound is missing, and offers to locate it.
#pragma once

#include "screens/model/screen_context.h"

#include <juce_gui_basics/juce_gui_basics.h>

#include <functional>
#include <memory>

namespace zephyra {

/// At the stage's upper left while a sound is missing. Message thread.
class MissingNotice final : public juce::Component {
public:
    explicit MissingNotice(ScreenContext& context);
    ~MissingNotice() override;

    /// name: the missing file's; empty hides the notice. layout: of the window.
    void show(const std::string& name, const ScreenLayout& layout);

    void paint(juce::Graphics& graphics) override;
    void resized() override;

private:
    class LocateButton;

    ScreenLayout layout_;
    std::string name_;
    std::unique_ptr<LocateButton> locate_;
};

} // namespace zephyra
