// PlainEditor: the window until there is a screen: a list of the parameters.
#pragma once

#include <juce_audio_processors/juce_audio_processors.h>

namespace zephyra {

class PlainEditor final : public juce::GenericAudioProcessorEditor {
public:
    explicit PlainEditor(juce::AudioProcessor& shown) : GenericAudioProcessorEditor(shown) {}
};

} // namespace zephyra
