// ScreenEditor: the window's content as JUCE's hosts ask for it.
#pragma once

#include "plugin/juce/zephyra_processor.h"
#include "screens/desktop/host_keys.h"
#include "screens/zephyra_screen.h"

#include <juce_audio_processors/juce_audio_processors.h>

#include <memory>

namespace zephyra {

/// Made on any thread, also without a display: some hosts make one only to ask whether there is
/// one. Its screen comes with the window that it is shown in; everything then is JUCE's message
/// thread.
class ScreenEditor final : public juce::AudioProcessorEditor {
public:
    explicit ScreenEditor(ZephyraProcessor& shell);
    ~ScreenEditor() override;

    void paint(juce::Graphics& graphics) override;
    void resized() override;
    void parentHierarchyChanged() override;
    bool keyPressed(const juce::KeyPress& key) override;

    /// Null until it is shown.
    ZephyraScreen* screen() noexcept { return screen_.get(); }
    double zoom() const noexcept { return zoom_; }

private:
    void show();
    void followZoom();

    ZephyraProcessor& shell_;
    double zoom_ = 1.0;
    HostKeys keys_;
    std::unique_ptr<ZephyraScreen> screen_;
};

} // namespace zephyra
