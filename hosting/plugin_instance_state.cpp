// What a host reads and sets of PluginInstance beside the sound: parameters, state, programs.
#include "hosting/plugin_instance.h"

#include <cmath>
#include <utility>

namespace zephyra {

AUValue PluginInstance::parameter(AUParameterAddress address) const ZEPHYRA_NONBLOCKING {
    return loadParameter(system_.unit->record(), address);
}

void PluginInstance::setParameter(AUParameterAddress address, AUValue linear) ZEPHYRA_NONBLOCKING {
    if (address >= kParameterCount || !std::isfinite(linear)) return;
    system_.unit->keepParameter(address, linear, system_.instance.states.now());
    system_.unit->markParameter(address);
}

void PluginInstance::setGestureListener(GestureFilter::Forward listener) {
    const RunLoop::Scope main(system_.instance.runLoop);
    gestures_ = std::make_unique<GestureFilter>(
        *system_.unit->parameterTree(),
        [&loop = system_.instance.runLoop,
         listener = std::move(listener)](const AUParameterAutomationEvent& event) {
            if (listener) loop.callOutside([listener, event] { listener(event); });
        });
}

std::string PluginInstance::state() {
    const auto text = writePropertyList(system_.unit->getFullState());
    if (text) return text.value();
    system_.instance.log.write("The state cannot be written: " + text.message());
    return {};
}

Result<void> PluginInstance::setState(std::span<const std::byte> bytes) {
    auto read = readPropertyList(bytes);
    if (!read) return Failure{read.message()};
    auto* const state = read.value().as<PropertyDictionary>();
    if (!state) return Failure{"the state is no dictionary"};
    system_.unit->setFullState(std::move(*state));
    system_.instance.runLoop.runPosted();
    return {};
}

const std::vector<AUAudioUnitPreset>& PluginInstance::programs() {
    const RunLoop::Scope main(system_.instance.runLoop);
    return system_.unit->factoryPresets();
}

std::size_t PluginInstance::currentProgram() {
    const RunLoop::Scope main(system_.instance.runLoop);
    const auto preset = system_.unit->currentPreset();
    return preset && preset->number > 0 ? static_cast<std::size_t>(preset->number) : 0;
}

void PluginInstance::setProgram(std::size_t number) {
    {
        const RunLoop::Scope main(system_.instance.runLoop);
        const auto& all = system_.unit->factoryPresets();
        if (number >= all.size()) return;
        system_.unit->setCurrentPreset(all[number]);
    }
    system_.instance.runLoop.runPosted();
}

PluginSettings PluginInstance::settings() {
    const RunLoop::Scope main(system_.instance.runLoop);
    return settings_;
}

void PluginInstance::setSettings(const PluginSettings& chosen) {
    const RunLoop::Scope main(system_.instance.runLoop);
    settings_ = chosen;
    startAnew_ = chosen.startAnew;
}

void PluginInstance::loadSample(const std::filesystem::path& path) {
    const RunLoop::Scope main(system_.instance.runLoop);
    system_.view.loadSample(path);
}

} // namespace zephyra
