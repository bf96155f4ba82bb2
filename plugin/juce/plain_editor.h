// PlainEditor: the window until there is a screen: the parameters as a list, files, programs,
// banks.
#pragma once

#include "hosting/window_model.h"
#include "plugin/juce/alert_line.h"
#include "plugin/juce/choice_box.h"
#include "plugin/juce/parameter_list.h"
#include "plugin/juce/zephyra_processor.h"

#include <juce_audio_processors/juce_audio_processors.h>

#include <functional>
#include <memory>

namespace zephyra {

/// Shows what WindowModel tells, and asks it ten times a second. Made on any thread, also without a
/// display; everything else is JUCE's message thread.
class PlainEditor final : public juce::AudioProcessorEditor, juce::Timer {
public:
    explicit PlainEditor(ZephyraProcessor& shell);
    ~PlainEditor() override;

    void resized() override;
    void paint(juce::Graphics& graphics) override;

private:
    void timerCallback() override;
    void show(const WindowContents& now);
    void showProgram();
    void layOut();
    void setZoom(float factor);
    using Picked = std::function<void(const juce::File&)>;
    void pick(const juce::String& title, const juce::String& patterns, Picked picked);
    void pickWhatIsAskedFor();

    ZephyraProcessor& shell_;
    WindowModel model_;
    WindowContents shown_;
    juce::Component body_; // everything, in the zoom's units
    juce::TextButton load_{"Load..."}, locate_{"Locate..."}, settings_{"Settings"};
    juce::Label sound_;
    ChoiceBox program_, bank_, preset_;
    AlertLine alert_;
    ParameterList parameters_;
    std::unique_ptr<juce::FileChooser> chooser_; // open while it is there
    bool asking_ = false;                        // for what contents() asks for
};

} // namespace zephyra
