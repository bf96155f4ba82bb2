// ParameterList: a row a parameter, with its name, value and text.
#pragma once

#include "hosting/plugin_parameters.h"

#include <juce_audio_processors/juce_audio_processors.h>

#include <memory>
#include <vector>

namespace zephyra {

/// Asks for values instead of listening: JUCE 7 goes through a processor's listeners on the thread
/// that renders, without a lock, so one that leaves with its window is called when it is gone.
/// JUCE's message thread.
class ParameterList final : public juce::Component {
public:
    /// Of the parameters that addParameters() gave to processor, which must outlive this.
    explicit ParameterList(juce::AudioProcessor& processor);
    ~ParameterList() override;

    /// Takes in what has changed.
    void refresh();

    void resized() override;

private:
    class Row;
    juce::AudioProcessor& processor_;
    juce::Viewport view_;
    juce::Component rows_; // in view_
    std::vector<std::unique_ptr<Row>> all_;
};

} // namespace zephyra
