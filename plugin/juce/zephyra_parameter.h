// ZephyraParameter: one of the 24 parameters, as JUCE's wrappers show it to hosts.
#pragma once

#include "hosting/plugin_instance.h"
#include "hosting/plugin_parameters.h"
#include "platform/threads/relaxed.h"

#include <juce_audio_processors/juce_audio_processors.h>

namespace zephyra {

/// Its value is the instance's. Normalised values run evenly over the linear ones. The instance
/// must outlive it; threads are those of the instance's functions, texts are any but RENDER.
class ZephyraParameter final : public juce::AudioProcessorParameterWithID {
public:
    ZephyraParameter(PluginInstance& instance, const PluginParameter& facts);

    float getValue() const override;
    /// Ignored where it is not finite, as in PluginInstance. Any thread.
    void setValue(float normalized) override;
    float getDefaultValue() const override;
    juce::String getName(int mostLength) const override;
    int getNumSteps() const override;
    bool isDiscrete() const override { return facts_.isSwitch; }
    bool isBoolean() const override { return facts_.isSwitch; }
    /// With the unit, which follows the size of the value ("1.2 kHz"): so there is no label beside.
    juce::String getText(float normalized, int mostLength) const override;
    /// What is no value of the parameter leaves it where it is.
    float getValueForText(const juce::String& text) const override;

    /// Tells the host the value as a hand's, without setting it. JUCE's message thread.
    void tell(float normalized);
    /// The same of the value that stands, unless the host knows it.
    void tellIfUnknown();
    /// The host reads the value that stands by itself. HOST.
    void countAsTold() { told_ = getValue(); }

    AUParameterAddress address() const { return static_cast<AUParameterAddress>(facts_.id); }

private:
    PluginInstance& instance_;
    const PluginParameter& facts_;
    Relaxed<float> told_; // the value that the host knows
};

/// Adds all of them to processor, in address order: JUCE numbers them so. Neighbours of one group
/// stand in it; one that stands alone belongs to no group, for JUCE lists a group in one piece.
void addParameters(juce::AudioProcessor& processor, PluginInstance& instance);

/// One that addParameters made. Below kParameterCount.
ZephyraParameter& parameterAt(const juce::AudioProcessor& processor, AUParameterAddress address);

} // namespace zephyra
