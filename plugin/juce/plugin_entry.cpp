// What JUCE's wrappers make a plug-in with; compiled once a kind, with its name and codes.
#include "hosting/plugin_names.h"
#include "plugin/juce/make_processor.h"

namespace zephyra {

namespace {

constexpr const PluginNames& kNames = JucePlugin_IsSynth ? kInstrumentNames : kEffectNames;

constexpr unsigned code(const char* c) {
    unsigned all = 0;
    for (int i = 0; i < 4; ++i) all = all << 8 | static_cast<unsigned char>(c[i]);
    return all;
}
static_assert(code(kNames.vst3Code) == JucePlugin_PluginCode);
static_assert(code(kManufacturerCode) == JucePlugin_ManufacturerCode);

} // namespace

} // namespace zephyra

// JUCE's declaration, whose calling convention is the usual one outside Windows.
juce::AudioProcessor* createPluginFilter();
juce::AudioProcessor* createPluginFilter() {
    return JucePlugin_IsSynth ? zephyra::makeInstrument() : zephyra::makeEffect();
}
