#include "plugin/juce/zephyra_parameter.h"

#include <cmath>
#include <memory>
#include <string>
#include <utility>

namespace zephyra {

namespace {

juce::ParameterID identifier(const PluginParameter& facts) {
    constexpr int kFirstVersion = 1;
    return {juce::String::fromUTF8(facts.symbol), kFirstVersion};
}

} // namespace

ZephyraParameter::ZephyraParameter(PluginInstance& instance, const PluginParameter& facts)
    : AudioProcessorParameterWithID(identifier(facts), juce::String::fromUTF8(facts.name)),
      instance_(instance), facts_(facts), told_(getValue()) {}

float ZephyraParameter::getValue() const {
    return normalizedFromLinear(facts_, instance_.parameter(address()));
}

void ZephyraParameter::setValue(float normalized) {
    if (!std::isfinite(normalized)) return;
    told_ = normalized;
    instance_.setParameter(address(), linearFromNormalized(facts_, normalized));
}

void ZephyraParameter::tell(float normalized) {
    told_ = normalized;
    // setValueNotifyingHost would set it in the core once more.
    sendValueChangedMessageToListeners(normalized);
}

void ZephyraParameter::tellIfUnknown() {
    if (const float now = getValue(); now != told_) tell(now);
}

float ZephyraParameter::getDefaultValue() const {
    const ControlRange& range = controlRange(facts_.id);
    return normalizedFromLinear(facts_, linearFromDisplayed(range, range.defaultValue));
}

juce::String ZephyraParameter::getName(int mostLength) const {
    const bool fits = name.length() <= mostLength;
    return fits ? name : juce::String::fromUTF8(facts_.shortName).substring(0, mostLength);
}

int ZephyraParameter::getNumSteps() const {
    return facts_.isSwitch ? 2 : AudioProcessorParameterWithID::getNumSteps();
}

juce::String ZephyraParameter::getText(float normalized, int mostLength) const {
    const std::string text = parameterText(facts_, linearFromNormalized(facts_, normalized));
    return juce::String::fromUTF8(text.c_str()).substring(0, mostLength);
}

float ZephyraParameter::getValueForText(const juce::String& text) const {
    const auto linear = parameterFromText(facts_, text.trim().toStdString());
    return linear ? normalizedFromLinear(facts_, *linear) : getValue();
}

ZephyraParameter& parameterAt(const juce::AudioProcessor& processor, AUParameterAddress address) {
    return static_cast<ZephyraParameter&>(*processor.getParameters()[static_cast<int>(address)]);
}

void addParameters(juce::AudioProcessor& processor, PluginInstance& instance) {
    const auto all = pluginParameters();
    for (std::size_t first = 0, next; first < all.size(); first = next) {
        for (next = first + 1; next < all.size() && all[next].group == all[first].group;) ++next;
        if (next - first == 1) {
            processor.addParameter(new ZephyraParameter(instance, all[first]));
            continue;
        }
        const PluginParameterGroup& facts = *all[first].group;
        auto group = std::make_unique<juce::AudioProcessorParameterGroup>(
            juce::String::fromUTF8(facts.symbol), juce::String::fromUTF8(facts.name), "|");
        for (std::size_t i = first; i < next; ++i)
            group->addChild(std::make_unique<ZephyraParameter>(instance, all[i]));
        processor.addParameterGroup(std::move(group));
    }
}

} // namespace zephyra
